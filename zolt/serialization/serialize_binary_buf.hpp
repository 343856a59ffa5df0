// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// serialize_binary_buf, the compact buffer: every value is a fixed-width image as the plain packers of
// <zolt/generic/convert/bin_str.hpp> make it, least significant byte first on x86, with nothing in between.
// What the operations do is told in <zolt/serialization/serialize_buffer.hpp>.
//
//     1, 2, 4 or 8 bytes       the integer of that many bits
//     4 or 8 bytes             float or double, bit by bit; the precision is ignored
//     4 bytes and the content  a string or buffer with its length: "abc" gives 03 00 00 00 61 62 63
//
// Every read first asks at_end(); at the end it returns 0, or an empty string or buffer, and the position does
// not move. A value that the end of the content cuts off reads as if zero bytes followed. A length beyond the
// content takes what is there and leaves the position at its end.
#pragma once

#include <zolt/serialization/serialize_buffer.hpp>

namespace ZOLT_2_18::serialization {

class ZOLT_API serialize_binary_buf : public serialize_buffer {
public:
    serialize_binary_buf();
    serialize_binary_buf(serialize_binary_buf const& other);
    /// Takes over the other buffer's bytes, of whatever kind it is.
    serialize_binary_buf(serialize_buffer const& other);
    ~serialize_binary_buf() override;

    serialize_binary_buf& operator=(serialize_binary_buf const& other) { return assign(other); }
    serialize_binary_buf& operator=(serialize_buffer const& other) { return assign(other); }
    serialize_binary_buf& assign(serialize_buffer const& other) override;
    serialize_binary_buf& assign(std::string const& bytes) override;
    serialize_binary_buf& assign(char const* bytes, int length) override;
    std::string as_str() const override;

    ZOLT_API void append_int8(signed char const& value) override;
    ZOLT_API void append_int16(short const& value) override;
    ZOLT_API void append_int32(long const& value) override;
    ZOLT_API void append_int64(long long const& value) override;
    ZOLT_API void append_uint8(unsigned char const& value) override;
    ZOLT_API void append_uint16(unsigned short const& value) override;
    ZOLT_API void append_uint32(unsigned long const& value) override;
    ZOLT_API void append_uint64(unsigned long long const& value) override;
    ZOLT_API void append_float(float const& value, unsigned long const& precision) override;
    ZOLT_API void append_double(double const& value, unsigned long const& precision) override;
    ZOLT_API void append_string(std::string const& text) override;
    void append_buffer(serialize_buffer const& other) override;

    ZOLT_API signed char read_int8() const override;
    ZOLT_API short read_int16() const override;
    ZOLT_API long read_int32() const override;
    ZOLT_API long long read_int64() const override;
    ZOLT_API unsigned char read_uint8() const override;
    ZOLT_API unsigned short read_uint16() const override;
    ZOLT_API unsigned long read_uint32() const override;
    ZOLT_API unsigned long long read_uint64() const override;
    ZOLT_API float read_float() const override;
    ZOLT_API double read_double() const override;
    ZOLT_API std::string read_string() const override;
    memory::pointers::rc_pointer<serialize_buffer> read_buffer() const override;

    /// All reading operations ask this, so a subclass that overrides it changes them, too.
    ZOLT_API bool at_end() const override;
    void reset_read() const override;
    serialize_binary_buf* create() const override;
    serialize_binary_buf* clone() const override;

private:
    template <typename Stored>
    __attribute__((visibility("hidden"))) void append_image(Stored value) {
        std::memcpy(m_content.append(sizeof value), &value, sizeof value);
    }
    template <typename Stored>
    __attribute__((visibility("hidden"))) Stored take_value() const;
    template <typename Stored>
    __attribute__((visibility("hidden"))) Stored next_value() const {
        return at_end() ? Stored{} : take_value<Stored>();
    }
    __attribute__((visibility("hidden"))) std::string_view next_string() const;

    void append_bytes(std::string_view bytes);
    void take_cut_off(void* value, unsigned int size) const noexcept;
    std::string_view take_cut_off_string(unsigned int length) const noexcept;

    _private::byte_content m_content;
    mutable unsigned int m_position = 0; ///< in bytes, never beyond 4294967295
};

// ---------------------------------------------------------------------------------------------------------
// Inline, since a call into the library would take longer than the work itself. The images are those of the
// plain packers: the value as it lies in memory.

inline void serialize_binary_buf::append_int8(signed char const& value) { append_image(value); }
inline void serialize_binary_buf::append_int16(short const& value) { append_image(value); }
inline void serialize_binary_buf::append_int32(long const& value) { append_image(static_cast<int>(value)); }
inline void serialize_binary_buf::append_int64(long long const& value) { append_image(value); }
inline void serialize_binary_buf::append_uint8(unsigned char const& value) { append_image(value); }
inline void serialize_binary_buf::append_uint16(unsigned short const& value) { append_image(value); }
inline void serialize_binary_buf::append_uint32(unsigned long const& value) {
    append_image(static_cast<unsigned int>(value));
}
inline void serialize_binary_buf::append_uint64(unsigned long long const& value) { append_image(value); }
inline void serialize_binary_buf::append_float(float const& value, unsigned long const&) { append_image(value); }
inline void serialize_binary_buf::append_double(double const& value, unsigned long const&) { append_image(value); }

inline void serialize_binary_buf::append_string(std::string const& text) {
    auto const length = static_cast<unsigned int>(text.size());
    if (m_content.room() < sizeof length + text.size()) return append_bytes(text);
    char* const place = m_content.append(sizeof length + text.size());
    std::memcpy(place, &length, sizeof length);
    std::memcpy(place + sizeof length, text.data(), text.size());
}

/// The value at the position, which moves past it. Within the content no position is too large.
template <typename Stored>
Stored serialize_binary_buf::take_value() const {
    Stored value{};
    if (m_content.size() < sizeof value || m_position > m_content.size() - sizeof value) {
        take_cut_off(&value, sizeof value);
    } else {
        std::memcpy(&value, m_content.view().data() + m_position, sizeof value);
        m_position += static_cast<unsigned int>(sizeof value);
    }
    return value;
}

inline std::string_view serialize_binary_buf::next_string() const {
    if (at_end()) return m_content.view().substr(0, 0);
    auto const length = take_value<unsigned int>();
    if (m_position > m_content.size() || length > m_content.size() - m_position) return take_cut_off_string(length);
    std::string_view const bytes(m_content.view().data() + m_position, length);
    m_position += length;
    return bytes;
}

inline signed char serialize_binary_buf::read_int8() const { return next_value<signed char>(); }
inline short serialize_binary_buf::read_int16() const { return next_value<short>(); }
inline long serialize_binary_buf::read_int32() const { return next_value<int>(); }
inline long long serialize_binary_buf::read_int64() const { return next_value<long long>(); }
inline unsigned char serialize_binary_buf::read_uint8() const { return next_value<unsigned char>(); }
inline unsigned short serialize_binary_buf::read_uint16() const { return next_value<unsigned short>(); }
inline unsigned long serialize_binary_buf::read_uint32() const { return next_value<unsigned int>(); }
inline unsigned long long serialize_binary_buf::read_uint64() const { return next_value<unsigned long long>(); }
inline float serialize_binary_buf::read_float() const { return next_value<float>(); }
inline double serialize_binary_buf::read_double() const { return next_value<double>(); }
inline std::string serialize_binary_buf::read_string() const { return m_content.text_of(next_string()); }

/// No content reaches the largest position, so it needs no question of its own.
inline bool serialize_binary_buf::at_end() const { return m_position >= m_content.size(); }

} // namespace ZOLT_2_18::serialization

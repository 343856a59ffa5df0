// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// serialize_text_buf, the buffer whose values are decimal text, each followed by the separator byte 0x01.
// The content does not depend on the machine. What the operations do is told in
// <zolt/serialization/serialize_buffer.hpp>.
//
//     integers         -5 gives "-5" 01; 8-bit values are numbers, too, not characters
//     float, double    as a stream with the given precision writes them: 0.1 gives "0.1" 01
//     strings, buffers the number of bytes, 01, the bytes, 01: "abc" gives "3" 01 "abc" 01
//
// Reading takes the bytes up to the next separator for a number, to the end of the content when there is none.
// Kept: integers are read with detection of their radix: a field "010" reads as 8, "0x1F" as 31, "08" as 0.
// Kept: a number outside the range of the type that reads it gives the nearest limit, text gives 0.
//
// A string whose length is negative is empty, and reading goes on after the length. A length beyond the content
// takes what is there and leaves the position at its end. A length that no separator ends gives an empty string.
// Kept: lengths are read by read_int32, so of a string beyond 2147483647 bytes only that many are read.
#pragma once

#include <zolt/serialization/serialize_buffer.hpp>

namespace ZOLT_2_18::serialization {

class ZOLT_API serialize_text_buf : public serialize_buffer {
public:
    serialize_text_buf();
    serialize_text_buf(serialize_text_buf const& other);
    /// Takes over the other buffer's bytes, of whatever kind it is.
    serialize_text_buf(serialize_buffer const& other);
    ~serialize_text_buf() override;

    serialize_text_buf& operator=(serialize_text_buf const& other) { return assign(other); }
    serialize_text_buf& operator=(serialize_buffer const& other) { return assign(other); }
    serialize_text_buf& assign(serialize_buffer const& other) override;
    serialize_text_buf& assign(std::string const& bytes) override;
    serialize_text_buf& assign(char const* bytes, int length) override;
    std::string as_str() const override;

    void append_int8(signed char const& value) override;
    void append_int16(short const& value) override;
    void append_int32(long const& value) override;
    void append_int64(long long const& value) override;
    void append_uint8(unsigned char const& value) override;
    void append_uint16(unsigned short const& value) override;
    void append_uint32(unsigned long const& value) override;
    void append_uint64(unsigned long long const& value) override;
    /// The text that std::ostream writes in the global locale with this precision and no format flags, so
    /// 1234567.0 with 3 digits gives "1.23e+06". A precision of 0 means 1, one above 4096 means 4096.
    /// Kept: infinities and not-a-number are written as "inf" and "nan", which read back as 0.
    void append_float(float const& value, unsigned long const& precision) override;
    void append_double(double const& value, unsigned long const& precision) override;
    void append_string(std::string const& text) override;
    void append_buffer(serialize_buffer const& other) override;

    signed char read_int8() const override;
    short read_int16() const override;
    long read_int32() const override;
    long long read_int64() const override;
    unsigned char read_uint8() const override;
    unsigned short read_uint16() const override;
    unsigned long read_uint32() const override;
    unsigned long long read_uint64() const override;
    /// Read in the global locale, which should be the one that was in force when the value was written.
    float read_float() const override;
    double read_double() const override;
    /// Asks read_int32() for the length, so a subclass that overrides it changes this, too.
    ZOLT_API std::string read_string() const override;
    /// Asks read_int32() for the length.
    memory::pointers::rc_pointer<serialize_buffer> read_buffer() const override;

    bool at_end() const override;
    void reset_read() const override;
    serialize_text_buf* create() const override;
    serialize_text_buf* clone() const override;

private:
    __attribute__((visibility("hidden"))) std::string_view next_string() const;
    std::string_view take_cut_off_string(long length) const noexcept;

    _private::byte_content m_content;
    mutable unsigned int m_position = 0; ///< all bits set: reading has run past the last separator
};

// ---------------------------------------------------------------------------------------------------------
// Inline, since a string goes straight to where the caller wants it.

inline std::string_view serialize_text_buf::next_string() const {
    if (m_position == 0xFFFFFFFF) return m_content.view().substr(0, 0);
    long const length = read_int32();
    std::size_t const size = m_content.size();
    if (length < 0 || m_position > size || static_cast<std::size_t>(length) >= size - m_position)
        return take_cut_off_string(length);
    std::string_view const bytes(m_content.view().data() + m_position, static_cast<std::size_t>(length));
    m_position += static_cast<unsigned int>(length) + 1; // the separator
    return bytes;
}

inline std::string serialize_text_buf::read_string() const { return m_content.text_of(next_string()); }

} // namespace ZOLT_2_18::serialization

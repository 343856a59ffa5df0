// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// serialize_buffer, the interface of buffers into which values are appended in order and from which they
// are read back in the same order. serialize_text_buf writes printable text, serialize_binary_buf fixed-width
// images. For values found by name see <zolt/serialization/labeled_text_buffer.hpp>.
//
//     void store(serialization::serialize_buffer& to, point const& p) {
//         to.append_int32(p.x);
//         to.append_string(p.name);
//     }
//     point load(serialization::serialize_buffer const& from) {
//         long const x = from.read_int32();
//         return point{x, from.read_string()};
//     }
//
// A buffer does not know what it holds: values are to be read by the counterparts of the operations that
// appended them. Reading never fails; past the end every number reads as 0, every string as empty. Foreign
// bytes are safe to read, whatever they are.
//
// Reading is const. The read position, which starts at 0, is no part of a buffer's value: copies and clones
// read from their start, assignments replace the bytes and leave the position where it is.
//
// A buffer belongs to one thread at a time, even for reading. Its content and each string in it are limited
// to 4294967295 bytes; what would exceed that throws exceptions::length_error and changes nothing.
#pragma once

#include <zolt/export.hpp>
#include <zolt/generic/abilities.hpp>
#include <zolt/memory/rc_pointer.hpp>

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace ZOLT_2_18::serialization {

/// The order of the virtual operations is part of the binary interface.
class ZOLT_API serialize_buffer : public generic::abilities::create_ability,
                                  public generic::abilities::clone_ability,
                                  public generic::abilities::reference_count_pointer_ability<serialize_buffer> {
public:
    serialize_buffer() noexcept = default;
    serialize_buffer(serialize_buffer const&) noexcept = default;
    serialize_buffer& operator=(serialize_buffer const& other) { return assign(other); }
    ~serialize_buffer() override;

    /// Replaces the content by the other buffer's as_str(), of whatever kind it is. Assigning a buffer to
    /// itself changes nothing.
    virtual serialize_buffer& assign(serialize_buffer const& other) = 0;
    /// Replaces the content by the bytes.
    virtual serialize_buffer& assign(std::string const& bytes) = 0;
    /// Replaces the content by `length` bytes. A null pointer or a negative length leaves it empty.
    virtual serialize_buffer& assign(char const* bytes, int length) = 0;
    /// The whole content, whatever has been read of it.
    virtual std::string as_str() const = 0;

    /// Appends the value.
    virtual void append_int8(signed char const& value) = 0;
    virtual void append_int16(short const& value) = 0;
    /// Appends the low 32 bits, where long has more.
    virtual void append_int32(long const& value) = 0;
    virtual void append_int64(long long const& value) = 0;
    virtual void append_uint8(unsigned char const& value) = 0;
    virtual void append_uint16(unsigned short const& value) = 0;
    /// Appends the low 32 bits, where long has more.
    virtual void append_uint32(unsigned long const& value) = 0;
    virtual void append_uint64(unsigned long long const& value) = 0;
    /// `precision` counts significant digits; a kind of buffer that keeps all of them ignores it.
    virtual void append_float(float const& value, unsigned long const& precision) = 0;
    virtual void append_double(double const& value, unsigned long const& precision) = 0;
    /// Any bytes, zeros included.
    virtual void append_string(std::string const& text) = 0;
    /// The whole content of the other buffer as one string, to be read with read_buffer. A buffer may be
    /// appended to itself.
    virtual void append_buffer(serialize_buffer const& other) = 0;

    /// Reads the next value, which was appended as this type.
    virtual signed char read_int8() const = 0;
    virtual short read_int16() const = 0;
    virtual long read_int32() const = 0; ///< within 32 bits on every build
    virtual long long read_int64() const = 0;
    virtual unsigned char read_uint8() const = 0;
    virtual unsigned short read_uint16() const = 0;
    virtual unsigned long read_uint32() const = 0; ///< within 32 bits on every build
    virtual unsigned long long read_uint64() const = 0;
    virtual float read_float() const = 0;
    virtual double read_double() const = 0;
    virtual std::string read_string() const = 0;
    /// A new buffer of the same kind, marked as heap-allocated; never a null pointer.
    virtual memory::pointers::rc_pointer<serialize_buffer> read_buffer() const = 0;

    /// True when nothing is left to read.
    virtual bool at_end() const = 0;
    /// Reading starts again from the first value.
    virtual void reset_read() const = 0;

    /// A new empty buffer of the same kind: count 0, marked as heap-allocated, for the caller to hand to a
    /// pointer.
    virtual serialize_buffer* create() const = 0;
    /// A copy, made as create() makes its buffer.
    virtual serialize_buffer* clone() const = 0;
};

// ---------------------------------------------------------------------------------------------------------

namespace _private {

/// A copy of the first `length` bytes of 15, which are copied all: a number of bytes that varies costs more than
/// the bytes do.
__attribute__((flatten)) inline std::string short_text(char const* bytes, std::size_t length) {
    std::string text(bytes, 15);
    text.erase(length);
    return text;
}

/// The bytes of a buffer. They stand in a string that is kept somewhat longer than they are, so that a number
/// is appended by storing it; asking the string each time costs more than the number does.
class ZOLT_API byte_content {
public:
    byte_content() = default;
    explicit byte_content(std::string&& bytes) noexcept : m_bytes(std::move(bytes)), m_length(m_bytes.size()) {}
    byte_content(byte_content const& other) : byte_content(std::string(other.view())) {}
    byte_content& operator=(byte_content const&) = delete;

    void assign(std::string&& bytes) noexcept {
        m_length = bytes.size();
        m_bytes = std::move(bytes);
    }
    void assign(std::string_view bytes) {
        m_bytes.assign(bytes.data(), bytes.size());
        m_length = bytes.size();
    }

    std::string_view view() const noexcept { return std::string_view(m_bytes.data(), m_length); }
    std::size_t size() const noexcept { return m_length; }

    /// How much can be appended without asking for memory.
    std::size_t room() const noexcept { return m_bytes.size() - m_length; }
    /// Makes sure that `length` bytes can be appended.
    /// @throws exceptions::length_error when the content would not fit into a 32-bit length.
    void reserve(std::size_t length) {
        if (room() < length) enlarge(length);
    }
    /// The place of `length` new bytes, as many as there is room for or as a number has.
    char* append(std::size_t length) {
        reserve(length);
        char* const place = m_bytes.data() + m_length;
        m_length += length;
        return place;
    }
    void append(std::string_view bytes) {
        if (room() < bytes.size()) return append_to_string(bytes);
        std::memcpy(m_bytes.data() + m_length, bytes.data(), bytes.size());
        m_length += bytes.size();
    }
    /// A copy of a part of the content.
    std::string text_of(std::string_view part) const {
        bool const is_short = part.size() <= 15 && view().data() + m_length - part.data() >= 15;
        return is_short ? short_text(part.data(), part.size()) : std::string(part);
    }
    /// The bytes as a string, which leaves nothing here.
    std::string take() {
        m_bytes.resize(std::exchange(m_length, 0));
        return std::exchange(m_bytes, std::string());
    }

private:
    void enlarge(std::size_t length);
    void append_to_string(std::string_view bytes);

    std::string m_bytes; ///< the content and bytes without meaning behind it
    std::size_t m_length = 0;
};

} // namespace _private

} // namespace ZOLT_2_18::serialization

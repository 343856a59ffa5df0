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

    void append_int8(signed char const& value) override;
    void append_int16(short const& value) override;
    void append_int32(long const& value) override;
    void append_int64(long long const& value) override;
    void append_uint8(unsigned char const& value) override;
    void append_uint16(unsigned short const& value) override;
    void append_uint32(unsigned long const& value) override;
    void append_uint64(unsigned long long const& value) override;
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
    float read_float() const override;
    double read_double() const override;
    std::string read_string() const override;
    memory::pointers::rc_pointer<serialize_buffer> read_buffer() const override;

    /// All reading operations ask this, so a subclass that overrides it changes them, too.
    bool at_end() const override;
    void reset_read() const override;
    serialize_binary_buf* create() const override;
    serialize_binary_buf* clone() const override;

private:
    _private::byte_content m_content;
    mutable unsigned int m_position = 0; ///< in bytes, never beyond 4294967295
};

} // namespace ZOLT_2_18::serialization

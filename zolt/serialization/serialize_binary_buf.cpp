// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// An image is unpacked where it stands in the content; only one that is cut off is copied, to put zeros
// behind it.
#include <zolt/serialization/serialize_binary_buf.hpp>

#include <zolt/generic/convert/bin_str.hpp>
#include <zolt/serialization/serialize_buffer_private.hpp>

namespace ZOLT_2_18::serialization {
namespace {

namespace convert = generic::convert;
using _private::append;

void append_byte(std::string& content, unsigned char value) {
    char const byte = static_cast<char>(value);
    append(content, std::string_view(&byte, 1));
}

void append_bytes(std::string& content, std::string const& bytes) {
    append(content, convert::uint32_to_bin_str(static_cast<unsigned long>(bytes.size())), bytes);
}

/// The value at the position, which moves past it, over the end of the content if need be.
template <std::size_t Width, typename T>
T take_value(std::string_view content, unsigned int& position, T (*unpack)(char const*)) {
    std::string_view const rest = _private::rest_of(content, position);
    position = _private::saturated(std::uint64_t{position} + Width);
    if (rest.size() >= Width) return unpack(rest.data());
    char image[Width] = {};
    rest.copy(image, rest.size());
    return unpack(image);
}

template <std::size_t Width, typename T>
T next_value(serialize_buffer const& buffer, std::string const& content, unsigned int& position,
             T (*unpack)(char const*)) {
    return buffer.at_end() ? T{0} : take_value<Width>(content, position, unpack);
}

std::string_view next_string(serialize_buffer const& buffer, std::string const& content, unsigned int& position) {
    if (buffer.at_end()) return {};
    unsigned long const length = take_value<4, unsigned long>(content, position, convert::bin_str_to_uint32);
    return _private::take_bytes(content, position, length, 0);
}

signed char unpack_int8(char const* image) noexcept { return static_cast<signed char>(*image); }
unsigned char unpack_uint8(char const* image) noexcept { return static_cast<unsigned char>(*image); }

serialize_binary_buf* on_heap(serialize_binary_buf* made) noexcept {
    made->heap_allocated = true;
    return made;
}

} // namespace

serialize_binary_buf::serialize_binary_buf() = default;
serialize_binary_buf::serialize_binary_buf(serialize_binary_buf const& other)
    : serialize_buffer(other), m_content(other.m_content) {}
serialize_binary_buf::serialize_binary_buf(serialize_buffer const& other)
    : serialize_buffer(other), m_content(_private::checked(other.as_str())) {}
serialize_binary_buf::~serialize_binary_buf() = default;

serialize_binary_buf& serialize_binary_buf::assign(serialize_buffer const& other) {
    if (this != &other) m_content = _private::checked(other.as_str());
    return *this;
}

serialize_binary_buf& serialize_binary_buf::assign(std::string const& bytes) {
    _private::check_length(bytes.size(), _private::assign_site);
    m_content = bytes;
    return *this;
}

serialize_binary_buf& serialize_binary_buf::assign(char const* bytes, int length) {
    m_content = _private::bytes_or_none(bytes, length);
    return *this;
}

std::string serialize_binary_buf::as_str() const { return m_content; }

void serialize_binary_buf::append_int8(signed char const& value) {
    append_byte(m_content, static_cast<unsigned char>(value));
}
void serialize_binary_buf::append_int16(short const& value) { append(m_content, convert::int16_to_bin_str(value)); }
void serialize_binary_buf::append_int32(long const& value) { append(m_content, convert::int32_to_bin_str(value)); }
void serialize_binary_buf::append_int64(long long const& value) {
    append(m_content, convert::int64_to_bin_str(value));
}
void serialize_binary_buf::append_uint8(unsigned char const& value) { append_byte(m_content, value); }
void serialize_binary_buf::append_uint16(unsigned short const& value) {
    append(m_content, convert::uint16_to_bin_str(value));
}
void serialize_binary_buf::append_uint32(unsigned long const& value) {
    append(m_content, convert::uint32_to_bin_str(value));
}
void serialize_binary_buf::append_uint64(unsigned long long const& value) {
    append(m_content, convert::int64_to_bin_str(static_cast<long long>(value)));
}

void serialize_binary_buf::append_float(float const& value, unsigned long const&) {
    append(m_content, convert::float_to_bin_str(value));
}
void serialize_binary_buf::append_double(double const& value, unsigned long const&) {
    append(m_content, convert::double_to_bin_str(value));
}
void serialize_binary_buf::append_string(std::string const& text) { append_bytes(m_content, text); }
void serialize_binary_buf::append_buffer(serialize_buffer const& other) { append_bytes(m_content, other.as_str()); }

signed char serialize_binary_buf::read_int8() const {
    return next_value<1>(*this, m_content, m_position, unpack_int8);
}
short serialize_binary_buf::read_int16() const {
    return next_value<2, short>(*this, m_content, m_position, convert::bin_str_to_int16);
}
long serialize_binary_buf::read_int32() const {
    return next_value<4, long>(*this, m_content, m_position, convert::bin_str_to_int32);
}
long long serialize_binary_buf::read_int64() const {
    return next_value<8, long long>(*this, m_content, m_position, convert::bin_str_to_int64);
}
unsigned char serialize_binary_buf::read_uint8() const {
    return next_value<1>(*this, m_content, m_position, unpack_uint8);
}
unsigned short serialize_binary_buf::read_uint16() const {
    return next_value<2, unsigned short>(*this, m_content, m_position, convert::bin_str_to_uint16);
}
unsigned long serialize_binary_buf::read_uint32() const {
    return next_value<4, unsigned long>(*this, m_content, m_position, convert::bin_str_to_uint32);
}
unsigned long long serialize_binary_buf::read_uint64() const {
    return next_value<8, unsigned long long>(*this, m_content, m_position, convert::bin_str_to_uint64);
}
float serialize_binary_buf::read_float() const {
    return next_value<4, float>(*this, m_content, m_position, convert::bin_str_to_float);
}
double serialize_binary_buf::read_double() const {
    return next_value<8, double>(*this, m_content, m_position, convert::bin_str_to_double);
}

std::string serialize_binary_buf::read_string() const {
    return std::string(next_string(*this, m_content, m_position));
}

memory::pointers::rc_pointer<serialize_buffer> serialize_binary_buf::read_buffer() const {
    auto const buffer = memory::pointers::make_rc<serialize_binary_buf>();
    buffer->m_content = next_string(*this, m_content, m_position);
    return buffer;
}

bool serialize_binary_buf::at_end() const { return _private::is_at_end(m_content, m_position); }
void serialize_binary_buf::reset_read() const { m_position = 0; }

serialize_binary_buf* serialize_binary_buf::create() const { return on_heap(new serialize_binary_buf); }
serialize_binary_buf* serialize_binary_buf::clone() const { return on_heap(new serialize_binary_buf(*this)); }

} // namespace ZOLT_2_18::serialization

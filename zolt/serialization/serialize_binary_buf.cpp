// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The images are those of the plain packers in <zolt/generic/convert/bin_str.hpp>, stored and loaded in place.
#include <zolt/serialization/serialize_binary_buf.hpp>

#include <zolt/serialization/serialize_buffer_private.hpp>

#include <cstdint>
#include <cstring>

namespace ZOLT_2_18::serialization {
namespace {

using _private::byte_content;

/// The image that the plain packers make: the value as it lies in memory.
template <typename Stored>
void append_image(byte_content& content, Stored value) {
    std::memcpy(content.append(sizeof value), &value, sizeof value);
}

/// Appends the length and the bytes or, if that fails, nothing.
void append_bytes(byte_content& content, std::string_view bytes) {
    content.reserve(sizeof(std::uint32_t) + bytes.size());
    append_image(content, static_cast<std::uint32_t>(bytes.size()));
    content.append(bytes);
}

/// A value that the end of the content cuts off reads as if zero bytes followed.
template <typename Stored>
__attribute__((noinline)) Stored take_cut_off(std::string_view rest, unsigned int& position) noexcept {
    position = _private::saturated(std::uint64_t{position} + sizeof(Stored));
    Stored value{};
    std::memcpy(&value, rest.data(), rest.size());
    return value;
}

/// The value at the position, which moves past it. Within the content no position is too large.
template <typename Stored>
Stored take_value(std::string_view content, unsigned int& position) noexcept {
    std::string_view const rest = _private::rest_of(content, position);
    if (rest.size() < sizeof(Stored)) return take_cut_off<Stored>(rest, position);
    position += static_cast<unsigned int>(sizeof(Stored));
    Stored value;
    std::memcpy(&value, rest.data(), sizeof value);
    return value;
}

template <typename Stored>
Stored next_value(serialize_buffer const& buffer, byte_content const& content, unsigned int& position) {
    return buffer.at_end() ? Stored{} : take_value<Stored>(content.view(), position);
}

std::string_view next_string(serialize_buffer const& buffer, std::string_view content, unsigned int& position) {
    if (buffer.at_end()) return {};
    auto const length = take_value<std::uint32_t>(content, position);
    return _private::take_bytes(content, position, length, 0);
}

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
    if (this != &other) m_content.assign(_private::checked(other.as_str()));
    return *this;
}

serialize_binary_buf& serialize_binary_buf::assign(std::string const& bytes) {
    _private::check_length(bytes.size(), _private::assign_site);
    m_content.assign(std::string_view(bytes));
    return *this;
}

serialize_binary_buf& serialize_binary_buf::assign(char const* bytes, int length) {
    m_content.assign(_private::bytes_or_none(bytes, length));
    return *this;
}

std::string serialize_binary_buf::as_str() const { return std::string(m_content.view()); }

void serialize_binary_buf::append_int8(signed char const& value) { append_image(m_content, value); }
void serialize_binary_buf::append_int16(short const& value) { append_image(m_content, value); }
void serialize_binary_buf::append_int32(long const& value) {
    append_image(m_content, static_cast<std::int32_t>(value));
}
void serialize_binary_buf::append_int64(long long const& value) { append_image(m_content, value); }
void serialize_binary_buf::append_uint8(unsigned char const& value) { append_image(m_content, value); }
void serialize_binary_buf::append_uint16(unsigned short const& value) { append_image(m_content, value); }
void serialize_binary_buf::append_uint32(unsigned long const& value) {
    append_image(m_content, static_cast<std::uint32_t>(value));
}
void serialize_binary_buf::append_uint64(unsigned long long const& value) { append_image(m_content, value); }

void serialize_binary_buf::append_float(float const& value, unsigned long const&) {
    append_image(m_content, value);
}
void serialize_binary_buf::append_double(double const& value, unsigned long const&) {
    append_image(m_content, value);
}
void serialize_binary_buf::append_string(std::string const& text) { append_bytes(m_content, text); }
void serialize_binary_buf::append_buffer(serialize_buffer const& other) { append_bytes(m_content, other.as_str()); }

signed char serialize_binary_buf::read_int8() const {
    return next_value<std::int8_t>(*this, m_content, m_position);
}
short serialize_binary_buf::read_int16() const { return next_value<std::int16_t>(*this, m_content, m_position); }
long serialize_binary_buf::read_int32() const { return next_value<std::int32_t>(*this, m_content, m_position); }
long long serialize_binary_buf::read_int64() const {
    return next_value<std::int64_t>(*this, m_content, m_position);
}
unsigned char serialize_binary_buf::read_uint8() const {
    return next_value<std::uint8_t>(*this, m_content, m_position);
}
unsigned short serialize_binary_buf::read_uint16() const {
    return next_value<std::uint16_t>(*this, m_content, m_position);
}
unsigned long serialize_binary_buf::read_uint32() const {
    return next_value<std::uint32_t>(*this, m_content, m_position);
}
unsigned long long serialize_binary_buf::read_uint64() const {
    return next_value<std::uint64_t>(*this, m_content, m_position);
}
float serialize_binary_buf::read_float() const { return next_value<float>(*this, m_content, m_position); }
double serialize_binary_buf::read_double() const { return next_value<double>(*this, m_content, m_position); }

std::string serialize_binary_buf::read_string() const {
    return std::string(next_string(*this, m_content.view(), m_position));
}

memory::pointers::rc_pointer<serialize_buffer> serialize_binary_buf::read_buffer() const {
    auto const buffer = memory::pointers::make_rc<serialize_binary_buf>();
    buffer->m_content.assign(next_string(*this, m_content.view(), m_position));
    return buffer;
}

bool serialize_binary_buf::at_end() const { return _private::is_at_end(m_content.view(), m_position); }
void serialize_binary_buf::reset_read() const { m_position = 0; }

serialize_binary_buf* serialize_binary_buf::create() const { return on_heap(new serialize_binary_buf); }
serialize_binary_buf* serialize_binary_buf::clone() const { return on_heap(new serialize_binary_buf(*this)); }

} // namespace ZOLT_2_18::serialization

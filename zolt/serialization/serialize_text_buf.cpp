// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Integers are written to their place in the content, and read where they stand.
#include <zolt/serialization/serialize_text_buf.hpp>

#include <zolt/serialization/text_field_private.hpp>

#include <charconv>
#include <locale>
#include <ostream>

namespace ZOLT_2_18::serialization {
namespace {

namespace convert = generic::convert;
using _private::append_field;
using _private::append_string_field;
using _private::byte_content;
using _private::separator;
using _private::take_field;
using _private::take_integer;

struct precise_value {
    double value;
    int precision;
};

void insert(std::ostream& stream, void const* boxed) {
    auto const& item = *static_cast<precise_value const*>(boxed);
    stream.precision(item.precision);
    stream << item.value;
}

/// A stream's default form is that of "%g", which is chars_format::general. A float is inserted as a double.
void append_floating(byte_content& content, double value, unsigned long precision) {
    constexpr unsigned int most_digits = 4096;
    precise_value const item{value, static_cast<int>(std::min<unsigned long>(precision, most_digits))};
    if (std::locale() != std::locale::classic()) {
        content.append(convert::_private::streamed_text(insert, &item).append(1, separator));
        return;
    }
    char text[most_digits + 16]; // sign, point, exponent and separator
    char* const end =
        std::to_chars(text, text + sizeof text - 1, value, std::chars_format::general, item.precision).ptr;
    *end = separator;
    content.append(std::string_view(text, static_cast<std::size_t>(end - text) + 1));
}

strings::ustring8 number_text(std::string_view field) { return strings::ustring8(field.data(), field.size()); }

serialize_text_buf* on_heap(serialize_text_buf* made) noexcept {
    made->heap_allocated = true;
    return made;
}

} // namespace

serialize_text_buf::serialize_text_buf() = default;
serialize_text_buf::serialize_text_buf(serialize_text_buf const& other)
    : serialize_buffer(other), m_content(other.m_content) {}
serialize_text_buf::serialize_text_buf(serialize_buffer const& other)
    : serialize_buffer(other), m_content(_private::checked(other.as_str())) {}
serialize_text_buf::~serialize_text_buf() = default;

serialize_text_buf& serialize_text_buf::assign(serialize_buffer const& other) {
    if (this != &other) m_content.assign(_private::checked(other.as_str()));
    return *this;
}

serialize_text_buf& serialize_text_buf::assign(std::string const& bytes) {
    _private::check_length(bytes.size(), _private::assign_site);
    m_content.assign(std::string_view(bytes));
    return *this;
}

serialize_text_buf& serialize_text_buf::assign(char const* bytes, int length) {
    m_content.assign(_private::bytes_or_none(bytes, length));
    return *this;
}

std::string serialize_text_buf::as_str() const { return std::string(m_content.view()); }

void serialize_text_buf::append_int8(signed char const& value) { append_field(m_content, value); }
void serialize_text_buf::append_int16(short const& value) { append_field(m_content, value); }
void serialize_text_buf::append_int32(long const& value) { append_field(m_content, static_cast<int>(value)); }
void serialize_text_buf::append_int64(long long const& value) { append_field(m_content, value); }
void serialize_text_buf::append_uint8(unsigned char const& value) { append_field(m_content, value); }
void serialize_text_buf::append_uint16(unsigned short const& value) { append_field(m_content, value); }
void serialize_text_buf::append_uint32(unsigned long const& value) {
    append_field(m_content, static_cast<unsigned int>(value));
}
void serialize_text_buf::append_uint64(unsigned long long const& value) { append_field(m_content, value); }

void serialize_text_buf::append_float(float const& value, unsigned long const& precision) {
    append_floating(m_content, double{value}, precision);
}
void serialize_text_buf::append_double(double const& value, unsigned long const& precision) {
    append_floating(m_content, value, precision);
}
void serialize_text_buf::append_string(std::string const& text) { append_string_field(m_content, text); }
void serialize_text_buf::append_buffer(serialize_buffer const& other) {
    append_string_field(m_content, other.as_str());
}

signed char serialize_text_buf::read_int8() const {
    return take_integer<signed char>(m_content.view(), m_position, convert::str_to_int8);
}
short serialize_text_buf::read_int16() const {
    return take_integer<short>(m_content.view(), m_position, convert::str_to_int16);
}
long serialize_text_buf::read_int32() const {
    return take_integer<int>(m_content.view(), m_position, convert::str_to_int32);
}
long long serialize_text_buf::read_int64() const {
    return take_integer<long long>(m_content.view(), m_position, convert::str_to_int64);
}
unsigned char serialize_text_buf::read_uint8() const {
    return take_integer<unsigned char>(m_content.view(), m_position, convert::str_to_uint8);
}
unsigned short serialize_text_buf::read_uint16() const {
    return take_integer<unsigned short>(m_content.view(), m_position, convert::str_to_uint16);
}
unsigned long serialize_text_buf::read_uint32() const {
    return take_integer<unsigned int>(m_content.view(), m_position, convert::str_to_uint32);
}
unsigned long long serialize_text_buf::read_uint64() const {
    return take_integer<unsigned long long>(m_content.view(), m_position, convert::str_to_uint64);
}

float serialize_text_buf::read_float() const {
    return convert::str_to_float(number_text(take_field(m_content.view(), m_position)));
}
double serialize_text_buf::read_double() const {
    return convert::str_to_double(number_text(take_field(m_content.view(), m_position)));
}

std::string_view serialize_text_buf::take_cut_off_string(long length) const noexcept {
    std::string_view const bytes = _private::take_string(m_content.view(), m_position, length);
    return bytes.empty() ? m_content.view().substr(0, 0) : bytes;
}

memory::pointers::rc_pointer<serialize_buffer> serialize_text_buf::read_buffer() const {
    auto const buffer = memory::pointers::make_rc<serialize_text_buf>();
    buffer->m_content.assign(next_string());
    return buffer;
}

bool serialize_text_buf::at_end() const { return _private::is_at_end(m_content.view(), m_position); }
void serialize_text_buf::reset_read() const { m_position = 0; }

serialize_text_buf* serialize_text_buf::create() const { return on_heap(new serialize_text_buf); }
serialize_text_buf* serialize_text_buf::clone() const { return on_heap(new serialize_text_buf(*this)); }

} // namespace ZOLT_2_18::serialization

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// What is unusual: content that has to grow, and values that its end cuts off. The rest is inline.
#include <zolt/serialization/serialize_binary_buf.hpp>

#include <zolt/serialization/serialize_buffer_private.hpp>

#include <cstdint>
#include <cstring>

namespace ZOLT_2_18::serialization {
namespace {

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

void serialize_binary_buf::append_buffer(serialize_buffer const& other) { append_bytes(other.as_str()); }

/// Appends the length and the bytes or, if that fails, nothing.
void serialize_binary_buf::append_bytes(std::string_view bytes) {
    m_content.reserve(sizeof(std::uint32_t) + bytes.size());
    append_image(static_cast<std::uint32_t>(bytes.size()));
    m_content.append(bytes);
}

/// What the end of the content leaves of a value; `value` is zero.
void serialize_binary_buf::take_cut_off(void* value, unsigned int size) const noexcept {
    std::string_view const rest = _private::rest_of(m_content.view(), m_position);
    std::memcpy(value, rest.data(), rest.size());
    m_position = _private::saturated(std::uint64_t{m_position} + size);
}

std::string_view serialize_binary_buf::take_cut_off_string(unsigned int length) const noexcept {
    return _private::take_bytes(m_content.view(), m_position, length, 0);
}

memory::pointers::rc_pointer<serialize_buffer> serialize_binary_buf::read_buffer() const {
    auto const buffer = memory::pointers::make_rc<serialize_binary_buf>();
    buffer->m_content.assign(next_string());
    return buffer;
}

void serialize_binary_buf::reset_read() const { m_position = 0; }

serialize_binary_buf* serialize_binary_buf::create() const { return on_heap(new serialize_binary_buf); }
serialize_binary_buf* serialize_binary_buf::clone() const { return on_heap(new serialize_binary_buf(*this)); }

} // namespace ZOLT_2_18::serialization

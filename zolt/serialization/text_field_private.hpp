// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The two things that text buffers are made of: a field, which a separator ends, and a string, which is a
// field with its length, its bytes and a separator. Not installed.
#pragma once

#include <zolt/generic/convert/str_to_x.hpp>
#include <zolt/generic/convert/x_to_str.hpp>
#include <zolt/serialization/serialize_buffer.hpp>
#include <zolt/serialization/serialize_buffer_private.hpp>
#include <zolt/types/decimal_length_private.hpp>

#include <cstdint>
#include <string_view>
#include <type_traits>

namespace ZOLT_2_18::serialization::_private {

inline constexpr char separator = '\1';

/// How long an integer and its separator are.
template <typename Integer>
std::size_t field_length(Integer value) noexcept {
    return types::_private::decimal_length(value) + sizeof separator;
}

/// Appends an integer in decimal and the separator, which takes the place of the digits' terminating zero.
template <typename Integer>
void append_field(byte_content& content, Integer value) {
    std::size_t const length = field_length(value);
    char* const place = content.append(length);
    if constexpr (std::is_signed_v<Integer>)
        generic::convert::lltoa(value, place, 10);
    else
        generic::convert::ulltoa(value, place, 10);
    place[length - 1] = separator;
}

/// Appends a string or, if that fails, nothing.
inline void append_string_field(byte_content& content, std::string_view bytes) {
    unsigned long long const length = bytes.size();
    content.reserve(field_length(length) + bytes.size() + sizeof separator);
    append_field(content, length);
    content.append(bytes);
    *content.append(sizeof separator) = separator;
}

/// The field at the position without its separator, to the end of the content when there is none.
inline std::string_view take_field(std::string_view content, unsigned int& position) noexcept {
    if (position == no_position) return {};
    std::string_view const rest = rest_of(content, position);
    std::size_t const length = rest.find(separator);
    position = length == rest.npos ? no_position : saturated(std::uint64_t{position} + length + 1);
    return rest.substr(0, length);
}

/// An integer of a field, with detection of the radix. The parsers take a length of 0 for a text that ends
/// with a zero byte, so an empty field must not reach them.
template <typename T>
T field_value(std::string_view field, T (*parse)(char const*, unsigned long, types::radix_t::base, bool)) {
    if (field.empty()) return T{0};
    return parse(field.data(), static_cast<unsigned long>(field.size()), types::radix_t::automatic, false);
}

/// The bytes of a string, when its length field has been read.
inline std::string_view take_string(std::string_view content, unsigned int& position, long length) noexcept {
    if (position == no_position || length < 0) return {};
    return take_bytes(content, position, static_cast<std::uint64_t>(length), sizeof separator);
}

} // namespace ZOLT_2_18::serialization::_private

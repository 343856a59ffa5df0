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

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>
#include <type_traits>

namespace ZOLT_2_18::serialization::_private {

inline constexpr char separator = '\1';

/// "00" to "99", one after the other.
inline constexpr auto digit_pairs = [] {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

/// Writes the digits so that the last one stands before `end`.
inline void write_digits_before(char* end, std::uint32_t value) noexcept {
    for (; value >= 100; value /= 100) {
        end -= 2;
        std::memcpy(end, &digit_pairs[std::size_t{value % 100} * 2], 2);
    }
    if (value >= 10)
        std::memcpy(end - 2, &digit_pairs[std::size_t{value} * 2], 2);
    else
        end[-1] = static_cast<char>('0' + value);
}

/// How long a length and its separator are.
inline std::size_t field_length(std::uint64_t length) noexcept {
    return types::_private::decimal_length(length) + sizeof separator;
}

/// Appends an integer in decimal and the separator. The usual ones, of 32 bits, take no call.
template <typename Integer>
void append_field(byte_content& content, Integer value) {
    bool const negative = value < Integer{};
    std::uint64_t const magnitude = types::_private::magnitude(value);
    std::size_t const length = negative + types::_private::decimal_length(magnitude);
    char* const place = content.append(length + sizeof separator);
    if (magnitude <= 0xFFFFFFFF) {
        *place = '-'; // a digit comes there if it is not
        write_digits_before(place + length, static_cast<std::uint32_t>(magnitude));
    } else if (negative) {
        generic::convert::lltoa(static_cast<long long>(value), place, 10);
    } else {
        generic::convert::ulltoa(magnitude, place, 10);
    }
    place[length] = separator; // where the conversions put a zero
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

/// Reads an integer in the form that append_field gives it, up to 18 digits of it, in one go. False, and nothing is
/// changed, for any other field and for a number outside the type.
template <typename T>
bool take_plain_integer(std::string_view content, unsigned int& position, T& value) noexcept {
    constexpr std::ptrdiff_t most_digits = 18;
    if (position >= content.size()) return false;
    char const* at = content.data() + position;
    char const* const end = content.data() + content.size();
    bool const negative = *at == '-';
    if (negative) ++at;
    char const* const digits = at;
    char const* const last = digits + std::min(most_digits, end - digits);
    unsigned long long magnitude = 0;
    for (; at != last; ++at) {
        auto const digit = static_cast<unsigned int>(*at) - '0';
        if (digit > 9) break;
        magnitude = magnitude * 10 + digit;
    }
    if (at == end || *at != separator || at == digits || (*digits == '0' && at - digits > 1)) return false;

    constexpr auto largest = static_cast<unsigned long long>(std::numeric_limits<T>::max());
    if (negative ? !std::is_signed_v<T> || magnitude > largest + 1 : magnitude > largest) return false;
    value = static_cast<T>(negative ? 0 - magnitude : magnitude);
    position = static_cast<unsigned int>(at + sizeof separator - content.data());
    return true;
}

/// Any field as an integer, with detection of the radix. The parsers take a length of 0 for a text that ends with
/// a zero byte, so an empty field must not reach them.
template <typename T>
T take_integer(std::string_view content, unsigned int& position,
               T (*parse)(char const*, unsigned long, types::radix_t::base, bool)) {
    T value{};
    if (take_plain_integer(content, position, value)) return value;
    std::string_view const field = take_field(content, position);
    if (field.empty()) return value;
    return parse(field.data(), static_cast<unsigned long>(field.size()), types::radix_t::automatic, false);
}

/// The bytes of a string, when its length field has been read.
inline std::string_view take_string(std::string_view content, unsigned int& position, long length) noexcept {
    if (position == no_position || length < 0) return {};
    return take_bytes(content, position, static_cast<std::uint64_t>(length), sizeof separator);
}

} // namespace ZOLT_2_18::serialization::_private

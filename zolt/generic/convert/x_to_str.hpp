// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Numbers to text: the ltoa family writes the digits of an integer in radix 2 to 36 into the caller's
// buffer, to_str<T> gives what a stream would print. The way back is <zolt/generic/convert/str_to_x.hpp>.
//
//     char digits[66];
//     generic::convert::ltoa(-255, digits, 16);   // "-ff"
//     generic::convert::to_str(0.1);              // "0.1"
#pragma once

#include <zolt/export.hpp>
#include <zolt/strings/ustring.hpp>

#include <iosfwd>

namespace ZOLT_2_18::generic::convert {

/// Writes "-" for a negative value, the digits of its magnitude ("0" to "9", then "a" to "z") and a
/// terminating zero unit. The buffer needs room for all three: 66 units hold every value in every radix.
/// A radix outside 2 to 36 writes an empty text. Nothing is allocated; the locale plays no part.
ZOLT_API void ltoa(long value, char* buffer, unsigned int radix);
ZOLT_API void ltoa(long value, unsigned short* buffer, unsigned int radix);
ZOLT_API void ltoa(long value, wchar_t* buffer, unsigned int radix);
ZOLT_API void ultoa(unsigned long value, char* buffer, unsigned int radix);
ZOLT_API void ultoa(unsigned long value, unsigned short* buffer, unsigned int radix);
ZOLT_API void ultoa(unsigned long value, wchar_t* buffer, unsigned int radix);
ZOLT_API void lltoa(long long value, char* buffer, unsigned int radix);
ZOLT_API void lltoa(long long value, unsigned short* buffer, unsigned int radix);
ZOLT_API void lltoa(long long value, wchar_t* buffer, unsigned int radix);
ZOLT_API void ulltoa(unsigned long long value, char* buffer, unsigned int radix);
ZOLT_API void ulltoa(unsigned long long value, unsigned short* buffer, unsigned int radix);
ZOLT_API void ulltoa(unsigned long long value, wchar_t* buffer, unsigned int radix);

namespace _private {

/// What `insert` writes of `value` into a fresh stream with default formatting and the global locale.
ZOLT_API strings::ustring8 streamed_text(void (*insert)(std::ostream&, void const*), void const* value);

} // namespace _private

/// The value as a stream with default formatting and the global locale prints it: six significant digits
/// for floating-point values, the character for the three char types, "1" or "0" for bool. A type of your
/// own needs operator<<, and <ostream> included where to_str is used. For the fundamental types no stream
/// is made while the global locale is the classic one.
template <typename T>
strings::ustring8 to_str(T const& value);

template <>
ZOLT_API strings::ustring8 to_str<bool>(bool const& value); // "1" or "0"
template <>
ZOLT_API strings::ustring8 to_str<char>(char const& value);
template <>
ZOLT_API strings::ustring8 to_str<signed char>(signed char const& value);
template <>
ZOLT_API strings::ustring8 to_str<unsigned char>(unsigned char const& value);
template <>
ZOLT_API strings::ustring8 to_str<short>(short const& value);
template <>
ZOLT_API strings::ustring8 to_str<unsigned short>(unsigned short const& value);
template <>
ZOLT_API strings::ustring8 to_str<int>(int const& value);
template <>
ZOLT_API strings::ustring8 to_str<unsigned int>(unsigned int const& value);
template <>
ZOLT_API strings::ustring8 to_str<long>(long const& value);
template <>
ZOLT_API strings::ustring8 to_str<unsigned long>(unsigned long const& value);
template <>
ZOLT_API strings::ustring8 to_str<long long>(long long const& value);
template <>
ZOLT_API strings::ustring8 to_str<unsigned long long>(unsigned long long const& value);
template <>
ZOLT_API strings::ustring8 to_str<float>(float const& value);
template <>
ZOLT_API strings::ustring8 to_str<double>(double const& value);
template <>
ZOLT_API strings::ustring8 to_str<long double>(long double const& value);

// ---------------------------------------------------------------------------------------------------------

template <typename T>
strings::ustring8 to_str(T const& value) {
    struct item_t {
        T const& value;
    };
    item_t const item{value};
    return _private::streamed_text(
        [](std::ostream& stream, void const* boxed) { stream << static_cast<item_t const*>(boxed)->value; }, &item);
}

} // namespace ZOLT_2_18::generic::convert

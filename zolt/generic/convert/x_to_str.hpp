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

#include <cstring>
#include <iosfwd>

namespace ZOLT_2_18::generic::convert {

/// Writes "-" for a negative value, the digits of its magnitude ("0" to "9", then "a" to "z") and a
/// terminating zero unit. The buffer needs room for all three: 66 units hold every value in every radix.
/// A radix outside 2 to 36 writes an empty text. Nothing is allocated; the locale plays no part.
ZOLT_API inline void ltoa(long value, char* buffer, unsigned int radix);
ZOLT_API void ltoa(long value, unsigned short* buffer, unsigned int radix);
ZOLT_API void ltoa(long value, wchar_t* buffer, unsigned int radix);
ZOLT_API void ultoa(unsigned long value, char* buffer, unsigned int radix);
ZOLT_API void ultoa(unsigned long value, unsigned short* buffer, unsigned int radix);
ZOLT_API void ultoa(unsigned long value, wchar_t* buffer, unsigned int radix);
ZOLT_API inline void lltoa(long long value, char* buffer, unsigned int radix);
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

/// The text of a fundamental type; bool gives "1" or "0".
template <>
ZOLT_API strings::ustring8 to_str<bool>(bool const& value);
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

namespace _private {

/// "00" to "99" and the like, one after the other.
template <unsigned int Radix>
struct digit_pairs_t {
    char units[2 * Radix * Radix];

    constexpr digit_pairs_t() : units() {
        constexpr char const* digits = "0123456789abcdefghijklmnopqrstuvwxyz";
        for (unsigned int i = 0; i < Radix * Radix; ++i) {
            units[2 * i] = digits[i / Radix];
            units[2 * i + 1] = digits[i % Radix];
        }
    }
};
template <unsigned int Radix>
inline constexpr digit_pairs_t<Radix> digit_pairs;

/// Those that 64 bits hold.
template <unsigned int Radix>
struct powers_t {
    unsigned long long of[Radix == 10 ? 20 : 13];

    constexpr powers_t() : of() {
        unsigned long long power = 1;
        for (auto& each : of) each = power, power *= Radix;
    }
};
template <unsigned int Radix>
inline constexpr powers_t<Radix> powers;

/// 1233 / 2^12 and 792 / 2^12 stand for the logarithms of 2: the estimate is the number of digits or one less.
template <unsigned int Radix>
inline unsigned int count_digits(unsigned long long value) {
    auto const bits = static_cast<unsigned int>(64 - __builtin_clzll(value | 1));
    if constexpr (Radix == 16) return (bits + 3) / 4;
    unsigned int const estimate = bits * (Radix == 10 ? 1233 : 792) >> 12;
    return estimate + ((value | 1) >= powers<Radix>.of[estimate]);
}

template <unsigned int Radix, typename C>
inline void put_pair(C* to, unsigned int number) {
    char const* const pair = digit_pairs<Radix>.units + 2 * number;
    if constexpr (sizeof(C) == 1) {
        std::memcpy(to, pair, 2);
    } else {
        to[0] = static_cast<C>(static_cast<unsigned char>(pair[0]));
        to[1] = static_cast<C>(static_cast<unsigned char>(pair[1]));
    }
}

/// Writes the digits from the last to the first at their final place and a zero unit behind them. 64-bit division
/// is kept to the part that needs it.
template <unsigned int Radix, typename C>
inline void write_pairs(unsigned long long value, C* buffer) {
    constexpr unsigned int square = Radix * Radix, fourth = square * square;
    C* at = buffer + count_digits<Radix>(value);
    *at = 0;
    for (; value > 0xFFFFFFFF; value /= fourth) {
        auto const low = static_cast<unsigned int>(value % fourth);
        put_pair<Radix>(at -= 2, low % square);
        put_pair<Radix>(at -= 2, low / square);
    }
    auto rest = static_cast<unsigned int>(value);
    for (; rest >= square; rest /= square) put_pair<Radix>(at -= 2, rest % square);
    if (rest >= Radix) {
        put_pair<Radix>(at - 2, rest);
    } else {
        at[-1] = static_cast<C>(static_cast<unsigned char>(digit_pairs<Radix>.units[2 * rest + 1]));
    }
}

} // namespace _private

// A radix that the compiler knows is written where the call stands.

inline void lltoa(long long value, char* buffer, unsigned int radix) {
    auto magnitude = static_cast<unsigned long long>(value);
    if (value < 0 && radix - 2 <= 34) {
        *buffer++ = '-';
        magnitude = 0 - magnitude;
    }
    if (__builtin_constant_p(radix) && radix == 10) return _private::write_pairs<10>(magnitude, buffer);
    if (__builtin_constant_p(radix) && radix == 16) return _private::write_pairs<16>(magnitude, buffer);
    if (__builtin_constant_p(radix) && radix == 36) return _private::write_pairs<36>(magnitude, buffer);
    ulltoa(magnitude, buffer, radix);
}

inline void ltoa(long value, char* buffer, unsigned int radix) { lltoa(value, buffer, radix); }

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

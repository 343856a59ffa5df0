// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Text to numbers: integers of every width in radix 2 to 36 from 8-, 16- and 32-bit text, and
// floating-point values from UTF-8 text. The way back is <zolt/generic/convert/x_to_str.hpp>.
//
//     generic::convert::str_to_int32("  -42xyz");                             // -42
//     generic::convert::str_to_uint8("256");                                  // 255: saturated
//     generic::convert::str_to_int64(L"zz", 2, types::radix_t::base_36);      // 1295
//     generic::convert::str_to_double("1.5e3abc");                            // 1500
//
// Integers. All functions share one reader: blanks (is_space), one optional sign, digits. It stops
// at the first unit that is no digit of the radix; what follows is ignored. Text without a digit in
// that place reads as 0. Digits are ASCII only.
//
//   text    not null. With `length` 0 it ends before its first NUL, otherwise exactly `length` units
//           belong to it; a NUL among them is an ordinary unit that is no digit.
//   radix   2 to 36. `automatic` takes it from the prefix: "0x" or "0X" 16, "0b" or "0B" 2, "0" 8,
//           anything else 10.
//   throw_on_overflow
//           false: a number outside the type's range gives the nearest limit.
//           true: it throws exceptions::overflow_error "Number value is to large" or
//           exceptions::underflow_error "Number value is to small". A negative non-zero number is
//           too small for the unsigned types.
//
// A radix of 1 or above 36 throws exceptions::invalid_argument_value whatever the flag says.
//
// Kept: text of blanks only, or of blanks and a lone sign, is 0 before the radix is looked at; empty
// text is not and throws for an invalid radix.
// Kept: an explicit radix skips no prefix, so "0x1F" in radix 16 reads as 0.
// Kept: for `automatic` a backslash stands for the leading zero: "\\x1F" reads as 31, "\\17" as 15.
// Kept: "08" reads as 0 with `automatic`, since 8 is no octal digit; so do "0x" and "0b".
//
// Nothing is allocated unless an exception is thrown; a text is read in one pass, an unusual one in two.
// No function depends on the locale but is_space, and through it the blanks in front of a number.
#pragma once

#include <zolt/export.hpp>
#include <zolt/strings/ustring.hpp>
#include <zolt/types/radix.hpp>

#include <cstdint>
#include <cstring>
#include <limits>
#include <string> // declares std::locale; include <locale> to name one

namespace ZOLT_2_18::generic::convert {

/// True when the C library's isspace, in the C locale in force, calls the unit a blank. The value is
/// taken as unsigned; units above 0xFF are no blanks.
ZOLT_API bool is_space(char unit);
ZOLT_API bool is_space(unsigned short unit);
ZOLT_API bool is_space(wchar_t unit);

/// -128 to 127.
ZOLT_API signed char str_to_int8(char const* text, unsigned long length = 0,
                                 types::radix_t::base radix = types::radix_t::automatic,
                                 bool throw_on_overflow = false);
ZOLT_API signed char str_to_int8(unsigned short const* text, unsigned long length = 0,
                                 types::radix_t::base radix = types::radix_t::automatic,
                                 bool throw_on_overflow = false);
ZOLT_API signed char str_to_int8(wchar_t const* text, unsigned long length = 0,
                                 types::radix_t::base radix = types::radix_t::automatic,
                                 bool throw_on_overflow = false);

/// -32768 to 32767.
ZOLT_API short str_to_int16(char const* text, unsigned long length = 0,
                            types::radix_t::base radix = types::radix_t::automatic, bool throw_on_overflow = false);
ZOLT_API short str_to_int16(unsigned short const* text, unsigned long length = 0,
                            types::radix_t::base radix = types::radix_t::automatic, bool throw_on_overflow = false);
ZOLT_API short str_to_int16(wchar_t const* text, unsigned long length = 0,
                            types::radix_t::base radix = types::radix_t::automatic, bool throw_on_overflow = false);

/// Another name of str_to_int16.
ZOLT_API short str_to_short(char const* text, unsigned long length = 0,
                            types::radix_t::base radix = types::radix_t::automatic, bool throw_on_overflow = false);
ZOLT_API short str_to_short(unsigned short const* text, unsigned long length = 0,
                            types::radix_t::base radix = types::radix_t::automatic, bool throw_on_overflow = false);
ZOLT_API short str_to_short(wchar_t const* text, unsigned long length = 0,
                            types::radix_t::base radix = types::radix_t::automatic, bool throw_on_overflow = false);

/// -2147483648 to 2147483647.
ZOLT_API int str_to_int32(char const* text, unsigned long length, types::radix_t::base radix,
                          bool throw_on_overflow);
inline int str_to_int32(char const* text, unsigned long length = 0,
                        types::radix_t::base radix = types::radix_t::automatic);
ZOLT_API int str_to_int32(unsigned short const* text, unsigned long length = 0,
                          types::radix_t::base radix = types::radix_t::automatic, bool throw_on_overflow = false);
ZOLT_API int str_to_int32(wchar_t const* text, unsigned long length = 0,
                          types::radix_t::base radix = types::radix_t::automatic, bool throw_on_overflow = false);

/// Another name of str_to_int32.
ZOLT_API int str_to_int(char const* text, unsigned long length, types::radix_t::base radix, bool throw_on_overflow);
inline int str_to_int(char const* text, unsigned long length = 0,
                      types::radix_t::base radix = types::radix_t::automatic);
ZOLT_API int str_to_int(unsigned short const* text, unsigned long length = 0,
                        types::radix_t::base radix = types::radix_t::automatic, bool throw_on_overflow = false);
ZOLT_API int str_to_int(wchar_t const* text, unsigned long length = 0,
                        types::radix_t::base radix = types::radix_t::automatic, bool throw_on_overflow = false);

/// Another name of str_to_int32 on every build.
/// Kept: saturates or throws at the 32-bit limits also where long has 64 bits.
ZOLT_API long str_to_long(char const* text, unsigned long length = 0,
                          types::radix_t::base radix = types::radix_t::automatic, bool throw_on_overflow = false);
ZOLT_API long str_to_long(unsigned short const* text, unsigned long length = 0,
                          types::radix_t::base radix = types::radix_t::automatic, bool throw_on_overflow = false);
ZOLT_API long str_to_long(wchar_t const* text, unsigned long length = 0,
                          types::radix_t::base radix = types::radix_t::automatic, bool throw_on_overflow = false);

/// Another name of str_to_int32.
ZOLT_API int str_to_signed(char const* text, unsigned long length = 0,
                           types::radix_t::base radix = types::radix_t::automatic, bool throw_on_overflow = false);
ZOLT_API int str_to_signed(unsigned short const* text, unsigned long length = 0,
                           types::radix_t::base radix = types::radix_t::automatic, bool throw_on_overflow = false);
ZOLT_API int str_to_signed(wchar_t const* text, unsigned long length = 0,
                           types::radix_t::base radix = types::radix_t::automatic, bool throw_on_overflow = false);

/// -9223372036854775808 to 9223372036854775807.
ZOLT_API long long str_to_int64(char const* text, unsigned long length, types::radix_t::base radix,
                                bool throw_on_overflow);
inline long long str_to_int64(char const* text, unsigned long length = 0,
                              types::radix_t::base radix = types::radix_t::automatic);
ZOLT_API long long str_to_int64(unsigned short const* text, unsigned long length = 0,
                                types::radix_t::base radix = types::radix_t::automatic,
                                bool throw_on_overflow = false);
ZOLT_API long long str_to_int64(wchar_t const* text, unsigned long length = 0,
                                types::radix_t::base radix = types::radix_t::automatic,
                                bool throw_on_overflow = false);

/// 0 to 255.
ZOLT_API unsigned char str_to_uint8(char const* text, unsigned long length = 0,
                                    types::radix_t::base radix = types::radix_t::automatic,
                                    bool throw_on_overflow = false);
ZOLT_API unsigned char str_to_uint8(unsigned short const* text, unsigned long length = 0,
                                    types::radix_t::base radix = types::radix_t::automatic,
                                    bool throw_on_overflow = false);
ZOLT_API unsigned char str_to_uint8(wchar_t const* text, unsigned long length = 0,
                                    types::radix_t::base radix = types::radix_t::automatic,
                                    bool throw_on_overflow = false);

/// 0 to 65535.
ZOLT_API unsigned short str_to_uint16(char const* text, unsigned long length = 0,
                                      types::radix_t::base radix = types::radix_t::automatic,
                                      bool throw_on_overflow = false);
ZOLT_API unsigned short str_to_uint16(unsigned short const* text, unsigned long length = 0,
                                      types::radix_t::base radix = types::radix_t::automatic,
                                      bool throw_on_overflow = false);
ZOLT_API unsigned short str_to_uint16(wchar_t const* text, unsigned long length = 0,
                                      types::radix_t::base radix = types::radix_t::automatic,
                                      bool throw_on_overflow = false);

/// 0 to 4294967295.
ZOLT_API unsigned int str_to_uint32(char const* text, unsigned long length = 0,
                                    types::radix_t::base radix = types::radix_t::automatic,
                                    bool throw_on_overflow = false);
ZOLT_API unsigned int str_to_uint32(unsigned short const* text, unsigned long length = 0,
                                    types::radix_t::base radix = types::radix_t::automatic,
                                    bool throw_on_overflow = false);
ZOLT_API unsigned int str_to_uint32(wchar_t const* text, unsigned long length = 0,
                                    types::radix_t::base radix = types::radix_t::automatic,
                                    bool throw_on_overflow = false);

/// Another name of str_to_uint32.
ZOLT_API unsigned int str_to_unsigned(char const* text, unsigned long length = 0,
                                      types::radix_t::base radix = types::radix_t::automatic,
                                      bool throw_on_overflow = false);
ZOLT_API unsigned int str_to_unsigned(unsigned short const* text, unsigned long length = 0,
                                      types::radix_t::base radix = types::radix_t::automatic,
                                      bool throw_on_overflow = false);
ZOLT_API unsigned int str_to_unsigned(wchar_t const* text, unsigned long length = 0,
                                      types::radix_t::base radix = types::radix_t::automatic,
                                      bool throw_on_overflow = false);

/// 0 to 18446744073709551615.
ZOLT_API unsigned long long str_to_uint64(char const* text, unsigned long length = 0,
                                          types::radix_t::base radix = types::radix_t::automatic,
                                          bool throw_on_overflow = false);
ZOLT_API unsigned long long str_to_uint64(unsigned short const* text, unsigned long length = 0,
                                          types::radix_t::base radix = types::radix_t::automatic,
                                          bool throw_on_overflow = false);
ZOLT_API unsigned long long str_to_uint64(wchar_t const* text, unsigned long length = 0,
                                          types::radix_t::base radix = types::radix_t::automatic,
                                          bool throw_on_overflow = false);

/// The number at the start of the text as std::istream's formatted input reads it in the given locale,
/// by default the global one: blanks, sign, digits, decimal point, exponent; neither hexadecimal digits
/// nor infinities nor not-a-number. What follows the number is ignored. Returns 0 when the stream would
/// fail: no number, a dangling exponent ("1e"), too large for the type, groups in the wrong places. A
/// number too small for the type gives the nearest denormal value or a zero of its sign.
/// In the classic locale no stream is made and nothing is allocated.
ZOLT_API float str_to_float(strings::ustring8 const& text);
ZOLT_API float str_to_float(strings::ustring8 const& text, std::locale const& locale);
ZOLT_API double str_to_double(strings::ustring8 const& text);
ZOLT_API double str_to_double(strings::ustring8 const& text, std::locale const& locale);
ZOLT_API long double str_to_long_double(strings::ustring8 const& text);
ZOLT_API long double str_to_long_double(strings::ustring8 const& text, std::locale const& locale);

// ---------------------------------------------------------------------------------------------------------
// The usual text is read where the call stands: one "-" or none, few digits, nothing in front or behind, a number
// within the limits. For anything else the functions of the library start again from the beginning.

namespace _private {

/// The unit's value as a digit, at least 36 when it is none in any radix.
constexpr unsigned int digit_value(unsigned int unit) {
    if (unit - '0' < 10) return unit - '0';
    unsigned int const letter = (unit | 0x20) - 'a';
    return letter < 26 ? letter + 10 : 36;
}

/// The same for each byte.
struct digit_values_t {
    unsigned char of[256];

    constexpr digit_values_t() : of() {
        for (unsigned int byte = 0; byte < 256; ++byte) of[byte] = static_cast<unsigned char>(digit_value(byte));
    }
};
inline constexpr digit_values_t digit_values;

constexpr std::uint64_t in_every_byte(std::uint64_t byte) { return byte * 0x0101010101010101; }

/// In the top bit of each byte whether its value is above 9, right up to the first one that is.
constexpr std::uint64_t beyond_nine(std::uint64_t values) {
    return ((values + in_every_byte(0x80 - 10)) | values) & in_every_byte(0x80);
}

/// The number that eight digits make.
constexpr std::uint64_t decimal_number(std::uint64_t values) {
    std::uint64_t const pairs = values * 10 + (values >> 8);
    constexpr std::uint64_t every_fourth_byte = 0x000000FF000000FF;
    return ((pairs & every_fourth_byte) * (100 + (std::uint64_t{1'000'000} << 32)) +
            (pairs >> 16 & every_fourth_byte) * (1 + (std::uint64_t{10'000} << 32))) >>
           32;
}

/// The number that 1 to 8 decimal digits make: they become eight with zeros in front. False when there is another
/// unit among them.
[[gnu::always_inline]] inline bool read_decimal(char const* digits, unsigned long count, std::uint64_t& number) {
    std::uint64_t units;
    if (count >= 4) {
        std::uint32_t first, last; // these overlap
        std::memcpy(&first, digits, sizeof first);
        std::memcpy(&last, digits + count - sizeof last, sizeof last);
        units = first | std::uint64_t{last} << 8 * (count - 4);
    } else {
        auto const unit = [=](unsigned long at) {
            return std::uint64_t{static_cast<unsigned char>(digits[at])} << 8 * at;
        };
        units = unit(0) | unit(count / 2) | unit(count - 1);
    }
    std::uint64_t const values = (units ^ in_every_byte('0')) << (64 - 8 * count);
    number = decimal_number(values);
    return beyond_nine(values) == 0;
}

template <typename T>
struct usual_text {
    char const* text;
    unsigned long length; ///< 0: the text ends before its NUL
    types::radix_t::base radix;

    [[gnu::always_inline]] bool read(T& number) const {
        bool const negative = *text == '-';
        char const* const digits = text + negative;
        std::uint64_t magnitude = 0;
        bool const is_terminated =
            __builtin_constant_p(length) && length == 0; // else one form of reading is enough
        if (!(is_terminated ? read_terminated(digits, magnitude) : read_bounded(digits, magnitude))) return false;
        if (magnitude > static_cast<std::uint64_t>(std::numeric_limits<T>::max())) return false;
        number = static_cast<T>(negative ? 0 - magnitude : magnitude);
        return true;
    }

private:
    /// How many digits are read here: with them a number has 64 bits at most.
    static constexpr unsigned long most_digits(unsigned int base) { return base > 16 ? 12 : base == 16 ? 16 : 8; }

    [[gnu::always_inline]] bool read_bounded(char const* at, std::uint64_t& magnitude) const {
        char const* const end = text + length;
        unsigned int base = radix;
        if (base == types::radix_t::automatic) {
            base = 10;
            if (at != end && (*at == '0' || *at == '\\')) {
                if (end - at < 3 || *at != '0' || (at[1] | 0x20) != 'x') return false;
                base = 16;
                at += 2;
            }
        }
        auto const count = static_cast<unsigned long>(end - at);
        if (base - 2 > 34 || count - 1 >= most_digits(base)) return false;
        if (base == 10) return read_decimal(at, count, magnitude);
        do {
            unsigned int const digit = digit_values.of[static_cast<unsigned char>(*at)];
            if (digit >= base) return false;
            magnitude = magnitude * base + digit;
        } while (++at != end);
        return true;
    }

    [[gnu::always_inline]] bool read_terminated(char const* at, std::uint64_t& magnitude) const {
        char const* const begin = at;
        unsigned int digit = 0;
        if (radix - 2u > 34) return false;
        for (; (digit = digit_values.of[static_cast<unsigned char>(*at)]) < radix; ++at) {
            magnitude = magnitude * radix + digit;
        }
        return static_cast<unsigned long>(at - begin) - 1 < most_digits(radix);
    }
};

} // namespace _private

[[gnu::always_inline]] inline int str_to_int32(char const* text, unsigned long length, types::radix_t::base radix) {
    int number = 0;
    bool const is_usual = _private::usual_text<int>{text, length, radix}.read(number);
    return is_usual ? number : str_to_int32(text, length, radix, false);
}

[[gnu::always_inline]] inline int str_to_int(char const* text, unsigned long length, types::radix_t::base radix) {
    return str_to_int32(text, length, radix);
}

[[gnu::always_inline]] inline long long str_to_int64(char const* text, unsigned long length,
                                                     types::radix_t::base radix) {
    long long number = 0;
    bool const is_usual = _private::usual_text<long long>{text, length, radix}.read(number);
    return is_usual ? number : str_to_int64(text, length, radix, false);
}

} // namespace ZOLT_2_18::generic::convert

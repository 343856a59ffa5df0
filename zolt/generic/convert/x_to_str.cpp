// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Digits are counted first, where that is cheap, and then written from the last to the first at
// their final place: decimal ones in pairs out of a table, those of a power of two by shifts. The
// other radixes are written in the order in which division yields them and turned round. What can be
// done in 32 bits is, since 64-bit division is slow on every build.
#include <zolt/generic/convert/x_to_str.hpp>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <limits>
#include <locale>
#include <sstream>
#include <type_traits>

namespace ZOLT_2_18::generic::convert {
namespace {

constexpr unsigned char digit_units[] = "0123456789abcdefghijklmnopqrstuvwxyz";

/// "00" to "99", one after the other.
constexpr auto digit_pairs = [] {
    std::array<unsigned char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = digit_units[i / 10];
        pairs[2 * i + 1] = digit_units[i % 10];
    }
    return pairs;
}();

constexpr auto powers_of_ten = [] {
    std::array<std::uint64_t, 20> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
    return powers;
}();

/// 1233 / 4096 stands for log10(2): the estimate is the number of digits or one less.
unsigned int decimal_length(std::uint64_t value) {
    unsigned int const estimate = static_cast<unsigned int>(std::bit_width(value | 1)) * 1233 >> 12;
    return estimate + (value >= powers_of_ten[estimate]);
}

template <typename C>
C* put_pair_before(C* end, std::uint32_t below_100) {
    unsigned char const* const pair = digit_pairs.data() + std::size_t{2} * below_100;
    *--end = static_cast<C>(pair[1]);
    *--end = static_cast<C>(pair[0]);
    return end;
}

template <typename C>
C* write_decimal(std::uint64_t value, C* buffer) {
    C* const end = buffer + decimal_length(value | (value == 0));
    C* at = end;
    for (; value > std::numeric_limits<std::uint32_t>::max(); value /= 100'000'000) {
        auto low = static_cast<std::uint32_t>(value % 100'000'000);
        for (int pairs = 4; pairs; --pairs, low /= 100) at = put_pair_before(at, low % 100);
    }
    auto rest = static_cast<std::uint32_t>(value);
    for (; rest >= 100; rest /= 100) at = put_pair_before(at, rest % 100);
    if (rest >= 10) {
        put_pair_before(at, rest);
    } else {
        *--at = static_cast<C>(digit_units[rest]);
    }
    return end;
}

template <typename C>
C* write_power_of_two(std::uint64_t value, C* buffer, unsigned int radix) {
    auto const bits = static_cast<unsigned int>(std::countr_zero(radix));
    C* end = buffer + 1;
    for (auto rest = value; rest >>= bits;) ++end;
    C* at = end;
    do {
        *--at = static_cast<C>(digit_units[value & (radix - 1)]);
    } while (value >>= bits);
    return end;
}

template <typename C>
C* write_by_division(std::uint64_t value, C* buffer, unsigned int radix) {
    C* end = buffer;
    for (; value > std::numeric_limits<std::uint32_t>::max(); value /= radix) {
        *end++ = static_cast<C>(digit_units[value % radix]);
    }
    auto rest = static_cast<std::uint32_t>(value);
    do {
        *end++ = static_cast<C>(digit_units[rest % radix]);
    } while (rest /= radix);
    std::reverse(buffer, end);
    return end;
}

/// Returns the place behind the last unit; writes no terminating zero.
template <typename T, typename C>
C* write_number(T value, C* buffer, unsigned int radix) {
    auto magnitude = static_cast<std::uint64_t>(value);
    if constexpr (std::is_signed_v<T>) {
        if (value < 0) {
            *buffer++ = static_cast<C>('-');
            magnitude = 0 - magnitude;
        }
    }
    if (radix == 10) return write_decimal(magnitude, buffer);
    if (std::has_single_bit(radix)) return write_power_of_two(magnitude, buffer, radix);
    return write_by_division(magnitude, buffer, radix);
}

template <typename T, typename C>
void write_text(T value, C* buffer, unsigned int radix) {
    bool const is_radix = radix >= 2 && radix <= 36;
    *(is_radix ? write_number(value, buffer, radix) : buffer) = 0;
}

bool is_classic_in_force() { return std::locale() == std::locale::classic(); }

template <typename T>
strings::ustring8 streamed(T const& value) {
    return _private::streamed_text(
        [](std::ostream& stream, void const* boxed) { stream << *static_cast<T const*>(boxed); }, &value);
}

strings::ustring8 character_text(char value) { return strings::ustring8(1, value); }

template <typename T>
strings::ustring8 integer_text(T value) {
    if (!is_classic_in_force()) return streamed(value);
    char digits[20];
    return strings::ustring8(digits, write_number(value, digits, 10));
}

/// A stream's default form is that of "%g" with six digits, which is chars_format::general.
template <typename T>
strings::ustring8 floating_text(T value) {
    if (!is_classic_in_force()) return streamed(value);
    char text[32];
    auto const written = std::to_chars(text, text + sizeof text, value, std::chars_format::general, 6);
    return strings::ustring8(text, written.ptr);
}

} // namespace

void ltoa(long value, char* buffer, unsigned int radix) { write_text(value, buffer, radix); }
void ltoa(long value, unsigned short* buffer, unsigned int radix) { write_text(value, buffer, radix); }
void ltoa(long value, wchar_t* buffer, unsigned int radix) { write_text(value, buffer, radix); }
void ultoa(unsigned long value, char* buffer, unsigned int radix) { write_text(value, buffer, radix); }
void ultoa(unsigned long value, unsigned short* buffer, unsigned int radix) { write_text(value, buffer, radix); }
void ultoa(unsigned long value, wchar_t* buffer, unsigned int radix) { write_text(value, buffer, radix); }
void lltoa(long long value, char* buffer, unsigned int radix) { write_text(value, buffer, radix); }
void lltoa(long long value, unsigned short* buffer, unsigned int radix) { write_text(value, buffer, radix); }
void lltoa(long long value, wchar_t* buffer, unsigned int radix) { write_text(value, buffer, radix); }
void ulltoa(unsigned long long value, char* buffer, unsigned int radix) { write_text(value, buffer, radix); }
void ulltoa(unsigned long long value, unsigned short* buffer, unsigned int radix) {
    write_text(value, buffer, radix);
}
void ulltoa(unsigned long long value, wchar_t* buffer, unsigned int radix) { write_text(value, buffer, radix); }

strings::ustring8 _private::streamed_text(void (*insert)(std::ostream&, void const*), void const* value) {
    std::ostringstream stream;
    insert(stream, value);
    return std::move(stream).str();
}

// clang-format off
template <> strings::ustring8 to_str<bool>(bool const& value) { return integer_text(value); }
template <> strings::ustring8 to_str<char>(char const& value) { return character_text(value); }
template <> strings::ustring8 to_str<signed char>(signed char const& value) { return character_text(static_cast<char>(value)); }
template <> strings::ustring8 to_str<unsigned char>(unsigned char const& value) { return character_text(static_cast<char>(value)); }
template <> strings::ustring8 to_str<short>(short const& value) { return integer_text(value); }
template <> strings::ustring8 to_str<unsigned short>(unsigned short const& value) { return integer_text(value); }
template <> strings::ustring8 to_str<int>(int const& value) { return integer_text(value); }
template <> strings::ustring8 to_str<unsigned int>(unsigned int const& value) { return integer_text(value); }
template <> strings::ustring8 to_str<long>(long const& value) { return integer_text(value); }
template <> strings::ustring8 to_str<unsigned long>(unsigned long const& value) { return integer_text(value); }
template <> strings::ustring8 to_str<long long>(long long const& value) { return integer_text(value); }
template <> strings::ustring8 to_str<unsigned long long>(unsigned long long const& value) { return integer_text(value); }
template <> strings::ustring8 to_str<float>(float const& value) { return floating_text(double{value}); }
template <> strings::ustring8 to_str<double>(double const& value) { return floating_text(value); }
template <> strings::ustring8 to_str<long double>(long double const& value) { return floating_text(value); }
// clang-format on

} // namespace ZOLT_2_18::generic::convert

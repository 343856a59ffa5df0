// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Digits are counted first and then written from the last to the first at their final place. Radix 10, 16 and 36
// write pairs out of tables of their own and divide by constants; other powers of two go by shifts. The remaining
// radixes are written in the order in which division yields them and turned round. What can be done in 32 bits is,
// since 64-bit division is slow on every build.
#include <zolt/generic/convert/x_to_str.hpp>

#include <zolt/generic/convert/classic_locale_private.hpp>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>
#include <locale>
#include <sstream>
#include <type_traits>

namespace ZOLT_2_18::generic::convert {
namespace {

constexpr unsigned char digit_units[] = "0123456789abcdefghijklmnopqrstuvwxyz";

/// "00" to "99" and the like, one after the other.
template <std::size_t Radix>
constexpr auto digit_pairs = [] {
    std::array<unsigned char, 2 * Radix * Radix> pairs{};
    for (std::size_t i = 0; i < Radix * Radix; ++i) {
        pairs[2 * i] = digit_units[i / Radix];
        pairs[2 * i + 1] = digit_units[i % Radix];
    }
    return pairs;
}();

/// Those that 64 bits hold.
template <std::uint64_t Radix>
constexpr auto powers = [] {
    std::array<std::uint64_t, Radix == 10 ? 20 : 13> all{1};
    for (std::size_t i = 1; i < all.size(); ++i) all[i] = all[i - 1] * Radix;
    return all;
}();

/// 1233 / 2^12 and 792 / 2^12 stand for the logarithms of 2: the estimate is the number of digits or one less.
template <std::uint64_t Radix>
unsigned int count_digits(std::uint64_t value) {
    auto const bits = static_cast<unsigned int>(std::bit_width(value | 1));
    if constexpr (Radix == 16) return (bits + 3) / 4;
    unsigned int const estimate = bits * (Radix == 10 ? 1233 : 792) >> 12;
    return estimate + ((value | 1) >= powers<Radix>[estimate]);
}

template <std::size_t Radix, typename C>
C* put_pair_before(C* end, std::uint32_t number) {
    unsigned char const* const pair = digit_pairs<Radix>.data() + std::size_t{2} * number;
    end -= 2;
    if constexpr (sizeof(C) == 1) {
        std::memcpy(end, pair, 2);
    } else {
        end[0] = pair[0];
        end[1] = pair[1];
    }
    return end;
}

template <std::uint32_t Radix, typename C>
C* put_four_before(C* end, std::uint32_t number) {
    constexpr std::uint32_t square = Radix * Radix;
    end = put_pair_before<Radix>(end, number % square);
    return put_pair_before<Radix>(end, number / square);
}

template <std::uint32_t Radix, typename C>
[[gnu::always_inline]] inline C* write_pairs(std::uint64_t value, C* buffer) {
    constexpr std::uint32_t square = Radix * Radix, fourth = square * square;
    C* const end = buffer + count_digits<Radix>(value);
    C* at = end;
    if constexpr (Radix == 10) {
        for (; value > std::numeric_limits<std::uint32_t>::max(); value /= 100'000'000) {
            auto const low = static_cast<std::uint32_t>(value % 100'000'000);
            at = put_four_before<Radix>(at, low % fourth);
            at = put_four_before<Radix>(at, low / fourth);
        }
    } else {
        for (; value > std::numeric_limits<std::uint32_t>::max(); value /= fourth) {
            at = put_four_before<Radix>(at, static_cast<std::uint32_t>(value % fourth));
        }
    }
    auto rest = static_cast<std::uint32_t>(value);
    for (; rest >= fourth; rest /= fourth) at = put_four_before<Radix>(at, rest % fourth);
    if (rest >= square) {
        at = put_pair_before<Radix>(at, rest % square);
        rest /= square;
    }
    if (rest >= Radix) {
        put_pair_before<Radix>(at, rest);
    } else {
        *--at = static_cast<C>(digit_units[rest]);
    }
    return end;
}

template <typename C>
C* write_power_of_two(std::uint64_t value, C* buffer, unsigned int radix) {
    auto const bits = static_cast<unsigned int>(std::countr_zero(radix));
    C* const end = buffer + (static_cast<unsigned int>(std::bit_width(value | 1)) + bits - 1) / bits;
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

template <typename C>
[[gnu::noinline]] void write_rarer_radix(std::uint64_t value, C* buffer, unsigned int radix) {
    bool const is_power_of_two = std::has_single_bit(radix);
    *(is_power_of_two ? write_power_of_two(value, buffer, radix) : write_by_division(value, buffer, radix)) = 0;
}

template <typename T>
std::uint64_t magnitude_of(T value) {
    auto const word = static_cast<std::uint64_t>(value);
    return value < 0 ? 0 - word : word;
}

template <typename T, typename C>
[[gnu::always_inline]] inline void write_text(T value, C* buffer, unsigned int radix) {
    if (radix - 2 > 34) {
        *buffer = 0;
        return;
    }
    *buffer = static_cast<C>('-'); // where there is no sign a digit takes its place
    buffer += value < 0;
    auto const magnitude = magnitude_of(value);
    if (radix == 10) {
        *write_pairs<10>(magnitude, buffer) = 0;
    } else if (radix == 16) {
        *write_pairs<16>(magnitude, buffer) = 0;
    } else if (radix == 36) {
        *write_pairs<36>(magnitude, buffer) = 0;
    } else {
        write_rarer_radix(magnitude, buffer, radix);
    }
}

bool is_classic_in_force() { return _private::is_classic(std::locale()); }

template <typename T>
strings::ustring8 streamed(T const& value) {
    return _private::streamed_text(
        [](std::ostream& stream, void const* boxed) { stream << *static_cast<T const*>(boxed); }, &value);
}

strings::ustring8 character_text(char value) { return strings::ustring8(1, value); }

template <typename T>
strings::ustring8 integer_text(T value) {
    if (!is_classic_in_force()) return streamed(value);
    char digits[20] = {'-'};
    auto const number = +value; // bool as int
    char const* const end = write_pairs<10>(magnitude_of(number), digits + (number < 0));
    return strings::ustring8(digits, static_cast<std::size_t>(end - digits));
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

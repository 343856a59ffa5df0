// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Digits are counted first and then written from the last to the first at their final place. Radix 10, 16 and 36
// write pairs out of tables of their own and divide by constants, which the header does too where it is given the
// radix as a constant; other powers of two go by shifts. The remaining radixes are written in the order in which
// division yields them and turned round. What can be done in 32 bits is, since 64-bit division is slow on every
// build.
#include <zolt/generic/convert/x_to_str.hpp>

#include <zolt/generic/convert/classic_locale_private.hpp>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstdint>
#include <limits>
#include <locale>
#include <sstream>

namespace ZOLT_2_18::generic::convert {
namespace {

constexpr unsigned char digit_units[] = "0123456789abcdefghijklmnopqrstuvwxyz";

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

template <typename C>
void write_magnitude(std::uint64_t magnitude, C* buffer, unsigned int radix) {
    if (radix - 2 > 34) {
        *buffer = 0;
    } else if (radix == 10) {
        _private::write_pairs<10>(magnitude, buffer);
    } else if (radix == 16) {
        _private::write_pairs<16>(magnitude, buffer);
    } else if (radix == 36) {
        _private::write_pairs<36>(magnitude, buffer);
    } else {
        write_rarer_radix(magnitude, buffer, radix);
    }
}

template <typename T, typename C>
void write_text(T value, C* buffer, unsigned int radix) {
    *buffer = static_cast<C>('-'); // where there is no sign a digit or the end takes its place
    write_magnitude(magnitude_of(value), buffer + (value < 0 && radix - 2 <= 34), radix);
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
    char digits[21] = {'-'};
    auto const number = +value; // bool as int
    auto const magnitude = magnitude_of(number);
    _private::write_pairs<10>(magnitude, digits + (number < 0));
    return strings::ustring8(digits, (number < 0) + _private::count_digits<10>(magnitude));
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

// The two that are inline in the header are kept for whoever calls them by address.
[[gnu::used]] static void (*const kept_ltoa)(long, char*, unsigned int) = ltoa;
[[gnu::used]] static void (*const kept_lltoa)(long long, char*, unsigned int) = lltoa;

void ltoa(long value, unsigned short* buffer, unsigned int radix) { write_text(value, buffer, radix); }
void ltoa(long value, wchar_t* buffer, unsigned int radix) { write_text(value, buffer, radix); }
void ultoa(unsigned long value, char* buffer, unsigned int radix) { write_text(value, buffer, radix); }
void ultoa(unsigned long value, unsigned short* buffer, unsigned int radix) { write_text(value, buffer, radix); }
void ultoa(unsigned long value, wchar_t* buffer, unsigned int radix) { write_text(value, buffer, radix); }
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

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/generic/convert/x_to_str.hpp>

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace ZOLT_2_18::generic::convert;

template <typename T>
std::string slow_digits(T value, unsigned int radix) {
    auto rest = static_cast<unsigned long long>(value);
    if (value < 0) rest = 0 - rest;
    std::string text;
    do {
        text.insert(0, 1, "0123456789abcdefghijklmnopqrstuvwxyz"[rest % radix]);
    } while (rest /= radix);
    return (value < 0 ? "-" : "") + text;
}

/// Writes into a block of exactly the needed size.
template <typename C, typename Writer, typename T>
void check(Writer write, T value, unsigned int radix) {
    std::string const wanted = slow_digits(value, radix);
    std::vector<C> block(wanted.size() + 1, C{'?'});
    write(value, block.data(), radix);
    ASSERT_EQ(std::string(block.begin(), block.end()), wanted + '\0') << radix;
}

void check_all(unsigned long long value, unsigned int radix) {
    auto const all = [radix](auto write, auto number) {
        check<char>(write, number, radix);
        check<unsigned short>(write, number, radix);
        check<wchar_t>(write, number, radix);
    };
    all([](auto... a) { ltoa(a...); }, static_cast<long>(value));
    all([](auto... a) { ultoa(a...); }, static_cast<unsigned long>(value));
    all([](auto... a) { lltoa(a...); }, static_cast<long long>(value));
    all([](auto... a) { ulltoa(a...); }, value);
}

TEST(ltoa, writes_as_repeated_division_does) {
    std::vector<unsigned long long> values{0};
    for (unsigned long long power = 1; power; power *= 2)
        values.insert(values.end(), {power - 1, power, 0 - power});
    for (unsigned long long power = 1, i = 0; i < 20; ++i, power *= 10)
        values.insert(values.end(), {power - 1, power, power * 9, 0 - power});
    for (auto const value : values)
        for (unsigned int radix = 2; radix <= 36; ++radix) check_all(value, radix);
    for (unsigned long long value = 0; value < 20000; ++value) check_all(value * value * value, 10);
}

TEST(ltoa, writes_an_empty_text_for_an_impossible_radix) {
    for (unsigned int const radix : {0u, 1u, 37u, ~0u}) {
        char buffer[] = "?";
        lltoa(-5, buffer, radix);
        EXPECT_STREQ(buffer, "") << radix;
    }
}

template <typename T>
void expect_streamed(T value) {
    std::ostringstream stream;
    stream << value;
    EXPECT_EQ(to_str<T>(value), stream.str());
}

template <typename... T>
void check_limits() {
    (expect_streamed(T{0}), ...), (expect_streamed(static_cast<T>(65)), ...);
    (expect_streamed(std::numeric_limits<T>::lowest()), ...), (expect_streamed(std::numeric_limits<T>::max()), ...);
}

void check_types() {
    check_limits<bool, char, signed char, unsigned char, short, unsigned short, int, unsigned int, long,
                 unsigned long, long long, unsigned long long, float, double, long double>();
    double const infinity = std::numeric_limits<double>::infinity(), nan = std::numeric_limits<double>::quiet_NaN();
    for (double const value : {999999.5, 0.0001, 0.00001234567, 1e6, -0.0, 2.5e-310, infinity, -nan, nan})
        expect_streamed(value), expect_streamed(static_cast<float>(value)), expect_streamed(value * -1.0L);
    expect_streamed(std::string("a\0b", 3)); // by the type's own insertion
}

TEST(to_str, writes_as_a_stream_in_any_global_locale) {
    struct decimal_comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        std::string do_grouping() const override { return "\3"; }
    };
    check_types();
    EXPECT_EQ(to_str<signed char>(65), "A");

    std::locale const before = std::locale::global(std::locale(std::locale::classic(), new decimal_comma));
    check_types();
    std::locale::global(before);
}

TEST(to_str, writes_random_doubles_as_a_stream) {
    std::mt19937_64 random(18);
    for (int i = 0; i < 30000 && !HasFailure(); ++i) {
        double const value = std::bit_cast<double>(std::uint64_t{random()});
        expect_streamed(value), expect_streamed(static_cast<float>(value)), expect_streamed(value / 3.0L);
        expect_streamed((static_cast<double>(random() % 2000000) + 0.5) / 10); // halves of the sixth digit
    }
}

} // namespace

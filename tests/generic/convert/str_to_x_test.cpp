// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/generic/convert/str_to_x.hpp>

#include <zolt/exceptions/exception.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using namespace ZOLT_2_18::generic::convert;
namespace exceptions = ZOLT_2_18::exceptions;
using radix = ZOLT_2_18::types::radix_t::base;

std::string const digits = "0123456789abcdefghijklmnopqrstuvwxyz";

/// What a reader makes of the text: the value or the exception, as text.
template <typename C, typename Reader>
std::string outcome(Reader read, std::string const& text, bool with_length, unsigned int base, bool flag) {
    std::vector<C> const block(text.begin(), text.end() + !with_length); // nothing lies behind it
    try {
        return std::to_string(read(block.data(), with_length ? block.size() : 0, static_cast<radix>(base), flag));
    } catch (exceptions::exception const& e) {
        char const* kind = dynamic_cast<exceptions::overflow_error const*>(&e)    ? "overflow "
                           : dynamic_cast<exceptions::underflow_error const*>(&e) ? "underflow "
                                                                                  : "";
        return kind + (e.where.function + std::to_string(e.where.line)) + e.where.file + e.get_message();
    }
}

/// What it must make of it, found slowly: positions in a string, each operation checked.
template <typename T>
std::string expected(std::string const& text, unsigned int base, bool flag) {
    constexpr bool is_signed = std::is_signed_v<T>;
    auto const failure = [](char const* kind, char const* line, char const* message) {
        return std::string(kind) + (is_signed ? "strtointx" : "strtouintx") + line + "generic/convert/str_to_x" +
               message;
    };
    std::string rest = text.substr(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    if (rest.empty() && !text.empty()) return "0";
    bool const minus = rest[0] == '-';
    if (minus || rest[0] == '+') rest.erase(0, 1);
    if (rest.empty() && !text.empty()) return "0";
    if (base == 1 || base > 36)
        return failure("", is_signed ? "132" : "257",
                       "invalid radix value, values of 0, 2-36 are the only valid values");
    if (base == 0 && (rest[0] == '0' || rest[0] == '\\')) {
        base = rest[1] == 'x' || rest[1] == 'X' ? 16 : rest[1] == 'b' || rest[1] == 'B' ? 2 : 8;
        rest.erase(0, base == 8 ? 1 : 2);
    }
    if (base == 0) base = 10;
    unsigned long long magnitude = 0;
    bool fits = true;
    for (char const unit : rest) {
        auto const digit = digits.find(unit >= 'A' && unit <= 'Z' ? static_cast<char>(unit + 32) : unit);
        if (digit >= base) break;
        fits = fits && !__builtin_mul_overflow(magnitude, base, &magnitude) &&
               !__builtin_add_overflow(magnitude, digit, &magnitude);
    }
    using limits = std::numeric_limits<T>;
    fits = fits && magnitude <= static_cast<unsigned long long>(limits::max()) + (is_signed && minus);
    bool const refused = minus && !is_signed && (magnitude || !fits);
    if (flag && !fits && !minus) return failure("overflow ", is_signed ? "175" : "301", "Number value is to large");
    if (flag && (!fits || refused))
        return failure("underflow ", is_signed ? "174" : fits ? "316" : "300", "Number value is to small");
    if (refused) return "0";
    if (!fits) return std::to_string(minus ? limits::min() : limits::max());
    return (minus && magnitude ? "-" : "") + std::to_string(magnitude);
}

template <typename T, typename Reader>
void check(Reader read, std::string const& text, unsigned int base) {
    for (int const mode : {0, 1, 2, 3}) {
        bool const flag = mode & 1, with_length = (mode & 2) && !text.empty();
        std::string const wanted = expected<T>(text, base, flag);
        ASSERT_EQ(outcome<char>(read, text, with_length, base, flag), wanted) << text << " radix " << base;
        ASSERT_EQ(outcome<unsigned short>(read, text, with_length, base, flag), wanted) << text;
        ASSERT_EQ(outcome<wchar_t>(read, text, with_length, base, flag), wanted) << text;
    }
}

#define CHECK(type, name) check<type>([](auto... a) { return name(a...); }, text, base)

TEST(str_to_integer, agrees_with_the_slow_reading_on_all_short_texts) {
    std::vector<std::string> texts{""};
    for (std::size_t i = 0; i < texts.size() && texts[i].size() < 4; ++i)
        for (char const unit : std::string(" -0\\xB19g")) texts.push_back(texts[i] + unit);
    for (std::string const& text : texts) {
        for (unsigned int const base : {0u, 1u, 2u, 10u, 16u, 37u}) CHECK(signed char, str_to_int8);
        for (unsigned int const base : {0u, 1u, 36u}) CHECK(unsigned char, str_to_uint8);
        if (HasFatalFailure()) return;
    }
}

void check_all(std::string const& text, unsigned int base) {
    CHECK(signed char, str_to_int8), CHECK(unsigned char, str_to_uint8);
    CHECK(short, str_to_int16), CHECK(short, str_to_short), CHECK(unsigned short, str_to_uint16);
    CHECK(int, str_to_int32), CHECK(int, str_to_int), CHECK(int, str_to_signed), CHECK(int, str_to_long);
    CHECK(unsigned int, str_to_uint32), CHECK(unsigned int, str_to_unsigned);
    CHECK(long long, str_to_int64), CHECK(unsigned long long, str_to_uint64);
}

TEST(str_to_integer, agrees_with_the_slow_reading_around_every_limit_in_every_radix) {
    for (unsigned int base = 2; base <= 36 && !HasFatalFailure(); ++base) {
        auto const increment = [base](std::string& number) {
            std::size_t const i = number.find_last_not_of(digits[base - 1]) + 1;
            std::fill(number.begin() + static_cast<std::ptrdiff_t>(i), number.end(), '0');
            number.replace(i ? i - 1 : 0, i ? 1 : 0, 1, digits[i ? digits.find(number[i - 1]) + 1 : 1]);
        };
        for (int const bits : {7, 8, 15, 16, 31, 32, 63, 64}) {
            std::string number;
            for (auto rest = ~0ull >> (64 - bits); rest; rest /= base)
                number.insert(0, 1, digits[static_cast<std::size_t>(rest % base)]);
            for (char const* end : {"", "~", "Z"}) {
                for (char const* sign : {"", "-", "  +"}) check_all(sign + number + end, base);
                increment(number);
            }
        }
    }
}

TEST(str_to_integer, agrees_with_the_slow_reading_with_a_foreign_unit_at_any_place) {
    for (unsigned int const base : {2u, 10u, 36u, 0u}) {
        for (std::size_t length = 1; length <= (base == 2 ? 66 : 21) && !HasFailure(); ++length) {
            std::string const number = "-" + (base ? "" : "0x" + std::string(length % 2, '0')) +
                                       std::string("1101011001011101011010").substr(0, length) +
                                       std::string(length > 22 ? length - 22 : 0, '1');
            for (std::size_t i = 0; i < number.size(); ++i) {
                for (char const unit : std::string("/:@G`{2\0\x80\xB1 ", 11)) {
                    std::string text = number;
                    text[i] = unit;
                    CHECK(int, str_to_int32), CHECK(long long, str_to_int64);
                    CHECK(unsigned long long, str_to_uint64);
                }
            }
        }
    }
}

TEST(str_to_integer, reads_the_known_examples) {
    EXPECT_EQ(str_to_int("08"), 0);
    EXPECT_EQ(str_to_int("\\x1F"), 31);
    EXPECT_EQ(str_to_int("0x1F", 0, radix::hexadecimal), 0);
    EXPECT_EQ(str_to_int("1\0002", 3), 1);
    EXPECT_EQ(str_to_int("1\xB2", 0, radix::base_36), 1);
    wchar_t const beyond_unicode[] = {L'1', static_cast<wchar_t>(0x80000031), 0};
    EXPECT_EQ(str_to_int(beyond_unicode), 1);
    static_assert(std::is_same_v<decltype(str_to_long("")), long>);
    static_assert(std::is_same_v<decltype(str_to_signed("")), int>);
}

TEST(is_space, is_the_c_librarys_up_to_ff) {
    for (int unit = 0; unit <= 0x3000; ++unit) {
        bool const wanted = unit <= 0xFF && std::isspace(unit) != 0;
        EXPECT_EQ(is_space(static_cast<unsigned short>(unit)), wanted) << unit;
        EXPECT_EQ(is_space(static_cast<wchar_t>(unit)), wanted) << unit;
        EXPECT_FALSE(is_space(static_cast<wchar_t>(unit - 0x3001))) << unit;
        EXPECT_EQ(unit <= 0xFF && is_space(static_cast<char>(unit)), wanted) << unit;
    }
}

// --- Floating point --------------------------------------------------------------------------------------

template <typename T>
void expect_streamed(T read, std::string const& text, std::locale const& locale) {
    std::istringstream stream(text);
    stream.imbue(locale);
    T wanted = 0;
    if (!(stream >> wanted)) wanted = 0;
    EXPECT_EQ(read, wanted) << testing::PrintToString(text);
    EXPECT_EQ(std::signbit(read), std::signbit(wanted)) << testing::PrintToString(text);
}

void check_floating(std::string const& text, std::locale const& locale = std::locale::classic()) {
    expect_streamed(str_to_float(text, locale), text, locale);
    expect_streamed(str_to_double(text, locale), text, locale);
    expect_streamed(str_to_long_double(text, locale), text, locale);
}

TEST(str_to_floating, reads_as_a_stream_in_the_classic_locale) {
    // Most short forms are left to the random texts below.
    char const* const texts[] = {
        "1.5e3abc", "", " ", "-.", ".5", "5.", "1e", "1E-", "1e+-5", "1e5.5", ".e5", "1.e5", "0e", "1e00001",
        // What a stream does not know.
        "inf", "-inf", "nan", "1inf", "0x1p5", "-0x10", "0X", "00x1", "0x", "0xg", ".0x1", "1,5", "1p5",
        // Ends of the ranges.
        "3.4028235e38", "3.4028236e38", "3.5e38", "1.4e-45", "0.7e-45", "7.0064923216240854e-46", "-1e309",
        "5e-324", "1.7976931348623158e308", "1.7976931348623159e308", "2.4703282292062327e-324",
        "2.4703282292062328e-324", "-0.0", "-1e-400", "1e-5000", "-1e5000", "1.18973149535723176502e4932",
        "1.2e4932", "3.6e-4951", "1e-99999999999999999999", "-1e99999999999999999999", "0e99999999999999999999",
        // Halves between two values, blanks, bytes beyond ASCII.
        "9007199254740993", "9007199254740992.99999999999999999999", "16777217", "16777217.0000000000001",
        "\v\f\r\t\n 7", "\xA0", "1\xFF"};
    for (char const* text : texts) check_floating(text);
    for (std::string const& text : {std::string("1\0005", 3), std::string("\0005", 2)}) check_floating(text);
    check_floating("0." + std::string(5000, '0') + "1e5001");
    check_floating(std::string(5000, '9') + "e-4990");
    check_floating("1e" + std::string(5000, '0') + "7");
    check_floating("-179769313486231580793e289"), check_floating("-340282356779733661637539395458142568448");
}

TEST(str_to_floating, reads_the_middle_between_two_values_and_what_lies_beside_it_as_a_stream) {
    std::mt19937_64 random(21);
    for (int i = 0; i < 3000 && !HasFailure(); ++i) {
        bool const is_float = i % 2;
        auto const significant = static_cast<double>(random() >> (is_float ? 40 : 11));
        int const power = static_cast<int>(random() % (is_float ? 200 : 2000)) - (is_float ? 160 : 1090);
        double const below = std::ldexp(significant, power);
        double const above = is_float ? static_cast<double>(std::nextafter(static_cast<float>(below), 3e38F))
                                      : std::nextafter(below, 1e308);
        char middle[1200];
        std::snprintf(middle, sizeof middle, "%.*Le", i % 3 ? 1100 : static_cast<int>(random() % 30),
                      (static_cast<long double>(below) + static_cast<long double>(above)) / 2);
        std::string text(middle);
        check_floating(text);
        check_floating(text.insert(text.find('e'), "1"));
    }
}

TEST(str_to_floating, reads_random_texts_as_a_stream) {
    std::mt19937 random(20);
    std::string const units("00112345678999...--++eEeE xXinfa,\0", 34);
    char const* const forms[] = {"%.17g", "%.3e", "%.25f", "%a", "%+.40g", "-%.16ge-9"};
    for (std::size_t i = 0; i < 60000 && !HasFailure(); ++i) {
        std::string text;
        for (auto left = random() % 14; left; --left) text += units[random() % units.size()];
        check_floating(text);

        char number[512];
        double const fraction = static_cast<double>(random()) + static_cast<double>(random()) / 0x1p32;
        std::snprintf(number, sizeof number, forms[i % 6],
                      std::ldexp(fraction, static_cast<int>(random() % 700) - 350));
        check_floating(number);
    }
}

struct decimal_comma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(str_to_floating, follows_the_given_and_the_global_locale) {
    std::locale const comma(std::locale::classic(), new decimal_comma);
    for (char const* text : {"1.234,5", "1,5e2", "1.23,4", "-0,5", "1.5", "x"}) check_floating(text, comma);
    EXPECT_EQ(str_to_double("1.234,5", comma), 1234.5);

    std::locale const before = std::locale::global(comma);
    EXPECT_EQ(str_to_double("1,5"), 1.5);
    EXPECT_EQ(str_to_double("1.5", std::locale::classic()), 1.5);
    std::locale::global(before);
}

} // namespace

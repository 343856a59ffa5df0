// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/i18n/_private/format.hpp>
#include <zolt/i18n/format_value.hpp>
#include <zolt/strings/string_utility.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <cfenv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <locale>
#include <tuple>

using namespace ZOLT_2_18;
using namespace i18n::_private;
using strings::ustring8;
using types::variant;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();
constexpr long long smallest = std::numeric_limits<long long>::min();

/// An option text written with ";" for the separator.
ustring8 options(ustring8 text) {
    std::replace(text.begin(), text.end(), ';', option_separator);
    return text;
}

template <typename Value>
struct row {
    Value value;
    char const* options;
    ustring8 expected;
};

template <typename Format, typename Value, std::size_t Count>
void check(Format format, row<Value> const (&rows)[Count]) {
    for (auto const& [value, with, expected] : rows) {
        EXPECT_EQ(format(value, options(with)), expected) << variant(value).as_string() << " with " << with;
    }
}

/// The amount and its unit, "?" when the formatter leaves that alone.
template <ustring8 (*Format)(variant, ustring8 const&, ustring8&)>
ustring8 with_unit(variant const& value, ustring8 const& options) {
    ustring8 unit = "?";
    ustring8 const amount = Format(value, options, unit);
    return amount + " " + unit;
}

// The tables below hold related rows on one line.
// clang-format off

TEST(format_int, writes_every_form) {
    row<long long> const rows[] = {
        {smallest, "", "-9223372036854775808"}, {-42, "fieldsize;2", "-42"}, {-42, "fieldsize;6", "   -42"},
        {42, "f;4096", std::string(4094, ' ') + "42"}, {0, "base;hex", "0x0"}, {5, "base;bin", "b101"},
        {255, "base;hex;fieldsize;6", "0x00ff"}, {8, "base;oct;fieldsize;4", "o010"}, {5, "b;b;f;3", "b101"},
        // Negative values are complements: of the digits they have, or of those that fit
        {-1, "base;hex", "0xf"}, {-1, "base;hex;fieldsize;6", "0xffff"}, {-255, "base;hex", "0x01"},
        {smallest, "base;hex", "0x8000000000000000"},
        // Groups
        {-123, "base;spaced_dec", "-123"}, {-1234567, "base;s", "-1 234 567"}, {1000, "b;s;f;7", "  1 000"},
        // Keys and keywords cut short; the first that fits counts, the last value wins
        {10, "base;d", "10"}, {10, "base;def", "10"}, {10, "bas;;fields;3", " 10"}, {10, ";h", "0xa"},
        {10, "base;hex;base;bin;fieldsize;9;fieldsize;6", "b01010"}, {10, "fieldsize; +4x", "  10"},
        {10, "fieldsize;wide", "10"}, {10, "base;hexa;base;hex", "-0"}, {10, "base;DEC", "-0"},
    };
    check(format_int, rows);
}

TEST(format_int, writes_negative_values_as_exact_complements) {
    for (auto const& [keyword, bits, prefix] : {std::tuple{"hex", 4u, 2u}, {"oct", 3u, 1u}, {"bin", 1u, 1u}}) {
        for (unsigned int field : {0u, 1u, 5u, 17u, 64u, 67u, 200u, 4096u}) {
            for (long long value : {-1LL, -2LL, -7LL, -8LL, -255LL, -256LL, -65537LL, smallest + 1, smallest}) {
                ustring8 const with = "base;" + std::string(keyword) + ";fieldsize;" + std::to_string(field);
                ustring8 const text = format_int(value, options(with)).substr(prefix);
                EXPECT_GE(text.size() + prefix, field) << with;
                // An arithmetic shift brings digit i down, as if the sign went on for ever.
                std::string expected;
                for (auto i = static_cast<unsigned int>(text.size()); i-- > 0;) {
                    expected += "0123456789abcdef"[(value >> std::min(i * bits, 63u)) & ((1 << bits) - 1)];
                }
                EXPECT_EQ(text, expected) << value << " with " << with;
            }
        }
    }
}

TEST(format_double, prints_fixed_or_squeezed) {
    std::locale::global(std::locale::classic());
    row<double> const rows[] = {
        {3.14159, "", "3.14"}, {-3.14159, "p;4", "-3.1416"}, {2, ";1", "2.0"}, {1.5, "fieldsize;6", "  1.50"},
        {-1.5, "precision;;f;4", "  -2"}, {-0.0, "", "-0.00"}, {-0.2, "precision;0", "-0"}, // not a failure
        // Too long for the field; a three-digit exponent loses its first digit
        {1234567, "fieldsize;6", "1.23e+"}, {1234567, "f;9", " 1.23e+06"}, {1234567, "f;10", "1234567.00"},
        {1e100, "fieldsize;8", "1.00e+00"}, {1e100, "f;9", " 1.00e+00"}, {1e-100, "p;200;f;5", "1.000"},
        {infinity, "", "inf"}, {-infinity, "f;5", " -inf"}, {infinity, "f;2", "in"}, {not_a_number, "", "nan"},
    };
    check(format_double, rows);
}

TEST(format_double, rounds_as_printf_does_in_every_mode) {
    std::locale::global(std::locale::classic());
    for (int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO, FE_TONEAREST}) { // the last is the usual one
        std::fesetround(mode);
        for (double value : {2.005, -2.005, 0.125}) {
            char expected[16];
            std::snprintf(expected, sizeof expected, "%.2f", value);
            EXPECT_EQ(format_double(value, ""), expected) << mode;
        }
    }
}

TEST(format_double, fills_long_fields_exactly) {
    for (double value : {0.0, -1.0, 1e9, 1e308, -1e308, 5e-324, infinity}) {
        for (int precision : {0, 1, 17, 400, 4096}) {
            for (std::size_t field : {1u, 2u, 7u, 8u, 9u, 127u, 128u, 129u, 4096u}) {
                ustring8 const with = "p;" + std::to_string(precision) + ";f;" + std::to_string(field);
                EXPECT_EQ(format_double(value, options(with)).size(), field) << value << " with " << with;
            }
        }
    }
    EXPECT_EQ(format_double(-1e308, options("p;4096")).size(), 1u + 309 + 1 + 4096);
}

TEST(format_duration, shows_what_is_not_zero) {
    std::locale::global(std::locale::classic());
    row<double> const rows[] = {
        {93784.5, "", "1 dy 2 hr 3 min 4.50 sec"}, {93784.5, "short_form;true", "1d 2h 3m 4.50s"},
        {-0.0, "", "0.00 sec"}, {60, "precision;0", "1 min 0 sec"}, {86399.999, ";3", "23 hr 59 min 59.999 sec"},
        {59.999, "", "60.00 sec"}, {std::nextafter(172800.0, 0), "p;1", "1 dy 23 hr 59 min 60.0 sec"},
        {-93784.5, "", "-1 dy -2 hr -3 min -4.50 sec"}, {-86400, "s;;p;0", "-1d 0h 0m 0s"},
        // Limits
        {-infinity, "", "-0"}, {not_a_number, "", "-0"}, {0x1p63 * 86400, "", "-0"}, {-1e308, "", "-0"},
        {5, "s;f", "5.00 sec"}, {-0x1p63 * 86400, "p;0", "-9223372036854775808 dy 0 hr 0 min 0 sec"},
        {1440240153198559232.0, "p;0", "16669446217575 dy 22 hr 0 min 32 sec"},
        // The seconds' own failures, a true "-0" among them
        {5, "p;;s;true", "-0"}, {5, "p;;p;1", "5.0 sec"}, {-0.2, "p;0", "-0"}, {5, "s;yes", "-0"}, {5, "f;8", "-0"},
    };
    check(format_duration, rows);
}

TEST(format_memory, scales_by_1024) {
    std::locale::global(std::locale::classic());
    row<variant> const rows[] = {
        {1023, "", "1023 B"}, {1024, "", "1 KB"}, {1536, "target_unit;any;base_unit;B", "1 KB"},
        {5, "base_unit;KB;t;B", "5120 B"}, {5, "base_unit;KB", "5 KB"}, {2047, "t;KB;fieldsize;4", "   1 KB"},
        {12345, "t;B;f;2", "12345 B"}, {"4096", "t;;b;B", "4 KB"}, {-1, "", "15 EB"}, {2048, "t;a", "2 KB"},
        {-1, "t;B", "18446744073709551615 B"}, {3, "t;YBit", "0 YB"}, {2048, ";KB", "2 KB"},
        // With a precision, or from a floating-point type
        {1536.0, "", "1.50 KB"}, {1536, "precision;1", "1.5 KB"}, {1536.0f, "t;B;p;0;f;6", "  1536 B"},
        {0.5L, "b;GB;t;MB", "512.00 MB"}, {-5e3, "", "-5000.00 B"}, {1234567.0, "t;B;f;6", "1.23e+ B"},
        // What has no amount or no unit
        {infinity, "", "-0 ?"}, {1e308, "", "-0 ?"}, {1e308, "b;YB;t;B", "-0 ?"}, {16, "b;EB;t;B", "-0 ?"},
        {15, "b;EB;t;B", "17293822569102704640 B"}, {1023, "b;YB", "1023 YB"}, {1024, "b;YB", "-0 ?"},
        {1, "t;XB", "-0 ?"}, {1, "b;K", "-0 ?"}, {1, "b;;t;B", "-0 ?"}, {1, "b;any", "-0 ?"},
    };
    check(with_unit<format_memory>, rows);
}

TEST(format_metric, scales_by_1000) {
    std::locale::global(std::locale::classic());
    row<variant> const rows[] = {
        {999, "", "999.00 "}, {1000, "", "1.00 kilo"}, {"1234567", "p;3", "1.235 mega"},
        {1e-6, "", "1.00 micro"}, {-2e9, "", "-2.00 giga"}, {0, "base_unit;T", "0.00 tera"},
        {5, "b;k;t;m;p;0", "5000000 milli"}, {5, "t;k;p;4;f;8", "  0.0050 kilo"}, {3, "t;b;b;mc;p;6", "0.000003 "},
        // A prefix comes before a keyword cut short
        {5000, "t;an", "5.00 kilo"}, {5e-18, "t;a", "5.00 atto"}, {5, ";;b;k", "5000.00 "},
        // No names beyond the last ones
        {1e30, "p;0", "1000000 yotta"}, {1e-20, "p;4", "0.0100 atto"}, {infinity, "", "inf yotta"},
        {not_a_number, "b;k", "nan kilo"}, {1, "t;u", "-0 ?"}, {1, "b;any", "-0 ?"},
    };
    check(with_unit<format_metric>, rows);
}

TEST(format_units, are_known_by_their_symbols) {
    int power = -6, index = 0;
    for (char const* prefix : {"a", "f", "p", "n", "mc", "m", "", "k", "M", "G", "T", "P", "E", "Z", "Y"}) {
        EXPECT_EQ(thousands(prefix), power++) << prefix;
    }
    for (char const* unit : {"B", "KB", "MB", "GB", "TB", "PB", "EB", "ZB", "YB"}) {
        EXPECT_EQ(mem_prefix_index(unit), index++) << unit;
    }
    EXPECT_EQ(mem_prefix_index("KBit"), 1);
    for (char const* base : {"b", "ba", "base"}) EXPECT_EQ(thousands(base), 0) << base;
    for (char const* unknown : {"u", "K", "bases", "mcm"}) EXPECT_EQ(thousands(unknown), -1000) << unknown;
    for (char const* unknown : {"", "K", "kB", "Kb", "BB"}) EXPECT_EQ(mem_prefix_index(unknown), -1) << unknown;
}

TEST(format_options, fail_alike_in_every_formatter) {
    using item = i18n::message_item;
    for (char const* text : {"f", ";", "p;1;b", "x;1", "fieldsizes;1", "Precision;2", "f;-1", "f;4097;f;1", "p;-1",
                             "p;4097", "p;99999999999999999999", "p;4294967297", "p;5000;p;1"}) {
        for (auto kind : {item::int_, item::double_, item::duration, item::memory, item::metric_unit}) {
            EXPECT_EQ(i18n::format_value(kind, 1, options(";" + ustring8(text))), "-0") << text << " " << kind;
        }
    }
}

TEST(format_options, are_split_as_split_string_splits) {
    ustring8 const whole = options("precision;3;fieldsize;12;;1;p;;f;9");
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        ustring8 const cut(whole, 0, length);
        bool const odd = strings::split_string(cut, "\1", 0).size() % 2 != 0;
        EXPECT_EQ(format_double(1, cut) == "-0", odd) << cut;
    }
}

TEST(format_value, passes_failures_on_and_leaves_some_kinds_empty) {
    std::locale::global(std::locale::classic());
    using item = i18n::message_item;
    EXPECT_EQ(i18n::format_value(item::double_, "1.25", "n\1"), "1.25");
    EXPECT_EQ(i18n::format_value(item::memory_unit, 1536, "n\1target_unit\1XB"), "-0");
    EXPECT_EQ(i18n::format_value(item::metric_unit, -0.2, options("n;precision;0;target_unit;base")), "-0");
    for (unsigned int kind : {0u, 1u, 2u, 5u, 6u, 12u, 4294967295u}) {
        EXPECT_EQ(i18n::format_value(static_cast<item::type_t>(kind), 1, "n"), "") << kind;
    }
}

} // namespace

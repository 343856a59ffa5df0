// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// What text and binary buffers have in common is tested in serialize_binary_buf_test.cpp.
#include <zolt/generic/convert/str_to_x.hpp>
#include <zolt/serialization/serialize_text_buf.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>
#include <vector>

namespace {

using namespace ZOLT_2_18;
using serialization::serialize_text_buf;

/// "|" stands for the separator.
std::string form(std::string text) {
    std::replace(text.begin(), text.end(), '|', '\1');
    return text;
}

serialize_text_buf buffer_of(std::string const& text) { return serialize_text_buf().assign(form(text)); }

void compare_with_streams() {
    double const values[] = {0, -0.0, 0.1, 9.5, 1234567, 1e-5, 5e-324, 1.7976931348623157e308, INFINITY, -NAN};
    for (double const value : values)
        for (unsigned int const precision : {0U, 1U, 3U, 6U, 17U, 800U, 4096U}) {
            SCOPED_TRACE(testing::Message() << value << " with precision " << precision);
            std::ostringstream expected;
            expected.precision(static_cast<int>(precision));
            expected << value << '\1' << static_cast<float>(value) << '\1';
            serialize_text_buf buffer;
            buffer.append_double(value, precision);
            buffer.append_float(static_cast<float>(value), precision);
            EXPECT_EQ(buffer.as_str(), expected.str());
            EXPECT_TRUE(precision < 17 || buffer.read_double() == (std::isfinite(value) ? value : 0));
        }
}

TEST(SerializeTextBuf, WritesFloatingPointLikeAStream) {
    std::locale::global(std::locale::classic());
    struct comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
    };
    compare_with_streams();
    std::locale const before = std::locale::global(std::locale(std::locale::classic(), new comma));
    compare_with_streams();
    std::locale::global(before);

    serialize_text_buf capped;
    capped.append_double(0.1, std::numeric_limits<unsigned long>::max());
    EXPECT_EQ(capped.as_str(), "0.1000000000000000055511151231257827021181583404541015625\1");
}

TEST(SerializeTextBuf, ReadsForeignFields) {
    struct {
        char const* content;
        long first, second;
        bool at_end_between;
        // clang-format off
    } const rows[] = {
        {"12|34|", 12, 34, false}, {"12", 12, 0, true}, {"", 0, 0, true}, {"abc|7|", 0, 7, false},
        {" +5 x||", 5, 0, false},
        // radix detection, saturation
        {"010|08|", 8, 0, false}, {"0x1F|-0b11|", 31, -3, false},
        {"2147483648|-99999999999|", 2147483647, -2147483647 - 1, false}};
    // clang-format on
    for (auto const& row : rows) {
        SCOPED_TRACE(row.content);
        serialize_text_buf const buffer = buffer_of(row.content);
        EXPECT_EQ(buffer.read_int32(), row.first);
        EXPECT_EQ(buffer.at_end(), row.at_end_between);
        EXPECT_EQ(buffer.read_int32(), row.second);
    }
    serialize_text_buf const narrow = buffer_of("-1|256|70000|1e400|0x10|inf|");
    EXPECT_EQ((std::tuple{narrow.read_uint32(), narrow.read_uint8(), narrow.read_int16(), narrow.read_double(),
                          narrow.read_float(), narrow.read_float()}),
              std::tuple(0UL, 255, 32767, 0.0, 0.0F, 0.0F));
}

TEST(SerializeTextBuf, TreatsIntegersAsTheConversionsDo) {
    namespace convert = generic::convert;
    // clang-format off
    std::vector<std::string> fields = {
        "-", "--1", "-0", "00", "-00", "08", "-017", "1-", "1 ", "+1", "/", ":", "1/", "1:", "-x", "123456789012345678",
        "-1234567890123456789", "9223372036854775808", "-9223372036854775809", "18446744073709551615",
        "18446744073709551616"};
    // clang-format on
    auto const add_with_neighbours = [&fields](unsigned long long number) {
        for (unsigned long long const n : {number - 1, number, number + 1}) {
            auto const negative = static_cast<long long>(0 - n);
            serialize_text_buf buffer;
            buffer.append_uint64(n);
            buffer.append_int64(negative);
            buffer.append_int32(static_cast<long>(negative));
            buffer.append_uint16(static_cast<unsigned short>(n));
            EXPECT_EQ(buffer.as_str(), form(std::to_string(n) + '|' + std::to_string(negative) + '|' +
                                            std::to_string(static_cast<int>(negative)) + '|' +
                                            std::to_string(static_cast<unsigned short>(n)) + '|'));
            fields.insert(fields.end(), {std::to_string(n), std::to_string(negative)});
        }
    };
    for (unsigned long long power = 1; power < 10000000000000000000ULL; power *= 10) add_with_neighbours(power);
    for (int bit = 0; bit < 64; ++bit) add_with_neighbours(1ULL << bit);

    for (std::string const& field : fields) {
        SCOPED_TRACE(field);
        auto const expect_all = [&field](std::string const& content) {
            auto const expect = [&](auto read, auto parse) {
                serialize_text_buf const buffer = serialize_text_buf().assign(content);
                EXPECT_EQ((buffer.*read)(), parse(field.data(), static_cast<unsigned long>(field.size()),
                                                  types::radix_t::automatic, false));
                EXPECT_EQ(buffer.at_end(), content.back() != '#');
            };
            using buf = serialize_text_buf;
            using text = char const*;
            expect(&buf::read_int8, [](text t, auto... rest) { return convert::str_to_int8(t, rest...); });
            expect(&buf::read_int16, [](text t, auto... rest) { return convert::str_to_int16(t, rest...); });
            expect(&buf::read_int32, [](text t, auto... rest) { return convert::str_to_int32(t, rest...); });
            expect(&buf::read_int64, [](text t, auto... rest) { return convert::str_to_int64(t, rest...); });
            expect(&buf::read_uint8, [](text t, auto... rest) { return convert::str_to_uint8(t, rest...); });
            expect(&buf::read_uint16, [](text t, auto... rest) { return convert::str_to_uint16(t, rest...); });
            expect(&buf::read_uint32, [](text t, auto... rest) { return convert::str_to_uint32(t, rest...); });
            expect(&buf::read_uint64, [](text t, auto... rest) { return convert::str_to_uint64(t, rest...); });
        };
        expect_all(field);
        expect_all(field + '\1');
        expect_all(field + "\1#");
    }
}

TEST(SerializeTextBuf, SurvivesLyingLengths) {
    struct {
        char const* content;
        char const* text;
        long next;        ///< the number read behind the string
        long in_next_ten; ///< the number read behind it after the content was replaced by "1234567890"
        // clang-format off
    } const rows[] = {
        {"3|abc|42|", "abc", 42, 7890}, {"3|abc", "abc", 0, 7890}, {"5|abc", "abc", 0, 67890},
        {"4294967295|abc", "abc", 0, 0}, {"99999999999999|a|7", "a|7", 0, 0}, {"3", "", 0, 0},
        {"-3|42|", "", 42, 4567890}, {"x||42|", "", 42, 4567890}, {"2|abc|42|", "ab", 0, 67890},
        {"010|12345678|9|", "12345678", 9, 0}, {"", "", 0, 0}};
    // clang-format on
    for (auto const& row : rows) {
        SCOPED_TRACE(row.content);
        serialize_text_buf buffer = buffer_of(row.content);
        EXPECT_EQ(buffer.read_string(), form(row.text));
        EXPECT_EQ(buffer.read_int32(), row.next);
        buffer.reset_read();
        EXPECT_EQ(buffer.read_buffer()->as_str(), form(row.text));
        EXPECT_EQ(buffer.assign("1234567890").read_int32(), row.in_next_ten);
    }
}

TEST(SerializeTextBuf, LetsSubclassesReadLengths) {
    struct : serialize_text_buf {
        long read_int32() const override { return serialize_text_buf::read_int32() + 1; }
    } buffer;
    buffer.assign(form("2|abc|0|x|"));
    EXPECT_EQ(buffer.read_string(), "abc");
    EXPECT_EQ(buffer.read_buffer()->as_str(), "x");
}

} // namespace

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/strings/string_utility.hpp>

#include <gtest/gtest.h>

#include <locale>
#include <random>

namespace {

using namespace ZOLT_2_18::strings;

template <typename Text>
Text wide(std::string const& text) {
    return Text(text.begin(), text.end());
}

template <typename Text>
class EachText : public testing::Test {};
using every_text = testing::Types<ustring8, ustring16, ustring32, std::string, std::wstring>;
TYPED_TEST_SUITE(EachText, every_text);

TYPED_TEST(EachText, Splits) {
    struct row {
        char const *text, *delimiter;
        int max_splits;
        std::vector<char const*> pieces;
    };
    // no empty last piece, but an empty first one
    row const rows[] = {{"a,b,,c", ",", 0, {"a", "b", "", "c"}},
                        {"a,b,", ",", 0, {"a", "b"}},
                        {",a", ",", 0, {"", "a"}},
                        {"", ",", 0, {}},
                        {"a,b", "", 0, {"a,b"}},
                        {"a--b---c", "--", 0, {"a", "b", "-c"}},
                        {"a,b,c", ",", 1, {"a", "b,c"}},
                        {"a,b,", ",", 2, {"a", "b"}},
                        {"a,b,c", ",", -1, {"a", "b", "c"}}};
    for (row const& r : rows) {
        std::vector<TypeParam> expected;
        for (char const* piece : r.pieces) expected.push_back(wide<TypeParam>(piece));
        EXPECT_EQ(split_string(wide<TypeParam>(r.text), wide<TypeParam>(r.delimiter), r.max_splits), expected)
            << r.text << " at " << r.delimiter << " " << r.max_splits;
    }
}

TYPED_TEST(EachText, ReplacesAll) {
    struct row {
        char const *text, *pattern, *replacement, *result;
        unsigned int count;
    };
    row const rows[] = {{"aaa", "a", "aa", "aaaaaa", 3}, {"aaa", "aa", "b", "ba", 1},
                        {"abab", "ab", "xy", "xyxy", 2}, {"a.b.c", ".", "", "abc", 2},
                        {"abc", "", "x", "abc", 0},      {"aabb", "ab", "", "ab", 1}};
    for (row const& r : rows) {
        auto text = wide<TypeParam>(r.text);
        EXPECT_EQ(replace_all(text, wide<TypeParam>(r.pattern), wide<TypeParam>(r.replacement)), r.count);
        EXPECT_EQ(text, wide<TypeParam>(r.result)) << r.text << ": " << r.pattern << " by " << r.replacement;
    }
    auto self = wide<TypeParam>("ab"); // as its own replacement and its own pattern
    EXPECT_EQ(replace_all(self, wide<TypeParam>("b"), self) + replace_all(self, self, wide<TypeParam>("b")), 2u);
    EXPECT_EQ(self, wide<TypeParam>("b"));
}

// Around the length at which the search changes its method, with periodic texts.
TYPED_TEST(EachText, LongPatternsAgreeWithPlainSearch) {
    std::mt19937 random(18);
    for (std::size_t round = 0; round < 1000; ++round) {
        auto pattern = wide<TypeParam>(round % 2 ? "aab" : "ab");
        while (pattern.size() < 25 + round % 40) pattern += TypeParam(pattern, 0, 1 + random() % pattern.size());
        TypeParam text;
        while (text.size() < 500) text += TypeParam(pattern, random() % 3, pattern.size() - random() % 3);
        TypeParam expected = text;
        for (auto at = expected.find(pattern); at != TypeParam::npos; at = expected.find(pattern, at + 1)) {
            expected.replace(at, pattern.size(), 1, '-');
        }
        replace_all(text, pattern, wide<TypeParam>("-"));
        ASSERT_EQ(text, expected);
    }
}

// Would not end in reasonable time if the work were the product of the lengths.
TEST(StringUtility, LargeTextsAreLinear) {
    std::string text(4000000, 'a');
    EXPECT_EQ(split_string(text, std::string(1000000, 'a') + 'b').size(), 1u);
    EXPECT_EQ(replace_all(text, "a", "bc"), 4000000u);
    EXPECT_EQ(replace_all(text, "b", ""), 4000000u);
}

TEST(StringUtility, MixedStringTypesFollowTheText) {
    ustring8 text("a,b");
    std::string plain("a,b");
    EXPECT_EQ(split_string(text, std::string(",")), split_string(text, ",", 0));
    EXPECT_EQ(split_string("a,b", ","), (std::vector<ustring8>{"a", "b"}));
    EXPECT_EQ(split_string(plain, ","), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(split_string(plain, ustring8(","), 5), split_string(plain, ","));
    EXPECT_EQ(split_string(ustring32(L"a,b"), L",").size(), 2u);
    EXPECT_EQ(replace_all(text, ",", std::string("::")) + replace_all(text, std::string("::"), ustring8(";")), 2u);
    EXPECT_EQ(gh2::replace_all(plain, ",", ";") + gh2::replace_all(plain, "", "x"), 1u);
    EXPECT_EQ(plain, text);
}

template <typename Text>
void check_case(unsigned int last) {
    auto const twice = [](unsigned int value) { return Text(2, static_cast<typename Text::value_type>(value)); };
    for (unsigned int value = 0; value <= last; ++value) {
        EXPECT_EQ(to_lower(twice(value)), twice(value >= 'A' && value <= 'Z' ? value + 32 : value)) << value;
        EXPECT_EQ(to_upper(twice(value)), twice(value >= 'a' && value <= 'z' ? value - 32 : value)) << value;
    }
    auto const text = wide<Text>("ABCD");
    for (unsigned long to : {5ul, no_index, ~0ul}) EXPECT_EQ(lower_case(text, 1, to), wide<Text>("Abcd")) << to;
    EXPECT_EQ(lower_case(text, 1, 3), wide<Text>("AbcD"));
    EXPECT_EQ(lower_case(text, 9, 12), text);
}

TEST(StringUtility, Case) {
    check_case<ustring8>(0xFF), check_case<ustring16>(0xFFFF), check_case<ustring32>(0xFFFF);
    EXPECT_EQ(gh2::tolower("aB\xC4"), "ab\xC4");
    EXPECT_EQ(gh2::toupper("aB\xE4"), "AB\xE4");
}

TEST(StringUtility, BeginWith) {
    EXPECT_TRUE(begin_with("abc", 1, "bc") && begin_with("abc", 3, "") && begin_with("", 0, ""));
    EXPECT_FALSE(begin_with("abc", 2, "bc") || begin_with("abc", 0, "abcd") || begin_with("abc", 1, "c"));
    EXPECT_FALSE(begin_with("abc", 4, "") || begin_with("abc", 0xFFFFFFFE, "abc")); // no sum that wraps
}

TEST(StringUtility, AnsiFollowsTheLocale) { // which is "C" here
    std::locale::global(std::locale::classic());
    EXPECT_EQ(gh2::to_ansi("a\xC3\xA9"), "a??");
    EXPECT_EQ(gh2::from_ansi("a\xFF"), "a?");
}

} // namespace

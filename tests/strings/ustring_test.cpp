// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/strings/ustring.hpp>

#include <gtest/gtest.h>

namespace {

using namespace ZOLT_2_18::strings;

template <typename From, typename To>
constexpr bool converts = std::is_convertible_v<From, To>;

static_assert(converts<std::string, ustring8> && converts<char const*, ustring8>);
static_assert(!converts<ustring8, ustring16> && !converts<ustring8, ustring32> && !converts<ustring16, ustring8>);
static_assert(!converts<ustring16, ustring32> && !converts<ustring32, ustring8> && !converts<ustring32, ustring16>);
static_assert(std::is_same_v<decltype(ustring8() + ""), ustring8>);

TEST(Ustring, ComparesAndCountsWholeTexts) {
    EXPECT_TRUE(ustring8("ab") != ustring8("abc") && ustring8("a") < ustring8("\xFF"));
    EXPECT_FALSE(ustring8("a\0b", 3) == ustring8("a\0c", 3));
    EXPECT_EQ(ustring8("a\0b", 3) + "cd" + "", std::string("a\0bcd", 5));
    unsigned short const pair[] = {0xD83D, 0xDE00, 0, 1};
    EXPECT_EQ(string_length(pair), 2u);
    EXPECT_EQ(string_length(ustring16(pair, 4)), 4u);
    EXPECT_EQ(string_length("ab\0c"), 2u);
}

} // namespace

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/debug/assert.hpp>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

using namespace ZOLT_2_18;

struct report {
    std::string expression, file;
    unsigned int line;
};
std::vector<report> reports;

void record(char const* expression, char const* file, unsigned int& line) {
    reports.push_back({expression, file, line});
    line = 0;
}

class AssertHook : public testing::Test {
protected:
    void SetUp() override { reports.clear(); }
    void TearDown() override { debug::set_assert_hook(types::nil); }
};

TEST_F(AssertHook, WithoutHookAFailedAssertionDoesNothing) {
    EXPECT_FALSE(debug::is_assert_hook_set());
    ZOLT_ASSERT(1 > 2);
    unsigned int line = 5;
    debug::_private::native_assert("expression", "file", line, "function");
    EXPECT_EQ(5u, line);
}

TEST_F(AssertHook, HearsExpressionFileAndLineUntilCleared) {
    debug::set_assert_hook(record);
    EXPECT_TRUE(debug::is_assert_hook_set());
    unsigned int const line = __LINE__ + 1;
    ZOLT_ASSERT(1 > 2);
    ZOLT_ASSERT(2 > 1);
    ASSERT_EQ(1u, reports.size());
    EXPECT_EQ("1 > 2", reports[0].expression);
    EXPECT_EQ(__FILE__, reports[0].file);
    EXPECT_EQ(line, reports[0].line);

    debug::set_assert_hook(types::nil);
    EXPECT_FALSE(debug::is_assert_hook_set());
    ZOLT_ASSERT(1 > 2);
    EXPECT_EQ(1u, reports.size());

    debug::set_assert_hook(record);
    debug::set_assert_hook(debug::assert_hook());
    EXPECT_FALSE(debug::is_assert_hook_set()) << "an unbound delegate is no hook";
}

TEST_F(AssertHook, ContextFollowsTheExpressionInAFixedBuffer) {
    debug::set_assert_hook(record);
    auto const with_context = [](char const* expression, char const* format, auto... arguments) {
        debug::_private::_______________CONTEXT__ASSERT________________(expression, "f", 3, "g", format,
                                                                        arguments...);
        return reports.back().expression;
    };
    std::string const long_text(300, 'x');
    EXPECT_EQ("k <= n : 7 of 5", with_context("k <= n", "%d of %d", 7, 5));
    EXPECT_EQ("k <= n : ", with_context("k <= n", nullptr));
    EXPECT_EQ(" : ", with_context(nullptr, nullptr));
    EXPECT_EQ("e : " + long_text.substr(0, 251), with_context("e", "%s", long_text.c_str()));
    EXPECT_EQ(long_text.substr(0, 255), with_context(long_text.c_str(), "%d", 1));
    EXPECT_EQ(3u, reports.back().line);

    ZOLT_ASSERT_CONTEXT(1 > 2, "plain");
    EXPECT_EQ("1 > 2 : plain", reports.back().expression);
    ZOLT_ASSERT_CONTEXT(1 > 2, "%s-%d", "a", 4);
    EXPECT_EQ("1 > 2 : a-4", reports.back().expression);
}

TEST_F(AssertHook, IsNotEnteredAgainWhileItRuns) {
    int calls = 0;
    debug::set_assert_hook([&calls](char const*, char const*, unsigned int&) {
        ++calls;
        ZOLT_ASSERT(1 > 2);
    });
    ZOLT_ASSERT(1 > 2);
    ZOLT_ASSERT(1 > 2);
    EXPECT_EQ(2, calls);
}

TEST_F(AssertHook, LivesUntilItsCallReturnsWhenItReplacesItself) {
    std::string const owned(100, 'o'); // a use after destruction shows under ASan
    debug::set_assert_hook([owned](char const*, char const*, unsigned int&) {
        debug::set_assert_hook(types::nil);
        debug::set_assert_hook(record);
        debug::set_assert_hook(record);
        EXPECT_EQ(100u, std::strlen(owned.c_str()));
    });
    ZOLT_ASSERT(1 > 2);
    EXPECT_TRUE(reports.empty());
    ZOLT_ASSERT(2 > 3);
    EXPECT_EQ(1u, reports.size());
}

TEST_F(AssertHook, ExceptionsPassAndLeaveTheHookUsable) {
    debug::set_assert_hook([](char const*, char const*, unsigned int&) { throw 1; });
    EXPECT_THROW(ZOLT_ASSERT(1 > 2), int);
    EXPECT_THROW(ZOLT_ASSERT(1 > 2), int);
    debug::set_assert_hook([owned = std::string(100, 'o')](char const*, char const*, unsigned int&) {
        debug::set_assert_hook(record);
        throw owned;
    });
    EXPECT_THROW(ZOLT_ASSERT(1 > 2), std::string);
    ZOLT_ASSERT(2 > 3);
    EXPECT_EQ(1u, reports.size());
}

} // namespace

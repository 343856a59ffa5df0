// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/generic/varg_list.hpp>

#include <gtest/gtest.h>

#include <concepts>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

using namespace ZOLT_2_18;
using generic::argument;
using generic::varg_list;
using strings::ustring8;

static_assert(!std::equality_comparable<argument> && !std::equality_comparable<varg_list>);

/// "name=value," for each argument.
std::string content(varg_list const& list) {
    std::string text;
    for (argument const& item : list) text += item.name() + "=" + item.value().as_string() + ",";
    return text;
}

varg_list abc() { return varg_list(argument("a", 1), argument("b", 2), argument("c", 3)); }

// Initialised before most statics of the program; it passes the nil argument 25 times.
varg_list const early_list __attribute__((init_priority(102))) (argument("x", 1));

TEST(Argument, AssignsNameValueOrBoth) {
    EXPECT_TRUE(argument() == types::nil && argument(types::nil) == types::nil && argument("", {}) == types::nil);
    EXPECT_TRUE(argument("n", {}) != types::nil && argument(types::variant(0)) != types::nil);
    argument item("n", 1);
    item = types::variant(2);
    EXPECT_EQ(content(item), "n=2,");
    item = argument("m", 3);
    item.assign(item.name(), item.value());
    argument const copy = item;
    item.name("k");
    item.value(4);
    EXPECT_EQ(content(varg_list(copy, item)), "m=3,k=4,");
    argument const taken = std::move(item);
    EXPECT_EQ(content(varg_list(taken, item)), "k=4,=4,");
    item = types::nil;
    EXPECT_TRUE(item == types::nil && !item.has_name());
}

TEST(VargList, TheConstructorStopsAtTheFirstNil) {
    EXPECT_EQ(content(varg_list(argument("x", 1), types::nil, argument("y", 2))), "x=1,");
    EXPECT_EQ(content(varg_list(argument("x", 1), argument("x", 2), argument("", 3))), "x=1,=3,");
    EXPECT_EQ(content(varg_list(argument("x", types::nil), argument("y", 2))), "x=,y=2,");
    EXPECT_TRUE(varg_list(types::nil) == types::nil);
    EXPECT_EQ(content(early_list), "x=1,");
    argument const n(types::variant(7));
    varg_list const full(n, n, n, n, n, n, n, n, n, n, n, n, n, n, n, n, n, n, n, n, n, n, n, n, n,
                         argument("z", 1));
    EXPECT_EQ(full.count(), 26U);
    EXPECT_EQ(full[25].name(), "z");
}

TEST(VargList, AppendsEachNameOnce) {
    varg_list list;
    EXPECT_TRUE(list.push_back("x", 1) && list.push_back("X", 4) && list.push_back("", 5));
    EXPECT_FALSE(list.push_back("x", 2) || list.push_back(argument("x", 3)));
    EXPECT_TRUE(list.push_back(types::nil) && list.push_back(list[2]));
    EXPECT_EQ(content(list), "x=1,X=4,=5,=,=5,");
}

TEST(VargList, FindsByExactBytes) {
    varg_list list(argument("a", 1), argument("ab", 2), argument(ustring8("a\0b", 3), 3), argument("\xC3\xA9", 4),
                   argument(types::variant(5)), argument("b", 6));
    list[5].name("a"); // a second "a", by the back door: the first one wins
    struct {
        ustring8 name;
        int value; // 0 for none
    } const rows[] = {{"a", 1}, {"ab", 2},  {ustring8("a\0b", 3), 3}, {"\xC3\xA9", 4}, {"A", 0},
                      {"b", 0}, {"abc", 0}, {ustring8("a\0", 2), 0},  {"e", 0},        {"", 0}};
    varg_list const& fixed = list;
    for (auto const& r : rows) {
        SCOPED_TRACE(r.name);
        auto const expect_found = [&](auto const& name) {
            EXPECT_EQ(list.has_argument(name), r.value != 0);
            EXPECT_EQ(fixed[name].value().as_int(), r.value);
            EXPECT_EQ(&list.at(name) == &varg_list::nil_argument, r.value == 0);
            EXPECT_EQ(list.find(name) - list.begin(), r.value ? r.value - 1 : 6);
            EXPECT_EQ(fixed.find(name), list.find(name));
        };
        expect_found(r.name);
        if (r.name.find('\0') == ustring8::npos) expect_found(r.name.c_str());
    }
    EXPECT_FALSE(list.has_argument(static_cast<char const*>(nullptr)));
    EXPECT_TRUE(varg_list::nil_argument == types::nil);
}

TEST(VargList, ChecksEveryIndex) {
    varg_list list = abc();
    varg_list const& fixed = list;
    list[1UL] = types::variant(9);
    // a literal 0 is an index, not a null name
    EXPECT_EQ(list[0].name() + fixed.at(0).name() + fixed[1U].name(), "aab");
    EXPECT_EQ(fixed["b"].value().as_int(), 9);
    EXPECT_THROW((void)list.at(list.count()), std::out_of_range);
    EXPECT_THROW((void)fixed[3], std::out_of_range);
    EXPECT_THROW((void)list[-1], std::out_of_range);
    EXPECT_THROW((void)fixed.at(0x100000000ULL), std::out_of_range);
}

void expect_left(char const* left, void (*erase)(varg_list&)) {
    varg_list list = abc();
    erase(list);
    EXPECT_EQ(content(list), left);
    EXPECT_EQ(list == types::nil, *left == 0);
}

TEST(VargList, Erases) {
    expect_left("b=2,c=3,", [](varg_list& l) { l.erase(0); });
    expect_left("a=1,b=2,", [](varg_list& l) { l.erase(2UL); });
    expect_left("a=1,b=2,c=3,", [](varg_list& l) { l.erase(5), l.erase(-1), l.erase(0x100000001ULL); });
    expect_left("a=1,c=3,", [](varg_list& l) { l.erase("b"), l.erase("d"); });
    expect_left("a=1,c=3,", [](varg_list& l) { l.erase(l[1].name()); });
    expect_left("b=2,c=3,", [](varg_list& l) { EXPECT_EQ(l.erase(l.begin())->name(), "b"); });
    expect_left("a=1,b=2,c=3,", [](varg_list& l) { EXPECT_EQ(l.erase(l.end()), l.end()); });
    expect_left("a=1,", [](varg_list& l) { l.erase(l.find("b"), l.end()); });
    expect_left("", [](varg_list& l) { l.erase(); });
    expect_left("", [](varg_list& l) { l = types::nil; });
    expect_left("a=1,b=2,c=3,", [](varg_list& l) { l = static_cast<varg_list const&>(l); });
    expect_left("b=2,", [](varg_list& l) { l = l[1]; });
}

} // namespace

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/generic/varg_list.hpp>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>

namespace {

using namespace ZOLT_2_18;
using generic::argument;
using generic::varg_list;
using strings::ustring8;

template <typename T>
concept comparable = requires(T const& value) {
    value == value;
};
static_assert(!comparable<argument> && !comparable<varg_list>);

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
    EXPECT_TRUE(list.push_back("x", 1));
    EXPECT_FALSE(list.push_back("x", 2));
    EXPECT_FALSE(list.push_back(argument("x", 3)));
    EXPECT_TRUE(list.push_back("X", 4));
    EXPECT_TRUE(list.push_back("", 5));
    EXPECT_TRUE(list.push_back(types::nil));
    EXPECT_TRUE(list.push_back(list[2]));
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
        EXPECT_EQ(list.has_argument(r.name), r.value != 0);
        EXPECT_EQ(list.at(r.name).value().as_int(), r.value);
        EXPECT_EQ(&list[r.name] == &varg_list::nil_argument, r.value == 0);
        EXPECT_EQ(fixed.find(r.name) == fixed.end(), r.value == 0);
        EXPECT_EQ(list.find(r.name) - list.begin(), r.value ? r.value - 1 : 6);
        if (r.name.find('\0') != ustring8::npos) continue;
        EXPECT_EQ(list.has_argument(r.name.c_str()), r.value != 0);
        EXPECT_EQ(&fixed[r.name.c_str()], &fixed[r.name]);
        EXPECT_EQ(list.find(r.name.c_str()), fixed.find(r.name.c_str()));
    }
    EXPECT_FALSE(list.has_argument(static_cast<char const*>(nullptr)));
    EXPECT_TRUE(varg_list::nil_argument == types::nil);
}

TEST(VargList, ChecksEveryIndex) {
    varg_list list = abc();
    varg_list const& fixed = list;
    EXPECT_EQ(list[0].name(), "a"); // a literal 0 is an index, not a null name
    EXPECT_EQ(fixed.at(0).name(), "a");
    EXPECT_EQ(fixed[1U].name(), "b");
    list[1UL] = types::variant(9);
    EXPECT_EQ(fixed["b"].value().as_int(), 9);
    EXPECT_THROW((void)list.at(list.count()), std::out_of_range);
    EXPECT_THROW((void)fixed[3], std::out_of_range);
    EXPECT_THROW((void)list[-1], std::out_of_range);
    EXPECT_THROW((void)fixed.at(0x100000000ULL), std::out_of_range);
}

TEST(VargList, Erases) {
    struct {
        char const* name;
        void (*erase)(varg_list&);
        char const* left;
    } const rows[] = {{"index 0", [](varg_list& l) { l.erase(0); }, "b=2,c=3,"},
                      {"last index", [](varg_list& l) { l.erase(2UL); }, "a=1,b=2,"},
                      {"index beyond", [](varg_list& l) { l.erase(5); }, "a=1,b=2,c=3,"},
                      {"negative index", [](varg_list& l) { l.erase(-1); }, "a=1,b=2,c=3,"},
                      {"beyond 32 bits", [](varg_list& l) { l.erase(0x100000001ULL); }, "a=1,b=2,c=3,"},
                      {"name", [](varg_list& l) { l.erase("b"); }, "a=1,c=3,"},
                      {"its own name", [](varg_list& l) { l.erase(l[1].name()); }, "a=1,c=3,"},
                      {"unknown name", [](varg_list& l) { l.erase("d"); }, "a=1,b=2,c=3,"},
                      {"position", [](varg_list& l) { EXPECT_EQ(l.erase(l.begin())->name(), "b"); }, "b=2,c=3,"},
                      {"end", [](varg_list& l) { EXPECT_EQ(l.erase(l.end()), l.end()); }, "a=1,b=2,c=3,"},
                      {"range", [](varg_list& l) { l.erase(l.find("b"), l.end()); }, "a=1,"},
                      {"all", [](varg_list& l) { l.erase(); }, ""},
                      {"clear", [](varg_list& l) { l.clear(); }, ""},
                      {"nil", [](varg_list& l) { l = types::nil; }, ""},
                      {"copy",
                       [](varg_list& l) {
                           varg_list const& same = l;
                           l = same;
                       },
                       "a=1,b=2,c=3,"},
                      {"part of itself", [](varg_list& l) { l = l[1]; }, "b=2,"}};
    for (auto const& r : rows) {
        SCOPED_TRACE(r.name);
        varg_list list = abc();
        r.erase(list);
        EXPECT_EQ(content(list), r.left);
        EXPECT_EQ(list == types::nil, *r.left == 0);
    }
}

} // namespace

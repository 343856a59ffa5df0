// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// With what base_config_item does for every source.
#include <zolt/config/enviroment_item.hpp>
#include <zolt/config/user_item.hpp>

#include "tree_text.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

namespace {

using namespace ZOLT_2_18;
using config::config_token;
using config::enviroment_item;
using config::user_item;
using generic::argument;
using generic::varg_list;
using memory::pointers::rc_pointer;
using strings::ustring8;
using tree_text::entries;

TEST(enviroment_item, entries_become_values) {
    std::pair<std::vector<char const*>, std::string> const rows[] = {
        {{"Path=/bin:/x", "A_B=1", "A=1", "a=2", nullptr}, "a=2; a_b=1; path=/bin:/x; "},
        {{"A=x y\tz", "B=\"x y\"", "C D=1", nullptr}, "a=xyz; b=x y; cd=1; "},
        {{"word", "EMPTY=", "", nullptr}, "=; empty=; word=; "},
        {{"A==1", "B=1=2", "C=1\n2", "D\nE=3", nullptr}, "a==1=; b=1=2; c=1; de=3; "},
        {{"x.y=1", "X/Z=2", nullptr, "after=1"}, "x.y=1; x.z=2; "},
    };
    for (auto const& [envp, expected] : rows) {
        enviroment_item loaded(envp.data()), item(nullptr);
        EXPECT_TRUE(item.load() && loaded.tree().empty() && loaded.load({}) && loaded.load());
        item = loaded;
        EXPECT_EQ(envp.data(), item.get_envp());
        EXPECT_EQ(expected, entries(item.tree()));
    }
}

TEST(base_config_item, text_splits_into_key_and_value) {
    struct {
        config_token::tok_types separator;
        char const *text, *key, *value;
    } const rows[] = {
        {config_token::T_EQ, "key", "key", ""},
        {config_token::T_EQ, " A\n\tb = \"x  y\"#z t", "Ab", "x  y#zt"},
        {config_token::T_EQ, "a\r=\r1\r\n2", "a\r", "\r1"},
        {config_token::T_EQ, "\"a=b\"=\"c", "a=b", "c"},
        {config_token::T_COLON, "a=b:c:d", "a=b", "c:d"},
        {config_token::T_SPACE, "a b c", "a", "bc"},
        {config_token::T_FSFS, "a*/b//c", "a*/b", "c"}, // by the kind recorded
        {config_token::T_END, "", "", ""},
    };
    for (auto const& row : rows) {
        auto const [key, value] = user_item::make_key_value(row.text, row.separator);
        EXPECT_EQ(row.key, key) << row.text;
        EXPECT_EQ(row.value, value.as_string()) << row.text;
        EXPECT_TRUE(value.type() == typeid(ustring8));
    }
}

TEST(base_config_item, stores_values) {
    user_item item;
    item.set("A.b", "1", 0);
    item.set("c = 2", 0);
    item.set("flag", 1);
    item.set(ustring8("d"), types::variant(3), 4);
    item.set(std::make_pair("f g", 6), 3);
    EXPECT_EQ("a.b=1; c=2; d(4)=3; f g(3)=6; flag(1)=; ", entries(item.tree()));
}

TEST(base_config_item, stores_arrays) {
    varg_list const three(argument("n", 1), argument("m", "2"), argument("o", ""));
    user_item item;
    item.set_array("a.L", three, three);
    item.set_array("a.l", argument(9), types::nil);
    item.set_array("", argument(7), types::nil);
    item.set_array("b", types::nil, types::nil);
    item.set_array("c.", argument(7), types::nil); // the key with ".0" added
    EXPECT_EQ("(2)=; .0=7; a.l(2)=; a.l.0=9; a.l.1=2; a.l.2=; b(2)=; c(2)=; c..0=7; ", entries(item.tree()))
        << "kept: the tail stays";
}

TEST(base_config_item, copies_and_dumps) {
    user_item item, assigned;
    rc_pointer<config::base_config_item> const clone(item.clone());
    item.set("a.b", "x", 1);
    EXPECT_TRUE(item.load() && item.load({}));
    item.unload();
    assigned = item;
    assigned.set("a.b", "y", 1);
    std::ostringstream text;
    text << *clone;
    EXPECT_EQ(text.str(), "object : user item\n|---------------\\\n|\t\tend\nend\n");
    EXPECT_EQ("a.b(1)=x; ", entries(item.tree()));
}

} // namespace

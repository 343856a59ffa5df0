// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/config/config_manager.hpp>
#include <zolt/config/user_item.hpp>

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>

#include <unistd.h>

namespace {

using namespace ZOLT_2_18;
using namespace ZOLT_2_18::config;
using strings::ustring8;

// Two sources that the test fills.
struct two_sources : config_dispatch {
    void setup(item_list& items) const override {
        items = {memory::pointers::make_rc<user_item>(), nullptr, memory::pointers::make_rc<user_item>()};
        first = items.front().get();
        second = items.back().get();
    }
    config_dispatch* clone() const override { return new two_sources(*this); }

    static inline base_config_item* first;
    static inline base_config_item* second;
};

struct ConfigManager : testing::Test, two_sources {
    ConfigManager() { manager.init(*this); }

    std::string value(char const* key) const { return manager.get_value(key, "none").as_string(); }

    std::string array(char const* key) const {
        std::vector<types::variant> values(1);
        manager.get_array(key, values);
        std::string all = manager.is_array(key) ? "array" : "";
        for (auto const& element : values) all += " " + element.as_string();
        return all;
    }

    std::string pairs(char const* key, bool nested) const {
        std::vector<std::pair<ustring8, types::variant>> values(1);
        manager.get_key_value_array(key, values, nested);
        std::string all;
        for (auto const& [name, element] : values) all += name + "=" + element.as_string() + " ";
        return all;
    }

    config_manager manager;
};

} // namespace

TEST_F(ConfigManager, FirstSourceWithAnEntryAnswers) {
    for (char const* text : {"A/B=1", "c", "d.x.y=1"}) first->set(text, 0);
    for (char const* text : {"a.b=2", "c=2", "d.x=2"}) second->set(text, 0);
    first->set("nil", types::nil, 2);
    // A switch is empty, a mere step of a path no entry.
    EXPECT_EQ(value("a\\B") + value("c") + value("d.x") + value("a"), "12none");
    EXPECT_EQ(manager.get_value("a", 5).type(), typeid(int));
    EXPECT_EQ(manager.get_value("nil", 5), types::nil);
    EXPECT_TRUE(manager.value_exist("c") && manager.value_exist("d.x"));
    EXPECT_FALSE(manager.value_exist("a") || manager.value_exist("nil") || manager.value_exist(""));
}

TEST_F(ConfigManager, OriginIsTheSourceThatAnswers) {
    for (char const* text : {"both=1", "step.x=1", "one=1"}) first->set(text, 0);
    for (char const* text : {"BOTH=2", "step=2", "two=2"}) second->set(text, 0);
    first->set("to", "two", 4);
    second->set("list", types::nil, 2);
    struct {
        char const* key;
        base_config_item const* source;
        bool has_overridden;
    } const rows[] = {
        {"Both", first, true},   {"one", first, false}, {"two/", second, false},  {"step", second, false},
        {"list", second, false}, {"to", first, false},  {"none", nullptr, false}, {"", nullptr, false},
    };
    for (auto const& [key, source, has_overridden] : rows) {
        SCOPED_TRACE(key);
        config_origin const origin = manager.origin(key);
        EXPECT_EQ(origin.source, source);
        EXPECT_EQ(origin.id, source ? "user item" : "");
        EXPECT_EQ(origin.has_overridden, has_overridden);
    }
    EXPECT_FALSE(config_manager().origin("both").source);
}

TEST_F(ConfigManager, ReferencesAndFirstElements) {
    // clang-format off
    struct {
        char const* key;
        char const* text;
        unsigned int kind;
        char const* expected;
    } const rows[] = {
        {"plain", "p", 8, "p"}, {"to", "Plain", 4, "p"}, {"twice", "to", 5, "p"}, {"lost", "no", 4, "none"},
        {"self", "self", 4, "self"}, {"case", "CASE", 4, "CASE"}, {"x", "y", 4, "x"}, {"y", "x", 12, "y"},
        {"into", "x", 4, "x"}, {"f", "text", 3, "f0"}, {"f.0", "f0", 1, "f0"}, {"to.f", "f", 4, "f0"},
        {"g", "text", 7, ""}, {"h", "text", 3, ""}, {"h.0", "plain", 4, "p"}, {"i", "text", 11, ""},
        {"i.0", "text", 3, ""}, {"cross", "low", 4, "up"}, {"cross.up", "up", 0, "up"},
    };
    // clang-format on
    for (auto const& row : rows) first->set(row.key, row.text, row.kind);
    second->set("low", "cross.up", 4);
    second->set("g.0", "of another source", 0);
    for (auto const& row : rows) EXPECT_EQ(value(row.key), row.expected) << row.key;
    EXPECT_EQ(manager.get_value("g", 1), types::nil);

    for (int i = 0; i < 200000; ++i) second->set(std::to_string(i), types::variant(i + 1), 4);
    EXPECT_EQ(value("0"), "none");
    first->set("200000", "1", 4);
    EXPECT_EQ(value("0"), "1");
}

TEST_F(ConfigManager, ArraysAndPairsOfOneSource) {
    for (char const* key : {"l.10", "l.2", "l.007", "l.18446744073709551616", "l.1a", "l..e"})
        second->set(key, key, 0);
    EXPECT_EQ(array("l") + array("none") + pairs("none", true), "");
    second->set("L", types::nil, 2);
    second->set("l.2.z", types::nil, 2);
    EXPECT_EQ(array("L") + array("l.2.z"), "array l.2 l.007 l.10 l.18446744073709551616array");
    std::string const direct = "007=l.007 10=l.10 18446744073709551616=l.18446744073709551616 1a=l.1a 2=l.2 ";
    EXPECT_EQ(pairs("l", false), direct);
    EXPECT_EQ(pairs("l", true), ".e=l..e " + direct);

    first->set("l.1.y=one", 0); // mere steps, yet they hide the other source
    EXPECT_EQ(array("l") + pairs("l", false) + pairs("l", true), "1.y=one ");
    first->set("l.1=1", 0);
    first->set("l", types::nil, 2);
    EXPECT_EQ(array("l"), "array 1");
    first->set("l", types::nil, 3);
    EXPECT_EQ(array("l"), "");
}

TEST_F(ConfigManager, DumpAndInit) {
    first->set("a", "x", 1);
    std::string const top = "config_manager:\n", bottom = "\nno more config_items!\n\nending output\n";
    std::string const item = "\nconfig_item:\nobject : user item\n|---------------\\\n";
    std::ostringstream dumped;
    dumped << std::as_const(manager);
    EXPECT_EQ(dumped.str(),
              top + item + "|\t\ta : 1 x\n|\t\tend\nend\n\nconfig_item:\n" + item + "|\t\tend\nend\n" + bottom);

    auto const held = manager.get_config_item("user item");
    EXPECT_EQ(held, first);
    manager.init(std_config_dispatch());
    EXPECT_EQ(held->get_value("a")->second.as_string(), "x");
    EXPECT_FALSE(manager.value_exist("a") || manager.get_config_item("user item"));
    EXPECT_TRUE(manager.get_config_item("enviroment") && !manager.get_config_item("environment"));
}

TEST_F(ConfigManager, LoadsSavesAndUnloads) {
    char const* const argv[] = {"tool", "-who=line", nullptr};
    char const* const envp[] = {"WHO=environment", "WHAT=environment", nullptr};
    std::string const name = testing::TempDir() + "zolt_manager_" + std::to_string(::getpid());
    manager.init(std_config_dispatch(2, argv, envp, name, ""));
    EXPECT_EQ(value("who"), "none");
    manager.load();
    EXPECT_EQ(value("who") + value("what"), "lineenvironment");
    manager.get_config_item("standard file")->set("new=1", 0);
    manager.save();
    EXPECT_EQ(std::remove(name.c_str()), 0);
    manager.unload();
    EXPECT_EQ(value("who"), "none");

    config_manager idle;
    idle.load();
    idle.save();
    EXPECT_FALSE(idle.value_exist("a"));
}

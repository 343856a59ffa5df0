// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The files in data/ are of the kind that people write; data/saved/ has each as the library saves it. Any texts and
// settings go through fuzz/config_fuzz.cpp, which reads files a second way, too.
#include <zolt/config/file_item.hpp>
#include <zolt/config/user_item.hpp>
#include <zolt/system/file_utility.hpp>

#include "tree_text.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <locale>
#include <map>
#include <random>
#include <vector>

namespace {

using namespace ZOLT_2_18;
using config::file_item;
using memory::pointers::make_rc;
using strings::ustring8;
using tree_text::entries;
using texts_t = std::vector<std::string>;

ustring8 content(std::string const& name) {
    ustring8 text;
    EXPECT_EQ(system::load_file(ustring8(name), text), 0u) << name;
    return text;
}

void set(file_item& item, std::string const& key, texts_t const& texts) {
    generic::varg_list list;
    for (std::string const& text : texts) list.push_back(types::variant(ustring8(text)));
    if (texts.size() == 1) return item.set(ustring8(key), list[0].value(), 0);
    item.set_array(ustring8(key), list, {});
}

// The entries by path, an array's head as "{}".
using entry_map = std::map<std::string, std::string>;
entry_map entries_of(config::config_tree const& tree, std::string const& path = "") {
    entry_map all;
    for (auto const& [name, node] : tree) {
        if (node->has_entry()) all[path + name] = node->kind() == 2 ? "{}" : node->value().as_string();
        all.merge(entries_of(*node, path + name + "."));
    }
    return all;
}

// The entries without what unsaved() tells; an array's head stands for its elements up to the first gap.
entry_map savable_entries(file_item const& item) {
    entry_map all = entries_of(item.tree());
    for (std::string key : item.unsaved()) {
        if (key.ends_with('.')) key.pop_back(); // its last name is empty
        bool const is_array = all.at(key) == "{}";
        all.erase(key);
        for (int i = 0; is_array; ++i) {
            auto const element = all.find(key + "." + std::to_string(i));
            if (element == all.end() || element->second == "{}") break;
            all.erase(element);
        }
    }
    return all;
}

class ConfigFile : public testing::Test {
protected:
    ConfigFile() : directory("/tmp/zolt_config_XXXXXX") { ::mkdtemp(directory.data()); }
    ~ConfigFile() override { std::filesystem::remove_all(directory); }

    ustring8 path(std::string const& name) const { return ustring8(directory + "/" + name); }

    // The file is a new one each time: some file systems are slow to write over another.
    file_item loaded(std::string const& text) const {
        std::filesystem::remove(path("f"));
        system::store_file(path("f"), text);
        file_item item(path("f"));
        EXPECT_TRUE(item.load());
        return item;
    }

    std::string saved(file_item item) const {
        item.save();
        return content(item.get_filename());
    }

    // What is saved is what unsaved() promises, and it reads back and is saved again as the same.
    void expect_round_trip(file_item const& item) const {
        std::filesystem::remove(path("f"));
        std::string const text = saved(item);
        file_item const again = loaded(text);
        EXPECT_EQ(entries_of(again.tree()), savable_entries(item)) << text;
        std::filesystem::remove(path("f"));
        EXPECT_TRUE(again.unsaved().empty() && saved(again) == text) << text;
    }

    std::string directory;
};

} // namespace

TEST_F(ConfigFile, GrammarMakesEntries) {
    std::pair<std::string, std::string> const rows[] = {
        {" \t\n# a = 1\r\n // b = \"2\n# it's 5\" wide\na=1\n#", "a=1; "},
        // scalars
        {"x = \"a b\" # note\ny=a b\tc", "x=a b; y=abc; "},
        {"k=\nl=\"\"\nm= # none\nn=1\nrest without", "n=1; "},
        {"a b\n\tc = 1\r\nD.e/F\\g=2\nD/E.f/g=3", "abc=1; d.e.f.g=3; "},
        {"a#b//c = 1\na == b := 2 = 3\nd = = e", "a#b..c=1; a==b:=2=3; d==e; "},
        {"*/ = 1\na=1/*2*/3\nb=x*//y\nc=x/ /y", "*=1; a=1/*2*/3; b=x*//y; c=x//y; "},
        {"a=b//", "a=b; "},
        {"a=\"\\\"b\\\\\"c\"d\ne\"", "a=\\\"b\\\\cd\ne; "},
        {"a=b\rc\n=1\n\"\"=2\n.a=3\nb..c=4\nd.=5", "=2; .a=3; a=b\rc; b..c=4; d=5; "},
        // sections
        {"[sec]\nk=v\n[A.b] c=1\n[]d=2\n", "a.b.c=1; d=2; sec.k=v; "},
        {"[ s #1\n //x ]k=1\n[\"t ]\"]\nk=2\n[u\nk=3", "s#1..x.k=1; t ].k=2; "},
        {"[s]\n=1\nl[]=1,2\n[]=3\n[a.]\nb=1\n=2", "=3; a.=2; a..b=1; s=1; s.l(2)=; s.l.0=1; s.l.1=2; "},
        {"[s]\n\"[]\"=1,2", "s(2)=; s..0=1; s..1=2; "},
        // arrays
        {"l[] = 1, 2,\n 3\nm [ ] = 1 //\nn[x]=2", "l(2)=; l.0=1; l.1=2; l.2=3; m(2)=; m.0=1; n[x]=2; "},
        {"l[] = 1, # one\r\n\n // more\n 2 # two\n3=4", "3=4; l(2)=; l.0=1; l.1=2; "},
        {"l[]=1,,2\nm[]=,\"\",\"a, b\"c", "l(2)=; l.0=1; l.1=; l.2=2; m(2)=; m.0=; m.1=; m.2=a, bc; "},
        {"l[]=\nm[]=1,\"\"\nn[]=1,2,", ""},
        {"l[]=1,2,\nk=v", "l(2)=; l.0=1; l.1=2; l.2=k=v; "},
        {"l[]=1,2,3\nl[]=4\nl.1=5\nl[][]=6", "l(2)=; l.0=4; l.1=5; l.2=3; l[](2)=; l[].0=6; "},
        // any bytes
        {std::string("\xEF\xBB\xBF[a]\nb\0c=\0\xFF", 13), std::string("\xEF\xBB\xBF[a]b\0c=\0\xFF; ", 14)},
    };
    for (auto const& [text, expected] : rows) EXPECT_EQ(entries(loaded(text).tree()), expected) << text;
}

TEST_F(ConfigFile, FilesAsPeopleWriteThem) {
    auto const data = std::filesystem::path(ZOLT_SOURCE_DIR "/tests/config/data");
    for (char const* name :
         {"relay.conf", "mirrors.cfg", "editor.ini", "viewer.cfg", "repository.ini", "player.ini"}) {
        SCOPED_TRACE(name);
        std::string const text = content(data / name);
        EXPECT_EQ(saved(loaded(text)), content(data / "saved" / name));
        for (std::size_t size = 0; size <= text.size(); ++size) expect_round_trip(loaded(text.substr(0, size)));
    }
}

TEST_F(ConfigFile, SearchTakesTheFirstFileThatOpens) {
    for (char const* name : {"a", "b", "raw.cfg", ".cfg"}) system::store_file(path(name), ustring8("is=") + name);
    // clang-format off
    struct {
        std::string cfg[2], raw[2], own_name; // of two sources; "-" for none, "." for the directory
        std::string expected;                 // name and content
    } const rows[] = {
        {{"a", "b"}, {"raw", "raw"}, "b", "a is=a; "}, {{"missing", "b"}, {"raw", "-"}, "a", "b is=b; "},
        {{".", "-"}, {"raw", "-"}, "a", "a is=a; "}, {{"-", "-"}, {"raw", "-"}, "none", "none "},
        {{"-", "."}, {"no", "raw"}, "", "raw.cfg is=raw.cfg; "}, {{"-", ""}, {"", "no"}, "", " "},
    };
    // clang-format on
    auto const before = std::filesystem::current_path();
    std::filesystem::current_path(directory);
    for (auto const& row : rows) {
        SCOPED_TRACE(row.expected);
        config::base_config_item::item_list others(1); // an empty pointer
        for (int i : {0, 1}) {
            auto const& source = others.emplace_back(make_rc<config::user_item>());
            if (row.cfg[i] != "-") source->set("cfg_file", ustring8(row.cfg[i]), 0);
            if (row.raw[i] != "-") source->set("application.name.raw", ustring8(row.raw[i]), 0);
        }
        file_item item(ustring8(row.own_name));
        bool const was_read = item.load(others);
        EXPECT_EQ(item.get_filename() + " " + entries(item.tree()), row.expected);
        EXPECT_EQ(was_read, !item.tree().empty());
    }
    std::filesystem::current_path(before);
}

TEST_F(ConfigFile, LinesQuoteWhatNeedsIt) {
    // clang-format off
    struct {
        std::string key;
        texts_t texts;    // more than one, or none, for an array
        std::string line; // empty: cannot be written
    } const rows[] = {
        {"v", {"a b"}, "v=\"a b\""}, {"v", {"a#b"}, "v=\"a#b\""}, {"v", {"a//"}, "v=\"a//\""},
        {"v", {"=a"}, "v=\"=a\""}, {"v", {"a=b,/[]+"}, "v=a=b,/[]+"}, {"v", {"a\r"}, "v=\"a\r\""},
        {"v", {"a b\\\\"}, "v=\"a b\"\\\\"}, {"v", {"\\"}, "v=\\"}, {"v", {"a\\\\\"b"}, "v=\"a\"\\\"\\\"b\""},
        {"v", {"say \"hi\""}, ""}, {"v", {"\\\"\""}, ""}, {"v", {""}, ""},
        // keys
        {"K/Up.", {"1"}, "k.up=1"}, {"a.b c", {"1"}, "\"a.b c\"=1"}, {"k+", {"1"}, "\"k+\"=1"},
        {"#k", {"1"}, "\"#k\"=1"}, {"k#", {"1"}, "k#=1"}, {"[k", {"1"}, "\"[k\"=1"}, {"k=", {"1"}, "\"k=\"=1"},
        {"k[]", {"1"}, "k[].=1"}, {"k..", {"1"}, "k..=1"}, {"", {"1"}, "=1"}, {"k\"", {"1"}, ""},
        // arrays
        {"a+", {"=", "a=", "", "x,y"}, "a+[]=\"=\",a=,,\"x,y\""}, {"", {"1", "2"}, "\"\"[]=1,2"},
        {"a[]", {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}, "a[][]=0,1,2,3,4,5,6,7,8,9,10"},
        {"a", {}, ""}, {"a", {"1", ""}, ""}, {"a", {"1", "\"", "2"}, ""}, {"a\"", {"1", "2"}, ""},
    };
    // clang-format on
    for (auto const& row : rows) {
        SCOPED_TRACE(row.key + row.line);
        file_item item(path("f"));
        set(item, row.key, row.texts);
        EXPECT_EQ(saved(item), row.line.empty() ? "" : row.line + "\n");
        EXPECT_EQ(item.unsaved().size(), row.line.empty() ? 1u : 0u);
        expect_round_trip(item);
    }
}

TEST_F(ConfigFile, SavedInTheOrderOfTheTree) {
    std::locale::global(std::locale::classic());
    file_item item(path("f"));
    set(item, "n", {"a", "b", "c"});
    set(item, "n.4", {"x", "y"}); // a gap before it, an array itself
    for (char const* key : {"n.9", "n.10", "n.01", "n.1.x", "m.y"}) set(item, key, {"t"});
    item.set("m", 1.5, 5); // neither number nor reference any more
    item.set("u", types::nil, 1);
    item.set("u.step", types::nil, 0);
    set(item, "u.h", {"1", "2"});
    item.set("u.h", "value", 2);
    set(item, "u..", {"", ""}); // its elements are at "u...0"
    EXPECT_EQ(saved(item), "m=1.5\nm.y=t\nn[]=a,b,c\nn.01=t\nn.1.x=t\nn.10=t\nn.4[]=x,y\nn.9=t\n");
    EXPECT_EQ(item.unsaved(), (std::vector<ustring8>{"u", "u..", "u...0", "u...1", "u.h"}));
}

TEST_F(ConfigFile, WhatCannotBeReadIsNotWipedOut) {
    file_item item = loaded("a=1");
    system::store_file(path("f"), "b=2 # kept");
    EXPECT_EQ(saved(file_item(path("f"))), "b=2 # kept");
    std::filesystem::resize_file(path("f"), 0x80000000);
    EXPECT_FALSE(item.load() || file_item(path(".")).load());
    EXPECT_EQ(entries(item.tree()), "a=1; ");

    EXPECT_EQ(saved(loaded("# nothing")), "");
    item.save();
    item.unload();
    EXPECT_EQ(entries(item.tree()) + saved(file_item(item)), ""); // kept: it was loaded once
}

// The longest text that is kept without a node is of 65535 bytes.
TEST_F(ConfigFile, TextsBecomeNodesUnnoticed) {
    for (std::size_t const size : {1u, 65535u, 65536u, 70000u}) {
        std::string const key(size, 'k'), text(size, 't');
        file_item item = loaded(key + "=1\na=0\na=" + text + "\n" + key + "=2");
        file_item const copy = item;
        auto const* const value = item.get_value("A");
        item.load();
        EXPECT_TRUE(value == item.get_value("a") && value->second.as_string() == text);
        item.set("a.b", 1, 0);
        for (file_item const* each : {&std::as_const(item), &copy}) {
            EXPECT_EQ(entries(each->tree()), "a=" + text + (each == &copy ? "; " : "; a.b=1; ") + key + "=2; ");
        }
    }
}

TEST_F(ConfigFile, TheLastTextOfAKeyCounts) {
    std::mt19937 random(9);
    for (unsigned int const most : {3u, 100u, 40000u, 70000u}) {
        entry_map expected;
        std::string text;
        for (unsigned int i = 0; i < 200; ++i) {
            std::string const key = "k" + std::to_string(random() % 9);
            std::string const value(1 + random() % most, static_cast<char>('a' + i % 26));
            expected[key] = value;
            text += key + "=" + value + "\n";
        }
        file_item item = loaded(text);
        item.load();
        EXPECT_TRUE(entries_of(item.tree()) == expected) << most;
    }
}

// What is not linear, but for a logarithm, takes hours here; recursion overflows the stack.
TEST_F(ConfigFile, LongKeysAndSections) {
    std::string keys, deep = "a";
    for (int i = 1; i < 200000; ++i) keys += "k" + std::to_string(i) + "=1\n";
    for (int i = 1; i < 500000; ++i) deep += ".a";
    EXPECT_TRUE(saved(loaded(deep + "=1")) == deep + "=1\n");
    // With its section before each key the text would have 200 GB.
    EXPECT_EQ(saved(loaded("[" + std::string(1 << 20, 's') + "]\n" + keys)).substr(0, 3), "[ss");
}

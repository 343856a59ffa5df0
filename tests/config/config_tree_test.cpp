// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Arrays and pairs are tested in config_manager_test.cpp, depth in robustness/deep_nesting_test.cpp.
#include "tree_text.hpp"

#include <gtest/gtest.h>

#include <cctype>
#include <map>
#include <random>
#include <sstream>

namespace {

using namespace ZOLT_2_18;
using config::config_tree;
using memory::pointers::rc_pointer;
using strings::ustring8;
using tree_text::entries;

config_tree make(std::initializer_list<char const*> keys) {
    config_tree tree;
    for (char const* const key : keys) tree.set_node(key, key, 0);
    return tree;
}

ustring8 repeat(int count, std::string const& text) {
    ustring8 result;
    while (count-- > 0) result += text;
    return result;
}

TEST(config_tree, keys_are_paths_in_any_case) {
    struct {
        char const *key, *stored, *head, *rest;
    } const rows[] = {
        {"", "=1; ", "", ""},
        {"..", ".=1; ", "", "."},
        {"net.", "net=1; ", "net", ""},
        {"A..b/C", "a..b.c=1; ", "a", ".b/C"},
        {"/A_ [\xC3\x84", ".a_ [\xC3\x84=1; ", "", "A_ [\xC3\x84"},
        {"NET\\PORT", "net.port=1; ", "net", "PORT"},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.key);
        config_tree tree;
        EXPECT_EQ(nullptr, tree.get_node(row.key));
        EXPECT_TRUE(tree.empty()) << "asking makes nothing";
        tree.set_node(row.key, 1, 0);
        EXPECT_EQ(row.stored, entries(tree));
        EXPECT_EQ(&tree.make_node(row.key), tree.get_node(row.key));
        EXPECT_EQ(nullptr, tree.get_node(ustring8(row.key) + ".x"));

        ustring8 head, rest = row.key;
        tree.parse_string(rest, head, rest); // in place
        EXPECT_TRUE(head == row.head && rest == row.rest);
    }
}

TEST(config_tree, nodes_hold_values_and_children) {
    config_tree tree(5, 1);
    tree.set_node("a.b", "1", 0);
    EXPECT_FALSE(tree.get_node("a")->has_entry()) << "a step of a path";
    tree.set_node("a", "2", 1);
    tree.set_node("a.c", types::nil, 2);
    tree.set_node("a.b", "3", 7);
    tree.set_node("a.b.d", "4", 0);
    EXPECT_EQ("a(1)=2; a.b(7)=3; a.b.d=4; a.c(2)=; ", entries(tree));
    rc_pointer<config_tree> const held = tree.begin()->second->begin()->second;
    tree.erase();
    tree.erase();
    EXPECT_TRUE(tree.empty() && tree.value().as_int() == 5 && tree.kind() == 1);
    EXPECT_EQ(1u, held->reference_count);
    EXPECT_EQ("d=4; ", entries(*held)) << "a node held elsewhere survives";
}

TEST(config_tree, copies_are_deep) {
    config_tree tree = make({"a.b", "a.c", "d"});
    config_tree copy(tree), assigned = make({"old.x"});
    assigned = tree;
    rc_pointer<config_tree> const clone(tree.clone());
    EXPECT_TRUE(clone->heap_allocated && !copy.heap_allocated);
    for (config_tree* const other : {&copy, &assigned, clone.get()}) {
        EXPECT_EQ("a.b=a.b; a.c=a.c; d=d; ", entries(*other));
        other->set_node("a.b", "new", 1);
        other->make_node("a").erase();
        EXPECT_EQ("a.b=a.b; a.c=a.c; d=d; ", entries(tree));
    }
}

TEST(config_tree, a_tree_can_be_assigned_its_own_parts) {
    config_tree tree = make({"a", "a.b", "a.b.c"});
    tree.make_node("a") = tree; // what holds it
    EXPECT_EQ("a.a=a; a.a.b=a.b; a.a.b.c=a.b.c; ", entries(tree));
    tree = *&tree;
    tree = *tree.get_node("a.a");
    EXPECT_EQ("a", tree.value().as_string());
    EXPECT_EQ("b=a.b; b.c=a.b.c; ", entries(tree));
}

TEST(config_tree, dumps) {
    config_tree tree = make({"b.c"});
    tree.set_node("b.d", "shown", 16);
    tree.set_node("a", "", 1);
    tree.set_node("e", types::nil, 2);
    for (int const depth : {-1, 0, 1, 20}) {
        std::string const in = repeat(depth, "|\t\t");
        std::ostringstream stream;
        stream << std::hex << std::showbase;
        stream.width(30);
        stream << config_tree();
        tree.dump(stream, depth);
        EXPECT_EQ("end\n" + in + "a : 1 \n" + in + in + "b : true\n" + in + "|---------------\\\n" + in +
                      "|\t\tc : true\n" + in + "|\t\t" + in + "|\t\td : 16 shown\n" + in + "|\t\tend\n|\n" + in +
                      "e : 2 \n" + in + "end\n",
                  stream.str());
    }
}

TEST(config_tree, any_number_of_children_in_order) {
    std::mt19937 random(3);
    for (int const count : {1, 4, 5, 127, 128, 129, 300, 40000}) {
        for (int const order : {-1, 0, 1}) {
            std::map<std::string, int> expected;
            config_tree tree;
            for (int i = 0; i < count; ++i) {
                int const number = order == 0 ? static_cast<int>(random() % 100000) : 100000 + order * i;
                std::string const name =
                    std::string(static_cast<std::size_t>(number % 19), 'n') + std::to_string(number);
                tree.set_node(ustring8(name), number, 0);
                expected[name] = number;
                EXPECT_EQ(nullptr, tree.get_node(ustring8(name + "n")));
                if (random() % 64 == 0) { // walked over now and then, which puts them in order
                    EXPECT_EQ(expected.begin()->first, tree.begin()->first);
                }
            }
            auto here = tree.begin();
            for (auto const& [name, number] : expected) {
                ASSERT_TRUE(here != tree.end() && here->first == name && here->second->value().as_int() == number);
                ASSERT_EQ(here++->second.get(), tree.get_node(ustring8(name)));
            }
            EXPECT_EQ(tree.end(), here);
        }
    }
}

// Keys are looked at sixteen bytes at a time.
TEST(config_tree, each_byte_of_a_key) {
    for (std::size_t const size : {1u, 3u, 4u, 7u, 8u, 9u, 15u, 16u, 17u, 32u, 35u}) {
        for (std::size_t place = 0; place < size; ++place) {
            for (int byte = 0; byte < 256; ++byte) {
                std::string key(size, 'x'), name = key;
                key[place] = static_cast<char>(byte);
                name[place] = static_cast<char>(std::tolower(byte));
                if (std::string("./\\").find(static_cast<char>(byte)) != std::string::npos) name.resize(place);
                config_tree tree;
                tree.set_node(ustring8(key), 1, 0);
                ASSERT_EQ(name, tree.begin()->first) << byte << " " << place << " " << size;
                ASSERT_EQ(name.size() + 1 < size, !tree.begin()->second->empty());
            }
        }
    }
}

} // namespace

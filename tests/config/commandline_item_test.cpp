// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/config/commandline_item.hpp>

#include "tree_text.hpp"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>
#include <vector>

namespace {

using tree_text::entries;
using ZOLT_2_18::config::commandline_item;
using arguments = std::vector<char const*>;

// The entries, and after them what load() writes to std::cout.
std::string loaded(unsigned int argc, arguments argv) {
    argv.shrink_to_fit();
    std::ostringstream output;
    std::streambuf* const before = std::cout.rdbuf(output.rdbuf());
    commandline_item item(argc, argv.data());
    EXPECT_TRUE(item.load());
    std::cout.rdbuf(before);
    return entries(item.tree()) + output.str();
}

TEST(commandline_item, options_become_entries) {
    std::pair<arguments, std::string> const rows[] = {
        // separators
        {{"-a=1", "/B:2", "-c:=3", "-d=", "--e=x"}, "-e=x; a=1; b=2; c=3; d=; "},
        {{"-a>=1", "-b<=2", "-c+=3", "-d-=4", "-e*=5", "-f/=6"}, "a>=1; b<=2; c+=3; d-=4; e*=5; f=6; "},
        {{"-b==c", "-d>e=1", "-f=g=h", "-*/"}, "*(1)=; b==c(1)=; d>e=1; f=g=h; "},
        // elements
        {{"-x=1,2", "-y=,a,", "-z=\"1,2\""}, "x(2)=; x.0=1; x.1=2; y(2)=; y.0=; y.1=a; y.2=; z=1,2; "},
        {{"-x=1,2,3", "-x=4,5"}, "x(2)=; x.0=4; x.1=5; x.2=3; "},
        // "$": nothing is split, later ones are text, and so are those after another separator
        {{"-x$1,2", "-y$a=$b", "-z=$1", "-\"a$\"=1", "-$s", "-e$"}, "=s; a$=1; e=; x=1,2; y=a=$b; z=$1; "},
        // blanks repeat the token before them
        {{"-a b=c d", "-x= 1", "-y$ 1", "-z=1, 2"}, "aab=ccd; x==1; y=$1; z(2)=; z.0=1; z.1=,2; "},
        {{"-x", " 1  2 "}, "x=1122; "},
        // switches, whose keys are split once more
        {{"-v", "-w", "/q", "-"}, "(1)=; q(1)=; v(1)=; w(1)=; "},
        {{"-\"a b\"", "-\"c=d\""}, "ab(1)=; c(1)=d; "},
        // values in the arguments that follow; the first may not begin with a slash
        {{"-x", "1", "2", "3", "-y", "1,2", "-z", ""}, "x(2)=; x.0=1; x.1=2; x.2=3; y=1,2; z=; "},
        {{"-x", "1", "/tmp/a", "-y", "/t/a", "1"}, "t.a=1; x(2)=; x.0=1; x.1=/tmp/a; y(1)=; "},
        // what is no option, and where the walk ends
        {{"-x=1", "2"}, "x=1; Warning! unknown key:2\nIgnoring key and continuing\n"},
        {{""}, "Warning! unknown key:\nIgnoring key and continuing\n"},
        {{"-x", nullptr, "1"}, "x(1)=; "},
    };
    for (auto [argv, expected] : rows) {
        argv.insert(argv.begin(), nullptr);
        EXPECT_EQ(expected, loaded(static_cast<unsigned int>(argv.size()), argv));
    }
}

TEST(commandline_item, the_program_has_a_name) {
    std::pair<char const*, char const*> const rows[] = {
        {"/usr/bin/tool", "application.name=tool; application.name.raw=; "},
        {"x.y/my.a..bin", "application.name=my.a..bin; application.name.extention=bin; application.name.raw=mya; "},
        {".rc", "application.name=.rc; application.name.extention=rc; application.name.raw=; "},
        {"d/a b./", "application.name=a b.; application.name.raw=; "},
        {"/", "application.name=; application.name.raw=; "},
        {"", "application.name=; application.name.raw=; "},
    };
    for (auto const& [path, expected] : rows) EXPECT_EQ(expected, loaded(1, {path, "-x"}));
}

TEST(commandline_item, the_null_entry_ends_the_arguments) {
    EXPECT_EQ("x(1)=; ", loaded(2147483647u, {nullptr, "-x", nullptr}));
    for (unsigned int const argc : {0u, 1u, 2147483648u}) EXPECT_EQ("", loaded(argc, {nullptr, "-x", nullptr}));
}

TEST(commandline_item, is_assigned_with_its_arguments) {
    char const* const argv[] = {nullptr, "-x=1", nullptr};
    commandline_item item(0, nullptr), other(2, argv);
    other.set("y", 2, 0);
    EXPECT_TRUE(item.load() && item.tree().empty());
    item = other;
    item.load({});
    EXPECT_EQ("x=1; y=2; ", entries(item.tree())) << "loading adds";
}

// A long key, many elements and many arguments are walked once.
TEST(commandline_item, large_arguments) {
    std::string const key(300000, 'k');
    std::string const elements = "-" + key + "=" + std::string(300000, ',');
    arguments argv{nullptr, elements.c_str(), "-x"};
    argv.resize(300000, "1");
    commandline_item item(static_cast<unsigned int>(argv.size()), argv.data());
    item.load();
    EXPECT_NE(nullptr, item.get_value(key + ".300000"));
    EXPECT_NE(nullptr, item.get_value("x.299996"));
}

} // namespace

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Any texts as arguments of a program: loading again changes nothing, copies are alike. Arguments of letters,
// digits and separators alone set what a plain reading of them sets.
#include "input.hpp"

#include <zolt/config/commandline_item.hpp>
#include <zolt/config/user_item.hpp>
#include <zolt/strings/string_utility.hpp>

#include <iostream>
#include <vector>

namespace {

using namespace zolt::config;
using fuzz::check;
using zolt::strings::ustring8;
using texts = std::vector<ustring8>;

std::string entries(config_tree const& tree, std::string const& path = "") {
    std::string all;
    for (auto const& [name, node] : tree) {
        std::string const entry = std::to_string(node->kind()) + "=" + node->value().as_string() + "\n";
        if (node->has_entry()) all += path + name + entry;
        all += entries(*node, path + name + ".");
    }
    return all;
}

void set(user_item& item, ustring8 const& key, texts const& values) {
    if (values.size() == 1) return item.set(key, values[0], 0);
    zolt::generic::varg_list list;
    for (ustring8 const& value : values) list.push_back("", value);
    item.set_array(key, list, zolt::generic::varg_list());
}

/// Of arguments that hold at most one separator and no quotes, blanks or pairs of marks.
void load_plainly(user_item& item, texts const& arguments) {
    auto const begins = [&](std::size_t i, char const* marks) {
        return i == arguments.size() || arguments[i].find_first_of(marks) == 0;
    };
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        if (!begins(i, "-/")) continue;
        ustring8 const option = arguments[i].substr(1);
        std::size_t const mark = option.find_first_of("=:$");
        ustring8 const key = option.substr(0, mark);
        texts values;
        if (mark != option.npos) {
            ustring8 const value = option.substr(option.find_first_not_of("=:$", mark));
            values = option[mark] == '$' ? texts{value} : zolt::strings::split_string(value + ",", ",");
        } else if (!begins(i + 1, "-/")) {
            do values.push_back(arguments[++i]);
            while (!begins(i + 1, "-"));
        } else {
            item.set(key, ustring8(), 1);
            continue;
        }
        set(item, key, values);
    }
}

ustring8 spelt(fuzz::input& in, std::string const& alphabet) {
    ustring8 text = in.text().substr(0, 20);
    for (char& c : text) c = alphabet[static_cast<unsigned char>(c) % alphabet.size()];
    return text;
}

/// An argument that load_plainly understands.
ustring8 plain_argument(fuzz::input& in) {
    static constexpr char const* separators[] = {"", "", "=", ":", ":=", "$"};
    unsigned const form = in.below(13);
    ustring8 const value = "0" + spelt(in, "abc01.,");
    if (form == 12) return value;
    ustring8 const option = (form % 2 ? "-" : "/") + spelt(in, "abcX.") + separators[form / 2];
    return form / 2 < 2 ? option : ustring8(option + value);
}

std::string loaded(texts const& arguments) {
    std::vector<char const*> argv;
    for (ustring8 const& argument : arguments) argv.push_back(argument.c_str());
    argv.push_back(nullptr);
    commandline_item item(static_cast<unsigned>(arguments.size()), argv.data());
    item.load();
    std::string const once = entries(item.tree());
    commandline_item const copy(item);
    item.load();
    check(entries(item.tree()) == once && entries(copy.tree()) == once, "loaded again, copied");
    item.unload();
    check(item.tree().empty() && item.load() && entries(item.tree()) == once, "unloaded, and loaded after that");
    return once;
}

} // namespace

void fuzz::run(input in) {
    bool const plain = in.below(2) == 1;
    texts arguments;
    if (plain) arguments.push_back("x");
    while (!in.empty() && arguments.size() < 100) arguments.push_back(plain ? plain_argument(in) : in.text());

    std::ostringstream warnings; // stay off the terminal
    auto* const terminal = std::cout.rdbuf(warnings.rdbuf());
    std::string const set = loaded(arguments);
    std::cout.rdbuf(terminal);
    if (!plain) return;
    user_item expected;
    expected.set("application.name", ustring8("x"), 0);
    expected.set("application.name.raw", ustring8(), 0);
    load_plainly(expected, arguments);
    check(set == entries(expected.tree()), "what plain arguments set");
}

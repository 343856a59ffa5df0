// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Random programs on a configuration tree beside a map from paths to entries that does the same.
#include "input.hpp"

#include <zolt/config/config_tree.hpp>
#include <zolt/types/nil.hpp>

#include <algorithm>
#include <map>

namespace {

using fuzz::check;
using zolt::config::config_tree;
using zolt::strings::ustring8;

using path = std::vector<ustring8>;
using entry = std::pair<unsigned, std::string>; ///< kind; "=" and the value, or empty for nil
using model = std::map<path, entry>;            ///< every node below the root, steps of paths included
using entry_list = std::vector<std::pair<ustring8, entry>>;

path components(ustring8 const& key) {
    path parts(1);
    for (std::size_t i = 0; i < key.size(); ++i) {
        bool const separates = key[i] == '.' || key[i] == '/' || key[i] == '\\';
        if (!separates)
            parts.back() += static_cast<char>(key[i] >= 'A' && key[i] <= 'Z' ? key[i] + 32 : key[i]);
        else if (i + 1 < key.size())
            parts.emplace_back();
    }
    return parts;
}

path joined(path top, path::const_iterator first, path::const_iterator last) {
    top.insert(top.end(), first, last);
    return top;
}

bool is_below(path const& candidate, path const& top) {
    return candidate.size() > top.size() && std::equal(top.begin(), top.end(), candidate.begin());
}

entry& make(model& nodes, path const& at) {
    for (auto end = at.begin(); end != at.end(); ++end) nodes[joined({}, at.begin(), end + 1)];
    return nodes[at];
}

void erase_below(model& nodes, path const& top) {
    std::erase_if(nodes, [&](auto const& node) { return is_below(node.first, top); });
}

/// What is below `from` comes below `to` instead of what is there.
void copy(model& nodes, path const& from, path const& to) {
    model const before = nodes;
    erase_below(nodes, to);
    for (auto const& [at, stored] : before) {
        if (is_below(at, from)) nodes[joined(to, at.begin() + long(from.size()), at.end())] = stored;
    }
}

entry entry_of(config_tree::entry_type const& stored) {
    return {stored.first, stored.second == zolt::types::nil ? "" : "=" + stored.second.as_utf8()};
}

void collect(config_tree const& tree, path const& at, model& nodes) {
    for (auto const& [name, node] : tree) {
        path below = at;
        below.push_back(name);
        nodes[below] = entry_of(node->entry());
        collect(*node, below, nodes);
    }
}

/// The entries below a node, with a value or as elements of an array.
entry_list plain_list(model const& nodes, path const& top, bool nested, bool elements) {
    entry_list list;
    for (auto const& [at, stored] : nodes) {
        if (!is_below(at, top) || (!nested && at.size() > top.size() + 1)) continue;
        ustring8 name = at[top.size()];
        for (std::size_t i = top.size() + 1; i < at.size(); ++i) name += "." + at[i];
        bool const is_number = !name.empty() && name.find_first_not_of("0123456789") == name.npos;
        if (elements ? is_number : !stored.second.empty()) list.emplace_back(name, stored);
    }
    auto const number = [](std::string text) {
        text.erase(0, std::min(text.find_first_not_of('0'), text.size()));
        return std::pair(text.size(), text);
    };
    auto const less = [&](auto const& left, auto const& right) { return number(left.first) < number(right.first); };
    if (elements) std::stable_sort(list.begin(), list.end(), less);
    return list;
}

void check_list(config_tree::entry_list const& given, entry_list const& expected) {
    auto const same = [](auto const& left, auto const& right) {
        return left.first == right.first && entry_of(left.second) == right.second;
    };
    check(std::equal(given.begin(), given.end(), expected.begin(), expected.end(), same), "a list of entries");
}

void check_queries(config_tree const& tree, model const& nodes, ustring8 const& key) {
    path const at = components(key);
    config_tree const* const node = tree.get_node(key);
    auto const expected = nodes.find(at);
    check((node != nullptr) == (expected != nodes.end()), "get_node");
    check(node == nullptr || entry_of(node->entry()) == expected->second, "a node's entry");
    config_tree::entry_list list;
    for (bool const nested : {false, true}) {
        tree.get_value_pair_array(key, list, nested);
        check_list(list, plain_list(nodes, at, nested, false));
    }
    tree.get_array(key, list);
    check_list(list, node && node->kind() == 2 ? plain_list(nodes, at, false, true) : entry_list());
}

void run_step(fuzz::input& in, config_tree& tree, model& nodes) {
    unsigned const operation = in.below(8);
    ustring8 const key = in.text();
    path const at = components(key);
    if (operation == 0) {
        tree.make_node(key).erase();
        make(nodes, at);
        erase_below(nodes, at);
    } else if (operation == 1) {
        ustring8 const source = in.text();
        tree.make_node(key).assign(tree.make_node(source));
        make(nodes, at);
        entry const moved = make(nodes, components(source));
        copy(nodes, components(source), at);
        nodes[at] = moved;
    } else if (operation < 4) {
        config_tree copied(tree);
        tree.assign((operation == 2 ? copied : tree).make_node(key));
        tree.set_entry(zolt::types::nil, 0);
        make(nodes, at);
        copy(nodes, at, {});
    } else if (operation == 4) {
        check_queries(tree, nodes, key);
    } else {
        unsigned const kind = in.below(4);
        ustring8 const value = in.text();
        tree.set_node(key, kind == 2 ? zolt::types::variant() : zolt::types::variant(value), kind);
        make(nodes, at) = {kind, kind == 2 ? "" : "=" + value};
    }
}

} // namespace

void fuzz::run(input in) {
    config_tree tree;
    model nodes;
    for (unsigned steps = 0; steps < 40 && !in.empty() && nodes.size() < 300; ++steps) run_step(in, tree, nodes);
    model seen;
    collect(tree, {}, seen);
    check(seen == nodes, "the tree is what was done to it");
    unsigned queries = 0;
    for (auto const& node : nodes) {
        ustring8 key;
        for (ustring8 const& component : node.first) key += component + "/";
        if (++queries < 60) check_queries(tree, nodes, key);
    }
}

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A configuration tree as text for comparison: "a=1; list(2)=; list.0=x; ", all entries with their paths in
// tree order, the kind in parentheses unless it is 0. Steps of paths are left out.
#pragma once

#include <zolt/config/config_tree.hpp>

#include <string>

namespace tree_text {

using ZOLT_2_18::config::config_tree;

inline std::string entries(config_tree const& tree, std::string const& path = "") {
    std::string all;
    for (auto const& [name, node] : tree) {
        std::string const kind = node->kind() ? "(" + std::to_string(node->kind()) + ")=" : "=";
        if (node->has_entry()) all += path + name + kind + node->value().as_string() + "; ";
        all += entries(*node, path + name + ".");
    }
    return all;
}

} // namespace tree_text

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The rules of a command: what its findings are called, how bad they are, and what --list-rules tells of them.
#pragma once

#include "program_messages.hpp"
#include "session.hpp"

#include <span>
#include <string_view>
#include <vector>

namespace tools {

struct rule {
    std::string_view name;
    severity level;
    phrase about;             ///< a sentence
    std::string_view example; ///< what the rule finds; may have several lines
};

/// In the order of their names.
using rule_table = std::span<rule const>;

constexpr bool is_in_order(rule_table rules) {
    for (std::size_t i = 1; i < rules.size(); ++i) {
        if (rules[i - 1].name >= rules[i].name) return false;
    }
    return true;
}

/// Null when there is none of this name.
rule const* find_rule(rule_table rules, std::string_view name);

/// Appends the words behind "zolt-ignore" in a comment, up to one that ends in a colon; no others.
void append_ignored(std::string_view comment, std::vector<std::string_view>& words);

/// --list-rules.
void list_rules(session const& session, rule_table rules);

} // namespace tools

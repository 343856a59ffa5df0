// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The rules that compare: messages with those of the same name in other languages, files with those that
// they include.
#pragma once

#include "check_lost_messages.hpp"
#include "check_tree.hpp"
#include "language_choice.hpp"
#include "tools/program/library.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tools {

/// For a tree that is complete.
class tree_rules {
public:
    /// The reference is compared with; with a language to be looked at, only that one is reported.
    tree_rules(check_tree& tree, rule_report const& report, ustring8 const& reference, ustring8 const& language)
        : m_tree(tree), m_report(report), m_reference(reference), m_wanted(language), m_lost(tree) {}

    void check_messages();
    /// After that: there are messages to compare with.
    bool has_reference() const { return !m_references.empty(); }
    /// Reports includes that close a circle. Returns the files at which such a chain of includes begins that
    /// the library does not follow it.
    std::vector<std::uint32_t> check_includes();

private:
    void choose_reference();
    void check_group(message_group const& group);
    void compare_all(checked_message const& reference);
    void check_duplicates(message_group const& group);
    void check_lost();
    void compare(checked_message const& message, checked_message const& reference);
    void compare_arguments(checked_message const& message, checked_message const& reference);
    void add_placeholder(rule_id id, phrase text, checked_message const& message, std::size_t offset,
                         std::string_view name, checked_message const& reference);
    void check_missing(checked_message const& reference);
    void count_missing();
    bool is_wanted(std::uint32_t language) const;

    check_tree& m_tree;
    rule_report const& m_report;
    ustring8 m_reference;
    ustring8 m_wanted;
    lost_messages m_lost;
    std::vector<std::uint32_t> m_references;              // languages that serve the reference, the best first
    std::vector<std::vector<serving_language>> m_serving; // of a language
    std::vector<std::uint32_t> m_first;                   // of a language: its first message in the group
    std::vector<std::uint32_t> m_ids;                     // what one group has to be remembered by
};

} // namespace tools

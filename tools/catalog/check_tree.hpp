// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// check_tree: what `zolt catalog check`, `missing` and `stats` keep of all files while they read each of them
// once, and how a rule says what it has found.
#pragma once

#include "catalog_scan.hpp"
#include "check_rules.hpp"
#include "tools/program/findings.hpp"
#include "tools/program/library.hpp"

#include <zolt/i18n/message_item.hpp>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <string_view>
#include <vector>

namespace tools {

inline constexpr std::uint32_t none = static_cast<std::uint32_t>(-1);

struct checked_include {
    std::size_t offset;
    std::uint32_t target; ///< index of a file
    rule_set ignored;
};

struct checked_file {
    ustring8 path;
    bool is_readable = false;
    scan_result result = scan_result::plain;
    ustring8 text{};
    std::deque<std::string> values{};
    std::vector<checked_include> includes{};
    std::vector<std::size_t> line_starts{}; ///< made when the first place is asked for
};

/// A language of catalogs.
struct checked_language {
    ustring8 id;       ///< normalized
    ustring8 spelling; ///< as first written
};

struct checked_catalog {
    ustring8 name;
    /// By language; the first element.
    struct start {
        std::uint32_t file;
        std::size_t offset;
        rule_set ignored;
        std::size_t missing = 0; ///< messages that are in other languages only
    };
    std::map<std::uint32_t, start> languages{};
};

struct checked_argument {
    std::string_view name;
    zolt::i18n::message_item::type_t type;
    std::size_t offset;

    friend bool operator==(checked_argument const& a, checked_argument const& b) {
        return a.name == b.name && a.type == b.type;
    }
    friend bool operator<(checked_argument const& a, checked_argument const& b) {
        return a.name != b.name ? a.name < b.name : a.type < b.type;
    }
};

struct checked_message {
    std::string_view name;
    std::uint32_t file;
    std::uint32_t catalog;
    std::uint32_t language;
    std::uint32_t next; ///< the next one of this name and catalog
    std::size_t offset;
    std::size_t end;            ///< behind "</msg>"
    std::size_t first_argument; ///< in check_tree::arguments, sorted and each only once
    std::size_t argument_count;
    std::string_view last_text;
    rule_set ignored;
    bool is_empty;
    bool starts_with_blank;
    bool ends_in_blank;
};

/// All messages of one name and catalog, in the order of files and lines.
struct message_group {
    std::uint32_t first;
    std::uint32_t last;
};

/// A directory that is checked as a whole, with all files below it in the order in which they are loaded.
struct checked_directory {
    ustring8 path;
    std::vector<std::uint32_t> files;
};

struct check_tree {
    std::deque<checked_file> files{};
    std::vector<checked_directory> directories{};
    std::vector<checked_language> languages{};
    std::vector<checked_catalog> catalogs{};
    std::vector<checked_message> messages{};
    std::vector<checked_argument> arguments{};
    std::vector<message_group> groups{};
};

/// Fills the groups of a tree that is complete.
void group_messages(check_tree& tree);

/// The languages of all catalogs in the order of their ids.
std::vector<std::uint32_t> languages_of(check_tree const& tree);

/// Line and column of an offset, both from 1.
struct text_place {
    std::size_t line;
    std::size_t column;
};
text_place place_of(checked_file& file, std::size_t offset);

/// A name for a finding's text, cut off where nobody reads on: one message may have many findings.
ustring8 shown(std::string_view name);

/// How rules report.
class rule_report {
public:
    rule_report(session const& session, check_tree& tree, finding_list& found)
        : m_session(session), m_tree(tree), m_found(found) {}

    program_messages const& texts() const { return m_session.texts; }

    /// In a file, or in the catalog or message that is given as scope.
    void add(rule_id id, std::uint32_t file, std::size_t offset, rule_set ignored, ustring8 const& scope,
             ustring8 const& text) const;
    void add(rule_id id, checked_message const& message, std::size_t offset, ustring8 const& text) const;

private:
    session const& m_session;
    check_tree& m_tree;
    finding_list& m_found;
};

} // namespace tools

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The rules that look at one message, catalog or include, and the walk that fills the tree for the others.
#pragma once

#include "check_tree.hpp"
#include "tools/program/library.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace tools {

/// For the files of one tree in their order.
class file_rules : private catalog_visitor {
public:
    /// With a language only catalogs in it are looked at; the others are kept for comparisons.
    file_rules(check_tree& tree, rule_report const& report, ustring8 const& language)
        : m_tree(tree), m_report(report), m_wanted(language) {}
    /// Fills the tree and reports nothing but includes that keep a file from being loaded.
    file_rules(check_tree& tree, rule_report const& report) : m_tree(tree), m_report(report), m_has_rules(false) {}

    /// Adds a file to the tree unless it is there. Returns its index.
    std::uint32_t plan(ustring8 const& path);

    /// Reads a planned file, plans what it includes and runs the rules. A file that is not well-formed adds
    /// nothing to the tree but itself.
    void check(std::uint32_t file);

private:
    struct spelling {
        ustring8 text;
        std::uint32_t file;
        std::size_t offset;
    };
    struct byte_fault {
        std::size_t offset;
        bool is_control;
    };

    void start_catalog(scanned_element const& catalog) override;
    void message(scanned_message const& message) override;
    void include(scanned_element const& include) override;

    void find_byte_faults();
    void report_bytes_before(std::size_t offset);
    void check_bytes(checked_message const& kept, scanned_message const& message);
    using reporter = std::function<void(rule_id, std::size_t offset, ustring8 const& text)>;
    void check_references(std::vector<scanned_reference> const& references, reporter const& add);
    void check_name(scanned_element const& element, reporter const& add);
    void check_markup(checked_message const& kept, scanned_message const& message);
    void check_ignored(scanned_element const& element, reporter const& add);
    void check_spaces(checked_message const& kept, scanned_message const& message);
    zolt::i18n::message_item::type_t check_type(checked_message const& kept, scanned_element const& argument);
    ustring8 check_order(checked_message const& kept, scanned_element const& argument);
    void check_argument(checked_message const& kept, scanned_element const& argument);
    void check_units(checked_message const& kept);
    bool is_usable(zolt::i18n::message_item::type_t type, ustring8 const& data);
    void keep_arguments(checked_message& kept);
    void check_spelling(scanned_element const& catalog, rule_set ignored, ustring8 const& name);
    std::uint32_t language_of(ustring8 const& written);
    std::uint32_t catalog_of(ustring8 const& name);
    bool has_line_end(std::size_t offset) const;
    ustring8 text_of_control(std::size_t offset) const;

    check_tree& m_tree;
    rule_report const& m_report;
    ustring8 m_wanted;
    bool m_has_rules = true;
    std::map<ustring8, std::uint32_t> m_known; // files by real path
    std::map<ustring8, std::uint32_t> m_languages;
    std::map<ustring8, std::uint32_t> m_catalogs;
    std::map<ustring8, spelling> m_spellings; // by language without regard to case
    std::map<ustring8, bool> m_usable;        // options that have been tried

    // Of the file that is being read
    std::uint32_t m_file = 0;
    std::string_view m_text;
    std::vector<byte_fault> m_byte_faults;
    std::size_t m_next_fault = 0;
    std::vector<std::pair<std::uint32_t, std::pair<std::uint32_t, checked_catalog::start>>> m_starts;
    std::uint32_t m_catalog = none;
    std::uint32_t m_language = none;
    bool m_is_checked = true;

    struct argument {
        checked_argument kept;
        ustring8 options; // separated like a placeholder's data
        bool has_fixed_unit;
    };
    std::vector<argument> m_arguments; // of the message
};

} // namespace tools

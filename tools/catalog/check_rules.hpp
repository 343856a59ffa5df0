// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The rules of `zolt catalog check` and `missing`, one row each in a table. Those that look at one message,
// catalog or include are in check_file_rules, those that compare in check_tree_rules, those of `missing` in
// catalog_missing.
#pragma once

#include "tools/program/rules.hpp"

#include <cstdint>
#include <string_view>

namespace tools {

/// In the order of the table: those of `check`, then those of `missing`, each by name.
enum class rule_id : unsigned {
    arg_name_not_first,
    bad_option,
    byte_reference,
    catalog_without_lang,
    control_character,
    duplicate_lang_spelling,
    duplicate_message,
    edge_space,
    empty_translation,
    include_absolute,
    include_cycle,
    include_missing,
    invalid_utf8,
    load,
    missing_message,
    nbsp_is_blank,
    placeholder_set,
    placeholder_type,
    punctuation,
    unit_pair,
    unknown_rule,
    unknown_type,
    unrendered_type,
    missing_translation,
    obsolete_message,
    untranslated_copy,
    count_of_rules
};

rule_table catalog_rules();
rule_table missing_rules();
rule const& get_rule(rule_id id);

/// A set of rules.
using rule_set = std::uint32_t;
constexpr rule_set in_set(rule_id id) { return rule_set(1) << static_cast<unsigned>(id); }
/// The rule of this name alone; empty when there is none.
rule_set rule_set_of(std::string_view name);

} // namespace tools

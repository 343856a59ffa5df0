// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "check_rules.hpp"

#include <cstddef>
#include <iterator>

namespace tools {
namespace {

constexpr severity error = severity::error;
constexpr severity warning = severity::warning;
constexpr severity note = severity::note;

constexpr rule rules[] = {
    // zolt catalog check
    {"arg-name-not-first", warning, phrase::about_arg_name_not_first,
     R"(<arg precision="1" name="size" type="double"/>)"},
    {"bad-option", error, phrase::about_bad_option, R"(<arg name="n" type="int" width="8"/>)"},
    {"byte-reference", error, phrase::about_byte_reference, "caf&#233;"},
    {"catalog-without-lang", warning, phrase::about_catalog_without_lang, R"(<catalog name="app">)"},
    {"control-character", warning, phrase::about_control_character, "bell&#7;"},
    {"duplicate-lang-spelling", warning, phrase::about_duplicate_lang_spelling, R"(lang="de_AT" lang="de-AT")"},
    {"duplicate-message", warning, phrase::about_duplicate_message,
     R"(<msg name="a">One</msg> <msg name="a">Two</msg>)"},
    {"edge-space", warning, phrase::about_edge_space, R"(<msg name="a"> Text</msg>)"},
    {"empty-translation", warning, phrase::about_empty_translation, R"(<msg name="a"></msg>)"},
    {"include-absolute", warning, phrase::about_include_absolute, R"(<include file="/home/ann/common.xmc"/>)"},
    {"include-cycle", error, phrase::about_include_cycle, R"(a.xmc: <include file="a.xmc"/>)"},
    {"include-missing", error, phrase::about_include_missing, R"(<include file="no-such-file.xmc"/>)"},
    {"invalid-utf8", error, phrase::about_invalid_utf8, "caf\\xE9"},
    {"load", error, phrase::about_load, R"(<msg name="a" note="b">Text</msg>)"},
    {"missing-message", warning, phrase::about_missing_message, R"(en: <msg name="a">Text</msg> de: -)"},
    {"nbsp-is-blank", warning, phrase::about_nbsp_is_blank, "10&nbsp;km"},
    {"placeholder-set", error, phrase::about_placeholder_set,
     R"(en: <arg name="user"/> de: <arg name="benutzer"/>)"},
    {"placeholder-type", error, phrase::about_placeholder_type,
     R"(en: <arg name="n" type="int"/> de: <arg name="n"/>)"},
    {"punctuation", note, phrase::about_punctuation, "en: Saved. de: Gespeichert"},
    {"unit-pair", warning, phrase::about_unit_pair,
     R"(<arg name="b" type="mem" precision="1"/> <arg name="b" type="mem_unit"/>)"},
    {"unknown-rule", warning, phrase::about_unknown_rule, "<!-- zolt-ignore edge-blank -->"},
    {"unknown-type", warning, phrase::about_unknown_type, R"(<arg name="n" type="integer"/>)"},
    {"unrendered-type", error, phrase::about_unrendered_type, R"(<arg name="when" type="date"/>)"},
    // zolt catalog missing
    {"missing-translation", error, phrase::about_missing_translation, R"(en: <msg name="a">Text</msg> de: -)"},
    {"obsolete-message", warning, phrase::about_obsolete_message, R"(en: - de: <msg name="a">Text</msg>)"},
    {"untranslated-copy", warning, phrase::about_untranslated_copy, "en: Save the file de: Save the file"},
};

constexpr rule_table all_rules(rules);
constexpr std::size_t check_count = static_cast<std::size_t>(rule_id::missing_translation);
static_assert(is_in_order(all_rules.first(check_count)) && is_in_order(all_rules.subspan(check_count)));
static_assert(std::size(rules) == static_cast<std::size_t>(rule_id::count_of_rules) && std::size(rules) <= 32);

} // namespace

rule_table catalog_rules() { return all_rules.first(check_count); }
rule_table missing_rules() { return all_rules.subspan(check_count); }

rule const& get_rule(rule_id id) { return rules[static_cast<std::size_t>(id)]; }

rule_set rule_set_of(std::string_view name) {
    rule const* found = find_rule(catalog_rules(), name);
    if (!found) found = find_rule(missing_rules(), name);
    return found ? in_set(static_cast<rule_id>(found - rules)) : 0;
}

} // namespace tools

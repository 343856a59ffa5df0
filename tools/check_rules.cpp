// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "check_rules.hpp"

#include "json.hpp"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>

namespace tools {
namespace {

constexpr severity error = severity::error;
constexpr severity warning = severity::warning;
constexpr severity note = severity::note;

constexpr rule rules[] = {
    {rule_id::arg_name_not_first, "arg-name-not-first", warning, phrase::about_arg_name_not_first,
     R"(<arg precision="1" name="size" type="double"/>)"},
    {rule_id::bad_option, "bad-option", error, phrase::about_bad_option, R"(<arg name="n" type="int" width="8"/>)"},
    {rule_id::byte_reference, "byte-reference", error, phrase::about_byte_reference, "caf&#233;"},
    {rule_id::catalog_without_lang, "catalog-without-lang", warning, phrase::about_catalog_without_lang,
     R"(<catalog name="app">)"},
    {rule_id::control_character, "control-character", warning, phrase::about_control_character, "bell&#7;"},
    {rule_id::duplicate_lang_spelling, "duplicate-lang-spelling", warning, phrase::about_duplicate_lang_spelling,
     R"(lang="de_AT" lang="de-AT")"},
    {rule_id::duplicate_message, "duplicate-message", warning, phrase::about_duplicate_message,
     R"(<msg name="a">One</msg> <msg name="a">Two</msg>)"},
    {rule_id::edge_space, "edge-space", warning, phrase::about_edge_space, R"(<msg name="a"> Text</msg>)"},
    {rule_id::empty_translation, "empty-translation", warning, phrase::about_empty_translation,
     R"(<msg name="a"></msg>)"},
    {rule_id::include_absolute, "include-absolute", warning, phrase::about_include_absolute,
     R"(<include file="/home/ann/common.xmc"/>)"},
    {rule_id::include_cycle, "include-cycle", error, phrase::about_include_cycle,
     R"(a.xmc: <include file="a.xmc"/>)"},
    {rule_id::include_missing, "include-missing", error, phrase::about_include_missing,
     R"(<include file="no-such-file.xmc"/>)"},
    {rule_id::invalid_utf8, "invalid-utf8", error, phrase::about_invalid_utf8, "caf\\xE9"},
    {rule_id::load, "load", error, phrase::about_load, R"(<msg name="a" note="b">Text</msg>)"},
    {rule_id::missing_message, "missing-message", warning, phrase::about_missing_message,
     R"(en: <msg name="a">Text</msg> de: -)"},
    {rule_id::missing_translation, "missing-translation", error, phrase::about_missing_translation,
     R"(en: <msg name="a">Text</msg> de: -)"},
    {rule_id::nbsp_is_blank, "nbsp-is-blank", warning, phrase::about_nbsp_is_blank, "10&nbsp;km"},
    {rule_id::obsolete_message, "obsolete-message", warning, phrase::about_obsolete_message,
     R"(en: - de: <msg name="a">Text</msg>)"},
    {rule_id::placeholder_set, "placeholder-set", error, phrase::about_placeholder_set,
     R"(en: <arg name="user"/> de: <arg name="benutzer"/>)"},
    {rule_id::placeholder_type, "placeholder-type", error, phrase::about_placeholder_type,
     R"(en: <arg name="n" type="int"/> de: <arg name="n"/>)"},
    {rule_id::punctuation, "punctuation", note, phrase::about_punctuation, "en: Saved. de: Gespeichert"},
    {rule_id::unit_pair, "unit-pair", warning, phrase::about_unit_pair,
     R"(<arg name="b" type="mem" precision="1"/> <arg name="b" type="mem_unit"/>)"},
    {rule_id::unknown_type, "unknown-type", warning, phrase::about_unknown_type,
     R"(<arg name="n" type="integer"/>)"},
    {rule_id::unrendered_type, "unrendered-type", error, phrase::about_unrendered_type,
     R"(<arg name="when" type="date"/>)"},
    {rule_id::untranslated_copy, "untranslated-copy", warning, phrase::about_untranslated_copy,
     "en: Save the file de: Save the file"},
};

constexpr bool are_in_order() {
    for (std::size_t i = 0; i != std::size(rules); ++i) {
        if (static_cast<std::size_t>(rules[i].id) != i) return false;
    }
    return std::size(rules) == static_cast<std::size_t>(rule_id::count_of_rules) && std::size(rules) <= 32;
}
static_assert(are_in_order());

constexpr std::size_t text_width = 76;

} // namespace

rule const& get_rule(rule_id id) { return rules[static_cast<std::size_t>(id)]; }

rule_set find_rule(std::string_view name) {
    auto const found = std::find_if(std::begin(rules), std::end(rules),
                                    [name](rule const& candidate) { return candidate.name == name; });
    return found == std::end(rules) ? 0 : in_set(found->id);
}

void list_rules(session const& session) {
    if (session.is_json()) {
        json_writer json;
        json.begin_object();
        json.begin_array("rules");
        for (rule const& each : rules) {
            json.begin_object();
            json.member("rule", each.name);
            json.member("severity", severity_word(each.level));
            json.member("text", session.texts.get(each.about));
            json.member("example", each.example);
            json.end_object();
        }
        json.end_array();
        json.end_object();
        return session.out.line(json.text());
    }
    for (rule const& each : rules) {
        ustring8 line = session.out.paint(colour::heading, each.name);
        session.out.line(line.append(" (").append(severity_word(each.level)).append(")"));
        std::string const text = wrap(session.texts.get(each.about), text_width);
        for (std::size_t start = 0; start < text.size();) {
            auto const end = std::min(text.find('\n', start), text.size());
            session.out.line("    " + text.substr(start, end - start));
            start = end + 1;
        }
        session.out.line("        " + std::string(each.example));
    }
}

} // namespace tools

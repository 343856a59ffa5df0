// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "po_rules.hpp"

namespace tools {
namespace {

constexpr severity error = severity::error;
constexpr severity warning = severity::warning;
constexpr severity note = severity::note;

constexpr rule export_rules[] = {
    {"duplicate-message", warning, phrase::about_po_second_message,
     R"(<msg name="a">One</msg> <msg name="a">Two</msg>)"},
    {"load", error, phrase::about_load, R"(<msg name="a" note="b">Text</msg>)"},
    {"po-fuzzy", warning, phrase::about_po_fuzzy, R"(en: <arg name="n"/> files de: Dateien)"},
    {"po-language", error, phrase::about_po_bad_language, R"(<catalog name="app" lang="en us">)"},
    {"po-reference", note, phrase::about_po_reference, R"(en: - de: <msg name="a">Text</msg>)"},
    {"po-text", error, phrase::about_po_text, R"(<msg name="a">caf\xE9</msg>)"},
};
static_assert(is_in_order(export_rules));

constexpr rule import_rules[] = {
    {"duplicate-message", error, phrase::about_po_duplicate,
     "msgctxt \"app/a\"\nmsgid \"One\"\nmsgstr \"Eins\"\n\nmsgctxt \"app/a\"\nmsgid \"One\"\nmsgstr \"Ein\""},
    {"placeholder-set", warning, phrase::about_po_placeholders,
     "#, python-brace-format\nmsgid \"{n} files\"\nmsgstr \"Dateien\""},
    {"po-brace", warning, phrase::about_po_brace,
     "#, python-brace-format\nmsgid \"{n} files\"\nmsgstr \"{n} Dateien}\""},
    {"po-context", error, phrase::about_po_context, "msgctxt \"File menu\"\nmsgid \"Save\"\nmsgstr \"Sichern\""},
    {"po-language", error, phrase::about_po_no_language, R"("Language: \n")"},
    {"po-note", warning, phrase::about_po_note, "#. {n} = n:integer"},
    {"po-syntax", error, phrase::about_po_syntax, "msgid \"Save\nmsgstr \"Sichern\""},
};
static_assert(is_in_order(import_rules));

} // namespace

rule_table export_po_rules() { return export_rules; }
rule_table import_po_rules() { return import_rules; }

} // namespace tools

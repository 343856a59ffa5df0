// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "config_rules.hpp"

#include <algorithm>
#include <iterator>

namespace tools {
namespace {

// An error where what is written is not there, or is something else.
constexpr severity error = severity::error;
constexpr severity warning = severity::warning;

constexpr rule rules[] = {
    {"array-lost", error, phrase::about_array_lost, "ports[] = 80, 443,"},
    {"array-runs-on", error, phrase::about_array_runs_on, "ports[] = 80,\n[net]"},
    {"backslash-kept", warning, phrase::about_backslash_kept, "say = \"a \\\"b\\\"\""},
    {"blank-dropped", warning, phrase::about_blank_dropped, "size = 10 MB"},
    {"byte-order-mark", error, phrase::about_byte_order_mark, "\\xEF\\xBB\\xBFport = 80"},
    {"carriage-return", error, phrase::about_carriage_return, "port = 80\\rhost = example.org"},
    {"case-only-difference", warning, phrase::about_case_only_difference, "port = 80\nPort = 81"},
    {"comment-cut", warning, phrase::about_comment_cut, "home = http://example.org/"},
    {"duplicate-key", warning, phrase::about_duplicate_key, "port = 80\nport = 81"},
    {"empty-name", warning, phrase::about_empty_name, "[net.]\nport = 80"},
    {"empty-value", warning, phrase::about_empty_value, "proxy ="},
    {"invisible-character", warning, phrase::about_invisible_character, "port\\xC2\\xA0= 80"},
    {"key-without-value", error, phrase::about_key_without_value, "verbose\nport = 80"},
    {"quote-dropped", warning, phrase::about_quote_dropped, "size = 3\" x 5\""},
    {"unclosed-quote", error, phrase::about_unclosed_quote, "name = \"Ann\nport = 80"},
    {"unclosed-section", error, phrase::about_unclosed_section, "[net\nport = 80"},
    {"value-without-key", error, phrase::about_value_without_key, "[net]\n= 80"},
};
static_assert(is_in_order(rules));

constexpr struct {
    phrase text;
    std::string_view rule;
} faults[] = {
    {phrase::config_bom, "byte-order-mark"},
    {phrase::config_no_equals, "key-without-value"},
    {phrase::config_no_separator, "key-without-value"},
    {phrase::config_joined_key, "key-without-value"},
    {phrase::config_joined_mark, "key-without-value"},
    {phrase::config_open_array, "array-lost"},
    {phrase::config_joined_array, "array-runs-on"},
    {phrase::config_open_string, "unclosed-quote"},
    {phrase::config_escaped_quote, "unclosed-quote"},
    {phrase::config_split_string, "unclosed-quote"},
    {phrase::config_inner_quote, "unclosed-quote"},
    {phrase::config_swallowed_line, "unclosed-quote"},
    {phrase::config_open_section, "unclosed-section"},
    {phrase::config_no_key, "value-without-key"},
    {phrase::config_empty_name, "empty-name"},
    {phrase::config_lone_return, "carriage-return"},
    {phrase::config_invisible, "invisible-character"},
    {phrase::config_no_value, "empty-value"},
    {phrase::config_blank, "blank-dropped"},
    {phrase::config_kept_backslash, "backslash-kept"},
    {phrase::config_lost_quotes, "quote-dropped"},
    {phrase::config_cut, "comment-cut"},
    {phrase::config_duplicate_key, "duplicate-key"},
    {phrase::config_array_stays, "duplicate-key"},
    {phrase::config_case_difference, "case-only-difference"},
};

} // namespace

rule_table config_rules() { return rules; }

rule const& config_rule_of(phrase fault) {
    auto const found = std::find_if(std::begin(faults), std::end(faults),
                                    [fault](auto const& each) { return each.text == fault; });
    return *find_rule(rules, found->rule);
}

} // namespace tools

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "rules.hpp"

#include "findings.hpp"
#include "json.hpp"

#include <algorithm>
#include <cstddef>

namespace tools {
namespace {

constexpr std::size_t text_width = 76;
constexpr std::string_view blanks = " \t\r\n";
constexpr std::string_view ignore_mark = "zolt-ignore";

void print_indented(output& out, std::size_t indentation, std::string_view text) {
    for (std::size_t start = 0; start < text.size();) {
        auto const end = std::min(text.find('\n', start), text.size());
        out.line(ustring8(indentation, ' ').append(text.substr(start, end - start)));
        start = end + 1;
    }
}

void print_text(session const& session, rule const& each) {
    ustring8 line = session.out.paint(colour::heading, each.name);
    session.out.line(line.append(" (").append(severity_word(each.level)).append(")"));
    print_indented(session.out, 4, wrap(session.texts.get(each.about), text_width));
    print_indented(session.out, 8, each.example);
}

void print_json(session const& session, rule_table rules) {
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
    session.out.line(json.text());
}

} // namespace

rule const* find_rule(rule_table rules, std::string_view name) {
    auto const found = std::lower_bound(rules.begin(), rules.end(), name,
                                        [](rule const& each, std::string_view text) { return each.name < text; });
    return found == rules.end() || found->name != name ? nullptr : &*found;
}

void append_ignored(std::string_view comment, std::vector<std::string_view>& words) {
    std::size_t count = 0;
    while (true) {
        comment.remove_prefix(std::min(comment.size(), comment.find_first_not_of(blanks)));
        auto const word = comment.substr(0, comment.find_first_of(" \t\r\n,:"));
        if (word.empty() || (count == 0 && word != ignore_mark)) return;
        if (count++ != 0) words.push_back(word);
        if (comment.substr(word.size(), 1) == ":") return; // the reason follows
        comment.remove_prefix(std::min(comment.size(), word.size() + 1));
    }
}

void list_rules(session const& session, rule_table rules) {
    if (session.is_json()) return print_json(session, rules);
    for (rule const& each : rules) print_text(session, each);
}

} // namespace tools

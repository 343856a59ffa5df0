// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "findings.hpp"

#include <zolt/strings/string_utility.hpp>

#include <algorithm>
#include <set>
#include <string>
#include <tuple>
#include <utility>

namespace tools {
namespace {

constexpr std::string_view severity_words[] = {"error", "warning", "note"};
constexpr colour severity_colours[] = {colour::error, colour::warning, colour::note};

// Not the text, which is in the user's language: what is equal stays in the order in which it was found.
auto key(finding const& found) {
    return std::tuple(std::string_view(found.file), found.line, found.column, found.level, found.rule);
}

// One fault comes up in every language and including file: the texts differ in their context lines only.
ustring8 first_lines(ustring8 const& text) {
    auto const first = text.find('\n');
    return first == ustring8::npos ? text : ustring8(text.substr(0, text.find('\n', first + 1)));
}

// A library's text says in its first line what is wrong and in its second what was met: one line of ours.
void print_one(output& err, finding const& found) {
    ustring8 const place =
        printable(found.file) + ":" + std::to_string(found.line) + ":" + std::to_string(found.column) + ":";
    auto const level = static_cast<std::size_t>(found.level);
    std::vector<ustring8> const lines = zolt::strings::split_string(found.text, "\n");
    ustring8 line = err.paint(colour::place, place);
    line.append(" ").append(err.paint(severity_colours[level], std::string(severity_words[level]) + ":"));
    for (std::size_t i = 0; i != lines.size(); ++i) {
        if (i == 1) line += ':';
        if (i >= 2) line.append("\n   ");
        std::string_view const text = lines[i];
        line.append(" ").append(printable(text.substr(std::min(text.size(), text.find_first_not_of(' ')))));
        if (i == std::min<std::size_t>(1, lines.size() - 1)) line.append(" [").append(found.rule).append("]");
    }
    err.line(line);
}

} // namespace

std::string_view severity_word(severity level) { return severity_words[static_cast<std::size_t>(level)]; }

void finding_list::add(finding found) {
    if (is_ignored(found)) return;
    found.scope.clear();
    m_findings.push_back(std::move(found));
    m_is_sorted = false;
}

std::vector<finding> const& finding_list::sorted() {
    if (std::exchange(m_is_sorted, true)) return m_findings;
    std::stable_sort(m_findings.begin(), m_findings.end(),
                     [](finding const& a, finding const& b) { return key(a) < key(b); });
    std::vector<finding> kept;
    kept.reserve(m_findings.size());
    std::set<ustring8> texts; // with this key
    for (finding& next : m_findings) {
        if (!kept.empty() && key(kept.back()) != key(next)) texts.clear();
        if (texts.insert(first_lines(next.text)).second) kept.push_back(std::move(next));
    }
    m_findings.swap(kept);
    return m_findings;
}

std::size_t finding_list::count(severity level) {
    auto const is_counted = [level](finding const& found) { return found.level == level; };
    std::vector<finding> const& all = sorted();
    return static_cast<std::size_t>(std::count_if(all.begin(), all.end(), is_counted));
}

exit_status finding_list::status() {
    auto const is_bad = [&](finding const& found) { return found.level <= m_session.options.fail_on; };
    return std::any_of(m_findings.begin(), m_findings.end(), is_bad) ? exit_findings : exit_good;
}

void finding_list::print() {
    for (finding const& found : sorted()) print_one(m_session.err, found);
}

void finding_list::print_alone() {
    if (!m_session.is_json()) return print();
    json_writer json;
    json.begin_object();
    append_to(json);
    json.end_object();
    m_session.out.line(json.text());
}

void finding_list::append_to(json_writer& json) {
    json.member("errors", count(severity::error));
    json.member("warnings", count(severity::warning));
    json.member("notes", count(severity::note));
    json.begin_array("findings");
    for (finding const& found : sorted()) {
        json.begin_object();
        json.member("file", found.file);
        json.member("line", found.line);
        json.member("column", found.column);
        json.member("severity", severity_word(found.level));
        json.member("rule", found.rule);
        json.member("text", found.text);
        for (auto const& [name, value] : found.details) json.member(name, value);
        json.end_object();
    }
    json.end_array();
}

bool finding_list::is_ignored(finding const& found) const {
    std::vector<ignored_rule> const& ignored = m_session.options.ignored;
    return std::any_of(ignored.begin(), ignored.end(), [&](ignored_rule const& entry) {
        return std::string_view(entry.rule) == found.rule && (entry.scope.empty() || entry.scope == found.scope);
    });
}

} // namespace tools

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Any bytes as XML: what is reported nests, a result is plausible, a cut off text reports the same up to the
// cut, written anew the events come out again, and a callback that throws leaves a usable parser.
#include "xml_events.hpp"

#include <algorithm>
#include <set>

namespace {

using namespace fuzz;
using parse_error = xml_parser::parse_error;

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool is_name_part(char c) { return is_letter(c) || (c >= '0' && c <= '9') || c == '_'; }

void check_text(event const& next) {
    ustring8 const& text = next.text;
    if (next.kind == 'b') check(text.find_first_not_of(" \t\r\n") == text.npos, "blanks");
    if (next.kind == '!') return check(text.find("-->") == text.npos, "a comment ends at its mark");
    check(!text.empty(), "a run or a name is not empty");
    if (next.kind == 'b' || next.kind == 't') return;
    check(is_letter(text[0]) && std::all_of(text.begin(), text.end(), is_name_part), "a name");
}

void check_events(std::vector<event> const& events, parse_error const& result, ustring8 const& text) {
    std::vector<ustring8> open;
    std::set<ustring8> attributes;
    unsigned roots = 0;
    for (event const& next : events) {
        check_text(next);
        if (next.kind == '=') check(!open.empty() && attributes.insert(next.text).second, "an attribute once");
        if (next.kind == '<') {
            roots += open.empty();
            open.push_back(next.text);
            attributes.clear();
        } else if (next.kind == '>') {
            check(!open.empty() && open.back() == next.text, "an end closes the innermost start");
            open.pop_back();
        }
    }
    check(roots <= 1 && result.kind <= parse_error::data_after_root, "one root, a known result");
    check(result.line <= static_cast<unsigned long>(std::count(text.begin(), text.end(), '\n')),
          "a line of the text");
    bool const clean = open.empty() && result.line == 0 && result.text.empty();
    check(clean || result.kind != parse_error::no_error, "success");
}

std::string escaped(std::string const& text) {
    std::string result;
    for (char const c : text) {
        bool const bare = is_name_part(c);
        result += bare ? std::string(1, c) : "&#" + std::to_string(static_cast<unsigned char>(c)) + ";";
    }
    return result;
}

std::string written(std::vector<event> const& events) {
    std::string text = "<?xml?>";
    bool in_tag = false;
    for (auto const& [kind, content, value] : events) {
        if (in_tag && kind != '=') text += '>';
        in_tag = kind == '<' || kind == '=';
        if (kind == '<') text += "<" + content;
        if (kind == '>') text += "</" + content + ">";
        if (kind == '=') text += " " + content + "='" + escaped(value) + "'";
        if (kind == '!') text += "<!--" + content + "-->";
        if (kind == 'b') text += content;
        if (kind == 't') text += escaped(content);
    }
    return text;
}

} // namespace

void fuzz::run(input in) {
    ustring8 const text = in.rest();
    recorder parser;
    auto const result = parser.parse(text);
    std::vector<event> const events = parser.events;
    check_events(events, result, text);

    if (!events.empty()) {
        std::size_t const thrown = text.size() % events.size();
        try {
            parser.parse(text, thrown);
            check(false, "what a callback throws leaves parse");
        } catch (event const& caught) {
            check(caught == events[thrown], "the event that throws");
        }
    }
    parser.parse(text);
    check(parser.events == events, "a parser remembers nothing");

    if (result.kind == parse_error::no_error) {
        check(parser.parse(written(events)).kind == parse_error::no_error, "what is written anew is well-formed");
        check(parser.events == events, "written anew, the events come again");
    }
    parser.parse(text.substr(0, text.size() * 2 / 3));
    if (!parser.events.empty()) parser.events.pop_back(); // the run at the cut may be shorter
    auto const reported = parser.events.size();
    check(reported <= events.size() && std::equal(parser.events.begin(), parser.events.end(), events.begin()),
          "a cut off text reports the same");
}

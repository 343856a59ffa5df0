// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Two texts in one token stream: its tokens are the events that the parser reports of each, with the ends of
// start tags added.
#include "xml_events.hpp"

#include <zolt/parser/xml_token_stream.hpp>

namespace {

using token = zolt::parser::xml_token_stream::token;
using token_list = std::vector<std::pair<token::token_type, std::string>>;

token::token_type type_of(char kind) {
    switch (kind) {
    case '<':
        return token::element_start;
    case '>':
        return token::element_end;
    case '=':
        return token::attribute_name;
    case 'b':
        return token::space;
    case 't':
        return token::character;
    default:
        return token::comment;
    }
}

void append(token_list& tokens, std::vector<fuzz::event> const& events) {
    bool in_tag = false;
    for (auto const& [kind, text, value] : events) {
        bool const goes_on = kind == '=' || kind == '!';
        if (in_tag && !goes_on) tokens.emplace_back(token::start_tag_end, "");
        in_tag = kind == '<' || (in_tag && goes_on);
        tokens.emplace_back(type_of(kind), text);
        if (kind == '=') tokens.emplace_back(token::attribute_value, value);
    }
}

} // namespace

void fuzz::run(input in) {
    zolt::parser::xml_token_stream stream;
    recorder parser;
    token_list expected;
    for (int i = 0; i < 2; ++i) {
        auto const text = in.text();
        auto const result = stream.parse(text);
        auto const direct = parser.parse(text);
        append(expected, parser.events);
        check(result.kind == direct.kind && result.line == direct.line && result.text == direct.text, "the result");
    }
    token_list tokens;
    for (token const& next : stream) tokens.emplace_back(next.type(), next.value());
    check(tokens == expected && stream.size() == expected.size(), "the events as tokens");
}

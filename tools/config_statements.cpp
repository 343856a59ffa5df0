// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "config_statements.hpp"

#include <zolt/config/base_config_item.hpp>

#include <algorithm>
#include <string>

namespace tools {
namespace {

using zolt::config::config_token;
using zolt::config::config_tree;

constexpr std::string_view array_mark = "[]";
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

bool is_blank(unsigned kind) { return kind == config_token::T_SPACE || kind == config_token::T_TABCHAR; }
bool is_layout(unsigned kind) { return is_blank(kind) || kind == config_token::T_NEWLINE; }
bool is_comment(unsigned kind) { return kind == config_token::T_POUND || kind == config_token::T_FSFS; }

} // namespace

config_statements::config_statements(ustring8 const& text) : m_text(text) {}

bool config_statements::next() {
    m_statement = config_statement();
    bool const is_first = m_position == 0;
    if (!find_statement()) return false;
    m_statement.line = token_line();
    if (is_first && m_text.starts_with(byte_order_mark)) add_fault(phrase::config_bom, 1);
    m_token.kind == config_token::T_SBRACKET ? read_section() : read_assignment();
    return true;
}

config_statements::kind_t config_statements::next_token() {
    zolt::config::base_config_item::get_token(m_text, m_position, m_token);
    // An open string ends one past the text.
    if (m_token.kind == config_token::T_STRING && m_token.end > m_text.size()) {
        add_fault(phrase::config_open_string, token_line());
    }
    return m_token.kind;
}

// Tokens are asked for in their order, so every line is counted once.
std::size_t config_statements::token_line() {
    auto const at = [this](std::size_t position) { return m_text.begin() + static_cast<std::ptrdiff_t>(position); };
    m_line += static_cast<std::size_t>(std::count(at(m_counted), at(m_token.start), '\n'));
    m_counted = m_token.start;
    return m_line;
}

void config_statements::skip_comment() {
    m_position = static_cast<unsigned>(std::min(m_text.find('\n', m_position), m_text.size()));
    ++m_comments;
}

bool config_statements::find_statement() {
    for (kind_t kind = next_token(); kind != config_token::T_END; kind = next_token()) {
        if (is_comment(kind)) {
            skip_comment();
        } else if (!is_layout(kind)) {
            return true;
        }
    }
    return false;
}

// The name up to a token of the kind, from the current token on; false when there is no such token. What
// the first of several lines gives goes to `first_line`.
bool config_statements::read_name(kind_t last, ustring8& first_line) {
    ustring8& name = m_statement.name;
    for (kind_t kind = m_token.kind; kind != last; kind = next_token()) {
        if (kind == config_token::T_END) return false;
        if (kind == config_token::T_NEWLINE && first_line.empty()) first_line = name;
        if (!is_layout(kind)) name += m_token.text;
    }
    return true;
}

void config_statements::read_section() {
    m_statement.kind = config_statement::section;
    next_token();
    ustring8 first_line;
    bool const is_closed = read_name(config_token::T_EBRACKET, first_line);
    if (!is_closed && first_line.empty()) first_line = m_statement.name;
    if (!is_closed || !first_line.empty()) add_fault(phrase::config_open_section, m_statement.line, first_line);
    if (!is_closed) m_statement.name.clear();
    m_statement.has_effect = is_closed;
}

void config_statements::read_assignment() {
    ustring8& key = m_statement.name;
    ustring8 first_line;
    m_statement.kind = config_statement::scalar;
    if (!read_name(config_token::T_EQ, first_line)) {
        add_fault(phrase::config_no_equals, m_statement.line, first_line.empty() ? key : first_line);
        return;
    }
    bool const is_array = key.ends_with(array_mark);
    if (is_array) key.resize(key.size() - array_mark.size());
    if (!first_line.empty() && first_line.size() < key.size()) {
        add_fault(phrase::config_joined_key, m_statement.line, first_line);
    }
    is_array ? read_array() : read_scalar();
}

void config_statements::read_scalar() {
    for (kind_t kind = next_token(); kind != config_token::T_NEWLINE && kind != config_token::T_END;
         kind = next_token()) {
        if (is_comment(kind)) {
            skip_comment();
        } else if (!is_blank(kind) && !m_token.text.empty()) {
            m_statement.has_effect = true;
        }
    }
    if (!m_statement.has_effect) add_fault(phrase::config_no_value, m_statement.line);
}

void config_statements::read_array() {
    m_statement.kind = config_statement::array;
    std::size_t& elements = m_statement.elements;
    bool is_empty = true; // the current element
    bool after_comma = false;
    bool is_continued = false; // in a line after the first one
    bool at_line_start = false;
    bool is_suspicious = false; // some line has been reported
    for (kind_t kind = next_token(); kind != config_token::T_END; kind = next_token()) {
        if (kind == config_token::T_NEWLINE && !after_comma) break;
        if (is_comment(kind)) {
            skip_comment();
        } else if (is_layout(kind)) {
            if (kind == config_token::T_NEWLINE) is_continued = at_line_start = true;
        } else {
            bool const is_section = at_line_start && kind == config_token::T_SBRACKET;
            bool const is_assignment = is_continued && kind == config_token::T_EQ;
            if (!is_suspicious && (is_section || is_assignment)) {
                add_fault(phrase::config_joined_array, token_line());
                is_suspicious = true;
            }
            at_line_start = false;
            after_comma = kind == config_token::T_NON_ALPHA_NUM && m_token.text == ",";
            elements += after_comma ? 1 : 0;
            is_empty = after_comma || (is_empty && m_token.text.empty());
        }
    }
    if (is_empty) {
        add_fault(elements == 0 ? phrase::config_no_value : phrase::config_open_array, m_statement.line);
        return;
    }
    ++elements;
    m_statement.has_effect = true;
}

void config_statements::add_fault(phrase text, std::size_t line, std::string_view part) {
    m_statement.faults.push_back({text, line, ustring8(std::string(part))});
}

// Long section names are walked once, not for each of their keys.
void find_config_lines(ustring8 const& text, config_tree& lines) {
    config_tree* top = &lines;
    config_statements statements(text);
    while (statements.next()) {
        config_statement const& statement = statements.current();
        if (statement.kind == config_statement::section) {
            top = statement.name.empty() ? &lines : &lines.make_node(statement.name + ".");
        }
        if (statement.kind == config_statement::section || !statement.has_effect) continue;
        zolt::types::variant const line(static_cast<unsigned long long>(statement.line));
        bool const is_array = statement.kind == config_statement::array;
        bool const is_top = statement.name.empty() && top != &lines;
        (is_top ? *top : top->make_node(statement.name)).set_entry(line, is_array ? 2 : 0);
        if (!is_array) continue;
        config_tree& elements = top->make_node(statement.name + ".");
        for (std::size_t i = 0; i != statement.elements; ++i) elements.set_node(std::to_string(i), line, 0);
    }
}

} // namespace tools

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "config_statements.hpp"

#include "config_rules.hpp"
#include "tools/program/utf8.hpp"

#include <zolt/config/base_config_item.hpp>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

namespace tools {
namespace {

using zolt::config::config_token;
using zolt::config::config_tree;

constexpr std::string_view array_mark = "[]";
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
constexpr std::string_view separators = "./\\";

bool is_blank(unsigned kind) { return kind == config_token::T_SPACE || kind == config_token::T_TABCHAR; }
bool is_blank(char c) { return c == ' ' || c == '\t'; }
bool is_layout(unsigned kind) { return is_blank(kind) || kind == config_token::T_NEWLINE; }
bool is_comment(unsigned kind) { return kind == config_token::T_POUND || kind == config_token::T_FSFS; }

bool is_separator(char c) { return separators.find(c) != separators.npos; }

/// Whether it looks like a "=" and is text.
bool is_false_equals(unsigned kind) {
    constexpr unsigned kinds[] = {config_token::T_EQEQ,    config_token::T_COLONEQ, config_token::T_GTEQ,
                                  config_token::T_LTEQ,    config_token::T_PLUSEQ,  config_token::T_MINUSEQ,
                                  config_token::T_TIMESEQ, config_token::T_DIVEQ};
    return std::find(std::begin(kinds), std::end(kinds), kind) != std::end(kinds);
}

/// Whether two separators stand side by side, or one at the begin.
bool has_empty_name(std::string_view path) {
    auto const are_separators = [](char left, char right) { return is_separator(left) && is_separator(right); };
    return (!path.empty() && is_separator(path.front())) ||
           std::adjacent_find(path.begin(), path.end(), are_separators) != path.end();
}

/// Characters that look like a blank, or like nothing. The joiners of some scripts are no such ones.
constexpr struct {
    char32_t first;
    char32_t last;
} invisible_ranges[] = {{0x00, 0x1F},     {0x7F, 0xA0},     {0xAD, 0xAD},     {0x2000, 0x200B}, {0x2028, 0x202F},
                        {0x205F, 0x2064}, {0x2066, 0x2069}, {0x3000, 0x3000}, {0xFEFF, 0xFEFF}};

/// The first character of the text when it is one of these.
std::optional<char32_t> invisible_character(std::string_view text) {
    std::size_t const size = utf8_size(text);
    if (size == 0 || size > 3) return std::nullopt;
    auto const lead = static_cast<unsigned char>(text[0]);
    char32_t character = size == 1 ? lead : lead & (0x3Fu >> (size - 1));
    for (std::size_t i = 1; i != size; ++i) {
        character = character << 6 | (static_cast<unsigned char>(text[i]) & 0x3Fu);
    }
    bool const is_invisible =
        std::any_of(std::begin(invisible_ranges), std::end(invisible_ranges),
                    [=](auto const& range) { return range.first <= character && character <= range.last; });
    return is_invisible ? std::optional(character) : std::nullopt;
}

/// Where the line's first "=" is that separates, outside quotes and comments, or npos.
std::size_t find_equals(std::string_view line) {
    bool is_quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        char const before = i == 0 ? '\0' : line[i - 1];
        if (line[i] == '"') is_quoted = !is_quoted;
        if (is_quoted) continue;
        if (line[i] == '#' || (line[i] == '/' && before == '/')) return line.npos;
        if (line[i] != '=') continue;
        if (line.substr(i + 1, 1) == "=") {
            ++i;
        } else if (std::string_view("+-*/:<>").find(before) == std::string_view::npos) {
            return i;
        }
    }
    return line.npos;
}

/// Whether a line of the string ends in \", which looks like its end and is not.
bool has_escaped_end(std::string_view string) {
    return string.find("\\\"\n") != string.npos || string.find("\\\"\r\n") != string.npos;
}

bool seems_to_stand_alone(std::string_view line) {
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    bool const is_header = line.starts_with('[') && line.find(']') != line.npos;
    return is_header || line.starts_with('#') || line.starts_with("//") || find_equals(line) != line.npos;
}

} // namespace

std::size_t find_swallowed_line(std::string_view text, text_range string) {
    for (std::size_t at = text.find('\n', string.begin); at < string.end; at = text.find('\n', at)) {
        ++at;
        bool const is_in_string = at < string.end;
        if (is_in_string && seems_to_stand_alone(text.substr(at, text.find('\n', at) - at))) return at;
    }
    return text.npos;
}

config_statements::config_statements(ustring8 const& text) : m_text(text) {}

bool config_statements::next() {
    m_statement = config_statement();
    bool const is_first = m_position == 0;
    if (!find_statement()) return false;
    m_statement.place = token_place();
    m_statement.bytes.begin = m_token.start;
    if (is_first && m_text.starts_with(byte_order_mark)) add_fault(phrase::config_bom, {});
    m_token.kind == config_token::T_SBRACKET ? read_section() : read_assignment();
    m_statement.bytes.end = std::min<std::size_t>(m_position, m_text.size());
    std::move(m_line_faults.begin(), m_line_faults.end(), std::back_inserter(m_statement.faults));
    m_line_faults.clear();
    return true;
}

config_statements::kind_t config_statements::next_token() {
    zolt::config::base_config_item::get_token(m_text, m_position, m_token);
    return m_token.kind;
}

// Places are asked for in their order, so every line is counted once.
text_place config_statements::place_of(std::size_t position) {
    std::string_view const passed = text_range{m_counted, position}.in(m_text);
    std::size_t const last = passed.rfind('\n');
    m_place.line += static_cast<std::size_t>(std::count(passed.begin(), passed.end(), '\n'));
    m_place.column = last == passed.npos ? m_place.column + passed.size() : passed.size() - last;
    m_counted = position;
    return m_place;
}

// Moves behind the comment, which is returned without its mark.
std::string_view config_statements::skip_comment() {
    text_range const bytes{m_position, std::min(m_text.find('\n', m_position), m_text.size())};
    std::string_view const comment = bytes.in(m_text);
    std::size_t const carriage_return = comment.find('\r');
    if (comment.find_first_not_of('\r', carriage_return) != comment.npos)
        add_fault(phrase::config_lone_return, place_of(bytes.begin + carriage_return));
    m_position = static_cast<unsigned>(bytes.end);
    return comment;
}

bool config_statements::find_statement() {
    for (kind_t kind = next_token(); kind != config_token::T_END; kind = next_token()) {
        if (is_comment(kind)) {
            append_ignored(skip_comment(), m_statement.ignored);
        } else if (!is_layout(kind)) {
            return true;
        }
    }
    return false;
}

//--------------------------------------------------------------------------------------------------
// Parts of statements: texts that are strung together

// A part that begins behind the current token.
void config_statements::start(part& what) const { what = {{m_token.end, m_token.end}, true}; }

// The current token is text.
void config_statements::take(part& what) {
    bool const goes_on = what.has_text && !what.has_line_end;
    if (goes_on && what.is_split) {
        add_fault(phrase::config_split_string, what.string, {}, token_place().line);
    } else if (goes_on && what.has_blank) {
        add_fault(phrase::config_blank, token_place(), m_token.text);
    }
    bool const is_inside = goes_on && !what.has_blank && m_text[what.bytes.begin] != '"';
    look_at_character();
    if (m_token.kind == config_token::T_STRING && m_token.text.find('\n') != m_token.text.npos)
        m_statement.strings.push_back({m_token.start, std::min<std::size_t>(m_token.end, m_text.size())});
    what.is_split = m_token.kind == config_token::T_STRING && look_at_string(is_inside);
    look_at_quotes(what, goes_on && !what.has_blank);
    if (!what.has_text) what.bytes.begin = m_token.start;
    what.bytes.end = std::min<std::size_t>(m_token.end, m_text.size());
    what.has_text = true;
    what.has_blank = what.has_line_end = false;
}

// Behind such a fault the quotes have changed their parts.
bool config_statements::has_string_fault() const {
    constexpr phrase faults[] = {phrase::config_open_string, phrase::config_escaped_quote,
                                 phrase::config_inner_quote, phrase::config_swallowed_line,
                                 phrase::config_split_string};
    return std::any_of(std::begin(faults), std::end(faults), [this](phrase each) { return has_fault(each); });
}

// True when the string has several lines and no fault.
bool config_statements::look_at_string(bool is_inside) {
    bool const is_open = m_token.end > m_text.size(); // then it ends one past the text
    bool const has_lines = m_token.text.find('\n') != m_token.text.npos;
    if ((!is_open && !has_lines) || has_string_fault()) return false;

    text_place const place = token_place();
    auto const line_at = [&](std::size_t position) {
        std::string_view const passed = text_range{m_token.start, position}.in(m_text);
        return place.line + static_cast<std::size_t>(std::count(passed.begin(), passed.end(), '\n'));
    };
    std::size_t const swallowed = find_swallowed_line(m_text, {m_token.start, m_token.end});
    if (is_open) {
        add_fault(phrase::config_open_string, place);
    } else if (has_escaped_end(m_token.text)) {
        add_fault(phrase::config_escaped_quote, place);
    } else if (is_inside) {
        add_fault(phrase::config_inner_quote, place, {}, line_at(m_token.end));
    } else if (swallowed != m_text.npos) {
        add_fault(phrase::config_swallowed_line, place, {}, line_at(swallowed));
    } else {
        return true;
    }
    return false;
}

// At text, which may be joined to what is before it. A backslash at a string's end can only stand outside of it.
void config_statements::look_at_quotes(part& what, bool is_joined) {
    bool const is_string = m_token.kind == config_token::T_STRING;
    part::last_t const before = what.last;
    bool const is_backslash = m_token.kind == config_token::T_NON_ALPHA_NUM && m_token.text == "\\";
    what.last = is_string ? part::quoted : is_backslash ? part::backslash : part::text;
    text_place const string_before = what.string;
    if (is_string) what.string = token_place();
    if (!what.is_value || has_string_fault()) return;
    if (is_string && m_token.text.find('"') != m_token.text.npos)
        add_fault(phrase::config_kept_backslash, what.string);
    bool const is_string_lost = is_string && before != part::backslash;
    bool const is_string_before_lost = before == part::quoted && !is_backslash;
    if (is_joined && (is_string_lost || is_string_before_lost))
        add_fault(phrase::config_lost_quotes, is_string_before_lost ? string_before : what.string);
}

void config_statements::look_at_character() {
    if (m_token.kind == config_token::T_UNKNOWN) return add_fault(phrase::config_lone_return, token_place());
    if (m_token.kind != config_token::T_NON_ALPHA_NUM || has_fault(phrase::config_invisible)) return;
    auto const character = invisible_character(std::string_view(m_text).substr(m_token.start));
    if (!character || (m_token.start == 0 && m_text.starts_with(byte_order_mark))) return;
    char name[] = "U+0000";
    (void)std::snprintf(name, sizeof name, "U+%04X", static_cast<unsigned>(*character));
    add_fault(phrase::config_invisible, token_place(), name);
}

void config_statements::pass_layout(part& what) const {
    (is_blank(m_token.kind) ? what.has_blank : what.has_line_end) = true;
}

// The name up to a token of the kind, from the current token on; false when there is no such token.
bool config_statements::read_name(kind_t last, std::vector<name_line>& lines) {
    ustring8& name = m_statement.name;
    part written;
    for (kind_t kind = m_token.kind; kind != last; kind = next_token()) {
        if (kind == config_token::T_END) return false;
        if (is_layout(kind)) {
            if (kind == config_token::T_NEWLINE && !lines.empty()) lines.back().is_ended = true;
            pass_layout(written);
            continue;
        }
        if (lines.empty() || lines.back().is_ended) lines.push_back({token_place(), {name.size(), 0}});
        name_line& line = lines.back();
        take(written);
        name += m_token.text;
        line.bytes.end = name.size();
        if (line.mark.empty() && is_false_equals(kind)) line.mark = m_token.text;
    }
    m_statement.key = written.has_text ? written.bytes : text_range{m_token.start, m_token.start};
    return true;
}

void config_statements::read_section() {
    m_statement.kind = config_statement::section;
    next_token();
    std::vector<name_line> lines;
    bool const is_closed = read_name(config_token::T_EBRACKET, lines);
    std::string_view const name = m_statement.name;
    if (!is_closed || (!lines.empty() && lines.front().is_ended)) {
        std::string_view const first_line = lines.empty() ? name : lines.front().bytes.in(name);
        add_fault(phrase::config_open_section, m_statement.place, first_line);
    }
    bool const ends_in_one = !name.empty() && is_separator(name.back());
    if (is_closed && (ends_in_one || has_empty_name(name))) add_fault(phrase::config_empty_name, m_statement.place);
    if (!is_closed) m_statement.name.clear();
    m_statement.has_effect = is_closed;
}

void config_statements::read_assignment() {
    ustring8& key = m_statement.name;
    std::vector<name_line> lines;
    m_statement.kind = config_statement::scalar;
    if (!read_name(config_token::T_EQ, lines)) return look_at_lines(lines, false);
    bool const is_array = key.ends_with(array_mark);
    if (is_array) key.resize(key.size() - array_mark.size());
    look_at_lines(lines, true);
    look_at_key(is_array);
    is_array ? read_array() : read_scalar();
}

// Of an assignment the line with the rest of the key has the "=", or only that stands in another line.
void config_statements::look_at_lines(std::vector<name_line> const& lines, bool is_assignment) {
    std::string_view const key = m_statement.name;
    for (name_line const& line : lines) {
        if (is_assignment && line.bytes.end >= key.size()) break;
        phrase const without_mark = is_assignment ? phrase::config_joined_key : phrase::config_no_equals;
        phrase const with_mark = is_assignment ? phrase::config_joined_mark : phrase::config_no_separator;
        phrase const text = line.mark.empty() ? without_mark : with_mark;
        m_line_faults.push_back({text, line.place, ustring8(line.bytes.in(key)), 0, line.mark});
    }
}

void config_statements::look_at_key(bool is_array) {
    std::string_view const key = m_statement.name;
    if (key.empty()) add_fault(phrase::config_no_key, m_statement.place);
    if (has_empty_name(key)) add_fault(phrase::config_empty_name, m_statement.place);
    // Nothing is lost by a blank before or in the mark of an array.
    bool const has_mark_only = is_array && key.find_first_of(array_mark) == key.npos;
    std::erase_if(m_statement.faults, [=](config_fault const& fault) {
        return has_mark_only && fault.text == phrase::config_blank && (fault.part == "[" || fault.part == "]");
    });
}

// At a comment: true, and a fault, when it seems to be a part of the value.
bool config_statements::cut(part const& value) {
    // Behind text it is one after a blank, else where it begins with a blank or another mark.
    bool const is_cut = value.has_text
                            ? value.bytes.end == m_token.start
                            : m_token.end < m_text.size() &&
                                  std::string_view(" \t\r\n#/").find(m_text[m_token.end]) == std::string_view::npos;
    if (is_cut) add_fault(phrase::config_cut, token_place(), m_token.text);
    return is_cut;
}

void config_statements::read_scalar() {
    part value;
    bool is_cut = false;
    start(value);
    for (kind_t kind = next_token(); kind != config_token::T_NEWLINE && kind != config_token::T_END;
         kind = next_token()) {
        if (is_comment(kind)) {
            is_cut = cut(value);
            skip_comment();
        } else if (is_layout(kind)) {
            pass_layout(value);
        } else {
            take(value);
            m_statement.has_effect = m_statement.has_effect || !m_token.text.empty();
        }
    }
    m_statement.values.push_back(value.bytes);
    if (!m_statement.has_effect && !is_cut) add_fault(phrase::config_no_value, m_statement.place);
}

// Whether the line of an array that begins with the current token seems to be a statement of its own. One that is
// indented further than the array may well hold an element like "-std=c++17" or "[::1]:80".
bool config_statements::begins_statement() {
    std::size_t const end = std::min(m_text.find('\n', m_token.start), m_text.size());
    std::string_view const line = text_range{m_token.start, end}.in(m_text);
    std::size_t const equals = find_equals(line);
    bool const is_assignment = equals != line.npos;
    if (token_place().column <= m_statement.place.column) return line.starts_with('[') || is_assignment;
    auto const is_blank_at = [line](std::size_t at) { return at < line.size() && is_blank(line[at]); };
    bool const stands_alone = is_assignment && (is_blank_at(equals - 1) || is_blank_at(equals + 1));
    bool const is_header = line.starts_with('[') && line.find_last_not_of(" \t\r") == line.find(']');
    return stands_alone || is_header;
}

void config_statements::read_array() {
    m_statement.kind = config_statement::array;
    std::vector<text_range>& elements = m_statement.values;
    part element;
    start(element);
    bool is_empty = true; // the current element
    bool after_comma = false;
    bool at_line_start = false;
    bool is_suspicious = false; // some line has been reported
    bool is_cut = false;
    for (kind_t kind = next_token(); kind != config_token::T_END; kind = next_token()) {
        if (kind == config_token::T_NEWLINE && !after_comma) break;
        if (is_comment(kind)) {
            if (element.has_text || !element.has_line_end) is_cut = cut(element) || is_cut;
            skip_comment();
        } else if (is_layout(kind)) {
            pass_layout(element);
            if (kind == config_token::T_NEWLINE) at_line_start = true;
        } else {
            if (at_line_start && !is_suspicious && begins_statement()) {
                add_fault(phrase::config_joined_array, token_place());
                is_suspicious = true;
            }
            at_line_start = false;
            if (is_suspicious) element.has_blank = false; // not worth a word any more
            after_comma = kind == config_token::T_NON_ALPHA_NUM && m_token.text == ",";
            if (after_comma) {
                elements.push_back(element.bytes);
                start(element);
            } else {
                take(element);
            }
            is_empty = after_comma || (is_empty && m_token.text.empty());
        }
    }
    elements.push_back(element.bytes);
    m_statement.has_effect = !is_empty;
    if (m_statement.has_effect || (is_cut && elements.size() == 1)) return;
    add_fault(elements.size() == 1 ? phrase::config_no_value : phrase::config_open_array, m_statement.place);
}

bool config_statements::has_fault(phrase text) const {
    return std::any_of(m_statement.faults.begin(), m_statement.faults.end(),
                       [text](config_fault const& fault) { return fault.text == text; });
}

// One of a kind: a statement may have a long name and any number of parts.
void config_statements::add_fault(phrase text, text_place place, std::string_view what, std::size_t line) {
    if (has_fault(text)) return;
    m_statement.faults.push_back({text, place, ustring8(std::string(what)), line});
}

//--------------------------------------------------------------------------------------------------
// Where assignments go

namespace {

/// Goes on with a hash of keys.
std::uint64_t spell(std::uint64_t before, std::string_view key) {
    for (char const c : key) {
        bool const is_separator = c == '.' || c == '/' || c == '\\';
        before = (before ^ static_cast<unsigned char>(is_separator ? '.' : c)) * 0x100000001B3u;
    }
    return before;
}

} // namespace

config_tree* config_places::find(config_statement const& statement) {
    bool const is_top = statement.name.empty();
    if (statement.kind == config_statement::section) {
        m_top = is_top ? &m_tree : &m_tree.make_node(statement.name + ".");
        m_section_spelling = is_top ? no_spelling : spell(spell(no_spelling, statement.name), ".");
        return nullptr;
    }
    return is_top && m_top != &m_tree ? m_top : &m_top->make_node(statement.name);
}

config_tree& config_places::elements(config_statement const& array) const {
    return m_top->make_node(array.name + ".");
}

std::uint64_t config_places::spelling(config_statement const& statement) const {
    return spell(m_section_spelling, statement.name);
}

void find_config_lines(ustring8 const& text, config_tree& lines) {
    config_places places(lines);
    config_statements statements(text);
    while (statements.next()) {
        config_statement const& statement = statements.current();
        config_tree* const place = places.find(statement);
        if (!place || !statement.has_effect) continue;
        zolt::types::variant const line(static_cast<unsigned long long>(statement.place.line));
        bool const is_array = statement.kind == config_statement::array;
        place->set_entry(line, is_array ? 2 : 0);
        if (!is_array) continue;
        config_tree& elements = places.elements(statement);
        for (std::size_t i = 0; i != statement.values.size(); ++i) elements.set_node(std::to_string(i), line, 0);
    }
}

namespace {

/// Tells keys that are assigned to twice.
class repeated_keys {
public:
    explicit repeated_keys(std::vector<found_config_fault>& faults) : m_faults(faults) {}

    void look_at(config_statement const& statement, std::shared_ptr<ustring8 const> const& section) {
        m_section = section;
        config_tree const* const place = m_places.find(statement);
        if (!place || !statement.has_effect) return;
        bool const is_array = statement.kind == config_statement::array;
        std::size_t const size = is_array ? statement.values.size() : 0;
        std::uint64_t const spelling = m_places.spelling(statement);
        look_at_key(statement, m_seen[place], {spelling, statement.place.line}, size);
        if (is_array) look_at_elements(statement, spelling);
    }

private:
    struct seen {
        std::uint64_t spelling = 0;
        std::size_t line = 0; ///< 0: not yet
        bool is_in_array = false;
        std::size_t size = 0; ///< of the longest array, whose elements stay
        std::size_t size_line = 0;
    };

    void look_at_key(config_statement const& statement, seen& before, seen now, std::size_t size) {
        if (before.size > size) {
            add(statement, statement.name, phrase::config_array_stays, before.size_line);
        } else if (before.line != 0) {
            add_repetition(statement, statement.name, before, now);
        }
        bool const is_longest = size >= before.size;
        now.size = is_longest ? size : before.size;
        now.size_line = is_longest ? now.line : before.size_line;
        before = now;
    }

    // The first one that has been set alone is told; what an array does to one before it has been told.
    void look_at_elements(config_statement const& array, std::uint64_t spelling) {
        config_tree& elements = m_places.elements(array);
        std::uint64_t const stem = spell(spelling, ".");
        bool is_told = false;
        for (std::size_t i = 0; i != array.values.size(); ++i) {
            ustring8 const index = std::to_string(i);
            seen& before = m_seen[&elements.make_node(index)];
            seen now = before;
            now.spelling = spell(stem, index);
            now.line = array.place.line;
            now.is_in_array = true;
            if (before.line != 0 && !before.is_in_array && !std::exchange(is_told, true))
                add_repetition(array, array.name + "." + index, before, now);
            before = now;
        }
    }

    void add_repetition(config_statement const& statement, ustring8 const& key, seen const& before,
                        seen const& now) {
        bool const is_alike = before.spelling == now.spelling;
        add(statement, key, is_alike ? phrase::config_duplicate_key : phrase::config_case_difference, before.line);
    }
    void add(config_statement const& statement, ustring8 const& key, phrase text, std::size_t line) {
        m_faults.push_back({std::make_shared<ustring8>(key), {text, statement.place, {}, line}, m_section});
    }

    std::vector<found_config_fault>& m_faults;
    config_tree m_tree;
    config_places m_places{m_tree};
    std::unordered_map<config_tree const*, seen> m_seen;
    std::shared_ptr<ustring8 const> m_section;
};

} // namespace

std::vector<found_config_fault> find_config_faults(ustring8 const& text) {
    std::vector<found_config_fault> faults;
    repeated_keys repeated(faults);
    std::shared_ptr<ustring8 const> section; // one for all faults, as its name may be long
    config_statements statements(text);
    for (bool is_there = true; is_there;) {
        is_there = statements.next();
        config_statement const& statement = statements.current();
        bool const is_section = statement.kind == config_statement::section;
        auto const first = static_cast<std::ptrdiff_t>(faults.size());
        auto const key = statement.faults.empty() ? nullptr : std::make_shared<ustring8 const>(statement.name);
        for (config_fault const& fault : statement.faults) {
            faults.push_back({key, fault, is_section ? nullptr : section});
        }
        if (is_there) repeated.look_at(statement, section);
        if (is_section) section = statement.name.empty() ? nullptr : std::make_shared<ustring8>(statement.name);
        auto const is_ignored = [&](found_config_fault const& found) {
            std::string_view const rule = config_rule_of(found.fault.text).name;
            return std::find(statement.ignored.begin(), statement.ignored.end(), rule) != statement.ignored.end();
        };
        faults.erase(std::remove_if(faults.begin() + first, faults.end(), is_ignored), faults.end());
    }
    return faults;
}

} // namespace tools

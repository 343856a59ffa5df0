// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "config_text_edit.hpp"

#include "config_statements.hpp"

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace tools {
namespace {

using zolt::config::config_tree;

constexpr std::string_view array_mark = "[]";
constexpr std::string_view separators = "./\\";

//--------------------------------------------------------------------------------------------------
// Written forms

bool contains_any(std::string_view text, std::string_view bytes) { return text.find_first_of(bytes) != text.npos; }

/// Whether every double quote has a backslash before it, without which it ends a string.
bool is_quotable(std::string_view text) {
    for (auto at = text.find('"'); at != text.npos; at = text.find('"', at + 1)) {
        if (at == 0 || text[at - 1] != '\\') return false;
    }
    return true;
}

/// Between quotes a backslash belongs to the byte after it. Of those before a quote only the last may do
/// so, and of those at the end none; the others go outside the quotes.
ustring8 quoted(std::string_view text) {
    auto const content = text.substr(0, text.find_last_not_of('\\') + 1);
    ustring8 out("\"");
    for (std::size_t at = 0; at < content.size();) {
        std::size_t const run = std::min(content.find('\\', at), content.size());
        std::size_t const run_end = std::min(content.find_first_not_of('\\', run), content.size());
        out.append(content.substr(at, run - at));
        if (run_end - run > 1 && content[run_end] == '"') {
            out.append(1, '"').append(run_end - run - 1, '\\').append("\"\\");
        } else {
            out.append(run_end - run, '\\');
        }
        out.append(content.substr(run_end, 1));
        at = run_end + 1;
    }
    out += '"';
    return out.append(text.substr(content.size()));
}

/// `mark` is what follows the key without a blank.
ustring8 written_key(ustring8 const& key, std::string_view mark) {
    bool const merges = mark == "=" && !key.empty() && contains_any(key.substr(key.size() - 1), "+-*/:<>");
    char const first = key.empty() ? mark.front() : key.front();
    bool const has_quotes =
        merges || first == '#' || first == '[' || contains_any(key, " \t\r\n=") || key.starts_with("//");
    return has_quotes ? quoted(key) : key;
}

ustring8 written_values(config_change const& change) {
    ustring8 text;
    for (ustring8 const& value : change.values) {
        text.append(&value == &change.values.front() ? "" : ", ").append(written_value(value, change.is_array));
    }
    return text;
}

//--------------------------------------------------------------------------------------------------
// Layout

bool is_blank(char c) { return c == ' ' || c == '\t'; }

std::size_t line_begin(std::string_view text, std::size_t at) {
    return at == 0 ? 0 : text.rfind('\n', at - 1) + 1; // npos + 1 is 0
}

/// Behind the end of the line, or the end of the text.
std::size_t line_end(std::string_view text, std::size_t at) {
    return std::min(text.find('\n', at), text.size() - 1) + 1;
}

std::string_view indentation(std::string_view text, std::size_t at) {
    std::size_t const begin = line_begin(text, at);
    std::size_t const size = text.substr(begin, at - begin).find_first_not_of(" \t");
    return text.substr(begin, std::min(size, at - begin));
}

/// The statement with its line, or up to the line's end when it is not the first one there.
text_range lines_of(std::string_view text, config_statement const& statement) {
    auto [begin, end] = statement.bytes;
    while (begin != 0 && is_blank(text[begin - 1])) --begin;
    if (begin == 0 || text[begin - 1] == '\n') return {begin, end};
    if (text.substr(begin, end - begin).ends_with('\n')) --end;
    if (text.substr(begin, end - begin).ends_with('\r')) --end;
    return {begin, end};
}

//--------------------------------------------------------------------------------------------------
// The edit

/// A component of a key: its node, and where the components after it begin.
struct key_step {
    config_tree* node;
    std::size_t rest;
};

std::vector<key_step> walk(config_tree& tree, ustring8 const& key) {
    std::vector<key_step> steps{{&tree, 0}};
    do {
        std::size_t const at = steps.back().rest;
        std::size_t const end = std::min(key.find_first_of(separators, at), key.size());
        config_tree& node = steps.back().node->make_node(key.substr(at, end - at));
        steps.push_back({&node, std::min(end + 1, key.size())});
    } while (steps.back().rest < key.size());
    return steps;
}

/// The number of an element by its name.
std::optional<std::size_t> element_index(std::string_view name) {
    constexpr std::size_t most_digits = 9;
    bool const is_index = !name.empty() && name.size() <= most_digits && (name == "0" || name[0] != '0') &&
                          name.find_first_not_of("0123456789") == name.npos;
    if (!is_index) return std::nullopt;
    return std::stoul(std::string(name));
}

/// The statements that have to do with a key.
class statements_of_key {
public:
    statements_of_key(ustring8 const& text, config_change const& change);

    /// An assignment to the key, or to an element of the array that it has been.
    struct assignment {
        config_statement statement;
        bool is_element;
    };
    std::vector<assignment> const& assignments() const { return m_assignments; }
    /// The one that gives the key its value; where none does, one that has the key but no value. Or null.
    config_statement const* last() const;

    /// The last array that has the key as an element, or null.
    config_statement const* array() const { return m_array ? &*m_array : nullptr; }
    bool is_value_from_array() const { return m_is_array_last; }
    std::size_t index() const { return *m_index; }

    /// Where a new statement for the key goes.
    struct slot {
        std::size_t at = 0;                    ///< the begin of a line, or the text's end
        std::size_t rest = 0;                  ///< of the key, behind the section's name
        std::optional<text_range> neighbour{}; ///< the key of a statement whose layout is to be taken over
    };
    slot const& place(edit_reach reach) const { return reach == edit_reach::further_up ? m_earlier_slot : m_slot; }

private:
    void look_at_section(config_statement const& statement);
    void look_at_assignment(config_statement const& statement);

    ustring8 const& m_text;
    config_tree m_tree;
    config_places m_places{m_tree};
    std::vector<key_step> m_steps;
    std::unordered_map<config_tree const*, std::size_t> m_depths; ///< of the nodes above the key's
    std::unordered_set<config_tree const*> m_elements;
    std::optional<std::size_t> m_index; ///< of the key in an array above it

    std::vector<assignment> m_assignments;
    std::optional<config_statement> m_array;
    bool m_is_array_last = false;

    slot m_slot;
    slot m_earlier_slot; ///< before the last statement
    std::size_t m_slot_depth = 0;
    bool m_is_in_slot = true;    ///< the current section is the one of the slot
    bool m_is_at_header = false; ///< the slot is right behind its section's header, in the same line
    bool m_has_section = false;
    bool m_has_top = false; ///< there is a statement before the first section
};

statements_of_key::statements_of_key(ustring8 const& text, config_change const& change)
    : m_text(text), m_steps(walk(m_tree, change.key)) {
    std::size_t const last = m_steps.size() - 1;
    for (std::size_t depth = 0; depth != last; ++depth) m_depths.emplace(m_steps[depth].node, depth);
    for (ustring8 const& name : change.elements) m_elements.insert(&m_steps[last].node->make_node(name));
    ustring8 const name = change.key.substr(m_steps[last - 1].rest);
    m_index = element_index(std::string_view(name).substr(0, name.find_first_of(separators)));

    config_statements statements(text);
    while (statements.next()) {
        config_statement const& statement = statements.current();
        std::size_t const begin = statement.bytes.begin;
        m_earlier_slot = m_slot;
        if (!m_has_section && !m_has_top) m_earlier_slot.at = line_begin(m_text, begin);
        if (m_is_at_header) m_earlier_slot.at = std::min(line_end(m_text, m_slot.at), begin);
        statement.kind == config_statement::section ? look_at_section(statement) : look_at_assignment(statement);
    }
    // Without sections it is the end, behind all comments.
    if (!m_has_section) m_slot.at = m_text.size();
    if (m_is_at_header) m_slot.at = line_end(m_text, m_slot.at);
}

void statements_of_key::look_at_section(config_statement const& statement) {
    m_places.find(statement);
    if (!m_has_section && !m_has_top) m_slot.at = line_begin(m_text, statement.bytes.begin);
    m_has_section = true;
    auto const depth = m_depths.find(&m_places.top());
    m_is_in_slot = depth != m_depths.end() && depth->second != 0 && depth->second >= m_slot_depth;
    if (!m_is_in_slot) return;
    m_slot_depth = depth->second;
    m_slot.at = statement.bytes.end;
    m_is_at_header = true;
    m_slot.rest = m_steps[m_slot_depth].rest;
}

void statements_of_key::look_at_assignment(config_statement const& statement) {
    config_tree const* const place = m_places.find(statement);
    m_has_top = m_has_top || !m_has_section;
    if (m_is_in_slot) {
        m_slot.at = statement.bytes.end;
        m_is_at_header = false;
    }
    if (m_is_in_slot || !m_slot.neighbour) m_slot.neighbour = statement.key;

    std::size_t const last = m_steps.size() - 1;
    bool const is_target = place == m_steps[last].node;
    if (is_target || m_elements.count(place) != 0) m_assignments.push_back({statement, !is_target});
    if (is_target && statement.has_effect) m_is_array_last = false;
    bool const is_array_of_key = m_index && place == m_steps[last - 1].node &&
                                 statement.kind == config_statement::array && statement.has_effect &&
                                 *m_index < statement.values.size();
    if (!is_array_of_key) return;
    m_array = statement;
    m_is_array_last = true;
}

config_statement const* statements_of_key::last() const {
    config_statement const* found = nullptr;
    for (auto const& [statement, is_element] : m_assignments) {
        bool const is_better = statement.has_effect || !found || !found->has_effect;
        if (!is_element && !statement.values.empty() && is_better) found = &statement;
    }
    return found;
}

//--------------------------------------------------------------------------------------------------
// The edit

class text_edit {
public:
    text_edit(ustring8 const& text, config_change const& change, statements_of_key const& statements)
        : m_text(text), m_change(change), m_statements(statements) {}

    void set(edit_reach reach) {
        config_statement const* const last = m_statements.last();
        bool const is_in_array = m_statements.is_value_from_array() && !m_change.is_array;
        if (is_in_array) {
            rewrite(m_statements.array()->values[m_statements.index()], m_change.values.front(), true);
        } else if (!last) {
            insert(m_statements.place(reach));
        } else if ((last->kind == config_statement::array) != m_change.is_array) {
            rewrite_assignment(*last);
        } else if (m_change.is_array) {
            rewrite_elements(*last);
        } else {
            rewrite(last->values.front(), m_change.values.front(), false);
        }
        if (reach != edit_reach::one_statement && !is_in_array) remove_all_but(last);
    }

    void remove_all_but(config_statement const* kept) {
        for (auto const& assignment : m_statements.assignments()) {
            config_statement const& statement = assignment.statement;
            if (statement.has_effect && &statement != kept)
                m_replacements.push_back({lines_of(m_text, statement), {}});
        }
    }

    config_text_edit result() {
        std::sort(m_replacements.begin(), m_replacements.end(), [](replacement const& a, replacement const& b) {
            return std::pair(a.bytes.begin, a.bytes.end) < std::pair(b.bytes.begin, b.bytes.end);
        });
        for (auto const& assignment : m_statements.assignments()) {
            if (auto const refused = refuse_to_lose_lines(assignment.statement)) return *refused;
        }
        config_statement const* const array = m_statements.array();
        if (auto const refused = array ? refuse_to_lose_lines(*array) : std::nullopt) return *refused;
        if (array && m_change.values.empty()) return {{}, phrase::key_in_array, array->place.line};
        ustring8 text;
        std::size_t at = 0;
        for (replacement const& each : m_replacements) {
            text.append(text_range{at, each.bytes.begin}.in(m_text)).append(each.text);
            at = each.bytes.end;
        }
        return {text.append(std::string_view(m_text).substr(at))};
    }

private:
    struct replacement {
        text_range bytes;
        ustring8 text;
    };

    // The first replaced byte at or behind a place, npos when there is none.
    std::size_t next_replaced(std::size_t at) const {
        auto const found = std::partition_point(m_replacements.begin(), m_replacements.end(),
                                                [=](replacement const& each) { return each.bytes.end <= at; });
        return found == m_replacements.end() ? m_text.npos : std::max(at, found->bytes.begin);
    }

    // A string, an array or a key may have gone on into lines that were not meant for it.
    std::optional<config_text_edit> refuse_to_lose_lines(config_statement const& statement) const {
        for (text_range const string : statement.strings) {
            if (auto refused = refuse_to_lose_lines(statement, string, phrase::edit_in_string)) return refused;
        }
        if (auto refused = refuse_to_lose_lines(statement, statement.key, phrase::edit_in_key)) return refused;
        for (config_fault const& fault : statement.faults) {
            if (fault.text != phrase::config_joined_array) continue;
            std::size_t begin = statement.bytes.begin;
            for (std::size_t line = statement.place.line; line != fault.place.line; ++line) {
                begin = line_end(m_text, begin);
            }
            if (next_replaced(begin) < statement.bytes.end)
                return config_text_edit{{}, phrase::edit_in_array, statement.place.line, fault.place.line};
        }
        return std::nullopt;
    }

    std::optional<config_text_edit> refuse_to_lose_lines(config_statement const& statement, text_range part,
                                                         phrase reason) const {
        std::size_t const at = find_swallowed_line(m_text, part);
        if (at == m_text.npos || next_replaced(at) != at) return std::nullopt;
        std::size_t const line = statement.place.line + lines_between(statement.bytes.begin, part.begin);
        return config_text_edit{{}, reason, line, line + lines_between(part.begin, at)};
    }

    std::size_t lines_between(std::size_t begin, std::size_t end) const {
        std::string_view const lines = text_range{begin, end}.in(m_text);
        return static_cast<std::size_t>(std::count(lines.begin(), lines.end(), '\n'));
    }

    char byte(std::size_t at) const { return at < m_text.size() ? m_text[at] : '\0'; }

    // What was between quotes stays between quotes.
    void rewrite(text_range bytes, ustring8 const& value, bool is_element) {
        std::string_view const before = bytes.in(m_text);
        bool const was_in_quotes = before.size() > 1 && before.front() == '"' && before.back() == '"';
        bool const merges = byte(bytes.end) == '/' && (value.ends_with('/') || value.ends_with('*'));
        ustring8 const text = written_value(value, is_element, was_in_quotes || merges);
        m_replacements.push_back({bytes, blank_before(bytes) + text});
    }

    // Where there is a blank before "=", one behind it before a value that is new.
    ustring8 blank_before(text_range bytes) const {
        bool const wants_blank =
            bytes.empty() && bytes.begin > 1 && byte(bytes.begin - 1) == '=' && is_blank(byte(bytes.begin - 2));
        return wants_blank ? " " : "";
    }

    // Element by element, for the sake of what is between them.
    void rewrite_elements(config_statement const& array) {
        std::vector<text_range> const& before = array.values;
        std::vector<ustring8> const& values = m_change.values;
        std::size_t const common = std::min(before.size(), values.size());
        for (std::size_t i = 0; i != common; ++i) rewrite(before[i], values[i], true);
        remove_elements(array, common);
        ustring8 more;
        for (std::size_t i = common; i != values.size(); ++i)
            more.append(", ").append(written_value(values[i], true));
        std::size_t const end = before.back().end;
        if (!more.empty()) m_replacements.push_back({{end, end}, more});
    }

    // All but the first ones, with the lines that they have for themselves. Comments stay that are lines, and the
    // one in the line of the last element that is kept.
    void remove_elements(config_statement const& array, std::size_t kept) {
        std::vector<text_range> const& elements = array.values;
        if (kept == elements.size()) return;
        std::size_t const begin = elements[kept - 1].end;
        std::size_t at = begin; // where the line goes on behind its elements
        std::size_t next = kept;
        auto const pass_elements = [&] {
            std::size_t end = line_end(m_text, at);
            for (; next != elements.size() && elements[next].begin < end; ++next) {
                at = elements[next].end;
                if (at > end) end = line_end(m_text, at); // long lines are not searched for each element
            }
            return end;
        };
        std::size_t end = pass_elements();
        std::size_t const tail = std::min(m_text.find_first_not_of(" \t,", at), end);
        bool const is_comment = tail < end && (m_text[tail] == '#' || m_text[tail] == '/');
        bool const keeps_blank = is_comment && tail != begin && is_blank(m_text[tail - 1]);
        at = tail;
        while (keeps_blank && is_blank(m_text[at - 1])) --at;
        m_replacements.push_back({{begin, at}, is_comment && !keeps_blank ? " " : ""});

        while (end < array.bytes.end) {
            std::size_t const line = at = end;
            std::size_t const before = next;
            end = pass_elements();
            std::size_t const first = std::min(m_text.find_first_not_of(" \t", line), m_text.size() - 1);
            bool const is_comment_line = next == before && (m_text[first] == '#' || m_text[first] == '/');
            if (!is_comment_line) m_replacements.push_back({{line, end}, {}});
        }
    }

    // From a value to an array or back.
    void rewrite_assignment(config_statement const& statement) {
        ustring8 key(statement.key.in(m_text));
        if (m_change.is_array) {
            key += array_mark;
        } else if (key.ends_with(array_mark)) {
            key.resize(key.size() - array_mark.size());
        }
        m_replacements.push_back({statement.key, key});
        if (!m_change.is_array) {
            rewrite(statement.values.front(), m_change.values.front(), false);
            return remove_elements(statement, 1);
        }
        text_range const values{statement.values.front().begin, statement.values.back().end};
        m_replacements.push_back({values, blank_before(values) + written_values(m_change)});
    }

    void insert(statements_of_key::slot const& where) {
        std::size_t const first_end = m_text.find('\n');
        bool const has_cr = first_end != m_text.npos && first_end != 0 && m_text[first_end - 1] == '\r';
        std::string_view const line_end = has_cr ? "\r\n" : "\n";
        bool blank_before = true;
        bool blank_after = true;
        ustring8 text;
        if (where.at != 0 && m_text[where.at - 1] != '\n') text += line_end;
        if (where.neighbour) {
            std::size_t const key_end = where.neighbour->end;
            blank_before = is_blank(byte(key_end));
            blank_after = is_blank(byte(std::min(m_text.find('=', key_end), m_text.size() - 1) + 1));
            text += indentation(m_text, where.neighbour->begin);
        }
        text += written_key(m_change.key.substr(where.rest), m_change.is_array ? array_mark : "=");
        text.append(m_change.is_array ? array_mark : "").append(blank_before ? " =" : "=");
        text.append(blank_after ? " " : "").append(written_values(m_change)).append(line_end);
        m_replacements.push_back({{where.at, where.at}, text});
    }

    ustring8 const& m_text;
    config_change const& m_change;
    statements_of_key const& m_statements;
    std::vector<replacement> m_replacements;
};

} // namespace

std::optional<phrase> why_unwritable(config_change const& change) {
    if (change.key.find_first_not_of(separators) == ustring8::npos) return phrase::unwritable_no_key;
    if (change.key.find('"') != ustring8::npos) return phrase::unwritable_key;
    if (!std::all_of(change.values.begin(), change.values.end(), is_quotable)) return phrase::unwritable_quote;
    if (change.values.back().empty()) return change.is_array ? phrase::unwritable_last : phrase::unwritable_empty;
    return std::nullopt;
}

std::vector<ustring8> elements_from_arrays(ustring8 const& text, ustring8 const& key) {
    config_tree tree;
    config_places places(tree);
    config_tree const* const target = &tree.make_node(key);
    std::map<config_tree const*, std::size_t> indices;
    config_statements statements(text);
    while (statements.next()) {
        config_statement const& statement = statements.current();
        config_tree const* const place = places.find(statement);
        if (!place || !statement.has_effect) continue;
        indices.erase(place);
        if (place != target || statement.kind != config_statement::array) continue;
        config_tree& elements = places.elements(statement);
        for (std::size_t i = 0; i != statement.values.size(); ++i) {
            indices[&elements.make_node(std::to_string(i))] = i;
        }
    }
    std::vector<ustring8> names;
    names.reserve(indices.size());
    for (auto const& [node, index] : indices) names.emplace_back(std::to_string(index));
    return names;
}

ustring8 written_value(ustring8 const& text, bool is_element, bool in_quotes) {
    bool const needs_quotes = contains_any(text, is_element ? " \t\r\n\"#," : " \t\r\n\"#") ||
                              text.starts_with('=') || text.find("//") != text.npos;
    return needs_quotes || in_quotes ? quoted(text) : text;
}

config_text_edit edit_config_text(ustring8 const& text, config_change const& change, edit_reach reach) {
    statements_of_key const statements(text, change);
    text_edit edit(text, change, statements);
    change.values.empty() ? edit.remove_all_but(nullptr) : edit.set(reach);
    return edit.result();
}

} // namespace tools

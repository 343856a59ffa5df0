// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// config_statements: the statements of a configuration file, where they stand, and what is wrong with them.
//
// It walks over a text as config::file_item reads it, token by token, but keeps no values. Every text is
// valid to file_item, which passes over what assigns nothing and strings the rest together; here that has
// faults, which are the rules of `zolt config check`.
#pragma once

#include "tools/program/library.hpp"
#include "tools/program/program_messages.hpp"

#include <zolt/config/config_token.hpp>
#include <zolt/config/config_tree.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace tools {

struct text_place {
    std::size_t line = 1;
    std::size_t column = 1; ///< in bytes
};

/// Bytes from `begin` to before `end`.
struct text_range {
    std::size_t begin = 0;
    std::size_t end = 0;

    bool empty() const { return begin == end; }
    std::string_view in(std::string_view text) const { return text.substr(begin, end - begin); }
};

struct config_fault {
    phrase text; ///< has the arguments "key", the statement's name, "part", "line" and "mark"
    text_place place;
    ustring8 part;
    std::size_t line = 0; ///< of another statement
    ustring8 mark{};      ///< that seems to separate
};

struct config_statement {
    enum kind_t { section, scalar, array };

    kind_t kind = section;
    ustring8 name; ///< of the section, or the key below it, without the "[]" of an array
    text_place place;
    bool has_effect = false;               ///< false for an assignment that assigns nothing
    std::vector<config_fault> faults;      ///< one of a kind, but for lines without "="
    std::vector<std::string_view> ignored; ///< rules that a comment "zolt-ignore ..." before it names

    text_range bytes; ///< the line end that closes an assignment is the last one
    text_range key;   ///< as written, with "[]"; of a section its name
    /// As written: the value, or each element of an array, without the layout and comments around it. Where
    /// there is nothing the range is empty and stands behind the mark. None in an assignment without "=".
    std::vector<text_range> values;
    std::vector<text_range> strings; ///< those of several lines, with their quotes
};

/// Where the first line begins in a string of several that seems to be no part of it, but a statement, a section's
/// header or a comment; npos when there is none.
std::size_t find_swallowed_line(std::string_view text, text_range string);

class config_statements {
public:
    /// Refers to the text.
    explicit config_statements(ustring8 const& text);

    /// Moves to the next statement; false when there is none, and then current() has the faults of the comments
    /// behind the last one.
    bool next();
    config_statement const& current() const { return m_statement; }

private:
    using kind_t = zolt::config::config_token::tok_types;

    /// What has been read of a key, a value or an element.
    struct part {
        enum last_t { text, backslash, quoted };

        text_range bytes;
        bool is_value = false;
        bool has_text = false;
        last_t last = text;
        bool has_blank = false;    ///< since the last text
        bool has_line_end = false; ///< since the last text
        text_place string{};       ///< of the last string
        bool is_split = false;     ///< the last text is a string that ends in another line than it begins
    };

    /// Of a name, which may have many. The bytes are those of the name.
    struct name_line {
        text_place place;
        text_range bytes;
        ustring8 mark{};       ///< the first one that seems to separate
        bool is_ended = false; ///< by a line end
    };

    kind_t next_token();
    text_place place_of(std::size_t position);
    text_place token_place() { return place_of(m_token.start); }
    std::string_view skip_comment();
    bool find_statement();
    void start(part& what) const;
    void take(part& what);
    bool has_string_fault() const;
    bool look_at_string(bool is_inside);
    void look_at_quotes(part& what, bool is_joined);
    bool begins_statement();
    void look_at_character();
    void pass_layout(part& what) const;
    bool read_name(kind_t last, std::vector<name_line>& lines);
    void read_section();
    void read_assignment();
    void look_at_lines(std::vector<name_line> const& lines, bool is_assignment);
    void look_at_key(bool is_array);
    void read_scalar();
    void read_array();
    bool cut(part const& value);
    bool has_fault(phrase text) const;
    void add_fault(phrase text, text_place place, std::string_view what = {}, std::size_t line = 0);

    ustring8 const& m_text;
    unsigned m_position = 0;
    zolt::config::config_token m_token;
    text_place m_place; ///< of m_counted
    std::size_t m_counted = 0;
    config_statement m_statement;
    std::vector<config_fault> m_line_faults; ///< of the statement; many, and not to be searched each time
};

/// Finds the node of a tree that each assignment is for, which is made as needed. Long section names are
/// walked once, not for each of their keys.
class config_places {
public:
    explicit config_places(zolt::config::config_tree& tree) : m_tree(tree) {}

    /// The node of the key that is assigned to; null for a section, which is entered.
    zolt::config::config_tree* find(config_statement const& statement);
    /// The node of the current section.
    zolt::config::config_tree const& top() const { return *m_top; }
    /// The node above the elements of the array that has just been found.
    zolt::config::config_tree& elements(config_statement const& array) const;
    /// A hash that keys have in common when they are spelled alike, sections included; all separators count
    /// as one.
    std::uint64_t spelling(config_statement const& statement) const;

private:
    static constexpr std::uint64_t no_spelling = 0xCBF29CE484222325u;

    zolt::config::config_tree& m_tree;
    zolt::config::config_tree* m_top = &m_tree;
    std::uint64_t m_section_spelling = no_spelling;
};

/// Stores for every entry that file_item makes of the text the line of its last assignment.
void find_config_lines(ustring8 const& text, zolt::config::config_tree& lines);

struct found_config_fault {
    std::shared_ptr<ustring8 const> key; ///< below the section
    config_fault fault;
    std::shared_ptr<ustring8 const> section{}; ///< null when there is none
};
/// All faults of the text, those that statements have with one another included, by their statements; without
/// those that a comment silences.
std::vector<found_config_fault> find_config_faults(ustring8 const& text);

} // namespace tools

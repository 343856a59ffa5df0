// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// config_statements: the statements of a configuration file with their lines, and what is wrong with them.
//
// It walks over a text as config::file_item reads it, token by token, but keeps no values. Every text is
// valid to file_item, which passes over what assigns nothing; here such statements have faults.
#pragma once

#include "library.hpp"
#include "program_messages.hpp"

#include <zolt/config/config_token.hpp>
#include <zolt/config/config_tree.hpp>

#include <cstddef>
#include <string_view>
#include <vector>

namespace tools {

struct config_fault {
    phrase text; ///< has the arguments "key", the statement's name, and "part"
    std::size_t line;
    ustring8 part;
};

struct config_statement {
    enum kind_t { section, scalar, array };

    kind_t kind = section;
    ustring8 name; ///< of the section, or the key below it, without the "[]" of an array
    std::size_t line = 1;
    std::size_t elements = 0; ///< of an array
    bool has_effect = false;  ///< false for an assignment that assigns nothing
    std::vector<config_fault> faults;
};

class config_statements {
public:
    /// Refers to the text.
    explicit config_statements(ustring8 const& text);

    /// Moves to the next statement; false when there is none.
    bool next();
    config_statement const& current() const { return m_statement; }
    /// Comments up to the current statement's end.
    std::size_t comments() const { return m_comments; }

private:
    using kind_t = zolt::config::config_token::tok_types;

    kind_t next_token();
    std::size_t token_line();
    void skip_comment();
    bool find_statement();
    bool read_name(kind_t last, ustring8& first_line);
    void read_section();
    void read_assignment();
    void read_scalar();
    void read_array();
    void add_fault(phrase text, std::size_t line, std::string_view part = {});

    ustring8 const& m_text;
    unsigned m_position = 0;
    zolt::config::config_token m_token;
    std::size_t m_line = 1; ///< of m_counted
    std::size_t m_counted = 0;
    std::size_t m_comments = 0;
    config_statement m_statement;
};

/// Stores for every entry that file_item makes of the text the line of its last assignment.
void find_config_lines(ustring8 const& text, zolt::config::config_tree& lines);

} // namespace tools

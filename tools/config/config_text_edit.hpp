// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// config_text_edit: a configuration file's text with one key changed and every other byte as it was.
//
// The statement that gives the key its value is rewritten where it stands; comments and layout around it
// stay, in an array between the elements, too. A key that is not there goes behind the last statement of the
// longest section that fits. The reader's grammar has traps that no edit sees, such as an array before that
// runs on, so whoever edits reads the result and compares.
#pragma once

#include "tools/program/library.hpp"
#include "tools/program/program_messages.hpp"

#include <cstddef>
#include <optional>
#include <vector>

namespace tools {

struct config_change {
    ustring8 key;
    bool is_array = false;
    std::vector<ustring8> values;     ///< one unless it is an array; none to remove the key
    std::vector<ustring8> elements{}; ///< below the key, that go: the names
};

/// Why no line of a file brings this back; nothing when one does.
std::optional<phrase> why_unwritable(config_change const& change);

/// The names of the key's elements that have their values from an array of the key.
std::vector<ustring8> elements_from_arrays(ustring8 const& text, ustring8 const& key);

/// The value or element as a file has it, between quotes where these matter.
ustring8 written_value(ustring8 const& text, bool is_element, bool in_quotes = false);

struct config_text_edit {
    ustring8 text;
    /// Why the text is not to be used, if so. The phrase has the arguments "path", "key", "line", which is that of
    /// the statement in the way, and "other", which is a line that it takes in.
    std::optional<phrase> refusal{};
    std::size_t line = 0;
    std::size_t other_line = 0;
};

enum class edit_reach {
    one_statement,
    all_statements, ///< what else gives the key a value, or an element that goes, is removed
    further_up      ///< and a new statement goes before the file's last one, which may not end
};

config_text_edit edit_config_text(ustring8 const& text, config_change const& change, edit_reach reach);

} // namespace tools

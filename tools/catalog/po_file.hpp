// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// PO files, the form in which gettext and the programs around it exchange translations:
//
//     #. a note for translators          po_entry::notes
//     #: src/main.xmc:12                 po_entry::references
//     #, fuzzy, python-brace-format      po_entry::is_fuzzy, is_brace_format
//     msgctxt "app/saved"                po_entry::context
//     msgid "Saved {n}"                  po_entry::id
//     msgstr "{n} gesichert"             po_entry::texts
//
// This knows the form alone; po_exchange.hpp tells what catalogs make of it. Reading takes any bytes in
// linear time; what it cannot read is a fault with its place, and reading goes on in the next line.
#pragma once

#include "tools/program/library.hpp"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace tools {

struct po_entry {
    std::size_t line = 0; ///< of its first keyword
    std::optional<ustring8> context{};
    ustring8 id{};
    std::optional<ustring8> plural_id{};
    std::vector<ustring8> texts{}; ///< one; with a plural one for each form
    std::vector<ustring8> notes{};
    std::vector<ustring8> references{}; ///< "file:line"; written only, reading passes over them
    bool is_fuzzy = false;
    bool is_brace_format = false;
};

enum class po_problem {
    open_string,       ///< the line ends inside
    bad_escape,        ///< also one that stands for NUL or more than a byte
    control_character, ///< NUL and U+0004, which separates context and text in compiled files
    not_utf8,
    no_keyword,
    misplaced,  ///< a keyword or a string where none can stand
    no_text,    ///< an entry without msgid or msgstr
    charset,    ///< one that this program does not know
    not_charset ///< bytes that the file's charset does not have
};

struct po_fault {
    std::size_t line;   ///< from 1
    std::size_t column; ///< from 1, in bytes
    po_problem problem;
};

/// A file with more of them is none.
inline constexpr std::size_t most_po_faults = 100;

struct po_file {
    ustring8 header; ///< "Language: de\nPlural-Forms: ...\n"
    std::vector<po_entry> entries;
    std::size_t obsolete = 0; ///< lines that are commented out with "#~" and passed over
    std::vector<po_fault> faults;
    std::size_t unread_line = 0; ///< where most_po_faults made an end of reading; 0: all is read

    /// The value of a header field, empty without it.
    ustring8 field(std::string_view name) const;
};

/// Reads a file in the charset that its header names, or UTF-16 with a byte order mark, with any line ends, and
/// makes UTF-8 of it. After most_po_faults it gives up.
po_file read_po(std::string_view bytes);

/// Appends an entry and an empty line. A text of several lines gets a line for each.
void append_po(ustring8& file, po_entry const& entry);

/// Takes the start off the front; false, and nothing is taken, when another one stands there.
bool take(std::string_view& rest, std::string_view start);
/// The text in double quotes, with escapes for quotes, backslashes and control characters.
ustring8 quoted_po(std::string_view text);
/// Takes a quoted text off the front; nothing when none stands there or it is faulty.
std::optional<ustring8> take_quoted_po(std::string_view& rest);

/// What PO files can hold: UTF-8 without overlong forms and surrogates, NUL and U+0004.
bool is_po_text(std::string_view text);

} // namespace tools

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// scan_catalog_file: one fast pass over a catalog file as its author wrote it, for rules that look at the
// text itself: every catalog, message, argument and include comes with its place.
//
// It understands the plain form of catalog files, and says so when a file is not of that form: then only the
// library can tell what is wrong, if anything. A file that is called plain, every language of which the
// library could not load, would be a fault in here.
#pragma once

#include "tools/program/library.hpp"

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace tools {

inline constexpr std::size_t no_offset = static_cast<std::size_t>(-1);

/// A reference such as "&nbsp;", as it is written, and the byte that the library makes of it.
struct scanned_reference {
    std::string_view text;
    std::size_t offset;
    char value;
};

/// Places are offsets into the text; views are of the text, or of scan_texts where it holds references.
struct scanned_attribute {
    std::string_view name;
    std::string_view value;
    std::size_t offset;
};

struct scanned_element {
    std::size_t offset = 0; ///< of its "<"
    std::vector<scanned_attribute> attributes{};
    std::vector<scanned_reference> references{}; ///< in their values
    std::vector<std::string_view> ignored{};     ///< words of the comment "zolt-ignore ..." before it

    scanned_attribute const* find(std::string_view name) const;
    std::string_view value_of(std::string_view name) const; ///< empty without it
};

/// A part of a message: a run of text as it is written, a line break, or an argument by its name.
struct scanned_piece {
    enum class kind { text, line_break, argument } what;
    std::string_view text;
};

struct scanned_message : scanned_element {
    std::size_t end = 0; ///< behind "</msg>"
    std::vector<scanned_piece> pieces{};
    std::deque<scanned_element> arguments{}; ///< reused; see argument_count
    std::size_t argument_count = 0;
    std::vector<scanned_reference> text_references{};
    std::vector<std::size_t> spaces_after_br{};
    std::size_t space_at_start = no_offset;
    std::size_t space_at_end = no_offset;
    bool starts_with_blank = false; ///< by a reference: others are lost
    std::string_view last_text{};   ///< the text that ends it, but for br; empty when an argument does
    bool is_empty = true;           ///< nothing but blanks
};

class catalog_visitor {
public:
    virtual ~catalog_visitor() = default;
    virtual void start_catalog(scanned_element const& catalog) = 0;
    /// The catalog is the last one that was started.
    virtual void message(scanned_message const& message) = 0;
    virtual void include(scanned_element const& include) = 0;
};

enum class scan_result {
    plain,   ///< the library loads it, as far as its includes let it
    unusual, ///< well-formed, with elements or attributes that the library may refuse
    not_well_formed
};

/// Calls the visitor in document order, up to a fault of the XML itself. `values` takes what has to be decoded;
/// it and the text live as long as what the visitor keeps.
scan_result scan_catalog_file(std::string_view text, std::deque<std::string>& values, catalog_visitor& visitor);

/// The text of a message of such a file, from "<msg" to "</msg>", as the library reads it. An argument is its name
/// between the two marks.
inline constexpr char argument_start = '\1';
inline constexpr char argument_end = '\2';
std::string read_message_text(std::string_view message);

} // namespace tools

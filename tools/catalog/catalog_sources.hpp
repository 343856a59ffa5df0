// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Catalog files as their authors wrote them: every element with its line. The library's own collection
// keeps only the messages that win for one language; this keeps all of them.
#pragma once

#include "tools/program/library.hpp"

#include <zolt/parser/xml_token_stream.hpp>

#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace tools {

inline constexpr std::size_t no_element = static_cast<std::size_t>(-1);

struct element {
    ustring8 name;
    unsigned line;
    unsigned column;          ///< from 1, in bytes
    std::size_t parent;       ///< index of the enclosing element; no_element for the root
    bool has_content = false; ///< anything but comments stands between its tags
    std::vector<std::pair<ustring8, ustring8>> attributes{};

    /// The value of an attribute; null without it.
    ustring8 const* attribute(std::string_view attribute_name) const;
};

/// One file, in document order.
struct source_file {
    std::size_t index = 0; ///< within catalog_sources
    ustring8 path;
    bool is_readable = false;
    bool is_well_formed = false;
    unsigned fault_line = 1; ///< of a file that is not well-formed
    std::vector<element> elements{};

    /// The name of an element's parent; empty for the root.
    std::string_view parent_name(element const& child) const;
    /// The path that an element includes, relative to this file's directory as the library takes it;
    /// nothing for what is no include element with a "file" attribute.
    std::optional<ustring8> included_path(element const& element) const;
    /// The languages that catalogs of this file are written in: normalized, and as first written.
    std::map<ustring8, ustring8> languages() const;
};

/// Takes the elements from the text of a file, and leaves its tokens to those who look closer.
void read_elements(source_file& file, ustring8 const& text, zolt::parser::xml_token_stream& tokens);

class catalog_sources {
public:
    catalog_sources() = default;
    catalog_sources(catalog_sources const&) = delete;
    catalog_sources& operator=(catalog_sources const&) = delete;

    /// Plans to read a file, whatever its name, or the .xmc and .xml files below a directory in the
    /// order of their names. Returns the number of files found there, seen before or not.
    std::size_t add(ustring8 const& path);

    /// Reads the next file that is planned and plans those that it includes; null when all are read.
    /// The file stays valid as long as this.
    source_file const* read_next();

    /// Files read, and files read or planned.
    std::size_t done() const { return m_files.size(); }
    std::size_t total() const { return m_paths.size(); }

    std::deque<source_file> const& files() const { return m_files; }
    /// The file at a path, however it is spelled; null when it was not read.
    source_file const* find(ustring8 const& path) const;

private:
    void plan(ustring8 const& path);

    std::vector<ustring8> m_paths;           // as they are shown
    std::map<ustring8, std::size_t> m_known; // by real path
    std::deque<source_file> m_files;
};

} // namespace tools

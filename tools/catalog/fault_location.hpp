// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Where in the files a fault is that the library reports. The library names file, catalog and message
// and what it stumbled over; this finds the line.
#pragma once

#include "catalog_sources.hpp"
#include "tools/program/library.hpp"
#include "tools/program/session.hpp"

#include <cstddef>
#include <string_view>

namespace tools {

struct fault_location {
    source_file const* file;
    unsigned line;
};

/// Reads the text of a failed load of `loaded` in a language. The place is in an included file when
/// the text says so, and as exact as the text allows: at worst line 1 of `loaded`.
fault_location locate_fault(ustring8 const& text, ustring8 const& language, source_file const& loaded,
                            catalog_sources const& sources);

/// What the library says of a fault whose place is known, in one line: what is wrong, and what was met. With
/// --verbose all that it says.
ustring8 text_of_fault(session const& session, ustring8 const& text);

/// The place in a line of a text, from its start: the library tells the line at best, so it is the first tag there.
std::size_t place_in_line(std::string_view text, std::size_t start);

} // namespace tools

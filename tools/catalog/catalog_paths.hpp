// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Where catalog files are: below directories and behind includes; and that none of them is written over.
#pragma once

#include "tools/program/library.hpp"
#include "tools/program/session.hpp"

#include <vector>

namespace tools {

/// The path itself, or the .xmc and .xml files below a directory in the order of their names. Among them is what
/// cannot be read, also a directory, so that whoever reads them tells it.
std::vector<ustring8> catalog_files(ustring8 const& path);

/// True for a path that does not depend on where the including file is: "/x", "\x" and "C:/x".
bool is_absolute_include(ustring8 const& path);

/// The path that a file includes, relative to the including one's directory as the library takes it.
ustring8 included_path(ustring8 const& including, ustring8 const& included);

/// True, with a complaint, when a file that is read is the one that is to be written, however both are spelled.
bool is_target(session const& session, ustring8 const& target, ustring8 const& path);
/// The same for the file of -o.
inline bool is_target(session const& session, ustring8 const& path) {
    return is_target(session, session.options.result_file, path);
}

} // namespace tools

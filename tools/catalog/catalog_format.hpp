// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// `zolt catalog fmt`: catalog files in the layout of catalog_layout.hpp, and the proof that they mean the same.
#pragma once

#include "catalog_sources.hpp"
#include "tools/program/library.hpp"
#include "tools/program/session.hpp"

#include <vector>

namespace tools {

struct format_options {
    std::vector<ustring8> paths;
    bool is_check = false; ///< write nothing but the names of files that are not laid out; exit_findings with such
};

/// A file that does not load is left alone, and the others go on. With a result file the text of the only file
/// goes there, otherwise files are replaced.
exit_status format_catalogs(session const& session, format_options const& options);

/// True when two texts have the same elements, attributes, comments and texts between the elements in the same
/// order, and the same messages in all languages. `file` has the elements of the first one, which is valid.
bool is_same_catalog(source_file const& file, ustring8 const& before, ustring8 const& after);

} // namespace tools

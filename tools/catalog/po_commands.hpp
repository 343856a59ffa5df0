// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// `zolt catalog export-po` and `import-po`. What po_exchange.hpp says of the form of texts is not
// repeated here.
#pragma once

#include "tools/program/library.hpp"
#include "tools/program/session.hpp"

#include <optional>
#include <vector>

namespace tools {

struct po_export_options {
    std::vector<ustring8> paths;
    std::optional<ustring8>
        directory; ///< for LANGUAGE.po of every language; without it one goes to `out`, or all as JSON
};

struct po_import_options {
    std::vector<ustring8> paths;
    std::optional<ustring8> catalog; ///< the one for all entries, which are named after their msgid
    bool use_fuzzy = false;
};

/// exit_findings, and no file is written, when a message cannot be in a PO file. The directory is made.
exit_status export_po(session const& session, po_export_options const& options);
/// exit_findings, and nothing is written, when a file has a fault or no file has a translation.
exit_status import_po(session const& session, po_import_options const& options);

} // namespace tools

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#pragma once

#include "tools/program/library.hpp"
#include "tools/program/session.hpp"

#include <optional>
#include <vector>

namespace tools {

struct stats_options {
    std::vector<ustring8> paths;
    bool is_gettext = false;         ///< sentences in place of a table
    std::optional<ustring8> chart{}; ///< file to draw, "-" in place of the table
};

/// `zolt catalog stats`: how far each language is.
exit_status count_translations(session const& session, stats_options const& options);

} // namespace tools

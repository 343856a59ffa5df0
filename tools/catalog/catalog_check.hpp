// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#pragma once

#include "tools/program/library.hpp"
#include "tools/program/session.hpp"

#include <vector>

namespace tools {

/// `zolt catalog check`: runs the rules over the files and what they include.
exit_status check_catalogs(session const& session, std::vector<ustring8> const& paths);

} // namespace tools

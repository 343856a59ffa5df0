// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// `zolt catalog diff`: what becomes of the messages that the library serves.
#pragma once

#include "tools/program/library.hpp"
#include "tools/program/session.hpp"

namespace tools {

/// exit_findings when there are differences.
exit_status diff_catalogs(session const& session, ustring8 const& old_path, ustring8 const& new_path);

} // namespace tools

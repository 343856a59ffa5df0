// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#pragma once

#include "tools/program/library.hpp"
#include "tools/program/session.hpp"

#include <cstddef>
#include <vector>

namespace tools {

struct missing_options {
    std::vector<ustring8> paths;
    std::size_t allowed = 0; ///< as many missing messages of a language are warnings, no errors
};

/// `zolt catalog missing`: what languages lack, have too much or left as it was.
exit_status find_missing(session const& session, missing_options const& options);

} // namespace tools

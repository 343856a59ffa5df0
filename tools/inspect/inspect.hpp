// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// `zolt inspect`: shows what a stored buffer holds, and where it is damaged.
#pragma once

#include "tools/program/library.hpp"
#include "tools/program/session.hpp"

namespace tools {

struct inspect_options {
    enum form_t {
        automatic, ///< labeled if it is that from end to end, else text if it starts like that, else bytes
        labeled,
        text,
        binary
    };

    ustring8 path;
    form_t form = automatic;
    ustring8 pattern{}; ///< of a binary buffer, see binary_pattern
};

/// exit_findings when the buffer is damaged, exit_failed when it cannot be read or the pattern is none.
exit_status inspect_buffer(session const& session, inspect_options const& options);

} // namespace tools

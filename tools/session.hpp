// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// What every command works with, and how commands end.
#pragma once

#include "library.hpp"
#include "program_messages.hpp"
#include "terminal.hpp"

namespace tools {

enum exit_status : int {
    exit_good = 0,
    exit_findings = 1, ///< it ran, and not all is well
    exit_failed = 2    ///< it could not run
};

struct session {
    output& out;
    output& err;
    program_messages const& texts;

    /// A line on standard error: "zolt: " and the text.
    void complain(std::string_view text) const { err.line("zolt: " + printable(text, line_feeds::keep)); }
};

} // namespace tools

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// What every command works with, and how commands end.
#pragma once

#include "languages.hpp"
#include "library.hpp"
#include "program_messages.hpp"
#include "terminal.hpp"

#include <optional>
#include <vector>

namespace tools {

enum exit_status : int {
    exit_good = 0,
    exit_findings = 1, ///< it ran, and not all is well
    exit_failed = 2    ///< it could not run
};

enum class severity { error, warning, note };

enum class output_format { text, json };

/// What --ignore silences.
struct ignored_rule {
    ustring8 rule;
    ustring8 scope; ///< "catalog/message"; empty: everywhere
};

/// The options of every command.
struct common_options {
    bool is_quiet = false;      ///< findings and failures only
    bool is_verbose = false;    ///< tell on standard error what is being done
    ustring8 result_file = "-"; ///< "-": standard output
    output_format format = output_format::text;
    std::optional<ustring8> language; ///< made usable
    ustring8 reference = "en";        ///< made usable
    severity fail_on = severity::error;
    std::vector<ignored_rule> ignored{};
    bool has_result_file = false; ///< -o was given, if only for standard output
    bool has_reference = false;   ///< --ref was given
};

struct session {
    output& out; ///< for results: standard output, or the file of -o
    output& err;
    program_messages const& texts;
    common_options const& options;

    bool is_json() const { return options.format == output_format::json; }
    /// The language that was asked for, else that of the environment.
    ustring8 language() const { return options.language ? *options.language : language_of_environment(); }

    /// A line on standard error: "zolt: " and the text.
    void complain(std::string_view text) const { err.line("zolt: " + printable(text, line_feeds::keep)); }
    /// The same for what only --verbose wants to know.
    void tell(std::string_view text) const {
        if (options.is_verbose) complain(text);
    }
};

} // namespace tools

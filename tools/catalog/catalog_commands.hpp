// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// `zolt catalog list`, `show` and `render`. Each loads a file or directory as an application would and
// ends with exit_failed and the library's text when that fails.
#pragma once

#include "tools/program/library.hpp"
#include "tools/program/session.hpp"

#include <optional>
#include <vector>

namespace tools {

struct show_options {
    ustring8 path;
    ustring8 catalog;
    std::optional<ustring8> message; ///< none: all of the catalog
};

struct render_options {
    ustring8 path;
    ustring8 catalog;
    ustring8 message;
    std::vector<ustring8> values; ///< "name=value" or "name:type=value"
};

/// Without a language that is asked for, every language that occurs is listed.
exit_status list_catalogs(session const& session, ustring8 const& path);
/// exit_findings when there is no such catalog or message.
exit_status show_messages(session const& session, show_options const& options);
/// exit_findings when there is no such catalog or message, or an argument is missing.
exit_status render_message(session const& session, render_options const& options);

} // namespace tools

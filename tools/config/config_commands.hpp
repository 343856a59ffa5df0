// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// `zolt config show`, `list`, `get` and `check`, which read configuration. Those that change files are in
// config_edit.hpp.
#pragma once

#include "config_settings.hpp"
#include "tools/program/library.hpp"
#include "tools/program/session.hpp"

#include <optional>
#include <vector>

namespace tools {

struct config_show_options {
    source_options sources;
    bool has_origin = false; ///< tell where each setting comes from
};

struct config_list_options {
    source_options sources;
    bool has_origin = false;
    bool has_overridden = false;
    bool has_records = false;    ///< for other programs, with NUL
    std::vector<ustring8> masks; ///< of keys whose values are not shown
};

struct config_get_options {
    source_options sources;
    ustring8 key;
    std::optional<ustring8> default_value;
};

/// A file that cannot be read ends all of these with exit_failed.
exit_status show_config(session const& session, config_show_options const& options);
exit_status list_config(session const& session, config_list_options const& options);
/// exit_findings when there is no such setting and no default.
exit_status get_config(session const& session, config_get_options const& options);
/// What sets nothing or something else than it seems, as findings.
exit_status check_config(session const& session, std::vector<ustring8> const& files);

} // namespace tools

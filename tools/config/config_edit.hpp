// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// `zolt config set` and `unset`: change one key of a configuration file and leave every other byte as it is.
#pragma once

#include "tools/program/library.hpp"
#include "tools/program/session.hpp"

#include <vector>

namespace tools {

struct config_set_options {
    ustring8 file; ///< made when it is not there
    ustring8 key;  ///< ends in "[]" for an array
    std::vector<ustring8> values;
};

struct config_unset_options {
    ustring8 file;
    ustring8 key;
};

/// Both end with exit_findings when the file's other statements do not let the key alone be changed, and with
/// exit_failed when the file cannot be read or written, or the new value has no written form. The file is as
/// it was then. With -o it always is, and the new text goes there; but not with JSON, which tells what was done.
exit_status set_config(session const& session, config_set_options const& options);
/// exit_findings also when there is no such key.
exit_status unset_config(session const& session, config_unset_options const& options);

} // namespace tools

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Files by their paths.
#pragma once

#include "library.hpp"

#include <zolt/generic/varg_list.hpp>

namespace tools {

/// The path without links and "..", as far as the file is there; else the path itself.
ustring8 real_path(ustring8 const& path);

/// Whether two paths lead to one file, also when there is no such file yet.
bool is_same_file(ustring8 const& left, ustring8 const& right);

/// The content of a file. False when it cannot be read, or is larger than a string can be.
bool load(ustring8 const& path, ustring8& content);

/// For phrase::not_readable: the path of a file or a directory, and the reason in the words of the system.
zolt::generic::varg_list why_unreadable(ustring8 const& path);

} // namespace tools

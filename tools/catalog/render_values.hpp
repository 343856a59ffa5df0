// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Values for placeholders from the command line: "name=value" is a text, "name:type=value" a value of
// the type int, uint, double, bool or string.
#pragma once

#include "tools/program/library.hpp"
#include "tools/program/session.hpp"

#include <zolt/generic/varg_list.hpp>

#include <vector>

namespace tools {

/// Appends the values; false, and a complaint, when one cannot be read as what it says it is.
bool read_values(session const& session, std::vector<ustring8> const& values, zolt::generic::varg_list& arguments);

} // namespace tools

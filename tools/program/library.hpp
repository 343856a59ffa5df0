// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Short names for the library, for the sources of the program.
#pragma once

#include <zolt/strings/ustring.hpp>

namespace zolt = ZOLT_2_18;

namespace tools {

using zolt::strings::ustring8;

} // namespace tools

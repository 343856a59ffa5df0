// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#pragma once

#include <cstring>
#include <locale>

namespace ZOLT_2_18::generic::convert::_private {

/// What `==` tells, without a call of the C++ library where it holds: a locale is a reference to its shared
/// parts, so that equal bytes are equal locales.
inline bool is_classic(std::locale const& locale) {
    static std::locale const& classic = std::locale::classic();
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison,cert-oop57-cpp): equal bytes are enough
    return std::memcmp(&locale, &classic, sizeof locale) == 0 || locale == classic;
}

} // namespace ZOLT_2_18::generic::convert::_private

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/version.hpp>

#define ZOLT_TEXT_OF(number) #number
#define ZOLT_TEXT(number) ZOLT_TEXT_OF(number)

namespace ZOLT_2_18 {

char const* version() noexcept {
    return ZOLT_TEXT(ZOLT_VERSION_MAJOR) "." ZOLT_TEXT(ZOLT_VERSION_MINOR) "." ZOLT_TEXT(ZOLT_VERSION_PATCH);
}

unsigned int version_number() noexcept { return ZOLT_VERSION; }

} // namespace ZOLT_2_18

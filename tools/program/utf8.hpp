// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// UTF-8 as other programs take it: the library also reads overlong forms, surrogates and what lies beyond
// U+10FFFF.
#pragma once

#include <cstddef>
#include <string_view>

namespace tools {

/// Bytes of the first character; 0 when it is broken.
std::size_t utf8_size(std::string_view text);

bool is_strict_utf8(std::string_view text);

} // namespace tools

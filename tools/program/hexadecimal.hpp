// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Bytes that are no text, as people read them.
#pragma once

#include "library.hpp"

#include <string_view>

namespace tools {

inline constexpr char hex_digits[] = "0123456789ABCDEF";

/// "1F 8B": two digits for each byte.
inline ustring8 hex(std::string_view bytes) {
    ustring8 text;
    text.reserve(3 * bytes.size());
    for (char const c : bytes) {
        auto const byte = static_cast<unsigned char>(c);
        if (!text.empty()) text += ' ';
        (text += hex_digits[byte / 16]) += hex_digits[byte % 16];
    }
    return text;
}
inline ustring8 hex(char byte) { return hex(std::string_view(&byte, 1)); }

} // namespace tools

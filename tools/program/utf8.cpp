// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "utf8.hpp"

namespace tools {

std::size_t utf8_size(std::string_view text) {
    auto const byte = [text](std::size_t i) { return static_cast<unsigned char>(i < text.size() ? text[i] : 0); };
    auto const continues = [&](std::size_t i) { return (byte(i) & 0xC0) == 0x80; };
    unsigned const lead = byte(0);
    unsigned const second = byte(1);
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return continues(1) ? 2 : 0;
    if (lead >= 0xE0 && lead <= 0xEF) {
        bool const is_bad = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F);
        return !is_bad && continues(1) && continues(2) ? 3 : 0;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        bool const is_bad = (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F);
        return !is_bad && continues(1) && continues(2) && continues(3) ? 4 : 0;
    }
    return 0;
}

bool is_strict_utf8(std::string_view text) {
    while (!text.empty()) {
        std::size_t const size = utf8_size(text);
        if (size == 0) return false;
        text.remove_prefix(size);
    }
    return true;
}

} // namespace tools

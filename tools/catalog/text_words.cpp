// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "text_words.hpp"

#include "catalog_scan.hpp"

#include <zolt/strings/unicode.hpp>

#include <algorithm>
#include <iterator>

namespace tools {
namespace {

struct range {
    unsigned long first;
    unsigned long last;
};

// Above ASCII: signs, punctuation, symbols, private use; the rest counts as letters.
constexpr range signs[] = {{0x0080, 0x00BF}, {0x00D7, 0x00D7}, {0x00F7, 0x00F7},   {0x060C, 0x060C},
                           {0x061B, 0x061F}, {0x066A, 0x066D}, {0x06D4, 0x06D4},   {0x0964, 0x0965},
                           {0x2000, 0x2BFF}, {0x2E00, 0x2E7F}, {0x3000, 0x3004},   {0x3008, 0x3020},
                           {0x3030, 0x3030}, {0xE000, 0xF8FF}, {0xFE00, 0xFE6F},   {0xFEFF, 0xFEFF},
                           {0xFF00, 0xFF20}, {0xFFE0, 0xFFFF}, {0x1F000, 0x1FAFF}, {0xE0000, ~0ul}};
constexpr range small_letters[] = {{'a', 'z'}, {0x00DF, 0x00FF}, {0x03AC, 0x03CE}, {0x0430, 0x045F}};

template <std::size_t Size>
bool is_in(range const (&ranges)[Size], unsigned long c) {
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [c](range const& each) { return c >= each.first && c <= each.last; });
}

bool is_small(unsigned long c) { return is_letter(c) && is_in(small_letters, c); }
// "don't", "well-known"
bool joins(unsigned long c) { return c == '\'' || c == 0x2019 || c == '-'; }

// The first character; a byte that starts none counts as a sign.
unsigned long take_character(std::string_view& text) {
    auto const first = static_cast<unsigned char>(text.front());
    if (first < 0x80) {
        text.remove_prefix(1);
        return first;
    }
    unsigned long bytes = 0;
    std::string_view const start = text.substr(0, 4);
    unsigned long const character =
        zolt::strings::unichar(start.data(), static_cast<unsigned long>(start.size()), 0, bytes);
    bool const is_valid = bytes != zolt::strings::no_index;
    text.remove_prefix(is_valid ? bytes : 1);
    return is_valid ? character : 0x80;
}

// What stands between two blanks: brackets and punctuation at its edges do not count.
struct token {
    bool has_letter = false;
    bool is_word = false; // of letters alone, the first of them and all others small

    explicit token(std::string_view text) {
        constexpr std::size_t least_letters = 2;
        bool is_code = text.find_first_of("@/\\_=<>[]{}$%#&|*~^`0123456789") != std::string_view::npos ||
                       text.front() == '-' || text.front() == '.';
        std::size_t letters = 0;
        bool is_after_sign = false;
        while (!text.empty()) {
            unsigned long const c = take_character(text);
            if (!is_letter(c)) {
                is_after_sign = is_after_sign || (letters != 0 && !joins(c));
                continue;
            }
            is_code = is_code || is_after_sign || !is_small(c); // "example.org"
            ++letters;
        }
        has_letter = letters != 0;
        is_word = !is_code && letters >= least_letters;
    }
};

// The text up to a blank or a placeholder, which are taken, too.
std::string_view take_token(std::string_view& text) {
    auto const end = std::min(text.size(), text.find_first_of(" \n\t\1"));
    std::string_view const found = text.substr(0, end);
    bool const is_placeholder = end != text.size() && text[end] == argument_start;
    auto const next = is_placeholder ? text.find(argument_end, end) : end;
    text.remove_prefix(next >= text.size() ? text.size() : next + 1);
    return found;
}

} // namespace

bool is_letter(unsigned long c) {
    if (c < 0x80) return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return !is_in(signs, c);
}

text_words count_words(std::string_view text) {
    text_words result;
    bool has_small_word = false;
    while (!text.empty()) {
        std::string_view const found = take_token(text);
        if (found.empty()) continue;
        token const each(found);
        result.count += each.has_letter ? 1 : 0;
        has_small_word = has_small_word || each.is_word;
    }
    if (result.count != 0) {
        bool const is_sentence = result.count > 1 && has_small_word;
        result.kind = is_sentence ? text_kind::sentence : text_kind::may_be_name;
    }
    return result;
}

} // namespace tools

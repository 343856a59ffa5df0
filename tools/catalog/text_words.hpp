// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The words of a message's text, as read_message_text gives it, and whether one expects them to be translated.
#pragma once

#include <cstddef>
#include <string_view>

namespace tools {

/// Above ASCII, everything that is no punctuation, symbol or sign of its own.
bool is_letter(unsigned long character);

enum class text_kind {
    no_words, ///< nothing to translate: no letters but those of placeholders
    /// A single word, or none that is written small: it may be a name, an abbreviation or a unit. "Zolt", "OK",
    /// "12 km", "--lang", "https://example.org", "Visual Editor", "Cancel".
    may_be_name,
    sentence ///< "Save the file"
};

struct text_words {
    std::size_t count = 0; ///< runs between blanks that hold a letter
    text_kind kind = text_kind::no_words;
};

text_words count_words(std::string_view text);

} // namespace tools

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Tables of texts for codes: each text is a frame around a value that the code comes with.
#pragma once

#include <zolt/strings/ustring.hpp>

#include <cstddef>
#include <string>

namespace ZOLT_2_18::i18n::_private {

/// The text before and after a value. Without an end the value is not shown; without a beginning
/// the code has no frame.
struct text_frame {
    char const* begin = nullptr;
    char const* end = nullptr;
};

/// The code's frame in a table indexed by code, null when it has none.
template <std::size_t Count>
text_frame const* find_frame(text_frame const (&frames)[Count], unsigned int code) noexcept {
    return code < Count && frames[code].begin ? &frames[code] : nullptr;
}

inline void append_framed(std::string& text, text_frame const& frame, strings::ustring8 const& value) {
    text.append(frame.begin);
    if (frame.end) text.append(value).append(frame.end);
}

/// What stands for a code without a frame.
inline void append_unknown(std::string& text, unsigned int code, strings::ustring8 const& value) {
    text.append("unknown, or unhandle case happened! ").append(std::to_string(code));
    text.append(" str data=").append(value);
}

} // namespace ZOLT_2_18::i18n::_private

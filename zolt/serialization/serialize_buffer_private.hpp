// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// What the buffers share: the limit of their length and stepping through the content. The position may stand
// anywhere, also behind the content; everything is cut to what is there. Not installed.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace ZOLT_2_18::serialization::_private {

/// The largest position. In a text buffer it means that reading has run past the last separator.
inline constexpr unsigned int no_position = 0xFFFFFFFF;

/// Where a buffer that would grow too long says so.
struct raise_site {
    unsigned int line;
    char const* file;
    char const* function;
};

inline constexpr raise_site append_site{47, "serialization/serialize_buffer", "append"};
inline constexpr raise_site assign_site{62, "serialization/serialize_buffer", "assign"};
inline constexpr raise_site labeled_form_site{118, "serialization/labeled_text_buffer", "as_str"};

[[noreturn]] void raise_too_long(raise_site const& at);

/// A length must fit into 32 bits, and into a string.
inline std::uint64_t longest_content() noexcept {
    return std::min<std::uint64_t>(0xFFFFFFFF, std::string().max_size());
}

inline void check_length(std::uint64_t length, raise_site const& at) {
    if (length > longest_content()) raise_too_long(at);
}

inline std::string&& checked(std::string&& content) {
    check_length(content.size(), assign_site);
    return std::move(content);
}

inline std::string_view bytes_or_none(char const* bytes, int length) noexcept {
    return bytes && length > 0 ? std::string_view(bytes, static_cast<std::size_t>(length)) : std::string_view();
}

/// No content reaches no_position, so it needs no question of its own.
inline bool is_at_end(std::string_view content, unsigned int position) noexcept {
    return position >= content.size();
}

inline std::string_view rest_of(std::string_view content, unsigned int position) noexcept {
    return content.substr(std::min<std::size_t>(position, content.size()));
}

inline unsigned int saturated(std::uint64_t position) noexcept {
    return static_cast<unsigned int>(std::min<std::uint64_t>(position, no_position));
}

/// The bytes of a string at the position, which moves past them and what closes the string. A length beyond
/// the content takes what is there and leaves the position at the content's end.
inline std::string_view take_bytes(std::string_view content, unsigned int& position, std::uint64_t length,
                                   unsigned int closing_bytes) noexcept {
    std::string_view const rest = rest_of(content, position);
    if (length > rest.size()) {
        position = saturated(content.size());
        return rest;
    }
    position = saturated(position + length + closing_bytes);
    return rest.substr(0, static_cast<std::size_t>(length));
}

} // namespace ZOLT_2_18::serialization::_private

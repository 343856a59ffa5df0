// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// What a stored buffer holds, item by item, and the place where it breaks.
//
// The library's buffers read anything and make the best of it. These readers take only what the library
// writes: each stops at the first byte that does not fit and tells why. None of them recurses or trusts a
// length.
#pragma once

#include "tools/program/program_messages.hpp"

#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace tools {

struct stored_item {
    enum kind_t { number, text, bytes, group };

    std::size_t position; ///< of its first byte
    kind_t kind;
    std::string_view content{}; ///< of a number its decimal text
    std::string_view name{};    ///< a label, or a type of a pattern
    std::size_t depth = 0;      ///< the number of groups around it
};
using item_visitor = std::function<void(stored_item const&)>;

struct stored_damage {
    std::size_t position;
    phrase reason; ///< has the arguments "length", "left" and "type"
    unsigned long long length = 0;
    std::size_t left = 0;
    std::string_view type{};
};

/// serialization::labeled_text_buffer: labels with texts and groups.
std::optional<stored_damage> read_labeled_items(std::string_view content, item_visitor const& visit);

/// serialization::serialize_text_buf, which does not tell numbers from the lengths of strings: whatever can
/// be a number is one, unless the rest makes sense only when it is a length.
std::optional<stored_damage> read_text_items(std::string_view content, item_visitor const& visit);
/// Whether it starts like a text buffer.
bool looks_like_text_items(std::string_view content);

/// The layout of a serialization::serialize_binary_buf: "u4 (i2 s)*" is a 4-byte number, and then pairs of a
/// 2-byte number and a string up to the end. An item or group in parentheses is repeated by "*" up to the
/// end and by "*3" three times.
class binary_pattern {
public:
    /// False when the text is none; `fault` is where it breaks then.
    bool parse(std::string_view text, std::size_t& fault);
    std::optional<stored_damage> read(std::string_view content, item_visitor const& visit) const;

    struct type {
        std::string_view name;
        std::size_t size; ///< of the number, or of the length of strings and buffers
        std::string (*decode)(char const*);
        stored_item::kind_t kind;
    };

private:
    struct group {
        std::vector<type const*> items;
        unsigned long long count; ///< 0: up to the end
    };
    std::vector<group> m_groups;
};

} // namespace tools

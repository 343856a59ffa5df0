// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// ustring8, ustring16 and ustring32: UTF-8, UTF-16 and UTF-32 text.
//
// Each is the standard string of its code unit under a name of its own, so that a signature says
// which encoding its text is in while every standard operation stays available. They add no data and
// no virtual functions. Nothing is validated: a ustring8 may hold any bytes, embedded NULs included;
// the functions that need valid text check it themselves. Lengths count code units (bytes for
// ustring8), never characters; strings::character_index maps character positions to unit positions.
//
// The types never convert into one another implicitly: see <zolt/strings/unicode.hpp>.
//
//     strings::ustring8 name("caf\xC3\xA9");
//     strings::string_length(name);           // 5 bytes
//     strings::utf8_to_utf16(name).size();    // 4 units
#pragma once

#include <string>
#include <type_traits>
#include <utility>

namespace ZOLT_2_18::strings {

/// UTF-8 text over std::string.
class ustring8 : public std::string {
public:
    /// The standard string.
    using base_type = std::string;
    using base_type::base_type;
    using base_type::operator=;

    ustring8() = default;
    /// The standard string's units.
    ustring8(base_type const& text) : base_type(text) {}
    ustring8(base_type&& text) noexcept : base_type(std::move(text)) {}
};

/// UTF-16 text in the machine's byte order unless marked otherwise.
class ustring16 : public std::basic_string<unsigned short> {
public:
    /// The standard string of the unit.
    using base_type = std::basic_string<unsigned short>;
    using base_type::base_type;
    using base_type::operator=;

    ustring16() = default;
    /// The standard string's units.
    ustring16(base_type const& text) : base_type(text) {}
    ustring16(base_type&& text) noexcept : base_type(std::move(text)) {}
};

/// UTF-32 text; wchar_t is 32 bits wide on the platforms served.
class ustring32 : public std::basic_string<wchar_t> {
public:
    /// The standard string of the unit.
    using base_type = std::basic_string<wchar_t>;
    using base_type::base_type;
    using base_type::operator=;

    ustring32() = default;
    /// The standard string's units.
    ustring32(base_type const& text) : base_type(text) {}
    ustring32(base_type&& text) noexcept : base_type(std::move(text)) {}
};

static_assert(sizeof(wchar_t) == 4, "ustring32 needs a 32-bit wchar_t");

/// A new string: `left` followed by the NUL-terminated bytes of `right`, which must not be null.
inline ustring8 operator+(ustring8 const& left, char const* right) {
    ustring8 sum;
    std::size_t const added = std::char_traits<char>::length(right);
    sum.reserve(left.size() + added);
    sum.append(left).append(right, added);
    return sum;
}

/// True when both hold the same bytes; embedded NULs count. Takes part only when both operands are
/// ustring8 themselves, so that comparisons with std::string and literals stay the base type's.
template <typename Text>
std::enable_if_t<std::is_same_v<Text, ustring8>, bool> operator==(Text const& left, Text const& right) noexcept {
    return left.size() == right.size() && left.compare(right) == 0;
}
template <typename Text>
std::enable_if_t<std::is_same_v<Text, ustring8>, bool> operator!=(Text const& left, Text const& right) noexcept {
    return !(left == right);
}

/// Number of code units before the first zero unit. The text must not be null.
inline unsigned int string_length(char const* text) noexcept {
    return static_cast<unsigned int>(std::char_traits<char>::length(text));
}
inline unsigned int string_length(unsigned short const* text) noexcept {
    return static_cast<unsigned int>(std::char_traits<unsigned short>::length(text));
}
inline unsigned int string_length(wchar_t const* text) noexcept {
    return static_cast<unsigned int>(std::char_traits<wchar_t>::length(text));
}

/// The size in code units, embedded zero units included.
inline unsigned int string_length(ustring8 const& text) noexcept { return static_cast<unsigned int>(text.size()); }
inline unsigned int string_length(ustring16 const& text) noexcept { return static_cast<unsigned int>(text.size()); }
inline unsigned int string_length(ustring32 const& text) noexcept { return static_cast<unsigned int>(text.size()); }

} // namespace ZOLT_2_18::strings

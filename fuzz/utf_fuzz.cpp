// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Any units as text of each encoding, against what unicode.hpp promises, written down unit by unit. Letters in
// front move the text across the blocks of the fast forms.
#include "input.hpp"

#include <zolt/strings/unicode.hpp>

#include <algorithm>

namespace {

using namespace zolt::strings;
using fuzz::check;
using u32 = std::uint32_t;

struct character {
    u32 value = '?';
    unsigned length = 0; ///< in units; 0: no character
};

bool is_high(u32 unit) { return unit >> 10 == 0xD800 >> 10; }
bool is_low(u32 unit) { return unit >> 10 == 0xDC00 >> 10; }

unsigned announced(char lead) {
    unsigned const bits = static_cast<unsigned char>(lead);
    return bits < 0x80 ? 1 : bits < 0xC0 ? 0 : bits < 0xE0 ? 2 : bits < 0xF0 ? 3 : bits < 0xF8 ? 4 : 0;
}

character read(ustring8 const& text, std::size_t at) {
    unsigned const length = announced(text[at]);
    if (length == 0 || length > text.size() - at) return {};
    u32 value = static_cast<unsigned char>(text[at]) & (length == 1 ? 0x7F : 0x7F >> length);
    for (unsigned i = 1; i < length; ++i) {
        if ((text[at + i] & 0xC0) != 0x80) return {};
        value = value << 6 | (text[at + i] & 0x3F);
    }
    return {value, length};
}

character read(ustring16 const& text, std::size_t at) {
    u32 const unit = text[at];
    if (!is_high(unit) && !is_low(unit)) return {unit, 1};
    if (!is_high(unit) || at + 1 == text.size() || !is_low(text[at + 1])) return {};
    return {0x10000 + ((unit & 0x3FF) << 10 | (text[at + 1] & 0x3FFU)), 2};
}

character read(ustring32 const& text, std::size_t at) { return {static_cast<u32>(text[at]), 1}; }

void put(ustring8& text, u32 c, std::size_t) {
    if (c >= 0x110000) return;
    unsigned const more = c < 0x80 ? 0 : c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
    text += static_cast<char>((more ? 0x780 >> more & 0xFF : 0) | c >> 6 * more);
    for (unsigned i = more; i-- > 0;) text += static_cast<char>(0x80 | (c >> 6 * i & 0x3F));
}

void put(ustring16& text, u32 c, std::size_t units) {
    bool const pair = units == 4 || (units == 0 && c >= 0xFFFF); // a long UTF-8 sequence, or a UTF-32 unit
    if (units == 4) c -= 0x10000;
    if (pair) text += static_cast<unsigned short>(0xD800 + (c >> 10));
    text += static_cast<unsigned short>(pair ? 0xDC00 + (c & 0x3FF) : c);
}

void put(ustring32& text, u32 c, std::size_t) { text += static_cast<wchar_t>(c); }

/// The conversion, character by character.
template <typename To, typename From>
To plain(From const& text) {
    constexpr std::size_t to = sizeof(typename To::value_type);
    constexpr std::size_t from = sizeof(typename From::value_type);
    To result;
    for (std::size_t at = 0; at < text.size();) {
        character const c = read(text, at);
        bool const foreign = is_high(c.value) || is_low(c.value) || (to == 2 && c.value >= 0x110000);
        bool const fails = from == 4 ? foreign : c.length == 0 && !(from == 1 && to == 4);
        if (fails) return {'-', '1'};
        put(result, c.value, from == 4 ? 0 : c.length);
        at += std::max(c.length, 1U);
    }
    return result;
}

template <typename Text>
unsigned long plain_index(Text const& text, unsigned long n) {
    if (n >= text.size()) return no_index;
    std::size_t at = 0;
    for (; n > 0; --n) {
        if (at >= text.size()) return no_index;
        bool const lone = sizeof(text[0]) == 2 && at > 0 && is_low(static_cast<u32>(text[at]));
        unsigned const length = lone ? 1 : read(text, at).length;
        if (length == 0) return no_index;
        at += length;
    }
    return static_cast<unsigned long>(at);
}

/// What all widths have in common; position by position only near the start.
template <typename Text>
void check_units(Text const& text, Text const& mark) {
    bool const marked = text.compare(0, mark.size(), mark) == 0;
    check(remove_BOM(text) == (marked ? Text(text.substr(mark.size())) : text), "remove_BOM");
    auto const size = static_cast<unsigned long>(text.size());
    for (unsigned long at = 0; at <= size && at < 100; ++at) {
        character const c = at < size ? read(text, at) : character{};
        unsigned long consumed = 0;
        check(unichar(text.data(), size, at, consumed) == c.value, "unichar");
        check(consumed == (c.length ? c.length : no_index), "what unichar consumed");
        if constexpr (sizeof(text[0]) < 4)
            check(character_index(text, at) == plain_index(text, at), "character_index");
    }
}

void check_8(ustring8 const& text) {
    check(utf8_to_utf16(text) == plain<ustring16>(text), "utf8_to_utf16");
    check(utf8_to_utf32(text) == plain<ustring32>(text), "utf8_to_utf32");
    check_units<ustring8>(text, "\xEF\xBB\xBF");
    for (std::size_t at = 0; at < text.size() && at < 100; ++at) {
        auto const left = static_cast<unsigned int>(text.size() - at);
        check(gh2::get_utf8_length(&text[at], left) == announced(text[at]), "get_utf8_length");
        check(gh2::validate_utf8(&text[at], left) == (read(text, at).length != 0), "validate_utf8");
    }
}

ustring16 swapped(ustring16 text) {
    for (auto& unit : text) unit = static_cast<unsigned short>(unit << 8 | unit >> 8);
    return text;
}

void check_16(ustring16 const& text) {
    ustring16 const native = !text.empty() && text[0] == 0xFFFE ? swapped(text) : text;
    check(utf16_to_utf8(text) == plain<ustring8>(native), "utf16_to_utf8");
    check(utf16_to_utf32(text) == plain<ustring32>(native), "utf16_to_utf32");
    check(swap_string_bytes_order(text) == swapped(text), "swap_string_bytes_order");
    check(check_BOM_and_swap(text) == native, "check_BOM_and_swap");
    ustring16 modified = text;
    check_BOM_and_modify_swap(modified);
    modify_swap_string_bytes_order(modified);
    check(modified == swapped(native), "both swaps in place");
    check_units(text, ustring16(1, 0xFEFF));
}

void check_32(ustring32 const& text) {
    check(utf32_to_utf8(text) == plain<ustring8>(text), "utf32_to_utf8");
    check(utf32_to_utf16(text) == plain<ustring16>(text), "utf32_to_utf16");
    check_units(text, ustring32(1, wchar_t(0xFEFF)));
}

template <typename Text>
Text units(std::string const& bytes, std::size_t letters) {
    Text text(letters + bytes.size() / sizeof(typename Text::value_type), 'a');
    std::memcpy(text.data() + letters, bytes.data(), (text.size() - letters) * sizeof text[0]);
    return text;
}

} // namespace

void fuzz::run(input in) {
    std::size_t const letters = in.below(80);
    std::string const bytes = in.rest();
    auto const text = units<ustring8>(bytes, letters);
    check_8(text);
    check_16(units<ustring16>(bytes, letters));
    check_16(plain<ustring16>(text));
    check_16(swapped(plain<ustring16>(text)));
    check_32(units<ustring32>(bytes, letters));
    check_32(plain<ustring32>(text));
}

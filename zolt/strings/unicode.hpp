// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Conversions between UTF-8, UTF-16 and UTF-32, single characters, byte order marks and byte order.
//
// Bad text never throws. Each function answers it in its own way: a whole-string conversion either
// gives up and returns the two-character text "-1" or replaces what it cannot read, and the functions
// on positions answer with no_index. Which of these a conversion does stands at its declaration.
//
//     strings::utf8_to_utf16("caf\xC3\xA9");         // 4 units
//     strings::utf8_to_utf16("caf\xC3");             // "-1": the last character is cut off
//     strings::utf8_to_utf32("caf\xC3");             // "caf?"
//     strings::character_index("\xC3\xA9t\xC3\xA9", 2); // 3: the third character starts at byte 3
//
// Reading UTF-8 is lenient throughout: overlong forms, encoded surrogates and four-byte sequences
// above U+10FFFF decode as they are written. Units of a ustring32 are read as unsigned 32-bit values.
// All functions may run in parallel on different threads.
#pragma once

#include <zolt/export.hpp>
#include <zolt/strings/ustring.hpp>

namespace ZOLT_2_18::strings {

/// "No such index" and "no valid character": 32 set bits, also where unsigned long has 64.
inline constexpr unsigned long no_index = 0xFFFFFFFFUL;

/// UTF-16 of the text; "-1" when any byte starts no well-formed sequence, a cut off last character
/// included. A four-byte sequence becomes its surrogate pair; one whose value needs none, or exceeds
/// U+10FFFF, goes through the same formula kept to 16 bits (F0 80 80 80 gives D7C0 DC00).
ZOLT_API ustring16 utf8_to_utf16(ustring8 const& text);

/// UTF-32 of the text. Each byte that starts no well-formed sequence becomes one "?".
ZOLT_API ustring32 utf8_to_utf32(ustring8 const& text);

/// UTF-8 of the text; "-1" when it holds a surrogate without its partner. Text that starts with the
/// unit 0xFFFE is in reversed byte order and is swapped first; its mark stays, as EF BB BF.
ZOLT_API ustring8 utf16_to_utf8(ustring16 const& text);

/// UTF-32 of the text; "-1" when it holds a surrogate without its partner. Reversed byte order as for
/// utf16_to_utf8; the mark stays, as U+FEFF.
ZOLT_API ustring32 utf16_to_utf32(ustring16 const& text);

/// UTF-8 of the text; "-1" when it holds a surrogate. Units of 0x110000 and above are left out.
ZOLT_API ustring8 utf32_to_utf8(ustring32 const& text);

/// UTF-16 of the text; "-1" when it holds a surrogate or a unit of 0x110000 or above.
/// Kept: U+FFFF and everything above becomes the two units 0xD800 + (c >> 10) and 0xDC00 + (c & 0x3FF),
/// without the subtraction of 0x10000 that standard UTF-16 makes. U+FFFF gives D83F DFFF, U+10000 gives
/// D840 DC00, U+1F600 gives D87D DE00; such text does not survive the way back through utf16_to_utf32.
ZOLT_API ustring16 utf32_to_utf16(ustring32 const& text);

/// The character that starts at text[index], where `length` units can be read from `text`; `consumed`
/// becomes the number of its units. No character there (a broken or cut off sequence, a surrogate
/// without its partner, an index not below the length): returns "?" and sets `consumed` to no_index.
/// A UTF-32 unit is returned as it is.
ZOLT_API unsigned long unichar(char const* text, unsigned long length, unsigned long index,
                               unsigned long& consumed);
ZOLT_API unsigned long unichar(unsigned short const* text, unsigned long length, unsigned long index,
                               unsigned long& consumed);
ZOLT_API unsigned long unichar(wchar_t const* text, unsigned long length, unsigned long index,
                               unsigned long& consumed);

/// The unit index at which character number n, counted from 0, starts; linear in n. The text's length
/// in units for an n that is the number of its characters, provided that n is below that length;
/// no_index for any n beyond and when the walk meets a malformed character.
/// Kept: of a UTF-16 text whose first unit is a low surrogate no character but number 0 is found, while
/// a lone low surrogate further on counts as a character.
ZOLT_API unsigned long character_index(ustring8 const& text, unsigned long n);
ZOLT_API unsigned long character_index(ustring16 const& text, unsigned long n);

/// The text without the byte order mark (U+FEFF in its own encoding) that it may start with. Only one
/// mark is removed, and a reversed one (0xFFFE) is not.
ZOLT_API ustring8 remove_BOM(ustring8 const& text);
ZOLT_API ustring16 remove_BOM(ustring16 const& text);
ZOLT_API ustring32 remove_BOM(ustring32 const& text);

/// The text with the two bytes of every unit exchanged, the first unit included.
ZOLT_API ustring16 swap_string_bytes_order(ustring16 const& text);
ZOLT_API void modify_swap_string_bytes_order(ustring16& text);

/// The text in the machine's byte order: swapped when its first unit is 0xFFFE, else unchanged. The
/// mark stays, as 0xFEFF.
ZOLT_API ustring16 check_BOM_and_swap(ustring16 const& text);
ZOLT_API void check_BOM_and_modify_swap(ustring16& text);

/// Checks on the single UTF-8 sequence at the start of a buffer of `size` bytes.
namespace gh2 {

/// The number of bytes that the lead byte announces, 1 to 4, whether or not they are there; 0 for a
/// byte that leads no sequence, an empty buffer or a null pointer.
ZOLT_API unsigned int get_utf8_length(unsigned char const* p, unsigned int size);
ZOLT_API unsigned int get_utf8_length(char const* p, unsigned int size);

/// True when the buffer starts with a whole sequence: a lead byte and as many continuation bytes as it
/// announces. What follows it is not looked at.
ZOLT_API bool validate_utf8(unsigned char const* p, unsigned int size);
ZOLT_API bool validate_utf8(char const* p, unsigned int size);

} // namespace gh2
} // namespace ZOLT_2_18::strings

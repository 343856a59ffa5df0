// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Case, splitting, replacing and prefix tests.
//
// Everything here works on code units, not on characters: case follows the C library's tolower and
// toupper for single units (in the default locale: ASCII letters), and positions and lengths count
// units. Embedded zero units are ordinary units. A delimiter, pattern or replacement may be given in
// any form that converts to the text's own type.
//
//     strings::split_string(ustring8("a,b,,c"), ",");       // "a" "b" "" "c"
//     strings::split_string(ustring8("a,b,c"), ",", 1);     // "a" "b,c"
//     ustring8 text("aaa");
//     strings::replace_all(text, "a", "aa");                // 3, text is "aaaaaa"
//     strings::begin_with("abc", 1, "bc");                  // true
#pragma once

#include <zolt/export.hpp>
#include <zolt/strings/unicode.hpp> // no_index
#include <zolt/strings/ustring.hpp>

#include <string>
#include <type_traits>
#include <vector>

namespace ZOLT_2_18::strings {

/// The text with every unit mapped by the C library under the locale in force. Units above 0xFF stay.
ZOLT_API ustring8 to_lower(ustring8 const& text);
ZOLT_API ustring16 to_lower(ustring16 const& text);
ZOLT_API ustring32 to_lower(ustring32 const& text);
ZOLT_API ustring8 to_upper(ustring8 const& text);
ZOLT_API ustring16 to_upper(ustring16 const& text);
ZOLT_API ustring32 to_upper(ustring32 const& text);

/// The text with the units from index `from` up to but excluding `to` in lower case. The range is
/// clamped to the text; no_index, or all bits set at any width, as `to` means the end.
ZOLT_API ustring8 lower_case(ustring8 const& text, unsigned long from, unsigned long to);
ZOLT_API ustring16 lower_case(ustring16 const& text, unsigned long from, unsigned long to);
ZOLT_API ustring32 lower_case(ustring32 const& text, unsigned long from, unsigned long to);

/// The pieces of the text between the occurrences of the delimiter, found from left to right. After
/// `max_splits` occurrences the rest stays whole; 0 or a negative number sets no limit. An empty
/// delimiter gives the whole text as the only piece, an empty text with a delimiter gives none.
/// Kept: a text that ends in the delimiter has no empty last piece ("a,b," gives "a" "b"), while a
/// leading delimiter and two adjacent ones do give empty pieces (",a" gives "" "a").
ZOLT_API std::vector<ustring8> split_string(ustring8 const& text, ustring8 const& delimiter, int max_splits = 0);
ZOLT_API std::vector<ustring16> split_string(ustring16 const& text, ustring16 const& delimiter, int max_splits = 0);
ZOLT_API std::vector<ustring32> split_string(ustring32 const& text, ustring32 const& delimiter, int max_splits = 0);
ZOLT_API std::vector<std::string> split_string(std::string const& text, std::string const& delimiter,
                                               int max_splits = 0);
ZOLT_API std::vector<std::wstring> split_string(std::wstring const& text, std::wstring const& delimiter,
                                                int max_splits = 0);

/// The same with a NUL-terminated delimiter, which must not be null.
ZOLT_API std::vector<ustring8> split_string(ustring8 const& text, char const* delimiter, int max_splits = 0);

/// Puts `replacement` in the place of every occurrence of `pattern`, found from left to right and
/// without looking into what was put in; returns their number. An empty pattern changes nothing and
/// returns 0. Pattern and replacement may be the text itself: they count as it was before the call.
/// Linear in the sizes of the text before and after.
ZOLT_API unsigned int replace_all(ustring8& text, ustring8 const& pattern, ustring8 const& replacement);
ZOLT_API unsigned int replace_all(ustring16& text, ustring16 const& pattern, ustring16 const& replacement);
ZOLT_API unsigned int replace_all(ustring32& text, ustring32 const& pattern, ustring32 const& replacement);
ZOLT_API unsigned int replace_all(std::string& text, std::string const& pattern, std::string const& replacement);
ZOLT_API unsigned int replace_all(std::wstring& text, std::wstring const& pattern, std::wstring const& replacement);

/// True when the text's units from `position` on begin with the prefix. An empty prefix stands at
/// every position up to the text's length; beyond the length nothing does.
ZOLT_API bool begin_with(ustring8 const& text, unsigned int const& position, ustring8 const& prefix);

/// The same helpers for plain byte strings, and the way to and from the system's code page.
namespace gh2 {

/// to_lower and to_upper of the bytes.
ZOLT_API std::string tolower(std::string const& text);
ZOLT_API std::string toupper(std::string const& text);

/// As strings::replace_all, the empty pattern included.
ZOLT_API unsigned int replace_all(std::string& text, std::string const& pattern, std::string const& replacement);

/// UTF-8 bytes in the code page of the locale in force; "?" for each byte of a character that it
/// lacks. Throws what code_page::encode throws.
ZOLT_API std::string to_ansi(std::string const& text);

/// Bytes in the code page of the locale in force as UTF-8; "?" for each byte that cannot be read.
/// Throws what code_page::as_ustring throws.
ZOLT_API ustring8 from_ansi(std::string const& text);

} // namespace gh2

// ------------------------------------------------------------------------------------------------
// Calls that mix a string type and its base. The text's type decides, where overload resolution alone
// would find two equally good functions.

namespace _private {

template <typename Text>
using is_text =
    std::disjunction<std::is_same<Text, ustring8>, std::is_same<Text, ustring16>, std::is_same<Text, ustring32>,
                     std::is_same<Text, std::string>, std::is_same<Text, std::wstring>>;

template <typename Text, typename Part>
inline constexpr bool is_text_and_part = std::conjunction_v<is_text<Text>, std::is_convertible<Part const&, Text>>;

} // namespace _private

/// The same with a delimiter of another type.
template <typename Text, typename Delimiter>
std::enable_if_t<_private::is_text_and_part<Text, Delimiter> && !std::is_same_v<Text, Delimiter>, std::vector<Text>>
split_string(Text const& text, Delimiter const& delimiter, int max_splits = 0) {
    Text const converted(delimiter);
    return strings::split_string(text, converted, max_splits);
}

/// The same with a pattern or replacement of another type.
template <typename Text, typename Pattern, typename Replacement>
std::enable_if_t<_private::is_text_and_part<Text, Pattern> && _private::is_text_and_part<Text, Replacement> &&
                     !(std::is_same_v<Text, Pattern> && std::is_same_v<Text, Replacement>),
                 unsigned int>
replace_all(Text& text, Pattern const& pattern, Replacement const& replacement) {
    Text const converted_pattern(pattern);
    Text const converted_replacement(replacement);
    return strings::replace_all(text, converted_pattern, converted_replacement);
}

} // namespace ZOLT_2_18::strings

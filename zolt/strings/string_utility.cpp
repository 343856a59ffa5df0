// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Splitting and replacing share one search. Short patterns use the string's own find; for long ones,
// where that can take the product of both lengths, `searcher` remembers how much of the pattern a
// failed comparison has already matched and so never goes back in the text. replace_all builds a new
// text from the pieces, which keeps it linear and makes aliasing harmless: the old text stays whole
// until the end.
#include <zolt/strings/string_utility.hpp>

#include <zolt/strings/code_page.hpp>

#include <algorithm>
#include <cctype>
#include <cstddef>

namespace ZOLT_2_18::strings {
namespace {

using std::size_t;
using utf16_base = ustring16::base_type;

// ------------------------------------------------------------------------------------------------
// Case

// Takes and returns a unit's value; the C library's functions are defined up to 0xFF.
using case_function = int (*)(int);

template <typename Text>
void map_case(Text& text, size_t from, size_t to, case_function map) {
    using unit_t = typename Text::value_type;
    for (size_t i = from; i < to; ++i) {
        // NOLINTNEXTLINE(bugprone-signed-char-misuse): to the unsigned type of the same size
        auto const value = static_cast<std::make_unsigned_t<unit_t>>(text[i]);
        if (value <= 0xFF) text[i] = static_cast<unit_t>(map(static_cast<int>(value)));
    }
}

template <typename Text>
Text in_case(Text const& text, case_function map) {
    Text result(text);
    map_case(result, 0, result.size(), map);
    return result;
}

template <typename Text>
Text lower_range(Text const& text, unsigned long from, unsigned long to) {
    Text result(text);
    size_t const end = to == no_index ? result.size() : std::min<size_t>(to, result.size());
    map_case(result, from, end, std::tolower);
    return result;
}

// ------------------------------------------------------------------------------------------------
// Search

template <typename Text>
class searcher {
public:
    // Both must outlive the searcher; the pattern is not empty.
    searcher(Text const& text, Text const& pattern) : m_text(text), m_pattern(pattern) {
        if (pattern.size() > longest_short) find_borders();
    }

    // The first occurrence that starts at `from` or later, else Text::npos.
    size_t find(size_t from) const { return m_borders.empty() ? m_text.find(m_pattern, from) : find_long(from); }

private:
    static constexpr size_t longest_short = 32;

    // m_borders[i]: the length of the longest proper prefix of the pattern that ends pattern[0..i].
    void find_borders() {
        m_borders.resize(m_pattern.size());
        for (size_t i = 1, matched = 0; i < m_pattern.size(); ++i) {
            matched = extend(matched, m_pattern[i]);
            m_borders[i] = matched;
        }
    }

    // How much of the pattern is matched when `unit` follows `matched` matching units.
    size_t extend(size_t matched, typename Text::value_type unit) const {
        while (matched > 0 && m_pattern[matched] != unit) matched = m_borders[matched - 1];
        return m_pattern[matched] == unit ? matched + 1 : 0;
    }

    size_t find_long(size_t from) const {
        size_t matched = 0;
        for (size_t i = from; i < m_text.size(); ++i) {
            if (matched == 0 && (i = m_text.find(m_pattern[0], i)) == Text::npos) break;
            matched = extend(matched, m_text[i]);
            if (matched == m_pattern.size()) return i + 1 - matched;
        }
        return Text::npos;
    }

    Text const& m_text;
    Text const& m_pattern;
    std::vector<size_t> m_borders; // of a long pattern
};

// ------------------------------------------------------------------------------------------------
// Split and replace

// Base is the standard string below Text: the code is made once for each unit.
template <typename Base, typename Text>
std::vector<Text> split(Text const& text, Base const& delimiter, int max_splits) {
    if (delimiter.empty()) return {text};
    std::vector<Text> pieces;
    searcher<Base> const search(text, delimiter);
    int splits = 0;
    size_t position = 0;
    for (size_t found = search.find(0); found != Base::npos; found = search.find(position)) {
        pieces.emplace_back(text, position, found - position);
        position = found + delimiter.size();
        if (max_splits > 0 && ++splits == max_splits) break;
    }
    if (position < text.size()) pieces.emplace_back(text, position, Base::npos);
    return pieces;
}

template <typename Base>
unsigned int replace(Base& text, Base const& pattern, Base const& replacement) {
    if (pattern.empty()) return 0;
    searcher<Base> const search(text, pattern);
    size_t found = search.find(0);
    if (found == Base::npos) return 0;

    Base result;
    result.reserve(text.size());
    unsigned int count = 0;
    size_t position = 0;
    for (; found != Base::npos; found = search.find(position)) {
        result.append(text, position, found - position).append(replacement);
        position = found + pattern.size();
        ++count;
    }
    result.append(text, position, Base::npos);
    text.swap(result);
    return count;
}

} // namespace

ustring8 to_lower(ustring8 const& text) { return in_case(text, std::tolower); }
ustring16 to_lower(ustring16 const& text) { return in_case(text, std::tolower); }
ustring32 to_lower(ustring32 const& text) { return in_case(text, std::tolower); }
ustring8 to_upper(ustring8 const& text) { return in_case(text, std::toupper); }
ustring16 to_upper(ustring16 const& text) { return in_case(text, std::toupper); }
ustring32 to_upper(ustring32 const& text) { return in_case(text, std::toupper); }

ustring8 lower_case(ustring8 const& text, unsigned long from, unsigned long to) {
    return lower_range(text, from, to);
}

ustring16 lower_case(ustring16 const& text, unsigned long from, unsigned long to) {
    return lower_range(text, from, to);
}

ustring32 lower_case(ustring32 const& text, unsigned long from, unsigned long to) {
    return lower_range(text, from, to);
}

std::vector<ustring8> split_string(ustring8 const& text, ustring8 const& delimiter, int max_splits) {
    return split<std::string>(text, delimiter, max_splits);
}

std::vector<ustring16> split_string(ustring16 const& text, ustring16 const& delimiter, int max_splits) {
    return split<utf16_base>(text, delimiter, max_splits);
}

std::vector<ustring32> split_string(ustring32 const& text, ustring32 const& delimiter, int max_splits) {
    return split<std::wstring>(text, delimiter, max_splits);
}

std::vector<std::string> split_string(std::string const& text, std::string const& delimiter, int max_splits) {
    return split<std::string>(text, delimiter, max_splits);
}

std::vector<std::wstring> split_string(std::wstring const& text, std::wstring const& delimiter, int max_splits) {
    return split<std::wstring>(text, delimiter, max_splits);
}

std::vector<ustring8> split_string(ustring8 const& text, char const* delimiter, int max_splits) {
    return split_string(text, ustring8(delimiter), max_splits);
}

unsigned int replace_all(ustring8& text, ustring8 const& pattern, ustring8 const& replacement) {
    return replace<std::string>(text, pattern, replacement);
}

unsigned int replace_all(ustring16& text, ustring16 const& pattern, ustring16 const& replacement) {
    return replace<utf16_base>(text, pattern, replacement);
}

unsigned int replace_all(ustring32& text, ustring32 const& pattern, ustring32 const& replacement) {
    return replace<std::wstring>(text, pattern, replacement);
}

unsigned int replace_all(std::string& text, std::string const& pattern, std::string const& replacement) {
    return replace(text, pattern, replacement);
}

unsigned int replace_all(std::wstring& text, std::wstring const& pattern, std::wstring const& replacement) {
    return replace(text, pattern, replacement);
}

bool begin_with(ustring8 const& text, unsigned int const& position, ustring8 const& prefix) {
    return position <= text.size() && prefix.size() <= text.size() - position &&
           text.compare(position, prefix.size(), prefix) == 0;
}

namespace gh2 {

std::string tolower(std::string const& text) { return in_case(text, std::tolower); }
std::string toupper(std::string const& text) { return in_case(text, std::toupper); }

unsigned int replace_all(std::string& text, std::string const& pattern, std::string const& replacement) {
    return replace(text, pattern, replacement);
}

std::string to_ansi(std::string const& text) { return code_page(code_page::system_1).encode(ustring8(text)); }

ustring8 from_ansi(std::string const& text) { return code_page(code_page::system_1).as_ustring(text); }

} // namespace gh2
} // namespace ZOLT_2_18::strings

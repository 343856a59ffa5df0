// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Splitting, replacing and prefixes, in all widths alike, against the plainest loops.
#include "input.hpp"

#include <zolt/strings/string_utility.hpp>

namespace {

using namespace zolt::strings;
using fuzz::check;

template <typename Text>
std::vector<Text> plain_split(Text text, Text const& delimiter, int most) {
    std::vector<Text> pieces;
    if (delimiter.empty()) return {text};
    for (int splits = 0; !text.empty(); ++splits) {
        auto const end = most > 0 && splits >= most ? Text::npos : text.find(delimiter);
        pieces.push_back(text.substr(0, end));
        text.erase(0, end == Text::npos ? end : end + delimiter.size());
    }
    return pieces;
}

template <typename Text>
unsigned plain_replace(Text& text, Text const& pattern, Text const& replacement) {
    unsigned count = 0;
    if (pattern.empty()) return 0;
    for (auto at = text.find(pattern); at != Text::npos; at = text.find(pattern, at + replacement.size())) {
        text.replace(at, pattern.size(), replacement);
        ++count;
    }
    return count;
}

template <typename Text>
Text widened(ustring8 const& text) {
    Text result;
    for (char const byte : text) { // 0x80 and above go beyond a byte
        unsigned const unit = static_cast<unsigned char>(byte);
        result += static_cast<typename Text::value_type>(unit < 0x80 ? unit : unit * 16);
    }
    return result;
}

template <typename Text>
void check_all(Text const& text, Text const& pattern, Text const& replacement, int most) {
    check(split_string(text, pattern, most) == plain_split(text, pattern, most), "split_string");
    Text replaced = text;
    Text expected = text;
    unsigned const count = replace_all(replaced, pattern, replacement);
    check(count == plain_replace(expected, pattern, replacement) && replaced == expected, "replace_all");
    check(replace_all(replaced, replaced, replaced) == !expected.empty() && replaced == expected,
          "a text for itself");
}

} // namespace

void fuzz::run(input in) {
    int const most = in.number<signed char>();
    ustring8 const pattern = in.text();
    ustring8 const replacement = in.text();
    ustring8 const text = in.rest();
    check_all(text, pattern, replacement, most);
    check_all(widened<ustring16>(text), widened<ustring16>(pattern), widened<ustring16>(replacement), most);
    check_all(widened<ustring32>(text), widened<ustring32>(pattern), widened<ustring32>(replacement), most);
    for (unsigned at = 0; at < text.size() + 2 && at < 100; ++at) {
        bool const expected = at <= text.size() && text.compare(at, pattern.size(), pattern) == 0;
        check(begin_with(text, at, pattern) == expected, "begin_with");
    }
}

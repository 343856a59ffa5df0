// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The tokenizer looks at one byte, and at the next one where two make a mark, to tell what a token is; then
// it finds where the token ends and stores that slice of the text. The token's string is reused, so a pass
// over a file allocates next to nothing.
#include <zolt/config/config_token.hpp>

#include <zolt/config/config_token_private.hpp>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <limits>
#include <string_view>

namespace ZOLT_2_18::config {
namespace {

constexpr std::size_t last_position = std::numeric_limits<unsigned int>::max();

struct printed_kind {
    char const* name;
    bool with_text;
};

// Indexed by config_token::tok_types.
constexpr printed_kind printed_kinds[] = {
    {"T_VAR :", true},       {"T_NUM", false},        {"T_NEWLINE", false},  {"T_TABCHAR", false},
    {"T_UNKNOWN:", true},    {"T_END", false},        {"T_SPACE", false},    {"T_EQ", false},
    {"T_EQEQ", false},       {"T_GT", false},         {"T_GTEQ", false},     {"T_LT", false},
    {"T_LTEQ", false},       {"T_COLON", false},      {"T_COLONEQ", false},  {"T_POUND", false},
    {"T_FSFS", false},       {"T_DOT", false},        {"T_SBRACKET", false}, {"T_EBRACKET", false},
    {"T_PLUS", false},       {"T_MINUS", false},      {"T_PLUSEQ", false},   {"T_MINUSEQ", false},
    {"unknown type", false}, {"unknown type", false}, {"T_TIMES", false},    {"T_DIV", false},
    {"T_TIMESEQ", false},    {"T_DIVEQ", false},      {"T_STRING:", true},   {"T_NON_ALPHA_NUM:", true},
};
static_assert(std::size(printed_kinds) == config_token::T_NON_ALPHA_NUM + 1);

struct pair_mark {
    char first;
    char second;
    config_token::tok_types kind;
};

constexpr pair_mark pair_marks[] = {
    {'=', '=', config_token::T_EQEQ},      {':', '=', config_token::T_COLONEQ},
    {'/', '/', config_token::T_FSFS},      {'\r', '\n', config_token::T_NEWLINE},
    {'>', '=', config_token::T_GTEQ},      {'<', '=', config_token::T_LTEQ},
    {'+', '=', config_token::T_PLUSEQ},    {'-', '=', config_token::T_MINUSEQ},
    {'*', '=', config_token::T_TIMESEQ},   {'/', '=', config_token::T_DIVEQ},
    {'*', '/', config_token::T_STARSLASH},
};

/// The kind of each byte that stands alone.
constexpr auto single_marks = [] {
    std::array<config_token::tok_types, 256> kinds{};
    kinds.fill(config_token::T_NON_ALPHA_NUM);
    kinds['\t'] = config_token::T_TABCHAR;
    kinds['\n'] = config_token::T_NEWLINE;
    kinds['\r'] = config_token::T_UNKNOWN;
    kinds['#'] = config_token::T_POUND;
    kinds['*'] = config_token::T_TIMES;
    kinds['+'] = config_token::T_PLUS;
    kinds['-'] = config_token::T_MINUS;
    kinds['.'] = config_token::T_DOT;
    kinds['/'] = config_token::T_DIV;
    kinds[':'] = config_token::T_COLON;
    kinds['<'] = config_token::T_LT;
    kinds['='] = config_token::T_EQ;
    kinds['>'] = config_token::T_GT;
    kinds['['] = config_token::T_SBRACKET;
    kinds[']'] = config_token::T_EBRACKET;
    return kinds;
}();

unsigned char byte(char c) { return static_cast<unsigned char>(c); }

bool is_blank(char c) { return c == ' '; }
bool is_digit(char c) { return std::isdigit(byte(c)) != 0; }
bool is_letter(char c) { return std::isalpha(byte(c)) != 0; }

/// The position after the run of bytes of one class that starts at `from`.
template <typename Class>
std::size_t run_end(std::string_view text, std::size_t from, Class is_member) {
    while (from < text.size() && is_member(text[from])) ++from;
    return from;
}

/// The position of the quote that closes a string whose content starts at `from`, or the text's end.
std::size_t string_end(std::string_view text, std::size_t from) {
    while (from < text.size() && text[from] != '"') from += text[from] == '\\' ? 2 : 1;
    return std::min(from, text.size());
}

pair_mark const* find_pair(char first, char second) {
    if (second != '=' && second != '/' && second != '\n') return nullptr;
    auto const* const found =
        std::find_if(std::begin(pair_marks), std::end(pair_marks),
                     [&](pair_mark const& mark) { return mark.first == first && mark.second == second; });
    return found != std::end(pair_marks) ? found : nullptr;
}

/// Fills in the mark of one or two bytes at `from` and returns the position after it.
std::size_t read_mark(std::string_view text, std::size_t from, config_token& token) {
    char const first = text[from];
    char const second = from + 1 < text.size() ? text[from + 1] : '\0';
    if (pair_mark const* const pair = find_pair(first, second)) {
        token.kind = pair->kind;
        if (pair->kind == config_token::T_NEWLINE) {
            token.text.assign(1, second);
        } else {
            token.text.assign({first, second});
        }
        return from + 2;
    }
    token.kind = single_marks[byte(first)];
    token.text.assign(1, first);
    return from + 1;
}

/// Fills in the run of one class that starts at `from` and returns the position after it.
template <typename Class>
std::size_t read_run(std::string_view text, std::size_t from, Class is_member, config_token::tok_types kind,
                     config_token& token) {
    std::size_t const end = run_end(text, from, is_member);
    token.kind = kind;
    token.text.assign(text.substr(from, end - from));
    return end;
}

/// Fills in the token at `from`, which is inside the text, and returns the position after it.
std::size_t read_at(std::string_view text, std::size_t from, config_token& token) {
    char const first = text[from];
    if (is_blank(first)) {
        token.kind = config_token::T_SPACE; // its text stays that of the token before
        return run_end(text, from, is_blank);
    }
    if (is_letter(first)) return read_run(text, from, is_letter, config_token::T_VAR, token);
    if (is_digit(first)) return read_run(text, from, is_digit, config_token::T_NUM, token);
    if (first == '"') {
        std::size_t const end = string_end(text, from + 1);
        token.kind = config_token::T_STRING;
        token.text.assign(text.substr(from + 1, end - from - 1));
        return end + 1; // behind the closing quote, or one past an open string's end
    }
    return read_mark(text, from, token);
}

} // namespace

strings::ustring8 config_token::CvtTokStr() const {
    if (kind >= std::size(printed_kinds)) return "unknown type";
    printed_kind const& printed = printed_kinds[kind];
    strings::ustring8 result(printed.name);
    if (printed.with_text) result.append("[").append(text).append("]");
    return result;
}

bool isConfigWhite(char c) { return c == '\t' || c == '\n' || c == '\r' || c == ' '; }
bool isConfigSpace(char c) { return is_blank(c); }
bool isConfigAlpha(char c) { return is_letter(c); }
bool isConfigDigit(char c) { return is_digit(c); }

bool isConfigDelim(char c) {
    // The search finds the set's terminating zero, too; callers count on that at the end of a C string.
    return c == '\r' || std::strchr(" +-*^/%=;(),<>~&|{}\n\t[]?$", c) != nullptr;
}

bool isConfigDotSlash(char c) { return c == '.' || c == '\\' || c == '/'; }

strings::ustring8 quote_value(strings::ustring8 const& value) {
    if (value.find_first_of(" \r\t\n") == strings::ustring8::npos) return value;
    strings::ustring8 quoted;
    quoted.reserve(value.size() + 2);
    quoted.append(1, '"').append(value).append(1, '"');
    return quoted;
}

namespace _private {

unsigned int read_token(strings::ustring8 const& text, unsigned int& position, config_token& token) {
    // What positions cannot reach does not exist.
    std::string_view const reachable(text.data(), std::min<std::size_t>(text.size(), last_position));
    std::size_t const start = position;
    if (start >= reachable.size()) {
        token.kind = config_token::T_END;
        return token.kind;
    }
    std::size_t const end = std::min(read_at(reachable, start, token), last_position);
    token.start = static_cast<unsigned int>(start);
    token.end = static_cast<unsigned int>(end);
    position = token.end;
    return token.kind == config_token::T_STARSLASH ? config_token::T_FSFS : token.kind;
}

} // namespace _private
} // namespace ZOLT_2_18::config

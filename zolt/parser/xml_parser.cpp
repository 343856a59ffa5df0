// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// One pass by hand over the bytes. Everything that a parse knows lives in a scanner on the stack of
// parse(), so a parse may be left by an exception, or started again from a callback, at any point.
// Open elements and attribute names are ranges of the input; only what is reported is copied, into
// two strings that are used over and over. A fault is thrown as a parse_error and caught in do_parse.
#include <zolt/parser/xml_parser.hpp>

#include <zolt/generic/convert/str_to_x.hpp>
#include <zolt/strings/unicode.hpp>
#include <zolt/types/radix.hpp>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <memory>
#include <set>
#include <string_view>
#include <vector>

namespace ZOLT_2_18::parser {
namespace {

using parse_error = xml_parser::parse_error;

//--------------------------------------------------------------------------------------------------
// Character classes

enum char_class : unsigned char {
    letter = 1,
    digit = 2,
    hex_digit = 4,
    name_part = 8, // letter, digit or "_"
    white_space = 16,
    text_end = 32 // ends a run of plain text: whitespace or one of "<", ">", "&"
};

constexpr std::array<unsigned char, 256> make_classes() {
    std::array<unsigned char, 256> classes{};
    auto const mark = [&classes](std::string_view characters, int bits) {
        for (char const c : characters) {
            unsigned char& entry = classes[static_cast<unsigned char>(c)];
            entry = static_cast<unsigned char>(entry | bits);
        }
    };
    mark("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz", letter | name_part);
    mark("0123456789", digit | hex_digit | name_part);
    mark("ABCDEFabcdef", hex_digit);
    mark("_", name_part);
    mark(" \t\r\n", white_space | text_end);
    mark("<>&", text_end);
    return classes;
}

constexpr auto classes = make_classes();

bool is(char c, char_class wanted) noexcept { return classes[static_cast<unsigned char>(c)] & wanted; }

bool is_white_space(char c) noexcept { return is(c, white_space); }

// The table answers for ASCII, the locale in force for the bytes above it.
bool is_name_start(char c) noexcept {
    auto const byte = static_cast<unsigned char>(c);
    return byte < 0x80 ? is(c, letter) : std::isalpha(byte) != 0;
}

bool is_name_part(char c) noexcept {
    auto const byte = static_cast<unsigned char>(c);
    return byte < 0x80 ? is(c, name_part) : std::isalnum(byte) != 0;
}

struct entity {
    std::string_view name;
    char value;
};

constexpr entity entities[] = {{"amp;", '&'}, {"apos;", '\''}, {"gt;", '>'},
                               {"lt;", '<'},  {"quot;", '"'},  {"nbsp;", ' '}};
constexpr std::string_view entity_initials = "aglnq";

//--------------------------------------------------------------------------------------------------

// The attribute names of one element: the first few in a row, which is all that an ordinary element
// has, the rest in a tree.
class name_set {
public:
    void clear() noexcept {
        m_few.clear();
        m_many.clear();
    }

    // False when the name is there already.
    bool insert(std::string_view name) {
        if (std::find(m_few.begin(), m_few.end(), name) != m_few.end()) return false;
        if (m_few.size() == few) return m_many.insert(name).second;
        m_few.push_back(name);
        return true;
    }

private:
    static constexpr std::size_t few = 16;

    std::vector<std::string_view> m_few;
    std::set<std::string_view> m_many;
};

//--------------------------------------------------------------------------------------------------

class scanner {
public:
    scanner(xml_parser const& callbacks, char const* first, char const* last) noexcept
        : m_callbacks(callbacks), m_first(first), m_last(last) {}

    parse_error do_parse();

private:
    void skip_mark() noexcept;
    void parse_header();
    void parse_markup();
    void parse_comment();
    void parse_start_tag();
    void parse_end_tag();
    void parse_inside_tag();
    void parse_attribute();
    void parse_attrib_value(std::string_view attribute);
    void parse_text();
    std::string_view parse_whitespace() noexcept;
    std::string_view parse_name() noexcept;
    char parse_character();
    char parse_number();
    void close_element();

    std::string_view rest() const noexcept { return {m_first, static_cast<std::size_t>(m_last - m_first)}; }
    std::string_view from(char const* start) const noexcept {
        return {start, static_cast<std::size_t>(m_first - start)};
    }
    bool skip(std::string_view expected) noexcept;
    void expect_more() const;
    [[noreturn]] void fail(parse_error::error_type kind, std::string_view text = {}) const;
    [[noreturn]] void fail_here() const;

    template <typename Callback>
    void report(Callback const& callback, std::string_view text) {
        m_text.assign(text);
        callback.invoke(m_text);
    }

    xml_parser const& m_callbacks;
    char const* m_first; // the next byte to read
    char const* const m_last;
    bool m_inside_tag = false;
    bool m_root_closed = false;
    unsigned long m_line = 0;
    std::vector<std::string_view> m_open_elements;
    name_set m_attribute_names;
    strings::ustring8 m_name; // the texts that the callbacks are given
    strings::ustring8 m_text;
};

parse_error scanner::do_parse() {
    try {
        skip_mark();
        parse_header();
        while (m_first != m_last) {
            if (m_inside_tag) {
                parse_inside_tag();
            } else if (*m_first == '<') {
                parse_markup();
            } else if (is_white_space(*m_first)) {
                report(m_callbacks.on_space, parse_whitespace());
            } else {
                parse_text();
            }
        }
        if (!m_open_elements.empty()) fail(parse_error::unexpected_end);
    } catch (parse_error const& fault) {
        return fault;
    }
    return parse_error(parse_error::no_error, 0, strings::ustring8());
}

// A byte order mark is passed over by what follows it, not by its own bytes.
void scanner::skip_mark() noexcept {
    if (m_last - m_first >= 4 && m_first[3] == '<') m_first += 3;
}

void scanner::parse_header() {
    if (!skip("<?xml")) fail(parse_error::header_missing);
    for (; m_first != m_last; ++m_first) {
        if (*m_first == '<' || *m_first == '>') fail(parse_error::header_missing);
        if (skip("?>")) return;
    }
    fail(parse_error::no_root_element);
}

// At a "<" outside a tag.
void scanner::parse_markup() {
    ++m_first;
    expect_more();
    if (*m_first == '/') {
        parse_end_tag();
    } else if (is_name_start(*m_first)) {
        parse_start_tag();
    } else if (skip("!--")) {
        parse_comment();
    } else if (std::string_view("!--").substr(0, rest().size()) == rest()) {
        fail(parse_error::unexpected_end);
    } else {
        fail(parse_error::unexpected_character, "<");
    }
}

void scanner::parse_comment() {
    std::size_t const length = rest().find("-->");
    if (length == std::string_view::npos) fail(parse_error::unexpected_end);
    std::string_view const comment = rest().substr(0, length);
    m_first += length + 3;
    report(m_callbacks.on_comment, comment);
}

void scanner::parse_start_tag() {
    if (m_root_closed) fail(parse_error::data_after_root);
    m_open_elements.push_back(parse_name());
    m_attribute_names.clear();
    m_inside_tag = true;
    report(m_callbacks.on_element_start, m_open_elements.back());
}

// At the "/" of "</". What is no name closes nothing, like a wrong name.
void scanner::parse_end_tag() {
    ++m_first;
    expect_more();
    std::string_view const name = parse_name();
    if (m_open_elements.empty() || m_open_elements.back() != name) fail(parse_error::mismatched_end, name);
    parse_whitespace();
    expect_more();
    if (*m_first != '>') fail_here();
    ++m_first;
    close_element();
}

void scanner::parse_inside_tag() {
    if (is_white_space(*m_first)) {
        parse_whitespace();
    } else if (*m_first == '>') {
        ++m_first;
        m_inside_tag = false;
    } else if (*m_first == '/') {
        ++m_first;
        expect_more();
        if (*m_first != '>') fail(parse_error::unexpected_character, "/");
        ++m_first;
        m_inside_tag = false;
        close_element();
    } else {
        parse_attribute();
    }
}

void scanner::parse_attribute() {
    if (!is_name_start(*m_first)) fail_here();
    std::string_view const name = parse_name();
    parse_whitespace();
    expect_more();
    if (*m_first != '=') fail(parse_error::missing_equal_sign, name);
    ++m_first;
    if (!m_attribute_names.insert(name)) fail(parse_error::attribute_redefined, name);
    parse_whitespace();
    parse_attrib_value(name);
    m_name.assign(name);
    m_callbacks.on_attribute.invoke(m_name, m_text);
}

// Leaves the decoded value in m_text. Whatever is not the closing quote or a reference is data.
void scanner::parse_attrib_value(std::string_view attribute) {
    expect_more();
    char const quote = *m_first;
    if (quote != '"' && quote != '\'') fail(parse_error::missing_quote, attribute);
    ++m_first;
    m_text.clear();
    for (;;) {
        char const* const start = m_first;
        m_first = std::find_if(start, m_last, [quote](char c) { return c == quote || c == '&'; });
        m_text.append(from(start));
        expect_more();
        if (*m_first == quote) break;
        m_text += parse_character();
    }
    ++m_first;
}

void scanner::parse_text() {
    m_text.clear();
    while (m_first != m_last) {
        char const* const start = m_first;
        m_first = std::find_if(start, m_last, [](char c) { return is(c, text_end); });
        m_text.append(from(start));
        if (m_first == m_last || *m_first != '&') break;
        m_text += parse_character();
    }
    if (m_first != m_last && *m_first == '>') fail_here();
    m_callbacks.on_character.invoke(m_text);
}

std::string_view scanner::parse_whitespace() noexcept {
    char const* const start = m_first;
    for (; m_first != m_last && is_white_space(*m_first); ++m_first) m_line += *m_first == '\n';
    return from(start);
}

// Empty when there is no letter at the front.
std::string_view scanner::parse_name() noexcept {
    char const* const start = m_first;
    if (m_first != m_last && is_name_start(*m_first)) m_first = std::find_if_not(start, m_last, is_name_part);
    return from(start);
}

// At the "&" of a reference.
char scanner::parse_character() {
    ++m_first;
    expect_more();
    if (*m_first == '#') return parse_number();
    if (entity_initials.find(*m_first) == std::string_view::npos) fail(parse_error::unknown_entity);
    for (entity const& known : entities) {
        if (skip(known.name)) return known.value;
        if (known.name.substr(0, rest().size()) == rest()) fail(parse_error::unexpected_end);
    }
    fail(parse_error::unexpected_character, "&");
}

// At the "#" of a reference.
char scanner::parse_number() {
    ++m_first;
    bool const hexadecimal = skip("x");
    char const* const start = m_first;
    char_class const digits = hexadecimal ? hex_digit : digit;
    m_first = std::find_if_not(start, m_last, [digits](char c) { return is(c, digits); });
    std::string_view const number = from(start);
    expect_more();
    if (number.empty() || *m_first != ';') fail(parse_error::unexpected_character, "&");
    ++m_first;
    return static_cast<char>(
        generic::convert::str_to_uint8(number.data(), static_cast<unsigned long>(number.size()),
                                       hexadecimal ? types::radix_t::hexadecimal : types::radix_t::automatic));
}

void scanner::close_element() {
    report(m_callbacks.on_element_end, m_open_elements.back());
    m_open_elements.pop_back();
    m_root_closed = m_open_elements.empty();
}

bool scanner::skip(std::string_view expected) noexcept {
    if (rest().substr(0, expected.size()) != expected) return false;
    m_first += expected.size();
    return true;
}

void scanner::expect_more() const {
    if (m_first == m_last) fail(parse_error::unexpected_end);
}

void scanner::fail(parse_error::error_type kind, std::string_view text) const {
    throw parse_error(kind, m_line, strings::ustring8(text.data(), text.size()));
}

void scanner::fail_here() const {
    auto const size = static_cast<unsigned int>(std::min<std::size_t>(rest().size(), 4));
    bool const whole = strings::gh2::validate_utf8(m_first, size);
    fail(parse_error::unexpected_character,
         rest().substr(0, whole ? strings::gh2::get_utf8_length(m_first, size) : 1));
}

} // namespace

xml_parser::parse_error xml_parser::parse(strings::ustring8 const& text) { return parse(text.begin(), text.end()); }

xml_parser::parse_error xml_parser::parse(const_iterator first, const_iterator last) {
    return scanner(*this, std::to_address(first), std::to_address(last)).do_parse();
}

} // namespace ZOLT_2_18::parser

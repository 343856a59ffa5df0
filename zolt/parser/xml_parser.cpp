// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// One pass by hand over the bytes. Everything that a parse knows lives in a scanner on the stack of
// parse(), so a parse may be left by an exception, or started again from a callback, at any point.
// Each step takes the place that it begins at and returns the place behind what it read, which thus
// stays in a register. Open elements and attribute names are ranges of the input; only what is reported
// is copied, into strings that are used over and over. A fault is thrown as a parse_error and caught in
// do_parse; lines are counted then, and not before.
#include <zolt/parser/xml_parser.hpp>

#include <zolt/functor/held_target_private.hpp>
#include <zolt/generic/convert/str_to_x.hpp>
#include <zolt/parser/xml_scan_private.hpp>
#include <zolt/strings/text_builder_private.hpp>
#include <zolt/strings/unicode.hpp>
#include <zolt/types/radix.hpp>

#include <algorithm>
#include <array>
#include <bit>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace ZOLT_2_18::parser {

namespace _private {

// `from` is behind the current block, or the run goes on to the end of it.
char const* run_finder::find_beyond(char const* from, std::uint64_t run_ends::*kind) noexcept {
    from = std::max(from, m_block + 64);
    for (;;) {
        look_at(from);
        if (std::uint64_t const found = m_ends.*kind) return from + std::countr_zero(found);
        from += 64;
    }
}

// Behind the end of the text stands what ends a run of any kind, so that nobody looks farther.
void run_finder::look_at(char const* block) noexcept {
    m_block = block;
    auto const left = static_cast<std::size_t>(m_last - block);
    if (left >= 64) [[likely]]
        return m_find_run_ends(block, m_ends);
    char padded[64];
    std::memset(padded, '&', sizeof padded);
    if (left) std::memcpy(padded, block, left);
    m_find_run_ends(padded, m_ends);
}

} // namespace _private

namespace {

using _private::is;
using _private::run_ends;
using strings::ustring8;
using parse_error = xml_parser::parse_error;
using place = char const*;

//--------------------------------------------------------------------------------------------------

bool is_white_space(char c) noexcept { return is(c, _private::white_space); }

// The table answers for ASCII, the locale in force for the bytes above it.
bool is_name_start(char c) noexcept {
    auto const byte = static_cast<unsigned char>(c);
    return byte < 0x80 ? is(c, _private::letter) : std::isalpha(byte) != 0;
}

bool is_name_part(char c) noexcept {
    auto const byte = static_cast<unsigned char>(c);
    return byte < 0x80 ? is(c, _private::name_part) : std::isalnum(byte) != 0;
}

struct entity {
    std::string_view name;
    char value;
};

constexpr entity entities[] = {{"&amp;", '&'}, {"&apos;", '\''}, {"&gt;", '>'},
                               {"&lt;", '<'},  {"&quot;", '"'},  {"&nbsp;", ' '}};
constexpr std::string_view entity_initials = "aglnq";

// The same to be compared at once, as the first of 8 bytes.
struct entity_word {
    std::uint64_t bytes = ~std::uint64_t{};
    std::uint64_t mask = 0; // which of the 8 bytes count
    unsigned char size = 0;
    char value = 0;
};

// By the five low bits of the initial, which tell them apart; &apos; is the one left out.
constexpr std::array<entity_word, 32> make_entity_words() {
    std::array<entity_word, 32> words{};
    for (entity const& known : entities) {
        entity_word& word = words[known.name[1] & 31];
        if (word.size) continue;
        std::array<unsigned char, 8> bytes{}, mask{};
        for (std::size_t i = 0; i < known.name.size(); ++i) {
            bytes[i] = static_cast<unsigned char>(known.name[i]);
            mask[i] = 0xFF;
        }
        word = {std::bit_cast<std::uint64_t>(bytes), std::bit_cast<std::uint64_t>(mask),
                static_cast<unsigned char>(known.name.size()), known.value};
    }
    return words;
}

constexpr auto entity_words = make_entity_words();

//--------------------------------------------------------------------------------------------------

// Most texts are a few bytes long, so that a call would take longer than what it does. A short text is
// compared by its first and its last bytes, which overlap unless there are twice as many.
bool same_bytes(char const* left, char const* right, std::size_t size) noexcept {
    auto const differ = [left, right]<typename Word>(Word, std::size_t at) {
        Word one, other;
        std::memcpy(&one, left + at, sizeof one);
        std::memcpy(&other, right + at, sizeof other);
        return one ^ other;
    };
    if (size > 16) return std::memcmp(left, right, size) == 0;
    if (size >= 8) return !(differ(std::uint64_t(), 0) | differ(std::uint64_t(), size - 8));
    if (size >= 4) return !(differ(std::uint32_t(), 0) | differ(std::uint32_t(), size - 4));
    while (size && left[size - 1] == right[size - 1]) --size;
    return !size;
}

// The attribute names of one element: the first few in a row, which is all that an ordinary element
// has, the rest in a tree.
class name_set {
public:
    void clear() noexcept {
        m_size = 0;
        if (!m_many.empty()) m_many.clear();
    }

    // False when the name is there already.
    bool insert(std::string_view name) {
        for (std::size_t i = 0; i < m_size; ++i) {
            if (m_few[i].size() == name.size() && same_bytes(m_few[i].data(), name.data(), name.size()))
                return false;
        }
        if (m_size == m_few.size()) return insert_into_many(name);
        m_few[m_size++] = name;
        return true;
    }

private:
    [[gnu::noinline]] bool insert_into_many(std::string_view name) { return m_many.insert(name).second; }

    std::array<std::string_view, 16> m_few;
    std::size_t m_size = 0;
    std::set<std::string_view> m_many;
};

//--------------------------------------------------------------------------------------------------

// Turns a range of the input into the string that a callback is given. There is one string for each
// small length, so that nothing but its bytes changes: most texts are a few bytes long, and a call to
// assign would take longer than all the rest of an event. Where 16 bytes can be read they are copied,
// whatever the length, which is then nothing to guess: a short string has that much room in itself.
class text_holder {
public:
    // The bytes up to `readable_end` can be read.
    [[gnu::always_inline]] ustring8 const& hold(std::string_view text, char const* readable_end) {
        if (text.size() >= m_short.size()) return hold_long(text);
        ustring8& held = m_short[text.size()];
        if (held.size() != text.size()) [[unlikely]]
            return first_of_length(held, text);
        if (readable_end - text.data() < 16) [[unlikely]]
            return hold_last(held, text);
        char* const to = held.data();
        std::memcpy(to, text.data(), 16);
        to[text.size()] = '\0';
        return held;
    }

private:
    [[gnu::noinline]] static ustring8 const& first_of_length(ustring8& held, std::string_view text) {
        held.reserve(15); // room for 16 bytes with the NUL
        held.assign(text);
        return held;
    }

    // Near the end of the input.
    [[gnu::noinline]] static ustring8 const& hold_last(ustring8& held, std::string_view text) {
        std::memcpy(held.data(), text.data(), text.size());
        return held;
    }

    [[gnu::noinline]] ustring8 const& hold_long(std::string_view text) {
        m_long.assign(text);
        return m_long;
    }

    std::array<ustring8, 16> m_short;
    ustring8 m_long;
};

//--------------------------------------------------------------------------------------------------

class scanner {
    using callback = functor::_private::held_target<void(ustring8 const&)>;

public:
    scanner(xml_parser& parser, place first, place last)
        : m_on_element_start(parser.on_element_start),
          m_on_element_end(parser.on_element_end),
          m_on_attribute(parser.on_attribute),
          m_on_space(parser.on_space),
          m_on_character(parser.on_character),
          m_on_comment(parser.on_comment),
          m_first(first),
          m_last(last),
          m_body(last),
          m_runs(first, last) {
        m_open_elements.reserve(16);
    }

    parse_error do_parse();

private:
    place parse_header(place at) const;
    void parse_body(place at);
    place parse_markup(place at);
    place parse_comment(place at);
    place parse_start_tag(place at);
    place parse_end_tag(place at);
    bool closes_innermost(place at) const noexcept;
    place parse_attribute(place at);
    place decode_attrib_value(place start, place at, char quote);
    place parse_space(place at);
    place parse_text(place at);
    place decode_text(place start, place at);
    [[gnu::always_inline]] place parse_character(place at, char& decoded) const;
    place parse_rare_character(place at, char& decoded) const;
    place parse_number(place at, char& decoded) const;
    [[gnu::always_inline]] place skip_whitespace(place at) noexcept {
        if (at == m_last || !is_white_space(*at)) return at;
        return m_runs.find<&run_ends::white_space>(at + 1);
    }
    // At the first letter of a name.
    [[gnu::always_inline]] place skip_name(place at) noexcept {
        at = m_runs.find<&run_ends::name>(at + 1);
        return at == m_last || static_cast<unsigned char>(*at) < 0x80 ? at : skip_foreign_name(at);
    }
    place skip_foreign_name(place at) noexcept;
    void close_element();

    std::string_view rest(place at) const noexcept { return between(at, m_last); }
    static std::string_view between(place first, place last) noexcept {
        return {first, static_cast<std::size_t>(last - first)};
    }
    void expect_more(place at) const {
        if (at == m_last) [[unlikely]]
            fail(at, parse_error::unexpected_end);
    }
    [[noreturn]] void fail(place at, parse_error::error_type kind, std::string_view text = {}) const;
    [[noreturn]] void fail_here(place at) const;

    // Of the input.
    [[gnu::always_inline]] void report(callback& slot, std::string_view text) {
        if (auto* const target = slot.get()) target->invoke(m_texts.hold(text, m_last));
    }

    callback m_on_element_start;
    callback m_on_element_end;
    functor::_private::held_target<void(ustring8 const&, ustring8 const&)> m_on_attribute;
    callback m_on_space;
    callback m_on_character;
    callback m_on_comment;
    place const m_first;
    place const m_last;
    place m_body;                      // where the lines are counted from: behind the header, until then nowhere
    std::size_t m_uncounted_lines = 0; // those in comments and attribute values
    bool m_root_closed = false;
    std::vector<std::string_view> m_open_elements;
    name_set m_attribute_names;
    _private::run_finder m_runs;
    text_holder m_texts;
    text_holder m_names; // of attributes, which are reported together with a text
    strings::_private::text_builder m_decoded; // a text with references
    ustring8 const m_blank = " "; // what most runs of whitespace are
};

parse_error scanner::do_parse() {
    try {
        // A byte order mark is passed over by what follows it, not by its own bytes.
        bool const marked = m_last - m_first >= 4 && m_first[3] == '<';
        m_body = parse_header(marked ? m_first + 3 : m_first);
        parse_body(m_body);
    } catch (parse_error const& fault) {
        return fault;
    }
    return parse_error(parse_error::no_error, 0, ustring8());
}

place scanner::parse_header(place at) const {
    if (!rest(at).starts_with("<?xml")) fail(at, parse_error::header_missing);
    for (at += 5; at != m_last; ++at) {
        if (*at == '<' || *at == '>') fail(at, parse_error::header_missing);
        if (rest(at).starts_with("?>")) return at + 2;
    }
    fail(at, parse_error::no_root_element);
}

void scanner::parse_body(place at) {
    while (at != m_last) {
        if (*at == '<') {
            at = parse_markup(at);
        } else if (is_white_space(*at)) {
            at = parse_space(at);
        } else {
            at = parse_text(at);
        }
    }
    if (!m_open_elements.empty()) fail(at, parse_error::unexpected_end);
}

// At a "<" outside a tag.
place scanner::parse_markup(place at) {
    ++at;
    expect_more(at);
    if (*at == '/') return parse_end_tag(at);
    if (is_name_start(*at)) return parse_start_tag(at);
    std::string_view const mark = "!--";
    if (rest(at).starts_with(mark)) return parse_comment(at + mark.size());
    if (mark.starts_with(rest(at))) fail(at, parse_error::unexpected_end);
    fail(at, parse_error::unexpected_character, "<");
}

place scanner::parse_comment(place at) {
    std::size_t const length = rest(at).find("-->");
    if (length == std::string_view::npos) fail(at, parse_error::unexpected_end);
    m_uncounted_lines += static_cast<std::size_t>(std::count(at, at + length, '\n'));
    report(m_on_comment, between(at, at + length));
    return at + length + 3;
}

// At the name. Goes on to the end of the tag.
place scanner::parse_start_tag(place at) {
    if (m_root_closed) fail(at, parse_error::data_after_root);
    place const name = at;
    at = skip_name(at);
    m_open_elements.push_back(between(name, at));
    m_attribute_names.clear();
    report(m_on_element_start, between(name, at));
    for (;;) {
        expect_more(at);
        if (*at == '>') return at + 1;
        if (*at == '/') break;
        at = is_white_space(*at) ? skip_whitespace(at + 1) : parse_attribute(at);
    }
    ++at;
    expect_more(at);
    if (*at != '>') fail(at, parse_error::unexpected_character, "/");
    close_element();
    return at + 1;
}

// At the "/" of "</". What is no name closes nothing, like a wrong name.
place scanner::parse_end_tag(place at) {
    ++at;
    expect_more(at);
    if (closes_innermost(at)) {
        at += m_open_elements.back().size() + 1;
        close_element();
        return at;
    }
    place const start = at;
    if (is_name_start(*at)) at = skip_name(at);
    std::string_view const name = between(start, at);
    if (m_open_elements.empty() || m_open_elements.back() != name) fail(at, parse_error::mismatched_end, name);
    at = skip_whitespace(at);
    expect_more(at);
    if (*at != '>') fail_here(at);
    close_element();
    return at + 1;
}

// The usual end tag: the right name and nothing behind it.
bool scanner::closes_innermost(place at) const noexcept {
    if (m_open_elements.empty()) return false;
    std::string_view const name = m_open_elements.back();
    return rest(at).size() > name.size() && at[name.size()] == '>' && same_bytes(at, name.data(), name.size());
}

place scanner::parse_attribute(place at) {
    if (!is_name_start(*at)) fail_here(at);
    place const start = at;
    at = skip_name(at);
    std::string_view const name = between(start, at);
    expect_more(at);
    if (*at != '=') at = skip_whitespace(at);
    expect_more(at);
    if (*at != '=') fail(at, parse_error::missing_equal_sign, name);
    if (!m_attribute_names.insert(name)) fail(at, parse_error::attribute_redefined, name);
    at = skip_whitespace(at + 1);
    expect_more(at);
    char const quote = *at;
    if (quote != '"' && quote != '\'') fail(at, parse_error::missing_quote, name);
    ++at;
    place const end = m_runs.find<&run_ends::value>(at);
    if (end != m_last && *end == quote) {
        if (auto* const target = m_on_attribute.get())
            target->invoke(m_names.hold(name, m_last), m_texts.hold(between(at, end), m_last));
        return end + 1;
    }
    at = decode_attrib_value(at, end, quote);
    if (auto* const target = m_on_attribute.get())
        target->invoke(m_names.hold(name, m_last), m_texts.hold(m_decoded.view(), m_decoded.readable_end()));
    return at;
}

// A value that goes on at `at` with something else than its closing quote. Whatever is neither that nor
// a reference is data.
place scanner::decode_attrib_value(place start, place at, char quote) {
    m_decoded.clear();
    for (;;) {
        m_decoded.add(between(start, at));
        expect_more(at);
        if (*at == quote) return at + 1;
        start = at;
        if (*at == '&') {
            char decoded;
            start = at = parse_character(at, decoded);
            m_decoded.add(decoded);
        } else {
            m_uncounted_lines += *at++ == '\n';
        }
        at = m_runs.find<&run_ends::value>(at);
    }
}

place scanner::parse_space(place at) {
    place const end = skip_whitespace(at + 1); // one blank, mostly
    if (end - at == 1 && *at == ' ') {
        if (auto* const target = m_on_space.get()) target->invoke(m_blank);
    } else {
        report(m_on_space, between(at, end));
    }
    return end;
}

place scanner::parse_text(place at) {
    place const end = m_runs.find<&run_ends::text>(at);
    if (end != m_last && (*end == '&' || *end == '>')) return decode_text(at, end);
    report(m_on_character, between(at, end));
    return end;
}

// A text with a reference or a fault at `at`.
place scanner::decode_text(place start, place at) {
    m_decoded.clear();
    m_decoded.add(between(start, at));
    while (at != m_last && *at == '&') {
        char decoded;
        start = parse_character(at, decoded);
        m_decoded.add(decoded);
        at = m_runs.find<&run_ends::text>(start);
        m_decoded.add(between(start, at));
    }
    if (at != m_last && *at == '>') fail_here(at);
    if (auto* const target = m_on_character.get())
        target->invoke(m_texts.hold(m_decoded.view(), m_decoded.readable_end()));
    return at;
}

// At the "&" of a reference.
inline place scanner::parse_character(place at, char& decoded) const {
    if (m_last - at >= 8) [[likely]] {
        std::uint64_t next;
        std::memcpy(&next, at, sizeof next);
        entity_word const& usual = entity_words[at[1] & 31];
        if ((next & usual.mask) == usual.bytes) {
            decoded = usual.value;
            return at + usual.size;
        }
    }
    return parse_rare_character(at, decoded);
}

// Any reference, and what is none.
place scanner::parse_rare_character(place at, char& decoded) const {
    expect_more(at + 1);
    if (at[1] == '#') return parse_number(at + 1, decoded);
    for (entity const& known : entities) {
        if (known.name[1] != at[1]) continue;
        decoded = known.value;
        std::size_t const size = known.name.size();
        if (rest(at).size() >= size && same_bytes(at, known.name.data(), size)) return at + size;
        if (known.name.starts_with(rest(at))) fail(at, parse_error::unexpected_end);
    }
    if (entity_initials.find(at[1]) == std::string_view::npos) fail(at, parse_error::unknown_entity);
    fail(at, parse_error::unexpected_character, "&");
}

// At the "#" of a reference.
place scanner::parse_number(place at, char& decoded) const {
    ++at;
    bool const hexadecimal = rest(at).starts_with('x');
    if (hexadecimal) ++at;
    auto const digits = hexadecimal ? _private::hex_digit : _private::digit;
    place const end = std::find_if_not(at, m_last, [digits](char c) { return is(c, digits); });
    expect_more(end);
    if (end == at || *end != ';') fail(at, parse_error::unexpected_character, "&");
    decoded = static_cast<char>(
        generic::convert::str_to_uint8(at, static_cast<unsigned long>(end - at),
                                       hexadecimal ? types::radix_t::hexadecimal : types::radix_t::automatic));
    return end + 1;
}

// A name with bytes above ASCII, at the first of them.
[[gnu::noinline]] place scanner::skip_foreign_name(place at) noexcept {
    while (at != m_last && is_name_part(*at)) at = m_runs.find<&run_ends::name>(at + 1);
    return at;
}

void scanner::close_element() {
    report(m_on_element_end, m_open_elements.back());
    m_open_elements.pop_back();
    m_root_closed = m_open_elements.empty();
}

void scanner::fail(place at, parse_error::error_type kind, std::string_view text) const {
    auto const lines = static_cast<std::size_t>(std::count(m_body, std::max(m_body, at), '\n'));
    throw parse_error(kind, static_cast<unsigned long>(lines - m_uncounted_lines), ustring8(text));
}

void scanner::fail_here(place at) const {
    auto const size = static_cast<unsigned int>(std::min<std::size_t>(rest(at).size(), 4));
    bool const whole = strings::gh2::validate_utf8(at, size);
    fail(at, parse_error::unexpected_character,
         rest(at).substr(0, whole ? strings::gh2::get_utf8_length(at, size) : 1));
}

} // namespace

xml_parser::parse_error xml_parser::parse(strings::ustring8 const& text) { return parse(text.begin(), text.end()); }

xml_parser::parse_error xml_parser::parse(const_iterator first, const_iterator last) {
    return scanner(*this, std::to_address(first), std::to_address(last)).do_parse();
}

} // namespace ZOLT_2_18::parser

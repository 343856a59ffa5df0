// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A reader by hand with one function for each element. What it does not expect makes the file unusual and is
// stepped over; what is no XML at all ends the pass.
#include "catalog_scan.hpp"

#include "tools/program/rules.hpp"

#include <zolt/generic/convert/str_to_x.hpp>

#include <algorithm>
#include <utility>

namespace tools {
namespace {

constexpr std::string_view blanks = " \t\r\n";
constexpr std::string_view decimal_digits = "0123456789";
constexpr std::string_view hexadecimal_digits = "0123456789abcdefABCDEF";

bool is_blank(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; }
bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool is_name_part(char c) { return is_letter(c) || (c >= '0' && c <= '9') || c == '_'; }

struct reference {
    std::string_view text;
    char value;
};

constexpr reference known_references[] = {{"&amp;", '&'}, {"&apos;", '\''}, {"&gt;", '>'},
                                          {"&lt;", '<'},  {"&quot;", '"'},  {"&nbsp;", ' '}};

// The reference at the start of a text; one of no length when there is none that is known.
reference read_reference(std::string_view text) {
    for (reference const& known : known_references) {
        if (text.substr(0, known.text.size()) == known.text) return known;
    }
    if (text.substr(0, 2) != "&#") return {};
    bool const is_hexadecimal = text.substr(2, 1) == "x";
    std::size_t const start = is_hexadecimal ? 3 : 2;
    std::size_t const end = text.find_first_not_of(is_hexadecimal ? hexadecimal_digits : decimal_digits, start);
    if (end == std::string_view::npos || end == start || text[end] != ';') return {};
    using zolt::types::radix_t;
    unsigned char const value = zolt::generic::convert::str_to_uint8(
        text.data() + start, static_cast<unsigned long>(end - start),
        is_hexadecimal ? radix_t::hexadecimal : radix_t::automatic); // as the library's parser does
    return {text.substr(0, end + 1), static_cast<char>(value)};
}

class scanner {
public:
    scanner(std::string_view text, std::deque<std::string>& values, catalog_visitor& visitor)
        : m_text(text), m_values(values), m_visitor(visitor) {}

    scan_result scan() {
        if (!read_header()) return scan_result::not_well_formed;
        while (m_result != scan_result::not_well_formed && find_markup()) read_markup();
        if (!m_open.empty()) fail();
        if (!m_has_root || !m_has_elements) be_unusual();
        return m_result;
    }

    // The text is a message of a file that is well-formed.
    void scan_message() {
        m_open = {"xmc", "catalog"};
        read_markup();
    }

private:
    enum class tag { start, empty, end, comment, none };

    std::string_view rest() const { return m_text.substr(m_at); }
    bool is_at(std::string_view mark) const { return m_text.compare(m_at, mark.size(), mark) == 0; }
    void be_unusual() { m_result = std::max(m_result, scan_result::unusual); }
    tag fail() {
        m_result = scan_result::not_well_formed;
        return tag::none;
    }
    void skip_blanks() {
        while (m_at < m_text.size() && is_blank(m_text[m_at])) ++m_at;
    }

    bool read_header() {
        if (m_text.substr(0, 3) == "\xEF\xBB\xBF") m_at = 3;
        if (!is_at("<?xml")) return false;
        auto const end = m_text.find_first_of("<>", m_at + 1);
        if (end == std::string_view::npos || m_text[end] != '>' || m_text[end - 1] != '?') return false;
        m_at = end + 1;
        return m_at - 2 >= (m_text.find("<?xml") + 5);
    }

    // Text outside of messages is passed over; only what it must not hold counts.
    bool find_markup() {
        auto const end = std::min(m_text.find('<', m_at), m_text.size());
        check_text(m_text.substr(m_at, end - m_at));
        m_at = end;
        return m_at != m_text.size();
    }

    void check_text(std::string_view text) {
        if (text.find('>') != std::string_view::npos) fail();
        for (auto at = text.find('&'); at != std::string_view::npos; at = text.find('&', at + 1)) {
            if (read_reference(text.substr(at)).text.empty()) fail();
        }
    }

    // At "<". A tag that is read is behind; its name and attributes are in m_name and `element`.
    tag read_tag(scanned_element& element) {
        if (is_at("<!--")) return read_comment();
        element.offset = m_at++;
        bool const is_end = is_at("/");
        if (is_end) ++m_at;
        if (m_at == m_text.size() || !is_letter(m_text[m_at])) return fail();
        m_name = read_name();
        if (is_end) return read_end();
        if (m_open.empty() && m_has_root) return fail();
        return read_attributes(element);
    }

    tag read_comment() {
        auto const end = m_text.find("-->", m_at + 4);
        if (end == std::string_view::npos) return fail();
        append_ignored(m_text.substr(m_at + 4, end - m_at - 4), m_ignored);
        m_at = end + 3;
        return tag::comment;
    }

    std::string_view read_name() {
        std::size_t const start = m_at;
        while (m_at < m_text.size() && is_name_part(m_text[m_at])) ++m_at;
        return m_text.substr(start, m_at - start);
    }

    tag read_end() {
        skip_blanks();
        if (!is_at(">") || m_open.empty() || m_open.back() != m_name) return fail();
        ++m_at;
        m_open.pop_back();
        return tag::end;
    }

    tag read_attributes(scanned_element& element) {
        element.attributes.clear();
        element.references.clear();
        element.ignored.clear();
        while (true) {
            skip_blanks();
            if (is_at(">")) {
                ++m_at;
                m_open.push_back(m_name);
                return tag::start;
            }
            if (is_at("/>")) {
                m_at += 2;
                return tag::empty;
            }
            if (!read_attribute(element)) return fail();
        }
    }

    bool read_attribute(scanned_element& element) {
        if (m_at == m_text.size() || !is_letter(m_text[m_at])) return false;
        std::size_t const offset = m_at;
        std::string_view const name = read_name();
        skip_blanks();
        if (!is_at("=")) return false;
        ++m_at;
        skip_blanks();
        if (m_at == m_text.size()) return false;
        char const quote = m_text[m_at];
        if (quote != '"' && quote != '\'') return false;
        auto const end = m_text.find(quote, m_at + 1);
        if (end == std::string_view::npos) return false;
        std::string_view const value = m_text.substr(m_at + 1, end - m_at - 1);
        m_at = end + 1;
        // Many attributes are nothing for a search in a row; the library's parser knows what to do.
        if (element.attributes.size() == most_attributes) {
            be_unusual();
            return true;
        }
        if (element.find(name)) return false;
        element.attributes.push_back({name, value, offset});
        return value.find('&') == std::string_view::npos || decode(element);
    }

    // The value of the last attribute.
    bool decode(scanned_element& element) {
        std::string_view& value = element.attributes.back().value;
        std::string& decoded = m_values.emplace_back();
        while (!value.empty()) {
            reference const found = value.front() == '&' ? read_reference(value) : reference{{}, value.front()};
            if (value.front() == '&') {
                if (found.text.empty()) return false;
                auto const offset = static_cast<std::size_t>(value.data() - m_text.data());
                element.references.push_back({found.text, offset, found.value});
            }
            decoded += found.value;
            value.remove_prefix(std::max<std::size_t>(1, found.text.size()));
        }
        value = decoded;
        return true;
    }

    // Outside of messages.
    void read_markup() {
        tag const kind = read_tag(m_element);
        if (kind != tag::start && kind != tag::empty) return;
        bool const is_open = kind == tag::start;
        std::size_t const depth = m_open.size() - (is_open ? 1 : 0);
        m_element.ignored.swap(m_ignored);
        m_ignored.clear();
        if (depth == 0) {
            m_has_root = true;
            std::string_view const version = m_element.value_of("version");
            bool const is_known = m_name == "xmc" && m_element.attributes.size() == 1;
            if (!is_known || (version != "1.0" && version != "1.1")) be_unusual();
        } else if (depth == 1 && m_open.front() == "xmc" && m_name == "catalog") {
            m_has_elements = true;
            expect_attributes(m_element, "name", "lang");
            m_visitor.start_catalog(m_element);
        } else if (depth == 1 && m_open.front() == "xmc" && m_name == "include") {
            m_has_elements = true;
            m_visitor.include(m_element);
            if (is_open && !is_at("</include>")) be_unusual();
        } else if (depth == 2 && m_open[1] == "catalog" && m_name == "msg") {
            read_message(is_open);
        } else {
            be_unusual();
        }
    }

    void expect_attributes(scanned_element const& element, std::string_view first, std::string_view second) {
        for (scanned_attribute const& attribute : element.attributes) {
            if (attribute.name != first && attribute.name != second) be_unusual();
        }
    }

    // Behind its start tag.
    void read_message(bool is_open) {
        expect_attributes(m_element, "name", "meta");
        start_message();
        last_piece last = last_piece::none;
        while (is_open) {
            auto const end = std::min(m_text.find('<', m_at), m_text.size());
            if (end != m_at) read_text(m_text.substr(m_at, end - m_at), last);
            m_at = end;
            if (m_at == m_text.size()) return void(fail());
            tag const kind = read_tag(m_element);
            if (kind == tag::none) return;
            if (kind == tag::end && m_open.size() == 2) break;
            if (kind == tag::start || kind == tag::empty) read_child(kind == tag::start, last);
        }
        m_message.end = m_at;
        m_message.is_empty = m_message.is_empty && last == last_piece::none;
        m_visitor.message(m_message);
        m_ignored.clear(); // those of comments inside
    }

    enum class last_piece { none, text, line_break, argument };

    void start_message() {
        static_cast<scanned_element&>(m_message) = std::move(m_element);
        m_element = {};
        m_message.pieces.clear();
        m_message.argument_count = 0;
        m_message.text_references.clear();
        m_message.spaces_after_br.clear();
        m_message.space_at_start = m_message.space_at_end = no_offset;
        m_message.starts_with_blank = false;
        m_message.last_text = {};
        m_message.is_empty = true;
    }

    // A child of the message, whose tag is behind; its content, if any, is unusual.
    void read_child(bool is_open, last_piece& last) {
        if (m_open.size() != (is_open ? 4u : 3u)) return be_unusual();
        if (m_name == "br") {
            if (!m_element.attributes.empty()) be_unusual();
            last = last_piece::line_break;
            m_message.pieces.push_back({scanned_piece::kind::line_break, {}});
        } else if (m_name == "arg" || m_name == "argument") {
            last = last_piece::argument;
            m_message.last_text = {};
            m_message.pieces.push_back({scanned_piece::kind::argument, m_element.value_of("name")});
            if (m_message.argument_count == m_message.arguments.size()) m_message.arguments.emplace_back();
            std::swap(m_message.arguments[m_message.argument_count++], m_element);
        } else {
            be_unusual();
        }
        m_message.space_at_end = no_offset;
        if (is_open && !is_at("</")) be_unusual();
    }

    void read_text(std::string_view text, last_piece& last) {
        if (m_open.size() > 3) return check_text(text);
        if (text.find('>') != std::string_view::npos) fail();
        for (auto at = text.find('&'); at != std::string_view::npos; at = text.find('&', at + 1)) {
            reference const found = read_reference(text.substr(at));
            if (found.text.empty()) return void(fail());
            m_message.text_references.push_back({found.text, m_at + at, found.value});
        }
        m_message.pieces.push_back({scanned_piece::kind::text, text});
        std::size_t const first = text.find_first_not_of(blanks);
        if (first != 0) {
            if (last == last_piece::none && m_message.space_at_start == no_offset) m_message.space_at_start = m_at;
            if (last == last_piece::line_break) m_message.spaces_after_br.push_back(m_at);
        }
        if (first == std::string_view::npos) {
            if (last != last_piece::none && m_message.space_at_end == no_offset) m_message.space_at_end = m_at;
            return;
        }
        if (last == last_piece::none) m_message.starts_with_blank = read_reference(text.substr(first)).value == ' ';
        std::size_t const end = text.find_last_not_of(blanks) + 1;
        m_message.space_at_end = end == text.size() ? no_offset : m_at + end;
        m_message.last_text = text.substr(first, end - first);
        m_message.is_empty = false;
        last = last_piece::text;
    }

    static constexpr std::size_t most_attributes = 32;

    std::string_view m_text;
    std::deque<std::string>& m_values;
    catalog_visitor& m_visitor;
    std::size_t m_at = 0;
    scan_result m_result = scan_result::plain;
    bool m_has_root = false;
    bool m_has_elements = false;
    std::string_view m_name;
    std::vector<std::string_view> m_open;
    std::vector<std::string_view> m_ignored;
    scanned_element m_element;
    scanned_message m_message;
};

// Blanks at the start go, other runs of them become one; what references stand for stays as it is.
void append_text(std::string& joined, std::string_view text) {
    while (!text.empty()) {
        char const c = text.front();
        reference const found = c == '&' ? read_reference(text) : reference{};
        if (!found.text.empty()) {
            joined += found.value;
        } else if (!is_blank(c)) {
            joined += c;
        } else if (!joined.empty() && joined.back() != ' ') {
            joined += ' ';
        }
        text.remove_prefix(std::max<std::size_t>(1, found.text.size()));
    }
}

class text_collector : public catalog_visitor {
public:
    std::string joined;

    void message(scanned_message const& message) override {
        for (scanned_piece const& piece : message.pieces) {
            if (piece.what == scanned_piece::kind::text) {
                append_text(joined, piece.text);
            } else if (piece.what == scanned_piece::kind::line_break) {
                joined += '\n';
            } else {
                ((joined += argument_start).append(piece.text)) += argument_end;
            }
        }
    }
    void start_catalog(scanned_element const&) override {}
    void include(scanned_element const&) override {}
};

} // namespace

scanned_attribute const* scanned_element::find(std::string_view name) const {
    auto const found = std::find_if(attributes.begin(), attributes.end(),
                                    [name](scanned_attribute const& attribute) { return attribute.name == name; });
    return found == attributes.end() ? nullptr : &*found;
}

std::string_view scanned_element::value_of(std::string_view name) const {
    scanned_attribute const* const found = find(name);
    return found ? found->value : std::string_view();
}

scan_result scan_catalog_file(std::string_view text, std::deque<std::string>& values, catalog_visitor& visitor) {
    return scanner(text, values, visitor).scan();
}

std::string read_message_text(std::string_view message) {
    std::deque<std::string> values;
    text_collector collector;
    scanner(message, values, collector).scan_message();
    return std::move(collector.joined);
}

} // namespace tools

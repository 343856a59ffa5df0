// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A file is a row of statements: section headers and assignments. Each part of a statement is text that is
// strung together, without the blanks between, up to the token that ends the part. Which tokens those are
// depends on the part, and all others are only text; so the reader does not cut the file into tokens as
// base_config_item::get_token does, but looks for the few bytes that may begin a token of interest. That
// both agree is tested.
#include <zolt/config/config_file_reader_private.hpp>

#include <zolt/config/config_section_private.hpp>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <string_view>
#include <vector>

namespace ZOLT_2_18::config {
namespace {

using strings::ustring8;

constexpr std::string_view array_mark = "[]";
constexpr std::size_t last_position = std::numeric_limits<unsigned int>::max();

/// What may be of interest in a text; the parts below are made of these.
enum interest : unsigned char {
    in_all = 1,        ///< layout and quotes
    in_pairs = 2,      ///< the first bytes of marks of two
    at_line_end = 4,   ///< a line end ends the part instead of being skipped
    at_equals = 8,     ///< so does "="
    at_comma = 16,     ///< and ","
    at_bracket = 32,   ///< and "]"
    with_comments = 64 ///< "#" and "//" begin comments
};

constexpr unsigned char section_part = in_all | at_bracket;
constexpr unsigned char key_part = in_all | in_pairs | at_equals;
constexpr unsigned char value_part = in_all | in_pairs | with_comments | at_line_end;
constexpr unsigned char array_part = value_part | at_comma;

/// In which interests a byte has a part.
constexpr auto interests = [] {
    std::array<unsigned char, 256> table{};
    for (char const c : {' ', '\t', '\n', '\r', '"'}) table[static_cast<unsigned char>(c)] = in_all;
    for (char const c : {'=', ':', '/', '>', '<', '+', '-', '*'}) table[static_cast<unsigned char>(c)] = in_pairs;
    table['#'] = with_comments;
    table[','] = at_comma;
    table[']'] = at_bracket;
    return table;
}();

/// Pieces of the file strung together. One piece, the usual case, is not copied.
class joined_text {
public:
    std::string_view view() const noexcept { return m_view; }

    void clear() noexcept { m_view = {}; }
    void append(std::string_view piece) {
        if (m_view.empty()) {
            m_view = piece;
            return;
        }
        if (m_view.data() != m_joined.data()) m_joined.assign(m_view);
        m_joined.append(piece);
        m_view = m_joined;
    }

private:
    std::string_view m_view;
    ustring8 m_joined;
};

class file_reader {
public:
    file_reader(std::string_view text, config_tree& tree) : m_text(text), m_tree(tree) { m_section.emplace(tree); }

    void read_statements() {
        while (find_statement()) {
            if (m_text[m_at] == '[') {
                ++m_at;
                read_section();
            } else {
                read_assignment();
            }
        }
    }

private:
    char peek(std::size_t ahead) const { return ahead < m_text.size() - m_at ? m_text[m_at + ahead] : '\0'; }
    bool starts_comment() const { return peek(0) == '#' || (peek(0) == '/' && peek(1) == '/'); }

    // Byte by byte, so that a quote in a comment opens no string.
    void skip_comment() { m_at = std::min(m_text.find('\n', m_at), m_text.size()); }

    /// Moves to the first byte of the next statement; false when there is none.
    bool find_statement() {
        for (; m_at < m_text.size(); ++m_at) {
            char const c = m_text[m_at];
            if (c == ' ' || c == '\t' || c == '\n' || (c == '\r' && peek(1) == '\n')) continue;
            if (!starts_comment()) return true;
            skip_comment();
            if (m_at == m_text.size()) break;
        }
        return false;
    }

    static bool is_pair_start(char c) { return interests[static_cast<unsigned char>(c)] == in_pairs; }

    /// Moves behind the bytes that are text to the part, marks of two bytes included, the second of which
    /// may be a "=" or a slash that alone would be more than text.
    void skip_plain(unsigned char part) {
        char const* const end = m_text.data() + m_text.size();
        char const* at = m_text.data() + m_at;
        for (;;) {
            while (at != end && (interests[static_cast<unsigned char>(*at)] & part) == 0) ++at;
            if (at == end || !is_pair_start(*at)) break;

            char const first = *at;
            char const second = end - at > 1 ? at[1] : '\0';
            bool const is_pair = second == '=' || (second == '/' && first == '*');
            bool const is_comment = first == '/' && second == '/';
            if (!is_pair && first == '=' && (part & at_equals) != 0) break;
            if (is_comment && (part & with_comments) != 0) break;
            at += is_pair || is_comment ? 2 : 1;
        }
        m_at = static_cast<std::size_t>(at - m_text.data());
    }

    /// Appends the content of the string that starts here, up to its closing quote or the text's end. A
    /// backslash belongs to the byte after it.
    void read_string(joined_text& content) {
        std::size_t const first = m_at + 1;
        std::size_t end = first;
        while (end < m_text.size() && m_text[end] != '"') end += m_text[end] == '\\' ? 2 : 1;
        end = std::min(end, m_text.size());
        content.append(m_text.substr(first, end - first));
        m_at = std::min(end + 1, m_text.size());
    }

    /// Appends the texts of a part and moves behind the byte that ends it, which is returned; zero at the
    /// end of the file. `was_there` is set when there was a text, be it an empty string.
    char read_part(unsigned char part, joined_text& text, bool& was_there) {
        for (;;) {
            std::size_t const first = m_at;
            skip_plain(part);
            if (m_at != first) {
                text.append(m_text.substr(first, m_at - first));
                was_there = true;
            }
            if (m_at == m_text.size()) return '\0';
            char const c = m_text[m_at];
            if (c == '"') {
                read_string(text);
                was_there = true;
            } else if (c == '\r' && peek(1) != '\n') {
                text.append(m_text.substr(m_at, 1));
                was_there = true;
                ++m_at;
            } else if (c == '#' || c == '/') {
                skip_comment();
            } else if (c == '\n' ? (part & at_line_end) != 0 : c == '=' || c == ',' || c == ']') {
                ++m_at;
                return c;
            } else {
                ++m_at; // layout
            }
        }
    }
    char read_part(unsigned char part, joined_text& text) {
        bool was_there = false;
        text.clear();
        return read_part(part, text, was_there);
    }

    void read_section() {
        ustring8 prefix;
        if (read_part(section_part, m_key) != '\0') prefix = m_key.view();
        if (!prefix.empty()) prefix += '.';
        m_section.emplace(m_tree, prefix);
    }

    void read_assignment() {
        if (read_part(key_part, m_key) == '\0') return;
        std::string_view const key = m_key.view();
        if (key.ends_with(array_mark)) {
            auto const elements = read_array();
            if (!elements.empty())
                m_section->set_array(ustring8(key.substr(0, key.size() - array_mark.size())), elements);
        } else {
            read_part(value_part, m_value);
            if (!m_value.view().empty()) m_section->set_text(key, m_value.view());
        }
    }

    /// The elements; none when the last one is empty.
    std::vector<ustring8> read_array() {
        std::vector<ustring8> elements;
        joined_text item;
        bool is_open = false; // there was a comma and nothing but layout and comments since
        for (;;) {
            bool was_there = false;
            char const end = read_part(array_part, item, was_there);
            is_open = is_open && !was_there;
            if (end == ',') {
                elements.emplace_back(item.view());
                item.clear();
                is_open = true;
            } else if (end == '\0' || !is_open) {
                break;
            }
        }
        if (item.view().empty()) return {};
        elements.emplace_back(item.view());
        return elements;
    }

    std::string_view m_text;
    config_tree& m_tree;
    std::optional<_private::config_section> m_section;
    std::size_t m_at = 0;
    joined_text m_key; // these two are kept for their memory
    joined_text m_value;
};

} // namespace

namespace _private {

void read_config_text(ustring8 const& text, config_tree& tree) {
    // What positions of tokens cannot reach does not exist.
    std::string_view const reachable(text.data(), std::min<std::size_t>(text.size(), last_position));
    file_reader(reachable, tree).read_statements();
}

} // namespace _private
} // namespace ZOLT_2_18::config

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A message is a row of words with blanks between them, each of which means no more than "here is a blank", so
// that any may be a line end. Not so at the edges of the message and beside br, where a line end is taken for
// layout by whoever reads the file and for a blank by the library: there the blank stays one.
//
// Line ends are made line feeds before anything else, as what means nothing.
#include "catalog_layout.hpp"

#include "tools/program/terminal.hpp"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

namespace tools {
namespace {

constexpr std::size_t line_width = 116;
constexpr std::size_t step = 2;
constexpr std::string_view blanks = " \t\r\n";

std::size_t count_line_feeds(std::string_view text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

struct attribute {
    std::string_view name;
    std::string_view value; // as it is written
};

/// A comment, a tag or what stands between two of them.
struct piece {
    enum kind_type { text, comment, start_tag, empty_tag, end_tag };
    kind_type kind = text;
    std::string_view raw;
    std::string_view name; // of a tag
    std::vector<attribute> attributes{};

    bool starts_element() const { return kind == start_tag || kind == empty_tag; }
    bool is_tag() const { return starts_element() || kind == end_tag; }
};

/// Goes through a well-formed text piece by piece.
class piece_reader {
public:
    explicit piece_reader(std::string_view text) : m_rest(text) {}

    /// Up to the header's end, with what stands before it.
    std::string_view take_header() {
        // A byte order mark is known by the fourth byte.
        std::size_t const start = m_rest.size() > 3 && m_rest[3] == '<' ? 3 : 0;
        return take(m_rest.find("?>", std::min(start + 5, m_rest.size())), 2);
    }

    bool next() {
        m_piece.attributes.clear();
        m_piece.name = {};
        std::string_view const before = m_rest;
        if (m_rest.empty()) return false;
        if (m_rest.front() != '<') {
            m_piece.kind = piece::text;
            take(m_rest.find('<'), 0);
        } else if (m_rest.substr(0, 4) == "<!--") {
            m_piece.kind = piece::comment;
            take(m_rest.find("-->", 4), 3);
        } else {
            read_tag();
        }
        m_piece.raw = before.substr(0, before.size() - m_rest.size());
        return true;
    }

    piece const& current() const { return m_piece; }

    /// Behind a start tag: the content to the end tag, which is read, too.
    std::string_view take_content() {
        std::string_view const content = m_rest;
        std::size_t size = 0;
        for (std::size_t depth = 1; depth != 0 && next();) {
            if (m_piece.kind == piece::start_tag) ++depth;
            if (m_piece.kind == piece::end_tag) --depth;
            if (depth != 0) size += m_piece.raw.size();
        }
        return content.substr(0, size);
    }

private:
    // The front of the text up to what ends there, or all of it.
    std::string_view take(std::size_t end, std::size_t end_size) {
        std::string_view const taken = m_rest.substr(0, end == std::string_view::npos ? end : end + end_size);
        m_rest.remove_prefix(taken.size());
        return taken;
    }

    void skip_blanks() { take(m_rest.find_first_not_of(blanks), 0); }

    void read_tag() {
        m_rest.remove_prefix(1);
        bool const is_end = !m_rest.empty() && m_rest.front() == '/';
        if (is_end) m_rest.remove_prefix(1);
        m_piece.name = take(m_rest.find_first_of(" \t\r\n/>"), 0);
        for (skip_blanks(); !m_rest.empty() && m_rest.front() != '>' && m_rest.front() != '/'; skip_blanks())
            read_attribute();
        bool const is_empty = !m_rest.empty() && m_rest.front() == '/';
        m_piece.kind = is_end ? piece::end_tag : is_empty ? piece::empty_tag : piece::start_tag;
        take(m_rest.find('>'), 1);
    }

    void read_attribute() {
        std::string_view const name = take(m_rest.find_first_of(" \t\r\n="), 0);
        take(m_rest.find_first_of("\"'"), 0);
        if (m_rest.empty()) return;
        char const quote = m_rest.front();
        m_rest.remove_prefix(1);
        std::string_view value = take(m_rest.find(quote), 1);
        value.remove_suffix(std::min<std::size_t>(1, value.size()));
        m_piece.attributes.push_back({name, value});
    }

    std::string_view m_rest;
    piece m_piece;
};

/// Writes words, and ends lines between them where they get too long.
class line_filler {
public:
    /// The last line of `out` is full of blanks.
    line_filler(ustring8& out, std::size_t column, std::size_t indentation)
        : m_out(out), m_column(column), m_indentation(indentation) {}

    void add(std::string_view text) { m_word.append(text); }

    /// A blank, which may be a line end.
    void gap() {
        finish();
        m_has_gap = true;
    }

    void finish() {
        std::size_t const first_end = std::min(m_word.find('\n'), m_word.size());
        std::size_t const width = display_width(std::string_view(m_word).substr(0, first_end));
        if (m_has_gap && m_column + 1 + width > line_width) {
            m_out.append("\n").append(m_indentation, ' ');
            m_column = m_indentation;
        } else if (m_has_gap) {
            m_out += ' ';
            ++m_column;
        }
        m_out += m_word;
        m_column += width;
        if (first_end != m_word.size())
            m_column = display_width(std::string_view(m_word).substr(m_word.rfind('\n') + 1));
        m_word.clear();
        m_has_gap = false;
    }

private:
    ustring8& m_out;
    std::size_t m_column;
    std::size_t m_indentation;
    ustring8 m_word;
    bool m_has_gap = false;
};

class catalog_layout {
public:
    explicit catalog_layout(ustring8 const& text) : m_in(text) { m_out.reserve(text.size() + text.size() / 8); }

    ustring8 run() {
        m_out = m_in.take_header();
        while (m_in.next()) lay_out_piece();
        return m_out += '\n';
    }

private:
    void lay_out_piece() {
        piece const& next = m_in.current();
        switch (next.kind) {
        case piece::text:
            return lay_out_text(next.raw);
        case piece::comment:
            return add_item(next.raw);
        case piece::end_tag:
            return end_container(next.name);
        default:
            break;
        }
        start_line();
        line_filler words(m_out, step * m_depth, step * (m_depth + 1));
        if (m_depth == 2 && next.name == "msg") {
            lay_out_message(words);
        } else if (next.kind == piece::start_tag && next.name == (m_depth == 0 ? "xmc" : "catalog") &&
                   m_depth < 2) {
            add_start(words);
            words.add(">");
            ++m_depth;
            m_is_first = true;
        } else {
            lay_out_element(words);
        }
        words.finish();
    }

    // Between elements, where text means nothing.
    void lay_out_text(std::string_view text) {
        std::size_t const start = std::min(text.find_first_not_of(blanks), text.size());
        m_line_feeds += count_line_feeds(text.substr(0, start));
        if (start == text.size()) return;
        std::size_t const end = text.find_last_not_of(blanks) + 1;
        add_item(text.substr(start, end - start));
        m_line_feeds = count_line_feeds(text.substr(end));
    }

    // On the same line as what stands before it, if it was there.
    void add_item(std::string_view text) {
        if (m_line_feeds != 0) {
            start_line();
        } else {
            m_out += ' ';
            m_is_first = false;
        }
        m_out += text;
    }

    void start_line() {
        if (m_line_feeds > 1 && !m_is_first) m_out += '\n';
        m_out.append("\n").append(step * m_depth, ' ');
        m_line_feeds = 0;
        m_is_first = false;
    }

    void end_container(std::string_view name) {
        m_depth -= std::min<std::size_t>(1, m_depth);
        m_line_feeds = 0;
        if (m_is_first) {
            m_out.back() = '/';
            m_out += '>';
            m_is_first = false;
            return;
        }
        start_line();
        m_out.append("</").append(name).append(">");
    }

    // A start tag but for its end. Arguments stay in one line.
    void add_start(line_filler& words) const {
        piece const& tag = m_in.current();
        words.add("<");
        words.add(tag.name);
        for (attribute const& next : tag.attributes) {
            bool const is_whole = &next == &tag.attributes.front() || tag.name == "arg" || tag.name == "argument";
            is_whole ? words.add(" ") : words.gap();
            words.add(next.name);
            words.add("=\"");
            std::string_view value = next.value;
            for (auto at = value.find('"'); at != std::string_view::npos; at = value.find('"')) {
                words.add(value.substr(0, at));
                words.add("&quot;");
                value.remove_prefix(at + 1);
            }
            words.add(value);
            words.add("\"");
        }
    }

    // With what is in it, which stays as it is.
    void lay_out_element(line_filler& words) {
        add_start(words);
        std::string_view const name = m_in.current().name;
        bool const is_empty = m_in.current().kind == piece::empty_tag;
        std::string_view const content = is_empty ? std::string_view() : m_in.take_content();
        if (content.empty()) return words.add("/>");
        words.add(">");
        words.add(content);
        words.add("</");
        words.add(name);
        words.add(">");
    }

    void lay_out_message(line_filler& words) {
        add_start(words);
        if (m_in.current().kind == piece::empty_tag) return words.add("/>");
        message_content content(words);
        while (m_in.next()) {
            piece const& next = m_in.current();
            if (next.kind == piece::end_tag) return content.end();
            if (next.kind == piece::text) {
                content.add_text(next.raw);
            } else {
                content.start(next.name == "br");
                next.starts_element() ? lay_out_element(words) : words.add(next.raw);
            }
        }
    }

    /// The blanks in a message.
    class message_content {
    public:
        explicit message_content(line_filler& words) : m_words(words) {}

        void add_text(std::string_view text) {
            while (!text.empty()) {
                std::size_t const size = std::min(text.find_first_of(blanks), text.size());
                if (size != 0) {
                    start(false);
                    m_words.add(text.substr(0, size));
                }
                m_has_blank = m_has_blank || size != text.size();
                text.remove_prefix(std::min(text.size(), text.find_first_not_of(blanks, size)));
            }
        }

        // What follows is no blank.
        void start(bool is_break) {
            if (m_is_empty) {
                m_words.add(">");
            } else if (m_has_blank) {
                is_break || m_is_after_break ? m_words.add(" ") : m_words.gap();
            }
            m_is_empty = m_has_blank = false;
            m_is_after_break = is_break;
        }

        void end() {
            if (m_is_empty) return m_words.add("/>");
            if (m_has_blank) m_words.add(" ");
            m_words.add("</msg>");
        }

    private:
        line_filler& m_words;
        bool m_is_empty = true;
        bool m_has_blank = false;
        bool m_is_after_break = false;
    };

    piece_reader m_in;
    ustring8 m_out;
    std::size_t m_depth = 0;      // of the catalog or root that is open
    std::size_t m_line_feeds = 0; // since the last item
    bool m_is_first = false;      // nothing stands in the open catalog or root yet
};

// Appends a part of a text with other line ends as line feeds. In a value a carriage return means itself.
void append_with_line_feeds(ustring8& out, std::string_view text, bool is_tag) {
    char quote = '\0';
    for (std::size_t i = 0; i != text.size(); ++i) {
        char const c = text[i];
        if (c == quote) {
            quote = '\0';
        } else if (is_tag && quote == '\0' && (c == '"' || c == '\'')) {
            quote = c;
        }
        if (c != '\r') {
            out += c;
        } else if (quote != '\0') {
            out += "&#13;";
        } else if (text.substr(i + 1, 1) != "\n") {
            out += '\n';
        }
    }
}

ustring8 catalog_with_line_feeds(std::string_view text) {
    ustring8 result;
    result.reserve(text.size());
    piece_reader in(text);
    append_with_line_feeds(result, in.take_header(), false);
    while (in.next()) append_with_line_feeds(result, in.current().raw, in.current().is_tag());
    return result;
}

} // namespace

ustring8 lay_out_catalog(ustring8 const& text) {
    if (text.find('\r') == ustring8::npos) return catalog_layout(text).run();
    ustring8 const same = catalog_with_line_feeds(text);
    return catalog_layout(same).run();
}

ustring8 with_line_feeds(std::string_view text) {
    ustring8 result;
    append_with_line_feeds(result, text, false);
    return result;
}

} // namespace tools

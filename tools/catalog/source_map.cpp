// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "source_map.hpp"

#include <algorithm>

namespace tools {
namespace {

unsigned line_feeds(std::string_view text) {
    return static_cast<unsigned>(std::count(text.begin(), text.end(), '\n'));
}

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// Walks over the text, counting lines.
class reader {
public:
    explicit reader(std::string_view text) : m_rest(text), m_line_start(text.data()) {}

    bool at_end() const { return m_rest.empty(); }
    unsigned line() const { return m_line; }
    unsigned column() const { return static_cast<unsigned>(m_rest.data() - m_line_start) + 1; }
    bool starts_with(std::string_view mark) const { return m_rest.substr(0, mark.size()) == mark; }
    bool starts_with_letter() const { return !m_rest.empty() && is_letter(m_rest.front()); }

    /// Moves to the first of the characters, or to the end; returns the character there, or NUL.
    char find_any(std::string_view characters) {
        skip(std::min(m_rest.size(), m_rest.find_first_of(characters)));
        return m_rest.empty() ? '\0' : m_rest.front();
    }

    /// Moves behind the mark, or to the end.
    void skip_past(std::string_view mark) {
        auto const found = m_rest.find(mark);
        skip(found == std::string_view::npos ? m_rest.size() : found + mark.size());
    }

    void skip(std::size_t count) {
        std::string_view const skipped = m_rest.substr(0, count);
        unsigned const lines = line_feeds(skipped);
        if (lines != 0) m_line_start = skipped.data() + skipped.rfind('\n') + 1;
        m_line += lines;
        m_rest.remove_prefix(std::min(count, m_rest.size()));
    }

private:
    std::string_view m_rest;
    char const* m_line_start;
    unsigned m_line = 1;
};

bool has_header(std::string_view text) {
    auto const end = text.find_first_of("<>", 1);
    return text.substr(0, 5) == "<?xml" && end != std::string_view::npos && end > 5 &&
           text.substr(end - 1, 2) == "?>";
}

} // namespace

source_map::source_map(std::string_view text) {
    reader in(text);
    // The parser passes over a byte order mark in the same way.
    bool const has_mark = text.size() >= 4 && text[3] == '<';
    if (has_mark) in.skip(3);
    if (!has_header(text.substr(has_mark ? 3 : 0))) { // whatever is wrong is wrong at the start
        m_uncounted.push_back(0);
        return;
    }
    in.skip_past("?>");
    m_uncounted.push_back(in.line() - 1);
    auto const skip_event = [&](std::string_view end) {
        unsigned const start = in.line();
        in.skip_past(end);
        m_uncounted.push_back(m_uncounted.back() + in.line() - start);
    };

    while (in.find_any("<") != '\0') {
        if (in.starts_with("<!--")) {
            skip_event("-->");
            continue;
        }
        place const start{in.line(), in.column()};
        in.skip(1);
        if (in.starts_with_letter()) m_elements.push_back(start);
        for (char c = in.find_any("\"'>"); c != '\0'; c = in.find_any("\"'>")) {
            in.skip(1);
            if (c == '>') break;
            skip_event({&c, 1});
        }
    }
    bool const ends_in_line_feed = !text.empty() && text.back() == '\n';
    m_last_line = std::max(1u, in.line() - (ends_in_line_feed ? 1 : 0));
}

source_map::place source_map::element_place(std::size_t n) const {
    return n < m_elements.size() ? m_elements[n] : place();
}

unsigned source_map::element_line(std::size_t n) const { return element_place(n).line; }
unsigned source_map::element_column(std::size_t n) const { return element_place(n).column; }

unsigned source_map::fault_line(unsigned long counted, std::size_t events) const {
    unsigned const uncounted = m_uncounted[std::min(events, m_uncounted.size() - 1)];
    return std::min(m_last_line, 1 + uncounted + static_cast<unsigned>(counted));
}

} // namespace tools

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// What the program writes, and how it looks on a terminal: colours, tables, a progress bar.
//
// Texts that come from files go through printable() before they are shown, so that a catalog cannot
// send control sequences to the terminal.
#pragma once

#include "library.hpp"

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace tools {

/// Columns that a UTF-8 text takes: East Asian wide characters count two, combining ones none, a byte
/// that is no text one.
std::size_t display_width(std::string_view text);

enum class line_feeds { show, keep };

/// The text with every control character written as \xNN, line feeds only if they are not to be kept.
ustring8 printable(std::string_view text, line_feeds feeds = line_feeds::show);

/// The text with line feeds in the place of blanks, so that lines are as long as fits the width.
ustring8 wrap(std::string_view text, std::size_t width);

enum class colour { heading, place, error, warning, note };

/// Standard output or standard error.
class output {
public:
    explicit output(std::FILE* stream);

    /// True when people watch: a terminal that is not a dumb one.
    bool is_terminal() const { return m_is_terminal; }
    /// Columns of the terminal; 80 when unknown.
    unsigned width() const;

    void write(std::string_view text);
    void line(std::string_view text);
    /// The text in a colour; unchanged unless a terminal watches and NO_COLOR is unset or empty.
    ustring8 paint(colour style, std::string_view text) const;

    /// Writes out what is waiting. Returns the error number of the first write that failed, else 0.
    int flush();

private:
    std::FILE* m_stream;
    bool m_is_terminal;
    bool m_has_colours;
    int m_error = 0;
};

/// Rows of cells under headings, as wide as the widest cell. A cell of the last column may have
/// several lines.
class table {
public:
    enum class align { left, right };
    struct column {
        ustring8 heading;
        align alignment = align::left;
    };

    explicit table(std::vector<column> columns);
    /// Takes one cell for each column; makes them printable.
    void row(std::vector<ustring8> cells);
    void print(output& out) const;

private:
    std::vector<std::size_t> widths() const;
    ustring8 pad(std::string_view cell, std::size_t index, std::size_t width) const;

    std::vector<column> m_columns;
    std::vector<std::vector<ustring8>> m_rows;
};

/// A bar on a terminal for work that takes longer than a second. Elsewhere nothing.
class progress_bar {
public:
    explicit progress_bar(output& stream, std::chrono::milliseconds patience = std::chrono::seconds(1));
    progress_bar(progress_bar const&) = delete;
    progress_bar& operator=(progress_bar const&) = delete;
    /// Removes the bar.
    ~progress_bar();

    void show(std::size_t done, std::size_t total);

private:
    using clock = std::chrono::steady_clock;

    output& m_stream;
    std::chrono::milliseconds m_patience;
    clock::time_point m_start = clock::now();
    clock::time_point m_drawn{};
    bool m_is_visible = false;
};

} // namespace tools

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "terminal.hpp"

#include <zolt/strings/string_utility.hpp>
#include <zolt/strings/unicode.hpp>

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <iterator>

namespace tools {
namespace {

struct range {
    unsigned long first;
    unsigned long last;
};

constexpr range wide[] = {
    {0x1100, 0x115F},   {0x231A, 0x231B},   {0x2329, 0x232A},   {0x23E9, 0x23EC},   {0x25FD, 0x25FE},
    {0x2614, 0x2615},   {0x2648, 0x2653},   {0x26AA, 0x26AB},   {0x26BD, 0x26BE},   {0x2705, 0x2705},
    {0x270A, 0x270B},   {0x2728, 0x2728},   {0x274C, 0x274C},   {0x2753, 0x2755},   {0x2795, 0x2797},
    {0x2B1B, 0x2B1C},   {0x2B50, 0x2B50},   {0x2E80, 0x303E},   {0x3041, 0x4DBF},   {0x4E00, 0xA4CF},
    {0xA960, 0xA97C},   {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE10, 0xFE19},   {0xFE30, 0xFE6B},
    {0xFF01, 0xFF60},   {0xFFE0, 0xFFE6},   {0x16FE0, 0x18CFF}, {0x1B000, 0x1B2FF}, {0x1F18E, 0x1F19A},
    {0x1F200, 0x1F320}, {0x1F32D, 0x1F37C}, {0x1F37E, 0x1F393}, {0x1F3A0, 0x1F3CA}, {0x1F3E0, 0x1F3F0},
    {0x1F3F8, 0x1F4FC}, {0x1F4FF, 0x1F53D}, {0x1F54B, 0x1F567}, {0x1F5FB, 0x1F64F}, {0x1F680, 0x1F6C5},
    {0x1F6D0, 0x1F6FC}, {0x1F7E0, 0x1F7EB}, {0x1F90C, 0x1F9FF}, {0x1FA70, 0x1FAFF}, {0x20000, 0x3FFFD},
};

constexpr range without_width[] = {
    {0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD}, {0x05BF, 0x05C7}, {0x0610, 0x061A}, {0x064B, 0x065F},
    {0x0670, 0x0670}, {0x06D6, 0x06DC}, {0x06DF, 0x06E4}, {0x0E31, 0x0E31}, {0x0E34, 0x0E3A}, {0x0E47, 0x0E4E},
    {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x200B, 0x200F}, {0x202A, 0x202E}, {0x2060, 0x2064}, {0x20D0, 0x20FF},
    {0x302A, 0x302D}, {0x3099, 0x309A}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF},
};

template <std::size_t Size>
bool is_in(range const (&ranges)[Size], unsigned long character) {
    auto const found = std::lower_bound(std::begin(ranges), std::end(ranges), character,
                                        [](range const& r, unsigned long c) { return r.last < c; });
    return found != std::end(ranges) && found->first <= character;
}

std::size_t width_of(unsigned long character) {
    if (character < without_width[0].first) return 1; // most texts have no other
    if (is_in(without_width, character)) return 0;
    return is_in(wide, character) ? 2 : 1;
}

bool is_set(char const* variable) {
    char const* const value = std::getenv(variable);
    return value && *value;
}

// Calls `visit` with each character and its bytes; a byte that starts no character comes as itself.
template <typename Visitor>
void for_each_character(std::string_view text, Visitor visit) {
    for (std::size_t i = 0; i < text.size();) {
        std::string_view const rest = text.substr(i, 4);
        unsigned long bytes = 0;
        unsigned long character =
            zolt::strings::unichar(rest.data(), static_cast<unsigned long>(rest.size()), 0, bytes);
        if (bytes == zolt::strings::no_index) {
            bytes = 1;
            character = static_cast<unsigned char>(rest.front());
        }
        visit(character, rest.substr(0, bytes));
        i += bytes;
    }
}

constexpr std::string_view colour_codes[] = {"\033[1m", "\033[1m", "\033[1;31m", "\033[1;33m", "\033[1;36m"};
constexpr std::string_view colour_end = "\033[0m";
constexpr std::string_view column_gap = "  ";

constexpr auto redraw_time = std::chrono::milliseconds(50);
constexpr std::string_view erase_line = "\r\033[K";

} // namespace

std::size_t display_width(std::string_view text) {
    std::size_t width = 0;
    for_each_character(text, [&width](unsigned long character, std::string_view) { width += width_of(character); });
    return width;
}

ustring8 printable(std::string_view text, line_feeds feeds) {
    constexpr char digits[] = "0123456789ABCDEF";
    ustring8 result;
    result.reserve(text.size());
    for_each_character(text, [&](unsigned long character, std::string_view bytes) {
        bool const is_control = character < 0x20 || (character >= 0x7F && character <= 0x9F);
        if (!is_control || (character == '\n' && feeds == line_feeds::keep)) {
            result.append(bytes);
            return;
        }
        (result.append("\\x") += digits[character / 16]) += digits[character % 16];
    });
    return result;
}

ustring8 wrap(std::string_view text, std::size_t width) {
    ustring8 result;
    std::size_t column = 0;
    while (!text.empty()) {
        auto const end = std::min(text.size(), text.find_first_of(" \n"));
        std::string_view const word = text.substr(0, end);
        std::size_t const word_width = display_width(word);
        if (column != 0 && column + 1 + word_width > width) {
            result += '\n';
            column = 0;
        } else if (column != 0) {
            result += ' ';
            ++column;
        }
        result.append(word);
        column += word_width;
        if (end != text.size() && text[end] == '\n') {
            result += '\n';
            column = 0;
        }
        text.remove_prefix(std::min(text.size(), end + 1));
    }
    return result;
}

output::output(std::FILE* stream)
    : m_stream(stream),
      m_is_terminal(::isatty(::fileno(stream)) == 1),
      m_has_colours(m_is_terminal && !is_set("NO_COLOR")) {
    char const* const kind = std::getenv("TERM");
    if (kind && std::string_view(kind) == "dumb") m_is_terminal = m_has_colours = false;
}

unsigned output::width() const {
    winsize size{};
    bool const is_known = ::ioctl(::fileno(m_stream), TIOCGWINSZ, &size) == 0 && size.ws_col != 0;
    return is_known ? size.ws_col : 80;
}

void output::write(std::string_view text) {
    errno = 0;
    if (std::fwrite(text.data(), 1, text.size(), m_stream) != text.size() && m_error == 0) m_error = errno;
}

void output::line(std::string_view text) {
    write(std::string(text) + '\n'); // at once: standard error has no buffer
}

ustring8 output::paint(colour style, std::string_view text) const {
    ustring8 result;
    if (!m_has_colours) return result.append(text), result;
    result.append(colour_codes[static_cast<std::size_t>(style)]).append(text).append(colour_end);
    return result;
}

int output::flush() {
    errno = 0;
    if (std::fflush(m_stream) != 0 && m_error == 0) m_error = errno;
    return m_error;
}

//--------------------------------------------------------------------------------------------------

table::table(std::vector<column> columns) : m_columns(std::move(columns)) {}

void table::row(std::vector<ustring8> cells) {
    cells.resize(m_columns.size());
    for (ustring8& cell : cells)
        cell = printable(cell, &cell == &cells.back() ? line_feeds::keep : line_feeds::show);
    m_rows.push_back(std::move(cells));
}

void table::print(output& out) const {
    std::vector<std::size_t> const width = widths();
    std::size_t const last = m_columns.size() - 1;
    ustring8 line;
    for (std::size_t i = 0; i <= last; ++i) {
        if (i != 0) line.append(column_gap);
        line.append(out.paint(colour::heading, pad(m_columns[i].heading, i, width[i])));
    }
    out.line(line);

    ustring8 next_lines("\n");
    for (std::size_t i = 0; i < last; ++i) next_lines.append(width[i] + column_gap.size(), ' ');
    for (std::vector<ustring8> const& cells : m_rows) {
        line.clear();
        for (std::size_t i = 0; i < last; ++i) line.append(pad(cells[i], i, width[i])).append(column_gap);
        ustring8 text = pad(cells[last], last, width[last]);
        zolt::strings::replace_all(text, "\n", next_lines);
        out.line(line.append(text));
    }
}

std::vector<std::size_t> table::widths() const {
    std::vector<std::size_t> widths;
    for (std::size_t i = 0; i != m_columns.size(); ++i) {
        std::size_t width = display_width(m_columns[i].heading);
        for (auto const& cells : m_rows) width = std::max(width, display_width(cells[i]));
        widths.push_back(width);
    }
    return widths;
}

// The last column is not filled up, so that no line ends in blanks.
ustring8 table::pad(std::string_view cell, std::size_t index, std::size_t width) const {
    ustring8 const blanks(width - std::min(width, display_width(cell)), ' ');
    ustring8 padded;
    if (m_columns[index].alignment == align::right) return padded.append(blanks).append(cell), padded;
    padded.append(cell);
    if (index + 1 != m_columns.size()) padded.append(blanks);
    return padded;
}

//--------------------------------------------------------------------------------------------------

progress_bar::progress_bar(output& stream, std::chrono::milliseconds patience)
    : m_stream(stream), m_patience(patience) {}

progress_bar::~progress_bar() {
    if (!m_is_visible) return;
    m_stream.write(erase_line);
    m_stream.flush();
}

void progress_bar::show(std::size_t done, std::size_t total) {
    if (!m_stream.is_terminal()) return;
    clock::time_point const now = clock::now();
    if (now - m_start < m_patience) return;
    if (m_is_visible && now - m_drawn < redraw_time) return;

    std::string const count = " " + std::to_string(done) + "/" + std::to_string(total);
    std::size_t const columns = m_stream.width();
    std::size_t const room = columns > count.size() + 3 ? std::min<std::size_t>(columns - count.size() - 3, 40) : 0;
    std::size_t const full = total == 0 ? 0 : room * done / total;
    std::string bar(erase_line);
    bar.append("[").append(full, '#').append(room - full, '.').append("]").append(count);
    m_stream.write(bar);
    m_stream.flush();
    m_drawn = now;
    m_is_visible = true;
}

} // namespace tools

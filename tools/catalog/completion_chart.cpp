// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// All lengths are whole numbers of pixels, so that no formatting of decimals comes in.
#include "completion_chart.hpp"

#include "tools/program/terminal.hpp"
#include "tools/program/utf8.hpp"

#include <zolt/strings/unicode.hpp>

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace tools {
namespace {

constexpr std::size_t margin = 16;
constexpr std::size_t row_height = 26;
constexpr std::size_t bar_height = 16;
constexpr std::size_t bar_width = 400;
constexpr std::size_t least_name_width = 32;
constexpr std::size_t most_name_width = 192;
constexpr std::string_view ellipsis = "…";

constexpr std::string_view style = "<style>\n"
                                   "text { font: 13px system-ui, sans-serif; fill: #1f2328; }\n"
                                   ".title { font-weight: bold; }\n"
                                   ".language { text-anchor: end; unicode-bidi: plaintext; }\n"
                                   ".missing { fill: #d0d7de; }\n"
                                   ".translated { fill: #1a7f37; }\n"
                                   ".copies { fill: #bf8700; }\n"
                                   "@media (prefers-color-scheme: dark) {\n"
                                   "text { fill: #e6edf3; }\n"
                                   ".missing { fill: #484f58; }\n"
                                   ".translated { fill: #3fb950; }\n"
                                   ".copies { fill: #d29922; }\n"
                                   "}\n"
                                   "</style>\n";

// What XML can hold: valid UTF-8 without controls and U+FFFE and U+FFFF, with references for marks.
std::string xml_text(std::string_view text) {
    constexpr std::string_view replacement = "\uFFFD";
    constexpr unsigned long smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    std::string result;
    while (!text.empty()) {
        unsigned long size = 0;
        std::string_view const start = text.substr(0, 4);
        unsigned long const character =
            zolt::strings::unichar(start.data(), static_cast<unsigned long>(start.size()), 0, size);
        bool const is_character = size <= 4 && character >= smallest[size] && character <= 0x10FFFF &&
                                  (character < 0xD800 || character > 0xDFFF) && (character & 0xFFFE) != 0xFFFE;
        if (!is_character) size = 1;
        switch (is_character ? character : 0) {
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '&':
            result += "&amp;";
            break;
        default:
            result.append(is_character && character >= 0x20 ? text.substr(0, size) : replacement);
        }
        text.remove_prefix(size);
    }
    return result;
}

// The pixels that a character takes in the wider ones of the common fonts.
std::size_t width_of_character(std::string_view character) {
    constexpr std::string_view wide = "mwMW@%";
    char const first = character.front();
    if (character.size() > 1) return display_width(character) == 1 ? 11 : 8 * display_width(character);
    if (wide.find(first) != std::string_view::npos) return 13;
    return first >= 'A' && first <= 'Z' ? 10 : 8;
}

std::string_view first_character(std::string_view text) {
    return text.substr(0, std::max<std::size_t>(1, utf8_size(text)));
}

std::size_t width_of(std::string_view text) {
    std::size_t width = 0;
    while (!text.empty()) {
        std::string_view const next = first_character(text);
        width += width_of_character(next);
        text.remove_prefix(next.size());
    }
    return width;
}

// The first characters of a long name.
std::string shown_name(std::string_view name) {
    if (width_of(name) <= most_name_width) return std::string(name);
    std::size_t size = 0;
    std::size_t width = width_of(ellipsis);
    for (;;) {
        std::string_view const next = first_character(name.substr(size));
        width += width_of_character(next);
        if (width > most_name_width) return std::string(name.substr(0, size)).append(ellipsis);
        size += next.size();
    }
}

std::string numbers_of(completion_bar const& bar) {
    return std::to_string(percent(bar.translated, bar.total)) + " % (" + std::to_string(bar.translated) + "/" +
           std::to_string(bar.total) + ")";
}

// How much of the bar, and a trace of it for what is not nothing.
std::size_t length_of(std::size_t part, std::size_t whole) {
    if (part == 0) return 0;
    auto const length = static_cast<std::size_t>(std::uint64_t(part) * bar_width / whole);
    return std::max<std::size_t>(1, length);
}

class drawing {
public:
    void line(std::string_view text) { (m_text += text) += '\n'; }
    void rectangle(std::string_view kind, std::size_t x, std::size_t y, std::size_t width, std::size_t height) {
        if (width == 0) return;
        m_text.append("<rect class=\"").append(kind).append("\"");
        place(x, y);
        number("width", width);
        number("height", height);
        line("/>");
    }
    void text(std::string_view kind, std::size_t x, std::size_t y, std::string_view content) {
        m_text.append("<text class=\"").append(kind).append("\"");
        place(x, y);
        m_text.append(">").append(xml_text(content)).append("</text>\n");
    }
    void element(std::string_view name, std::string_view content) {
        m_text.append("<").append(name).append(">").append(xml_text(content));
        m_text.append("</").append(name).append(">\n");
    }
    std::string take() { return std::move(m_text); }

private:
    void place(std::size_t x, std::size_t y) {
        number("x", x);
        number("y", y);
    }
    void number(std::string_view name, std::size_t value) {
        m_text.append(" ").append(name).append("=\"").append(std::to_string(value)).append("\"");
    }
    std::string m_text;
};

void draw_bar(drawing& picture, completion_bar const& bar, std::size_t left, std::size_t y) {
    std::size_t const base = y + bar_height - 4;
    std::size_t const translated = bar.total == 0 ? bar_width : length_of(bar.translated, bar.total);
    std::size_t const copies = std::min(length_of(bar.copies, bar.total), translated);
    std::string const name = shown_name(bar.language);
    picture.line("<g>");
    if (name != bar.language) picture.element("title", bar.language);
    picture.text("language", left - margin / 2, base, name);
    picture.rectangle("translated", left, y, translated - copies, bar_height);
    picture.rectangle("copies", left + translated - copies, y, copies, bar_height);
    picture.rectangle("missing", left + translated, y, bar_width - translated, bar_height);
    picture.text("number", left + bar_width + margin / 2, base, numbers_of(bar));
    picture.line("</g>");
}

} // namespace

std::size_t percent(std::size_t part, std::size_t whole) {
    return whole == 0 ? 100 : static_cast<std::size_t>(std::uint64_t(part) * 100 / whole);
}

std::string completion_chart(std::vector<completion_bar> const& bars, chart_legend const& legend) {
    std::size_t name_width = least_name_width;
    std::size_t number_width = 0;
    for (completion_bar const& bar : bars) {
        name_width = std::max(name_width, width_of(shown_name(bar.language)));
        number_width = std::max(number_width, width_of(numbers_of(bar)));
    }
    std::size_t const left = margin + name_width + margin / 2;
    std::string const width = std::to_string(left + bar_width + margin / 2 + number_width + margin);
    std::string const height = std::to_string(2 * margin + (bars.size() + 2) * row_height);

    drawing picture;
    picture.line("<svg xmlns=\"http://www.w3.org/2000/svg\" role=\"img\" width=\"" + width + "\" height=\"" +
                 height + "\" viewBox=\"0 0 " + width + " " + height + "\">");
    picture.element("title", legend.title);
    picture.line(style.substr(0, style.size() - 1));
    picture.text("title", left, margin + bar_height - 4, legend.title);
    std::size_t y = margin + row_height;
    for (completion_bar const& bar : bars) {
        draw_bar(picture, bar, left, y);
        y += row_height;
    }
    std::size_t x = left;
    std::pair<std::string_view, ustring8 const&> const colours[] = {
        {"translated", legend.translated}, {"copies", legend.copies}, {"missing", legend.missing}};
    for (auto const& [kind, name] : colours) {
        picture.rectangle(kind, x, y + 4, 12, 12);
        picture.text("number", x + 18, y + bar_height - 1, name);
        x += 18 + margin + width_of(name);
    }
    picture.line("</svg>");
    return picture.take();
}

} // namespace tools

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// json_writer: JSON text, indented by two blanks.
//
//     json_writer json;
//     json.begin_object();
//     json.member("files", 3u);
//     json.end_object();
//     json.text();              // {\n  "files": 3\n}
//
// The text is always valid UTF-8: bytes that are not become U+FFFD.
#pragma once

#include "utf8.hpp"

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace tools {

class json_writer {
public:
    void begin_object() { open('{'); }
    void begin_object(std::string_view key) { open(key, '{'); }
    void end_object() { close('}'); }
    void begin_array(std::string_view key) { open(key, '['); }
    void end_array() { close(']'); }

    void value(std::string_view text) {
        next();
        quote(text);
    }
    void member(std::string_view key, std::string_view text) {
        name(key);
        quote(text);
    }
    void member(std::string_view key, std::size_t number) {
        name(key);
        m_text += std::to_string(number);
    }
    void member(std::string_view key, std::same_as<bool> auto is_true) { // a literal is no truth
        name(key);
        m_text += is_true ? "true" : "false";
    }

    std::string const& text() const { return m_text; }
    /// The text so far, which is forgotten; for texts that are written piece by piece.
    std::string take() { return std::exchange(m_text, {}); }

private:
    void next() {
        if (!m_is_first) m_text += ',';
        m_is_first = false;
        if (m_depth != 0) m_text.append("\n").append(2 * m_depth, ' ');
    }

    void name(std::string_view key) {
        next();
        quote(key);
        m_text += ": ";
    }

    void open(char bracket) {
        next();
        start(bracket);
    }

    void open(std::string_view key, char bracket) {
        name(key);
        start(bracket);
    }

    void start(char bracket) {
        m_text += bracket;
        ++m_depth;
        m_is_first = true;
    }

    void close(char bracket) {
        --m_depth;
        if (!m_is_first) m_text.append("\n").append(2 * m_depth, ' ');
        m_text += bracket;
        m_is_first = false;
    }

    void quote(std::string_view text) {
        m_text += '"';
        while (!text.empty()) text.remove_prefix(append_character(text));
        m_text += '"';
    }

    // Appends the first character of the text and returns the number of its bytes.
    std::size_t append_character(std::string_view text) {
        std::size_t const size = utf8_size(text);
        if (size == 0) {
            m_text += "\\uFFFD";
            return 1;
        }
        auto const character = static_cast<unsigned char>(text.front());
        if (character < 0x20) {
            constexpr char digits[] = "0123456789abcdef";
            ((m_text += "\\u00") += digits[character / 16]) += digits[character % 16];
        } else {
            if (character == '"' || character == '\\') m_text += '\\';
            m_text.append(text.substr(0, size));
        }
        return size;
    }

    std::string m_text;
    std::size_t m_depth = 0;
    bool m_is_first = true;
};

} // namespace tools

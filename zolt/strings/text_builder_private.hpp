// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace ZOLT_2_18::strings::_private {

/// A text that grows by a few bytes at a time, for which a call to string::append takes longer than the copy.
class text_builder {
public:
    void clear() noexcept { m_size = 0; }
    void shorten(std::size_t size) noexcept { m_size = size; }
    std::size_t size() const noexcept { return m_size; }
    char const* data() const noexcept { return m_bytes.data(); }
    char back() const noexcept { return m_bytes[m_size - 1]; }
    std::string_view view() const noexcept { return {m_bytes.data(), m_size}; }
    /// Up to where bytes can be read, whatever they are.
    char const* readable_end() const noexcept { return m_bytes.data() + m_bytes.size(); }

    void add(char c) {
        if (m_size == m_bytes.size()) grow(1);
        m_bytes[m_size++] = c;
    }

    void add(std::string_view text) {
        std::size_t const size = text.size();
        if (size > m_bytes.size() - m_size) grow(size);
        char* const to = m_bytes.data() + m_size;
        m_size += size;
        if (size > 16 || size < 4) return copy_rare(to, text);
        if (size >= 8) return copy_ends<8>(to, text);
        copy_ends<4>(to, text);
    }

private:
    // The first and the last bytes, which overlap unless there are twice as many.
    template <std::size_t Bytes>
    static void copy_ends(char* to, std::string_view text) noexcept {
        char first[Bytes], last[Bytes];
        std::memcpy(first, text.data(), Bytes);
        std::memcpy(last, text.data() + text.size() - Bytes, Bytes);
        std::memcpy(to, first, Bytes);
        std::memcpy(to + text.size() - Bytes, last, Bytes);
    }

    static void copy_rare(char* to, std::string_view text) noexcept {
        if (text.size() > 16) {
            std::memcpy(to, text.data(), text.size());
        } else {
            for (char const c : text) *to++ = c;
        }
    }

    [[gnu::noinline]] void grow(std::size_t wanted) { m_bytes.resize(2 * m_size + wanted + 64); }

    std::string m_bytes; // the text and room for more
    std::size_t m_size = 0;
};

} // namespace ZOLT_2_18::strings::_private

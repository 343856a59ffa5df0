// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// How the XML parser finds the end of a run: of text, whitespace, a name, an attribute value.
//
// Runs are a few bytes long, so neither a loop over bytes nor a wide comparison for each run is fast: one
// guesses wrong at every end, the other waits for its own result before the next run can begin. Here 64
// bytes are looked at together, once: run_ends has a bit for each byte that ends a run of a kind, and the
// end of a run is found by a shift and a count of zeros.
#pragma once

#include <zolt/export.hpp>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace ZOLT_2_18::parser::_private {

enum char_class : unsigned char {
    letter = 1,
    digit = 2,
    hex_digit = 4,
    name_part = 8, // letter, digit or "_"; of ASCII alone
    white_space = 16,
    text_end = 32, // whitespace or one of "<", ">", "&"
    value_end = 64 // a quote, "&" or line feed
};

constexpr std::array<unsigned char, 256> make_classes() {
    std::array<unsigned char, 256> classes{};
    auto const mark = [&classes](std::string_view characters, int bits) {
        for (char const c : characters) {
            unsigned char& entry = classes[static_cast<unsigned char>(c)];
            entry = static_cast<unsigned char>(entry | bits);
        }
    };
    mark("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz", letter | name_part);
    mark("0123456789", digit | hex_digit | name_part);
    mark("ABCDEFabcdef", hex_digit);
    mark("_", name_part);
    mark(" \t\r\n", white_space | text_end);
    mark("<>&", text_end);
    mark("\"'&\n", value_end);
    return classes;
}

inline constexpr auto classes = make_classes();

inline bool is(char c, char_class wanted) noexcept { return classes[static_cast<unsigned char>(c)] & wanted; }

/// For 64 bytes in a row, lowest bit first: which of them end a run of each kind.
struct run_ends {
    std::uint64_t text = 0;
    std::uint64_t white_space = 0;
    std::uint64_t name = 0;
    std::uint64_t value = 0;
};

inline run_ends find_run_ends_portably(char const* bytes) noexcept {
    run_ends ends;
    for (int i = 0; i < 64; ++i) {
        std::uint64_t const bit = std::uint64_t{1} << i;
        if (is(bytes[i], text_end)) ends.text |= bit;
        if (!is(bytes[i], white_space)) ends.white_space |= bit;
        if (!is(bytes[i], name_part)) ends.name |= bit;
        if (is(bytes[i], value_end)) ends.value |= bit;
    }
    return ends;
}

#if defined(__SSE2__)
/// The same by 16 bytes at a time.
inline run_ends find_run_ends(char const* bytes) noexcept {
    auto const all = [](char c) { return _mm_set1_epi8(c); };
    auto const equal = [all](__m128i left, char right) { return _mm_cmpeq_epi8(left, all(right)); };
    auto const either = [](__m128i left, __m128i right) { return _mm_or_si128(left, right); };
    auto const between = [all](__m128i value, char low, char high) { // compared without sign
        __m128i const offset = _mm_sub_epi8(value, all(low));
        return _mm_cmpeq_epi8(_mm_min_epu8(offset, all(static_cast<char>(high - low))), offset);
    };
    auto const bits = [](__m128i found) {
        return std::uint64_t{static_cast<unsigned int>(_mm_movemask_epi8(found))};
    };

    struct quarter {
        std::uint64_t text, white_space, name, value;
    };
    auto const look = [=](char const* at) {
        __m128i const part = _mm_loadu_si128(reinterpret_cast<__m128i const*>(at));
        __m128i const line_feed = equal(part, '\n'), ampersand = equal(part, '&');
        __m128i const tab_or_return = equal(_mm_andnot_si128(all(4), part), '\t'); // they differ in one bit
        __m128i const white = either(either(line_feed, tab_or_return), equal(part, ' '));
        __m128i const angle = equal(either(part, all(2)), '>'); // "<" and ">" differ in one bit
        __m128i const letters = between(either(part, all(0x20)), 'a', 'z');
        __m128i const name = either(either(letters, between(part, '0', '9')), equal(part, '_'));
        __m128i const quote = either(equal(part, '"'), equal(part, '\''));
        return quarter{bits(either(white, either(angle, ampersand))), bits(white), bits(name),
                       bits(either(quote, either(ampersand, line_feed)))};
    };
    auto const joined = [](std::uint64_t one, std::uint64_t two, std::uint64_t three, std::uint64_t four) {
        return one | two << 16 | three << 32 | four << 48;
    };

    quarter const q1 = look(bytes), q2 = look(bytes + 16), q3 = look(bytes + 32), q4 = look(bytes + 48);
    return {joined(q1.text, q2.text, q3.text, q4.text),
            ~joined(q1.white_space, q2.white_space, q3.white_space, q4.white_space),
            ~joined(q1.name, q2.name, q3.name, q4.name), joined(q1.value, q2.value, q3.value, q4.value)};
}
#else
inline run_ends find_run_ends(char const* bytes) noexcept { return find_run_ends_portably(bytes); }
#endif

/// Finds the ends of runs in a text that is read from front to back. The block after the current one is
/// looked at ahead of time, so that nobody waits for it.
class run_finder {
public:
    run_finder(char const* first, char const* last) noexcept : m_last(last) { start_at(first); }

    /// The first byte from `from` on that ends a run of the kind, else the end of the text.
    template <std::uint64_t run_ends::*Kind>
    [[gnu::always_inline]] char const* find(char const* from) noexcept {
        auto const offset = static_cast<std::size_t>(from - m_block);
        if (offset < 64) [[likely]] {
            std::uint64_t const found = m_ends.*Kind >> offset;
            if (found) [[likely]]
                return from + std::countr_zero(found);
        }
        return find_beyond(from, Kind);
    }

private:
    char const* find_beyond(char const* from, std::uint64_t run_ends::*kind) noexcept;
    void start_at(char const* block) noexcept;
    void next_block() noexcept;
    void look_ahead() noexcept;
    run_ends look_at(char const* block) const noexcept;

    char const* m_last;
    char const* m_block; // the 64 bytes that m_ends is about
    run_ends m_ends;
    run_ends m_next_ends; // of the 64 bytes behind these
};

} // namespace ZOLT_2_18::parser::_private

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

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#if defined(__SSE2__)
#include <immintrin.h>
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

inline void find_run_ends_portably(char const* bytes, run_ends& ends) noexcept {
    ends = {};
    for (int i = 0; i < 64; ++i) {
        std::uint64_t const bit = std::uint64_t{1} << i;
        if (is(bytes[i], text_end)) ends.text |= bit;
        if (!is(bytes[i], white_space)) ends.white_space |= bit;
        if (!is(bytes[i], name_part)) ends.name |= bit;
        if (is(bytes[i], value_end)) ends.value |= bit;
    }
}

#if defined(__SSE2__)
/// The same by 16 bytes at a time.
inline void find_run_ends(char const* bytes, run_ends& ends) noexcept {
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
    ends.text = joined(q1.text, q2.text, q3.text, q4.text);
    ends.white_space = ~joined(q1.white_space, q2.white_space, q3.white_space, q4.white_space);
    ends.name = ~joined(q1.name, q2.name, q3.name, q4.name);
    ends.value = joined(q1.value, q2.value, q3.value, q4.value);
}

#define ZOLT_AVX2 [[gnu::target("avx2")]]

/// A row names at most one byte for each low half of a byte, by its place; -1 stands for none.
ZOLT_AVX2 inline __m256i is_in_row(__m128i row, __m256i part) noexcept {
    return _mm256_cmpeq_epi8(_mm256_shuffle_epi8(_mm256_broadcastsi128_si256(row), part), part);
}

ZOLT_AVX2 inline __m256i is_between(__m256i part, char low, char high) noexcept {
    __m256i const offset = _mm256_sub_epi8(part, _mm256_set1_epi8(low));
    __m256i const most = _mm256_set1_epi8(static_cast<char>(high - low));
    return _mm256_cmpeq_epi8(_mm256_min_epu8(offset, most), offset);
}

ZOLT_AVX2 inline __m256i is_name_part(__m256i part) noexcept {
    __m256i const letters = is_between(_mm256_or_si256(part, _mm256_set1_epi8(0x20)), 'a', 'z');
    __m256i const underscores = _mm256_cmpeq_epi8(part, _mm256_set1_epi8('_'));
    return _mm256_or_si256(_mm256_or_si256(letters, is_between(part, '0', '9')), underscores);
}

ZOLT_AVX2 inline std::uint64_t joined_bits(__m256i low, __m256i high) noexcept {
    auto const bits = [](int found) { return std::uint64_t{static_cast<unsigned int>(found)}; };
    return bits(_mm256_movemask_epi8(low)) | bits(_mm256_movemask_epi8(high)) << 32;
}

/// The same by 32 bytes at a time, for a processor with AVX2. The bytes of a kind differ in their low
/// halves, names apart, so that a table tells for each half the only byte that it can belong to.
ZOLT_AVX2 inline void find_run_ends_widely(char const* bytes, run_ends& ends) noexcept {
    __m128i const text = _mm_setr_epi8(' ', -1, -1, -1, -1, -1, '&', -1, -1, '\t', '\n', -1, '<', '\r', '>', -1);
    __m128i const white = _mm_setr_epi8(' ', -1, -1, -1, -1, -1, -1, -1, -1, '\t', '\n', -1, -1, '\r', -1, -1);
    __m128i const value = _mm_setr_epi8(-1, -1, '"', -1, -1, -1, '&', '\'', -1, -1, '\n', -1, -1, -1, -1, -1);
    __m256i const low = _mm256_loadu_si256(reinterpret_cast<__m256i const*>(bytes));
    __m256i const high = _mm256_loadu_si256(reinterpret_cast<__m256i const*>(bytes + 32));
    ends.text = joined_bits(is_in_row(text, low), is_in_row(text, high));
    ends.white_space = ~joined_bits(is_in_row(white, low), is_in_row(white, high));
    ends.name = ~joined_bits(is_name_part(low), is_name_part(high));
    ends.value = joined_bits(is_in_row(value, low), is_in_row(value, high));
}

inline auto best_run_end_finder() noexcept {
    return __builtin_cpu_supports("avx2") ? find_run_ends_widely : find_run_ends;
}

#undef ZOLT_AVX2
#else
inline void find_run_ends(char const* bytes, run_ends& ends) noexcept { find_run_ends_portably(bytes, ends); }
inline auto best_run_end_finder() noexcept { return find_run_ends; }
#endif

/// Finds the ends of runs in a text that is read from front to back.
class run_finder {
public:
    run_finder(char const* first, char const* last) noexcept
        : m_find_run_ends(best_run_end_finder()), m_last(last) {
        look_at(first);
    }

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
    void look_at(char const* block) noexcept;

    void (*m_find_run_ends)(char const*, run_ends&) noexcept;
    char const* m_last;
    char const* m_block; // the 64 bytes that m_ends is about
    run_ends m_ends;
};

} // namespace ZOLT_2_18::parser::_private

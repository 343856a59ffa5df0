// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The conversions' cores for processors with AVX2. They follow the idea of those for AVX-512, told there:
// all lanes are computed as if each held the longest form, then corrected, and what is not wanted is
// squeezed out, here by one byte shuffle for each 16 bytes, whose control comes from a table. What is not
// Unicode in UTF-32, and the ends of UTF-16 and UTF-32 texts, are left to the portable cores.
#include <zolt/strings/unicode_private.hpp>

#include <algorithm>
#include <array>
#include <cstring>

#include <immintrin.h>

#define ZOLT_AVX2 __attribute__((target("avx2,popcnt")))
#define ZOLT_AVX2_INLINE ZOLT_AVX2 __attribute__((always_inline)) inline

namespace ZOLT_2_18::strings::_private {
namespace {

using std::size_t;
using std::uint32_t;
using std::uint64_t;

// ------------------------------------------------------------------------------------------------
// Shuffles that move those of 16 bytes together which an index of eight bits selects

using shuffle = std::array<unsigned char, 16>;

template <typename Keeps>
constexpr std::array<shuffle, 256> make_shuffles(Keeps keeps) {
    std::array<shuffle, 256> table{};
    for (unsigned int index = 0; index < 256; ++index) {
        size_t count = 0;
        for (unsigned char byte = 0; byte < 16; ++byte) {
            if (keeps(index, byte)) table[index][count++] = byte;
        }
        while (count < 16) table[index][count++] = 0x80;
    }
    return table;
}

// Eight lanes of two bytes: the selected lanes.
alignas(64) constexpr auto selected_units = make_shuffles([](unsigned int index, unsigned int byte) {
    return index >> byte / 2 & 1;
});

// Eight lanes of two bytes: the first of each, the second of the selected lanes.
alignas(64) constexpr auto one_or_two_bytes = make_shuffles([](unsigned int index, unsigned int byte) {
    return byte % 2 == 0 || (index >> byte / 2 & 1);
});

// Four lanes of four bytes: the last of each, the third where the index has one of its upper bits, the
// second where it has one of its lower bits.
alignas(64) constexpr auto one_to_three_bytes = make_shuffles([](unsigned int index, unsigned int byte) {
    unsigned int const lane = byte / 4, place = byte % 4;
    return place == 3 || (place == 2 && (index >> (4 + lane) & 1)) || (place == 1 && (index >> lane & 1));
});

// Four lanes of four bytes: the last 1 to 4 of each, as many as the lane's lower bit and twice its upper bit say
// besides the last.
alignas(64) constexpr auto one_to_four_bytes = make_shuffles([](unsigned int index, unsigned int byte) {
    unsigned int const lane = byte / 4, place = byte % 4;
    return place + (index >> lane & 1) + 2 * (index >> (4 + lane) & 1) >= 3;
});

ZOLT_AVX2_INLINE __m128i squeeze(__m128i x, std::array<shuffle, 256> const& shuffles, uint32_t index) {
    return _mm_shuffle_epi8(x, _mm_load_si128(reinterpret_cast<__m128i const*>(&shuffles[index])));
}

// ------------------------------------------------------------------------------------------------
// Vectors

ZOLT_AVX2_INLINE __m256i load(void const* p) { return _mm256_loadu_si256(static_cast<__m256i const*>(p)); }
ZOLT_AVX2_INLINE void store(void* p, __m256i x) { _mm256_storeu_si256(static_cast<__m256i*>(p), x); }
ZOLT_AVX2_INLINE void store(void* p, __m128i x) { _mm_storeu_si128(static_cast<__m128i*>(p), x); }

ZOLT_AVX2_INLINE __m256i all8(int x) { return _mm256_set1_epi8(static_cast<char>(x)); }
ZOLT_AVX2_INLINE __m256i all16(int x) { return _mm256_set1_epi16(static_cast<short>(x)); }
ZOLT_AVX2_INLINE __m256i all32(uint32_t x) { return _mm256_set1_epi32(static_cast<int>(x)); }

ZOLT_AVX2_INLINE __m128i low_half(__m256i x) { return _mm256_castsi256_si128(x); }
ZOLT_AVX2_INLINE __m128i high_half(__m256i x) { return _mm256_extracti128_si256(x, 1); }

// a where the mask's bits are set, else b.
ZOLT_AVX2_INLINE __m256i select(__m256i mask, __m256i a, __m256i b) {
    return _mm256_or_si256(_mm256_and_si256(mask, a), _mm256_andnot_si256(mask, b));
}

ZOLT_AVX2_INLINE __m256i not_below8(__m256i bytes, int limit) {
    return _mm256_cmpeq_epi8(_mm256_max_epu8(bytes, all8(limit)), bytes);
}

ZOLT_AVX2_INLINE __m256i is_zero16(__m256i x) { return _mm256_cmpeq_epi16(x, _mm256_setzero_si256()); }
ZOLT_AVX2_INLINE bool all_zero(__m256i x) { return _mm256_testz_si256(x, x); }

ZOLT_AVX2_INLINE uint32_t mask8(__m256i x) { return static_cast<uint32_t>(_mm256_movemask_epi8(x)); }
ZOLT_AVX2_INLINE uint64_t mask8(__m256i low, __m256i high) { return mask8(low) | uint64_t{mask8(high)} << 32; }

ZOLT_AVX2_INLINE uint32_t mask16(__m256i x) {
    return static_cast<uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(low_half(x), high_half(x))));
}

// ------------------------------------------------------------------------------------------------
// From UTF-8

// 32 bytes with the bytes that stand in front of each.
struct utf8_half {
    __m256i bytes;
    __m256i before1;
    __m256i before2;
    __m256i before3;
};

// The first half of a text or piece, in front of which nothing may be read.
ZOLT_AVX2_INLINE utf8_half first_half(char const* from) {
    __m256i const bytes = load(from);
    __m256i const front = _mm256_permute2x128_si256(bytes, bytes, 0x08);
    return {bytes, _mm256_alignr_epi8(bytes, front, 15), _mm256_alignr_epi8(bytes, front, 14),
            _mm256_alignr_epi8(bytes, front, 13)};
}

ZOLT_AVX2_INLINE utf8_half next_half(char const* from) {
    return {load(from), load(from - 1), load(from - 2), load(from - 3)};
}

// Low and high bytes of units and what is above, right where a character ends.
struct unit_bytes {
    __m256i low;
    __m256i high;
    __m256i plane;
};

ZOLT_AVX2_INLINE unit_bytes decode(utf8_half const& h) {
    __m256i const continuation = _mm256_cmpgt_epi8(all8(0xC0), h.bytes);
    __m256i const low = select(all8(0x3F), h.bytes, _mm256_slli_epi16(h.before1, 6));
    __m256i const high = _mm256_and_si256(_mm256_srli_epi16(h.before1, 2), all8(0x0F));
    __m256i const long_form = _mm256_or_si256(not_below8(h.before2, 0xE0), not_below8(h.before3, 0xF0));
    __m256i const top = _mm256_and_si256(_mm256_and_si256(_mm256_slli_epi16(h.before2, 4), all8(0xF0)), long_form);
    return {_mm256_blendv_epi8(h.bytes, low, continuation),
            _mm256_or_si256(_mm256_and_si256(high, continuation), top), _mm256_setzero_si256()};
}

// Where a four-byte character's third byte stands, the unit becomes 0xD7C0 + (unit >> 4), where its fourth
// stands 0xDC00 + (unit & 0x3FF).
ZOLT_AVX2_INLINE void add_fours(unit_bytes& u, utf8_half const& h, unsigned short const*) {
    __m256i const nibble = all8(0x0F);
    __m256i const shifted = select(nibble, _mm256_srli_epi16(u.low, 4), _mm256_slli_epi16(u.high, 4));
    __m256i const carry = not_below8(shifted, 0x40);
    __m256i const top = _mm256_add_epi8(_mm256_and_si256(_mm256_srli_epi16(u.high, 4), nibble), all8(0xD7));
    __m256i const last = _mm256_or_si256(_mm256_and_si256(u.high, all8(3)), all8(0xDC));
    __m256i const third = not_below8(h.before2, 0xF0), fourth = not_below8(h.before3, 0xF0);
    u.low = _mm256_blendv_epi8(u.low, _mm256_add_epi8(shifted, all8(0xC0)), third);
    u.high = _mm256_blendv_epi8(u.high, _mm256_sub_epi8(top, carry), third);
    u.high = _mm256_blendv_epi8(u.high, last, fourth);
}

// Bits 16 to 20: three of the lead, two of the second byte.
ZOLT_AVX2_INLINE void add_fours(unit_bytes& u, utf8_half const& h, wchar_t const*) {
    __m256i const lead = _mm256_slli_epi16(_mm256_and_si256(h.before3, all8(7)), 2);
    __m256i const second = _mm256_and_si256(_mm256_srli_epi16(h.before2, 4), all8(3));
    u.plane = _mm256_and_si256(_mm256_or_si256(lead, second), not_below8(h.before3, 0xF0));
}

ZOLT_AVX2_INLINE void put_eight(__m128i units, __m128i, uint32_t ends, unsigned short* to) {
    store(to, squeeze(units, selected_units, ends));
}

ZOLT_AVX2_INLINE void put_eight(__m128i units, __m128i planes, uint32_t ends, wchar_t* to) {
    __m256i const low = _mm256_cvtepu16_epi32(squeeze(units, selected_units, ends));
    __m256i const high = _mm256_cvtepu16_epi32(squeeze(planes, selected_units, ends));
    store(to, _mm256_or_si256(low, _mm256_slli_epi32(high, 16)));
}

template <typename Out>
ZOLT_AVX2_INLINE Out* put_half(utf8_half const& h, bool fours, uint32_t ends, Out* to) {
    unit_bytes u = decode(h);
    if (fours) add_fours(u, h, to);
    __m256i const zero = _mm256_setzero_si256();
    __m256i const units1 = _mm256_unpacklo_epi8(u.low, u.high), units2 = _mm256_unpackhi_epi8(u.low, u.high);
    __m256i const planes1 = _mm256_unpacklo_epi8(u.plane, zero), planes2 = _mm256_unpackhi_epi8(u.plane, zero);
    put_eight(low_half(units1), low_half(planes1), ends & 0xFF, to);
    to += std::popcount(ends & 0xFF);
    put_eight(low_half(units2), low_half(planes2), ends >> 8 & 0xFF, to);
    to += std::popcount(ends >> 8 & 0xFF);
    put_eight(high_half(units1), high_half(planes1), ends >> 16 & 0xFF, to);
    to += std::popcount(ends >> 16 & 0xFF);
    put_eight(high_half(units2), high_half(planes2), ends >> 24, to);
    return to + std::popcount(ends >> 24);
}

ZOLT_AVX2_INLINE void put_ascii(__m256i bytes, unsigned short* to) {
    store(to, _mm256_cvtepu8_epi16(low_half(bytes)));
    store(to + 16, _mm256_cvtepu8_epi16(high_half(bytes)));
}

ZOLT_AVX2_INLINE void put_ascii(__m256i bytes, wchar_t* to) {
    __m128i const low = low_half(bytes), high = high_half(bytes);
    store(to, _mm256_cvtepu8_epi32(low));
    store(to + 8, _mm256_cvtepu8_epi32(_mm_unpackhi_epi64(low, low)));
    store(to + 16, _mm256_cvtepu8_epi32(high));
    store(to + 24, _mm256_cvtepu8_epi32(_mm_unpackhi_epi64(high, high)));
}

// The bytes that give a unit: each character's last, for UTF-16 also the third of four.
ZOLT_AVX2_INLINE uint64_t ends(utf8_masks const& now, utf8_masks const& before, uint64_t not_ascii,
                               unsigned short const*) {
    return ~not_ascii | utf8_masks::behind(now.leads & ~now.leads3, before.leads & ~before.leads3, 1) |
           utf8_masks::behind(now.leads3, before.leads3, 2) | utf8_masks::behind(now.leads4, before.leads4, 3);
}

ZOLT_AVX2_INLINE uint64_t ends(utf8_masks const& now, utf8_masks const& before, uint64_t not_ascii,
                               wchar_t const*) {
    return ~not_ascii | utf8_masks::behind(now.leads & ~now.leads3, before.leads & ~before.leads3, 1) |
           utf8_masks::behind(now.leads3 & ~now.leads4, before.leads3 & ~before.leads4, 2) |
           utf8_masks::behind(now.leads4, before.leads4, 3);
}

// Converts the window of 64 bytes at `from`, of which `count` belong to the text; false, with nothing
// written, where a byte belongs to no sequence.
template <typename Out>
ZOLT_AVX2_INLINE bool convert_window(char const* from, size_t count, bool first, utf8_masks& before, Out*& to) {
    __m256i const low = load(from), high = load(from + 32);
    uint64_t const not_ascii = mask8(low, high);
    if (!(not_ascii | before.leads)) {
        put_ascii(low, to);
        put_ascii(high, to + 32);
        to += count;
        return true;
    }
    utf8_masks const now{mask8(not_below8(low, 0xC0), not_below8(high, 0xC0)),
                         mask8(not_below8(low, 0xE0), not_below8(high, 0xE0)),
                         mask8(not_below8(low, 0xF0), not_below8(high, 0xF0))};
    if (now.continuations(before) != (not_ascii & ~now.leads)) return false;
    if (now.leads4 && mask8(not_below8(_mm256_max_epu8(low, high), 0xF8))) return false;
    uint64_t const lanes = count < 64 ? (uint64_t{1} << count) - 1 : ~uint64_t{0};
    uint64_t const kept = ends(now, before, not_ascii, to) & lanes;
    bool const fours = now.leads4 | before.leads4;
    to = put_half(first ? first_half(from) : next_half(from), fours, static_cast<uint32_t>(kept), to);
    to = put_half(next_half(from + 32), fours, static_cast<uint32_t>(kept >> 32), to);
    before = now;
    return true;
}

// Converts until a window holds a malformed sequence; then false, and `at` is in front of the window.
template <typename Out>
ZOLT_AVX2_INLINE bool convert_windows(cursor<char, Out>& at, char const* stop, char const* end) {
    utf8_masks before{};
    bool good = true;
    for (bool first = true; good && at.from < stop && at.left(end) >= 64; first = false) {
        good = convert_window(at.from, 64, first, before, at.to);
        if (good) at.from += 64;
    }
    step_back(at, before);
    if (good && at.from < stop && at.left(end) < 64) {
        char last[64] = {};
        std::memcpy(last, at.from, at.left(end));
        utf8_masks none{};
        good = convert_window(last, at.left(end), true, none, at.to);
        if (good) at.from = end;
    }
    return good;
}

ZOLT_AVX2 from_8_to_16 utf8_to_utf16_core(from_8_to_16 at, char const* stop, char const* end) {
    return convert_windows(at, stop, end) ? at : stuck<char, unsigned short>;
}

ZOLT_AVX2 from_8_to_32 utf8_to_utf32_core(from_8_to_32 at, char const* stop, char const* end) {
    while (!convert_windows(at, stop, end)) {
        at = portable_cores.utf8_to_utf32(at, at.from + std::min<size_t>(64, at.left(end)), end);
    }
    return at;
}

// ------------------------------------------------------------------------------------------------
// To UTF-8

// Masks of the classes of 16 units.
struct unit_classes {
    __m256i two; // two bytes or fewer
    __m256i ascii;
};

ZOLT_AVX2_INLINE unit_classes classify(__m256i units) {
    return {is_zero16(_mm256_and_si256(units, all16(0xF800))), is_zero16(_mm256_and_si256(units, all16(0xFF80)))};
}

// The lower six bits of a unit in its lane's second byte, the six above in its first.
ZOLT_AVX2_INLINE __m256i two_fields(__m256i units) {
    return select(all16(0x3F00), _mm256_slli_epi16(units, 8),
                  _mm256_and_si256(_mm256_srli_epi16(units, 6), all16(0x3F)));
}

ZOLT_AVX2_INLINE char* put_two(__m256i units, unit_classes const& c, char* to) {
    __m256i const two = _mm256_or_si256(two_fields(units), all16(0x80C0));
    __m256i const x = _mm256_blendv_epi8(two, units, c.ascii);
    uint32_t const longer = ~mask16(c.ascii) & 0xFFFF;
    store(to, squeeze(low_half(x), one_or_two_bytes, longer & 0xFF));
    to += 8 + std::popcount(longer & 0xFF);
    store(to, squeeze(high_half(x), one_or_two_bytes, longer >> 8));
    return to + 8 + std::popcount(longer >> 8);
}

// The second and the third byte of a unit's three; the other forms corrected to stand at their end.
ZOLT_AVX2_INLINE __m256i last_two_bytes(__m256i units, unit_classes const& c) {
    __m256i const marked = _mm256_or_si256(two_fields(units), all16(0x8080));
    __m256i const two = _mm256_or_si256(marked, _mm256_and_si256(c.two, all16(0x0040)));
    return _mm256_blendv_epi8(two, _mm256_slli_epi16(units, 8), c.ascii);
}

ZOLT_AVX2_INLINE char* put_four_units(__m128i x, uint32_t three, uint32_t two, char* to) {
    uint32_t const index = (three & 0xF) | (two & 0xF) << 4;
    store(to, squeeze(x, one_to_three_bytes, index));
    return to + 4 + std::popcount(index);
}

// `three` and `two` have a bit for each unit of three, and of two or more, bytes.
ZOLT_AVX2_INLINE char* put_three(__m256i units, __m256i last_two, uint32_t three, uint32_t two, char* to) {
    __m256i const lead =
        _mm256_or_si256(_mm256_and_si256(_mm256_srli_epi16(units, 4), all16(0x0F00)), all16(0xE000));
    __m256i const x1 = _mm256_unpacklo_epi16(lead, last_two), x2 = _mm256_unpackhi_epi16(lead, last_two);
    to = put_four_units(low_half(x1), three, two, to);
    to = put_four_units(low_half(x2), three >> 4, two >> 4, to);
    to = put_four_units(high_half(x1), three >> 8, two >> 8, to);
    return put_four_units(high_half(x2), three >> 12, two >> 12, to);
}

ZOLT_AVX2_INLINE __m256i find_surrogates(__m256i units) {
    return _mm256_cmpeq_epi16(_mm256_and_si256(units, all16(0xF800)), all16(0xD800));
}

// The first two of a pair's four bytes in the high surrogate's lane, the others in the low one's.
ZOLT_AVX2_INLINE __m256i encode_pairs(__m256i last_two, __m256i units, __m256i high, __m256i low) {
    __m256i const top = _mm256_add_epi16(_mm256_and_si256(units, all16(0x3FF)), all16(0x40)); // code >> 10
    __m256i const second = _mm256_and_si256(_mm256_slli_epi16(top, 6), all16(0x3F00));
    __m256i const first_two = _mm256_or_si256(_mm256_or_si256(_mm256_srli_epi16(top, 8), second), all16(0x80F0));
    __m256i const front = _mm256_permute2x128_si256(units, units, 0x08);
    __m256i const before = _mm256_alignr_epi8(units, front, 14);
    __m256i const last = select(all16(0x0030), _mm256_slli_epi16(before, 4), last_two);
    return _mm256_blendv_epi8(_mm256_blendv_epi8(last_two, last, low), first_two, high);
}

// Narrows 32 units when all are ASCII.
ZOLT_AVX2_INLINE bool put_ascii(unsigned short const* from, char* to) {
    __m256i const first = load(from), second = load(from + 16);
    if (!_mm256_testz_si256(_mm256_or_si256(first, second), all16(0xFF80))) return false;
    store(to, _mm256_permute4x64_epi64(_mm256_packus_epi16(first, second), 0xD8));
    return true;
}

ZOLT_AVX2 from_16_to_8 utf16_to_utf8_core(from_16_to_8 at, unsigned short const* stop, unsigned short const* end) {
    while (at.from < stop && at.left(end) >= 32) {
        if (put_ascii(at.from, at.to)) {
            at.from += 32;
            at.to += 32;
            continue;
        }
        __m256i const units = load(at.from);
        unit_classes const c = classify(units);
        size_t count = 16;
        if (mask8(c.two) == 0xFFFFFFFF) {
            at.to = put_two(units, c, at.to);
        } else {
            __m256i last_two = last_two_bytes(units, c);
            __m256i const found = find_surrogates(units);
            uint32_t three = ~mask16(c.two) & 0xFFFF;
            uint32_t const two = ~mask16(c.ascii) & 0xFFFF;
            if (!all_zero(found)) {
                __m256i const low = _mm256_and_si256(found, _mm256_cmpgt_epi16(units, all16(0xDBFF)));
                __m256i const high = _mm256_andnot_si256(low, found);
                uint32_t const highs = mask16(high);
                if (mask16(low) != (highs << 1 & 0xFFFF)) return stuck<unsigned short, char>;
                last_two = encode_pairs(last_two, units, high, low);
                three &= ~(highs | highs << 1);
                if (highs >> 15) count = 15; // the pair that the window cuts comes next
            }
            at.to = put_three(units, last_two, three, two, at.to) - (count < 16 ? 2 : 0);
        }
        at.from += count;
    }
    return at.from < stop ? portable_cores.utf16_to_utf8(at, stop, end) : at;
}

// ------------------------------------------------------------------------------------------------
// Between UTF-16 and UTF-32, and from UTF-32 to UTF-8

// The numbers of those of eight lanes that an index selects, a byte for each, in front.
alignas(64) constexpr auto selected_lanes = [] {
    std::array<uint64_t, 256> table{};
    for (unsigned int index = 0; index < 256; ++index) {
        for (uint64_t lane = 0, place = 0; lane < 8; ++lane) {
            if (index >> lane & 1) table[index] |= lane << 8 * place++;
        }
    }
    return table;
}();

// Eight codes without the lanes that `lows` has a bit for, in which the second half of a pair stands.
ZOLT_AVX2_INLINE wchar_t* put_codes(__m256i codes, uint32_t lows, wchar_t* to) {
    void const* const lanes = &selected_lanes[~lows & 0xFF];
    __m256i const order = _mm256_cvtepu8_epi32(_mm_loadl_epi64(static_cast<__m128i const*>(lanes)));
    store(to, _mm256_permutevar8x32_epi32(codes, order));
    return to + 8 - std::popcount(lows & 0xFF);
}

ZOLT_AVX2 from_16_to_32 utf16_to_utf32_core(from_16_to_32 at, unsigned short const* stop,
                                            unsigned short const* end) {
    while (at.from < stop && at.left(end) > 16) {
        __m256i const units = load(at.from);
        __m256i const found = find_surrogates(units);
        if (all_zero(found)) {
            store(at.to, _mm256_cvtepu16_epi32(low_half(units)));
            store(at.to + 8, _mm256_cvtepu16_epi32(high_half(units)));
            at.from += 16;
            at.to += 16;
            continue;
        }
        __m256i const low = _mm256_and_si256(found, _mm256_cmpgt_epi16(units, all16(0xDBFF)));
        __m256i const high = _mm256_andnot_si256(low, found);
        uint32_t const highs = mask8(high), lows = mask16(low);
        if (mask8(low) != highs << 2) return stuck<unsigned short, wchar_t>;

        // The lower and the upper half of each code; a pair's stands in the lane of its first unit.
        __m256i const last_ten = _mm256_and_si256(load(at.from + 1), all16(0x3FF));
        __m256i const lower =
            _mm256_blendv_epi8(units, _mm256_or_si256(_mm256_slli_epi16(units, 10), last_ten), high);
        __m256i const first_four = _mm256_srli_epi16(_mm256_and_si256(units, all16(0x3FF)), 6);
        __m256i const upper = _mm256_and_si256(_mm256_add_epi16(first_four, all16(1)), high);
        __m256i const l = _mm256_permute4x64_epi64(lower, 0xD8), u = _mm256_permute4x64_epi64(upper, 0xD8);
        at.to = put_codes(_mm256_unpacklo_epi16(l, u), lows, at.to);
        at.to = put_codes(_mm256_unpackhi_epi16(l, u), lows >> 8, at.to);
        at.from += 16;
        if (highs >> 31) { // the pair that the window cuts comes next; a branch: the next load need not wait
            --at.from;
            --at.to;
        }
    }
    return at.from < stop ? portable_cores.utf16_to_utf32(at, stop, end) : at;
}

ZOLT_AVX2_INLINE __m256i is_above(__m256i codes, uint32_t limit) { return _mm256_cmpgt_epi32(codes, all32(limit)); }

ZOLT_AVX2_INLINE uint32_t mask32(__m256i x) {
    return static_cast<uint32_t>(_mm256_movemask_ps(_mm256_castsi256_ps(x)));
}

// Neither surrogates nor values beyond Unicode.
ZOLT_AVX2_INLINE bool are_characters(__m256i codes) {
    __m256i const surrogates = _mm256_cmpeq_epi32(_mm256_and_si256(codes, all32(0xFFFFF800)), all32(0xD800));
    __m256i const beyond =
        _mm256_or_si256(is_above(codes, 0x10FFFF), _mm256_cmpgt_epi32(_mm256_setzero_si256(), codes));
    return all_zero(_mm256_or_si256(surrogates, beyond));
}

ZOLT_AVX2_INLINE char* put_four_codes(__m128i x, uint32_t once, uint32_t twice, char* to) {
    store(to, squeeze(x, one_to_four_bytes, once | twice << 4));
    return to + 4 + std::popcount(once) + 2 * std::popcount(twice);
}

// Eight characters of any length; each one's bytes stand at the end of its lane.
ZOLT_AVX2_INLINE char* put_codes(__m256i codes, char* to) {
    __m256i const two = is_above(codes, 0x7F), three = is_above(codes, 0x7FF), four = is_above(codes, 0xFFFF);
    __m256i const last = _mm256_slli_epi32(codes, 24);
    __m256i const fields =
        _mm256_or_si256(_mm256_or_si256(_mm256_and_si256(last, all32(0x3F000000)),
                                        _mm256_and_si256(_mm256_slli_epi32(codes, 10), all32(0x003F0000))),
                        _mm256_or_si256(_mm256_and_si256(_mm256_srli_epi32(codes, 4), all32(0x00003F00)),
                                        _mm256_srli_epi32(codes, 18)));
    __m256i const marks = _mm256_blendv_epi8(_mm256_blendv_epi8(all32(0x80C00000), all32(0x8080E000), three),
                                             all32(0x808080F0), four);
    __m256i const x = _mm256_blendv_epi8(last, _mm256_or_si256(fields, marks), two);
    uint32_t const once = mask32(_mm256_xor_si256(_mm256_xor_si256(two, three), four)), twice = mask32(three);
    to = put_four_codes(low_half(x), once & 0xF, twice & 0xF, to);
    return put_four_codes(high_half(x), once >> 4, twice >> 4, to);
}

// Eight characters, those from U+FFFF on as pairs, whose first unit is what 0xD800 and the code's upper bits give.
ZOLT_AVX2_INLINE unsigned short* put_codes(__m256i codes, unsigned short* to) {
    __m256i const is_pair = is_above(codes, 0xFFFE);
    __m256i const first = _mm256_add_epi32(_mm256_srli_epi32(codes, 10), all32(0xD800));
    __m256i const second =
        _mm256_or_si256(_mm256_slli_epi32(_mm256_and_si256(codes, all32(0x3FF)), 16), all32(0xDC000000));
    __m256i const units = _mm256_blendv_epi8(codes, _mm256_or_si256(first, second), is_pair);
    uint32_t const kept = mask16(_mm256_or_si256(is_pair, all32(0xFFFF)));
    store(to, squeeze(low_half(units), selected_units, kept & 0xFF));
    to += std::popcount(kept & 0xFF);
    store(to, squeeze(high_half(units), selected_units, kept >> 8));
    return to + std::popcount(kept >> 8);
}

// The next eight codes, at least one of which is above what the directions' short forms take.
template <typename Out>
ZOLT_AVX2_INLINE bool put_long_codes(cursor<wchar_t, Out>& at, wchar_t const* end, core<wchar_t, Out> portable) {
    __m256i const codes = load(at.from);
    if (are_characters(codes)) {
        at.to = put_codes(codes, at.to);
        at.from += 8;
        return true;
    }
    at = portable(at, at.from + 8, end);
    return at.to != nullptr;
}

// 16 codes as units of UTF-16; false when one is above U+FFFF.
ZOLT_AVX2_INLINE bool narrow(wchar_t const* from, __m256i& units) {
    __m256i const first = load(from), second = load(from + 8);
    if (!_mm256_testz_si256(_mm256_or_si256(first, second), all32(0xFFFF0000))) return false;
    units = _mm256_permute4x64_epi64(_mm256_packus_epi32(first, second), 0xD8);
    return true;
}

ZOLT_AVX2 from_32_to_8 utf32_to_utf8_core(from_32_to_8 at, wchar_t const* stop, wchar_t const* end) {
    while (at.from < stop && at.left(end) >= 16) {
        __m256i units;
        if (!narrow(at.from, units)) {
            if (!put_long_codes(at, end, portable_cores.utf32_to_utf8)) return at;
            continue;
        }
        unit_classes const c = classify(units);
        uint32_t const two = ~mask16(c.ascii) & 0xFFFF, three = ~mask16(c.two) & 0xFFFF;
        if (!two) {
            store(at.to, _mm_packus_epi16(low_half(units), high_half(units)));
            at.to += 16;
        } else if (!three) {
            at.to = put_two(units, c, at.to);
        } else {
            if (!all_zero(find_surrogates(units))) return stuck<wchar_t, char>;
            at.to = put_three(units, last_two_bytes(units, c), three, two, at.to);
        }
        at.from += 16;
    }
    return at.from < stop ? portable_cores.utf32_to_utf8(at, stop, end) : at;
}

ZOLT_AVX2 from_32_to_16 utf32_to_utf16_core(from_32_to_16 at, wchar_t const* stop, wchar_t const* end) {
    while (at.from < stop && at.left(end) >= 16) {
        __m256i units;
        if (narrow(at.from, units) && !mask8(_mm256_cmpeq_epi16(units, all16(0xFFFF)))) {
            if (!all_zero(find_surrogates(units))) return stuck<wchar_t, unsigned short>;
            store(at.to, units);
            at.from += 16;
            at.to += 16;
        } else if (!put_long_codes(at, end, portable_cores.utf32_to_utf16)) {
            return at;
        }
    }
    return at.from < stop ? portable_cores.utf32_to_utf16(at, stop, end) : at;
}

} // namespace

core_set const avx2_cores{utf8_to_utf16_core,  utf8_to_utf32_core, utf16_to_utf8_core,
                          utf16_to_utf32_core, utf32_to_utf8_core, utf32_to_utf16_core};

} // namespace ZOLT_2_18::strings::_private

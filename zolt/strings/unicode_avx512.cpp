// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The conversions' cores for processors with AVX-512 and its byte shuffles (VBMI, VBMI2).
//
// All follow one idea: give each unit of input a lane that is wide enough for everything it may become,
// compute all lanes at once as if each held the longest form, correct the shorter ones under masks, and
// squeeze out the parts that are not wanted with one compress. Where all characters of a window are short,
// a plain widening or narrowing does. A text's last, short window is read under a mask.
//
// Reading UTF-8 goes the other way: each byte that ends a character, together with the bytes in front of
// it, gives the low and the high byte of its unit. Windows are always 64 bytes; a character that crosses
// into the next window ends there, and `utf8_masks` remembers its lead.
#include <zolt/strings/unicode_private.hpp>

#include <bit>

#include <immintrin.h>

#if !defined(__clang__)
// g++ 12 takes the undefined operands inside its own intrinsics for values that are used.
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

#define ZOLT_AVX512 __attribute__((target("avx512f,avx512bw,avx512vl,avx512vbmi,avx512vbmi2,bmi,bmi2,popcnt")))
#define ZOLT_AVX512_INLINE ZOLT_AVX512 __attribute__((always_inline)) inline

namespace ZOLT_2_18::strings::_private {
namespace {

using std::size_t;
using std::uint32_t;
using std::uint64_t;

ZOLT_AVX512_INLINE __m512i load(void const* p) { return _mm512_loadu_si512(p); }
ZOLT_AVX512_INLINE void store(void* p, __m512i x) { _mm512_storeu_si512(p, x); }

// A window of up to 32 units of UTF-16 or 16 of UTF-32, short at the text's end.
struct window {
    __m512i units;
    size_t count;
};

ZOLT_AVX512_INLINE window load_window(unsigned short const* from, size_t left) {
    if (left >= 32) return {load(from), 32};
    return {_mm512_maskz_loadu_epi16(_cvtu32_mask32((1u << left) - 1), from), left};
}

ZOLT_AVX512_INLINE window load_window(wchar_t const* from, size_t left) {
    if (left >= 16) return {load(from), 16};
    return {_mm512_maskz_loadu_epi32(_cvtu32_mask16((1u << left) - 1), from), left};
}

ZOLT_AVX512_INLINE uint32_t low_bits(size_t count) { return _bzhi_u32(0xFFFFFFFF, static_cast<uint32_t>(count)); }

ZOLT_AVX512_INLINE uint64_t low_bits_64(size_t count) {
    return count < 64 ? (uint64_t{1} << count) - 1 : ~uint64_t{0};
}

ZOLT_AVX512_INLINE __m512i load_bytes(char const* from, size_t count) {
    return count == 64 ? load(from) : _mm512_maskz_loadu_epi8(low_bits_64(count), from);
}

ZOLT_AVX512_INLINE __m512i widen_low(__m512i units) { return _mm512_cvtepu16_epi32(_mm512_castsi512_si256(units)); }

ZOLT_AVX512_INLINE __m512i widen_high(__m512i units) {
    return _mm512_cvtepu16_epi32(_mm512_extracti64x4_epi64(units, 1));
}

ZOLT_AVX512_INLINE __m512i all8(int x) { return _mm512_set1_epi8(static_cast<char>(x)); }
ZOLT_AVX512_INLINE __m512i all16(int x) { return _mm512_set1_epi16(static_cast<short>(x)); }
ZOLT_AVX512_INLINE __m512i all32(uint32_t x) { return _mm512_set1_epi32(static_cast<int>(x)); }

// A constant that is made once in front of a loop. Left to itself, the compiler makes those of the rarer
// branches anew each time, on the port that the shuffles need.
ZOLT_AVX512_INLINE __m512i pinned(__m512i x) {
    asm("" : "+v"(x));
    return x;
}

// Whether a window takes the form for long characters: it does when it holds one and when one of the last
// windows did, since in a mixed text nobody can foretell the next.
class habit {
public:
    ZOLT_AVX512_INLINE bool keep(bool needed) {
        m_last = m_last >> 1 | uint32_t{needed} << 8;
        return m_last;
    }
    bool kept() const { return m_last; }

private:
    uint32_t m_last = 0; // a bit for each window
};

// ------------------------------------------------------------------------------------------------
// From UTF-8

struct utf8_window {
    __m512i bytes;
    __m512i before1; // the byte in front of each
    __m512i before2;
    __m512i before3;
};

// `first`: nothing in front of the window belongs to its characters, and it may be the text's begin.
ZOLT_AVX512_INLINE utf8_window look_back(char const* from, __m512i bytes, size_t count, bool first) {
    if (first) {
        __m512i const front = _mm512_alignr_epi32(bytes, _mm512_setzero_si512(), 12);
        return {bytes, _mm512_alignr_epi8(bytes, front, 15), _mm512_alignr_epi8(bytes, front, 14),
                _mm512_alignr_epi8(bytes, front, 13)};
    }
    return {bytes, load_bytes(from - 1, count), load_bytes(from - 2, count), load_bytes(from - 3, count)};
}

// Units as two vectors of bytes, right where a character of up to three bytes ends.
struct unit_bytes {
    __m512i low;
    __m512i high;
};

ZOLT_AVX512_INLINE unit_bytes decode(utf8_window const& w, uint64_t continuations, uint64_t thirds) {
    __m512i const low = _mm512_ternarylogic_epi32(all8(0x3F), w.bytes, _mm512_slli_epi16(w.before1, 6), 0xCA);
    __m512i const high = _mm512_and_si512(_mm512_srli_epi16(w.before1, 2), all8(0x0F));
    unit_bytes result{_mm512_mask_mov_epi8(w.bytes, continuations, low),
                      _mm512_maskz_mov_epi8(continuations, high)};
    if (thirds) {
        __m512i const top = _mm512_ternarylogic_epi32(all8(0x0F), high, _mm512_slli_epi16(w.before2, 4), 0xCA);
        result.high = _mm512_mask_mov_epi8(result.high, thirds, top);
    }
    return result;
}

struct pair_constants {
    __m512i nibble = pinned(all8(0x0F));
    __m512i carrying = pinned(all8(0x40));
    __m512i low = pinned(all8(0xC0));
    __m512i high = pinned(all8(0xD7));
    __m512i high_carried = pinned(all8(0xD8));
    __m512i last_bits = pinned(all8(0x03));
    __m512i last = pinned(all8(0xDC));

    ZOLT_AVX512_INLINE pair_constants() {}
};

// Where a four-byte character's third byte stands, the unit becomes 0xD7C0 + (unit >> 4), where its fourth
// stands 0xDC00 + (unit & 0x3FF).
ZOLT_AVX512_INLINE void make_pairs(unit_bytes& u, uint64_t high_units, uint64_t low_units,
                                   pair_constants const& k) {
    __m512i const shifted =
        _mm512_ternarylogic_epi32(k.nibble, _mm512_srli_epi16(u.low, 4), _mm512_slli_epi16(u.high, 4), 0xCA);
    __mmask64 const carry = _mm512_cmpge_epu8_mask(shifted, k.carrying);
    __m512i const top = _mm512_and_si512(_mm512_srli_epi16(u.high, 4), k.nibble);
    __m512i const last = _mm512_ternarylogic_epi32(u.high, k.last_bits, k.last, 0xEA);
    u.low = _mm512_mask_add_epi8(u.low, high_units, shifted, k.low);
    u.high = _mm512_mask_mov_epi8(u.high, low_units, last);
    u.high = _mm512_mask_add_epi8(u.high, high_units, top, k.high);
    u.high = _mm512_mask_add_epi8(u.high, _kand_mask64(carry, high_units), top, k.high_carried);
}

// The two vectors' bytes at `ends`, moved together and interleaved: 64 units.
ZOLT_AVX512_INLINE void interleave(unit_bytes const& u, uint64_t ends, __m512i& first, __m512i& second) {
    __m512i const order = _mm512_setr_epi64(0, 4, 1, 5, 2, 6, 3, 7);
    __m512i const low = _mm512_permutexvar_epi64(order, _mm512_maskz_compress_epi8(ends, u.low));
    __m512i const high = _mm512_permutexvar_epi64(order, _mm512_maskz_compress_epi8(ends, u.high));
    first = _mm512_unpacklo_epi8(low, high);
    second = _mm512_unpackhi_epi8(low, high);
}

ZOLT_AVX512_INLINE void put_ascii(__m512i bytes, unsigned short* to) {
    store(to, _mm512_cvtepu8_epi16(_mm512_castsi512_si256(bytes)));
    store(to + 32, _mm512_cvtepu8_epi16(_mm512_extracti64x4_epi64(bytes, 1)));
}

ZOLT_AVX512_INLINE void put_ascii(__m512i bytes, wchar_t* to) {
    store(to, _mm512_cvtepu8_epi32(_mm512_castsi512_si128(bytes)));
    store(to + 16, _mm512_cvtepu8_epi32(_mm512_extracti32x4_epi32(bytes, 1)));
    store(to + 32, _mm512_cvtepu8_epi32(_mm512_extracti32x4_epi32(bytes, 2)));
    store(to + 48, _mm512_cvtepu8_epi32(_mm512_extracti32x4_epi32(bytes, 3)));
}

// Units that the characters give which end in the window.
ZOLT_AVX512_INLINE unsigned short* put_units(utf8_window const& w, uint64_t continuations, uint64_t lanes,
                                             utf8_masks const& now, utf8_masks const& before,
                                             pair_constants const& k, unsigned short* to) {
    uint64_t const thirds = utf8_masks::behind(now.leads3, before.leads3, 2);
    uint64_t const fourths = utf8_masks::behind(now.leads4, before.leads4, 3);
    uint64_t const seconds = utf8_masks::behind(now.leads & ~now.leads3, before.leads & ~before.leads3, 1);
    unit_bytes u = decode(w, continuations, thirds | fourths);
    if (fourths | now.leads4) make_pairs(u, utf8_masks::behind(now.leads4, before.leads4, 2), fourths, k);
    uint64_t const ends = (~(continuations | now.leads) | seconds | thirds | fourths) & lanes;
    __m512i first, second;
    interleave(u, ends, first, second);
    auto const count = static_cast<size_t>(std::popcount(ends));
    store(to, first);
    if (count > 32) store(to + 32, second);
    return to + count;
}

ZOLT_AVX512_INLINE __m512i add_plane(__m512i units, __m128i plane) {
    return _mm512_or_si512(units, _mm512_slli_epi32(_mm512_cvtepu8_epi32(plane), 16));
}

ZOLT_AVX512_INLINE wchar_t* put_units(utf8_window const& w, uint64_t continuations, uint64_t lanes,
                                      utf8_masks const& now, utf8_masks const& before, pair_constants const&,
                                      wchar_t* to) {
    uint64_t const thirds = utf8_masks::behind(now.leads3 & ~now.leads4, before.leads3 & ~before.leads4, 2);
    uint64_t const fourths = utf8_masks::behind(now.leads4, before.leads4, 3);
    uint64_t const seconds = utf8_masks::behind(now.leads & ~now.leads3, before.leads & ~before.leads3, 1);
    unit_bytes const u = decode(w, continuations, thirds | fourths);
    uint64_t const ends = (~(continuations | now.leads) | seconds | thirds | fourths) & lanes;
    auto const count = static_cast<size_t>(std::popcount(ends));
    __m512i first, second;
    interleave(u, ends, first, second);
    __m512i planes = _mm512_setzero_si512();
    if (fourths) {
        // bits 16 to 20: three of the lead, two of the second byte
        __m512i const lead = _mm512_slli_epi16(_mm512_and_si512(w.before3, all8(7)), 2);
        __m512i const second_byte = _mm512_and_si512(_mm512_srli_epi16(w.before2, 4), all8(3));
        planes =
            _mm512_maskz_compress_epi8(ends, _mm512_maskz_mov_epi8(fourths, _mm512_or_si512(lead, second_byte)));
    }
    store(to, add_plane(widen_low(first), _mm512_castsi512_si128(planes)));
    store(to + 16, add_plane(widen_high(first), _mm512_extracti32x4_epi32(planes, 1)));
    if (count > 32) {
        store(to + 32, add_plane(widen_low(second), _mm512_extracti32x4_epi32(planes, 2)));
        store(to + 48, add_plane(widen_high(second), _mm512_extracti32x4_epi32(planes, 3)));
    }
    return to + count;
}

// 16 characters of four bytes as two numbers a character: the upper 9 of its 21 bits and the lower 12.
ZOLT_AVX512_INLINE __m512i join_fours(__m512i bytes) {
    __m512i const bits = _mm512_and_si512(bytes, all32(0x3F3F3F07));
    return _mm512_maddubs_epi16(bits, all16(0x0140));
}

ZOLT_AVX512_INLINE unsigned short* put_fours(__m512i bytes, unsigned short* to) {
    __m512i const parts = join_fours(bytes);
    __m512i const low = _mm512_ternarylogic_epi32(parts, all32(0x03FF0000), _mm512_srli_epi32(parts, 26), 0xEA);
    __m512i const high = _mm512_and_si512(_mm512_slli_epi32(parts, 2), all32(0x7FC));
    store(to, _mm512_add_epi32(_mm512_or_si512(low, high), all32(0xDC00D7C0)));
    return to + 32;
}

ZOLT_AVX512_INLINE wchar_t* put_fours(__m512i bytes, wchar_t* to) {
    store(to, _mm512_madd_epi16(join_fours(bytes), all32(0x00011000)));
    return to + 16;
}

// Whole windows of ASCII, up to where one begins at `stop` or behind it or another character stands. The
// first goes but so far that the others are written to whole cache lines.
template <typename Out>
ZOLT_AVX512_INLINE bool copy_ascii(cursor<char, Out>& at, char const* stop, char const* end) {
    char const* const begin = at.from;
    size_t step = 64 - reinterpret_cast<std::uintptr_t>(at.to) % 64 / sizeof(Out);
    while (at.from < stop && at.left(end) >= 64) {
        __m512i const bytes = load(at.from);
        if (_mm512_movepi8_mask(bytes)) break;
        put_ascii(bytes, at.to);
        at.from += step;
        at.to += step;
        step = 64;
    }
    return at.from != begin;
}

// One window; false, with nothing written, where it holds a byte that no sequence explains.
template <typename Out>
ZOLT_AVX512_INLINE bool convert_window(cursor<char, Out>& at, size_t count, bool first, utf8_masks& before,
                                       pair_constants const& k) {
    uint64_t const lanes = low_bits_64(count);
    __m512i const bytes = load_bytes(at.from, count);
    uint64_t const not_ascii = _mm512_movepi8_mask(bytes);
    utf8_masks now{};
    now.leads = _mm512_cmpge_epu8_mask(bytes, all8(0xC0));
    now.leads3 = _mm512_cmpge_epu8_mask(bytes, all8(0xE0));
    now.leads4 = _mm512_cmpge_epu8_mask(bytes, all8(0xF0));
    uint64_t const continuations = not_ascii & ~now.leads;
    if (now.continuations(before) != continuations) return false;
    if (now.leads4 && _mm512_cmpge_epu8_mask(bytes, all8(0xF8))) return false;
    if (now.leads4 == 0x1111111111111111 && now.leads == now.leads4) {
        at.to = put_fours(bytes, at.to);
    } else {
        at.to = put_units(look_back(at.from, bytes, count, first), continuations, lanes, now, before, k, at.to);
    }
    at.from += count;
    before = now;
    return true;
}

ZOLT_AVX512 from_8_to_16 utf8_to_utf16_core(from_8_to_16 at, char const* stop, char const* end) {
    pair_constants const k;
    utf8_masks before{};
    bool first = true;
    while (at.from < stop && at.left(end) >= 64) {
        if (!before.leads && copy_ascii(at, stop, end)) {
            first = false;
            continue;
        }
        if (!convert_window(at, 64, first, before, k)) return stuck<char, unsigned short>;
        first = false;
    }
    if (at.from < stop) {
        if (!convert_window(at, at.left(end), first, before, k)) return stuck<char, unsigned short>;
    } else {
        step_back(at, before);
    }
    return at;
}

ZOLT_AVX512 from_8_to_32 utf8_to_utf32_core(from_8_to_32 at, char const* stop, char const* end) {
    pair_constants const k;
    utf8_masks before{};
    bool first = true;
    while (at.from < stop) {
        if (!before.leads && copy_ascii(at, stop, end)) {
            first = false;
            continue;
        }
        size_t const count = at.left(end) < 64 ? at.left(end) : 64;
        char const* const window_end = at.from + count;
        if (convert_window(at, count, first, before, k)) {
            first = false;
        } else {
            step_back(at, before);
            at = portable_cores.utf8_to_utf32(at, window_end, end);
            before = {};
            first = true;
        }
    }
    step_back(at, before);
    return at;
}

// ------------------------------------------------------------------------------------------------
// To UTF-8

// The bits of `mask`, from the lowest on, at the places that are set in `pattern`. Both halves of the
// pattern are alike.
ZOLT_AVX512_INLINE uint64_t spread(uint32_t mask, uint64_t pattern) {
#if defined(__x86_64__)
    return _pdep_u64(mask, pattern);
#else
    auto const half = static_cast<uint32_t>(pattern);
    return _pdep_u32(mask, half) | static_cast<uint64_t>(_pdep_u32(mask >> std::popcount(half), half)) << 32;
#endif
}

ZOLT_AVX512_INLINE char* put_bytes(__m512i x, uint64_t kept, char* to) {
    store(to, _mm512_maskz_compress_epi8(kept, x));
    return to + std::popcount(kept);
}

// Classes of the units of a window; 0 behind its end.
struct unit_classes {
    uint32_t lanes;     // all that belong to the window
    uint32_t not_ascii; // two bytes or more
    uint32_t three;     // three bytes, surrogates included
};

ZOLT_AVX512_INLINE unit_classes classify(__m512i units, size_t count) {
    return {low_bits(count), _mm512_test_epi16_mask(units, all16(0xFF80)),
            _mm512_test_epi16_mask(units, all16(0xF800))};
}

struct encoder_constants {
    __m512i fields = pinned(_mm512_set1_epi64(0x30'36'20'26'10'16'00'06));
    __m512i field_bits = pinned(all16(0x3F3F));
    __m512i marks = pinned(all16(0x8080));
    __m512i two_mark = pinned(all16(0x0040));
    __m512i lead_bits = pinned(all16(0x0F00));
    __m512i lead_mark = pinned(all16(0xE000));
    __m512i order = pinned(_mm512_setr_epi64(0, 4, 1, 5, 2, 6, 3, 7));
    __m512i top_bits = pinned(all16(0xF800));
    __m512i surrogate = pinned(all16(0xD800));
    __m512i low_surrogate_bit = pinned(all16(0x0400));
    __m512i to_top = pinned(all16(0x40 - 0xD800));
    __m512i second_bits = pinned(all16(0x3F00));
    __m512i third_bits = pinned(all16(0x0030));
    __m512i pair_marks = pinned(all16(0x80F0));

    ZOLT_AVX512_INLINE encoder_constants() {}
};

// The second and the third byte of a unit's three; the other forms corrected to stand at their end.
ZOLT_AVX512_INLINE __m512i last_two_bytes(__m512i units, unit_classes const& c, encoder_constants const& k) {
    __m512i const fields = _mm512_multishift_epi64_epi8(k.fields, units);
    __m512i const marked = _mm512_ternarylogic_epi32(fields, k.field_bits, k.marks, 0xEA);
    __m512i const two = _mm512_mask_add_epi16(marked, _knot_mask32(c.three), marked, k.two_mark);
    return _mm512_mask_slli_epi16(two, _knot_mask32(c.not_ascii), units, 8);
}

// Writes units of up to two bytes.
ZOLT_AVX512_INLINE char* put_two(__m512i last_two, unit_classes const& c, char* to) {
    return put_bytes(last_two, spread(c.not_ascii, 0x5555555555555555) | spread(c.lanes, 0xAAAAAAAAAAAAAAAA), to);
}

// Writes the units; `last_two` has right bytes also where `c` tells two for half a pair.
ZOLT_AVX512_INLINE char* put_three(__m512i units, __m512i last_two, unit_classes const& c,
                                   encoder_constants const& k, char* to) {
    __m512i const lead = _mm512_ternarylogic_epi32(_mm512_srli_epi16(units, 4), k.lead_bits, k.lead_mark, 0xEA);
    __m512i const front = _mm512_permutexvar_epi64(k.order, lead);
    __m512i const back = _mm512_permutexvar_epi64(k.order, last_two);
    constexpr uint64_t seconds = 0x2222222222222222, thirds = 0x4444444444444444, fourths = 0x8888888888888888;
    uint64_t const first = spread(c.three & 0xFFFF, seconds) | spread(c.not_ascii & 0xFFFF, thirds) |
                           spread(c.lanes & 0xFFFF, fourths);
    uint64_t const second =
        spread(c.three >> 16, seconds) | spread(c.not_ascii >> 16, thirds) | spread(c.lanes >> 16, fourths);
    to = put_bytes(_mm512_unpacklo_epi16(front, back), first, to);
    return put_bytes(_mm512_unpackhi_epi16(front, back), second, to);
}

// ------------------------------------------------------------------------------------------------
// From UTF-16

struct surrogates {
    __mmask32 high;
    __mmask32 low;
};

// Takes a high surrogate at a full window's end out of it. False when a surrogate has no partner.
ZOLT_AVX512_INLINE bool find_pairs(window& w, __mmask32 found, size_t left, surrogates& pairs,
                                   __m512i low_surrogate_bit) {
    __mmask32 const of_low = _mm512_test_epi16_mask(w.units, low_surrogate_bit);
    pairs = {_kandn_mask32(of_low, found), _kand_mask32(of_low, found)};
    uint32_t high = _cvtmask32_u32(pairs.high);
    if (high >> 31 && left > 32) [[unlikely]] {
        w.count = 31;
        high &= 0x7FFFFFFF;
    }
    return _cvtmask32_u32(pairs.low) == high << 1 && !(high >> 31);
}

ZOLT_AVX512_INLINE uint32_t find_surrogates(__m512i units, __m512i top_bits, __m512i surrogate) {
    return _mm512_cmpeq_epi16_mask(_mm512_and_si512(units, top_bits), surrogate);
}

// The units in front of those of a window; not of the first, which may be the text's begin.
ZOLT_AVX512_INLINE __m512i load_before(unsigned short const* from, size_t count) {
    return _mm512_maskz_loadu_epi16(low_bits(count) & ~1u, from - 1);
}

// Puts the first two of a pair's four bytes into the high surrogate's lane, the others into the low one's,
// where `last_two` lacks but two bits: it has them set, and the high surrogate's lowest bits are right.
ZOLT_AVX512_INLINE __m512i encode_pairs(__m512i last_two, __m512i units, __m512i before, surrogates const& pairs,
                                        encoder_constants const& k) {
    __m512i const top = _mm512_add_epi16(units, k.to_top); // code >> 10
    __m512i const fields =
        _mm512_ternarylogic_epi32(_mm512_slli_epi16(top, 6), k.second_bits, _mm512_srli_epi16(top, 8), 0xEA);
    __m512i const wrong = _mm512_andnot_si512(_mm512_slli_epi16(before, 4), k.third_bits);
    __m512i const last = _mm512_mask_sub_epi16(last_two, pairs.low, last_two, wrong);
    return _mm512_mask_add_epi16(last, pairs.high, fields, k.pair_marks);
}

// Whole pairs of windows of ASCII.
ZOLT_AVX512_INLINE void copy_ascii(from_16_to_8& at, unsigned short const* stop, unsigned short const* end) {
    __m512i const order = _mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7);
    for (; at.from < stop && at.left(end) >= 64; at.from += 64, at.to += 64) {
        __m512i const first = load(at.from), second = load(at.from + 32);
        if (_mm512_test_epi16_mask(_mm512_or_si512(first, second), all16(0xFF80))) return;
        store(at.to, _mm512_permutexvar_epi64(order, _mm512_packus_epi16(first, second)));
    }
}

ZOLT_AVX512 from_16_to_8 utf16_to_utf8_core(from_16_to_8 at, unsigned short const* stop,
                                            unsigned short const* end) {
    copy_ascii(at, stop, end);
    if (at.from >= stop) return at;
    encoder_constants const k;
    habit threes_or_pairs, threes;
    while (at.from < stop) {
        size_t const left = at.left(end);
        window w = load_window(at.from, left);
        unit_classes c = classify(w.units, w.count);
        if (!threes_or_pairs.keep(c.three)) {
            if (c.not_ascii) {
                at.to = put_two(last_two_bytes(w.units, c, k), c, at.to);
                at.from += w.count;
                continue;
            }
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(at.to), _mm512_cvtepi16_epi8(w.units));
            at.from += w.count;
            at.to += w.count;
            copy_ascii(at, stop, end);
            continue;
        }
        __m512i last_two = last_two_bytes(w.units, c, k);
        uint32_t const found = find_surrogates(w.units, k.top_bits, k.surrogate);
        if (found) {
            surrogates pairs;
            if (!find_pairs(w, found, left, pairs, k.low_surrogate_bit)) return stuck<unsigned short, char>;
            last_two = encode_pairs(last_two, w.units, load_before(at.from, w.count), pairs, k);
            c.three &= ~found; // half a pair has two bytes
            c.lanes &= low_bits(w.count);
            c.not_ascii &= c.lanes;
        }
        at.to = threes.keep(c.three) ? put_three(w.units, last_two, c, k, at.to) : put_two(last_two, c, at.to);
        at.from += w.count;
    }
    return at;
}

ZOLT_AVX512_INLINE wchar_t* put_codes(__m512i units, __m512i before, uint32_t low, uint32_t kept, wchar_t* to) {
    __m512i const pairs = _mm512_add_epi32(_mm512_slli_epi32(before, 10), units);
    constexpr int offset = 0x10000 - (0xD800 << 10) - 0xDC00;
    __m512i const codes = _mm512_mask_add_epi32(units, _cvtu32_mask16(low), pairs, _mm512_set1_epi32(offset));
    store(to, _mm512_maskz_compress_epi32(_cvtu32_mask16(kept), codes));
    return to + std::popcount(kept);
}

ZOLT_AVX512 from_16_to_32 utf16_to_utf32_core(from_16_to_32 at, unsigned short const* stop,
                                              unsigned short const* end) {
    __m512i const top_bits = all16(0xF800), surrogate = all16(0xD800), low_surrogate_bit = pinned(all16(0x0400));
    while (at.from < stop) {
        size_t const left = at.left(end);
        window w = load_window(at.from, left);
        uint32_t const found = find_surrogates(w.units, top_bits, surrogate);
        __m512i const low = widen_low(w.units), high = widen_high(w.units);
        if (!found) {
            store(at.to, low);
            store(at.to + 16, high);
            at.to += w.count;
        } else {
            surrogates pairs;
            if (!find_pairs(w, found, left, pairs, low_surrogate_bit)) return stuck<unsigned short, wchar_t>;
            if (_cvtmask32_u32(pairs.high) == 0x55555555) {
                __m512i const top = _mm512_slli_epi32(_mm512_and_si512(w.units, all32(0x3FF)), 10);
                __m512i const rest = _mm512_and_si512(_mm512_srli_epi32(w.units, 16), all32(0x3FF));
                store(at.to, _mm512_add_epi32(_mm512_or_si512(top, rest), all32(0x10000)));
                at.from += 32;
                at.to += 16;
                continue;
            }
            uint32_t const kept = low_bits(w.count) & ~pairs.high;
            uint32_t const lows = pairs.low;
            __m512i const before = load_before(at.from, w.count);
            at.to = put_codes(low, widen_low(before), lows & 0xFFFF, kept & 0xFFFF, at.to);
            at.to = put_codes(high, widen_high(before), lows >> 16, kept >> 16, at.to);
        }
        at.from += w.count;
    }
    return at;
}

// ------------------------------------------------------------------------------------------------
// From UTF-32

struct code_constants {
    __m512i top_bits = pinned(all32(0xFFFFF800));
    __m512i surrogate = pinned(all32(0xD800));
    __m512i end = pinned(all32(0x110000));
    __m512i four = pinned(all32(0x10000));
    __m512i three = pinned(all32(0x800));
    __m512i two = pinned(all32(0x80));
    __m512i fields = pinned(_mm512_set1_epi64(0x20'26'2C'32'00'06'0C'12));
    __m512i field_bits = pinned(all32(0x3F3F3F3F));
    __m512i four_marks = pinned(all32(0x808080F0));
    __m512i three_marks = pinned(all32(0x8080E000));
    __m512i two_marks = pinned(all32(0x80C00000));

    ZOLT_AVX512_INLINE code_constants() {}
};

ZOLT_AVX512_INLINE __mmask16 find_surrogate_codes(__m512i codes, code_constants const& k) {
    return _mm512_cmpeq_epi32_mask(_mm512_and_si512(codes, k.top_bits), k.surrogate);
}

// Up to 16 codes below 0x110000, none a surrogate. A byte that is not wanted is 0 in the end.
ZOLT_AVX512_INLINE char* put_four(window const& w, code_constants const& k, char* to) {
    __m512i marks = _mm512_mask_mov_epi32(k.four_marks, _mm512_cmplt_epu32_mask(w.units, k.four), k.three_marks);
    marks = _mm512_mask_mov_epi32(marks, _mm512_cmplt_epu32_mask(w.units, k.three), k.two_marks);
    __m512i const fields = _mm512_multishift_epi64_epi8(k.fields, w.units);
    __m512i x = _mm512_ternarylogic_epi32(fields, k.field_bits, marks, 0xEA);
    x = _mm512_mask_slli_epi32(x, _mm512_cmplt_epu32_mask(w.units, k.two), w.units, 24);
    uint64_t const last = 0x8888888888888888 & low_bits_64(4 * w.count); // it may be 0 and wanted
    return put_bytes(x, _mm512_test_epi8_mask(x, x) | last, to);
}

// 32 codes below 0x10000, by way of UTF-16; false with nothing written when one is a surrogate.
ZOLT_AVX512_INLINE bool put_units(__m512i first, __m512i second, encoder_constants const& k, char*& to) {
    __m512i const order = _mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7);
    __m512i const units = _mm512_permutexvar_epi64(order, _mm512_packus_epi32(first, second));
    unit_classes const c = classify(units, 32);
    if (!c.not_ascii) {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), _mm512_cvtepi16_epi8(units));
        to += 32;
    } else if (!c.three) {
        to = put_two(last_two_bytes(units, c, k), c, to);
    } else {
        if (find_surrogates(units, k.top_bits, k.surrogate)) return false;
        to = put_three(units, last_two_bytes(units, c, k), c, k, to);
    }
    return true;
}

// A window of any codes; false where one is a surrogate.
ZOLT_AVX512_INLINE bool convert_window(from_32_to_8& at, wchar_t const* end, code_constants const& k) {
    window const w = load_window(at.from, at.left(end));
    if (find_surrogate_codes(w.units, k)) return false;
    if (_mm512_cmpge_epu32_mask(w.units, k.end)) {
        at = portable_cores.utf32_to_utf8(at, at.from + w.count, end);
    } else {
        at.to = put_four(w, k, at.to);
        at.from += w.count;
    }
    return at.to != nullptr;
}

ZOLT_AVX512 from_32_to_8 utf32_to_utf8_core(from_32_to_8 at, wchar_t const* stop, wchar_t const* end) {
    code_constants const codes;
    if (at.left(end) >= 32) { // else the constants are not worth making
        encoder_constants const k;
        habit fours;
        while (at.from < stop && at.left(end) >= 32) {
            __m512i const first = load(at.from), second = load(at.from + 16);
            if (!fours.keep(_mm512_cmpge_epu32_mask(_mm512_max_epu32(first, second), codes.four))) {
                if (!put_units(first, second, k, at.to)) return stuck<wchar_t, char>;
                at.from += 32;
            } else if (!convert_window(at, end, codes) || !convert_window(at, end, codes)) {
                return stuck<wchar_t, char>;
            }
        }
    }
    while (at.from < stop) {
        if (!convert_window(at, end, codes)) return stuck<wchar_t, char>;
    }
    return at;
}

// 32 codes of one unit each; false with nothing written when one is of another kind.
ZOLT_AVX512_INLINE bool put_single_units(from_32_to_16& at, __m512i first_pair, code_constants const& k) {
    __m512i const first = load(at.from), second = load(at.from + 16);
    __mmask16 const surrogates = _kor_mask16(find_surrogate_codes(first, k), find_surrogate_codes(second, k));
    if (_kor_mask16(surrogates, _mm512_cmpge_epu32_mask(_mm512_max_epu32(first, second), first_pair))) return false;
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(at.to), _mm512_cvtepi32_epi16(first));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(at.to + 16), _mm512_cvtepi32_epi16(second));
    at.from += 32;
    at.to += 32;
    return true;
}

ZOLT_AVX512 from_32_to_16 utf32_to_utf16_core(from_32_to_16 at, wchar_t const* stop, wchar_t const* end) {
    __m512i const first_pair = all32(0xFFFF), low_bits_moved = all32(0x03FF0000), halves = all32(0xDC00D800);
    code_constants const k;
    habit pairs_too;
    while (at.from < stop) {
        if (!pairs_too.kept() && at.left(end) >= 32 && put_single_units(at, first_pair, k)) continue;
        window const w = load_window(at.from, at.left(end));
        __mmask16 const wrong =
            _kor_mask16(find_surrogate_codes(w.units, k), _mm512_cmpge_epu32_mask(w.units, k.end));
        if (wrong) return stuck<wchar_t, unsigned short>;
        uint32_t const pairs = _mm512_cmpge_epu32_mask(w.units, first_pair);
        if (!pairs_too.keep(pairs)) {
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(at.to), _mm512_cvtepi32_epi16(w.units));
            at.to += w.count;
        } else {
            __m512i const low = _mm512_slli_epi32(w.units, 16), high = _mm512_srli_epi32(w.units, 10);
            __m512i const fields = _mm512_ternarylogic_epi32(high, low, low_bits_moved, 0xF8);
            __m512i const x = _mm512_mask_add_epi32(w.units, _cvtu32_mask16(pairs), fields, halves);
            uint32_t const kept = _pdep_u32(pairs, 0xAAAAAAAA) | (0x55555555 & low_bits(2 * w.count));
            store(at.to, _mm512_maskz_compress_epi16(kept, x));
            at.to += std::popcount(kept);
        }
        at.from += w.count;
    }
    return at;
}

} // namespace

core_set const avx512_cores{utf8_to_utf16_core,  utf8_to_utf32_core, utf16_to_utf8_core,
                            utf16_to_utf32_core, utf32_to_utf8_core, utf32_to_utf16_core};

} // namespace ZOLT_2_18::strings::_private

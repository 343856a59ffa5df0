// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The cores of the UTF conversions: one function for each direction and instruction set, all of one form.
//
//     cursor<In, Out> core(cursor<In, Out> at, In const* stop, In const* end)
//
// A core converts the characters that begin in [at.from, stop), reads no further than `end`, and returns
// where it has come to in its input and in its output, or `stuck` where the whole text fails. It starts and
// ends between characters. It may run past `stop` by less than `overrun` units of input, or come back
// somewhat earlier, but never where it began; and it may write up to `spill` units of no meaning behind its
// output.
//
// The portable cores are the definition. A vector core works in windows of the text; what it has no form
// for, it hands to them.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace ZOLT_2_18::strings::_private {

template <typename In, typename Out>
struct cursor {
    In const* from;
    Out* to;

    std::size_t left(In const* end) const { return static_cast<std::size_t>(end - from); }
};

template <typename In, typename Out>
inline constexpr cursor<In, Out> stuck{nullptr, nullptr};

template <typename In, typename Out>
using core = cursor<In, Out> (*)(cursor<In, Out> at, In const* stop, In const* end);

using from_8_to_16 = cursor<char, unsigned short>;
using from_8_to_32 = cursor<char, wchar_t>;
using from_16_to_8 = cursor<unsigned short, char>;
using from_16_to_32 = cursor<unsigned short, wchar_t>;
using from_32_to_8 = cursor<wchar_t, char>;
using from_32_to_16 = cursor<wchar_t, unsigned short>;

inline constexpr std::size_t overrun = 80;
inline constexpr std::size_t spill = 64;

// The units of output that one unit of input may need.
template <typename In, typename Out>
inline constexpr std::size_t growth = sizeof(In) <= sizeof(Out) ? 1
                                      : sizeof(Out) == 2        ? 2
                                      : sizeof(In) == 2         ? 3
                                                                : 4;

// What the vector cores know of a window of 64 bytes of UTF-8: a bit for each byte. Windows follow each
// other without gap, so a character may begin in one and end in the next.
struct utf8_masks {
    std::uint64_t leads;  // of two bytes or more
    std::uint64_t leads3; // of three or more
    std::uint64_t leads4; // of four

    // The bytes that stand n places behind those of `now`, or of `before` in the window in front.
    static constexpr std::uint64_t behind(std::uint64_t now, std::uint64_t before, int n) {
        return now << n | before >> (64 - n);
    }

    // Where continuation bytes have to stand, and nowhere else.
    constexpr std::uint64_t continuations(utf8_masks const& before) const {
        return behind(leads, before.leads, 1) | behind(leads3, before.leads3, 2) | behind(leads4, before.leads4, 3);
    }

    // The bytes of the character that the window cuts off; 0 when it ends between characters.
    constexpr std::size_t cut_off() const {
        std::uint64_t const open = (leads & std::uint64_t{1} << 63) | (leads3 & std::uint64_t{3} << 62) |
                                   (leads4 & std::uint64_t{7} << 61);
        return open ? static_cast<std::size_t>(std::countl_zero(open)) + 1 : 0;
    }
};

// From the end of the last window back to the begin of the character that it cuts off. The high half of a
// pair was written where the character's third byte stands.
inline void step_back(from_8_to_16& at, utf8_masks const& last) {
    at.from -= last.cut_off();
    if (last.leads4 >> 61 & 1) --at.to;
}

inline void step_back(from_8_to_32& at, utf8_masks const& last) { at.from -= last.cut_off(); }

struct core_set {
    core<char, unsigned short> utf8_to_utf16;
    core<char, wchar_t> utf8_to_utf32;
    core<unsigned short, char> utf16_to_utf8;
    core<unsigned short, wchar_t> utf16_to_utf32;
    core<wchar_t, char> utf32_to_utf8;
    core<wchar_t, unsigned short> utf32_to_utf16;
};

extern core_set const portable_cores;
extern core_set const avx2_cores;
extern core_set const avx512_cores;

inline bool can_run_avx2() { return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt"); }

inline bool can_run_avx512() {
    return __builtin_cpu_supports("avx512vbmi2") && __builtin_cpu_supports("avx512vbmi") &&
           __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl") &&
           __builtin_cpu_supports("popcnt") && __builtin_cpu_supports("bmi2");
}

inline core_set const& best_cores() {
    return can_run_avx512() ? avx512_cores : can_run_avx2() ? avx2_cores : portable_cores;
}

} // namespace ZOLT_2_18::strings::_private

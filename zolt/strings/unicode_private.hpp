// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The cores of the UTF conversions: one function for each direction and instruction set, all of one form.
//
//     cursor<In, Out> core(cursor<In, Out> at, In const* stop, In const* end)
//
// A core converts the characters that begin in [at.from, stop), reads no further than `end`, and returns
// where it has come to in its input and in its output, or `stuck` where the whole text fails. It may run
// past `stop` by less than `overrun` units of input, and write up to `spill` bytes of no meaning behind
// its output. It starts and ends between characters.
//
// The portable cores are the definition. A vector core works in windows of the text; what is unusual, it
// hands to them.
#pragma once

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

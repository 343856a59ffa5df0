// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Digits read eight at a time: eight bytes of a text are one word, the first in its lowest byte. Arithmetic on
// all of them at once tells whether they are digits and joins neighbours to pairs, to fours and to the value.
// Numbers of different length take the same instructions, which leaves the processor nothing to mispredict. What
// decimal digits need stands in the public header, where short numbers are read.
#pragma once

#include <zolt/generic/convert/str_to_x.hpp>

#include <cstdint>
#include <cstring>

namespace ZOLT_2_18::generic::convert::_private {

/// The values of the eight digits at `digits`, one in each byte: 0 to 9 for digits, more for other bytes.
inline std::uint64_t digit_values_at(char const* digits) {
    std::uint64_t bytes;
    std::memcpy(&bytes, digits, sizeof bytes);
    return bytes ^ in_every_byte('0');
}

/// Not 0 when a value is above 1.
constexpr std::uint64_t beyond_one(std::uint64_t values) { return values & ~in_every_byte(1); }

/// The number that eight binary digits make.
constexpr std::uint64_t binary_number(std::uint64_t values) { return values * 0x8040201008040201 >> 56; }

} // namespace ZOLT_2_18::generic::convert::_private

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// How many units an integer has in decimal, so that its digits can be written straight to their final place.
// Looking for the end of digits that were just written would cost more than counting them. Not installed.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace ZOLT_2_18::types::_private {

inline constexpr auto powers_of_ten = [] {
    std::array<std::uint64_t, 20> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
    return powers;
}();

/// By the place of the highest bit: what makes the length overflow into the upper half when it is added, one
/// more from the power of ten on that lies between the numbers with that bit.
inline constexpr auto length_summands = [] {
    std::array<std::uint64_t, 32> summands{};
    std::size_t digits = 1;
    for (std::size_t bit = 0; bit < summands.size(); ++bit) {
        std::uint64_t const lowest = std::uint64_t{1} << bit;
        while (powers_of_ten[digits] <= lowest) ++digits;
        bool const has_next_power = powers_of_ten[digits] < 2 * lowest;
        summands[bit] = has_next_power ? (std::uint64_t{digits + 1} << 32) - powers_of_ten[digits]
                                       : std::uint64_t{digits} << 32;
    }
    return summands;
}();

constexpr std::size_t decimal_length(std::uint32_t value) noexcept {
    auto const highest_bit = static_cast<std::size_t>(std::bit_width(value | 1) - 1);
    return static_cast<std::size_t>((value + length_summands[highest_bit]) >> 32);
}

/// 1233 / 4096 stands for log10(2): the estimate is the number of digits or one less.
constexpr std::size_t decimal_length(std::uint64_t value) noexcept {
    if (value <= 0xFFFFFFFF) return decimal_length(static_cast<std::uint32_t>(value));
    std::size_t const estimate = static_cast<std::size_t>(std::bit_width(value)) * 1233 >> 12;
    return estimate + (value >= powers_of_ten[estimate]);
}

/// The number without its sign.
template <typename Integer>
constexpr std::uint64_t magnitude(Integer value) noexcept {
    // NOLINTNEXTLINE(bugprone-signed-char-misuse): with the sign, which is taken off then
    auto const bits = static_cast<std::uint64_t>(value);
    return value < Integer{} ? 0 - bits : bits;
}

} // namespace ZOLT_2_18::types::_private

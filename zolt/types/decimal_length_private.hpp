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
#include <type_traits>

namespace ZOLT_2_18::types::_private {

inline constexpr auto powers_of_ten = [] {
    std::array<std::uint64_t, 20> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
    return powers;
}();

/// The sign counts. 1233 / 4096 stands for log10(2): the estimate is the number of digits or one less. Making
/// the number odd gives 0 a digit and changes the length of no other.
template <typename Integer>
constexpr std::size_t decimal_length(Integer value) noexcept {
    auto magnitude = static_cast<std::uint64_t>(value);
    std::size_t sign = 0;
    if constexpr (std::is_signed_v<Integer>) {
        if (value < 0) {
            magnitude = 0 - magnitude;
            sign = 1;
        }
    }
    magnitude |= 1;
    std::size_t const estimate = static_cast<std::size_t>(std::bit_width(magnitude)) * 1233 >> 12;
    return sign + estimate + (magnitude >= powers_of_ten[estimate]);
}

} // namespace ZOLT_2_18::types::_private

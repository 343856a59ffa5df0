// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Floating-point numbers to integers where the language leaves the result open, too.
#pragma once

#include <limits>
#include <type_traits>

namespace ZOLT_2_18::types::_private {

/// The value truncated toward zero; a value beyond the integer's range gives the nearest limit,
/// not-a-number gives 0.
template <typename Integer, typename Floating>
constexpr Integer saturated(Floating value) noexcept {
    static_assert(std::is_integral_v<Integer> && std::is_floating_point_v<Floating>);
    using limits = std::numeric_limits<Integer>;
    // Where the largest integer has more digits than the type holds it rounds up, to the first that is too large.
    constexpr Floating highest = static_cast<Floating>(limits::max());
    constexpr Floating lowest = static_cast<Floating>(limits::min());
    if (value >= highest) return limits::max();
    if (value <= lowest) return limits::min();
    return value != value ? Integer{} : static_cast<Integer>(value);
}

} // namespace ZOLT_2_18::types::_private

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The float or double nearest to digits * 10^exponent, by Eisel's and Lemire's method ("Number Parsing at a
// Gigabyte per Second", 2021): digits is multiplied by the power of five rounded to 128 bits, the power of two
// only moves the exponent. The product's top bits are the mantissa; 128 bits always suffice for digits of 64
// bits (Mushtak and Lemire, "Fast Number Parsing Without Fallback", 2022). Integer arithmetic only, so that
// rounding modes and wider registers play no part.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <limits>

namespace ZOLT_2_18::generic::convert::_private {

struct word_pair {
    std::uint64_t high;
    std::uint64_t low;
};

inline word_pair multiply(std::uint64_t left, std::uint64_t right) {
#ifdef __SIZEOF_INT128__
    __extension__ using twice = unsigned __int128;
    auto const product = static_cast<twice>(left) * right;
    return {static_cast<std::uint64_t>(product >> 64), static_cast<std::uint64_t>(product)};
#else
    constexpr std::uint64_t half = 0xFFFFFFFF;
    std::uint64_t const low = (left & half) * (right & half);
    std::uint64_t const cross = (left >> 32) * (right & half) + (low >> 32);
    std::uint64_t const middle = (left & half) * (right >> 32) + (cross & half);
    return {(left >> 32) * (right >> 32) + (cross >> 32) + (middle >> 32), middle << 32 | (low & half)};
#endif
}

/// A number of many bits while the table below is made.
class long_number {
public:
    constexpr explicit long_number(std::size_t bit) { m_parts[bit / 32] = std::uint32_t{1} << bit % 32; }

    constexpr void multiply_by_five() {
        std::uint64_t carry = 0;
        for (std::uint32_t& part : m_parts) {
            carry += std::uint64_t{part} * 5;
            part = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
    }
    constexpr void divide_by_five() {
        std::uint64_t rest = 0;
        for (std::size_t i = m_parts.size(); i--;) {
            rest = rest << 32 | m_parts[i];
            m_parts[i] = static_cast<std::uint32_t>(rest / 5);
            rest %= 5;
        }
    }
    /// From the highest bit set on.
    constexpr word_pair top_bits() const {
        std::size_t top = m_parts.size() - 1;
        while (m_parts[top] == 0) --top;
        auto const word = [&](std::size_t down) {
            return (top >= down ? std::uint64_t{m_parts[top - down]} << 32 : 0) |
                   (top >= down + 1 ? m_parts[top - down - 1] : 0);
        };
        int const shift = std::countl_zero(m_parts[top]);
        if (shift == 0) return {word(0), word(2)};
        return {word(0) << shift | word(2) >> (64 - shift), word(2) << shift | word(4) >> (64 - shift)};
    }

private:
    std::array<std::uint32_t, 31> m_parts{};
};

constexpr int lowest_power = -342, highest_power = 308;

/// The top 128 bits of the powers of five, cut off; those that the method wants rounded up are.
constexpr auto powers_of_five = [] {
    std::array<word_pair, highest_power - lowest_power + 1> powers{};
    auto const at = [&](int power) -> word_pair& { return powers[static_cast<std::size_t>(power - lowest_power)]; };
    long_number number(0);
    for (int power = 0; power <= highest_power; ++power, number.multiply_by_five()) at(power) = number.top_bits();
    number = long_number(960);
    for (int power = -1; power >= lowest_power; --power) {
        number.divide_by_five();
        at(power) = number.top_bits();
        if (power >= -27 && ++at(power).low == 0) ++at(power).high;
    }
    return powers;
}();

/// `first_tie` to `last_tie`: the powers of ten with which a number of 64 bits can lie in the middle between two
/// neighbours.
template <typename T>
struct binary_format;

template <>
struct binary_format<float> {
    using bits = std::uint32_t;
    static constexpr int mantissa_bits = 23, bias = 127, first_tie = -17, last_tie = 10;
};

template <>
struct binary_format<double> {
    using bits = std::uint64_t;
    static constexpr int mantissa_bits = 52, bias = 1023, first_tie = -4, last_tie = 23;
};

/// Infinite when it is too large for T, 0 when it is too small.
template <typename T>
T nearest_binary(std::uint64_t digits, std::int64_t exponent) {
    using format = binary_format<T>;
    constexpr T infinity = std::numeric_limits<T>::infinity();
    if (digits == 0 || exponent < lowest_power) return 0;
    if (exponent > highest_power) return infinity;

    auto const power = static_cast<int>(exponent);
    int const leading_zeros = std::countl_zero(digits);
    digits <<= leading_zeros;
    auto const& five = powers_of_five[static_cast<std::size_t>(power - lowest_power)];
    word_pair product = multiply(digits, five.high);
    constexpr std::uint64_t undecided = ~std::uint64_t{0} >> (format::mantissa_bits + 3);
    if ((product.high & undecided) == undecided) {
        std::uint64_t const carry = multiply(digits, five.low).high;
        product.low += carry;
        product.high += product.low < carry;
    }

    // One bit more than the mantissa has, for rounding. 217706 / 2^16 stands for log2(10).
    int const top_bit = static_cast<int>(product.high >> 63);
    int const shift = top_bit + 64 - format::mantissa_bits - 3;
    std::uint64_t mantissa = product.high >> shift;
    int const binary_exponent = (217706 * power >> 16) + 63 + top_bit - leading_zeros + format::bias;
    typename format::bits bits = 0;
    if (binary_exponent <= 0) { // denormal; rounded up to the smallest normal number the bits are right too
        if (binary_exponent <= -63) return 0;
        mantissa >>= 1 - binary_exponent;
        bits = static_cast<typename format::bits>((mantissa + (mantissa & 1)) >> 1);
    } else {
        bool const is_tie = product.low <= 1 && power >= format::first_tie && power <= format::last_tie &&
                            (mantissa & 3) == 1 && mantissa << shift == product.high;
        if (!is_tie) mantissa += mantissa & 1;
        mantissa = (mantissa >> 1) - (std::uint64_t{1} << format::mantissa_bits); // a carry goes into the exponent
        auto const all = (static_cast<std::uint64_t>(binary_exponent) << format::mantissa_bits) + mantissa;
        constexpr std::uint64_t infinite = std::uint64_t{2 * format::bias + 1} << format::mantissa_bits;
        if (all >= infinite) return infinity;
        bits = static_cast<typename format::bits>(all);
    }
    return std::bit_cast<T>(bits);
}

} // namespace ZOLT_2_18::generic::convert::_private

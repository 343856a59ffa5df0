// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// color_t: a colour of four bytes, red, green, blue and alpha, in this order.
//
// The packed form is the same four bytes read as one 32-bit little-endian integer: red is the least
// significant byte, alpha the most significant. An alpha of 0 is transparent, 255 opaque.
//
//     types::color_t const colour(1, 2, 3);   // alpha 255
//     colour.as_rgb();                        // 197121, that is 0x030201
#pragma once

#include <zolt/export.hpp>

namespace ZOLT_2_18::types {

class ZOLT_API color_t {
public:
    /// Transparent black: all four bytes 0.
    color_t() noexcept = default;
    /// The low 32 bits of the packed form, alpha included.
    color_t(long packed) noexcept;
    color_t(unsigned char red, unsigned char green, unsigned char blue, unsigned char alpha) noexcept;
    /// Opaque: alpha is 255, so color_t(0, 0, 0) differs from color_t().
    color_t(unsigned char red, unsigned char green, unsigned char blue) noexcept;
    color_t(color_t const&) noexcept = default;

    /// The four makers build with the constructor of the same arguments.
    static color_t rgba(long const& packed) noexcept;
    static color_t rgba(unsigned char red, unsigned char green, unsigned char blue, unsigned char alpha) noexcept;
    /// Kept: the alpha byte of `packed` is taken as it is, where one would expect 255.
    static color_t rgb(long const& packed) noexcept;
    static color_t rgb(unsigned char red, unsigned char green, unsigned char blue) noexcept;

    color_t& operator=(color_t const& other) noexcept { return assign(other); }
    color_t& operator=(long packed) noexcept { return assign(packed); }
    color_t& assign(color_t const& other) noexcept;
    /// The low 32 bits of the packed form.
    color_t& assign(long packed) noexcept;

    /// The four bytes, and what sets one of them.
    unsigned char red() const noexcept { return m_red; }
    unsigned char green() const noexcept { return m_green; }
    unsigned char blue() const noexcept { return m_blue; }
    unsigned char alpha() const noexcept { return m_alpha; }
    void red(unsigned char value) noexcept { m_red = value; }
    void green(unsigned char value) noexcept { m_green = value; }
    void blue(unsigned char value) noexcept { m_blue = value; }
    void alpha(unsigned char value) noexcept { m_alpha = value; }

    /// The packed form, alpha included; negative from alpha 128 up.
    int as_int32() const noexcept;
    /// The packed form with the alpha byte cleared, 0 to 0xFFFFFF.
    int as_rgb() const noexcept;

    /// True when all four bytes are equal.
    bool equal(color_t const& other) const noexcept;
    bool operator==(color_t const& other) const noexcept { return equal(other); }
    bool operator!=(color_t const& other) const noexcept { return !equal(other); }

private:
    unsigned char m_red = 0;
    unsigned char m_green = 0;
    unsigned char m_blue = 0;
    unsigned char m_alpha = 0;
};

} // namespace ZOLT_2_18::types

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The packed form is put together and taken apart by shifts, so it does not depend on the machine.
#include <zolt/types/color.hpp>

namespace ZOLT_2_18::types {
namespace {

constexpr unsigned char byte_of(long packed, unsigned int position) noexcept {
    return static_cast<unsigned char>(static_cast<unsigned long>(packed) >> (8 * position));
}

} // namespace

color_t::color_t(long packed) noexcept
    : color_t(byte_of(packed, 0), byte_of(packed, 1), byte_of(packed, 2), byte_of(packed, 3)) {}

color_t::color_t(unsigned char red, unsigned char green, unsigned char blue, unsigned char alpha) noexcept
    : m_red(red), m_green(green), m_blue(blue), m_alpha(alpha) {}

color_t::color_t(unsigned char red, unsigned char green, unsigned char blue) noexcept
    : color_t(red, green, blue, 255) {}

color_t color_t::rgba(long const& packed) noexcept { return color_t(packed); }

color_t color_t::rgba(unsigned char red, unsigned char green, unsigned char blue, unsigned char alpha) noexcept {
    return color_t(red, green, blue, alpha);
}

color_t color_t::rgb(long const& packed) noexcept { return color_t(packed); }

color_t color_t::rgb(unsigned char red, unsigned char green, unsigned char blue) noexcept {
    return color_t(red, green, blue);
}

color_t& color_t::assign(color_t const& other) noexcept {
    m_red = other.m_red;
    m_green = other.m_green;
    m_blue = other.m_blue;
    m_alpha = other.m_alpha;
    return *this;
}

color_t& color_t::assign(long packed) noexcept { return assign(color_t(packed)); }

int color_t::as_int32() const noexcept {
    return static_cast<int>(static_cast<unsigned int>(m_alpha) << 24 | static_cast<unsigned int>(as_rgb()));
}

int color_t::as_rgb() const noexcept { return m_blue << 16 | m_green << 8 | m_red; }

bool color_t::equal(color_t const& other) const noexcept { return as_int32() == other.as_int32(); }

} // namespace ZOLT_2_18::types

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/types/color.hpp>

#include <gtest/gtest.h>

namespace {

using ZOLT_2_18::types::color_t;

static_assert(sizeof(color_t) == 4);

// Alpha, blue, green, red, from the high byte to the low one.
void expect_packed(color_t const& colour, unsigned int packed) {
    SCOPED_TRACE(packed);
    EXPECT_EQ(colour.red(), packed & 0xFF);
    EXPECT_EQ(colour.green(), packed >> 8 & 0xFF);
    EXPECT_EQ(colour.blue(), packed >> 16 & 0xFF);
    EXPECT_EQ(colour.alpha(), packed >> 24);
    EXPECT_EQ(static_cast<unsigned int>(colour.as_int32()), packed);
    EXPECT_EQ(colour.as_rgb(), static_cast<int>(packed & 0xFFFFFF));
}

TEST(Color, PacksAndUnpacks) {
    expect_packed(color_t(), 0);
    expect_packed(color_t(1, 2, 3), 0xFF030201); // opaque
    expect_packed(color_t(1, 2, 3, 4), 0x04030201);
    expect_packed(color_t(-2L), 0xFFFFFFFE);
    expect_packed(color_t::rgba(1, 2, 3, 4), 0x04030201);
    expect_packed(color_t::rgba(0x70000001L), 0x70000001);
    expect_packed(color_t::rgb(9, 8, 7), 0xFF070809);
    expect_packed(color_t::rgb(0x00030201L), 0x00030201); // keeps its alpha
}

TEST(Color, EveryByteIsSetAndCountsForEquality) {
    color_t colour, other;
    other = colour = 0x04030201L;
    EXPECT_TRUE(other == color_t(1, 2, 3, 4) && other != color_t(1, 2, 3, 5) && other != color_t(0, 2, 3, 4));
    colour.red(5), colour.green(6), colour.blue(7), colour.alpha(200);
    expect_packed(colour, 0xC8070605);
}

} // namespace

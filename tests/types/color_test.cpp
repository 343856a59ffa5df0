// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/types/color.hpp>

#include <gtest/gtest.h>

namespace {

using ZOLT_2_18::types::color_t;

static_assert(sizeof(color_t) == 4);

TEST(Color, PacksAndUnpacks) {
    struct {
        char const* name;
        color_t colour;
        unsigned int packed; // alpha, blue, green, red
    } const rows[] = {{"default", color_t(), 0},
                      {"three bytes are opaque", color_t(1, 2, 3), 0xFF030201},
                      {"four bytes", color_t(1, 2, 3, 4), 0x04030201},
                      {"packed", color_t(-2L), 0xFFFFFFFE},
                      {"rgba", color_t::rgba(1, 2, 3, 4), 0x04030201},
                      {"rgba packed", color_t::rgba(0x70000001L), 0x70000001},
                      {"rgb", color_t::rgb(9, 8, 7), 0xFF070809},
                      {"rgb packed keeps its alpha", color_t::rgb(0x00030201L), 0x00030201}};
    for (auto const& r : rows) {
        SCOPED_TRACE(r.name);
        EXPECT_EQ(r.colour.red(), r.packed & 0xFF);
        EXPECT_EQ(r.colour.green(), r.packed >> 8 & 0xFF);
        EXPECT_EQ(r.colour.blue(), r.packed >> 16 & 0xFF);
        EXPECT_EQ(r.colour.alpha(), r.packed >> 24);
        EXPECT_EQ(static_cast<unsigned int>(r.colour.as_int32()), r.packed);
        EXPECT_EQ(r.colour.as_rgb(), static_cast<int>(r.packed & 0xFFFFFF));
    }
}

TEST(Color, EveryByteCountsForEquality) {
    using setter = void (color_t::*)(unsigned char);
    for (setter const set :
         {setter(&color_t::red), setter(&color_t::green), setter(&color_t::blue), setter(&color_t::alpha)}) {
        color_t colour;
        colour = 0x04030201L;
        EXPECT_TRUE(colour == color_t(1, 2, 3, 4));
        (colour.*set)(200);
        EXPECT_TRUE(colour != color_t(1, 2, 3, 4));
    }
}

} // namespace

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/types/unit.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace ZOLT_2_18::types;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr int int_max = std::numeric_limits<int>::max(), int_min = std::numeric_limits<int>::min();

TEST(DeviceUnit, ReducesEveryNumberTo32Bits) {
    struct {
        device_unit unit;
        int count;
    } const rows[] = {{{}, 0},
                      {int_min, int_min},
                      {4294967295U, -1},
                      {-7L, -7},
                      {7UL, 7},
                      {0x100000002LL, 2},
                      {~0ULL, -1},
                      {2.9F, 2},
                      {-2.9, -2},
                      {1e30F, int_max},
                      {-infinity, int_min},
                      {-2147483648.5, int_min},
                      {nan, 0},
                      {static_cast<signed char>(-5), -5},
                      {static_cast<unsigned char>(200), 200},
                      {static_cast<short>(-300), -300},
                      {static_cast<unsigned short>(65535), 65535}};
    for (auto const& r : rows) {
        SCOPED_TRACE(r.count);
        EXPECT_EQ(r.unit.type(), 1);
        EXPECT_EQ(r.unit.as_int32(), r.count);
        EXPECT_EQ(r.unit.as_float(), static_cast<float>(r.count));
        EXPECT_EQ(r.unit.as_double(), r.count);
        device_unit other;
        other = r.unit;
        EXPECT_TRUE(other == r.unit);
        other = 12345L;
        EXPECT_TRUE(other != r.unit);
    }
}

/// A length whose kind is chosen at run time.
struct any_unit : absolute_unit {
    any_unit(int unit_kind, double internal) : absolute_unit(internal), kind(unit_kind) {}
    int do_type() const override { return kind; }
    int do_as_int32() const override { return 0; }
    double do_as_double() const override { return 0; }
    int kind;
};

template <int N>
void expect_unit(long internal, double value, int rounded, double two_decimals) {
    SCOPED_TRACE(testing::Message() << "unit " << N << " of " << internal);
    basic_absolute_impl<N> const unit(internal);
    EXPECT_EQ(unit.type(), N);
    EXPECT_DOUBLE_EQ(unit.value(), value);
    EXPECT_EQ(unit.as_int32(), rounded);
    EXPECT_EQ(unit.as_double(), two_decimals);
    EXPECT_EQ(unit.as_md(), internal);
    basic_absolute_impl<N> set;
    set.value(unit.value());
    EXPECT_DOUBLE_EQ(basic_absolute_impl<1>(set).value(), static_cast<double>(internal));
}

TEST(AbsoluteUnit, ReadsAnInchInEveryUnitAndRoundsHalvesUp) {
    expect_unit<1>(100000, 100000, 100000, 100000);
    expect_unit<2>(100000, 300, 300, 300);
    expect_unit<3>(100000, 25.4, 25, 25.4);
    expect_unit<4>(100000, 2.54, 3, 2.54);
    expect_unit<5>(100000, 1, 1, 1);
    expect_unit<6>(100000, 72, 72, 72);
    expect_unit<7>(100000, 6, 6, 6);
    expect_unit<8>(100000, 96, 96, 96);
    expect_unit<3>(33333, 8.466582, 8, 8.47);
    expect_unit<5>(50000, 0.5, 1, 0.5);
    expect_unit<5>(-50000, -0.5, 0, -0.5);
    expect_unit<5>(-50001, -0.50001, -1, -0.5);
    expect_unit<5>(-12500, -0.125, 0, -0.12);
}

TEST(AbsoluteUnit, ConstructorsStoreWholeNumbersAndTheSetterFractions) {
    struct {
        double given, stored;
        int as_md;
    } const rows[] = {{2.9, 2, 2}, {-2.9, -2, -2}, {-0.5, 0, 0}, {3e9, 3e9, int_max}, {-1e300, -1e300, int_min},
                      {nan, 0, 0}};
    for (auto const& r : rows) {
        SCOPED_TRACE(r.given);
        basic_absolute_impl<1> const unit(r.given);
        EXPECT_EQ(unit.value(), r.stored);
        EXPECT_EQ(std::signbit(unit.value()), r.stored < 0);
        EXPECT_EQ(unit.as_md(), r.as_md);
        EXPECT_EQ(unit.as_int32(), r.as_md);
    }
    EXPECT_EQ(basic_absolute_impl<1>(7).value(), 7.0);
    basic_absolute_impl<6> points;
    points.value(0.5);
    EXPECT_EQ(basic_absolute_impl<1>(points).value(), 50000.0 / 72);
    EXPECT_EQ(points.as_md(), 694);
}

TEST(AbsoluteUnit, AnUnknownKindReadsAndStoresZero) {
    for (int const kind : {int_min, -1, 0, 9, int_max}) {
        any_unit unit(kind, infinity);
        EXPECT_EQ(unit.value(), 0.0) << kind;
        unit.value(5.0);
        EXPECT_EQ(unit.as_md(), 0) << kind;
    }
}

} // namespace

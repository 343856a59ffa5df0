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

void expect_count(int count, std::initializer_list<device_unit> units) {
    for (device_unit const& unit : units) {
        EXPECT_EQ(unit.type(), 1);
        EXPECT_EQ(unit.as_int32(), count);
        EXPECT_EQ(unit.as_float(), static_cast<float>(count));
        EXPECT_EQ(unit.as_double(), count);
    }
}

TEST(DeviceUnit, ReducesEveryNumberTo32Bits) {
    expect_count(-5, {static_cast<signed char>(-5), static_cast<short>(-5), -5, -5L, -0x300000005LL, 4294967291U,
                      ~0ULL - 4, -5.9F, -5.9});
    expect_count(200, {static_cast<unsigned char>(200), static_cast<unsigned short>(200), 200UL, 0xF000000C8LL});
    expect_count(int_max, {1e30F});
    expect_count(int_min, {int_min, -infinity, -2147483648.5});
    expect_count(0, {device_unit(), nan});
    device_unit const seven(7);
    device_unit other;
    other = seven;
    EXPECT_TRUE(other == seven);
    other = 12345L;
    EXPECT_TRUE(other != seven);
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
    expect_unit<3>(33333, 8.466582, 8, 8.47);
    expect_unit<4>(100000, 2.54, 3, 2.54);
    expect_unit<5>(50000, 0.5, 1, 0.5);
    expect_unit<5>(-50000, -0.5, 0, -0.5);
    expect_unit<5>(-50001, -0.50001, -1, -0.5);
    expect_unit<5>(-12500, -0.125, 0, -0.12);
    expect_unit<6>(100000, 72, 72, 72);
    expect_unit<7>(100000, 6, 6, 6);
    expect_unit<8>(100000, 96, 96, 96);
}

TEST(AbsoluteUnit, ConstructorsStoreWholeNumbersAndTheSetterFractions) {
    double const rows[][3] = {
        {2.9, 2, 2}, {-2.9, -2, -2}, {-0.5, 0, 0}, {3e9, 3e9, int_max}, {-1e300, -1e300, int_min}, {nan, 0, 0}};
    for (auto const& [given, stored, as_md] : rows) {
        basic_absolute_impl<1> const unit(given);
        EXPECT_EQ(unit.value(), stored) << given;
        EXPECT_EQ(std::signbit(unit.value()), stored < 0) << given;
        EXPECT_TRUE(unit.as_md() == as_md && unit.as_int32() == as_md) << given;
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

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/generic/convert/bin_str.hpp>

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

namespace {

namespace convert = ZOLT_2_18::generic::convert;

/// Packs, compares with the image, and reads it back from exactly as many bytes, from a longer and
/// from each shorter string.
template <typename T, typename Pack, typename Unpack>
void check(T value, std::string const& image, Pack pack, Unpack unpack) {
    SCOPED_TRACE(testing::PrintToString(value));
    EXPECT_EQ(pack(value), image);
    std::vector<char> const block(image.begin(), image.end());
    EXPECT_EQ(unpack(block.data()), value);
    EXPECT_EQ(unpack(image + "x"), value);
    for (std::size_t length = 0; length < image.size(); ++length)
        EXPECT_EQ(unpack(image.substr(0, length)), T{0}) << length;
    static_assert(std::is_same_v<decltype(unpack(image)), T>);
}

/// The image has its most significant byte first; the plain form is its mirror.
#define CHECK_ALL(name, value, ...)                                                                                \
    do {                                                                                                           \
        std::string const image{__VA_ARGS__};                                                                      \
        check(value, {image.rbegin(), image.rend()}, convert::name##_to_bin_str,                                   \
              [](auto const& bytes) { return convert::bin_str_to_##name(bytes); });                                \
        check(value, image, convert::little_endian::name##_to_bin_str,                                             \
              [](auto const& bytes) { return convert::little_endian::bin_str_to_##name(bytes); });                 \
        check(value, image, convert::big_endian::name##_to_bin_str,                                                \
              [](auto const& bytes) { return convert::big_endian::bin_str_to_##name(bytes); });                    \
    } while (false)

TEST(bin_str, packs_and_unpacks_in_every_order) {
    CHECK_ALL(int16, short{-2}, "\xFF\xFE", 2);
    CHECK_ALL(uint16, static_cast<unsigned short>(0x1234), "\x12\x34", 2);
    CHECK_ALL(int32, 0x01020304L, "\1\2\3\4", 4);
    CHECK_ALL(int32, -2147483647L - 1, "\x80\0\0\0", 4);
    CHECK_ALL(uint32, 0xFFFEFDFCul, "\xFF\xFE\xFD\xFC", 4);
    CHECK_ALL(int64, -0x0102030405060708LL, "\xFE\xFD\xFC\xFB\xFA\xF9\xF8\xF8", 8);
    CHECK_ALL(uint64, 0xF102030405060708ull, "\xF1\2\3\4\5\6\7\x8", 8);
    CHECK_ALL(float, -0.15625f, "\xBE\x20\0\0", 4);
    CHECK_ALL(double, 1.0, "\x3F\xF0\0\0\0\0\0\0", 8);
}

TEST(bin_str, keeps_what_equality_does_not_see) {
    for (char const* image : {"\xFF\xF8\1\1\1\1\1\1", "\x80\0\0\0\0\0\0\0"}) { // not-a-number, negative zero
        double const value = convert::big_endian::bin_str_to_double(image);
        EXPECT_EQ(convert::big_endian::double_to_bin_str(value), std::string(image, 8));
    }
}

TEST(bin_str, takes_the_low_32_bits_of_a_long) {
    long const wide = static_cast<long>(0x1234567880000001LL); // already cut where long has 32 bits
    EXPECT_EQ(convert::bin_str_to_int32(convert::int32_to_bin_str(wide)), -0x7FFFFFFF);
    EXPECT_EQ(convert::bin_str_to_uint32(convert::uint32_to_bin_str(static_cast<unsigned long>(wide))), 0x80000001);
}

} // namespace

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/types/variant.hpp>

#include <zolt/strings/unicode.hpp>

#include <gtest/gtest.h>

#include <concepts>
#include <limits>
#include <locale>
#include <sstream>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using namespace ZOLT_2_18;
using strings::ustring16;
using strings::ustring32;
using strings::ustring8;
using types::variant;

constexpr long long ll_max = std::numeric_limits<long long>::max();
constexpr long long ll_min = std::numeric_limits<long long>::min();
constexpr unsigned long long ull_max = std::numeric_limits<unsigned long long>::max();
constexpr unsigned int u32_max = 4294967295U;
constexpr int max32 = 2147483647, min32 = -max32 - 1;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
unsigned short const units_300[] = {' ', '3', '0', '0', 0};

// What must not compile.
template <typename... T>
constexpr bool refused = !(std::is_constructible_v<variant, T> || ...);
static_assert(!std::equality_comparable<variant> && !std::is_convertible_v<variant, int>);
static_assert(refused<int*, void const*, char volatile*, int (&)[3], std::nullptr_t, variant*, char32_t const*>);
static_assert(refused<void (&)(), void (*)(), int variant::*, int (variant::*)() const>);
static_assert(std::is_constructible_v<variant, char*> && std::is_constructible_v<variant, char const (&)[3]>);
static_assert(std::is_nothrow_copy_constructible_v<variant> && std::is_nothrow_copy_assignable_v<variant>);

std::string streamed(variant const& value) {
    std::ostringstream stream;
    stream << value;
    return stream.str();
}

template <typename Held>
void expect_held(std::initializer_list<variant> values) {
    for (variant const& value : values) {
        EXPECT_TRUE(value.type() == typeid(Held)) << value.type().name() << " for " << typeid(Held).name();
        EXPECT_EQ(value == types::nil, (std::is_same_v<Held, types::nil_t>));
    }
}

template <typename... T>
void expect_held_as_they_are(T const&... values) {
    (expect_held<T>({values}), ...);
}

TEST(Variant, HoldsTheTypeItIsMadeFrom) {
    expect_held_as_they_are(types::nil, true, static_cast<signed char>(1), static_cast<unsigned char>(1),
                            static_cast<short>(1), static_cast<unsigned short>(1), 0, 1U, 1L, 1UL, 1LL, 1ULL, 1.5F,
                            1.5, 1.5L, std::string("x"), std::wstring(L"x"), ustring8("x"), ustring16(units_300),
                            ustring32(L"x"));
    enum plain { zero };
    expect_held<types::nil_t>({variant()});
    expect_held<int>({'c', zero});
    expect_held<bool>({variant(std::vector<bool>{true}[0])});
    expect_held<ustring8>({"x", static_cast<char*>(nullptr)});
    expect_held<ustring16>({units_300, static_cast<unsigned short const*>(nullptr)});
    expect_held<ustring32>({L"x", static_cast<wchar_t const*>(nullptr)});
}

struct reading {
    variant value;
    signed char i8;
    short i16;
    int i32;
    long long i64;
    unsigned char u8;
    unsigned short u16;
    unsigned int u32;
    unsigned long long u64;
    bool truth;
    double floating;
    ustring8 text;
};

void expect_readings(reading const& r, long as_long) {
    SCOPED_TRACE(testing::Message() << r.value.type().name() << " " << r.text);
    variant const& v = r.value;
    EXPECT_EQ(std::tuple(v.as_int8(), v.as_int16(), v.as_int32(), v.as_long(), v.as_int64(), v.as_bool()),
              std::tuple(r.i8, r.i16, r.i32, as_long, r.i64, r.truth));
    EXPECT_EQ(std::tuple(v.as_uint8(), v.as_uint16(), v.as_uint32(), v.as_uint64()),
              std::tuple(r.u8, r.u16, r.u32, r.u64));
    EXPECT_EQ(std::tuple(v.as_short(), v.as_int(), v.as_signed()), std::tuple(r.i16, r.i32, r.i32));
    // These go by the signed readings, too.
    EXPECT_EQ(std::tuple(v.as_ushort(), v.as_uint(), v.as_unsigned(), v.as_ulong()),
              std::tuple(static_cast<unsigned short>(r.i16), static_cast<unsigned int>(r.i32),
                         static_cast<unsigned int>(r.i32), static_cast<unsigned long>(as_long)));
    // Printed, so that the zeros differ and not-a-number equals itself.
    auto const long_double = static_cast<double>(v.as_long_double());
    EXPECT_EQ(testing::PrintToString(std::tuple(v.as_float(), v.as_double(), long_double)),
              testing::PrintToString(std::tuple(static_cast<float>(r.floating), r.floating, r.floating)));
    ustring32 const wide = strings::utf8_to_utf32(r.text);
    EXPECT_EQ(std::tuple(v.as_string(), v.as_utf8(), v.as_ustring()), std::tuple(r.text, r.text, r.text));
    EXPECT_EQ(std::tuple(v.as_wstring(), v.as_utf32()), std::tuple(wide, wide));
    EXPECT_TRUE(v.as_utf16() == strings::utf8_to_utf16(r.text));
}

TEST(Variant, IntegersOfEveryLengthAreText) {
    auto const expect = [](auto number) {
        std::string const text = std::to_string(number);
        EXPECT_EQ(variant(number).as_string(), text);
        EXPECT_EQ(variant(number).as_wstring(), std::wstring(text.begin(), text.end()));
        EXPECT_TRUE(variant(number).as_utf16() == ustring16(text.begin(), text.end()));
    };
    for (unsigned long long power = 1; power < ull_max / 10; power *= 10) {
        for (unsigned long long const n : {power - 1, power, power * 5, power * 10 - 1}) {
            expect(n);
            expect(static_cast<long long>(0 - n));
            expect(static_cast<unsigned int>(n));
            expect(static_cast<int>(0 - n));
            expect(static_cast<unsigned short>(n));
        }
    }
}

TEST(Variant, NumbersReadAsEveryType) {
    std::locale::global(std::locale::classic());
    reading const rows[] = {
        {types::nil, 0, 0, 0, 0, 0, 0, 0, 0, false, 0, ""},
        {true, 1, 1, 1, 1, 1, 1, 1, 1, true, 1, "1"},
        {static_cast<signed char>(-1), -1, -1, -1, -1, 255, 65535, u32_max, ull_max, true, -1, "-1"},
        {static_cast<unsigned char>(200), -56, 200, 200, 200, 200, 200, 200, 200, true, 200, "200"},
        {static_cast<short>(-300), -44, -300, -300, -300, 212, 65236, 4294966996U, ull_max - 299, true, -300,
         "-300"},
        {static_cast<unsigned short>(65535), -1, -1, 65535, 65535, 255, 65535, 65535, 65535, true, 65535, "65535"},
        {min32, 0, 0, min32, min32, 0, 0, 2147483648U, ull_max - 2147483647, true, min32, "-2147483648"},
        {u32_max, -1, -1, -1, u32_max, 255, 65535, u32_max, u32_max, true, u32_max, "4294967295"},
        {-70000L, -112, -4464, -70000, -70000, 144, 61072, 4294897296U, ull_max - 69999, true, -70000, "-70000"},
        {256UL, 0, 256, 256, 256, 0, 256, 256, 256, true, 256, "256"},
        {ll_min, 0, 0, 0, ll_min, 0, 0, 0, 1ULL << 63, true, -0x1p63, "-9223372036854775808"},
        {ull_max, -1, -1, -1, -1, 255, 65535, u32_max, ull_max, true, 0x1p64, "18446744073709551615"},
        {-3.9, -3, -3, -3, -3, 0, 0, 0, 0, true, -3.9, "-3.9"},
        {-0.0, 0, 0, 0, 0, 0, 0, 0, 0, false, -0.0, "-0"},
        {300.5, 127, 300, 300, 300, 255, 300, 300, 300, true, 300.5, "300.5"},
        {-129.0F, -128, -129, -129, -129, 0, 0, 0, 0, true, -129, "-129"},
        {0x1p63, 127, 32767, max32, ll_max, 255, 65535, u32_max, 1ULL << 63, true, 0x1p63, "9.22337e+18"},
        {1e20L, 127, 32767, max32, ll_max, 255, 65535, u32_max, ull_max, true, 1e20, "1e+20"},
        {-infinity, -128, -32768, min32, ll_min, 0, 0, 0, 0, true, -infinity, "-inf"},
        {nan, 0, 0, 0, 0, 0, 0, 0, 0, true, nan, "nan"}};
    constexpr bool wide_long = sizeof(long) == sizeof(long long);
    for (reading const& r : rows) expect_readings(r, wide_long ? static_cast<long>(r.i64) : r.i32);
}

TEST(Variant, TextsAreReadByTheReaderOfTheTarget) {
    std::locale::global(std::locale::classic());
    constexpr long long billions = 3000000000LL;
    reading const rows[] = {
        {"", 0, 0, 0, 0, 0, 0, 0, 0, false, 0, ""},
        {"0x1F", 31, 31, 31, 31, 31, 31, 31, 31, true, 0, "0x1F"},
        {std::string("-1"), -1, -1, -1, -1, 0, 0, 0, 0, true, -1, "-1"},
        {"1.5e3abc", 1, 1, 1, 1, 1, 1, 1, 1, true, 1500, "1.5e3abc"},
        {L"3000000000", 127, 32767, max32, billions, 255, 65535, 3000000000U, billions, true, 3e9, "3000000000"},
        {std::wstring(L"-3000000000"), -128, -32768, min32, -billions, 0, 0, 0, 0, true, -3e9, "-3000000000"},
        {ustring16(units_300), 127, 300, 300, 300, 255, 300, 300, 300, true, 300, " 300"},
        {ustring32(L"caf\u00E9"), 0, 0, 0, 0, 0, 0, 0, 0, false, 0, "caf\xC3\xA9"},
        {std::string("1\xE2\x82\xAC"), 1, 1, 1, 1, 1, 1, 1, 1, true, 1, "1\xE2\x82\xAC"}};
    for (reading const& r : rows) expect_readings(r, r.i32); // str_to_long has 32-bit limits on every build
}

void expect_truth(bool truth, std::initializer_list<ustring8> texts) {
    for (ustring8 const& text : texts) {
        ustring32 wide;
        for (char const byte : text) wide += static_cast<wchar_t>(static_cast<unsigned char>(byte));
        for (variant const& value : {variant(text), variant(wide), variant(ustring16(wide.begin(), wide.end()))})
            EXPECT_EQ(value.as_bool(), truth) << text << " as " << value.type().name();
    }
}

TEST(Variant, TruthOfTexts) {
    expect_truth(true, {"yes", "YeS", "on", "ON", "TRUE", "tRuE", "1", "-0x10", "99999999999"});
    expect_truth(false, {"no", "maybe", "off", "false", "0", "", " yes", "yes ", "o", "truE1", "00",
                         ustring8("on\0", 3), "\x4F\xCE", "yE\x13", "tru\xE5"});
    EXPECT_FALSE(variant(L"\x0001006F\x6E").as_bool()); // its low bytes spell "on"
}

TEST(Variant, TextGoesThroughTheConversionsUnlessTheEncodingIsTheSame) {
    unsigned short const lone[] = {'a', 0xD800, 0}, reversed[] = {0xFFFE, 0x6100, 0}, pair[] = {0xD87D, 0xDE00, 0};
    variant const broken(ustring8("a\xC3\0", 3));
    EXPECT_EQ(broken.as_string(), std::string("a\xC3\0", 3));
    EXPECT_EQ(broken.as_wstring(), std::wstring(L"a?\0", 3));
    EXPECT_EQ(variant(broken.as_utf16()).as_string(), "-1");
    EXPECT_EQ(variant(lone).as_string(), "-1");
    EXPECT_EQ(variant(lone).as_utf32(), L"-1");
    EXPECT_TRUE(variant(lone).as_utf16() == lone);
    EXPECT_EQ(variant(reversed).as_utf32(), L"\xFEFF\x61");
    EXPECT_TRUE(variant(L"\U0001F600").as_utf16() == pair); // not the standard pair
    EXPECT_EQ(variant(std::wstring(L"\xD800")).as_utf8(), "-1");
}

TEST(Variant, StreamsAsTheTypeHeld) {
    std::locale::global(std::locale::classic());
    EXPECT_EQ(streamed(types::nil), "0");
    EXPECT_EQ(streamed(static_cast<signed char>('A')) + streamed(static_cast<unsigned char>('B')), "AB");
    EXPECT_EQ(streamed('A'), "65");
    EXPECT_EQ(streamed(1.0 / 3), "0.333333");
    EXPECT_EQ(streamed("text") + streamed(std::string("text")), "texttext");
    EXPECT_EQ(streamed(units_300), " 300");
    EXPECT_EQ(streamed(L"caf\u00E9"), "caf\xC3\xA9");
    std::ostringstream stream;
    stream << std::hex << std::boolalpha << variant(255) << variant(true);
    EXPECT_EQ(stream.str(), "fftrue"); // the stream's own format holds

    std::string const text = streamed(std::wstring(L"hidden"));
    EXPECT_TRUE(text.starts_with(std::string("< ") + typeid(std::wstring).name() + " instance at 0x")) << text;
    EXPECT_TRUE(text.ends_with(" >")) << text;
}

// A wide string streams the address of its value, which tells payloads apart.
TEST(Variant, CopiesShareThePayload) {
    variant assigned(1);
    std::string address;
    {
        variant const source(std::wstring(L"shared"));
        address = streamed(source);
        variant copy(source);
        variant moved(std::move(copy));
        assigned = moved;
        EXPECT_EQ(streamed(copy) + streamed(moved), address + address); // moving changes nothing
        moved = types::nil;
        EXPECT_TRUE(moved == types::nil);
    }
    variant const& same = assigned;
    assigned = same;
    EXPECT_EQ(streamed(assigned) + assigned.as_string(), address + "shared");
}

TEST(Variant, PayloadsCloneThemselves) {
    types::variant_value_t<std::wstring> original(L"text");
    memory::pointers::rc_pointer<types::variant_type> const clone(original.clone());
    EXPECT_TRUE(clone->heap_allocated && clone->reference_count == 1 && clone->convertible());
    EXPECT_EQ(clone->as_string(), "text");
    std::ostringstream first, second;
    original.ostream(first);
    clone->ostream(second);
    EXPECT_NE(first.str(), second.str());
}

TEST(Variant, FloatingTextFollowsTheGlobalLocale) {
    struct comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '\xB7'; }
        std::string do_grouping() const override { return "\3"; }
    };
    std::locale const before = std::locale::global(std::locale(std::locale::classic(), new comma));
    std::string const narrow = variant(1234.5L).as_string(), integer = variant(12345).as_string();
    std::wstring const wide = variant(1234.5F).as_wstring();
    double const read = variant("0,5").as_double();
    std::locale::global(before);
    EXPECT_EQ(narrow, "1\xB7\62\63\64,5");
    EXPECT_EQ(wide, L"1\u00B7234,5"); // unit by unit
    EXPECT_EQ(integer, "12345");
    EXPECT_EQ(read, 0.5);
}

} // namespace

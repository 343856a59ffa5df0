// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Rows pin down what single texts give. All texts are held against a plain form by fuzz/utf_fuzz.cpp.
#include <zolt/strings/unicode.hpp>

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

using namespace ZOLT_2_18::strings;
using testing::PrintToString;

ustring16 u16(std::vector<unsigned short> const& units) { return ustring16(units.begin(), units.end()); }
ustring32 u32(std::vector<std::uint32_t> const& units) { return ustring32(units.begin(), units.end()); }

ustring16 const failed16 = u16({'-', '1'});

void expect_from_8(ustring8 const& text, ustring16 const& units, ustring32 const& codes) {
    EXPECT_EQ(utf8_to_utf16(text), units) << PrintToString(text);
    EXPECT_EQ(utf8_to_utf32(text), codes) << PrintToString(text);
}

void expect_from_32(ustring32 const& text, ustring8 const& bytes, ustring16 const& units) {
    EXPECT_EQ(utf32_to_utf8(text), bytes) << PrintToString(text);
    EXPECT_EQ(utf32_to_utf16(text), units) << PrintToString(text);
}

TEST(Unicode, SingleConversions) {
    expect_from_8("\x41\xC3", failed16, u32({'A', '?'}));
    expect_from_8("\xF8\x80\x80\x80z", failed16, u32({'?', '?', '?', '?', 'z'}));
    expect_from_8("\xF0\x9F\x98\x80", u16({0xD83D, 0xDE00}), u32({0x1F600}));
    // overlong forms, surrogates and values beyond Unicode are read as written
    expect_from_8("\xC1\x81", u16({0x41}), u32({0x41}));
    expect_from_8("\xED\xA0\x80", u16({0xD800}), u32({0xD800}));
    expect_from_8("\xF0\x80\x80\x80", u16({0xD7C0, 0xDC00}), u32({0}));
    expect_from_8("\xF7\xBF\xBF\xBF", u16({0xDFBF, 0xDFFF}), u32({0x1FFFFF}));
    // pairs without the subtraction; surrogates end both, values beyond Unicode only one
    expect_from_32(u32({0xFFFE, 0xFFFF}), "\xEF\xBF\xBE\xEF\xBF\xBF", u16({0xFFFE, 0xD83F, 0xDFFF}));
    expect_from_32(u32({0x1F600}), "\xF0\x9F\x98\x80", u16({0xD87D, 0xDE00}));
    expect_from_32(u32({'a', 0xD800}), "-1", failed16);
    expect_from_32(u32({'a', 0x110000, 0x80000041, 'b', 0xFFFFFFFF, 'c'}), "abc", failed16);
    unsigned long consumed = 0;
    EXPECT_EQ(unichar(u32({'a', 0xFFFFFFFF}).data(), 2, 1, consumed), 0xFFFFFFFF);
    EXPECT_EQ(unichar(L"a", 1, 1, consumed), static_cast<unsigned long>('?'));
    EXPECT_EQ(consumed, 0xFFFFFFFF);
}

// Every code point in one text, moved along so that words and pieces are cut at all places.
TEST(Unicode, EveryCodePointKeepsItsValue) {
    for (std::size_t shift = 0; shift <= 8; ++shift) {
        ustring32 all(shift, L'a');
        ustring16 wide(shift, 'a');
        for (std::uint32_t code = 0; code < 0x110000; code += code == 0xD7FF ? 0x801 : 1) {
            all += static_cast<wchar_t>(code);
            if (code >= 0xFFFF) wide += static_cast<unsigned short>(0xD800 + (code >> 10));
            wide += static_cast<unsigned short>(code < 0xFFFF ? code : 0xDC00 + (code & 0x3FF));
        }
        ustring8 const bytes = utf32_to_utf8(all);
        ustring16 const units = utf8_to_utf16(bytes);
        ASSERT_EQ(bytes.size(), shift + 128 + 1920 * 2 + (0xF800 - 0x800) * 3 + 0x100000 * 4);
        ASSERT_TRUE(utf8_to_utf32(bytes) == all && utf16_to_utf32(units) == all);
        ASSERT_TRUE(utf16_to_utf8(units) == bytes && utf32_to_utf16(all) == wide);
    }
}

TEST(Unicode, SequenceLengthFollowsTheLead) {
    for (unsigned int lead = 0; lead < 256; ++lead) {
        unsigned char const text[] = {static_cast<unsigned char>(lead), 0x80, 0x80, 0x80};
        unsigned long consumed = 0;
        unichar(reinterpret_cast<char const*>(text), 4, 0, consumed);
        EXPECT_EQ(gh2::get_utf8_length(text, 1), consumed == no_index ? 0 : consumed) << lead;
    }
    EXPECT_EQ(gh2::get_utf8_length("a", 0) + gh2::get_utf8_length(static_cast<char const*>(nullptr), 1), 0u);
    EXPECT_FALSE(gh2::validate_utf8("a", 0) || gh2::validate_utf8(static_cast<char const*>(nullptr), 1));
}

template <typename Text>
void check_indexes(Text const& text, std::vector<unsigned long> const& of_character) {
    for (std::size_t n = 0; n < of_character.size(); ++n) {
        EXPECT_EQ(character_index(text, n), of_character[n]) << PrintToString(text) << " " << n;
    }
}

TEST(Unicode, CharacterIndex) {
    check_indexes(ustring8(), {no_index});
    check_indexes(ustring8("ab"), {0, 1, no_index});
    check_indexes(ustring8("a\xC3\xA9"), {0, 1, 3, no_index});
    check_indexes(ustring8("\xE2\x82\xAC\xF0\x9F\x98\x80\xE2\x82"), {0, 3, 7, no_index});
    check_indexes(u16({0xD83D, 0xDE00, 'a', 0xD83D}), {0, 2, 3, no_index, no_index});
    // a low surrogate hinders at the text's first place only
    check_indexes(u16({0xDC00, 'a', 'b'}), {0, no_index, no_index});
    check_indexes(u16({'a', 0xDC00, 'b'}), {0, 1, 2, no_index});
}

TEST(Unicode, ByteOrderMarks) {
    EXPECT_EQ(remove_BOM(ustring8("\xEF\xBB\xBF\xEF\xBB\xBFz")), "\xEF\xBB\xBFz");
    for (char const* text : {"abc", "", "\xEF\xBB", "a\xEF\xBB\xBF"}) EXPECT_EQ(remove_BOM(ustring8(text)), text);
    EXPECT_EQ(remove_BOM(u16({0xFEFF, 'a'})), u16({'a'}));
    EXPECT_EQ(remove_BOM(u16({0xFFFE, 'a'})), u16({0xFFFE, 'a'}));
    EXPECT_EQ(remove_BOM(u32({0xFEFF})), u32({}));
    EXPECT_EQ(check_BOM_and_swap(u16({0xFFFE, 0x1234})), u16({0xFEFF, 0x3412}));
    EXPECT_EQ(check_BOM_and_swap(u16({0xFEFF, 0x1234})), u16({0xFEFF, 0x1234}));
    EXPECT_EQ(utf16_to_utf8(u16({0xFFFE, 0x4100})), "\xEF\xBB\xBF\x41");
}

} // namespace

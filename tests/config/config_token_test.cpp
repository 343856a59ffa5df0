// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/config/base_config_item.hpp>
#include <zolt/config/config_token.hpp>

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace ZOLT_2_18::config;
using ZOLT_2_18::strings::ustring8;

// All tokens as "kind'text'start-end ", T_END left out. They follow each other without a gap; only the last
// may end one past the text.
std::string tokens(ustring8 const& text) {
    std::string all;
    unsigned int position = 0, before = 0;
    config_token token;
    while (base_config_item::get_token(text, position, token) != config_token::T_END) {
        EXPECT_TRUE(token.start == before && before < token.end && token.end == position) << text;
        before = position;
        all += std::to_string(token.kind) + "'" + token.text + "'" + std::to_string(token.start) + "-" +
               std::to_string(token.end) + " ";
    }
    EXPECT_EQ(text.size() + (token.kind == config_token::T_END && position > text.size()), position) << text;
    return all;
}

TEST(config_token, text_is_cut_into_tokens) {
    std::pair<ustring8, std::string> const rows[] = {
        // runs; blanks keep the text before them
        {"a=1", "0'a'0-1 7'='1-2 1'1'2-3 "},
        {"abc12.5_d", "0'abc'0-3 1'12'3-5 17'.'5-6 1'5'6-7 31'_'7-8 0'd'8-9 "},
        {"  x  \ty", "6''0-2 0'x'2-3 6'x'3-5 3'\t'5-6 0'y'6-7 "},
        // line ends
        {"\n\r\n\r\r\n\r", "2'\n'0-1 2'\n'1-3 4'\r'3-4 2'\n'4-6 4'\r'6-7 "},
        // marks of two bytes and of one
        {"===>=><=<:=:", "8'=='0-2 7'='2-3 10'>='3-5 9'>'5-6 12'<='6-8 11'<'8-9 14':='9-11 13':'11-12 "},
        {"+=+-=-*=*", "22'+='0-2 20'+'2-3 23'-='3-5 21'-'5-6 28'*='6-8 26'*'8-9 "},
        {"#[]/=//*//", "15'#'0-1 18'['1-2 19']'2-3 29'/='3-5 16'//'5-7 24'*/'7-9 27'/'9-10 "},
        // strings: nothing is unescaped, an open one ends one past the text
        {R"("a # b"c"a\"b""")", R"(30'a # b'0-7 0'c'7-8 30'a\"b'8-14 30''14-16 )"},
        {R"("a\\"b"c\")", R"(30'a\\'0-5 0'b'5-6 30'c\"'6-11 )"},
        {"\"a\\", "30'a\\'0-4 "},
        {"a\"", "0'a'0-1 30''1-3 "},
        // single bytes
        {",;$\xC3\xA9", "31','0-1 31';'1-2 31'$'2-3 31'\xC3'3-4 31'\xA9'4-5 "},
        {ustring8("a\0b", 3), std::string("0'a'0-1 31'\0'1-2 0'b'2-3 ", 25)},
    };
    for (auto const& [text, expected] : rows) EXPECT_EQ(expected, tokens(text)) << text;
}

TEST(config_token, the_end_leaves_the_token_alone) {
    config_token token;
    for (unsigned int const from : {3u, 4u, 4294967295u}) {
        unsigned int position = 1;
        EXPECT_EQ(16u, base_config_item::get_token("a*/", position, token)) << "kept: not the kind recorded";
        EXPECT_EQ(24u, token.kind);
        position = from;
        EXPECT_EQ(5u, base_config_item::get_token("a*/", position, token));
        EXPECT_EQ(from, position);
        EXPECT_TRUE(token.kind == 5 && token.text == "*/" && token.start == 1 && token.end == 3);
    }
}

TEST(config_token, kinds_have_names) {
    std::string names;
    for (unsigned int kind = 0; kind <= 32; ++kind) {
        config_token token;
        token.text = "x";
        token.kind = static_cast<config_token::tok_types>(kind);
        names += token.CvtTokStr() + ";";
    }
    EXPECT_EQ("T_VAR :[x];T_NUM;T_NEWLINE;T_TABCHAR;T_UNKNOWN:[x];T_END;T_SPACE;T_EQ;T_EQEQ;T_GT;T_GTEQ;T_LT;"
              "T_LTEQ;T_COLON;T_COLONEQ;T_POUND;T_FSFS;T_DOT;T_SBRACKET;T_EBRACKET;T_PLUS;T_MINUS;T_PLUSEQ;"
              "T_MINUSEQ;unknown type;unknown type;T_TIMES;T_DIV;T_TIMESEQ;T_DIVEQ;T_STRING:[x];"
              "T_NON_ALPHA_NUM:[x];unknown type;",
              names);
}

TEST(config_token, character_classes) {
    std::pair<bool (*)(char), std::string> const rows[] = {
        {isConfigWhite, "\t\n\r "},
        {isConfigSpace, " "},
        {isConfigAlpha, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"},
        {isConfigDigit, "0123456789"},
        {isConfigDelim, std::string(" +-*^/%=;(),<>~&|{}\n\t[]?$\r\0", 27)},
        {isConfigDotSlash, ".\\/"},
    };
    for (auto const& [is_member, members] : rows) {
        for (int byte = 0; byte < 256; ++byte) {
            bool const expected = members.find(static_cast<char>(byte)) != std::string::npos;
            EXPECT_EQ(expected, is_member(static_cast<char>(byte))) << members << " " << byte;
        }
    }
}

TEST(config_token, values_with_space_are_quoted) {
    for (char const* const bare : {"", "a,b", "a\"#\vb"}) EXPECT_EQ(bare, quote_value(bare));
    for (std::string const spaced : {" ", "a b", "a\tb", "\rb", "a\n", "a \"b\\"}) {
        EXPECT_EQ("\"" + spaced + "\"", quote_value(spaced));
    }
}

} // namespace

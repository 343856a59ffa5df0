// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// iconv's three functions are wrapped here, so that their failures can be brought about.
#include <zolt/exceptions/exception.hpp>
#include <zolt/strings/code_page.hpp>
#include <zolt/strings/unicode.hpp>

#include <gtest/gtest.h>

#include <cerrno>
#include <clocale>
#include <locale>
#include <random>
#include <utility>
#include <vector>

#include <dlfcn.h>
#include <iconv.h>

namespace {

// The errno that the next call of each function fails with; 0 lets it pass.
struct failures {
    int open, convert, close;
} next;
int open_converters = 0, opened_converters = 0;

bool fails(int& cause) { return cause != 0 && (errno = std::exchange(cause, 0)) != 0; }

} // namespace

#define NEXT(function) reinterpret_cast<decltype(&function)>(dlsym(RTLD_NEXT, #function))

extern "C" [[gnu::visibility("default")]] iconv_t iconv_open(char const* to, char const* from) {
    if (fails(next.open)) return reinterpret_cast<iconv_t>(-1);
    ++open_converters, ++opened_converters;
    return NEXT(iconv_open)(to, from);
}

extern "C" [[gnu::visibility("default")]] size_t iconv(iconv_t by, char** in, size_t* left, char** out,
                                                       size_t* room) {
    static auto* const convert = NEXT(iconv);
    return in && fails(next.convert) ? static_cast<size_t>(-1) : convert(by, in, left, out, room);
}

extern "C" [[gnu::visibility("default")]] int iconv_close(iconv_t by) {
    --open_converters;
    int const result = NEXT(iconv_close)(by);
    return fails(next.close) ? -1 : result;
}

namespace {

using namespace ZOLT_2_18;
using namespace ZOLT_2_18::strings;

std::vector<std::pair<int, std::string>> all_pages() {
    std::vector<std::pair<int, std::string>> rows = {
        {4, "UTF-8"},      {932, "WINDOWS-31J"},   {936, "GBK"},
        {949, "CP949"},    {950, "BIG5"},          {20866, "KOI8-R"},
        {21866, "KOI8-U"}, {28605, "ISO-8859-15"}, {125100, "ANSI_X3.4-1968"}};
    for (int n = 1250; n <= 1258; ++n) rows.emplace_back(n, "CP" + std::to_string(n));
    for (int n = 1; n <= 9; ++n) rows.emplace_back(28590 + n, "ISO-8859-" + std::to_string(n));
    return rows;
}

void check_page(int type, std::string const& name) {
    SCOPED_TRACE(name);
    code_page const page(static_cast<code_page::encoding_type>(type));
    EXPECT_EQ(page.to_system_type(page.type()), name);
    for (int value = 0; value < 256; ++value) {
        std::string const byte(1, static_cast<char>(value));
        ustring8 const text = page.as_utf8(byte);
        EXPECT_TRUE(text == ustring8("?") || page.encode(text) == byte) << value;
    }
}

TEST(CodePage, EveryPageConvertsEveryByte) {
    for (auto const& [type, name] : all_pages()) check_page(type, name);
}

// The rules, one character after the other, with an open converter.
class by_converter {
public:
    by_converter(std::string const& to, std::string const& from) : m_by(iconv_open(to.c_str(), from.c_str())) {}
    ~by_converter() { iconv_close(m_by); }

    std::string operator()(std::string text) const {
        std::string result(4 * text.size() + 16, '\0');
        char *in = text.data(), *out = result.data();
        std::size_t left = text.size(), room = result.size();
        iconv(m_by, nullptr, nullptr, nullptr, nullptr);
        while (left > 0 && iconv(m_by, &in, &left, &out, &room) == static_cast<std::size_t>(-1)) {
            std::size_t const skipped = errno == EILSEQ ? 1 : left;
            iconv(m_by, nullptr, nullptr, &out, &room);
            *out++ = '?';
            --room, in += skipped, left -= skipped;
        }
        iconv(m_by, nullptr, nullptr, &out, &room);
        return result.erase(static_cast<std::size_t>(out - result.data()));
    }

private:
    iconv_t m_by;
};

// What a page writes by its table is compared with what the converter does: each character, every pair of
// bytes, and mixtures of every kind of text at all lengths and places.
TEST(CodePage, TablesAnswerAsTheConverterDoes) {
    std::mt19937 random(5);
    auto const below = [&random](std::size_t end) { return random() % static_cast<unsigned int>(end); };
    for (auto const& [type, name] : all_pages()) {
        SCOPED_TRACE(name);
        code_page const page(static_cast<code_page::encoding_type>(type));
        by_converter const decoded("UTF-8", name), encoded(name, "UTF-8");
        page.as_utf8("");
        opened_converters = 0;
        EXPECT_EQ(page.encode(page.as_utf8("table")), "table");
        bool const has_state = type < 1250 || type == code_page::cp1255 || type == code_page::cp1258;
        EXPECT_EQ(opened_converters, has_state ? 2 : 0);

        std::vector<std::string> samples = {" ", "plain ASCII text of more than thirty-two bytes", "?", "\xE2\x82"};
        for (int first = 0; first < 256; ++first) {
            std::string pairs, byte(1, static_cast<char>(first));
            for (int second = 0; second < 256; ++second) (pairs += byte) += static_cast<char>(second);
            bool const may_differ = type == 949 && (first == 0xA2 || first == 0xE8); // see below
            ASSERT_TRUE(may_differ || page.as_utf8(pairs) == decoded(pairs)) << first;
            samples.push_back(decoded(byte));
        }
        for (unsigned int code = 0; code < 0x2600; ++code) {
            ustring8 const text = utf32_to_utf8(ustring32(1, static_cast<ustring32::value_type>(code)));
            ASSERT_EQ(page.encode(text), encoded(text)) << code;
        }
        for (int i = 0; i < 1000; ++i) {
            std::string text, bytes;
            std::size_t const length = below(200), kinds = i % 2 == 0 ? samples.size() : 2 + below(4);
            std::size_t const start = below(samples.size() - kinds + 1);
            while (text.size() < length) text += samples[start + below(kinds)];
            if (i % 8 == 0) text.resize(length);
            if (i % 16 == 1) text.insert(below(text.size() + 1), 1, static_cast<char>(random()));
            ASSERT_EQ(page.encode(text), encoded(text)) << testing::PrintToString(text);
            ASSERT_EQ(page.as_utf8(text), decoded(text)) << testing::PrintToString(text);
            bytes = encoded(text);
            ASSERT_EQ(page.as_utf8(bytes), decoded(bytes)) << testing::PrintToString(bytes);
        }
        std::string const longer(10000, '\xE4');
        ASSERT_EQ(page.as_utf8("a" + longer), decoded("a" + longer));
    }
}

// glibc refuses the bytes A2 E8 of this page when it stands behind them already, at the end behind the end.
TEST(CodePage, WhatTheConverterPassesBeforeItRefusesIsReadAgain) {
    code_page const page(static_cast<code_page::encoding_type>(949));
    EXPECT_EQ(page.as_utf8("\xA2\xE8"), "??");
    EXPECT_EQ(page.as_utf8("x\xA2\xE8"), "x??");
    EXPECT_EQ(page.as_utf8("\xA2\xE8 \xA2\xE8\xFF\xA2"), "?? ????");
    EXPECT_EQ(page.as_utf8("\xA2\xE8\xE8\xE8$"), "?\uF9BB?$");
}

template <typename Exception, typename Call>
void expect_raised(Call call, char const* message, unsigned int line, char const* function) {
    try {
        call();
        ADD_FAILURE() << message << " not thrown from line " << line;
    } catch (Exception const& e) {
        EXPECT_STREQ(e.get_message(), message);
        EXPECT_EQ(e.where.line, line);
        EXPECT_STREQ(e.where.file, "strings/code_page");
        EXPECT_STREQ(e.where.function, function);
    }
    EXPECT_EQ(open_converters, 0);
}

TEST(CodePage, InvalidPagesThrow) {
    using exceptions::invalid_argument_value;
    char const* const text = "Not valid code_page type";
    for (int type : {0, -1, 5, 1249, 1259, 28590, 28600, 28601, 28602, 28603, 28604, 28606, 125101}) {
        SCOPED_TRACE(type);
        code_page const page(static_cast<code_page::encoding_type>(type));
        expect_raised<invalid_argument_value>([&] { page.encode(ustring8()); }, text, 588, "to_system_type");
        expect_raised<invalid_argument_value>([&] { page.as_utf16(""); }, text, 588, "to_system_type");
    }
}

TEST(CodePage, FailuresOfTheConverterThrow) {
    code_page const page(code_page::cp932); // never has a table
    auto const expect_failure = [&page](failures causes, char const* message, unsigned int encode,
                                        unsigned int as_utf8) {
        next = causes;
        expect_raised<exceptions::runtime_error>([&] { page.encode("a"); }, message, encode, "encode");
        next = causes;
        expect_raised<exceptions::runtime_error>([&] { page.as_utf8("a"); }, message, as_utf8, "as_utf8");
    };
    expect_failure({EINVAL, 0, 0}, "convertions not supported", 221, 369);
    expect_failure({ENOMEM, 0, 0}, "Unknown failure on iconv open", 224, 372);
    expect_failure({0, EBADF, 0}, "Unknown iconv error", 304, 451);
    expect_failure({0, 0, EBADF}, "iconv failed to close", 315, 462);
}

void expect_encoded(code_page const& page, ustring8 const& text, std::string const& bytes) {
    EXPECT_EQ(page.encode(text), bytes) << page.type() << " " << text;
}

void expect_decoded(code_page const& page, std::string const& bytes, ustring8 const& text) {
    EXPECT_EQ(page.as_ustring(bytes), text) << page.type() << " " << text;
}

TEST(CodePage, SingleConversions) {
    // one "?" for each byte of a character that the page lacks, and for all of an incomplete end
    expect_encoded(code_page::cp1252, ustring8("\0\xC3\xA9", 3), std::string("\0\xE9", 2));
    expect_encoded(code_page::iso_8859_1, "a\xE2\x82\xACz", "a???z");
    expect_encoded(code_page::cp1252, "a\xFFz\x80", "a?z?");
    expect_encoded(code_page::cp1252, "a\xE2\x82", "a?");
    expect_decoded(code_page::cp932, "\x82\xA0\x82", "\xE3\x81\x82?");
    // a letter that waits for its accent is not lost: at the end, before a "?", before another letter
    expect_decoded(code_page::cp1258, "aa\xEC\xEC", "a\xC3\xA1\xCC\x81");
    expect_decoded(code_page::cp1255, "\xE9\xC4\xE9", "\xEF\xAC\x9D\xD7\x99");
    expect_decoded(code_page::cp1255, "\xE9\xFF\xE9", "\xD7\x99?\xD7\x99");
    code_page const page(code_page::cp1252);
    EXPECT_EQ(page.encode(ustring32(page.as_utf32("\x80"))) + page.encode(page.as_utf16("\x80")), "\x80\x80");
    EXPECT_EQ(page.encode(ustring16(1, 0xD800)), "-1");
}

// Every length and every place of a bad byte meets another state of the output's room.
TEST(CodePage, OutputGrows) {
    for (std::size_t length = 0; length < 70; ++length) {
        for (std::size_t bad = 0; bad <= length; ++bad) {
            std::string bytes(length, '\x80'), expected;
            if (bad < length) bytes[bad] = '\x81';
            for (std::size_t i = 0; i < length; ++i) expected += i == bad ? "?" : "\xE2\x82\xAC";
            ASSERT_EQ(code_page(code_page::cp1258).as_utf8(bytes + "a"), expected + "a") << length << " " << bad;
        }
    }
}

TEST(CodePage, SystemPagesFollowTheLocale) {
    std::locale::global(std::locale::classic());
    for (auto type : {code_page::system_1, code_page::system_2, code_page::system_3})
        EXPECT_EQ(code_page().to_system_type(type), "ANSI_X3.4-1968");
    std::setlocale(LC_ALL, "C.UTF-8");
    EXPECT_EQ(code_page(code_page::system_2).as_utf8("\xC3\xA9"), "\xC3\xA9");
    std::setlocale(LC_ALL, "C");
}

TEST(CodePage, ComparesAndAssigns) {
    code_page page(types::nil);
    EXPECT_TRUE(!(page == types::nil) && page != types::nil && page == code_page());
    EXPECT_TRUE(code_page(static_cast<code_page::encoding_type>(-1)) == types::nil);
    page = code_page::koi8_u;
    code_page copy;
    copy = page;
    EXPECT_TRUE(copy == code_page::koi8_u && copy != code_page::koi8_r && copy != code_page());
    EXPECT_EQ((page = types::nil).type(), code_page::none);
}

} // namespace

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// iconv's three functions are wrapped here, so that their failures can be brought about.
#include <zolt/exceptions/exception.hpp>
#include <zolt/strings/code_page.hpp>

#include <gtest/gtest.h>

#include <cerrno>
#include <clocale>
#include <utility>

#include <dlfcn.h>
#include <iconv.h>

namespace {

// The errno that the next call of each function fails with; 0 lets it pass.
struct failures {
    int open, convert, close;
} next;
int open_converters = 0;

bool fails(int& cause) { return cause != 0 && (errno = std::exchange(cause, 0)) != 0; }

} // namespace

#define NEXT(function) reinterpret_cast<decltype(&function)>(dlsym(RTLD_NEXT, #function))

extern "C" [[gnu::visibility("default")]] iconv_t iconv_open(char const* to, char const* from) {
    if (fails(next.open)) return reinterpret_cast<iconv_t>(-1);
    ++open_converters;
    return NEXT(iconv_open)(to, from);
}

extern "C" [[gnu::visibility("default")]] size_t iconv(iconv_t by, char** in, size_t* left, char** out,
                                                       size_t* room) {
    return in && fails(next.convert) ? static_cast<size_t>(-1) : NEXT(iconv)(by, in, left, out, room);
}

extern "C" [[gnu::visibility("default")]] int iconv_close(iconv_t by) {
    --open_converters;
    int const result = NEXT(iconv_close)(by);
    return fails(next.close) ? -1 : result;
}

namespace {

using namespace ZOLT_2_18;
using namespace ZOLT_2_18::strings;

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
    std::pair<int, char const*> const rows[] = {
        {4, "UTF-8"},      {932, "WINDOWS-31J"},   {936, "GBK"},
        {949, "CP949"},    {950, "BIG5"},          {20866, "KOI8-R"},
        {21866, "KOI8-U"}, {28605, "ISO-8859-15"}, {125100, "ANSI_X3.4-1968"}};
    for (auto const& [type, name] : rows) check_page(type, name);
    for (int n = 1250; n <= 1258; ++n) check_page(n, "CP" + std::to_string(n));
    for (int n = 1; n <= 9; ++n) check_page(28590 + n, "ISO-8859-" + std::to_string(n));
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
    code_page const page(code_page::cp1252);
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

TEST(CodePage, SystemPagesFollowTheLocale) { // which is "C" at first
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
    EXPECT_TRUE(page == code_page::koi8_u && page != code_page::koi8_r && page != code_page());
    EXPECT_EQ((page = types::nil).type(), code_page::none);
}

} // namespace

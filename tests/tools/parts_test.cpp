// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "tools/catalog/source_map.hpp"
#include "tools/program/json.hpp"
#include "tools/program/languages.hpp"
#include "tools/program/notation.hpp"
#include "tools/program/program_messages.hpp"
#include "tools/program/result_file.hpp"
#include "tools/program/terminal.hpp"
#include "tools/run_program.hpp"

#include <zolt/i18n/message_catalogs.hpp>
#include <zolt/parser/xml_parser.hpp>

#include <gtest/gtest.h>

#include <grp.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <algorithm>
#include <memory>
#include <set>
#include <utility>

namespace {

std::string s_synced; // what has been brought to the disk: f(ile), d(irectory)

} // namespace

// In front of the C library's.
extern "C" int fsync(int descriptor) {
    struct stat status {};
    s_synced += ::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode) ? 'd' : 'f';
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

namespace {

using namespace tools;
using zolt::i18n::message_catalogs;
using zolt::i18n::message_t;

std::multiset<ustring8> placeholders(message_t const& message) {
    std::multiset<ustring8> result;
    for (auto const& item : message) {
        if (item.type() == zolt::i18n::message_item::value) continue;
        result.insert(item.data() + ":" + std::string(type_keyword(item.type())));
    }
    return result;
}

TEST(ProgramMessages, AreTheSameInEveryLanguage) {
    for (char const* const language : {"en", "de"}) {
        SCOPED_TRACE(language);
        message_catalogs catalogs;
        ustring8 const path = ZOLT_SOURCE_DIR "/tools/catalogs/zolt." + std::string(language) + ".xmc";
        auto const result = catalogs.load_file(path, language);
        ASSERT_EQ(message_catalogs::no_error, result.code()) << result.message();
        EXPECT_EQ(static_cast<unsigned>(phrase::count_of_texts), catalogs.count("zolt"));
        for (unsigned i = 0; i != static_cast<unsigned>(phrase::count_of_texts); ++i) {
            auto const& built_in = program_messages::find(static_cast<phrase>(i));
            SCOPED_TRACE(built_in.name);
            message_t const& message = catalogs.message("zolt", ustring8(std::string(built_in.name)));
            EXPECT_EQ(language, message._orginal_locale());
            message_t const english(ustring8(), parse_notation(built_in.english));
            EXPECT_EQ(placeholders(english), placeholders(message));
            EXPECT_EQ(built_in.english, notation(english));
            if (std::string_view(language) == "en") {
                EXPECT_EQ(built_in.english, notation(message));
            }
        }
    }
}

TEST(Notation, WritesOptions) {
    message_t const message("m", {{"a{b}"},
                                  {"n\1base\1hex\1fieldsize\0018", zolt::i18n::message_item::int_},
                                  {"\1x\1\1y\1a \"b\"}", zolt::i18n::message_item::metric_unit},
                                  {"odd\1key", zolt::i18n::message_item::memory}});
    EXPECT_EQ("a{{b}}{n:int base=hex fieldsize=8}{:metric_unit x=\"\" y=\"a \"\"b\"\"}\"}{odd:memory key=\"\"}",
              notation(message));
}

TEST(Languages, AreMadeUsable) {
    std::pair<char const*, char const*> const rows[] = {
        {"", "en"},      {"C", "en"},       {"POSIX", "en"}, {"C.UTF-8", "en"},
        {"@euro", "en"}, {"de@euro", "de"}, {"Cs", "Cs"},    {"de_DE.UTF-8@x@y", "de_DE.UTF-8"},
        {".", "."}};
    for (auto const& [id, usable] : rows) EXPECT_EQ(usable, usable_language(id)) << id;
    std::string bases;
    for (char const* const id : {"de_AT_UTF_8", "de", "_x"})
        for_each_base(id, [&](std::string_view base) { bases.append(base).append(" "); });
    EXPECT_EQ("de_AT_UTF de_AT de ", bases);
    std::size_t sizes = 0; // of a long id no more than the library looks at
    for_each_base(std::string(1000, '_'), [&](std::string_view base) { sizes += base.size(); });
    EXPECT_EQ(63u * 64u / 2, sizes);
}

TEST(Terminal, MeasuresAndWraps) {
    EXPECT_EQ(0u, display_width(""));
    for (char const* const text : {"e\xCC\x81", "ｱ"}) EXPECT_EQ(1u, display_width(text)) << text;
    for (char const* const text : {"Ａ", "\xF0\x9F\x98\x80"}) EXPECT_EQ(2u, display_width(text)) << text;
    for (char const* const text : {"日本", "한국", "a\xFF\xE6\x97"}) EXPECT_EQ(4u, display_width(text)) << text;
    for (char const* const text : {"Zöltan", "Привет"}) EXPECT_EQ(6u, display_width(text)) << text;

    EXPECT_EQ("aa bb\ncc\ndd", wrap("aa bb cc\ndd", 5));
    EXPECT_EQ("日本\n語", wrap("日本 語", 6));
    EXPECT_EQ("longer\nx", wrap("longer x", 3));
    EXPECT_EQ("a\\x1B\\x7F\\x9B\\x0A\\x00", printable(std::string_view("a\033\x7F\xC2\x9B\n\0", 7)));
    EXPECT_EQ("ä\nb\\x09", printable("ä\nb\t", line_feeds::keep));
}

TEST(Terminal, ShowsABarThatTakesItselfAway) {
    int controller = -1;
    int terminal = -1;
    winsize const size = {25, 60, 0, 0};
    ASSERT_EQ(0, ::openpty(&controller, &terminal, nullptr, nullptr, &size));
    std::FILE* const file = ::fdopen(terminal, "w");
    output stream(file);
    progress_bar(stream).show(1, 2); // too early
    progress_bar(stream, std::chrono::milliseconds(0)).show(1, 2);
    std::fclose(file);
    EXPECT_EQ("\r\033[K[####################....................] 1/2\r\033[K", read_all(controller));
    ::close(controller);
}

TEST(Json, IsAlwaysValid) {
    json_writer json;
    json.begin_object();
    json.begin_array("empty");
    json.end_array();
    json.member("a\"\\\n\x7F", "ä\xFF\xC0\xAF\xED\xA0\x80\xF4\x90\x80\x80\xF0\x9F\x98\x80");
    json.end_object();
    std::string const ten_bytes_replaced = R"(\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD)";
    EXPECT_EQ("{\n  \"empty\": [],\n  \"a\\\"\\\\\\u000a\x7F\": \"ä" + ten_bytes_replaced + "\xF0\x9F\x98\x80\"\n}",
              json.text());
}

// Every line of the text that ends in "@n" begins, apart from blanks, with start tag number n.
TEST(SourceMap, FindsStartTags) {
    std::string const text = "\xEF\xBB\xBF<?xml version='1.0'\n?><!-- <no> ' \n-->\n"
                             "<a x='>\n<no>'   y=\"'\">don't @0\n"
                             "  <b/> @1\n"
                             "<!--\"--><c\n"
                             "  ></c> </a>";
    source_map const map(text);
    unsigned const lines[] = {4, 6, 7, 1};
    for (std::size_t n = 0; n != 4; ++n) EXPECT_EQ(lines[n], map.element_line(n));
}

// A fault put behind any piece of a text, here with the events up to there, is found in its own line.
TEST(SourceMap, ConvertsFaultLines) {
    std::pair<char const*, std::size_t> const pieces[] = {{"<?xml\nversion='1.0'?>\n\n", 0},
                                                          {"<!-- \n\n -->", 1},
                                                          {"\n<a\n", 1},
                                                          {" x='\n1\n'", 2},
                                                          {"\ny=\"\n\"\n", 3},
                                                          {">text\ntext", 3},
                                                          {"<b/>\n", 3},
                                                          {"</a\n>", 3},
                                                          {"<!--\n-->\n", 4}};
    std::string before;
    for (auto const& [piece, events] : pieces) {
        before += piece;
        ustring8 const text = before + "</wrong>\n\n";
        SCOPED_TRACE(text);
        zolt::parser::xml_parser parser;
        auto const fault = parser.parse(text);
        ASSERT_NE(zolt::parser::xml_parser::parse_error::no_error, fault.kind);
        auto const line = 1 + std::count(before.begin(), before.end(), '\n');
        EXPECT_EQ(line, source_map(text).fault_line(fault.line, events));
    }
    for (char const* const text : {"no\nheader\n", "<?xml\n>\n<a/><?b?>", "<?xml\n"})
        EXPECT_EQ(1u, source_map(text).fault_line(0, 0)) << text;
}

// Whatever the text, also cut off anywhere.
TEST(SourceMap, ReadsAnything) {
    std::string const text = "\xEF\xBB\xBF<?xml?><a b='c\n'><!-- \n --><d>'\"</d></a>\n";
    for (std::size_t length = 0; length <= text.size(); ++length) {
        auto const exact = std::make_unique<char[]>(length);
        std::copy_n(text.data(), length, exact.get());
        source_map const map(std::string_view(exact.get(), length));
        EXPECT_GE(map.fault_line(100, 100), 1u);
        EXPECT_LE(map.fault_line(100, 100), 3u);
    }
}

using ResultFile = in_directory;

// First the content, then the name of the file, here of one that a link leads to.
TEST_F(ResultFile, IsOnTheDiskWhenCommitted) {
    store("old", "file");
    std::filesystem::create_symlink("file", directory + "/link");
    result_file file{ustring8(directory + "/link")};
    ASSERT_NE(nullptr, file.stream());
    std::fputs("new", file.stream());
    EXPECT_EQ("", s_synced);
    EXPECT_EQ(0, file.commit());
    EXPECT_EQ("fd", s_synced);
    EXPECT_EQ("new", content("file"));
}

// Only root can become somebody who may write the file and not give it away.
TEST_F(ResultFile, LeavesNoRightsToAnotherGroup) {
    if (::geteuid() != 0) GTEST_SKIP() << "not root";
    constexpr uid_t root = 0, writer = 12345;
    constexpr gid_t team = 54321, others = 54322;
    struct {
        uid_t owner;
        gid_t group;
        gid_t new_group;
        mode_t new_mode;
    } const rows[] = {
        {root, team, team, 0664},
        {root, others, writer, 0604},
        {writer, team, team, 06664},
        {writer, others, writer, 0604},
    };
    std::string const path = directory + "/f";
    ASSERT_EQ(0, ::chmod(directory.c_str(), 0777));
    for (auto const& row : rows) {
        store("old");
        ASSERT_EQ(0, ::chown(path.c_str(), row.owner, row.group));
        ASSERT_EQ(0, ::chmod(path.c_str(), 06664));
        pid_t const child = ::fork();
        if (child == 0) {
            if (::setgroups(1, &team) != 0 || ::setgid(writer) != 0 || ::setuid(writer) != 0) ::_exit(1);
            ::_exit(result_file(ustring8(path)).commit());
        }
        int status = -1;
        ::waitpid(child, &status, 0);
        struct stat now {};
        ASSERT_EQ(0, ::stat(path.c_str(), &now));
        EXPECT_EQ(0, status);
        EXPECT_EQ(writer, now.st_uid);
        EXPECT_EQ(row.new_group, now.st_gid);
        EXPECT_EQ(row.new_mode, now.st_mode & 07777);
        ASSERT_EQ(0, std::remove(path.c_str()));
    }
}

} // namespace

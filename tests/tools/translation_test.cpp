// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "tools/catalog/catalog_scan.hpp"
#include "tools/catalog/completion_chart.hpp"
#include "tools/catalog/language_choice.hpp"
#include "tools/catalog/text_words.hpp"
#include "tools/run_program.hpp"

#include <zolt/i18n/message_catalogs.hpp>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace tools;
using zolt::i18n::message_catalogs;
using zolt::i18n::message_item;

std::string file(std::string const& content) {
    return "<?xml version='1.0'?><xmc version='1.1'>\n" + content + "</xmc>\n";
}
std::string catalog(std::string const& language, std::string const& messages, std::string const& name = "a") {
    return "<catalog name='" + name + "' lang='" + language + "'>\n" + messages + "\n</catalog>\n";
}
std::string message(std::string const& name, std::string const& text) {
    return "<msg name='" + name + "'>" + text + "</msg>";
}

class Translations : public in_directory {
protected:
    message_catalogs load(char const* language) const {
        message_catalogs catalogs;
        auto const result = catalogs.load_file(directory + "/f", language);
        EXPECT_TRUE(result.code() <= message_catalogs::no_catalog_loaded) << result.message();
        return catalogs;
    }
};

// All texts of up to four of these pieces.
TEST_F(Translations, ReadTextsAsTheLibraryDoes) {
    constexpr char const* pieces[] = {"a",         " ", "\n", "&#32;", "&lt;", "<br/>", "<arg name='&amp;'/>",
                                      "<!-- > -->"};
    std::vector<std::string> texts{""};
    for (std::size_t from = 0, length = 0; length != 4; ++length) {
        std::size_t const end = texts.size();
        for (; from != end; ++from) {
            for (char const* const piece : pieces) texts.push_back(texts[from] + piece);
        }
    }
    std::string messages;
    for (std::size_t i = 0; i != texts.size(); ++i) messages += message(std::to_string(i), texts[i]);
    store(file(catalog("en", messages)));
    message_catalogs const catalogs = load("en");
    ASSERT_EQ(texts.size(), catalogs.count("a"));
    for (std::size_t i = 0; i != texts.size(); ++i) {
        std::string expected;
        for (message_item const& item : catalogs.message("a", ustring8(std::to_string(i)))) {
            bool const is_text = item.type() == message_item::value;
            expected += is_text ? std::string(item.data()) : "\1" + item.name() + "\2";
        }
        EXPECT_EQ(expected, read_message_text(message("m", texts[i]))) << texts[i];
    }
}

// Whatever languages have a message: the first of those that are chosen is the one that the library takes.
TEST_F(Translations, AreServedAsTheLibraryDoes) {
    constexpr char const* languages[] = {".", "en", "en_GB", "de", "de-AT", "de_AT_x"};
    std::string const many_parts = "a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a"
                                   "_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a_a"; // 64
    ASSERT_EQ(64, std::count(many_parts.begin(), many_parts.end(), 'a'));
    for (unsigned set = 1; set != 1u << std::size(languages); ++set) {
        std::string catalogs;
        language_choice choice;
        for (unsigned i = 0; i != std::size(languages); ++i) {
            if ((set >> i & 1) == 0) continue;
            catalogs += catalog(languages[i], message("m", languages[i]));
            choice.add(languages[i] == std::string("de-AT") ? "de_AT" : languages[i], i);
        }
        store(file(catalogs));
        for (char const* const request : {"en", "en_GB", "de", "de_AT", "de_AT_x", "de_AT_x_y", "fr", "de_"}) {
            auto const chosen = choice.for_request(request);
            std::string const expected = load(request).message("a", "m").as_utf8({});
            EXPECT_EQ(expected, chosen.empty() ? "" : languages[chosen.front().language]) << catalogs << request;
            bool const is_fitting = expected == "." || std::string(request).rfind(expected.substr(0, 2), 0) == 0;
            if (expected.empty()) continue;
            EXPECT_EQ(is_fitting, chosen.front().is_fitting) << catalogs << request;
        }
    }
    language_choice choice;
    choice.add(many_parts, 0);
    choice.add(many_parts + "_b", 1);
    EXPECT_EQ(1u, choice.for_request(many_parts + "_b").size());
}

struct words_row {
    char const* text;
    std::size_t count;
    text_kind kind;
};
constexpr auto no_words = text_kind::no_words;
constexpr auto may_be_name = text_kind::may_be_name;
constexpr auto sentence = text_kind::sentence;
constexpr words_row words_rows[] = {
    {"", 0, no_words},
    {"\1size\2 % – 12,5 \1unit\2 … → ©", 0, no_words},
    {"\1open argument", 0, no_words},
    {"\xFF\xC3 \x80", 0, no_words},
    {"Zolt", 1, may_be_name},
    {"zolt", 1, may_be_name},
    {"\1n\2\nbytes", 1, may_be_name},
    {"Visual Editor 2", 2, may_be_name},
    {"km MB", 2, sentence},
    {"Go to", 2, sentence},
    {"I a", 2, may_be_name},
    {"See https://example.org/the/page", 2, may_be_name},
    {"Call --output write_text example.org user@host", 5, may_be_name},
    {"GPLv3 iPhone macOS", 3, may_be_name},
    {"東京 大阪", 2, may_be_name},
    {"Save the file", 3, sentence},
    {"Saved.\nAll (really)", 3, sentence},
    {"Don't don't!", 2, sentence},
    {"Où été", 2, sentence},
    {"\1n\2 files and\1m\2more", 3, sentence},
};

TEST(TextWords, AreCounted) {
    for (auto const& [text, count, kind] : words_rows) {
        text_words const words = count_words(text);
        EXPECT_EQ(count, words.count) << text;
        EXPECT_EQ(kind, words.kind) << text;
    }
}

//--------------------------------------------------------------------------------------------------

struct missing_row {
    char const* options;
    int status;
    std::string catalogs; // the first one begins in line 2
    char const* findings;
    char const* summary;
};

#define MISSING ": error: message \"m\" of catalog \"a\" is missing in language "
#define OBSOLETE                                                                                                   \
    ": warning: message \"n\" of catalog \"a\" in language \"de\" is not in the reference language \"en\" "
#define MAY_BE_COPY ": note: message \"m\" of catalog \"a\" in language "
#define COPY ": warning: message \"m\" of catalog \"a\" in language "

std::string in(std::string const& language, std::string const& text) {
    return catalog(language, message("m", text));
}

missing_row const missing_rows[] = {
    // what a language lacks, and its base has or does not have
    {"", 1, in("en", "a") + catalog("de", ""),
     "f:3:1" MISSING "\"de\"; it is shown in \"en\" [missing-translation]\n",
     "de: missing 1, obsolete 0, same 0; texts from en 1\n"},
    {"", 0, in("en", "a") + in("de", "b") + catalog("de-AT", "") + catalog("en_GB", ""), "",
     "de: missing 0, obsolete 0, same 0; texts from de 1\n"
     "de-AT: missing 0, obsolete 0, same 0; texts from de 1\n"
     "en_GB: missing 0, obsolete 0, same 0; texts from en 1\n"},
    {"--lang=fr", 1, in("en", "a"), "f:3:1" MISSING "\"fr\"; it is shown in \"en\" [missing-translation]\n",
     "fr: missing 1, obsolete 0, same 0; texts from en 1\n"},
    {"--ref=de --lang=fr", 1, in("de", "a"), "f:3:1" MISSING "\"fr\"; nothing is shown [missing-translation]\n",
     "fr: missing 1, obsolete 0, same 0; texts from none 1\n"},
    // "." serves only where English does not
    {"--ref=de --lang=fr", 0, in(".", "b") + in("de", "a"), "",
     "fr: missing 0, obsolete 0, same 0; texts from . 1\n"},
    {"--lang=fr", 1, in(".", "b") + in("en", "a"),
     "f:6:1" MISSING "\"fr\"; it is shown in \"en\" [missing-translation]\n",
     "fr: missing 1, obsolete 0, same 0; texts from en 1\n"},
    {"--allow-missing=1", 0, in("en", "a") + catalog("de", ""),
     "f:3:1: warning: message \"m\" of catalog \"a\" is missing in language \"de\"; it is shown in \"en\" "
     "[missing-translation]\n",
     "de: missing 1, obsolete 0, same 0; texts from en 1\n"},
    // those that are silenced do not count
    {"--allow-missing=0", 0,
     catalog("en", "<!-- zolt-ignore missing-translation -->" + message("m", "a")) + catalog("de", ""), "",
     "de: missing 0, obsolete 0, same 0; texts from en 1\n"},
    {"--ignore=missing-translation:a/m", 0, in("en", "a") + catalog("de", ""), "",
     "de: missing 0, obsolete 0, same 0; texts from en 1\n"},
    // obsolete messages
    {"", 0, in("en", "a") + catalog("de", message("m", "b") + "\n" + message("n", "c")),
     "f:7:1" OBSOLETE "[obsolete-message]\n", "de: missing 0, obsolete 1, same 0; texts from de 1\n"},
    {"", 0,
     in("en", "a") + catalog("de", message("m", "b") + "<!-- zolt-ignore obsolete-message -->" + message("n", "c")),
     "", "de: missing 0, obsolete 0, same 0; texts from de 1\n"},
    {"", 0, catalog(".", message("n", "c")) + in("en", "a") + catalog("de", message("m", "b") + message("n", "c")),
     "", "de: missing 0, obsolete 0, same 0; texts from de 2\n"},
    // copies
    {"", 0,
     in("en", "Save it all to <arg name='x'/>&#33;") + in("de", "\nSave  it all to <arg type='int' name='x'/>!"),
     "f:6:1" COPY "\"de\" is still the text of the reference language \"en\" [untranslated-copy]\n",
     "de: missing 0, obsolete 0, same 1; texts from de 1\n"},
    {"", 0,
     in("en", "Save it all to <arg name='x'/>") + in("de", "Save it all to <arg name='y'/>") +
         in("en_US", "Save it all to <arg name='x'/>"),
     "",
     "de: missing 0, obsolete 0, same 0; texts from de 1\nen_US: missing 0, obsolete 0, same 0; texts from en_US "
     "1\n"},
    {"--ignore=untranslated-copy", 0, in("en", "Save it all") + in("de", "Save it all"), "",
     "de: missing 0, obsolete 0, same 0; texts from de 1\n"},
    // a name is what most languages leave as it is
    {"--lang=de", 0, in("en", "Cancel") + in("de", "Cancel") + in("fr", "Annuler") + in("es", "Cancelar"),
     "f:6:1" COPY "\"de\" is still the text of the reference language \"en\" [untranslated-copy]\n",
     "de: missing 0, obsolete 0, same 1; texts from de 1\n"},
    {"--lang=de", 0, in("en", "Zolt") + in("de", "Zolt") + in("ru", "Золт"),
     "f:6:1" MAY_BE_COPY "\"de\" is the text of the reference language \"en\", which may be a name "
     "[untranslated-copy]\n",
     "de: missing 0, obsolete 0, same 1; texts from de 1\n"},
    // what is empty in the reference is there in every language
    {"--ref=de --lang=fr", 0, in("de", " "), "", "fr: missing 0, obsolete 0, same 0; texts from none 1\n"},
    {"", 0, in("en", "") + catalog("de", ""), "", "de: missing 0, obsolete 0, same 0; texts from en 1\n"},
    {"--lang=de", 0,
     in("en", "<arg name='x'/>: 5") + in("de", "<arg name='x'/>: 5") + in("fr", "a") + in("es", "b"), "",
     "de: missing 0, obsolete 0, same 0; texts from de 1\n"},
    // what the library does not load
    {"-q", 1, in("en", "a") + catalog("en", "<msg name='n' note='x'>a</msg>"),
     "f:6:1: error: message_catalogs::result_type - XMC file is not valid; xmc_file_loader::load_error - Invalid "
     "attibute \"note\" [load]\n",
     ""},
    {"-q", 1, in("en", "a") + "<include file='g'/>",
     "f:5:10: error: there is no file \"g\" that can be read [include-missing]\n", ""},
    {"", 2, in("de", "a"), "zolt: there is no catalog in the reference language \"en\"; --ref names another\n", ""},
};

TEST_F(Translations, ThatAreMissingObsoleteOrCopied) {
    for (missing_row const& row : missing_rows) {
        SCOPED_TRACE(row.catalogs);
        store(file(row.catalogs));
        expect(std::string("catalog missing f ") + row.options, row.status, row.summary, row.findings);
    }
    store(file(in("en", "a") + catalog("de", message("n", "c"))));
    EXPECT_EQ(
        R"({"reference": "en","languages": [{"language": "de","missing": 1,"obsolete": 1,"same": 0,)"
        R"("served": [{"language": "en","messages": 1}]}],"errors": 1,"warnings": 1,"notes": 0,"findings": [)"
        R"({"file": "f","line": 3,"column": 1,"severity": "error","rule": "missing-translation",)"
        R"("text": "message \"m\" of catalog \"a\" is missing in language \"de\"; it is shown in \"en\"",)"
        R"("language": "de","catalog": "a","message": "m","served": "en"},)"
        R"({"file": "f","line": 6,"column": 1,"severity": "warning","rule": "obsolete-message",)"
        R"("text": "message \"n\" of catalog \"a\" in language \"de\" is not in the reference language \"en\"",)"
        R"("language": "de","catalog": "a","message": "n"}]})",
        compact(run("catalog missing f --json").out));
    // Of the files of a directory the last one counts.
    std::filesystem::create_directory(directory + "/d");
    store(file(in("en", "Save it all") + in("de", "Save it all now")), "d/1.xmc");
    store(file(in("en", "Save it all now")), "d/2.xmc");
    expect("catalog missing d", 0, "de: missing 0, obsolete 0, same 1; texts from de 1\n",
           "d/1.xmc:6:1" COPY "\"de\" is still the text of the reference language \"en\" [untranslated-copy]\n");
    EXPECT_EQ(2, run("catalog missing absent").status);
    EXPECT_EQ(2, run("catalog missing f --allow-missing=-1").status);
}

//--------------------------------------------------------------------------------------------------

using Statistics = Translations;

std::string const two_catalogs =
    file(catalog("en", message("m", "Save the file") + message("n", "<arg name='x'/>, two") +
                           message("o", "Three<br/>")) +
         catalog("en", message("m", "More than one"), "b") +
         catalog("de", message("m", "Save the file") + message("n", "<arg name='y'/>, zwei") + message("p", "x")) +
         catalog("de_AT", message("o", "Drei")));

TEST_F(Statistics, CountByLanguageAndCatalog) {
    store(two_catalogs);
    expect("catalog stats f", 0,
           "Language  Catalog  Total  Translated  Missing  Obsolete  Same  Words    %\n"
           "de        a            3           2        1         1     1      4   66\n"
           "de        b            1           0        1         0     0      0    0\n"
           "de        (all)        4           2        2         1     1      4   50\n"
           "de_AT     a            3           3        0         0     0      5  100\n"
           "de_AT     b            1           0        1         0     0      0    0\n"
           "de_AT     (all)        4           3        1         0     0      5   75\n"
           "en        a            3           3        0         0     0      5  100\n"
           "en        b            1           1        0         0     0      3  100\n"
           "en        (all)        4           4        0         0     0      8  100\n");
    std::string const sums =
        R"("total": 1,"translated": 1,"missing": 0,"obsolete": 0,"same": 0,"words": 3,"percent": 100)";
    store(file(catalog("en", message("m", "More than one"), "b")));
    EXPECT_EQ(R"({"reference": "en","languages": [{"language": "en",)" + sums +
                  R"(,"catalogs": [{"catalog": "b",)" + sums +
                  R"(}]}],"errors": 0,"warnings": 0,"notes": 0,"findings": []})",
              compact(run("catalog stats f --format=json").out));
    // What is faulty or not there does not keep the others from being counted; nothing is drawn.
    std::string const table = run("catalog stats f").out;
    store("nonsense", "g");
    program_run const faulty = run("catalog stats g f --svg h");
    EXPECT_EQ(1, faulty.status);
    EXPECT_EQ(table, faulty.out);
    EXPECT_EQ(0u, faulty.err.find("g:1:1: error: ")) << faulty.err;
    expect("catalog stats f none --svg h", 2, table, "zolt: there is no file or directory \"none\"\n");
    EXPECT_EQ(2, std::distance(std::filesystem::directory_iterator(directory), {}));
    for (char const* const command : {"stats g f", "stats g", "missing g"}) {
        program_run const json = run(std::string("catalog ") + command + " --json");
        EXPECT_EQ(1, json.status);
        EXPECT_EQ("", json.err);
        EXPECT_NE(std::string::npos, json.out.find("\"rule\": \"load\"")) << json.out;
    }
}

// The same as gettext's own program says about the files that it gets.
TEST_F(Statistics, AreThoseOfGettext) {
    store(two_catalogs);
    expect("catalog stats f --gettext", 0,
           "de: 1 translated message, 1 fuzzy translation, 2 untranslated messages.\n"
           "de_AT: 1 translated message, 2 fuzzy translations, 1 untranslated message.\n"
           "en: 4 translated messages.\n");
    expect("catalog stats f --gettext --lang=fr", 0, "0 translated messages, 4 untranslated messages.\n");
    EXPECT_NE(
        std::string::npos,
        run("catalog stats f --gettext --json --lang=de")
            .out.find(R"("sentence": "1 translated message, 1 fuzzy translation, 2 untranslated messages.")"));
    if (!std::filesystem::exists("/usr/bin/msgfmt")) GTEST_SKIP() << "msgfmt is not installed";
    std::string const size = message("g", "<arg name='x' type='mem'/><arg name='x' type='mem_unit'/>");
    store(file(catalog("en", message("a", "one") + message("b", "<br/>two") + message("c", "<arg name='x'/>") +
                                 message("d", "<arg name='x' type='int'/>{") + message("e", "five") +
                                 message("f", "six") + size + message("h", "<arg name='x' base='hex'/>") +
                                 message("i", "")) +
               catalog("de", message("a", "one") + message("b", "zwei") +
                                 message("c", "<arg name='x'/><arg name='x'/>") + message("d", "<arg name='x'/>") +
                                 message("e", "") + message("g", "<arg name='x' type='mem' target_unit='M'/>") +
                                 message("h", "<arg name='x' base='oct'/>"))));
    run("catalog export-po f --lang=de -o de.po -q");
    program_run const msgfmt =
        run("--statistics -o /dev/null de.po", {.environment = {{"LC_ALL", "C"}}, .program = "/usr/bin/msgfmt"});
    EXPECT_EQ(msgfmt.err, run("catalog stats f --gettext --lang=de").out);
    EXPECT_NE("", msgfmt.err);
}

TEST_F(Statistics, AreDrawn) {
    store(file(catalog("en", message("a", "Save it all") + message("b", "two") + message("c", "three")) +
               catalog("de", message("a", "Save it all") + message("b", "zwei")) +
               catalog("&lt;\xFF\x01&amp;", "") + catalog(std::string(90, 'W'), "")));
    expect("catalog stats f --svg g.svg -o h", 0, "");
    EXPECT_EQ(run("catalog stats f").out, content("h"));
    std::string const picture = content("g.svg");
    expect("catalog stats f --svg -", 0, picture);
    for (char const* const part : {"width=\"133\" height=\"16\"/>\n<rect class=\"copies\" ", "66 % (2/3)",
                                   "&lt;\uFFFD\uFFFD&amp;</text>", "0 % (0/3)", ">WWWWWWWWWWWWW…</text>"})
        EXPECT_NE(std::string::npos, picture.find(part)) << part << picture;
    EXPECT_EQ(std::string::npos, picture.find(">en<"));
    std::pair<std::size_t, std::size_t> const parts[] = {{0, 100}, {199, 99}, {200, 100}};
    for (auto const& [part, expected] : parts) EXPECT_EQ(expected, percent(part, part == 0 ? 0 : 200));
    for (char const* const target : {"absent/g", "./f"})
        EXPECT_EQ(2, run("catalog stats f --svg " + std::string(target)).status);
    if (!std::filesystem::exists("/usr/bin/xmllint")) GTEST_SKIP() << "xmllint is not installed";
    EXPECT_EQ(0, run("--noout g.svg", {.program = "/usr/bin/xmllint"}).status);
}

} // namespace

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The commands that compare catalogs and make others of them: diff, fmt, pseudo and schema.
#include "tools/catalog/catalog_format.hpp"
#include "tools/catalog/catalog_layout.hpp"
#include "tools/catalog/catalog_pseudo.hpp"
#include "tools/catalog/catalog_schema.hpp"
#include "tools/program/notation.hpp"
#include "tools/run_program.hpp"

#include <zolt/i18n/message_catalogs.hpp>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#define HEADER "<?xml version='1.0'?>\n<xmc version='1.1'>\n"

namespace {

using namespace tools;
using zolt::i18n::message_catalogs;
using zolt::i18n::message_item;
using zolt::i18n::message_t;

using CatalogDiff = in_directory;
using CatalogFormat = in_directory;
using CatalogPseudo = in_directory;
using CatalogSchema = in_directory;

std::string in_english(std::string const& messages, std::string const& before = "") {
    return HEADER + before + "<catalog name='a' lang='en'>\n" + messages + "</catalog>\n</xmc>\n";
}

//--------------------------------------------------------------------------------------------------

struct diff_row {
    std::string before;
    std::string after;
    std::string differences;
};
diff_row const diff_rows[] = {
    // no differences: quotes, blanks, comments, order, other elements of the same catalog, spelling of the language
    {in_english("<msg name='m'>a  b<arg name='x'/></msg>\n<msg name='n'/>"),
     HEADER "<catalog lang=\"en\" name=\"a\"><msg name='n'></msg></catalog><catalog name='a' lang='en'><!-- c -->"
            "<msg name='m'> a\n b<!-- c --><arg name=\"x\" ></arg></msg></catalog></xmc>",
     ""},
    {HEADER "<catalog lang='de-AT'><msg name='m'/></catalog></xmc>",
     HEADER "<catalog lang='de_AT'><msg name='m'/></catalog></xmc>", ""},
    // what is never served: a second message of a name, a catalog without a language, a message without anything
    {in_english("<msg name='m'>a</msg>"),
     in_english("<msg/><msg name='m'>a</msg><msg name='m'>b</msg>", "<catalog name='a'><msg name='x'/></catalog>"),
     ""},
    {in_english("<msg name='m'>a</msg>"),
     in_english("<msg name='m'>a</msg>", "<catalog><b><msg name='x'/></b><msg name='y'/></catalog>"), ""},
    // each kind of difference, in the order of languages, catalogs and messages
    {in_english("<msg name='m'>a</msg>\n<msg name='gone'>b</msg>"),
     in_english("<msg name='m'>a </msg>\n<msg name='new'>\\&quot;<br/>{</msg>",
                "<catalog lang='de'><msg name='z'/></catalog>"),
     "+ de /z\n    new:3: \"\"\n"
     "- en a/gone\n    old:5: \"b\"\n"
     "~ en a/m\n    old:4: \"a\"\n    new:4: \"a \"\n"
     "+ en a/new\n    new:5: \"\\\\\\\"\\n{{\"\n"},
    {in_english("<msg name='m' meta='x'>a</msg>"), in_english("<msg name='m' meta='y'>a</msg>"),
     "~ en a/m\n    old:4: \"a\" meta \"x\"\n    new:4: \"a\" meta \"y\"\n"},
    {in_english("<msg name='m' meta='x'><arg name='n' type='int'/></msg>"),
     in_english("<msg name='m' meta='x'><arg name='n' type='int' base='hex'/></msg>"),
     "~ en a/m\n    old:4: \"{n:int}\"\n    new:4: \"{n:int base=hex}\"\n"},
    {in_english("<msg name='m'>n</msg>"), in_english("<msg name='m'><arg name='n' type='value'/></msg>"),
     "~ en a/m\n    old:4: \"n\"\n    new:4: \"{n:value}\"\n"},
};

TEST_F(CatalogDiff, TellsWhatAProgramIsServed) {
    for (auto const& [before, after, differences] : diff_rows) {
        SCOPED_TRACE(after);
        store(before, "old");
        store(after, "new");
        expect("catalog diff old new", differences.empty() ? 0 : 1, differences);
        expect("catalog diff -q new old", differences.empty() ? 0 : 1, "");
    }
    store(in_english("<msg name='m'>a</msg>"), "old");
    store(in_english("<msg name='m'>b</msg>", "<catalog lang='de'><msg name='m'/></catalog>"), "new");
    expect("catalog diff --lang de -o f old new", 1, "");
    EXPECT_EQ("+ de /m\n    new:3: \"\"\n", content());
    EXPECT_EQ(R"({"added": 0,"removed": 0,"changed": 1,"differences": [{"change": "changed","language": "en",)"
              R"("catalog": "a","message": "m","old": {"file": "old","line": 4,"text": "a","meta": ""},)"
              R"("new": {"file": "new","line": 4,"text": "b","meta": ""}}]})",
              compact(run("catalog diff --lang en --json old new").out));
}

// In a tree the first one counts within a file and its includes, and the last file.
TEST_F(CatalogDiff, FollowsTheOrderOfLoading) {
    for (char const* const name : {"old", "new"}) std::filesystem::create_directory(directory + "/" + name);
    std::string const include = "<include file='z.inc'/>";
    store(in_english("<msg name='first'>a</msg><msg name='late'>b</msg>"), "old/z.inc");
    store(in_english("<msg name='first'>b</msg><msg name='late'>x</msg>", include), "old/1.xmc");
    store(in_english("<msg name='late'>c</msg>"), "old/2.xmc");
    store(in_english("<msg name='first'>a</msg><msg name='late'>c</msg>"), "new/1.xmc");
    expect("catalog diff old new", 0, "");
    expect("catalog diff old/1.xmc new", 1, "~ en a/late\n    old/z.inc:4: \"b\"\n    new/1.xmc:4: \"c\"\n");
}

TEST_F(CatalogDiff, ComparesNothingWithTrouble) {
    store(in_english("<msg name='m'/>"), "good");
    store(in_english("<msg name='m'/>", "<include file='none'/>"), "lacking");
    store(in_english("<msg name='m'/>", "<include file='cycle'/>"), "cycle");
    store(HEADER "<catalog lang='fr'>\n<msg name='m'><b/></msg></catalog></xmc>", "french");
    for (std::string const bad : {"none", "lacking", "cycle", "french", "."}) {
        SCOPED_TRACE(bad);
        program_run const shown = run("catalog diff good " + bad);
        EXPECT_EQ(2, shown.status);
        EXPECT_EQ("", shown.out);
        EXPECT_NE("", shown.err);
        EXPECT_EQ(2, run("catalog diff " + bad + " good").status);
    }
    EXPECT_EQ(0u, run("catalog diff good french").err.find("french:4:1: error: "));
}

//--------------------------------------------------------------------------------------------------

struct layout_row {
    char const* before;
    char const* after; // behind the header
};
constexpr layout_row layout_rows[] = {
    {"<xmc version='1.1'><include  file = 'x' ></include >\n\n\n<catalog lang='en'\n name=''  /></xmc>",
     "<xmc version=\"1.1\">\n  <include file=\"x\"/>\n\n  <catalog lang=\"en\" name=\"\"/>\n</xmc>\n"},
    // comments, and text that means nothing
    {"<!-- a\n b --> <!--c-->\n\n<xmc version='1.1'> <!--d-->\n\n\n x\n "
     "y<catalog>\n\n</catalog><!--e-->\n</xmc>\n<!--f-->",
     "<!-- a\n b --> <!--c-->\n\n<xmc version=\"1.1\"> <!--d-->\n\n  x\n y\n  <catalog/> "
     "<!--e-->\n</xmc>\n<!--f-->\n"},
    // blanks of messages
    {"<xmc version='1.1'><catalog><msg name='m'>\n a\t\n b <!--c--> \n<br/> \n d<arg name='x'/>\r\n</msg>\n"
     "<msg name='n'> </msg></catalog></xmc>",
     "<xmc version=\"1.1\">\n  <catalog>\n    <msg name=\"m\">a b <!--c--> <br/> d<arg name=\"x\"/> </msg>\n"
     "    <msg name=\"n\"/>\n  </catalog>\n</xmc>\n"},
    // quotes, references and what nobody knows stay
    {"<xmc version='1.1'><catalog><msg name='\"&apos;' meta=\"'\n\">&lt;&#32;\"</msg><b c='d'> <i> x</i></b>\n"
     "<msg name='m'><br>\n</br><arg\nname='x'\ntype='int'> <!-- --></arg></msg></catalog></xmc>",
     "<xmc version=\"1.1\">\n  <catalog>\n    <msg name=\"&quot;&apos;\" meta=\"'\n\">&lt;&#32;\"</msg>\n"
     "    <b c=\"d\"> <i> x</i></b>\n    <msg name=\"m\"><br>\n</br><arg name=\"x\" type=\"int\"> <!-- "
     "--></arg></msg>\n"
     "  </catalog>\n</xmc>\n"},
    // one kind of line end; in values it would be another value
    {"<!--a\r\nb\rc--><xmc\r\nversion='1.1'>\r\n\r\n<!--'\r\n-->\r\rx\r\ny<catalog name='\"\r\n\r'>\r\n"
     "<b\rc='\r'>\r<!--\r--></b></catalog></xmc>\r\n",
     "<!--a\nb\nc-->\n<xmc version=\"1.1\">\n  <!--'\n-->\n\n  x\ny\n  <catalog name=\"&quot;&#13;\n&#13;\">\n"
     "    <b c=\"&#13;\">\n<!--\n--></b>\n  </catalog>\n</xmc>\n"},
};

TEST(CatalogLayout, IsOne) {
    for (char const* const header : {"<?xml?>", "\xEF\xBB\xBF<?xml version='1.0'\n?>"}) {
        for (auto const& [before, after] : layout_rows) {
            ustring8 const expected = ustring8(header) + "\n" + after;
            EXPECT_EQ(expected, lay_out_catalog(ustring8(header) + "\n" + before));
            EXPECT_EQ(expected, lay_out_catalog(expected)) << before;
        }
    }
}

// In columns, at blanks, but not beside br and in arguments.
TEST(CatalogLayout, FillsLines) {
    ustring8 words = "é"; // up to column 105
    for (int i = 0; i != 43; ++i) words += " é";
    ustring8 const start = "<?xml?>\n<xmc version=\"1.1\">\n  <catalog>\n    <msg name=\"m\">" + words;
    ustring8 const end = "</msg>\n  </catalog>\n</xmc>\n";
    struct row {
        char const* text;
        char const* gap;
    };
    constexpr row rows[] = {{"1234", " "},
                            {"12345", "\n      "},
                            {"1 <br/> 2", "\n      "},
                            {"<arg name=\"x\" type=\"int\"/>", "\n      "}};
    for (auto const& [text, gap] : rows)
        EXPECT_EQ(start + gap + text + end, lay_out_catalog(start + " " + text + end));
}

// Calls `visit` with every row of up to `most` of the pieces.
template <std::size_t Size, typename Visitor>
void for_each_row(std::string_view const (&pieces)[Size], std::size_t most, Visitor visit) {
    std::vector<std::string> rows{""};
    for (std::size_t length = 0; length != most; ++length) {
        std::vector<std::string> longer;
        for (std::string const& row : rows) {
            for (std::string_view const piece : pieces) visit(longer.emplace_back(row + std::string(piece)));
        }
        rows.swap(longer);
    }
}

void expect_same_meaning(ustring8 const& text) {
    static source_file const file{0, "", true, true, 1, std::vector<element>(32)};
    ustring8 const laid_out = lay_out_catalog(text);
    ASSERT_TRUE(is_same_catalog(file, text, laid_out)) << text << laid_out;
    ASSERT_EQ(laid_out, lay_out_catalog(laid_out)) << text;
}

TEST(CatalogLayout, KeepsEveryMeaning) {
    constexpr std::string_view in_message[] = {
        " ", "\n", "a", "&#32;", "<br/>", "<!--\r-->", "<arg name='x'></arg>"};
    for_each_row(in_message, 4, [](std::string const& row) {
        expect_same_meaning(in_english("<msg name='m'>" + row + "</msg>"));
    });
    constexpr std::string_view in_file[] = {" ",
                                            "\n\n",
                                            "a",
                                            "<!--c\r\n-->",
                                            "<b>\r</b >",
                                            "<include file='\"\r'></include>",
                                            "<catalog lang='en'>\n</catalog>"};
    for_each_row(in_file, 3, [](std::string const& row) {
        expect_same_meaning(HEADER + row + "<catalog lang='en'>" + row.substr(0, row.find("<c")) +
                            "</catalog></xmc>\n");
        if (row.find("<c") > row.size() && row.find("<i") > row.size() && row.find("<b") > row.size())
            expect_same_meaning("<?xml?>" + row + "<xmc version='1.1'>" + row + "</xmc>" + row);
    });
}

// What the proof must not let pass.
TEST(CatalogLayout, ProvesThatTheMeaningIsTheSame) {
    source_file const file{0, "", true, true, 1, std::vector<element>(32)};
    ustring8 const text = in_english("<msg name='m' meta='x'>a <!--c--><arg name='n' type='int'/> b<br/> </msg>");
    EXPECT_TRUE(is_same_catalog(file, text, text));
    struct row {
        char const* part;
        char const* other;
    };
    constexpr row rows[] = {{"a ", "a"},         {"a ", "A "},
                            {"<br/> ", "<br/>"}, {"/> b", "/>b"},
                            {"<!--c-->", ""},    {"--c", "--d"},
                            {"'x'", "'y'"},      {"'n'", "'N'"},
                            {"'int'", "'mem'"},  {"'en'", "'de'"},
                            {"'a'", "'b'"},      {"<br/>", ""},
                            {"</msg>", "</ms>"}, {"a <!--c-->", "<!--c-->a "}};
    for (auto const& [part, other] : rows) {
        std::string changed = text;
        EXPECT_FALSE(
            is_same_catalog(file, text, changed.replace(changed.find(part), std::string(part).size(), other)))
            << changed;
    }
}

TEST_F(CatalogFormat, RewritesFilesInPlace) {
    std::string const before = in_english("<msg name='m'>a</msg>", "<include file='x'/>");
    std::string const after =
        "<?xml version='1.0'?>\n<xmc version=\"1.1\">\n  <include file=\"x\"/>\n"
        "  <catalog name=\"a\" lang=\"en\">\n    <msg name=\"m\">a</msg>\n  </catalog>\n</xmc>\n";
    std::string const faulty = HEADER "<catalog lang='fr'>\n<msg name='m'><b/></msg></catalog></xmc>";
    std::filesystem::create_directory(directory + "/d");
    store(in_english(""), "d/x");
    store(before, "d/1.xmc");
    store(faulty, "d/2.xmc");
    store(before, "d/3.xmc");
    std::filesystem::create_symlink("d/3.xmc", directory + "/link"); // whose include is not beside it
    expect("catalog fmt d/1.xmc -o -", 0, after);
    expect("catalog fmt --check d/1.xmc d/3.xmc d/1.xmc", 1, "d/1.xmc\nd/3.xmc\n");
    EXPECT_EQ(
        R"({"files": [{"file": "d/1.xmc","changed": true}],"errors": 0,"warnings": 0,"notes": 0,"findings": []})",
        compact(run("catalog fmt --check --json d/1.xmc").out));
    for (char const* const options : {"--json", "--check"}) // what is told about a file does not take its place
        EXPECT_EQ(2, run("catalog fmt d/1.xmc -o d/../d/1.xmc " + std::string(options)).status);
    expect("catalog fmt -o f d", 2, "", "zolt: -o takes the text of a single file, and here are several\n");
    EXPECT_EQ(2, run("catalog fmt link").status);
    EXPECT_EQ(before, content("d/1.xmc"));
    program_run const shown = run("catalog fmt none d d/1.xmc"); // a fault does not keep the others
    EXPECT_EQ(2, shown.status);
    EXPECT_EQ(0u, shown.err.find("zolt: there is no file or directory \"none\"\nd/2.xmc:4:1: error: "))
        << shown.err;
    EXPECT_EQ(faulty, content("d/2.xmc"));
    EXPECT_EQ(after, content("d/1.xmc"));
    EXPECT_EQ(after, content("d/3.xmc"));
    expect("catalog fmt --check d/1.xmc d/3.xmc", 0, "");
    expect("catalog fmt d/1.xmc", 0, "");
    std::string const report = compact(run("catalog fmt d --json").out);
    EXPECT_EQ(0u,
              report.find(R"({"files": [{"file": "d/1.xmc","changed": false},{"file": "d/2.xmc","changed": false},)"
                          R"({"file": "d/3.xmc","changed": false}],"errors": 1,)"))
        << report;
    EXPECT_EQ(4, std::distance(std::filesystem::directory_iterator(directory + "/d"), {}));
}

//--------------------------------------------------------------------------------------------------

struct pseudo_row {
    char const* text;
    char const* accent;
    char const* bidi; // with >> for the start of a line, < for that of a text, and | for their ends
    char const* xxx;
};
constexpr pseudo_row pseudo_rows[] = {
    {"", "", "", ""},
    {" \n", " \n", " \n", " \n"},
    {"Save", "[Šåṽé öñ]", ">>[Save]|", "Xxxx"},
    {"Size 42: ", "[Šîžé 42 öñé:] ", ">>[Size 42:]| ", "Xxxx 42: "},
    {"a {x:int base=hex} z", "[å {x:int base=hex} ž öñ]", ">>[a] {x:int base=hex} [z]|", "x {x:int base=hex} x"},
    {" {s:memory} {s:memory_unit}", " [{s:memory} {s:memory_unit} ö]", " >>{s:memory} {s:memory_unit}|",
     " {s:memory} {s:memory_unit}"},
    {"One.\n\n {x:string}", "[Öñé öñ.]\n\n [{x:string}]", ">>[One.]|\n\n >>{x:string}|", "Xxx.\n\n {x:string}"},
    {"...\n{x}...", "[ö...]\n[{x:string} ö...]", ">>[...]|\n>>{x:string}[...]|", "...\n{x:string}..."},
    {"ساعت؟", "[ساعت öñ؟]", ">>[ساعت؟]|", "xxxx؟"},
    {"„Ж“ ×\xFF", "[„Ж öñ“ ×\xFF]", ">>[„Ж“ ×\xFF]|", "„x“ ×\xFF"},
};

std::string with_marks(std::string text) {
    struct mark {
        char const* control;
        char const* shown;
    };
    for (auto const& [control, shown] : {mark{"\u2067", ">>"}, {"\u2069", "|"}, {"\u202E", "["}, {"\u202C", "]"}}) {
        for (auto at = text.find(control); at != std::string::npos; at = text.find(control))
            text.replace(at, 3, shown);
    }
    return text;
}

TEST(PseudoMessage, ChangesTextsOnly) {
    for (auto const& row : pseudo_rows) {
        message_t const message("m", parse_notation(row.text), "meta");
        EXPECT_EQ(row.accent, notation(pseudo_message(message, pseudo_style::accent)));
        EXPECT_EQ(row.bidi, with_marks(notation(pseudo_message(message, pseudo_style::bidi))));
        EXPECT_EQ(row.xxx, notation(pseudo_message(message, pseudo_style::xxx)));
        EXPECT_EQ("meta", pseudo_message(message, pseudo_style::xxx).meta());
    }
}

std::string placeholders(message_t const& message) {
    std::string result;
    for (message_item const& item : message) {
        if (item.type() != message_item::value) result += std::to_string(item.type()) + " " + item.data() + "\n";
    }
    return result;
}

TEST_F(CatalogPseudo, MakesALanguageOfTheReference) {
    std::string const source = ZOLT_SOURCE_DIR "/examples/catalogs/tidemark.xmc";
    struct row {
        char const* options;
        char const* reference;
        char const* language;
    };
    for (auto const& [options, reference, language] : {row{"", "en", "en_XA"},
                                                       {"--style=bidi", "en", "en_XB"},
                                                       {"--style=xxx --ref de_AT", "de", "de_AT_XC"},
                                                       {"--lang x", "en", "x"}}) {
        SCOPED_TRACE(options);
        expect("catalog pseudo -o f.xmc " + std::string(options) + " " + source, 0, "");
        message_catalogs before;
        message_catalogs after;
        ASSERT_EQ(message_catalogs::no_error, before.load(source, reference).code());
        ASSERT_EQ(message_catalogs::no_error, after.load(directory + "/f.xmc", language).code());
        std::size_t count = 0;
        for (auto const& [catalog, messages] : before) {
            for (auto const& [name, message] : *messages) {
                if (message._orginal_locale() != reference) continue;
                EXPECT_EQ(language, after.message(catalog, name)._orginal_locale()) << name;
                EXPECT_EQ(placeholders(message), placeholders(after.message(catalog, name))) << name;
                ++count;
            }
        }
        EXPECT_LT(6u, count);
    }
    expect("catalog fmt --check f.xmc", 0, "");
    store(in_english("<msg name='m'>a</msg>"));
    EXPECT_EQ(R"({"language": "en_XC","catalogs": [{"catalog": "a","messages": [{"name": "m","language": "en_XC",)"
              R"("text": "x","placeholders": []}]}],"errors": 0,"warnings": 0,"notes": 0,"findings": []})",
              compact(run("catalog pseudo --style=xxx --json f").out));
    store("<?xml?><xmc version='1.1'><catalog name='a' lang='en'><msg name='m'>\n&#228;</msg></catalog></xmc>");
    EXPECT_EQ(0u, run("catalog pseudo --json f").out.find("{\n  \"errors\": 1,"));
    expect("catalog pseudo f", 1, "",
           "f:1:55: error: Bytes that are no UTF-8 reach the user as they are. [invalid-utf8]\n");
    expect("catalog pseudo --ref fi " + source, 2, "", "zolt: there are no messages to write\n");
    EXPECT_EQ(2, run("catalog pseudo --style=none " + source).status);
}

// What is found with a test language is what is found without it.
TEST_F(CatalogPseudo, PassesTheChecksOfTheReference) {
    store(in_english(
              "<msg name='m'>Really?)</msg><msg name='n'>Size:&#32;</msg><msg name='o'>a <br/>b...\"</msg>"
              "<msg name='p'>“<arg name='x'/>!”</msg><!-- zolt-ignore unknown-type why -->"
              "<msg name='q'><arg name='x' type='y'/></msg><msg name='r'>50 %!\n&#32;</msg><msg name='s'>.</msg>"),
          "a.xmc");
    for (std::string const tree : {"/examples", "/tools/catalogs", "/tests/tools/data/clean", ""}) {
        std::string const path = tree.empty() ? "a.xmc" : ZOLT_SOURCE_DIR + tree;
        program_run const expected = run("catalog check -q --fail-on=note " + path);
        for (std::string const style : {"accent", "bidi", "xxx"}) {
            SCOPED_TRACE(style);
            expect("catalog pseudo -o p.xmc --style=" + style + " " + path, 0, "");
            expect("catalog check -q --fail-on=note p.xmc " + path, expected.status, "", expected.err);
        }
    }
}

//--------------------------------------------------------------------------------------------------

std::string output_of(std::string const& command) {
    std::FILE* const pipe = ::popen((command + " 2>&1").c_str(), "r");
    std::string const text = read_all(::fileno(pipe));
    ::pclose(pipe);
    return text;
}

// The children of a root, or the content of a message behind "=".
constexpr std::string_view refused[] = {
    "",                                             // nothing
    "<catalog name='a' lang='en'/>text",            // text outside of messages
    "<catalog name='a' lang='en'>text</catalog>",   //
    "<catalog name='a'/>",                          // never read
    "<catalog name='a' lang=''/>",                  //
    "<catalog lang='en'/>",                         //
    "<catalog name='a' lang='en' language='de'/>",  // attributes that are not known
    "<include file=''/>",                           //
    "<include/>",                                   //
    "<include file='x'> </include>",                //
    "<msg name='m'/>",                              // in the wrong place
    "<catalog name='a' lang='en'><msg/></catalog>", //
    "<catalog name='a' lang='en'><msg name='m' note='x'/></catalog>",
    "=<b/>",
    "=<br clear='all'/>",
    "=<br> </br>",
    "=<arg/>",
    "=<arg name=''/>",
    "=<arg name='x'>y</arg>",
    "=<arg name='x' type='long'/>",
    "=<arg name='x' type='int' base='16'/>",
    "=<arg name='x' type='int' fieldsize='4097'/>",
    "=<arg name='x' type='int' fieldsize=' 8'/>",
    "=<arg name='x' type='double' precision='-1'/>",
    "=<arg name='x' type='double' precison='1'/>",
    "=<arg name='x' type='memory' target_unit='KiB'/>",
    "=<arg name='x' type='metric' base_unit='any'/>",
    "=<arg name='x' type='duration' short_form='yes'/>",
    // an XML Schema does not know these
    "?<arg name='x' type='int' precision='1'/>",
    "?<arg name='x' base='hex'/>",
    "?<arg name='x' type='metric' base_unit='KB'/>",
};

std::string whole(std::string_view part) {
    bool const is_message = !part.empty() && (part.front() == '=' || part.front() == '?');
    if (is_message) return in_english("<msg name='m'>" + std::string(part.substr(1)) + "</msg>\n");
    return HEADER + std::string(part) + "</xmc>";
}

TEST_F(CatalogSchema, SortsTheGoodFromTheBad) {
    if (std::system("xmllint --version >/dev/null 2>&1") != 0) GTEST_SKIP() << "xmllint is not installed";
    expect("catalog schema --rng -o relaxng", 0, "");
    expect("catalog schema --xsd -o schema", 0, "");
    expect("catalog schema --json", 2, "", "zolt: one of --rng, --xsd is required\n");
    EXPECT_EQ(0u, run("catalog schema --json --xsd")
                      .out.find("{\n  \"kind\": \"xml-schema\",\n  \"schema\": \"<?xml version=\\\"1.0\\\""));
    std::string files;
    std::size_t count = 0;
    for (char const* const place : {"/examples", "/tools/catalogs", "/tests/tools/data"}) {
        for (auto const& entry :
             std::filesystem::recursive_directory_iterator(ZOLT_SOURCE_DIR + std::string(place))) {
            // What has no language is loaded and never read.
            if (entry.path().extension() != ".xmc" || entry.path().filename() == "no_language.xmc") continue;
            program_run const check = run("catalog check " + entry.path().string());
            if (check.err.find("[load]") != std::string::npos) continue;
            files += " '" + entry.path().string() + "'";
            ++count;
        }
    }
    std::string bad_files;
    for (std::size_t i = 0; i != std::size(refused); ++i) {
        std::string const name = "bad" + std::to_string(i) + "_";
        store(whole(refused[i]), name);
        bad_files += " " + name;
    }
    EXPECT_LT(10u, count);
    for (std::string const kind : {"relaxng", "schema"}) {
        std::string const command = "cd " + directory + " && xmllint --noout --" + kind + " " + kind;
        std::string const good = output_of(command + files);
        EXPECT_EQ(count, static_cast<std::size_t>(std::count(good.begin(), good.end(), '\n'))) << good;
        EXPECT_EQ(std::string::npos, good.find("fails")) << good;
        std::string const bad = output_of(command + bad_files);
        for (std::size_t i = 0; i != std::size(refused); ++i) {
            bool const is_known = kind == "relaxng" || refused[i].substr(0, 1) != "?";
            bool const is_refused = bad.find("bad" + std::to_string(i) + "_ validates") == std::string::npos;
            EXPECT_EQ(is_known, is_refused) << kind << ": " << refused[i];
        }
    }
}

} // namespace

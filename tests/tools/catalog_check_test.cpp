// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "tools/catalog/catalog_scan.hpp"
#include "tools/run_program.hpp"

#include <zolt/i18n/message_catalogs.hpp>

#include <algorithm>
#include <deque>
#include <set>

namespace {

#define NOT_VALID "error: message_catalogs::result_type - XMC file is not valid; xmc_file_loader::load_error - "
#define NOT_FORMED                                                                                                 \
    "error: message_catalogs::result_type - XML parse error, XML file not well formed; "                           \
    "xmc_file_loader::load_error - "

// Files in data/faults that the library refuses, and the first line of output behind the name.
constexpr std::pair<char const*, char const*> fault_rows[] = {
    // not well-formed: the line is the file's, not the parser's count
    {"no_header", ".xmc:1:1: " NOT_FORMED "Valid XML header not found"},
    {"mismatched_end", ".xmc:10:12: " NOT_FORMED "Mismatched end element \"mgs\" was found"},
    {"unknown_entity", ".xmc:4:5: " NOT_FORMED "Unknown enity being parsed"},
    {"unterminated_comment", ".xmc:3:3: " NOT_FORMED "Unexpected end of file during XML parsing"},
    {"unclosed_element", ".xmc:4:3: " NOT_FORMED "Unexpected end of file during XML parsing"},
    // no catalog file
    {"wrong_root", ".xmc:4:1: " NOT_VALID "Not XMC file, root element is not XMC but \"catalogs\""},
    {"wrong_version", ".xmc:3:1: " NOT_VALID "XMC version \"2.0\" is not supported"},
    {"no_catalog",
     ".xmc:2:1: error: message_catalogs::result_type - No catalog was loaded; xmc_file_loader::load_error "
     "- No catalog was loaded in file: \"faults/no_catalog.xmc\""},
    {"bad_root_child", ".xmc:6:3: " NOT_VALID "Invalid element \"msg\""},
    {"bad_catalog_attribute", ".xmc:4:3: " NOT_VALID "Invalid attibute \"language\""},
    {"bad_catalog_child", ".xmc:5:5: " NOT_VALID "Expected catalog end tag not found for catalog \"a\""},
    {"bad_message_attribute", ".xmc:5:5: " NOT_VALID "Invalid attibute \"note\""},
    {"bad_message_child", ".xmc:6:7: " NOT_VALID "Invalid element \"b\""},
    {"br_attribute", ".xmc:5:7: " NOT_VALID "Invalid attibute \"clear\""},
    {"br_text", ".xmc:5:7: " NOT_VALID "Expected BR end tag not found"},
    {"element_in_argument", ".xmc:6:9: " NOT_VALID "Expected msg (message) end tag not found for message \"m\""},
    {"one_language_only", ".xmc:7:5: " NOT_VALID "Invalid attibute \"style\""},
    {"include_filled", ".xmc:3:3: " NOT_VALID "Expected \"include\" end tag not found"},
};

TEST(CatalogCheck, FindsEachFaultInItsLine) {
    for (auto const& [file, finding] : fault_rows) {
        std::string const path = std::string("faults/") + file;
        SCOPED_TRACE(path);
        program_run const run = run_program("catalog check " + path + ".xmc");
        std::string const found = run.err.substr(0, run.err.find('\n'));
        EXPECT_EQ(1, run.status);
        EXPECT_EQ(path + finding, found.substr(0, found.rfind(" [")));
        EXPECT_EQ(found, run_program("catalog fmt --check " + path + ".xmc").err.substr(0, found.size()));
    }
}

TEST(CatalogCheck, FindsNothingInWhatIsRight) {
    expect_run("catalog check clean", 0, "2 files, 2 catalogs, 5 languages: 0 errors, 0 warnings, 0 notes\n");
}

TEST(CatalogCheck, FollowsIncludesAndReportsTheirFaultsOnce) {
    std::string const expected = "faults/sub/faulty.xmc:5:7: " NOT_VALID "Invalid element \"i\" [load]\n";
    std::string const summary = "2 files, 1 catalog, 1 language: 1 error, 0 warnings, 0 notes\n";
    std::string const command = "catalog check faults/include_faulty.xmc";
    expect_run(command, 1, summary, expected);
    expect_run(command + " faults/sub/faulty.xmc ./faults/sub/../include_faulty.xmc", 1, summary, expected);
    std::string const all = "[load]\n    in message element: \"m\"\n    in catalog element: \"sub\"\n";
    EXPECT_NE(std::string::npos, run_program(command + " -v").err.find(all));
}

TEST(CatalogCheck, ExpectsFromARegionOnlyWhatItsLanguageLacks) {
    expect_run("catalog check faults/missing_message.xmc --fail-on=warning", 1,
               "1 file, 1 catalog, 3 languages: 0 errors, 2 warnings, 0 notes\n",
               "faults/missing_message.xmc:7:3: warning: catalog \"a\" has no message \"english\" in language "
               "\"de\" [missing-message]\n"
               "faults/missing_message.xmc:11:3: warning: catalog \"a\" has no message \"english\" in language "
               "\"de_CH\" [missing-message]\n");
}

TEST(CatalogCheck, WritesJson) {
    program_run const run = run_program("catalog check --json faults/placeholder_names.xmc");
    EXPECT_EQ(1, run.status);
    EXPECT_EQ(
        R"({"files": 1,"catalogs": 1,"languages": ["de","en"],"errors": 2,"warnings": 0,"notes": 0,"findings": [)"
        R"({"file": "faults/placeholder_names.xmc","line": 4,"column": 5,"severity": "error",)"
        R"("rule": "placeholder-set","text": "message \"m\": placeholder \"n\" of language \"en\" is missing"},)"
        R"({"file": "faults/placeholder_names.xmc","line": 4,"column": 19,"severity": "error",)"
        R"("rule": "placeholder-set",)"
        R"("text": "message \"m\": placeholder \"zahl\" does not occur in language \"en\""}]})",
        compact(run.out));
}

TEST(CatalogCheck, GoesOnAfterAPathThatIsNotThereAndFailsAtTheEnd) {
    expect_run("catalog check absent.xmc faults/no_language.xmc", 2,
               "1 file, 0 catalogs, 0 languages: 0 errors, 2 warnings, 0 notes\n",
               "zolt: there is no file or directory \"absent.xmc\"\n"
               "faults/no_language.xmc:3:3: warning: catalog \"a\" has no language and is never loaded "
               "[catalog-without-lang]\n"
               "faults/no_language.xmc:4:3: warning: catalog \"b\" has no language and is never loaded "
               "[catalog-without-lang]\n");
    EXPECT_EQ(1, run_program("catalog check ..").status);
    expect_run("catalog check /dev/null", 2, "", "zolt: \"/dev/null\" cannot be read: Operation not supported\n");
}

TEST(CatalogCheck, ColoursFindingsOnATerminal) {
    std::string const command = "catalog check faults/no_language.xmc";
    auto const shown = [&](variables const& environment) {
        return run_program(command, {.environment = environment, .terminal = 2}).err;
    };
    EXPECT_EQ(0u, shown({}).find("\033[1mfaults/no_language.xmc:3:3:\033[0m \033[1;33mwarning:\033[0m catalog"));
    EXPECT_EQ(std::string::npos, shown({{"NO_COLOR", "1"}}).find('\033'));
    EXPECT_EQ(std::string::npos, shown({{"TERM", "dumb"}}).find('\033'));
}

//--------------------------------------------------------------------------------------------------
// Rules

std::string file(std::string const& content) {
    return "<?xml version='1.0'?><xmc version='1.1'>\n" + content + "</xmc>\n";
}
std::string catalog(std::string const& language, std::string const& messages) {
    return "<catalog name='a' lang='" + language + "'>\n" + messages + "\n</catalog>\n";
}
std::string en(std::string const& text) { return file(catalog("en", "<msg name='m'>" + text + "</msg>")); }
// The German message stands in line 6.
std::string en_de(std::string const& english, std::string const& german) {
    return file(catalog("en", "<msg name='m'>" + english + "</msg>") +
                catalog("de", "<msg name='m'>" + german + "</msg>"));
}

struct rule_row {
    char const* rule;
    std::string fault;
    char const* finding; // without the file's name and the rule; of several the first
    std::string clean;
};

#define GERMAN ZOLT_SOURCE_DIR "/tests/tools/data/clean/more/german.xmc"

rule_row const rule_rows[] = {
    {"arg-name-not-first", en("<arg precision='1' name='n' type='double'/>"),
     "3:20: warning: option \"precision\" stands before \"name\" and is lost",
     en("<arg type='double' name='n' precision='1'/>")},
    {"bad-option", en("<arg name='n' type='int' width='8'/>"),
     "3:15: error: argument \"n\" shows as ?invalid? whatever its value: width=8",
     en("<arg name='n' type='int' field='8'/><arg name='s' width='8'/>")},
    {"bad-option", en("<arg name='n' type='memory' target_unit='kB'/>"),
     "3:15: error: argument \"n\" shows as ?invalid? whatever its value: target_unit=kB",
     en("<arg name='n' type='memory' target_unit='KB'/>")},
    {"byte-reference", en("caf&#233;"),
     "3:18: error: \"&#233;\" is the byte E9 and no character; write the character itself",
     en("café&#10;&#x41;&amp;")},
    {"byte-reference", en("a&#010;"),
     "3:16: error: \"&#010;\" is the byte 08 and no character; write the character itself", en("a&#x0A;")},
    {"byte-reference", file(catalog("en", "<msg name='&#233;' meta='&#9;'>a</msg>")),
     "3:12: error: \"&#233;\" is the byte E9 and no character; write the character itself",
     file(catalog("en", "<msg name='&amp;' meta='&#9;'>a</msg>"))},
    {"byte-reference", en("<arg name='a&#xE9;'/>"),
     "3:27: error: \"&#xE9;\" is the byte E9 and no character; write the character itself", en("<arg name='é'/>")},
    {"byte-reference", file("<catalog name='&#233;' lang='en'></catalog>\n"),
     "2:16: error: \"&#233;\" is the byte E9 and no character; write the character itself",
     file("<catalog name='&#65;' lang='en'></catalog>\n")},
    {"catalog-without-lang", file("<catalog name='a' lang=''></catalog>\n"),
     "2:1: warning: catalog \"a\" has no language and is never loaded", file(catalog(".", ""))},
    {"control-character", en("a\x07"), "3:16: warning: control character 07 in the text", en("a\tb")},
    {"control-character", en("a&#x1b;[m"), "3:16: warning: control character 1B in the text", en("&#9;")},
    {"control-character", en("\xC2\x9B"), "3:15: warning: control character 9B in the text", en("\xC2\xA0")},
    {"control-character", en("a&#13;"), "3:16: warning: control character 0D in the text", en("a\r\nb&#10;")},
    {"control-character", file(catalog("en", "<msg name='a&#10;b'>a</msg>")),
     "3:6: warning: control character 0A in the name", file(catalog("en", "<msg name='a b' meta='&#10;'>a</msg>"))},
    {"control-character", file("<catalog name='a\tb' lang='en'></catalog>\n"),
     "2:10: warning: control character 09 in the name", file(catalog("en", ""))},
    {"duplicate-lang-spelling", file(catalog("de_AT", "") + catalog("de-AT", "")),
     "5:19: warning: language \"de-AT\" is written \"de_AT\" in f:2",
     file(catalog("de_AT", "") + catalog("de_AT", ""))},
    {"duplicate-lang-spelling", file(catalog("de_AT", "") + catalog("de_at", "")),
     "5:19: warning: language \"de_at\" is written \"de_AT\" in f:2",
     file(catalog("de_AT", "") + catalog("de", ""))},
    {"duplicate-lang-spelling", file(catalog("de", "") + catalog("de ", "")),
     "5:19: warning: language \"de \" is written \"de\" in f:2", file(catalog("de ", ""))},
    {"duplicate-message", en("1</msg> <msg name='m'>2"),
     "3:23: warning: message \"m\" is defined twice in language \"en\"; the one in line 3 is used",
     en("1</msg> <msg name='n'>2")},
    {"duplicate-message", file("<include file='g'/><catalog name='a' lang='en'><msg name='g'>f</msg></catalog>"),
     "2:48: warning: message \"g\" in language \"en\" gives way to the one in g:3 when \"f\" is loaded",
     file("<include file='g'/><catalog name='b' lang='en'><msg name='g'>f</msg></catalog>")},
    {"edge-space", en(" a"), "3:15: warning: the blank at the start of the message is lost", en("\n a")},
    {"edge-space", en("a\n "), "3:16: warning: the line end here is a blank of the text", en("a ")},
    {"edge-space", en("a<br/>\nb"), "3:21: warning: the line end here is a blank of the text", en("a<br/> b")},
    {"edge-space", en_de("a: ", "b:"),
     "6:1: warning: message \"m\" ends in a blank in language \"en\", here it does not", en_de("a: ", "b:&#32;")},
    {"edge-space", en_de("&#32;a", "a"),
     "6:1: warning: message \"m\" starts with a blank in language \"en\", here it does not",
     en_de("&#32;a", "\n&#x20;\na")},
    {"empty-translation", en_de("a", " "), "6:1: warning: message \"m\" is empty, in language \"en\" it is not",
     en_de(" ", "")},
    {"include-absolute", file("<include file='" GERMAN "'/>"),
     "2:10: warning: \"" GERMAN "\" is an absolute path, which other machines may not have",
     file("<include file='./g'/>")},
    {"include-cycle", file("<include file='./f'/>"),
     "2:1: error: \"f\" is still being read and cannot be included again",
     file("<include file='g'/><include file='g'/>")},
    {"include-missing", file("<include file='absent/g'/>"),
     "2:10: error: there is no file \"absent/g\" that can be read", file("<include file='g'/>")},
    {"invalid-utf8", en("caf\xE9 \xE9"), "3:18: error: byte E9 is no UTF-8", en("café \xF4\x8F\xBF\xBF")},
    {"invalid-utf8", en("\xED\xA0\x80"), "3:15: error: byte ED is no UTF-8", en("\xED\x9F\xBF\xEE\x80\x80")},
    {"invalid-utf8", "\xEF\xBB\xBF" + en("\xE0\x9F\xBF"), "3:15: error: byte E0 is no UTF-8",
     "\xEF\xBB\xBF" + en("\xE0\xA0\x80\xF0\x90\x80\x80")},
    {"load", file(catalog("en", "<msg name='m' note='x'>a</msg>")), "3:1: " NOT_VALID "Invalid attibute \"note\"",
     file(catalog("en", "<msg name='m' meta='x'>a</msg>"))},
    {"load", en("&#32;& b"), "3:1: " NOT_FORMED "Unknown enity being parsed", en("&amp; b")},
    {"missing-message", file(catalog("en", "<msg name='m'>a</msg>") + catalog("de", "")),
     "5:1: warning: catalog \"a\" has no message \"m\" in language \"de\"",
     file(catalog("en", "<msg name='m'>a</msg>") + catalog("en_GB", "") +
          catalog("de", "<msg name='m'>a</msg>"
                        "<msg name='n'>a</msg>"))},
    {"nbsp-is-blank", en("10&nbsp;km"),
     "3:17: warning: \"&nbsp;\" is an ordinary blank here; write the character U+00A0 itself", en("10\xC2\xA0km")},
    // sets, not counts
    {"placeholder-set", en_de("<arg name='x'/><arg name='y'/>", "<arg name='y'/><arg name='y'/>"),
     "6:1: error: message \"m\": placeholder \"x\" of language \"en\" is missing",
     en_de("<arg name='x'/><arg name='y'/>", "<arg name='y'/> <argument name='x'/><arg name='y' type='STRING'/>")},
    {"placeholder-type", en_de("<arg name='x' type='int'/>", "<arg name='x'/>"),
     "6:15: error: message \"m\": placeholder \"x\" is shown as string, in language \"en\" as int",
     en_de("<arg name='x' type='mem'/><arg name='x' type='mem_unit'/>",
           "<arg name='x' type='memory_unit'/><arg name='x' type='memory'/>")},
    // a unit that does not change may be written out
    {"placeholder-type",
     en_de("<arg name='x' type='mem'/><arg name='x' type='mem_unit'/>", "<arg name='x' type='mem'/> MB"),
     "6:15: error: message \"m\": placeholder \"x\" is shown as memory, in language \"en\" as memory, memory_unit",
     en_de("<arg name='x' type='mem'/><arg name='x' type='mem_unit'/>",
           "<arg name='x' type='mem' target_unit='MB'/> MB")},
    {"punctuation", en_de("Save?", "Sichern"), "6:1: note: message \"m\" ends in \"\", in language \"en\" in \"?\"",
     en_de("\"Save\": &quot;a.&quot;", "保存。")},
    {"punctuation", en_de("Go.<br/>", "Geh<br/>"),
     "6:1: note: message \"m\" ends in \"\", in language \"en\" in \".\"", en_de("Go.<br/><br/>", "Geh.<br/>")},
    {"punctuation", en_de("Why?", "\u060C"), "6:1: note: message \"m\" ends in \",\", in language \"en\" in \"?\"",
     en_de("Why?", "\u037E")},
    {"punctuation", file(catalog("en", "<msg name='m'>Why?</msg>") + catalog("th", "<msg name='m'>a</msg>")),
     "6:1: note: message \"m\" ends in \"\", in language \"en\" in \"?\"",
     file(catalog("en", "<msg name='m'>Go.</msg>") + catalog("lo_LA", "<msg name='m'>a</msg>") +
          catalog("hy", "<msg name='m'>a\u0589</msg>"))},
    {"unit-pair", en("<arg name='x' type='mem' precision='1'/><arg name='x' type='mem_unit'/>"),
     "3:55: warning: the unit of argument \"x\" has other options than its amount and may not fit it",
     en("<arg name='x' type='mem' precision='1'/><arg name='x' type='mem_unit' precision='1'/>"
        "<arg name='y' type='mem_unit'/><arg name='x' type='metric_unit'/>")},
    {"unit-pair", en("<arg name='x' type='mem' field='6'/><arg name='x' type='mem_unit' base_unit='KB'/>"),
     "3:51: warning: the unit of argument \"x\" has other options than its amount and may not fit it",
     en("<arg name='x' type='mem' field='6' base_unit='KB' precision='1'/>"
        "<arg name='x' type='mem_unit' precision='1' base_unit='KB'/>")},
    {"unit-pair", en("<arg name='x' type='mem' t='KB'/><arg name='x' type='mem_unit' target_unit='MB'/>"),
     "3:48: warning: the unit of argument \"x\" has other options than its amount and may not fit it",
     en("<arg name='x' type='mem' t='KB' precision='1'/><arg name='x' type='mem_unit' p='2' target_unit='KBit'/>"
        "<arg name='y' type='mem' target_unit='any' base_unit='B'/><arg name='y' type='mem_unit'/>")},
    {"unit-pair", en("<arg name='x' type='metric' t='a'/><arg name='x' type='metric_unit' t='any'/>"),
     "3:50: warning: the unit of argument \"x\" has other options than its amount and may not fit it",
     en("<arg name='x' type='metric' t='' precision='1'/><arg name='x' type='metric_unit' target='base'/>")},
    {"unknown-rule", file("<!-- zolt-ignore edge-blank -->" + catalog("en", "")),
     "2:18: warning: \"edge-blank\" is no rule of this command; --list-rules shows those that are",
     file("<!-- zolt-ignore edge-space, po-text obsolete-message: a reason -->" + catalog("en", ""))},
    {"unknown-type", en("<arg name='x' type='integer'/>"),
     "3:29: warning: argument \"x\" has the unknown type \"integer\" and is shown as text",
     en("<arg name='x' type='INT'/>")},
    {"unrendered-type", en("<arg name='x' type='Date'/>"),
     "3:29: error: argument \"x\" has the type \"Date\", for which ?invalid? is always shown",
     en("<arg name='x' type='value'/>")},
};

class CatalogRules : public in_directory {
protected:
    CatalogRules() {
        std::filesystem::create_directory(directory + "/d");
        store(file(catalog("en", "<msg name='g'>g</msg>")), "g");
    }
};

TEST_F(CatalogRules, FindAFaultAndPassItsCleanTwin) {
    std::set<std::string> rules;
    for (rule_row const& row : rule_rows) {
        SCOPED_TRACE(row.fault);
        rules.insert(row.rule);
        store(row.fault);
        program_run const fault = run("catalog check -q f --fail-on=note");
        std::string const found = fault.err.substr(0, fault.err.find('\n'));
        EXPECT_EQ("f:" + std::string(row.finding) + " [" + row.rule + "]", found);
        EXPECT_EQ(1, fault.status);
        EXPECT_EQ("", run(std::string("catalog check f -q --ignore=") + row.rule).err);
        store(row.clean);
        EXPECT_EQ("", run("catalog check f -q").err);
    }
    std::set<std::string> listed_rules;
    std::istringstream listed(run("catalog check --list-rules").out);
    for (std::string line; std::getline(listed, line);) {
        if (line[0] != ' ') listed_rules.insert(line.substr(0, line.find(' ')));
    }
    EXPECT_EQ(listed_rules, rules);
    EXPECT_EQ(2, run("catalog check").status);
}

TEST_F(CatalogRules, AreSilencedWhereTheyShouldBe) {
    std::string const message = "<msg name='m'> a</msg>";
    std::string const found = "f:3:15: warning: the blank at the start of the message is lost [edge-space]\n";
    store(file(catalog("en", message)));
    for (char const* const option : {"", " --ignore=edge-space:a/n", " --ignore=unit-pair"})
        EXPECT_EQ(found, run(std::string("catalog check -q f") + option).err) << option;
    EXPECT_EQ("", run("catalog check -q f --ignore=unit-pair --ignore=edge-space:a/m").err);
    EXPECT_EQ("", run("catalog check -q f --lang=de").err);
    for (char const* const comment :
         {"<!-- zolt-ignore edge-space -->", "<!--zolt-ignore unit-pair, edge-space: why-->"}) {
        store(file(catalog("en", comment + message + "\n" + std::string("<msg name='n'> a</msg>"))));
        EXPECT_EQ("f:4:15: " + found.substr(8), run("catalog check -q f").err); // the next message only
    }
    store(file(catalog("en", "<!-- zolt-ignore missing-message --><msg name='m'>a</msg>") + catalog("de", "")));
    EXPECT_EQ("", run("catalog check -q f").err);
}

// Of what is loaded together the first message counts; what is not may well be there twice.
TEST_F(CatalogRules, TellWhichOfSeveralMessagesIsUsed) {
    std::string const own = catalog("en", "<msg name='g'>h</msg>");
    std::string const used = "message \"g\" is defined twice in language \"en\"; the one in line 3 is used";
    auto const lost = [](std::string const& place, std::string const& kept, std::string const& loaded) {
        return place + ": warning: message \"g\" in language \"en\" gives way to the one in " + kept + " when \"" +
               loaded + "\" is loaded [duplicate-message]\n";
    };
    std::pair<std::string, std::string> const rows[] = {
        {file(own + own + own),
         "f:6:1: warning: " + used + " [duplicate-message]\nf:9:1: warning: " + used + " [duplicate-message]\n"},
        {file(own + "<include file='g'/>"), lost("g:3:1", "f:3", "f")},
        {file("<include file='g'/><include file='h'/>"), lost("h:3:1", "g:3", "f")},
        {file("<include file='i'/><include file='h'/>"), lost("h:3:1", "g:3", "f")}, // at any depth
        {file("<include file='g'/>" + catalog("de", "<msg name='g'>h</msg>")), ""},
        {file("<include file='g'/><include file='i'/>"), ""},
        {file(own), ""},
        {file(catalog("en", "<msg></msg><msg>a</msg>")), ""},
    };
    store(file("<include file='g'/>"), "i");
    store(file(own), "h");
    store(file(own), "d/a.xmc");
    store(file("<include file='a.xmc'/>"), "d/b.xmc");
    store(file(own), "d/c.xmc");
    store(file(catalog("de", "<msg name='g'>h</msg>")), "d/d.xmc");
    EXPECT_EQ(lost("d/a.xmc:3:1", "d/c.xmc:3", "d"), run("catalog check -q d").err);
    EXPECT_EQ("", run("catalog check -q d/a.xmc d/c.xmc").err);
    for (auto const& [text, found] : rows) {
        store(text);
        EXPECT_EQ(found, run("catalog check -q i h f g").err) << text;
    }
}

// What is named, what a directory has and what is included.
TEST_F(CatalogRules, NeverWriteOverWhatIsRead) {
    store(en("a"), "d/a.xmc");
    store(file("<include file='a.xmc'/>"), "d/b.xmc");
    for (char const* const line :
         {"list -o d/a.xmc d/b.xmc", "show -o d/a.xmc d a", "render -o d/a.xmc d/b.xmc a m", "check -o d/a.xmc d",
          "missing -o d/a.xmc d/b.xmc", "stats -o d/a.xmc d", "stats --svg d/a.xmc d/b.xmc",
          "pseudo -o d/a.xmc d/b.xmc", "export-po --lang=en -o d/a.xmc d", "diff -o d/a.xmc g d",
          "fmt -o d/a.xmc d/b.xmc", "fmt --check -o d/a.xmc d/a.xmc"}) {
        expect("catalog " + std::string(line), 2, "",
               "zolt: \"d/a.xmc\" is what the command reads; the result needs another file\n");
        EXPECT_EQ(en("a"), content("d/a.xmc"));
    }
    expect("catalog stats d --svg x -o d/../x", 2, "", "zolt: \"x\" is named by both --svg and -o\n");
    expect("catalog pseudo -o d/en_XA.xmc d", 0, ""); // and what it has made itself it leaves out
    std::string const made = content("d/en_XA.xmc");
    expect("catalog pseudo -o d/en_XA.xmc d", 0, "");
    EXPECT_EQ(made, content("d/en_XA.xmc"));
}

// At one place not by their texts, which are in the user's language.
TEST_F(CatalogRules, AreToldInTheOrderOfBeingFound) {
    store(file(catalog("en", "<msg name='zz'>a</msg><msg name='bb'>a</msg>") + catalog("de", "")));
    for (char const* const language : {"C", "de_DE"}) {
        std::string const found = run("catalog check -q f", {.environment = {{"LC_ALL", language}}}).err;
        EXPECT_LT(found.find("zz"), found.find("bb")) << found;
    }
}

// The reference is what --ref says; a language that lacks many messages is told only some of them.
TEST_F(CatalogRules, CompareWithTheReference) {
    store(en_de("Save?", "Sichern"));
    EXPECT_EQ("f:3:1: note: message \"m\" ends in \"?\", in language \"de\" in \"\" [punctuation]\n",
              run("catalog check -q f --ref=de").err);
    program_run const absent = run("catalog check f --ref=fr");
    EXPECT_EQ(2, absent.status);
    EXPECT_EQ("zolt: there is no catalog in the reference language \"fr\"; --ref names another\n", absent.err);
    EXPECT_EQ(run("catalog check -q f").err, run("catalog check -q f --ref=en_GB").err);
    std::string const german = catalog("de", "<msg name='m'>a?</msg>");
    store(file(german + catalog("fr", "<msg name='m'></msg>")));
    expect("catalog check f", 0, "1 file, 1 catalog, 2 languages: 0 errors, 0 warnings, 0 notes\n",
           "zolt: there is no catalog in the reference language \"en\": languages are not compared; --ref names "
           "another\n");
    expect("catalog check -q f", 0, "", "");
    store(file(german));
    expect("catalog check f", 0, "1 file, 1 catalog, 1 language: 0 errors, 0 warnings, 0 notes\n", "");
    std::string messages;
    for (int i = 0; i != 25; ++i) messages += "<msg name='" + std::to_string(i) + "'>a</msg>";
    store(file(catalog("en", messages) + catalog("de", "")));
    std::string const found = run("catalog check -q f").err;
    EXPECT_EQ(21, std::count(found.begin(), found.end(), '\n'));
    EXPECT_NE(std::string::npos, found.find("catalog \"a\" lacks 5 more messages in language \"de\""));
}

// Whatever one changes in a file: if it still counts as plain, the library loads it in every language.
class ScannedCatalogs : public in_directory, public tools::catalog_visitor {
    void start_catalog(tools::scanned_element const&) override {}
    void message(tools::scanned_message const&) override {}
    void include(tools::scanned_element const&) override {}
};

TEST_F(ScannedCatalogs, ArePlainOnlyIfTheLibraryLoadsThem) {
    std::string const text = "<?xml ?><xmc version=\"1.1\"><!-- c --><catalog name='a' lang='en'>\n<msg name='m' "
                             "meta='&lt;'>a<br/>&amp;<arg name='x' type='int' /></msg></catalog>"
                             "<catalog lang='de'><msg>b<br></br></msg></catalog>\n</xmc>";
    std::size_t plain = 0;
    auto const try_text = [&](std::string const& changed) {
        std::deque<std::string> values;
        // an over-read is seen at the end of an exact block
        std::vector<char> const exact(changed.begin(), changed.end());
        auto const result = scan_catalog_file({exact.data(), exact.size()}, values, *this);
        if (result != tools::scan_result::plain) return result;
        ++plain;
        store(changed);
        for (char const* const language : {"en", "de"}) {
            auto const loaded = ZOLT_2_18::i18n::message_catalogs().load_file(
                directory + "/f", ZOLT_2_18::strings::ustring8(language));
            EXPECT_EQ(0u, loaded.code()) << changed << '\n' << loaded.message();
        }
        return result;
    };
    try_text(text);
    EXPECT_EQ(1u, plain);
    for (std::size_t i = 0; i != text.size(); ++i) {
        auto const cut = try_text(text.substr(0, i));
        EXPECT_TRUE(i <= text.find("<xmc") || cut == tools::scan_result::not_well_formed) << i;
        try_text(text.substr(0, i) + text.substr(i + 1));
        for (char const c : {'<', '>', '&', '"', '\'', '/', '-', 'a', ' '})
            try_text(text.substr(0, i) + c + text.substr(i + 1));
    }
    EXPECT_LT(200u, plain);
}

} // namespace

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "tools/config/config_edit.hpp"
#include "tools/config/config_rules.hpp"
#include "tools/config/config_statements.hpp"
#include "tools/config/config_text_edit.hpp"
#include "tools/run_program.hpp"

#include <zolt/config/file_item.hpp>

#include <sys/stat.h>

#include <map>

namespace {

using namespace tools;
namespace fs = std::filesystem;
using ConfigCommands = in_directory;

using kinds_by_path = std::map<std::string, unsigned>;
kinds_by_path kinds(zolt::config::config_tree const& tree, std::string const& path = "") {
    kinds_by_path result;
    for (auto const& [name, node] : tree) {
        if (node->has_entry()) result[path + name] = node->kind();
        result.merge(kinds(*node, path + name + "."));
    }
    return result;
}

// Statements are found where the library finds them, whatever the text.
TEST_F(ConfigCommands, StatementsAreThoseOfTheLibrary) {
    std::vector<std::string> texts = {"[s]\n\"[]\"=1,2\n=3\n[]=4\n[a.]\nb=1\n=2\n[ s #1\n //x ]k=1",
                                      "l[]=1,\"\"\nm[]=,\"\",\"a, b\"c\nd.=5",
                                      "l[]=1, # one\n\n // more\n 2\n3=4\nl[][]=6",
                                      "a=\"\"b\r\n[u\nk=3",
                                      "a=1/*2*/3\n*/=\"x#\\\"y\" // \"z\nk=\"\"",
                                      "a=\"\nb=1"};
    for (auto const& entry : fs::directory_iterator(ZOLT_SOURCE_DIR "/tests/config/data")) {
        if (entry.is_regular_file()) texts.push_back(content_of(entry.path()));
    }
    ASSERT_GE(texts.size(), 12u);
    for (std::string const& text : texts) {
        for (std::size_t size = 0; size <= text.size(); ++size) {
            store(text.substr(0, size));
            zolt::config::file_item item{ustring8(directory + "/f")};
            item.load();
            zolt::config::config_tree lines;
            find_config_lines(ustring8(text.substr(0, size)), lines);
            ASSERT_EQ(kinds(item.tree()), kinds(lines)) << text.substr(0, size);
        }
    }
}

TEST_F(ConfigCommands, ShowTellsWhereSettingsComeFrom) {
    store("# settings\n[net]\nport = 1\nHost = \"my\nhost\"\n"      // lines 1 to 5
          "port = 2\nlist[] = a, b,\n c\n[]\n"                      // 6 to 9
          "over[] = 1, 2, 3\nshadow[] = x, y\nunder.1 = file\n"     // 10 to 12
          "file = \"#\" // mark\nstep[] = p, \"q, r\", \"\", s\n"); // 13 and 14
    // nothing else is in the environment
    auto const show_in = [this](std::string const& environment, std::string const& options) {
        return run("-i " + environment + " " ZOLT_PROGRAM " config show " + options, {.program = "/usr/bin/env"})
            .out;
    };
    std::string const environment = "Net.Port=7 net.host=env 'ENV=e v' over.2=env FILE=8";
    EXPECT_EQ("env = ev  # environment\n"
              "file = \"#\"  # f:13\n"
              "net.host = \"my\\x0Ahost\"  # f:4\n"
              "net.list[] = a, b, c  # f:7\n"
              "net.port = 9  # command line\n"
              "over[] = 1, 2  # command line\n" // its third element in the file is hidden, too
              "shadow = 5  # command line\n"
              "step.0 = p  # f:14\n" // no array any more, but its elements can be asked for
              "step.1 = \"q, r\"  # f:14\n"
              "step.2 = \"\"  # f:14\n"
              "step.3 = s  # f:14\n"
              "step.x = 6  # command line\n"
              "sw = \"\"  # command line\n"
              "under.1 = file  # f:12\n",
              show_in(environment, "--env --file f --origin -- -net.port=9 -over 1 2 -shadow=5 -step.x=6 -sw"));
    EXPECT_NE(std::string::npos, show_in(environment, "--env --file f --origin").find("net.port = 2  # f:6\n"));
    EXPECT_EQ("net.port = 7  # environment\n", show_in("Net.Port=7", "--env --origin"));
    EXPECT_EQ("", show_in(environment, ""));
    // the application's own choice of a file
    EXPECT_EQ(0u, show_in("", "-- -cfg_file=f").find("cfg_file = f\nfile = \"#\"\n"));
    store("a=1\nb[]=2,\"\",3\nb.1=4\n");
    expect("config show --file f --json --origin -- -c", 0,
           "{\n  \"settings\": [\n"
           "    {\n      \"key\": \"a\",\n      \"value\": \"1\",\n      \"source\": \"file\",\n"
           "      \"file\": \"f\",\n      \"line\": 1\n    },\n"
           "    {\n      \"key\": \"b\",\n      \"values\": [\n        \"2\",\n        \"4\",\n        \"3\"\n"
           "      ],\n      \"source\": \"file\",\n      \"file\": \"f\",\n      \"line\": 2,\n"
           "      \"lines\": {\n        \"0\": 2,\n        \"1\": 3,\n        \"2\": 2\n      }\n    },\n"
           "    {\n      \"key\": \"c\",\n      \"value\": \"\",\n      \"source\": \"command line\"\n    }\n"
           "  ]\n}\n");
    expect("config show --json", 0, "{\n  \"settings\": []\n}\n");
}

TEST_F(ConfigCommands, SurvivesDeepKeys) {
    std::string key = "a";
    while (key.size() < 400000) key += ".a";
    store(key + "=1\n");
    expect("config show --file f --origin", 0, key + " = 1  # f:1\n");
    EXPECT_EQ(1, run("config unset f " + key.substr(0, 100000) + ".b").status);
}

TEST_F(ConfigCommands, GetsOneSetting) {
    store("[net]\nport = 80\nhosts[] = a, \"b c\"\ntext = \"two\nlines\"\n");
    expect("config get Net/Port --file f", 0, "80\n");
    expect("config get net.hosts --file f", 0, "a\nb c\n");
    expect("config get net.hosts.1 --file f", 0, "b c\n");
    expect("config get net.text --file f", 0, "two\nlines\n");
    for (auto const& [command, json] :
         {std::pair("net.text --file f", R"({"key": "net.text","value": "two\u000alines"})"),
          std::pair("net.hosts --file f", R"({"key": "net.hosts","values": ["a","b c"]})"),
          std::pair("none --default \xFF\"", R"({"key": "none","value_hex": "FF 22"})")})
        EXPECT_EQ(json, compact(run(std::string("config get --json ") + command).out));
    expect("config get net.port --file f -- -net.port 9", 0, "9\n");
    expect("config get v --default 1 -- -v", 0, "\n");
    expect("config get net.port --default 1", 0, "1\n");
    expect("config get net --file f", 1, "", "zolt: there is no setting \"net\"\n");
    expect("config get a --file absent", 2, "", "zolt: \"absent\" cannot be read: No such file or directory\n");
    for (std::string const command : {"list", "get a", "show --env"})
        expect("config " + command + " --file ''", 2, "", "zolt: \"\" cannot be read: No such file or directory\n");
    expect("config get net.port --file '' -- -cfg_file=f", 0, "80\n");
    expect("config get a --default x -- stray -b", 0, "x\n",
           "zolt: Warning! unknown key:stray\nIgnoring key and continuing\n");
}

// Every setting once in each source, and what hides what.
TEST_F(ConfigCommands, ListsWhatIsOverridden) {
    store("port = 1\nlist[] = a, b, c\nsame[] = x\nDB.Password = s\npass[] = p, q\nstep[] = u, v\nown = 2\n");
    std::string const options = " --file f -- -port=9 -list 1 2 -step.x=6";
    expect("config list --all --show-origin --mask=PASS --mask=o?n" + options, 0,
           "db.password = ***  # f:4\n"
           "list[] = 1, 2  # command line\n"
           "list[] = a, b, c  # f:2, overridden\n"
           "own = ***  # f:7\n"
           "pass[] = ***, ***  # f:5\n"
           "port = 9  # command line\n"
           "port = 1  # f:1, overridden\n"
           "same[] = x  # f:3\n"
           "step.0 = u  # f:6\n"
           "step.1 = v  # f:6\n"
           "step.x = 6  # command line\n");
    std::string records = run("config list -z --all --show-origin --mask=*s*w?rd" + options).out;
    std::replace(records.begin(), records.end(), '\0', '|');
    EXPECT_EQ(0u, records.find("file:f:4|effective|db.password\n***|command line|effective|list.0\n1|command "
                               "line|effective|list.1\n2|file:f:2|overridden|list.0\na|"));
    std::string const json = compact(run("config list --all --show-origin --format=json" + options).out);
    EXPECT_NE(
        std::string::npos,
        json.find(R"({"key": "port","value": "1","state": "overridden","source": "file","file": "f","line": 1})"));
    EXPECT_NE(std::string::npos, json.find(R"({"key": "port","value": "9","state": "effective",)"));
    expect("config list -z --format=json" + options, 2, "", "zolt: -z and --format=json exclude each other\n");
    expect(
        "config list --mask=p -- p=1 -a=2 q", 0, "a = 2\n",
        "zolt: Warning! unknown key:***\nIgnoring key and continuing\nWarning! unknown key:***\nIgnoring key and "
        "continuing\n");
    store("\"\xFF\" = 1\nl[] = a, \xFE\n");
    EXPECT_EQ(R"({"settings": [{"key": "l","values_hex": ["61","FE"]},{"key_hex": "FF","value": "1"}]})",
              compact(run("config list --file f --json").out));
}

// What a file says more than once of a key, the last one first.
TEST_F(ConfigCommands, ListsWhatIsOverriddenWithinAFile) {
    store("x = =1 # c\n[x]\n= \"a\\\"b\" //\n[]\nX[] = 2 3, # c\n \"4, 5\"\nx=6\nx=\npass=top1\nPass=top2");
    expect("config list --all --show-origin --mask=pass --file f -- -x=7", 0,
           "pass = ***  # f:10\npass = ***  # f:9, overridden\n"
           "x = 7  # command line\nx = 6  # f:7, overridden\nx[] = 23, \"4, 5\"  # f:5, overridden\n"
           "x = \"a\\\"b\"  # f:3, overridden\nx = \"=1\"  # f:1, overridden\n"
           "x.0 = 23  # f:5\nx.1 = \"4, 5\"  # f:5\n");
    std::string records = run("config list --all --show-origin -z --file f").out;
    std::replace(records.begin(), records.end(), '\0', '|');
    EXPECT_NE(std::string::npos, records.find("file:f:5|overridden|x.1\n4, 5|file:f:3|overridden|x\na"));
    EXPECT_NE(std::string::npos, compact(run("config list --all --show-origin --json --file f").out)
                                     .find(R"("file": "f","line": 5,"lines": {"0": 5,"1": 5}})"));
}

// Of values, which may hold anything, neither form lets one be taken for another, nor a hidden one be seen.
TEST_F(ConfigCommands, ListsHostileValues) {
    using namespace std::string_literals;
    store("\"k\ney\" = \"\x1B[2J\0\n\"\nsecret[] = top1, top2\nkey.secret = top3\n"s);
    std::string records = run("config list -z --file f --mask=secret[] --mask=key/SEC").out;
    std::replace(records.begin(), records.end(), '\0', '|');
    EXPECT_EQ("k\\x0Aey\n\x1B[2J\\x00\n|key.secret\n***|secret.0\n***|secret.1\n***|", records);
    expect("config list --file f --mask=secret", 0,
           "k\\x0Aey = \"\\x1B[2J\\x00\\x0A\"\nkey.secret = ***\nsecret[] = ***, ***\n");
    for (std::string const form : {"", " -z", " --json", " --all", " --all --json", " --show-origin --all -z"}) {
        std::string const command = "config list --file f --mask=secret" + form;
        EXPECT_EQ(std::string::npos, run(command + " -- -key.secret=top4 -secret=top5").out.find("top")) << form;
    }
}

// Elements that come from several statements, some with a gap before them, in all forms.
TEST_F(ConfigCommands, KnowsElementsOfArrays) {
    store("b[]=1,2,3\nb[]=9\n\nl[] = u, v\nl.4 = w\nx.y = s\n");
    expect("config list --show-origin --file f", 0,
           "b[] = 9, 2, 3  # f:2, f:1, f:1\nl[] = u, v, w  # f:4, f:4, f:5\nx.y = s  # f:6\n");
    auto const records = [this](std::string const& options) {
        std::string out = run("config list -z --file f " + options).out;
        std::replace(out.begin(), out.end(), '\n', '=');
        std::replace(out.begin(), out.end(), '\0', '|');
        return out;
    };
    EXPECT_EQ("file:f:2|b.0=9|file:f:1|b.1=2|file:f:1|b.2=3|"
              "file:f:4|l.0=u|file:f:4|l.1=v|file:f:5|l.4=w|file:f:6|x.y=s|",
              records("--show-origin"));
    for (std::string const mask : {"x.y", "X/Y", "x\\y", "x/y/", "x?y", "*/y"})
        EXPECT_EQ("b.0=9|b.1=2|b.2=3|l.0=u|l.1=v|l.4=w|x.y=***|", records("--mask=" + mask)) << mask;
    EXPECT_EQ("b.0=9|b.1=***|b.2=3|l.0=***|l.1=***|l.4=***|x.y=s|", records("--mask=b/1 --mask=l."));
    expect("config list --file f --mask=l.4", 0, "b[] = 9, 2, 3\nl[] = u, v, ***\nx.y = s\n");
}

// Rule, what stands behind the file's name, a text with the fault, and its clean twin.
struct check_row {
    std::string rule;
    std::string finding;
    std::string fault;
    std::string clean;
};
check_row const check_rows[] = {
    {"blank-dropped", "1:8: warning: the blank before \"MB\" is lost; quotes keep it", "k = 10 MB",
     "k = \"10 MB\" # x"},
    {"blank-dropped", "2:4: warning: the blank before \"key\" is lost; quotes keep it", "\nmy key = 1",
     "\n \"my key\" = 1"},
    {"blank-dropped", "1:6: warning: the blank before \"b\" is lost; quotes keep it", "[\"a\" \"b\" c]", "[ a ]"},
    {"blank-dropped", "2:6: warning: the blank before \"c\" is lost; quotes keep it", "k[] = a,\n   b c d",
     "k[] = a, b,\n c"},
    {"comment-cut", "1:10: warning: \"//\" begins a comment and cuts the value of \"k\"; quotes keep it",
     "k = http://x", "k = http: //x"},
    {"comment-cut", "1:5: warning: \"#\" begins a comment and cuts the value of \"k\"; quotes keep it", "k = #fff",
     "k = \"#fff\""},
    {"comment-cut", "1:11: warning: \"#\" begins a comment and cuts the value of \"k\"; quotes keep it",
     "k[] = 1, 2#", "k[] = 1, 2 #3"},
    {"empty-value", "3:1: warning: \"k\" has no value and is not set", "\n\nk = # none\n", "k = 1 # none"},
    {"empty-value", "1:1: warning: \"k\" has no value and is not set", "k[] = \"\"", "k[] = \"\", 1"},
    {"array-lost", "2:2: error: array \"l\" ends in a comma or an empty element and is not set",
     "\n l[] = 1,\n 2, # end\n", "l[] = 1,\n 2 # end\n"},
    {"array-runs-on", "2:2: error: the comma before makes this line a part of array \"l\"", "l[] = 1,\n [s]",
     "l[] = 1,\n \"[s]\""},
    {"array-runs-on", "2:1: error: the comma before makes this line a part of array \"l\"", "l[] = 1,\nk=3",
     "l[] = 1,\n \"k = 3\", \n -k=3,\n  [::1]:80"},
    {"array-runs-on", "3:2: error: the comma before makes this line a part of array \"l\"", "\nl[] = 1,\n k =3 # x",
     " l[] = 1, # =\n  k=3 # =\n"},
    {"quote-dropped", "1:6: warning: quotes in the middle of a value vanish, and what is between them is text",
     "k = a\"b c\"d", "k = \"b\"\\\na\".b c\".d=\"C:\"\\\\"},
    {"quote-dropped", "1:5: warning: quotes in the middle of a value vanish, and what is between them is text",
     "k = \"q\"\"r\"", "k[] = \"q\",\"r\""},
    {"quote-dropped", "1:8: warning: quotes in the middle of a value vanish, and what is between them is text",
     "l[] = 3\", 5\"", "l[] = \"3, 5\""},
    {"backslash-kept",
     "1:7: warning: the backslash before a quote stays in the value; no written form gives the quote alone",
     "l[] = \"a \\\"b\\\"\"", "l[] = \"a \\b\"\n\"a\\\"\"=1"},
    {"unclosed-quote", "2:6: error: the string is not closed and takes the rest of the file",
     "a = 1\nb = 2\"c\nd = 3\n", "a = 1\nb = \"2\nc\"\nd = 3\n"},
    {"unclosed-quote",
     "1:5: error: the quote at a line's end has a backslash before it and does not close the string",
     "a = \"C:\\\"\r\nb = \"x", "a = \"C:\"\\\r\nb = \"x\""},
    {"unclosed-quote", "1:5: error: the string is closed in line 2 only, where more text follows",
     "a = \"x\nb\" y\nc=1\n", "a = \"x\nb \" # y\nc=1\n"},
    {"unclosed-quote", "2:7: error: the string is closed in line 3 only, where more text follows",
     "\nl[] = \"x\nb \"\"\"y\"z\n\"", "l[] = \"x\ny\", \"z\n\", 1\n"},
    {"unclosed-quote",
     "1:5: error: the string takes in line 3, which looks like a statement, a section or a comment",
     "a = \"x\n\n  b = 5\nc = y\"", "a = \"x\nif b >= 5 or\nd==e\""},
    {"unclosed-quote",
     "2:6: error: the string takes in line 3, which looks like a statement, a section or a comment",
     "k=1\nl[]=,\"\n[s]\n\"", "l[]=1,\"\ns[]\n, a # b\""},
    {"unclosed-quote",
     "1:1: error: the string takes in line 2, which looks like a statement, a section or a comment", "\"k\n# b\"=1",
     "\"k\nb #\"=1"},
    {"key-without-value", "1:1: error: \"a\" has no \"=\" and becomes a part of the key \"al\"", "a\n\nl\n[]\n = 1",
     "l\n\n[]=1"},
    {"key-without-value",
     "2:2: error: \"a==5\" becomes a part of the key \"a==5b\": \"==\" is text and does not separate",
     "\n a==5\nb = 1", "k = a==5"},
    {"key-without-value", "1:1: error: \"a:=5\" sets nothing: \":=\" is text and does not separate", "a:=5",
     "\"a:=5\"=1"},
    {"key-without-value", "2:1: error: \"d\" has no \"=\" and sets nothing", "c = 1\nd", "c = 1\nd = 1"},
    {"duplicate-key", "4:1: warning: \"s/k\" is set in line 2 already; this one counts", "[s]\nk = 1\n[]\ns/k = 2",
     "[s]\nk = 1\n[t]\nk = 2\nl[]=1\nl.1=2"},
    {"duplicate-key", "2:1: warning: \"b\" is an array in line 1 already; its elements that are not set here stay",
     "b[]=1,2,3\nb[]=9", "b[]=9"},
    {"duplicate-key", "3:1: warning: \"b\" is an array in line 2 already; its elements that are not set here stay",
     "\nb[]=1,2\nb=9", "\nb=9"},
    {"duplicate-key", "2:1: warning: \"b\" is set in line 1 already; this one counts", "b[]=1,2\nb[]=3,4",
     "b[]=1,2\nb.2=3\nb.x=4"},
    {"duplicate-key", "3:1: warning: \"list.1\" is set in line 1 already; this one counts",
     "list[] = a,b\n\nlist.1 = c", "list[] = a\n\nlist.1 = c"},
    {"duplicate-key", "2:1: warning: \"b.0\" is set in line 1 already; this one counts", "b/0=9\nb[]=1,2",
     "b.2=9\nb[]=1,2"},
    {"duplicate-key", "3:1: warning: \"k…\" is set in line 1 already; this one counts", "\"k\ney\"=1\n\"k\ney\"=2",
     "\"k\ney\"=1"},
    {"case-only-difference",
     "4:2: warning: \"k\" is the key of line 2 but for upper and lower case; this one counts",
     "[S]\nk=1\n[s]\n k=2", "[S]\nk=1\n[s]\nl=2"},
    {"unclosed-section", "1:1: error: section \"s\" is not closed in its line", "[s\na=1\n[t]\nb = 2",
     "[s]\na = 1\n[t]\nb = 2"},
    {"byte-order-mark", "1:1: error: a byte order mark is a part of what follows it", "\xEF\xBB\xBFk = 1",
     "k = \"\xEF\xBB\xBF\""},
    {"value-without-key", "2:2: error: nothing stands before \"=\": the value has no key", "[s]\n =1", "[s]\nk=1"},
    {"value-without-key", "1:1: error: nothing stands before \"=\": the value has no key", "\"[]\" = 1",
     "k [ ] = 1"},
    {"empty-name", "2:1: warning: a separator too many makes an empty name in \"net.\"", "\n[net.]", "[net]\na.=1"},
    {"empty-name", "1:1: warning: a separator too many makes an empty name in \"a./b\"", "a./b=1", "a.b/ =1"},
    {"empty-name", "1:1: warning: a separator too many makes an empty name in \".a\"", "[.a]", "[a]"},
    {"carriage-return", "1:4: error: a carriage return without a line feed ends no line", "a=1\rb=2\r", "a=1\r\n"},
    {"carriage-return", "2:4: error: a carriage return without a line feed ends no line", "a=1\n# x\ra=1\r",
     "a=1 # x\r\n//\r"},
    {"invisible-character", "1:5: warning: U+00A0 is text here, neither a blank nor a line end", "k = \u00A01",
     "k = \"\u00A0\" # \u00A0"},
    {"invisible-character", "1:2: warning: U+3000 is text here, neither a blank nor a line end", "k\u3000=1",
     "k = \u3001\u200D\xE2\x80"},
    {"invisible-character", "1:2: warning: U+0000 is text here, neither a blank nor a line end",
     std::string("k\0=1", 4), "k=1\t"},
    {"unclosed-quote", "2:4: error: a quote within the text opens a string that is closed in line 3 only",
     "\na=5\"\nb=6\"\n", "\na=\"5b=6\"\n\nc=\"\n\""},
    {"comment-cut", "2:10: warning: \"#\" begins a comment and cuts the value of \"l\"; quotes keep it",
     "\nl[] = a, #fff,\nb", "\nl[] = a, # fff,\n #old,\nb"},
};

TEST_F(ConfigCommands, ChecksStatements) {
    for (auto const& [rule, finding, fault, clean] : check_rows) {
        SCOPED_TRACE(fault);
        store(fault);
        store(clean, "clean");
        bool const is_error = finding.find(": error: ") != std::string::npos;
        std::string const summary = is_error ? "1 error, 0 warnings\n" : "0 errors, 1 warning\n";
        expect("config check f --fail-on=warning", 1, "1 file: " + summary, "f:" + finding + " [" + rule + "]\n");
        expect("config check clean --fail-on=note", 0, "1 file: 0 errors, 0 warnings\n");
        EXPECT_EQ(is_error ? 1 : 0, run("config check f").status);
        expect("config check -q --fail-on=warning --ignore=" + rule + " f", 0, "");
    }
    for (rule const& each : config_rules()) { // the examples that --list-rules shows
        std::string text(each.example);
        for (auto const& [escape, bytes] :
             {std::pair(R"(\\xEF\\xBB\\xBF)", "\xEF\xBB\xBF"), {R"(\\xC2\\xA0)", "\u00A0"}, {R"(\\r)", "\r"}})
            text = std::regex_replace(text, std::regex(escape), bytes);
        store(text);
        std::string const found = run("config check -q f").err;
        EXPECT_NE(std::string::npos, found.find("[" + std::string(each.name) + "]")) << each.example << found;
    }
    expect("config check clean absent", 2, "1 file: 0 errors, 0 warnings\n",
           "zolt: \"absent\" cannot be read: No such file or directory\n");
    expect("config check .", 2, "0 files: 0 errors, 0 warnings\n", "zolt: \".\" cannot be read: Is a directory\n");
}

// One finding for each line of a key, which quotes no more of the file than it must.
TEST_F(ConfigCommands, FindsEachLineOfAKey) {
    store("a\n b:1\n[x]\nc = 1\nd\ne");
    std::string const into = " has no \"=\" and becomes a part of the key \"ab:1[x]c\" [key-without-value]\n";
    std::string const lost = " has no \"=\" and sets nothing [key-without-value]\n";
    EXPECT_EQ("f:1:1: error: \"a\"" + into + "f:2:2: error: \"b:1\"" + into + "f:3:1: error: \"[x]\"" + into +
                  "f:5:1: error: \"d\"" + lost + "f:6:1: error: \"e\"" + lost,
              run("config check -q f").err);
    std::string umlauts;
    for (int i = 0; i != 59; ++i) umlauts += "ä";
    store("[\"n]\nsecret=1\n");
    EXPECT_NE(std::string::npos, run("config check f").err.find("section \"n]…\" is"));
    store(umlauts + "bc\nsecret\n");
    EXPECT_NE(std::string::npos, run("config check f").err.find('"' + umlauts + "b…\" has no"));
}

// Rules are silenced for one key, however it is spelled, or by a comment before the statement.
TEST_F(ConfigCommands, IgnoresWhatItIsTold) {
    store("[Net]\nport = 1 2\nlist[] = 1 2\nlist.0 = 3\n[n]\nport = 1 2\n");
    auto const findings = [this](std::string const& options) {
        std::string const err = run("config check -q f " + options).err;
        return std::count(err.begin(), err.end(), '\n');
    };
    std::pair<char const*, int> const rows[] = {
        {"", 4},
        {"--ignore=blank-dropped:net.port", 3},
        {"--ignore=blank-dropped:NET/port", 3},
        {"--ignore=blank-dropped:port", 4},
        {"--ignore=comment-cut:net.port", 4},
        {"--ignore=blank-dropped:net.list[]", 3},
        {"--ignore=blank-dropped:net.list --ignore=duplicate-key:net.list.0 --ignore=blank-dropped:n.port", 1},
    };
    for (auto const& [options, expected] : rows) EXPECT_EQ(expected, findings(options)) << options;

    store("# zolt-ignore blank-dropped: so be it\n\nport = 1 2 // zolt-ignore blank-dropped\nlist[] = 1 2\n"
          "// zolt-ignore comment-cut, duplicate-key\nport = 1 2#\n[ a b ] # zolt-ignore carriage-return\n# \r.");
    EXPECT_EQ("f:4:12: warning: the blank before \"2\" is lost; quotes keep it [blank-dropped]\n"
              "f:6:10: warning: the blank before \"2\" is lost; quotes keep it [blank-dropped]\n"
              "f:7:5: warning: the blank before \"b\" is lost; quotes keep it [blank-dropped]\n",
              run("config check -q f").err);
}

TEST_F(ConfigCommands, AreNotSlowedDownByManyFaultsOrLongLines) {
    std::string const name(300000, 'n');
    std::string array = name + "[] = a b,,\"\\\"\n\"";
    for (int i = 0; i != 100000; ++i) array += ",a b#\n";
    std::string keys = "[" + name + "]\n";
    for (int i = 0; i != 30000; ++i) keys += "k=\nk = a b\n";
    std::string lines = "[" + name + "]\n";
    for (int i = 0; i != 50000; ++i) lines += "line\n";
    for (std::string const& text : {array, keys, lines, lines + "=1"})
        EXPECT_LT(2u, find_config_faults(ustring8(text)).size());

    ustring8 sections;
    for (int i = 0; i != 300000; ++i) sections += "[s]";
    config_change const change{"s.k", false, {"1"}};
    EXPECT_EQ(sections + "\nk = 1\n", edit_config_text(sections, change, edit_reach::one_statement).text);
}

class ConfigChanges : public in_directory {
protected:
    // What a command makes of a file, its exit status and complaint.
    void change(std::string const& before, std::string const& command, std::string const& after, int status = 0,
                std::string const& complaint = "") const {
        SCOPED_TRACE(before);
        store(before);
        expect("config " + command, status, "", complaint.empty() ? "" : "zolt: " + complaint + "\n");
        EXPECT_EQ(after, content());
        EXPECT_EQ(1, files());
    }
    std::ptrdiff_t files() const {
        return std::distance(fs::directory_iterator(directory), fs::directory_iterator());
    }
};

TEST_F(ConfigChanges, LeaveAllOtherBytes) {
    struct {
        std::string before;
        std::string command;
        std::string after;
    } const rows[] = {
        // values
        {"# x\n b=2 // y\na\t= 1\t# z", "set f A 'x y'", "# x\n b=2 // y\na\t= \"x y\"\t# z"},
        {"b = 2\na = 1\n", "set f a 1", "b = 2\na = 1\n"},
        {"k = \"1\"\r\nl = 2\r\n", "set f k 3", "k = \"3\"\r\nl = 2\r\n"},
        {"k = \"two\n  lines \\\"x=1\\\"\" # x = 1\nl=1", "set f k 1", "k = \"1\" # x = 1\nl=1"},
        {"k[] = 1, \"a\nb = 2\",\nc, \nd=3\n", "set f k.0 4", "k[] = 4, \"a\nb = 2\",\nc, \nd=3\n"},
        {"k = \"two\nlines\" # x\nl=1", "set f k //", "k = \"//\" # x\nl=1"},
        {"k =  # none\nl=", "set f k 1", "k = 1  # none\nl="},
        {"l=", "set f l 1", "l=1"},
        {"l = # none\n", "set f l a b", "l[] = a, b # none\n"},
        {"k=1//c\n", "set f k x/", "k=\"x/\"//c\n"},
        {"k[]=1,2//c\n", "set f k.1 *", "k[]=1,\"*\"//c\n"},
        {"a=1\n", "set f x/ 1", "a=1\n\"x/\"=1\n"},
        {"k=1\nk=2\nK = 3\n", "set f k 4", "k=1\nk=2\nK = 4\n"},
        {"k=1\nk= # no\n", "set f k 4", "k=4\nk= # no\n"},
        {"k = C:\\x\n", "set f k 'C:\\\\x y\\\\'", "k = \"C:\\x y\"\\\n"},
        // new keys
        {"", "set f a -- -2", "a = -2\n"},
        {"k=\xFF\r1\n", "set f l \xFE", "k=\xFF\r1\nl=\xFE\n"},
        {"a=1", "set f b.c 2", "a=1\nb.c=2\n"},
        {"a=1\r\n# end", "set f b 2", "a=1\r\n# end\r\nb=2\r\n"},
        {"[s]\n  k = 1\n\n# t\n[t]\nk=1\n", "set f S/x.y 2", "[s]\n  k = 1\n  x.y = 2\n\n# t\n[t]\nk=1\n"},
        {"[s] # c\n[s.t]\nk=1\n[s]", "set f s.x 2", "[s] # c\n[s.t]\nk=1\n[s]\nx=2\n"},
        {"[s]\n[s.t]\nk=1\n[u]\n", "set f s.t.x 2", "[s]\n[s.t]\nk=1\nx=2\n[u]\n"},
        {"# f\n[s]\nk =1\n", "set f k 2", "# f\nk =2\n[s]\nk =1\n"},
        {"a=1\n# s\n[s]\nk=1\n", "set f b+ '= 2'", "a=1\n\"b+\"=\"= 2\"\n# s\n[s]\nk=1\n"},
        {"[s]\nk[] = 1 # x\n", "set f s.l a 'b,' ", "[s]\nk[] = 1 # x\nl[] = a, \"b,\"\n"},
        // arrays
        {"l[] = 1, # one\n  2, // two\n  3 # three\n", "set f l 4 5 6",
         "l[] = 4, # one\n  5, // two\n  6 # three\n"},
        {"l[] = 1, # one\n  2, // two\n  3 # three\n", "set f l 4 5", "l[] = 4, # one\n  5 // two\n"},
        {"l[] = a, # first\n  b , # second\n  # between\n  c,\n\n  \"d\ne\", f, # last\n // g\n h // i\nk=1",
         "set f l x y", "l[] = x, # first\n  y # second\n  # between\n // g\nk=1"},
        {"l[] = 1 ,2, \"3\n\" ,,//a\r\n\r\n #b\r\n 4", "set f l 5", "l = 5 //a\r\n #b\r\n"},
        {"l[] = \"1\",\n 2, \n3", "set f l[] 5", "l[] = \"5\"\n"},
        {"l[]=1,2 # x", "set f l 5", "l=5 # x"},
        {"l[] = 1, \"\" # two\nm=1", "set f l 4 5 6", "l[] = 4, \"5\", 6 # two\nm=1"},
        {"l[]=1 # x", "set f l 1 2,3", "l[]=1, \"2,3\" # x"},
        {"l[]=1,2,3\nl.x=4\nl.7=5\n", "set f l 6", "l=6\nl.x=4\n"},
        {"l[]=1,2,3,4\nl=5\n", "set f l a b", "l[]=a, b\n"},
        {"l[]=1,2\nl.5=x # y\nl.x=z\n", "set f l a b", "l[]=a,b\nl.x=z\n"},
        {"l[]=a,b\nl.5.x=1\n", "set f l a b", "l[]=a,b\nl.5.x=1\n"},
        {"l[]=1,2,3\nl=5\nl.1=6\n", "set f l 7", "l[]=1,2,3\nl=7\nl.1=6\n"},
        {"l = 1 # x\n", "set f l[] a,b", "l[] = \"a,b\" # x\n"},
        {"l[]=1,2,3\nl[] = 4\n", "set f l 5 6", "l[] = 5, 6\n"},
        {"l[]=1,,3 # x\n", "set f l.1 4", "l[]=1,4,3 # x\n"},
        {"l[]=1,2\nl.1=3\n", "set f l.1 4", "l[]=1,2\nl.1=4\n"},
        {"l.1=3\nl[]=1,2\n", "set f l.1 4", "l.1=3\nl[]=1,4\n"},
        {"x=1\nl[]=80,443,\n", "set f l 80 443", "x=1\nl[]=80,443\n"},
        // a last statement that does not end
        {"x=1\n# l\nl[]=80,443,\n", "set f y 5", "x=1\ny=5\n# l\nl[]=80,443,\n"},
        {"# x\n verbose # y", "set f y 5", "# x\ny = 5\n verbose # y"},
        {"[s] # x\nverbose\n", "set f s.y 5", "[s] # x\ny = 5\nverbose\n"},
        {"[s]\nx=1\n[t\n", "set f s.y 5", "[s]\nx=1\ny=5\n[t\n"},
        {"a=1\n\"", "set f b 2", "a=1\nb=2\n\""},
        // removal
        {"a=1\n", "unset f a", ""},
        {"# x\n  a = 1 # y\r\n\nb=2\n", "unset f a", "# x\n\nb=2\n"},
        {"[s] a=1 # y\r\nb=2\na=3", "unset f s.a", "[s]\r\nb=2\n"},
        {"l[]=1, # x\n2,3\nl.1=4\nl.x=5\nm=1\n", "unset f l", "l.x=5\nm=1\n"},
        {"a\nb=1\n", "set f ab 2", "a\nb=2\n"},
        {"a=1\na.b=2\n[a]\n=3", "unset f a", "a.b=2\n[a]\n"},
        {"a=\na=1\n", "unset f a", "a=\n"},
        {"l[]=1,2,3\nl=5\nl.1=6\nl.9=7\n", "unset f l", "l.1=6\nl.9=7\n"},
    };
    for (auto const& [before, command, after] : rows) change(before, command, after);
}

TEST_F(ConfigChanges, AreRefusedWithAReason) {
    auto const refusal = [](std::string const& what, int line, int other, std::string const& rest) {
        return "\"f\" is left as it is: the " + what + " that begins in line " + std::to_string(line) +
               " swallows line " + std::to_string(other) + rest;
    };
    auto const in_string = [=](int line, int other) { return refusal("string", line, other, "; close it first"); };
    auto const in_array = [=](int line, int other) {
        return refusal("array", line, other, ", since a comma stands before it; remove that first");
    };
    struct {
        std::string before;
        std::string command;
        int status;
        std::string complaint;
    } const rows[] = {
        {"a=1\n", "set f b \"", 2,
         "\"b\" cannot hold a double quote without a backslash before it: a file has no way to write one"},
        {"a=1\n", "set f a ''", 2,
         "\"a\" cannot be set to nothing: a file has no empty values; \"zolt config unset\" removes it"},
        {"a=1\n", "set f a 1 ''", 2,
         "array \"a\" cannot end in an empty element: no array is read from such a line"},
        {"a=1\n", "set f '' 1", 2, "a key needs a name"},
        {"a=1\n", "set f /[] 1", 2, "a key needs a name"},
        {"a=1\n", "set f \"a 1", 2, "a key with a double quote cannot be written"},
        {"l[]=1,2\n", "unset f l.1", 1, "\"l.1\" is an element of the array in line 1; set the array anew"},
        {"a=1\n", "unset f a.b", 1, "there is no setting \"a.b\""},
        {"p=80\nname = \"abc\n# note\n[db]\nhost=h\npw=x\n", "set f name abc", 1, in_string(2, 3)},
        {"p=80\nname = \"abc\n\n [db]\nhost=h\npw=x\n", "unset f name", 1, in_string(2, 4)},
        {"screen = 24\"\ncable = 10\"\nport = 80\n", "set f screen 27", 1, in_string(1, 2)},
        {"k[] = 24\"\ncable=\\\"10\", \"x\n\"\n", "set f k a b", 1, in_string(1, 2)},
        {"a=1\n\"w\n// x\" = 1\n", "unset f 'w\n// x'", 1, in_string(2, 3)},
        {"hosts[] = a, b,\n[db]\npw=x\n", "set f hosts a b", 1, in_array(1, 2)},
        {"\nhosts[] = a, # x\n b,\n\npw=x,\ny\n", "set f hosts a b c", 1, in_array(2, 5)},
        {"hosts[] = a, b,\n[db]\npw=x\n", "unset f hosts", 1, in_array(1, 2)},
        {"[]\nl[]=1,2\n", "set f l.1 a b", 1,
         "\"f\" is left as it is: what line 2 sets does not let \"l.1\" alone be changed"},
        {"\na\nb\n # x\nc=1\n", "unset f ab#xc", 1,
         refusal("key", 2, 4, ", since no \"=\" stands before it; mend that first")},
    };
    for (auto const& [before, command, status, complaint] : rows)
        change(before, command, before, status, complaint);
}

// With --format=json; what is written of it also goes to -o.
TEST_F(ConfigChanges, AreToldAsJson) {
    struct {
        std::string command;
        std::string json;
    } const rows[] = {
        {"set f Net.a 1 'x y'", R"("key": "Net.a","changed": true,"old": [],"new": ["1","x y"])"},
        {"set f net/a[] 1 'x y'", R"("key": "net/a","changed": false,"old": ["1","x y"],"new": ["1","x y"])"},
        {"set f net.a 1", R"("key": "net.a","changed": true,"old": ["1","x y"],"new": ["1"])"},
        {"unset f net.a", R"("key": "net.a","changed": true,"old": ["1"],"new": [])"},
    };
    for (auto const& [command, json] : rows) {
        EXPECT_EQ("{\"file\": \"f\"," + json + "}", compact(run("config " + command + " --json").out)) << command;
    }
    EXPECT_EQ("", content());
    expect("config unset --json f net.a", 1, "", "zolt: there is no setting \"net.a\"\n");
    expect("config set f a 1 --json -o told", 0, "");
    EXPECT_EQ(0u, compact(content("told")).find(R"({"file": "f","key": "a","changed": true)"));
    expect("config set f a 2 --json -o no/told", 2, "",
           "zolt: \"no/told\" cannot be written: No such file or directory\n");
    EXPECT_EQ("a = 1\n", content());
}

TEST_F(ConfigChanges, AreNotLostAtTheSameTime) {
    store("a=1\n", "old");
    std::string const loop = "for i in 1 2 3 4 5 6; do for f in old new; do " ZOLT_PROGRAM " config set $f k$i x & "
                             "done; done; wait";
    EXPECT_EQ(0, run("-c '" + loop + "'", {.program = "/bin/sh"}).status);
    for (std::string const name : {"old", "new"}) {
        std::string const text = content(name);
        EXPECT_EQ(name == "old" ? 7 : 6, std::count(text.begin(), text.end(), '\n')) << text;
    }
    EXPECT_EQ(2, files());
}

// With -o, and what --verbose tells.
TEST_F(ConfigChanges, AreTriedOut) {
    store("a=1\n[s]\nl[]=1,\"\"x\n");
    std::string const before = content();
    expect("config set f a 2 -o -", 0, "a=2\n[s]\nl[]=1,\"\"x\n");
    expect("config set f a 1 -o -", 0, before);
    expect("config set f s.l[] '' 'x y' -o new -v", 0, "", "zolt: f:3: s.l[] = \"\", \"x y\", was 1, x\n");
    EXPECT_EQ("a=1\n[s]\nl[]=,\"x y\"\n", content("new"));
    expect("config unset f s.l -o new -v", 0, "", "zolt: f:3: s.l is removed, was 1, x\n");
    EXPECT_EQ("a=1\n[s]\n", content("new"));
    expect("config unset f b -o new", 1, "", "zolt: there is no setting \"b\"\n");
    EXPECT_EQ("a=1\n[s]\n", content("new"));
    expect("config set absent a 1 -o -", 0, "a = 1\n");
    EXPECT_EQ(2, run("config set f a 2 -o ./f").status);
    EXPECT_EQ(before, content());
    EXPECT_EQ(2, files());
    expect("config set f a 1 -v", 0, "", "zolt: f:1: a = 1, unchanged\n");
    expect("config set f a 2 -v", 0, "", "zolt: f:1: a = 2, was 1\n");
    expect("config set f b 3 -v", 0, "", "zolt: f:2: b = 3, was not set\n");
}

// The command succeeds only when no other setting has changed.
TEST_F(ConfigChanges, AreMadeInAnyOrderOfStatements) {
    std::string const statements[] = {
        "k=1\n",          "l[]=1,2\n",         "[s]\n",           "[]\n",        "# c\n",
        "l.1 = 3 // x\n", "s.l[] = 1,\n 2\n",  "[S.t] k=1 # x\n", "  k[] = 1\n", "l=5\n",
        "l[]=7, 8,\n9\n", "k = \"a\nb\" //\n", "t.k[] = 3 #\n"};
    std::FILE* const unseen = std::tmpfile();
    output out(unseen);
    program_messages const texts("en");
    common_options const options;
    session const session{out, out, texts, options};
    ustring8 const path = directory + "/f";
    std::size_t seed = 1;
    auto const random = [&seed](std::size_t limit) {
        return ((seed = seed * 1103515245 + 12345) >> 16 & 0x7FFF) % limit;
    };
    int removed = 0;
    for (int round = 0; round != 120; ++round) {
        std::string text;
        for (std::size_t count = random(9); count != 0; --count) text += statements[random(std::size(statements))];
        store(text);
        char const* const keys[] = {"k", "l", "l.1", "s.l", "s.k", "s.t.k", "s.t.k.0"};
        ustring8 const key = keys[random(std::size(keys))];
        bool const may_be_element = key.find_first_of("01") != key.npos;
        std::vector<ustring8> const values(may_be_element ? 1 : 1 + random(3), "v w");
        SCOPED_TRACE(text + "--- " + key + " " + std::to_string(values.size()));
        ASSERT_EQ(exit_good, set_config(session, {path, key, values}));
        std::string const after = content();
        ASSERT_EQ(exit_good, set_config(session, {path, key, values}));
        ASSERT_EQ(after, content());
        bool const is_removed = unset_config(session, {path, key}) == exit_good;
        ASSERT_EQ(is_removed, content() != after);
        removed += is_removed ? 1 : 0;
    }
    // The others are elements, or elements of an array behind which the key got a value of its own.
    EXPECT_LT(80, removed);
    std::fclose(unseen);
}

TEST_F(ConfigChanges, AreWrittenWithCare) {
    EXPECT_EQ(0, run("config set new a 1").status);
    EXPECT_EQ("a = 1\n", content("new"));
    EXPECT_EQ(2, run("config unset absent a").status);
    EXPECT_EQ(2, run("config set . a 1").status);
    expect("config set no/f a 1", 2, "", "zolt: \"no/f\" cannot be written: No such file or directory\n");

    // through links, and with the rights of the old file
    fs::permissions(directory + "/new", fs::perms::owner_all);
    fs::create_symlink("new", directory + "/link");
    EXPECT_EQ(0, run("config set link b 2").status);
    EXPECT_TRUE(fs::is_symlink(directory + "/link"));
    EXPECT_EQ(fs::perms::owner_all, fs::status(directory + "/new").permissions());
    EXPECT_EQ("a = 1\nb = 2\n", content("new"));
    fs::create_symlink("absent", directory + "/second");
    EXPECT_EQ(0, run("config set second a 1").status);
    EXPECT_TRUE(fs::is_symlink(directory + "/second"));
    EXPECT_EQ("a = 1\n", content("absent"));

    // no room
    std::string const limits = "-c 'ulimit -f 1; trap \"\" XFSZ; exec " ZOLT_PROGRAM " config set new a ";
    program_run const full = run(limits + std::string(5000, 'x') + "'", {.program = "/bin/sh"});
    EXPECT_EQ(2, full.status);
    EXPECT_EQ("zolt: \"new\" cannot be written: File too large\n", full.err);
    EXPECT_EQ("a = 1\nb = 2\n", content("new"));
    EXPECT_EQ(4, files());

    // nothing waits for a writer, and a pipe stays one
    ASSERT_EQ(0, ::mkfifo((directory + "/pipe").c_str(), 0600));
    for (std::string const command : {"set pipe a 1", "unset pipe a", "check pipe"})
        EXPECT_EQ("zolt: \"pipe\" cannot be read: Operation not supported\n", run("config " + command).err);
    EXPECT_TRUE(fs::is_fifo(directory + "/pipe"));
}

} // namespace

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "tools/config_statements.hpp"
#include "tools/run_program.hpp"

#include <zolt/config/file_item.hpp>

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
    store("a=1\nb[]=2,\"\",3\n");
    expect("config show --file f --json --origin -- -c", 0,
           "{\n  \"settings\": [\n"
           "    {\n      \"key\": \"a\",\n      \"value\": \"1\",\n      \"source\": \"file\",\n"
           "      \"file\": \"f\",\n      \"line\": 1\n    },\n"
           "    {\n      \"key\": \"b\",\n      \"values\": [\n        \"2\",\n        \"\",\n        \"3\"\n"
           "      ],\n      \"source\": \"file\",\n      \"file\": \"f\",\n      \"line\": 2\n    },\n"
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
    expect("config get net.port --file f -- -net.port 9", 0, "9\n");
    expect("config get v --default 1 -- -v", 0, "\n");
    expect("config get net.port --default 1", 0, "1\n");
    expect("config get net --file f", 1, "", "zolt: there is no setting \"net\"\n");
    expect("config get a --file absent", 2, "", "zolt: \"absent\" cannot be read\n");
    expect("config get a --default x -- stray -b", 0, "x\n",
           "zolt: Warning! unknown key:stray\nIgnoring key and continuing\n");
}

TEST_F(ConfigCommands, ChecksStatements) {
    std::pair<std::string, std::string> const rows[] = {
        {"# a\n[s]\nk = 1\nl[] = 1, // x\n  2, \"[3]\",\n \"a=b\"\n", ""},
        {"\n\nk =\nl[] = # none\nm=\"\"",
         "3: \"k\" has no value and is not set\n4: \"l\" has no value and is not set\n"
         "5: \"m\" has no value and is not set\n"},
        {"a\n\nb\nc = 1\nd", "1: \"a\" has no \"=\" and becomes a part of the key \"abc\"\n"
                             "5: \"d\" has no \"=\" and sets nothing\n"},
        {"l[] = 1,\n 2, # end\n", "1: array \"l\" ends in a comma or an empty element and is not set\n"},
        {"l[] = 1,\n[s]\nm[] = 2,\nk = 3\n", "2: the comma before makes this line a part of array \"l\"\n"
                                             "4: the comma before makes this line a part of array \"m\"\n"},
        {"a = 1\nb = 2 \"c\nd = 3\n", "2: the string is not closed and takes the rest of the file\n"},
        {"[s\na = 1\n[t]\nb = 2", "1: section \"s\" is not closed in its line\n"},
        {"a=1\n[s", "2: section \"s\" is not closed in its line\n"},
        {"\xEF\xBB\xBFk = 1", "1: a byte order mark is a part of what follows it\n"},
    };
    for (auto const& [text, findings] : rows) {
        SCOPED_TRACE(text);
        store(text);
        program_run const result = run("config check f");
        auto const count = std::count(findings.begin(), findings.end(), '\n');
        std::string const total = "1 file: " + std::to_string(count) + (count == 1 ? " warning\n" : " warnings\n");
        EXPECT_EQ(std::regex_replace(findings, std::regex("(\\d+): (.*)\n"), "f:$1:1: warning: $2 []\n"),
                  std::regex_replace(result.err, std::regex("\\[[a-z-]+\\]\n"), "[]\n"));
        EXPECT_EQ(total, result.out);
        EXPECT_EQ(0, result.status);
        EXPECT_EQ(count == 0 ? 0 : 1, run("config check f -q --fail-on=warning").status);
    }
    program_run const result = run("config check f absent");
    EXPECT_EQ(2, result.status);
    EXPECT_EQ(0u, result.err.find("zolt: \"absent\" cannot be read\n"));
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

TEST_F(ConfigChanges, ChangeOneKey) {
    change("b=2\na=1\n", "set f A 'x y'", "a=\"x y\"\nb=2\n");
    change("b = 2\na = 1\n", "set f a 1", "b = 2\na = 1\n"); // as it is already
    change("a=1\n", "set f b.c -- -2", "a=1\nb.c=-2\n");
    change("l[]=1,2,3\nl.x=4\nl.7=5\n", "set f l 6", "l=6\nl.7=5\nl.x=4\n");
    change("l[]=1,2,3\n", "set f l[] a,b", "l[]=\"a,b\"\n");
    change("l[]=1,2,3\n", "set f l 4 5", "l[]=4,5\n");
    change("l[]=1,2,3\n", "set f l.1 4", "l[]=1,4,3\n");
    change("l[]=1,2,3\nm=1\n", "unset f l", "m=1\n");
    change("a=1\na.b=2\n", "unset f a", "a.b=2\n");
    change("a=1\n", "unset f a.b", "a=1\n", 1, "there is no setting \"a.b\"");
    change("a=1\n", "unset f a", "");
}

TEST_F(ConfigChanges, LoseNothingUnasked) {
    std::string const unwritable = " cannot be written like this: a file holds no empty values or arrays and no "
                                   "double quotes";
    change("a=1\n", "set f b \"", "a=1\n", 2, "\"b\"" + unwritable);
    change("l[]=1,2\n", "set f l.1 ''", "l[]=1,2\n", 2, "\"l\"" + unwritable);
    std::string const refused = "\nnothing was written; use --force to write it";
    std::string const remarks = "# x\n[s] // y\na=1\nb=\nc";
    change(remarks, "set f s.a 2", remarks, 1,
           "writing \"f\" anew loses 2 comments, 1 section header, 2 statements that set nothing" + refused);
    change(remarks, "set f s.a 2 --force", "s.a=2\n");
    std::string const quote = "\"a\\\"\"=1\nb=2\nc=3";
    change(quote, "unset f b", quote, 1, "writing \"f\" anew loses 1 setting that cannot be written" + refused);
    change(quote, "unset f b --force", "c=3\n");
}

TEST_F(ConfigChanges, AreWrittenWithCare) {
    EXPECT_EQ(0, run("config set new a 1").status);
    EXPECT_EQ("a=1\n", content("new"));
    EXPECT_EQ(2, run("config unset absent a").status);
    EXPECT_EQ(2, run("config set . a 1").status);
    expect("config set no/f a 1", 2, "", "zolt: \"no/f\" cannot be written: No such file or directory\n");

    // through a link, and with the rights of the old file
    fs::permissions(directory + "/new", fs::perms::owner_all);
    fs::create_symlink("new", directory + "/link");
    EXPECT_EQ(0, run("config set link b 2").status);
    EXPECT_TRUE(fs::is_symlink(directory + "/link"));
    EXPECT_EQ(fs::perms::owner_all, fs::status(directory + "/new").permissions());
    EXPECT_EQ("a=1\nb=2\n", content("new"));

    // no room
    std::string const limits = "-c 'ulimit -f 1; trap \"\" XFSZ; exec " ZOLT_PROGRAM " config set new a ";
    program_run const full = run(limits + std::string(5000, 'x') + "'", {.program = "/bin/sh"});
    EXPECT_EQ(2, full.status);
    EXPECT_EQ("zolt: \"new\" cannot be written: not everything was stored\n", full.err);
    EXPECT_EQ("a=1\nb=2\n", content("new"));
    EXPECT_EQ(2, files());
}

TEST_F(ConfigChanges, AreAskedForAtATerminal) {
    auto const answer = [this](std::string const& typed, std::string const& language, std::string const& question) {
        SCOPED_TRACE(typed);
        store("#\na=1");
        program_run const result =
            run("config set f a 2", {.environment = {{"LC_ALL", language}}, .terminal = 2, .input = typed});
        EXPECT_NE(std::string::npos, result.err.find(question));
        EXPECT_EQ(result.status == 0 ? "a=2\n" : "#\na=1", content());
        return result.status;
    };
    for (char const* const no : {"n\n", "\n", "\x04"}) EXPECT_EQ(1, answer(no, "C", "Write it? [y/N] "));
    EXPECT_EQ(0, answer("yes\n", "C", "Write it? [y/N] "));
    EXPECT_EQ(0, answer("J\n", "de", "Schreiben? [j/N] "));
}

} // namespace

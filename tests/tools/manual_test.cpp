// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "tools/program/manual.hpp"
#include "tools/run_program.hpp"

namespace {

using namespace tools;
using Manual = in_directory;

std::string const share = ZOLT_MANUAL_DIR;

void for_each_command(manual_command const& command, auto const& visit) {
    visit(command);
    for (manual_command const& each : command.commands) for_each_command(each, visit);
}

TEST(Program, HelpsEverywhere) {
    std::size_t count = 0;
    manual_command const program = program_manual();
    for_each_command(program, [&](manual_command const& command) {
        std::string const words = join({command.words.begin() + 1, command.words.end()}, " ") + " ";
        SCOPED_TRACE(words);
        ++count;
        EXPECT_EQ("zolt 2.18.0\n", run_program(words + "--version").out);
        program_run const help = run_program(words + "--help");
        EXPECT_EQ(0, help.status);
        EXPECT_NE(std::string::npos, help.out.find("Usage: " + join(command.words, " ")));
        std::string const page = content_of(share + "/man/man1/" + join(command.words, "-") + ".1");
        EXPECT_EQ(page, man_page(command, program, "2.18.0"));
        for (manual_option const& option : command.options)
            EXPECT_NE(std::string::npos, help.out.find(option.names.back())) << option.names.back();
        for (manual_option const& argument : command.arguments)
            EXPECT_NE(std::string::npos, help.out.find(argument.names.front())) << argument.names.front();
        EXPECT_TRUE(!command.commands.empty() || page.find(".SH EXIT STATUS\n") != page.npos);
        program_run const wrong = run_program(words + "--nonsense");
        EXPECT_EQ(2, wrong.status);
        EXPECT_EQ("", wrong.out);
        EXPECT_EQ(0u, wrong.err.find("zolt: "));
    });
    EXPECT_LE(15u, count);
    EXPECT_EQ(2, run_program("").status);
    EXPECT_EQ(2, run_program("catalog render clean app").status);
}

// What groff would take for its own, and what are words of the notes.
TEST_F(Manual, IsWrittenForGroff) {
    manual_command const command{
        {"zolt", "a-b"},
        "Does 'this' \\ that.",
        ".x -- a-b (--lang=\xC3\xA4), -o.\n\nExamples: \nzolt 'a'\nmore\nExit status: 0; 1.\n'y \xFF~^`",
        {{{"FILE"}, "", "read", {}, true, true}, {{"WORD"}, "", "Given", {}, false, true, false, true}},
        {{{"-o", "--out"}, "FILE", "Written", {}, false, false, false, false, {"--no"}},
         {{"--no"}, "", "", {}, false, false, false, false, {"--out"}},
         {{"--form"}, "a|b", "", {"a", "b"}, false, false, true}},
        {{"r-1", "note", "Told.", "x\n.y"}},
        {}};
    manual_command const program{{"zolt"}, "", "", {}, {}, {}, {{{"zolt", "b"}, "", ""}, command}};
    EXPECT_EQ(
        ".\\\" Made from the help of the program.\n"
        ".TH ZOLT\\-A\\-B 1 \"\" \"zolt 1.2\" \"User Commands\"\n"
        ".SH NAME\nzolt\\-a\\-b \\- does \\(aqthis\\(aq \\e that\n"
        ".SH SYNOPSIS\n\\fBzolt a\\-b\\fR [\\fIOPTION\\fR]... [\\fB\\-\\-out\\fR \\fIFILE\\fR | "
        "\\fB\\-\\-no\\fR] \\fIFILE\\fR... [\\fB\\-\\-\\fR \\fIWORD\\fR...]\n"
        ".br\n\\fBzolt a\\-b\\fR \\fB\\-\\-list\\-rules\\fR\n"
        ".SH DESCRIPTION\nDoes \\(aqthis\\(aq \\e that.\n"
        ".PP\n\\&.x \\-\\- a\\-b (\\fB\\-\\-lang=\\[u00E4]\\fR), \\fB\\-o\\fR.\n"
        ".SH ARGUMENTS\n.TP\n\\fIFILE\\fR\nread.\n.TP\n\\fIWORD\\fR\nGiven.\n"
        ".SH OPTIONS\n.TP\n\\fB\\-o\\fR, \\fB\\-\\-out\\fR \\fIFILE\\fR\nWritten.\nNot with \\fB\\-\\-no\\fR.\n"
        ".TP\n\\fB\\-\\-no\\fR\n\nNot with \\fB\\-\\-out\\fR.\n"
        ".SS Options of every command\n.TP\n\\fB\\-\\-form\\fR \\fBa|b\\fR\n\n"
        ".SH RULES\n.TP\n\\fBr\\-1\\fR (note)\nTold.\n.nf\nx\n\\&.y\n.fi\n"
        ".SH EXIT STATUS\n0; 1.\n.PP\n\\(aqy \\(ti\\(ha\\(ga\n"
        ".SH EXAMPLES\n.nf\nzolt \\(aqa\\(aq\n.fi\n.PP\nmore\n"
        ".SH SEE ALSO\n\\fBzolt\\fR(1),\n\\fBzolt\\-b\\fR(1)\n",
        man_page(command, program, "1.2"));
}

// The tools that read what is installed, where they are there.
TEST_F(Manual, PleasesItsReaders) {
    std::pair<char const*, char const*> const readers[] = {
        {"groff", "groff -man -Tutf8 -ww -z /man/man1/zolt*.1"},
        {"man", "man --warnings=w -l -E UTF-8 /man/man1/zolt.1 >/dev/null"},
        {"bash", "bash -n /bash-completion/completions/zolt"},
        {"zsh", "zsh -n /zsh/site-functions/_zolt"},
        {"fish", "fish --no-execute /fish/vendor_completions.d/zolt.fish"}};
    for (auto const& [reader, command] : readers) {
        std::string const line = std::regex_replace(command, std::regex(" /(?!dev)"), " " + share + "/");
        store("command -v " + std::string(reader) + " >/dev/null || exit 0\n" + line + "\n");
        program_run const read = run("f", {.program = "/bin/sh"});
        EXPECT_EQ(0, read.status) << reader;
        EXPECT_EQ("", read.out + read.err) << reader;
    }
}

// All in one run; the candidates come in the order of their names, with descriptions.
TEST_F(Manual, CompletesInFish) {
    if (run("-c 'command -v fish'", {.program = "/bin/sh"}).status != 0) GTEST_SKIP() << "there is no fish";
    std::pair<std::string, std::string> const rows[] = {
        {"c", "catalog config"},
        {"catalog sho", "show"},
        {"catalog check --f", "--fail-on --format"},
        {"catalog check --format ", "json text"},
        {"catalog check --format=j", "--format=json"},
        {"catalog check -q --fail-on=w", "--fail-on=warning"},
        {"catalog check ", "d/ f"},
        {"catalog check -o ", "d/ f"},
        {"catalog check --output=", "--output=d/ --output=f"},
        {"catalog export-po --dir ", "d/"},
        {"catalog export-po --dir=", "--dir=d/"},
        {"catalog check --lang x", ""},
        {"config check --ignore blank", "blank-dropped"},
        {"config get k -- --f", ""},
        {"inspect --te", "--text"},
    };
    std::filesystem::create_directory(directory + "/d");
    std::string script = "source " + share + "/fish/vendor_completions.d/zolt.fish\n";
    std::string expected;
    for (auto const& [words, candidates] : rows) {
        script += "echo (complete -C 'zolt " + words + "' | string replace -r '\\t.*' '')\n";
        expected += candidates + "\n";
    }
    store(script);
    program_run const completed =
        run("-c 'exec fish --no-config f'", {.environment = {{"HOME", directory}}, .program = "/bin/sh"});
    EXPECT_EQ(expected, completed.out);
    EXPECT_EQ("", completed.err);
}

// "|" is where the word is that is to be completed. What the shell itself completes is in "<>".
TEST_F(Manual, CompletesInBash) {
    std::pair<char const*, char const*> const rows[] = {
        {"c", "catalog config"},
        {"catalog sho", "show"},
        {"catalog sho -q", ""},
        {"catalog export-po --d", "--dir"},
        {"catalog export-po --dir x", "<dirnames>"},
        {"catalog check --list", "--list-rules"},
        {"catalog check --f", "--format --fail-on"},
        {"catalog check", "check"},
        {"catalog check ''", "<default>"},
        {"catalog check show", "<default>"},
        {"catalog check -o x", "<default>"},
        {"catalog check --format ''", "text json"},
        {"catalog check --format =", "text json"},
        {"catalog check --format = j", "json"},
        {"catalog check --format=j", "--format=json"},
        {"catalog check --fail-on w", "warning"},
        {"catalog check --ignore placeholder", "placeholder-set placeholder-type"},
        {"catalog check --ignore blank", ""},
        {"config check --ignore blank", "blank-dropped"},
        {"config get --lang x", ""},
        {"config get -- --f", "<default>"},
    };
    for (auto const& [words, candidates] : rows) {
        store("source " + share + "/bash-completion/completions/zolt\nCOMP_WORDS=(zolt " + words +
              ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\nopened=''\ncompopt() { opened=\"<$2>\"; }\n_zolt\n"
              "printf '%s' \"${COMPREPLY[*]}$opened\"\n");
        program_run const completed = run("f", {.program = "/bin/bash"});
        EXPECT_EQ(candidates, completed.out) << words;
        EXPECT_EQ("", completed.err) << words;
    }
}

} // namespace

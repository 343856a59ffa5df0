// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Runs the examples of the guide's pages. A block is a file when the line before it ends in a colon and names one,
// as `name.xmc`, or by its language: ```xml is app.xmc, ```ini tool.cfg. A block ```console has commands behind "$
// " and below each what it writes.
#include "tools/run_program.hpp"

namespace {

class GuidePage : public in_directory, public testing::WithParamInterface<char const*> {
protected:
    void read(std::istream& page) {
        std::string before;
        for (std::string line; std::getline(page, line);) {
            if (!line.starts_with("```")) {
                before = line.empty() ? before : line;
                continue;
            }
            std::string text;
            for (std::string inside; std::getline(page, inside) && inside != "```";) text += inside + "\n";
            if (line == "```console") {
                run_commands(text);
            } else {
                keep_file(before, line, text);
            }
            before.clear();
        }
    }

    int commands = 0;

private:
    void keep_file(std::string const& before, std::string const& fence, std::string const& text) {
        std::smatch name;
        if (std::regex_search(before, name, std::regex("`([^` ]+\\.[a-z]+)`[^`]*:$"))) return store(text, name[1]);
        if (fence == "```xml") store(text, "app.xmc");
        if (fence == "```ini") store(text, "tool.cfg");
    }

    void run_commands(std::string const& text) {
        std::istringstream lines(text);
        std::string command;
        std::string expected;
        for (std::string line; std::getline(lines, line);) {
            if (!line.starts_with("$ ")) {
                expected += line + "\n";
                continue;
            }
            check(command, expected);
            command = line.substr(2);
            expected.clear();
        }
        check(command, expected);
    }

    void check(std::string const& command, std::string const& expected) {
        if (command.empty()) return;
        ++commands;
        std::string const program = command.substr(0, command.find(' '));
        // Backslashes mean themselves.
        std::string words = std::regex_replace(command.substr(program.size()), std::regex(R"(\\)"), R"(\\)");
        words = std::regex_replace(words, std::regex(" zolt "), " " ZOLT_PROGRAM " ");
        program_run const result = run(words, {.program = program == "zolt" ? ZOLT_PROGRAM : "/bin/" + program});
        std::string const shown = result.err + result.out;
        EXPECT_EQ(expected, shown + (shown.empty() || shown.ends_with('\n') ? "" : "\n")) << command;
    }
};

TEST_P(GuidePage, IsTrue) {
    std::ifstream page(ZOLT_SOURCE_DIR "/docs/guide/" + std::string(GetParam()) + ".md");
    read(page);
    EXPECT_LE(5, commands);
}

INSTANTIATE_TEST_SUITE_P(Each, GuidePage,
                         testing::Values("catalogs_for_programmers", "catalogs_for_translators",
                                         "configuration_lines", "security_notes"));

} // namespace

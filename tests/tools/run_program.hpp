// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Runs the zolt program, in tests/tools/data or in a directory of the test's own, and catches what it
// writes. The environment says English unless a test sets something else.
#pragma once

#include <gtest/gtest.h>

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

struct program_run {
    int status = -1; // the exit status; -1 when a signal ended it
    std::string out;
    std::string err;
};

using variables = std::vector<std::pair<std::string, std::string>>;

struct program_options {
    variables environment{};
    int terminal = -1; // the descriptor, 1 or 2, that is a terminal; its output comes in `out` or `err`
    std::string program = ZOLT_PROGRAM;
    std::string directory = ZOLT_SOURCE_DIR "/tests/tools/data";
};

// The words of a command; one that is empty or has blanks is written 'like this'.
inline std::vector<std::string> words_of(std::string const& command) {
    std::vector<std::string> words;
    std::istringstream stream(command);
    for (std::string word; stream >> std::quoted(word, '\'');) words.push_back(word);
    return words;
}

inline std::string read_all(int descriptor) {
    std::string text;
    char buffer[4096];
    for (ssize_t size; (size = ::read(descriptor, buffer, sizeof buffer)) > 0;) {
        text.append(buffer, static_cast<std::size_t>(size));
    }
    return text;
}

inline std::string content_of(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline program_run run_program(std::string const& command, program_options const& options = {}) {
    std::FILE* const files[] = {nullptr, std::tmpfile(), std::tmpfile()};
    int controller = -1;
    int terminal = -1;
    winsize const size = {25, 60, 0, 0};
    if (options.terminal != -1) ::openpty(&controller, &terminal, nullptr, nullptr, &size);

    pid_t const child = ::fork();
    if (child == 0) {
        for (int const target : {1, 2})
            ::dup2(options.terminal == target ? terminal : ::fileno(files[target]), target);
        for (char const* const name : {"NO_COLOR", "ZOLT_CATALOG_PATH", "LC_MESSAGES", "LANG", "LANGUAGE"}) ::unsetenv(name);
        ::setenv("LC_ALL", "C", 1);
        ::setenv("TERM", "xterm", 1);
        for (auto const& [name, value] : options.environment) ::setenv(name.c_str(), value.c_str(), 1);
        std::vector<std::string> words = words_of("zolt " + command);
        std::vector<char*> argv;
        for (std::string& word : words) argv.push_back(word.data());
        argv.push_back(nullptr);
        if (::chdir(options.directory.c_str()) == 0) ::execv(options.program.c_str(), argv.data());
        ::_exit(99);
    }
    std::string shown;
    if (terminal != -1) {
        ::close(terminal);
        shown = read_all(controller);
        ::close(controller);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    program_run run;
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    for (int const stream : {1, 2}) {
        std::rewind(files[stream]);
        std::string& text = stream == 1 ? run.out : run.err;
        text = options.terminal == stream ? shown : read_all(::fileno(files[stream]));
        std::fclose(files[stream]);
    }
    return run;
}

inline void expect_run(std::string const& command, int status, std::string const& out, std::string const& err = "",
                       program_options const& options = {}) {
    SCOPED_TRACE(command);
    program_run const run = run_program(command, options);
    EXPECT_EQ(status, run.status);
    EXPECT_EQ(out, run.out);
    EXPECT_EQ(err, run.err);
}

// JSON without its lines and indentation.
inline std::string compact(std::string const& json) { return std::regex_replace(json, std::regex("\n *"), ""); }

// A test with a directory of its own, in which run() and expect() run the program.
class in_directory : public testing::Test {
protected:
    in_directory() : directory("/tmp/zolt_tools_XXXXXX") { ::mkdtemp(directory.data()); }
    ~in_directory() override { std::filesystem::remove_all(directory); }

    void store(std::string const& text, std::string const& name = "f") const {
        std::filesystem::remove(directory + "/" + name); // some file systems are slow to write over a file
        std::ofstream(directory + "/" + name, std::ios::binary) << text;
    }
    std::string content(std::string const& name = "f") const { return content_of(directory + "/" + name); }
    program_run run(std::string const& command, program_options options = {}) const {
        options.directory = directory;
        return run_program(command, options);
    }
    void expect(std::string const& command, int status, std::string const& out, std::string const& err = "") const {
        expect_run(command, status, out, err, {.directory = directory});
    }

    std::string directory;
};

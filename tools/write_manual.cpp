// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Writes the man pages of the program and the completions of shells into a directory, as they are installed
// below share. A part of the build.
//
//     write_manual build/tools/share
#include "tools/program/manual.hpp"

#include <zolt/version.hpp>

#include <filesystem>
#include <fstream>
#include <iostream>

namespace {

using tools::manual_command;

bool is_written(std::filesystem::path const& path, std::string const& text) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file << text << std::flush;
    if (!file) std::cerr << path << " cannot be written\n";
    return file.good();
}

bool are_pages_written(std::filesystem::path const& directory, manual_command const& program,
                       manual_command const& command) {
    bool is_good = is_written(directory / (tools::join(command.words, "-") + ".1"),
                              tools::man_page(command, program, zolt::version()));
    for (manual_command const& each : command.commands)
        is_good = are_pages_written(directory, program, each) && is_good;
    return is_good;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: write_manual DIRECTORY\n";
        return 2;
    }
    std::filesystem::path const directory = argv[1];
    manual_command const program = tools::program_manual();
    bool const is_good =
        are_pages_written(directory / "man/man1", program, program) &&
        is_written(directory / "bash-completion/completions/zolt", tools::bash_completion(program)) &&
        is_written(directory / "zsh/site-functions/_zolt", tools::zsh_completion(program)) &&
        is_written(directory / "fish/vendor_completions.d/zolt.fish", tools::fish_completion(program));
    return is_good ? 0 : 1;
}

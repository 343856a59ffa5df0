// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// What the program's commands are called, take and do, as they declare it, and the files that tell it to
// others: man pages and the completions of shells. New commands are in all of them by themselves.
//
// The notes of a command are paragraphs. One that starts with "Exit status:", "Environment:", "Files:" or
// "Example:" opens the section of that name in the man page, for it and the paragraphs after it. In examples, a
// paragraph that starts with "zolt " is a command line.
#pragma once

#include "library.hpp"

#include <functional>
#include <string>
#include <vector>

namespace tools {

/// An option, or an argument, which has one name such as "PATH".
struct manual_option {
    std::vector<std::string> names; ///< with their dashes, short ones first
    std::string value;              ///< "FILE" or "text|json"; empty for a flag
    std::string text;
    std::vector<std::string> choices{}; ///< the values that there are, if they are known
    bool is_required = false;
    bool is_list = false;                ///< takes several values, or may be repeated
    bool is_common = false;              ///< an option of every command
    bool is_trailing = false;            ///< an argument behind "--"
    std::vector<std::string> excluded{}; ///< options that this one cannot stand with
};

/// A rule of findings.
struct manual_rule {
    std::string name;
    std::string level; ///< "error", "warning" or "note"
    std::string about;
    std::string example;
};

struct manual_command {
    std::vector<std::string> words; ///< zolt, catalog, check
    std::string about;
    std::string notes;
    std::vector<manual_option> arguments{};
    std::vector<manual_option> options{};
    std::vector<manual_rule> rules{};
    std::vector<manual_command> commands{}; ///< of a group
};

/// The whole program, in English.
manual_command program_manual();

/// "zolt-catalog-check" with the separator "-".
std::string join(std::vector<std::string> const& words, char const* separator);

/// How a synopsis shows what is typed as it stands, and what stands for something else.
struct synopsis_style {
    std::function<std::string(std::string const&)> word;
    std::function<std::string(std::string const&)> place;
    std::string options; ///< for any of them
    std::string command; ///< the place of one in a group
};

/// The forms of the command, one a line.
std::vector<std::string> synopsis(manual_command const& command, synopsis_style const& style);

/// The man page of a command of the program in section 1, as groff source.
std::string man_page(manual_command const& command, manual_command const& program, std::string const& version);

/// Completion scripts for the command and all below it.
std::string bash_completion(manual_command const& program);
std::string zsh_completion(manual_command const& program);
std::string fish_completion(manual_command const& program);

} // namespace tools

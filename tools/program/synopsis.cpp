// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "manual.hpp"

#include <algorithm>

namespace tools {
namespace {

std::string argument_of(manual_option const& argument, synopsis_style const& style) {
    std::string const name = style.place(argument.names.front()) + (argument.is_list ? "..." : "");
    if (argument.is_trailing) return "[" + style.word("--") + " " + name + "]";
    return argument.is_required ? name : "[" + name + "]";
}

// Options of which one excludes the other.
std::string choices_of(manual_command const& command, synopsis_style const& style) {
    std::string text;
    std::vector<std::string> done;
    auto const is_in = [](std::vector<std::string> const& names, manual_option const& option) {
        return std::find(names.begin(), names.end(), option.names.back()) != names.end();
    };
    for (manual_option const& first : command.options) {
        if (first.excluded.empty() || is_in(done, first)) continue;
        std::string words;
        for (manual_option const& option : command.options) {
            if (&option != &first && !is_in(first.excluded, option)) continue;
            done.push_back(option.names.back());
            words += (words.empty() ? "" : " | ") + style.word(option.names.back());
            if (!option.value.empty()) words += " " + style.place(option.value);
        }
        text += first.is_required ? " {" + words + "}" : " [" + words + "]";
    }
    return text;
}

} // namespace

std::vector<std::string> synopsis(manual_command const& command, synopsis_style const& style) {
    std::string const words = style.word(join(command.words, " "));
    std::string line = words;
    if (!command.commands.empty()) line += " " + style.place(style.command);
    line += " " + style.options + choices_of(command, style);
    for (manual_option const& argument : command.arguments) line += " " + argument_of(argument, style);
    if (command.rules.empty()) return {line};
    return {line, words + " " + style.word("--list-rules")};
}

} // namespace tools

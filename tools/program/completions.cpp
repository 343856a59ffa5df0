// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Completion scripts. Each finds out at which command the line is, and then offers that command's options, the
// values of an option, the commands of a group, or files.
#include "manual.hpp"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string_view>

namespace tools {
namespace {

enum class value_kind { words, files, directories, other };

value_kind kind_of(manual_option const& option) {
    if (!option.choices.empty()) return value_kind::words;
    bool const is_argument = option.names.front().front() != '-';
    if (is_argument || option.value == "FILE" || option.value == "PATH") return value_kind::files;
    return option.value == "DIRECTORY" ? value_kind::directories : value_kind::other;
}

/// The command and all below it.
std::vector<manual_command const*> all_commands(manual_command const& program) {
    std::vector<manual_command const*> all{&program};
    for (manual_command const& each : program.commands) {
        for (manual_command const* const below : all_commands(each)) all.push_back(below);
    }
    return all;
}

std::string with_escapes(std::string_view text, std::string_view characters) {
    std::string result;
    for (char const c : text) {
        if (characters.find(c) != characters.npos) result += '\\';
        result += c;
    }
    return result;
}

// As bash and zsh quote.
std::string quoted(std::string_view text) {
    std::string result = "'";
    for (char const c : text) c == '\'' ? result += "'\\''" : result += c;
    return result + "'";
}

std::string command_words(manual_command const& command) { return join(command.words, " "); }

// Of all commands below the program.
std::string path_list(manual_command const& program, char const* separator) {
    std::vector<std::string> paths;
    for (manual_command const* const each : all_commands(program)) {
        if (each != &program) paths.push_back(quoted(command_words(*each)));
    }
    return join(paths, separator);
}

//--------------------------------------------------------------------------------------------------
// bash

// What is offered for the value of an option.
std::string bash_values(manual_option const& option) {
    switch (kind_of(option)) {
    case value_kind::words:
        return "words=" + quoted(join(option.choices, " "));
    case value_kind::files:
        return "builtin=default";
    case value_kind::directories:
        return "builtin=dirnames";
    default:
        return "words=''";
    }
}

/// By value: the patterns of a command and its option.
using bash_patterns = std::map<std::string, std::vector<std::string>>;

std::string bash_branches(bash_patterns const& patterns) {
    std::string text;
    for (auto const& [value, list] : patterns) text += "    " + join(list, " | ") + ")\n        " + value + " ;;\n";
    return text;
}

// What an option has in most commands it has in all but those that come first.
std::string bash_option_branches(manual_command const& program) {
    std::map<std::string, bash_patterns> options;
    for (manual_command const* const command : all_commands(program)) {
        for (manual_option const& option : command->options) {
            if (option.value.empty()) continue;
            for (std::string const& name : option.names)
                options[name][bash_values(option)].push_back(quoted(command_words(*command) + " " + name));
        }
    }
    bash_patterns of_commands;
    bash_patterns of_all;
    for (auto const& [name, values] : options) {
        auto const is_rarer = [](auto const& a, auto const& b) { return a.second.size() < b.second.size(); };
        auto const most = std::max_element(values.begin(), values.end(), is_rarer);
        for (auto const& [value, patterns] : values) {
            std::vector<std::string>& list = of_commands[value];
            if (value != most->first) list.insert(list.end(), patterns.begin(), patterns.end());
        }
        of_all[most->first].push_back("*" + quoted(" " + name));
    }
    std::erase_if(of_commands, [](auto const& entry) { return entry.second.empty(); });
    return bash_branches(of_commands) + bash_branches(of_all);
}

std::string bash_words(manual_command const& command) {
    std::vector<std::string> options;
    for (manual_option const& option : command.options)
        options.insert(options.end(), option.names.begin(), option.names.end());
    std::vector<std::string> names;
    for (manual_command const& each : command.commands) names.push_back(each.words.back());
    return "options=" + quoted(join(options, " ")) +
           (names.empty() ? " builtin=default" : " words=" + quoted(join(names, " ")));
}

//--------------------------------------------------------------------------------------------------
// zsh

std::string zsh_function(manual_command const& command) {
    std::string name = "_" + join(command.words, "_");
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

std::string zsh_values(manual_option const& option) {
    std::string const label = with_escapes(option.value.empty() ? option.names.front() : option.value, "\\:");
    switch (kind_of(option)) {
    case value_kind::words:
        return ":" + label + ":(" + join(option.choices, " ") + ")";
    case value_kind::files:
        return ":" + label + ":_files";
    case value_kind::directories:
        return ":" + label + ":_files -/";
    default:
        return ":" + label + ": ";
    }
}

// "-o+" and "--output=" take their value in the same word, too.
std::string zsh_option(manual_option const& option) {
    std::vector<std::string> names;
    for (std::string const& name : option.names)
        names.push_back(option.value.empty() ? name : name + (name.starts_with("--") ? "=" : "+"));
    std::string const text = "[" + with_escapes(option.text, "\\[]:") + "]";
    std::string const rest = quoted(text + (option.value.empty() ? "" : zsh_values(option)));
    std::vector<std::string> after = option.names; // what is not offered any more
    after.insert(after.end(), option.excluded.begin(), option.excluded.end());
    std::string const head = option.is_list ? "*" : "(" + join(after, " ") + ")";
    return quoted(head) + (names.size() == 1 ? names.front() : "{" + join(names, ",") + "}") + rest;
}

std::string zsh_argument(manual_option const& argument) {
    return quoted((argument.is_list ? "*" : argument.is_required ? "" : ":") + zsh_values(argument));
}

std::string zsh_definition(manual_command const& command) {
    std::string text = "\n" + zsh_function(command) + "() {\n";
    bool const is_group = !command.commands.empty();
    if (is_group) text += "    local context state state_descr line\n    typeset -A opt_args\n";
    text += is_group ? "    _arguments -C" : "    _arguments -s -S";
    for (manual_option const& option : command.options) text += " \\\n        " + zsh_option(option);
    for (manual_option const& argument : command.arguments) text += " \\\n        " + zsh_argument(argument);
    if (!is_group) return text + "\n}\n";

    text += " \\\n        '1:command:->command' \\\n        '*::argument:->argument'\n";
    text += "    case $state in\n    command)\n        local -a commands=(\n";
    for (manual_command const& each : command.commands)
        text += "            " + quoted(with_escapes(each.words.back(), ":") + ":" + each.about) + "\n";
    text += "        )\n        _describe -t commands command commands ;;\n";
    text += "    argument)\n        case $line[1] in\n";
    for (manual_command const& each : command.commands)
        text += "        " + each.words.back() + ") " + zsh_function(each) + " ;;\n";
    return text + "        esac ;;\n    esac\n}\n";
}

//--------------------------------------------------------------------------------------------------
// fish

std::string fish_quoted(std::string_view text) { return "'" + with_escapes(text, "\\'") + "'"; }

std::string fish_values(manual_option const& option) {
    switch (kind_of(option)) {
    case value_kind::words:
        return " -x -a " + fish_quoted(join(option.choices, " "));
    case value_kind::files:
        return " -r -F";
    case value_kind::directories:
        return R"( -x -a '(__fish_complete_directories (string replace -r "^--[^=]*=" "" -- (commandline -ct)))')";
    default:
        return " -x";
    }
}

std::string fish_lines(manual_command const& command) {
    std::string const start = "complete -c zolt -n " + fish_quoted("__zolt_is_at " + command_words(command));
    std::string text;
    for (manual_command const& each : command.commands)
        text += start + " -f -a " + each.words.back() + " -d " + fish_quoted(each.about) + "\n";
    for (manual_option const& option : command.options) {
        text += start;
        for (std::string const& name : option.names)
            text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
        text += (option.value.empty() ? "" : fish_values(option)) + " -d " + fish_quoted(option.text) + "\n";
    }
    return text;
}

} // namespace

std::string bash_completion(manual_command const& program) {
    std::string text = R"(# bash completion for zolt, made from the program's commands

_zolt() {
    local word=${COMP_WORDS[COMP_CWORD]} option=${COMP_WORDS[COMP_CWORD - 1]}
    local command=zolt options='' words='' builtin='' prefix='' i
    for ((i = 1; i < COMP_CWORD; ++i)); do
        [[ ${COMP_WORDS[i]} == -- ]] && { compopt -o default; return; }
        case "$command ${COMP_WORDS[i]}" in
        )" + path_list(program, " | ") +
                       R"()
            command+=" ${COMP_WORDS[i]}" ;;
        esac
    done
    # "--format=text" is three words, unless "=" is left out of COMP_WORDBREAKS
    if [[ $word == = ]]; then
        word=''
    elif [[ $option == = ]]; then
        option=${COMP_WORDS[COMP_CWORD - 2]}
    elif [[ $word == --*=* ]]; then
        option=${word%%=*} prefix=$option= word=${word#*=}
    fi
    case "$command $option" in
)";
    text += bash_option_branches(program);
    text += "    *)\n        case $command in\n";
    for (manual_command const* const each : all_commands(program))
        text += "        " + quoted(command_words(*each)) + ") " + bash_words(*each) + " ;;\n";
    return text + R"(        esac
        [[ $word == -* ]] && words=$options builtin='' ;;
    esac
    [[ $builtin ]] && compopt -o $builtin
    COMPREPLY=($(compgen -P "$prefix" -W "$words" -- "$word"))
}

complete -F _zolt zolt
)";
}

std::string zsh_completion(manual_command const& program) {
    std::string text = "#compdef zolt\n# zsh completion for zolt, made from the program's commands\n";
    for (manual_command const* const each : all_commands(program)) text += zsh_definition(*each);
    return text + "\n_zolt \"$@\"\n";
}

std::string fish_completion(manual_command const& program) {
    std::string text = R"(# fish completion for zolt, made from the program's commands

function __zolt_is_at --description 'Whether the line is at this command'
    set -l at zolt
    for word in (commandline -opc)[2..-1]
        if contains -- "$at $word" )" +
                       path_list(program, " ") + R"(
            set at "$at $word"
        end
    end
    test "$at" = "$argv"
end

)";
    for (manual_command const* const each : all_commands(program)) text += fish_lines(*each);
    return text;
}

} // namespace tools

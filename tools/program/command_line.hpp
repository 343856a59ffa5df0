// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The command line of `zolt`, for the sources that declare commands to it:
//
//     void add_show(command const& catalog) {
//         struct values { std::string path; };
//         command show = catalog.add("show", phrase::show_about, phrase::show_notes);
//         values& given = show.keep<values>();
//         show.argument("PATH", given.path, phrase::path_argument).required();
//         show.runs([&given](session const& session) { return show_messages(session, {given.path}); });
//     }
//
// Every command has the options of common_options, which it finds in its session. With -o FILE the
// session's `out` is that file, which is written only when the command ends well.
//
// The parser stays behind this header: its templates take longer to compile than all the commands.
#pragma once

#include "library.hpp"
#include "manual.hpp"
#include "program_messages.hpp"
#include "rules.hpp"
#include "session.hpp"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace tools {

class command_line;

/// An argument or option as it was declared.
class parameter {
public:
    explicit parameter(CLI::Option& option) : m_option(&option) {}

    parameter required() const;
    parameter excludes(parameter other) const;

private:
    friend class command;

    CLI::Option* m_option;
};

/// A command, or a group of them such as `zolt catalog`.
class command {
public:
    command(command_line& line, CLI::App& app) : m_line(&line), m_app(&app) {}

    command add(char const* name, phrase about, phrase notes) const;
    command add_group(char const* name, phrase about, phrase notes) const;

    /// Values that live as long as the command line, for what arguments and options are stored in.
    template <typename Values>
    Values& keep() const;

    /// Targets are std::string, std::optional<std::string>, std::vector<std::string> and, for options, std::size_t.
    /// An option of the type "text|json" takes one of these words.
    template <typename Target>
    parameter argument(char const* name, Target& target, phrase description) const;
    /// Of another program, behind "--".
    void trailing_arguments(char const* name, std::vector<std::string>& target, phrase description) const;
    template <typename Target>
    parameter option(char const* name, Target& target, phrase description, char const* type) const;
    parameter flag(char const* name, bool& target, phrase description) const;

    /// One of these flags has to be given, and only one.
    void needs_one_of(std::vector<parameter> const& flags) const;

    /// What the command does when the whole line has been understood.
    void runs(std::function<exit_status(session const&)> action) const;

    /// What it writes is a report for which -o is wanted with exit_findings, too.
    command const& with_report() const;
    /// It has findings of these rules: it has --list-rules, and --ignore takes no other.
    command const& with_rules(rule_table rules) const;
    /// Its result may take the place of what it reads. Otherwise it is wrong usage to name the same file for both.
    command const& changes_input() const;

private:
    command_line* m_line;
    CLI::App* m_app;
};

class command_line {
public:
    /// The width is that of --help.
    command_line(output& out, output& err, program_messages const& texts, std::size_t width = 79);
    ~command_line();

    command root() { return {*this, *m_app}; }
    exit_status run(int argc, char** argv);
    /// What has been declared.
    manual_command manual() const { return manual(*m_app, {}); }

private:
    friend class command;

    struct command_traits {
        bool is_report = false;
        bool changes_input = false;
        rule_table rules{};
        CLI::Option const* trailing = nullptr;
        std::vector<CLI::Option const*> needed{}; // one of them
    };

    ustring8 get(phrase id) const;      // text above or below the options
    ustring8 describe(phrase id) const; // text beside an option or a command's name
    void set_up(CLI::App& app, phrase about) const;
    void set_headings() const;
    ustring8 describe_fault(std::string const& words) const;
    ustring8 describe_unexpected(std::string const& argument) const;
    ustring8 describe_missing_value(char const* option, char const* type) const;
    template <typename Target>
    void keep_whole(Target& target);
    void add_common_options(CLI::App& app);
    void take_common_options();
    std::optional<ustring8> fault_of_options() const;
    bool is_input(std::string const& path) const;
    exit_status act(session const& session) const;
    manual_command manual(CLI::App const& app, std::vector<std::string> words) const;

    output& m_out;
    output& m_err;
    program_messages const& m_texts;
    std::size_t m_width;
    std::unique_ptr<CLI::App> m_app;
    std::vector<std::shared_ptr<void>> m_values;
    std::vector<std::function<void()>> m_unmark; // for each target, see marked()
    std::map<CLI::App const*, command_traits> m_traits;
    std::function<exit_status(session const&)> m_action;
    CLI::App const* m_chosen = nullptr;

    // The options of every command, as they are written and as commands see them.
    struct {
        bool is_quiet = false;
        bool is_verbose = false;
        bool is_json = false;
        bool is_list_of_rules = false;
        std::string result_file = "-";
        std::string format = "text";
        std::string language;
        std::string reference = "en";
        std::string fail_on = "error";
        std::vector<std::string> ignored;
    } m_given;
    common_options m_options;
};

/// The commands, in the order of --help, each group in a source of its own.
void add_catalog_commands(command const& root);
void add_config_commands(command const& root);
void add_inspect_command(command const& root);

inline void add_commands(command const& root) {
    add_catalog_commands(root);
    add_config_commands(root);
    add_inspect_command(root);
}

//--------------------------------------------------------------------------------------------------

template <typename Values>
Values& command::keep() const {
    auto const values = std::make_shared<Values>();
    m_line->m_values.push_back(values);
    return *values;
}

inline std::vector<ustring8> to_texts(std::vector<std::string> const& values) {
    return {values.begin(), values.end()};
}

} // namespace tools

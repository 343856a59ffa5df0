// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "command_line.hpp"

#include "files.hpp"
#include "findings.hpp"
#include "result_file.hpp"

#include <zolt/strings/string_utility.hpp>
#include <zolt/version.hpp>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <optional>
#include <sstream>
#include <string_view>
#include <type_traits>
#include <utility>

namespace tools {
namespace {

constexpr std::size_t help_column = 30; // where the parser lets descriptions start

// "rule", "rule:catalog/message" or "rule:key".
ignored_rule parse_ignored(std::string const& text) {
    auto const colon = text.find(':');
    if (colon == std::string::npos) return {text, {}};
    return {text.substr(0, colon), text.substr(colon + 1)};
}

severity parse_severity(std::string const& word) {
    return word == "error" ? severity::error : word == "warning" ? severity::warning : severity::note;
}

// The words of "text|json"; none of "FILE".
std::vector<std::string> choices_of(std::string const& value) {
    if (value.find('|') == value.npos) return {};
    std::vector<ustring8> const words = zolt::strings::split_string(ustring8(value), "|");
    return {words.begin(), words.end()};
}

manual_option describe_option(CLI::Option const& option) {
    manual_option result;
    result.value = option.get_items_expected_max() == 0 ? "" : option.get_type_name();
    result.text = option.get_description();
    result.choices = choices_of(result.value);
    result.is_required = option.get_required();
    for (CLI::Option const* const other : option.get_excludes()) result.excluded.push_back(other->get_name());
    std::sort(result.excluded.begin(), result.excluded.end());
    result.is_list =
        option.get_expected_max() > 1 || option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll;
    if (option.get_positional()) {
        result.names.push_back(option.get_name(true));
    } else {
        for (std::string const& name : option.get_snames()) result.names.push_back("-" + name);
        for (std::string const& name : option.get_lnames()) result.names.push_back("--" + name);
    }
    return result;
}

// Of the files that the line names, one that is read.
bool names_input(CLI::Option const& option) {
    constexpr std::array<std::string_view, 4> words{"FILE", "PATH", "OLD", "NEW"};
    std::string const word = option.get_positional() ? option.get_name(true) : option.get_type_name();
    bool const is_written = option.check_lname("output") || option.check_lname("svg");
    return !is_written && std::find(words.begin(), words.end(), word) != words.end();
}

// The parser takes an argument such as "[a,b]" apart where it expects a list, and the next one for the value of
// "--lang=". With a mark in front a value stays what it is.
constexpr char mark = '\x1F';

// The arguments as the parser takes them, the last one first.
std::vector<std::string> marked(int argc, char** argv) {
    std::vector<std::string> arguments;
    bool has_options = true; // until "--"
    for (int i = 1; i < argc; ++i) {
        std::string& argument = arguments.emplace_back(argv[i]);
        if (argument.empty()) continue;
        if (argument[0] == '[' || argument[0] == mark) argument.insert(0, 1, mark);
        has_options = has_options && argument != "--";
        bool const is_option = has_options && argument.starts_with("--");
        if (is_option && argument.find('=') == argument.size() - 1) argument += mark;
    }
    std::reverse(arguments.begin(), arguments.end());
    return arguments;
}

void unmark(std::string& argument) {
    if (!argument.empty() && argument[0] == mark) argument.erase(0, 1);
}

void unmark(std::optional<std::string>& argument) {
    if (argument) unmark(*argument);
}

void unmark(std::vector<std::string>& arguments) {
    for (std::string& argument : arguments) unmark(argument);
}

// What is between the begin and the end of a text that has these.
std::optional<std::string> between(std::string_view text, std::string_view begin, std::string_view end) {
    if (text.size() < begin.size() + end.size() || !text.starts_with(begin) || !text.ends_with(end)) return {};
    return std::string(text.substr(begin.size(), text.size() - begin.size() - end.size()));
}

std::string fault_of_choice(program_messages const& texts, std::vector<std::string> const& words,
                            std::string const& value) {
    if (std::find(words.begin(), words.end(), value) != words.end()) return {};
    return texts.get(phrase::not_a_choice, {{"value", value}, {"words", join(words, ", ")}});
}

// Not less than 0.
std::string fault_of_number(program_messages const& texts, std::string const& value) {
    std::size_t number = 0;
    auto const end = value.data() + value.size();
    auto const read = std::from_chars(value.data(), end, number);
    if (read.ptr != end || value.empty()) return texts.get(phrase::not_a_number);
    return read.ec == std::errc() ? ustring8() : texts.get(phrase::number_too_large);
}

// What the parser says of an option, and how that is told.
struct fault_form {
    std::string_view begin; ///< behind the name of an option
    std::string_view end;   ///< behind another name
    phrase text;
    char const* dashes = ""; ///< that the name lacks
};
constexpr fault_form fault_forms[] = {{": 1 required ", " missing", phrase::value_required},
                                      {": At Most 1 required but received ", "", phrase::given_twice},
                                      {" excludes ", "", phrase::options_exclude},
                                      {" was given a disallowed flag override", "", phrase::takes_no_value, "--"}};

// Usage as in man pages.
class help_formatter : public CLI::Formatter {
public:
    using usage = std::function<std::string(CLI::App const&, std::string const&)>;
    explicit help_formatter(usage make) : m_make(std::move(make)) {}
    std::string make_usage(CLI::App const* app, std::string name) const override { return m_make(*app, name); }

private:
    usage m_make;
};

} // namespace

parameter parameter::required() const { return parameter(*m_option->required()); }
parameter parameter::excludes(parameter other) const { return parameter(*m_option->excludes(other.m_option)); }

template <typename Target>
void command_line::keep_whole(Target& target) {
    if constexpr (!std::is_integral_v<Target>) m_unmark.emplace_back([&target] { unmark(target); });
}

command command::add(char const* name, phrase about, phrase notes) const {
    command const added = add_group(name, about, notes);
    added.m_app->require_subcommand(0);
    m_line->add_common_options(*added.m_app);
    return added;
}

command command::add_group(char const* name, phrase about, phrase notes) const {
    CLI::App& app = *m_app->add_subcommand(name);
    app.group(m_line->m_texts.get(phrase::commands_heading));
    m_line->set_up(app, about);
    app.footer(m_line->get(notes));
    app.require_subcommand(1);
    return {*m_line, app};
}

template <typename Target>
parameter command::argument(char const* name, Target& target, phrase description) const {
    return option(name, target, description, "");
}

template <typename Target>
parameter command::option(char const* name, Target& target, phrase description, char const* type) const {
    CLI::Option* const added = m_app->add_option(name, target, m_line->describe(description));
    if (*name == '-') added->allow_extra_args(false); // a list takes one value each time it is given
    if (std::vector<std::string> const words = choices_of(type); !words.empty()) {
        added->check([words, &texts = m_line->m_texts](std::string const& value) {
            return fault_of_choice(texts, words, value);
        });
    }
    if constexpr (std::is_integral_v<Target>) {
        added->check(
            [&texts = m_line->m_texts](std::string const& value) { return fault_of_number(texts, value); });
    }
    m_line->keep_whole(target);
    return parameter(*added->type_name(type));
}

parameter command::flag(char const* name, bool& target, phrase description) const {
    return parameter(*m_app->add_flag(name, target, m_line->describe(description))->disable_flag_override());
}

void command::trailing_arguments(char const* name, std::vector<std::string>& target, phrase description) const {
    m_line->m_traits[m_app].trailing = argument(name, target, description).m_option;
}

void command::needs_one_of(std::vector<parameter> const& flags) const {
    for (parameter const& flag : flags) {
        m_line->m_traits[m_app].needed.push_back(flag.m_option);
        for (parameter const& other : flags) {
            if (other.m_option != flag.m_option) flag.excludes(other);
        }
    }
}

template parameter command::argument(char const*, std::string&, phrase) const;
template parameter command::argument(char const*, std::optional<std::string>&, phrase) const;
template parameter command::argument(char const*, std::vector<std::string>&, phrase) const;
template parameter command::option(char const*, std::size_t&, phrase, char const*) const;
template parameter command::option(char const*, std::string&, phrase, char const*) const;
template parameter command::option(char const*, std::optional<std::string>&, phrase, char const*) const;
template parameter command::option(char const*, std::vector<std::string>&, phrase, char const*) const;

void command::runs(std::function<exit_status(session const&)> action) const {
    m_app->callback([line = m_line, app = m_app, action = std::move(action)] {
        line->m_chosen = app;
        line->m_action = action;
        if (!line->m_given.is_list_of_rules) return;
        line->m_action = [&traits = line->m_traits[app]](session const& session) {
            list_rules(session, traits.rules);
            return exit_good;
        };
    });
}

command const& command::with_report() const {
    m_line->m_traits[m_app].is_report = true;
    return *this;
}

command const& command::changes_input() const {
    m_line->m_traits[m_app].changes_input = true;
    return *this;
}

command const& command::with_rules(rule_table rules) const {
    m_line->m_traits[m_app].rules = rules;
    auto const list = [line = m_line, app = m_app] {
        line->m_given.is_list_of_rules = true;
        for (CLI::Option* const option : app->get_options()) option->required(false);
    };
    m_app->add_flag_callback("--list-rules", list, m_line->describe(phrase::list_rules_option))
        ->disable_flag_override();
    return *this;
}

//--------------------------------------------------------------------------------------------------

command_line::command_line(output& out, output& err, program_messages const& texts, std::size_t width)
    : m_out(out), m_err(err), m_texts(texts), m_width(width), m_app(std::make_unique<CLI::App>("", "zolt")) {
    set_headings();
    set_up(*m_app, phrase::program_about);
    m_app->footer(get(phrase::program_notes));
    m_app->require_subcommand(1);
    for (std::string* const each : {&m_given.result_file, &m_given.language, &m_given.reference}) keep_whole(*each);
    keep_whole(m_given.ignored);
}

command_line::~command_line() = default;

exit_status command_line::run(int argc, char** argv) {
    session const plain{m_out, m_err, m_texts, m_options};
    try {
        m_app->parse(marked(argc, argv));
    } catch (CLI::ParseError const& end) { // a wrong command line, or --help and --version
        std::ostringstream out;
        std::ostringstream err;
        int const status = m_app->exit(end, out, err);
        m_out.write(out.str());
        if (status == 0) return exit_good;
        plain.complain(describe_fault(end.what()) + '\n' + m_texts.get(phrase::see_help));
        return exit_failed;
    }
    for (auto const& each : m_unmark) each();
    take_common_options();
    if (auto const fault = fault_of_options()) {
        plain.complain(*fault);
        return exit_failed;
    }
    return m_options.result_file == "-" ? m_action(plain) : act(plain);
}

ustring8 command_line::get(phrase id) const { return wrap(m_texts.get(id), m_width); }
ustring8 command_line::describe(phrase id) const { return wrap(m_texts.get(id), m_width - help_column); }

// The parser's own words in the language of the program.
void command_line::set_headings() const {
    auto const formatter = std::make_shared<help_formatter>([this](CLI::App const& app, std::string const& name) {
        std::string const heading = m_texts.get(phrase::usage_heading) + ": ";
        manual_command described = manual(app, {});
        described.words = {name};
        auto const as_it_is = [](std::string const& text) { return text; };
        std::string text;
        for (std::string const& form :
             synopsis(described, {as_it_is, as_it_is, "[" + m_texts.get(phrase::options_place) + "]",
                                  m_texts.get(phrase::command_place)}))
            text += (text.empty() ? heading : std::string(heading.size(), ' ')) + form + "\n";
        return text;
    });
    m_app->formatter(formatter);
    formatter->label("Positionals", m_texts.get(phrase::arguments_heading));
    formatter->label("REQUIRED", m_texts.get(phrase::required_mark));
    formatter->label("Excludes", m_texts.get(phrase::excludes_mark));
    m_app->option_defaults()->group(m_texts.get(phrase::options_heading));
}

// In the language of the program.
ustring8 command_line::describe_fault(std::string const& words) const {
    std::vector<std::string> rest = m_app->remaining(true);
    if (!rest.empty()) unmark(rest.front());
    if (words == "A subcommand is required") {
        if (rest.empty()) return m_texts.get(phrase::command_required);
        if (rest.front().starts_with('-')) return describe_unexpected(rest.front());
        return m_texts.get(phrase::unknown_command, {{"command", rest.front()}});
    }
    auto const missing = between(words, "", " is required");
    if (!rest.empty() && (missing || words.starts_with("The following argument")))
        return describe_unexpected(rest.front());
    if (missing) return m_texts.get(phrase::argument_required, {{"argument", *missing}});
    for (fault_form const& form : fault_forms) {
        auto const found = words.find(form.begin);
        if (found == words.npos) continue;
        auto const other = between(words.substr(found), form.begin, form.end);
        if (other)
            return m_texts.get(form.text, {{"option", form.dashes + words.substr(0, found)}, {"other", *other}});
    }
    std::string text = words;
    std::erase(text, mark);
    return text;
}

ustring8 command_line::describe_unexpected(std::string const& argument) const {
    bool const is_option = argument.starts_with('-');
    return m_texts.get(is_option ? phrase::unexpected_argument : phrase::unexpected_word, {{"argument", argument}});
}

ustring8 command_line::describe_missing_value(char const* option, char const* type) const {
    return m_texts.get(phrase::value_required, {{"option", ustring8(option)}, {"other", ustring8(type)}});
}

void command_line::set_up(CLI::App& app, phrase about) const {
    app.description(describe(about));
    app.set_help_flag("-h,--help", describe(phrase::help_option))->disable_flag_override();
    app.set_version_flag("--version", std::string("zolt ") + zolt::version(), describe(phrase::version_option))
        ->disable_flag_override();
}

void command_line::add_common_options(CLI::App& app) {
    std::string const group = m_texts.get(phrase::common_options_heading);
    auto const add = [&](CLI::Option* option, char const* type = "") {
        option->group(group);
        *type ? option->type_name(type)->take_last() : option->disable_flag_override();
        return option;
    };
    auto const add_choice = [&](CLI::Option* option, char const* type) {
        add(option, type)->check([this, type](std::string const& value) {
            return fault_of_choice(m_texts, choices_of(type), value);
        });
    };
    add(app.add_flag("-q,--quiet", m_given.is_quiet, describe(phrase::quiet_option)));
    add(app.add_flag("-v,--verbose", m_given.is_verbose, describe(phrase::verbose_option)));
    add(app.add_option("-o,--output", m_given.result_file, describe(phrase::output_option)), "FILE");
    add_choice(app.add_option("--format", m_given.format, describe(phrase::format_option)), "text|json");
    add(app.add_flag("--json", m_given.is_json, describe(phrase::json_option)));
    add(app.add_option("--lang", m_given.language, describe(phrase::lang_option)), "LANGUAGE");
    add(app.add_option("--ref", m_given.reference, describe(phrase::reference_option)), "LANGUAGE");
    add_choice(app.add_option("--fail-on", m_given.fail_on, describe(phrase::fail_on_option)),
               "error|warning|note");
    add(app.add_option("--ignore", m_given.ignored, describe(phrase::ignore_option)), "RULE[:SCOPE]")
        ->take_all()
        ->allow_extra_args(false);
}

void command_line::take_common_options() {
    m_options.is_quiet = m_given.is_quiet;
    m_options.is_verbose = m_given.is_verbose;
    m_options.result_file = m_given.result_file;
    m_options.has_result_file = m_chosen->get_option("--output")->count() != 0;
    bool const has_format = m_chosen->get_option("--format")->count() != 0;
    bool const is_json = has_format ? m_given.format == "json" : m_given.is_json;
    m_options.format = is_json ? output_format::json : output_format::text;
    if (m_chosen->get_option("--lang")->count() != 0) m_options.language = usable_language(m_given.language);
    m_options.reference = usable_language(m_given.reference);
    m_options.has_reference = m_chosen->get_option("--ref")->count() != 0;
    m_options.fail_on = parse_severity(m_given.fail_on);
    for (std::string const& text : m_given.ignored) m_options.ignored.push_back(parse_ignored(text));
}

// What the chosen command cannot do.
std::optional<ustring8> command_line::fault_of_options() const {
    auto const found = m_traits.find(m_chosen);
    command_traits const traits = found == m_traits.end() ? command_traits() : found->second;
    auto const is_empty = [](std::string const& value) { return value.empty() || value.ends_with(':'); };
    if (m_options.language && m_given.language.empty()) return describe_missing_value("--lang", "LANGUAGE");
    if (m_given.reference.empty()) return describe_missing_value("--ref", "LANGUAGE");
    if (std::any_of(m_given.ignored.begin(), m_given.ignored.end(), is_empty))
        return describe_missing_value("--ignore", "RULE[:SCOPE]");
    if (m_options.result_file != "-") {
        if (!traits.changes_input && is_input(m_options.result_file))
            return m_texts.get(phrase::result_is_input, {{"path", m_options.result_file}});
    }
    std::string choice; // "--rng, --xsd", of which none was given
    for (CLI::Option const* const option : traits.needed) {
        if (option->count() != 0) {
            choice.clear();
            break;
        }
        choice += (choice.empty() ? "" : ", ") + option->get_name();
    }
    if (!choice.empty()) return m_texts.get(phrase::choice_required, {{"options", choice}});
    for (auto const& [name, scope] : m_options.ignored) {
        if (!traits.rules.empty() && !find_rule(traits.rules, name))
            return m_texts.get(phrase::unknown_rule, {{"rule", name}});
    }
    return std::nullopt;
}

// Whether an argument or another option names this file.
bool command_line::is_input(std::string const& path) const {
    for (CLI::Option const* const option : m_chosen->get_options()) {
        if (!names_input(*option)) continue;
        for (std::string value : option->results()) {
            unmark(value);
            if (is_same_file(path, value)) return true;
        }
    }
    return false;
}

// With -o: the file is written when the command has ended well, or with a report of what it found.
exit_status command_line::act(session const& session) const {
    result_file file(m_options.result_file);
    exit_status status = exit_failed;
    int error = 0;
    if (file.stream()) {
        output out(file.stream());
        status = m_action({out, m_err, m_texts, m_options});
        error = out.flush();
        auto const traits = m_traits.find(m_chosen);
        bool const is_report = traits != m_traits.end() && traits->second.is_report;
        if (status == exit_failed || (status == exit_findings && !is_report)) return status;
        if (status == exit_findings && error == 0 && std::ftell(file.stream()) == 0) return status; // no report
    }
    if (error == 0) error = file.commit();
    if (error == 0) return status;
    session.complain(
        m_texts.get(phrase::file_not_written, {{"path", m_options.result_file}, {"reason", std::strerror(error)}}));
    return exit_failed;
}

manual_command command_line::manual(CLI::App const& app, std::vector<std::string> words) const {
    words.push_back(app.get_name());
    manual_command result{words, app.get_description(), app.get_footer()};
    auto const found = m_traits.find(&app);
    command_traits const traits = found == m_traits.end() ? command_traits() : found->second;
    for (rule const& each : traits.rules)
        result.rules.push_back({std::string(each.name), std::string(severity_word(each.level)),
                                m_texts.get(each.about), std::string(each.example)});
    for (CLI::Option const* const option : app.get_options()) {
        manual_option entry = describe_option(*option);
        entry.is_common = option->get_group() == m_texts.get(phrase::common_options_heading);
        entry.is_trailing = option == traits.trailing;
        if (std::find(traits.needed.begin(), traits.needed.end(), option) != traits.needed.end())
            entry.is_required = true;
        if (entry.names.front() == "--ignore") {
            for (manual_rule const& each : result.rules) entry.choices.push_back(each.name);
        }
        (option->get_positional() ? result.arguments : result.options).push_back(std::move(entry));
    }
    for (CLI::App const* const each : app.get_subcommands({})) result.commands.push_back(manual(*each, words));
    return result;
}

} // namespace tools

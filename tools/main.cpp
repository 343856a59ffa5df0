// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The command line of `zolt`. Each command is a function that takes its options as a struct; here they
// are declared to the command-line parser, which nothing else includes.
#include "catalog_check.hpp"
#include "catalog_commands.hpp"
#include "config_commands.hpp"
#include "config_edit.hpp"
#include "inspect.hpp"
#include "languages.hpp"
#include "library.hpp"
#include "session.hpp"

#include <zolt/exceptions/exception.hpp>
#include <zolt/version.hpp>

#include <CLI/CLI.hpp>

#include <cerrno>
#include <cstring>
#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace tools;

class command_line {
public:
    explicit command_line(session const& session) : m_session(session) {
        set_up(m_app, phrase::program_about);
        m_app.require_subcommand(1);
        CLI::App& catalog = add(m_app, "catalog", phrase::catalog_about);
        catalog.require_subcommand(1);
        add_list(catalog);
        add_show(catalog);
        add_render(catalog);
        add_check(catalog);
        CLI::App& config = add(m_app, "config", phrase::config_about);
        config.require_subcommand(1);
        add_config_show(config);
        add_config_get(config);
        add_config_set(config);
        add_config_unset(config);
        add_config_check(config);
        add_inspect(m_app);
    }

    exit_status run(int argc, char** argv) {
        try {
            m_app.parse(argc, argv);
        } catch (CLI::ParseError const& end) { // a wrong command line, or --help and --version
            std::ostringstream out;
            std::ostringstream err;
            int const status = m_app.exit(end, out, err);
            m_session.out.write(out.str());
            if (status == 0) return exit_good;
            std::string const complaint = err.str();
            m_session.complain(complaint.substr(0, complaint.find_last_not_of('\n') + 1));
            return exit_failed;
        }
        return m_action();
    }

private:
    static constexpr std::size_t help_width = 79;
    static constexpr std::size_t help_column = 30; // where the parser lets descriptions start

    // The text above or below a command's options, and the text beside an option or a command's name.
    ustring8 get(phrase id) const { return wrap(m_session.texts.get(id), help_width); }
    ustring8 describe(phrase id) const { return wrap(m_session.texts.get(id), help_width - help_column); }

    void set_up(CLI::App& app, phrase about) {
        app.description(describe(about));
        app.set_help_flag("-h,--help", describe(phrase::help_option));
        app.set_version_flag("--version", std::string("zolt ") + zolt::version(), describe(phrase::version_option));
    }

    CLI::App& add(CLI::App& parent, char const* name, phrase about) {
        CLI::App& command = *parent.add_subcommand(name);
        set_up(command, about);
        return command;
    }

    void add_list(CLI::App& catalog) {
        CLI::App& command = add(catalog, "list", phrase::list_about);
        command.footer(get(phrase::list_notes));
        add_argument(command, "PATH", m_path, phrase::path_argument)->required();
        command.add_option("--lang", m_language, describe(phrase::list_lang_option))->type_name("LANGUAGE");
        command.add_flag("--json", m_json, describe(phrase::json_option));
        command.callback([this] {
            m_action = [this] {
                list_options options{m_path, {}, m_json};
                if (m_language) options.language = usable_language(*m_language);
                return list_catalogs(m_session, options);
            };
        });
    }

    void add_show(CLI::App& catalog) {
        CLI::App& command = add(catalog, "show", phrase::show_about);
        command.footer(get(phrase::show_notes));
        add_message_options(command);
        command.callback([this] {
            m_action = [this] {
                show_options options{m_path, language(), m_catalog, {}};
                if (m_message) options.message = *m_message;
                return show_messages(m_session, options);
            };
        });
    }

    void add_render(CLI::App& catalog) {
        CLI::App& command = add(catalog, "render", phrase::render_about);
        command.footer(get(phrase::render_notes));
        add_message_options(command)->required();
        add_argument(command, "ARGUMENT", m_list, phrase::values_argument);
        command.callback([this] {
            m_action = [this] {
                return render_message(m_session, {m_path, language(), m_catalog, *m_message, list_argument()});
            };
        });
    }

    void add_check(CLI::App& catalog) {
        CLI::App& command = add(catalog, "check", phrase::check_about);
        command.footer(get(phrase::check_notes));
        add_argument(command, "PATH", m_list, phrase::paths_argument)->required();
        command.add_flag("--json", m_json, describe(phrase::json_option));
        command.callback([this] {
            m_action = [this] { return check_catalogs(m_session, {list_argument(), m_json}); };
        });
    }

    void add_config_show(CLI::App& config) {
        CLI::App& command = add(config, "show", phrase::config_show_about);
        command.footer(get(phrase::config_show_notes));
        add_source_options(command);
        command.add_flag("--origin", m_origin, describe(phrase::origin_option));
        command.add_flag("--json", m_json, describe(phrase::json_option));
        command.callback([this] {
            m_action = [this] { return show_config(m_session, {sources(), m_origin, m_json}); };
        });
    }

    void add_config_get(CLI::App& config) {
        CLI::App& command = add(config, "get", phrase::config_get_about);
        command.footer(get(phrase::config_get_notes));
        add_argument(command, "KEY", m_key, phrase::key_argument)->required();
        add_source_options(command);
        command.add_option("--default", m_default, describe(phrase::default_option))->type_name("VALUE");
        command.callback([this] {
            m_action = [this] {
                config_get_options options{sources(), m_key, {}};
                if (m_default) options.default_value = *m_default;
                return get_config(m_session, options);
            };
        });
    }

    void add_config_set(CLI::App& config) {
        CLI::App& command = add(config, "set", phrase::config_set_about);
        command.footer(get(phrase::config_set_notes));
        add_argument(command, "FILE", m_path, phrase::config_file_argument)->required();
        add_argument(command, "KEY", m_key, phrase::key_argument)->required();
        add_argument(command, "VALUE", m_list, phrase::setting_values_argument)->required();
        command.add_flag("--force", m_force, describe(phrase::force_option));
        command.callback([this] {
            m_action = [this] { return set_config(m_session, {m_path, m_key, list_argument(), m_force}); };
        });
    }

    void add_config_unset(CLI::App& config) {
        CLI::App& command = add(config, "unset", phrase::config_unset_about);
        command.footer(get(phrase::config_unset_notes));
        add_argument(command, "FILE", m_path, phrase::config_file_argument)->required();
        add_argument(command, "KEY", m_key, phrase::key_argument)->required();
        command.add_flag("--force", m_force, describe(phrase::force_option));
        command.callback([this] {
            m_action = [this] { return unset_config(m_session, {m_path, m_key, m_force}); };
        });
    }

    void add_config_check(CLI::App& config) {
        CLI::App& command = add(config, "check", phrase::config_check_about);
        command.footer(get(phrase::config_check_notes));
        add_argument(command, "FILE", m_list, phrase::config_files_argument)->required();
        command.callback([this] { m_action = [this] { return check_config(m_session, list_argument()); }; });
    }

    void add_inspect(CLI::App& app) {
        CLI::App& command = add(app, "inspect", phrase::inspect_about);
        command.footer(get(phrase::inspect_notes));
        add_argument(command, "FILE", m_path, phrase::buffer_argument)->required();
        CLI::Option* const labeled = command.add_flag("--labeled", m_labeled, describe(phrase::labeled_option));
        CLI::Option* const text = command.add_flag("--text", m_text, describe(phrase::text_option));
        CLI::Option* const binary = command.add_option("--binary", m_pattern, describe(phrase::binary_option));
        text->excludes(labeled);
        binary->type_name("PATTERN")->excludes(labeled)->excludes(text);
        command.callback([this] {
            auto const form = m_labeled   ? inspect_options::labeled
                              : m_text    ? inspect_options::text
                              : m_pattern ? inspect_options::binary
                                          : inspect_options::automatic;
            m_action = [this, form] { return inspect_buffer(m_session, {m_path, form, m_pattern.value_or("")}); };
        });
    }

    // The command line of an application comes last, after its own mark.
    void add_source_options(CLI::App& command) {
        command.add_option("--file", m_file, describe(phrase::file_option))->type_name("FILE");
        command.add_flag("--env", m_environment, describe(phrase::env_option));
        add_argument(command, "ARGUMENT", m_list, phrase::application_argument);
    }

    // Returns the message's name, which is not required.
    CLI::Option* add_message_options(CLI::App& command) {
        add_argument(command, "PATH", m_path, phrase::path_argument)->required();
        add_argument(command, "CATALOG", m_catalog, phrase::catalog_argument)->required();
        command.add_option("--lang", m_language, describe(phrase::lang_option))->type_name("LANGUAGE");
        return add_argument(command, "MESSAGE", m_message, phrase::message_argument);
    }

    template <typename Target>
    CLI::Option* add_argument(CLI::App& command, char const* name, Target& target, phrase description) {
        return command.add_option(name, target, describe(description))->type_name("");
    }

    ustring8 language() const { return m_language ? usable_language(*m_language) : language_of_environment(); }
    std::vector<ustring8> list_argument() const { return {m_list.begin(), m_list.end()}; }
    source_options sources() const {
        source_options options{{}, m_environment, list_argument()};
        if (m_file) options.file = *m_file;
        return options;
    }

    session const& m_session;
    CLI::App m_app{"", "zolt"};
    std::function<exit_status()> m_action;

    // Where the options of whichever command was given end up.
    std::string m_path;
    std::string m_catalog;
    std::optional<std::string> m_message;
    std::optional<std::string> m_language;
    std::vector<std::string> m_list;
    std::string m_key;
    std::optional<std::string> m_pattern;
    std::optional<std::string> m_file;
    std::optional<std::string> m_default;
    bool m_environment = false;
    bool m_origin = false;
    bool m_force = false;
    bool m_labeled = false;
    bool m_text = false;
    bool m_json = false;
};

exit_status run(session const& session, int argc, char** argv) {
    try {
        return command_line(session).run(argc, argv);
    } catch (zolt::exceptions::exception const& fault) {
        session.complain(fault.get_message());
    } catch (std::exception const& fault) {
        session.complain(fault.what());
    }
    return exit_failed;
}

} // namespace

int main(int argc, char** argv) {
    output out(stdout);
    output err(stderr);
    program_messages const texts(language_of_environment());
    session const session{out, err, texts};
    exit_status const status = run(session, argc, argv);

    int const error = out.flush();
    if (error == 0) return status;
    // A reader that has gone away has seen enough; everything else is worth a word.
    if (error != EPIPE) session.complain(texts.get(phrase::write_failed, {{"reason", std::strerror(error)}}));
    return exit_failed;
}

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The command line of `zolt config`: one function for each command.
#include "config_commands.hpp"
#include "config_edit.hpp"
#include "config_rules.hpp"
#include "tools/program/command_line.hpp"

#include <optional>
#include <string>
#include <vector>

namespace tools {
namespace {

struct source_values {
    std::optional<std::string> file;
    bool environment = false;
    std::vector<std::string> arguments;

    source_options get() const {
        source_options options{{}, environment, to_texts(arguments)};
        if (file) options.file = *file;
        return options;
    }
};

// The command line of an application comes last, after its own mark.
void add_sources(command const& command, source_values& given) {
    command.option("--file", given.file, phrase::file_option, "FILE");
    command.flag("--env", given.environment, phrase::env_option);
    command.trailing_arguments("ARGUMENT", given.arguments, phrase::application_argument);
}

void add_show(command const& config) {
    struct values {
        source_values sources;
        bool has_origin = false;
    };
    command const show = config.add("show", phrase::config_show_about, phrase::config_show_notes);
    values& given = show.keep<values>();
    add_sources(show, given.sources);
    show.flag("--origin", given.has_origin, phrase::origin_option);
    show.runs([&given](session const& session) {
        return show_config(session, {given.sources.get(), given.has_origin});
    });
}

void add_list(command const& config) {
    struct values {
        source_values sources;
        bool has_origin = false;
        bool has_overridden = false;
        bool has_records = false;
        std::vector<std::string> masks;
    };
    command const list = config.add("list", phrase::config_list_about, phrase::config_list_notes);
    values& given = list.keep<values>();
    add_sources(list, given.sources);
    list.flag("--show-origin", given.has_origin, phrase::origin_option);
    list.flag("--all", given.has_overridden, phrase::all_option);
    list.flag("-z,--null", given.has_records, phrase::nul_option);
    list.option("--mask", given.masks, phrase::mask_option, "PATTERN");
    list.runs([&given](session const& session) {
        return list_config(session, {given.sources.get(), given.has_origin, given.has_overridden, given.has_records,
                                     to_texts(given.masks)});
    });
}

void add_get(command const& config) {
    struct values {
        std::string key;
        source_values sources;
        std::optional<std::string> default_value;
    };
    command const get = config.add("get", phrase::config_get_about, phrase::config_get_notes);
    values& given = get.keep<values>();
    get.argument("KEY", given.key, phrase::key_argument).required();
    add_sources(get, given.sources);
    get.option("--default", given.default_value, phrase::default_option, "VALUE");
    get.runs([&given](session const& session) {
        config_get_options options{given.sources.get(), given.key, {}};
        if (given.default_value) options.default_value = *given.default_value;
        return get_config(session, options);
    });
}

struct edit_values {
    std::string file;
    std::string key;
    std::vector<std::string> values;
};

void add_set(command const& config) {
    command const set = config.add("set", phrase::config_set_about, phrase::config_set_notes);
    edit_values& given = set.keep<edit_values>();
    set.argument("FILE", given.file, phrase::config_file_argument).required();
    set.argument("KEY", given.key, phrase::key_argument).required();
    set.argument("VALUE", given.values, phrase::setting_values_argument).required();
    set.runs([&given](session const& session) {
        return set_config(session, {given.file, given.key, to_texts(given.values)});
    });
}

void add_unset(command const& config) {
    command const unset = config.add("unset", phrase::config_unset_about, phrase::config_unset_notes);
    edit_values& given = unset.keep<edit_values>();
    unset.argument("FILE", given.file, phrase::config_file_argument).required();
    unset.argument("KEY", given.key, phrase::key_argument).required();
    unset.runs([&given](session const& session) { return unset_config(session, {given.file, given.key}); });
}

void add_check(command const& config) {
    struct values {
        std::vector<std::string> files;
    };
    command const check = config.add("check", phrase::config_check_about, phrase::config_check_notes)
                              .with_report()
                              .with_rules(config_rules());
    values& given = check.keep<values>();
    check.argument("FILE", given.files, phrase::config_files_argument).required();
    check.runs([&given](session const& session) { return check_config(session, to_texts(given.files)); });
}

} // namespace

void add_config_commands(command const& root) {
    command const config = root.add_group("config", phrase::config_about, phrase::config_notes);
    add_show(config);
    add_list(config);
    add_get(config);
    add_set(config);
    add_unset(config);
    add_check(config);
}

} // namespace tools

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The command line of `zolt catalog`: one function for each command.
#include "catalog_check.hpp"
#include "catalog_commands.hpp"
#include "catalog_missing.hpp"
#include "catalog_stats.hpp"
#include "check_rules.hpp"
#include "command_line.hpp"
#include "po_commands.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tools {
namespace {

void add_list(command const& catalog) {
    struct values {
        std::string path;
    };
    command const list = catalog.add("list", phrase::list_about, phrase::list_notes).with_json();
    values& given = list.keep<values>();
    list.argument("PATH", given.path, phrase::path_argument).required();
    list.runs([&given](session const& session) { return list_catalogs(session, given.path); });
}

struct message_values {
    std::string path;
    std::string catalog;
    std::optional<std::string> message;
    std::vector<std::string> arguments;
};

// Returns the message's name, which is not required.
parameter add_message_arguments(command const& command, message_values& given) {
    command.argument("PATH", given.path, phrase::path_argument).required();
    command.argument("CATALOG", given.catalog, phrase::catalog_argument).required();
    return command.argument("MESSAGE", given.message, phrase::message_argument);
}

void add_show(command const& catalog) {
    command const show = catalog.add("show", phrase::show_about, phrase::show_notes).with_json();
    message_values& given = show.keep<message_values>();
    add_message_arguments(show, given);
    show.runs([&given](session const& session) {
        show_options options{given.path, given.catalog, {}};
        if (given.message) options.message = *given.message;
        return show_messages(session, options);
    });
}

void add_render(command const& catalog) {
    command const render = catalog.add("render", phrase::render_about, phrase::render_notes).with_json();
    message_values& given = render.keep<message_values>();
    add_message_arguments(render, given).required();
    render.argument("ARGUMENT", given.arguments, phrase::values_argument);
    render.runs([&given](session const& session) {
        return render_message(session, {given.path, given.catalog, *given.message, to_texts(given.arguments)});
    });
}

void add_check(command const& catalog) {
    struct values {
        std::vector<std::string> paths;
    };
    command const check = catalog.add("check", phrase::check_about, phrase::check_notes)
                              .with_json()
                              .with_report()
                              .with_rules(catalog_rules());
    values& given = check.keep<values>();
    check.argument("PATH", given.paths, phrase::paths_argument).required();
    check.runs([&given](session const& session) { return check_catalogs(session, to_texts(given.paths)); });
}

void add_export_po(command const& catalog) {
    struct values {
        std::vector<std::string> paths;
        std::optional<std::string> directory;
    };
    command const export_command = catalog.add("export-po", phrase::export_po_about, phrase::export_po_notes);
    values& given = export_command.keep<values>();
    export_command.argument("PATH", given.paths, phrase::paths_argument).required();
    export_command.option("--dir", given.directory, phrase::po_directory_option, "DIRECTORY");
    export_command.runs([&given](session const& session) {
        po_export_options options{to_texts(given.paths), {}};
        if (given.directory) options.directory = *given.directory;
        return export_po(session, options);
    });
}

void add_import_po(command const& catalog) {
    struct values {
        std::vector<std::string> files;
        std::optional<std::string> catalog;
        bool use_fuzzy = false;
    };
    command const import_command = catalog.add("import-po", phrase::import_po_about, phrase::import_po_notes);
    values& given = import_command.keep<values>();
    import_command.argument("FILE", given.files, phrase::po_files_argument).required();
    import_command.option("--catalog", given.catalog, phrase::po_catalog_option, "NAME");
    import_command.flag("--use-fuzzy", given.use_fuzzy, phrase::use_fuzzy_option);
    import_command.runs([&given](session const& session) {
        po_import_options options{to_texts(given.files), {}, given.use_fuzzy};
        if (given.catalog) options.catalog = *given.catalog;
        return import_po(session, options);
    });
}

void add_missing(command const& catalog) {
    struct values {
        std::vector<std::string> paths;
        std::size_t allowed = 0;
    };
    command const missing =
        catalog.add("missing", phrase::missing_about, phrase::missing_notes).with_json().with_report();
    values& given = missing.keep<values>();
    missing.argument("PATH", given.paths, phrase::paths_argument).required();
    missing.option("--allow-missing", given.allowed, phrase::allow_missing_option, "N");
    missing.runs([&given](session const& session) {
        return find_missing(session, {to_texts(given.paths), given.allowed});
    });
}

void add_stats(command const& catalog) {
    struct values {
        std::vector<std::string> paths;
        bool is_gettext = false;
        std::optional<std::string> chart;
    };
    command const stats = catalog.add("stats", phrase::stats_about, phrase::stats_notes).with_json();
    values& given = stats.keep<values>();
    stats.argument("PATH", given.paths, phrase::paths_argument).required();
    stats.flag("--gettext", given.is_gettext, phrase::gettext_option);
    stats.option("--svg", given.chart, phrase::svg_option, "FILE");
    stats.runs([&given](session const& session) {
        stats_options options{to_texts(given.paths), given.is_gettext, {}};
        if (given.chart) options.chart = *given.chart;
        return count_translations(session, options);
    });
}

} // namespace

void add_catalog_commands(command const& root) {
    command const catalog = root.add_group("catalog", phrase::catalog_about);
    add_list(catalog);
    add_show(catalog);
    add_render(catalog);
    add_check(catalog);
    add_export_po(catalog);
    add_import_po(catalog);
    add_missing(catalog);
    add_stats(catalog);
}

} // namespace tools

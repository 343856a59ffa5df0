// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The command line of `zolt catalog`: one function for each command.
#include "catalog_check.hpp"
#include "catalog_commands.hpp"
#include "catalog_diff.hpp"
#include "catalog_format.hpp"
#include "catalog_missing.hpp"
#include "catalog_pseudo.hpp"
#include "catalog_schema.hpp"
#include "catalog_stats.hpp"
#include "check_rules.hpp"
#include "po_commands.hpp"
#include "po_rules.hpp"
#include "tools/program/command_line.hpp"

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
    command const list = catalog.add("list", phrase::list_about, phrase::list_notes);
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
    command const show = catalog.add("show", phrase::show_about, phrase::show_notes);
    message_values& given = show.keep<message_values>();
    add_message_arguments(show, given);
    show.runs([&given](session const& session) {
        show_options options{given.path, given.catalog, {}};
        if (given.message) options.message = *given.message;
        return show_messages(session, options);
    });
}

void add_render(command const& catalog) {
    command const render = catalog.add("render", phrase::render_about, phrase::render_notes);
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
    command const check =
        catalog.add("check", phrase::check_about, phrase::check_notes).with_report().with_rules(catalog_rules());
    values& given = check.keep<values>();
    check.argument("PATH", given.paths, phrase::paths_argument).required();
    check.runs([&given](session const& session) { return check_catalogs(session, to_texts(given.paths)); });
}

void add_export_po(command const& catalog) {
    struct values {
        std::vector<std::string> paths;
        std::optional<std::string> directory;
    };
    command const export_command = catalog.add("export-po", phrase::export_po_about, phrase::export_po_notes)
                                       .with_report()
                                       .with_rules(export_po_rules());
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
    command const import_command = catalog.add("import-po", phrase::import_po_about, phrase::import_po_notes)
                                       .with_report()
                                       .with_rules(import_po_rules());
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
    command const missing = catalog.add("missing", phrase::missing_about, phrase::missing_notes)
                                .with_report()
                                .with_rules(missing_rules());
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
    command const stats = catalog.add("stats", phrase::stats_about, phrase::stats_notes).with_report();
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

void add_diff(command const& catalog) {
    struct values {
        std::string old_path;
        std::string new_path;
    };
    command const diff = catalog.add("diff", phrase::diff_about, phrase::diff_notes).with_report();
    values& given = diff.keep<values>();
    diff.argument("OLD", given.old_path, phrase::old_argument).required();
    diff.argument("NEW", given.new_path, phrase::new_argument).required();
    diff.runs([&given](session const& session) { return diff_catalogs(session, given.old_path, given.new_path); });
}

void add_fmt(command const& catalog) {
    struct values {
        std::vector<std::string> paths;
        bool is_check = false;
    };
    command const fmt = catalog.add("fmt", phrase::fmt_about, phrase::fmt_notes).with_report().changes_input();
    values& given = fmt.keep<values>();
    fmt.argument("PATH", given.paths, phrase::paths_argument).required();
    fmt.flag("--check", given.is_check, phrase::fmt_check_option);
    fmt.runs([&given](session const& session) {
        return format_catalogs(session, {to_texts(given.paths), given.is_check});
    });
}

void add_pseudo(command const& catalog) {
    struct values {
        std::vector<std::string> paths;
        std::string style = "accent";
    };
    command const pseudo = catalog.add("pseudo", phrase::pseudo_about, phrase::pseudo_notes).with_report();
    values& given = pseudo.keep<values>();
    pseudo.argument("PATH", given.paths, phrase::paths_argument).required();
    pseudo.option("--style", given.style, phrase::style_option, "accent|bidi|xxx");
    pseudo.runs([&given](session const& session) {
        return make_pseudo_catalogs(session, {to_texts(given.paths), *parse_pseudo_style(given.style)});
    });
}

void add_schema(command const& catalog) {
    struct values {
        bool is_relax_ng = false;
        bool is_xml_schema = false; // the one or the other
    };
    command const schema = catalog.add("schema", phrase::schema_about, phrase::schema_notes);
    values& given = schema.keep<values>();
    schema.needs_one_of({schema.flag("--rng", given.is_relax_ng, phrase::rng_option),
                         schema.flag("--xsd", given.is_xml_schema, phrase::xsd_option)});
    schema.runs([&given](session const& session) {
        return print_schema(session, given.is_relax_ng ? schema_kind::relax_ng : schema_kind::xml_schema);
    });
}

} // namespace

void add_catalog_commands(command const& root) {
    command const catalog = root.add_group("catalog", phrase::catalog_about, phrase::catalog_notes);
    add_list(catalog);
    add_show(catalog);
    add_render(catalog);
    add_check(catalog);
    add_export_po(catalog);
    add_import_po(catalog);
    add_missing(catalog);
    add_stats(catalog);
    add_diff(catalog);
    add_fmt(catalog);
    add_pseudo(catalog);
    add_schema(catalog);
}

} // namespace tools

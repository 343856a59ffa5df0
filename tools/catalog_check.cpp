// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "catalog_check.hpp"

#include "catalog_sources.hpp"
#include "check_rules.hpp"
#include "findings.hpp"
#include "json.hpp"

#include <zolt/system/io.hpp>

#include <unistd.h>

namespace tools {
namespace {

// False, and a complaint, when there is nothing to check at the path.
bool add_path(session const& session, catalog_sources& sources, ustring8 const& path) {
    bool const is_directory = zolt::system::io::is_directory(path);
    bool const is_closed = is_directory && ::access(path.c_str(), R_OK | X_OK) != 0;
    phrase problem = zolt::system::io::exists(path) ? phrase::not_readable : phrase::no_path;
    if (!is_closed && (is_directory || zolt::system::io::is_file(path))) {
        if (sources.add(path) != 0) return true;
        problem = phrase::no_files;
    }
    session.complain(session.texts.get(problem, {{"path", path}}));
    return false;
}

// All files are read before the first rule runs, so that a fault in an included file is found there.
// False, and a complaint, when a file cannot be read.
bool run_rules(session const& session, catalog_sources& sources, rule_run& found) {
    progress_bar progress(session.err);
    while (sources.read_next()) progress.show(0, sources.total());
    bool is_complete = true;
    for (source_file const& file : sources.files()) {
        progress.show(file.index, sources.total());
        if (file.is_readable) {
            found.check(file);
            continue;
        }
        is_complete = false;
        session.complain(session.texts.get(phrase::not_readable, {{"path", file.path}}));
    }
    found.check_all();
    return is_complete;
}

void print_summary(session const& session, catalog_sources const& sources, finding_list& found) {
    auto const counted = [&](phrase one, std::size_t number) { return session.texts.counted(one, number); };
    session.out.line(session.texts.get(
        phrase::check_summary, {{"files", counted(phrase::files_one, sources.done())},
                                {"catalogs", counted(phrase::catalogs_one, sources.catalogs().size())},
                                {"languages", counted(phrase::languages_one, sources.languages().size())},
                                {"errors", counted(phrase::errors_one, found.count(severity::error))},
                                {"warnings", counted(phrase::warnings_one, found.count(severity::warning))}}));
}

void print_json(session const& session, catalog_sources const& sources, finding_list& found) {
    json_writer json;
    json.begin_object();
    json.member("files", sources.done());
    json.member("catalogs", sources.catalogs().size());
    json.begin_array("languages");
    for (auto const& [normalized, language] : sources.languages()) json.value(language);
    json.end_array();
    found.append_to(json);
    json.end_object();
    session.out.line(json.text());
}

} // namespace

exit_status check_catalogs(session const& session, std::vector<ustring8> const& paths) {
    catalog_sources sources;
    bool is_complete = true;
    for (ustring8 const& path : paths) {
        if (!add_path(session, sources, path)) is_complete = false;
    }
    if (sources.total() == 0) return exit_failed;

    finding_list found(session);
    rule_run run(sources, session.texts, found);
    if (!run_rules(session, sources, run)) is_complete = false;
    if (session.is_json()) {
        print_json(session, sources, found);
    } else {
        found.print();
        if (!session.options.is_quiet) print_summary(session, sources, found);
    }
    return is_complete ? found.status() : exit_failed;
}

} // namespace tools

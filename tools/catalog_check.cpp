// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "catalog_check.hpp"

#include "catalog_sources.hpp"
#include "check_rules.hpp"
#include "json.hpp"

#include <zolt/strings/string_utility.hpp>
#include <zolt/system/io.hpp>

#include <unistd.h>

#include <algorithm>
#include <string>

namespace tools {
namespace {

struct report {
    catalog_sources const& sources;
    std::vector<finding> findings;

    std::size_t count(severity level) const {
        return static_cast<std::size_t>(std::count_if(findings.begin(), findings.end(),
                                                      [level](finding const& f) { return f.level == level; }));
    }
};

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
bool run_rules(session const& session, catalog_sources& sources, findings& found) {
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

// "file:line: error: text". A library's text has several lines: what happened, what was met, and the
// places around it. The first two become one line, so that it says what is wrong; the others follow
// indented.
void print_finding(session const& session, catalog_sources const& sources, finding const& found) {
    ustring8 const place = printable(sources.files()[found.file].path) + ":" + std::to_string(found.line) + ":";
    colour const level_colour = found.level == severity::error ? colour::error : colour::warning;
    std::vector<ustring8> const lines = zolt::strings::split_string(found.text, "\n");
    ustring8 line = session.out.paint(colour::place, place);
    line.append(" ").append(session.out.paint(level_colour, std::string(severity_word(found.level)) + ":"));
    for (std::size_t i = 0; i != lines.size(); ++i) {
        if (i >= 2) {
            session.out.line(line);
            line = "   ";
        } else if (i == 1) {
            line += ':';
        }
        std::string_view const text = lines[i];
        line.append(" ").append(printable(text.substr(std::min(text.size(), text.find_first_not_of(' ')))));
    }
    session.out.line(line);
}

void print_text(session const& session, report const& result) {
    for (finding const& found : result.findings) print_finding(session, result.sources, found);
    auto const counted = [&](phrase one, std::size_t number) { return session.texts.counted(one, number); };
    session.out.line(session.texts.get(
        phrase::check_summary, {{"files", counted(phrase::files_one, result.sources.done())},
                                {"catalogs", counted(phrase::catalogs_one, result.sources.catalogs().size())},
                                {"languages", counted(phrase::languages_one, result.sources.languages().size())},
                                {"errors", counted(phrase::errors_one, result.count(severity::error))},
                                {"warnings", counted(phrase::warnings_one, result.count(severity::warning))}}));
}

void print_json(session const& session, report const& result) {
    json_writer json;
    json.begin_object();
    json.member("files", result.sources.done());
    json.member("catalogs", result.sources.catalogs().size());
    json.begin_array("languages");
    for (auto const& [normalized, language] : result.sources.languages()) json.value(language);
    json.end_array();
    json.member("errors", result.count(severity::error));
    json.member("warnings", result.count(severity::warning));
    json.begin_array("findings");
    for (finding const& found : result.findings) {
        json.begin_object();
        json.member("file", result.sources.files()[found.file].path);
        json.member("line", static_cast<std::size_t>(found.line));
        json.member("severity", severity_word(found.level));
        json.member("rule", found.rule);
        json.member("text", found.text);
        json.end_object();
    }
    json.end_array();
    json.end_object();
    session.out.line(json.text());
}

} // namespace

exit_status check_catalogs(session const& session, check_options const& options) {
    catalog_sources sources;
    bool is_complete = true;
    for (ustring8 const& path : options.paths) {
        if (!add_path(session, sources, path)) is_complete = false;
    }
    if (sources.total() == 0) return exit_failed;

    findings found(sources, session.texts);
    if (!run_rules(session, sources, found)) is_complete = false;
    report const result{sources, found.sorted()};
    options.json ? print_json(session, result) : print_text(session, result);
    if (!is_complete) return exit_failed;
    return result.findings.empty() ? exit_good : exit_findings;
}

} // namespace tools

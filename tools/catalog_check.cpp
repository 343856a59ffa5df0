// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Each file is read once and kept; only what is not in the plain form of catalog files is given to the library
// as well, whose own words then say what is wrong.
#include "catalog_check.hpp"

#include "catalog_paths.hpp"
#include "catalog_sources.hpp"
#include "check_file_rules.hpp"
#include "check_rules.hpp"
#include "check_tree.hpp"
#include "check_tree_rules.hpp"
#include "fault_location.hpp"
#include "findings.hpp"
#include "json.hpp"

#include <zolt/i18n/message_catalogs.hpp>
#include <zolt/system/io.hpp>

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

namespace tools {
namespace {

using zolt::i18n::message_catalogs;

// So that a file with a great many languages does not take as many loads.
constexpr std::size_t most_loads = 100;

class check_run {
public:
    explicit check_run(session const& session)
        : m_session(session),
          m_found(session),
          m_report(session, m_tree, m_found),
          m_wanted(session.options.language ? normalized_language(*session.options.language) : ustring8()),
          m_rules(m_tree, m_report, m_wanted) {}

    bool add_path(ustring8 const& path);
    exit_status run();
    bool has_files() const { return !m_tree.files.empty(); }

private:
    void read_files();
    void load(std::uint32_t file, bool has_limits);
    void add_fault(fault_location const& at, ustring8 const& text);
    std::vector<ustring8> languages() const;
    std::size_t count_catalogs() const;
    void print_summary();
    void print_json();

    session const& m_session;
    check_tree m_tree;
    finding_list m_found;
    rule_report m_report;
    ustring8 m_wanted;
    file_rules m_rules;
    bool m_is_complete = true;
};

// False, and a complaint, when there is nothing to check at the path.
bool check_run::add_path(ustring8 const& path) {
    bool const is_directory = zolt::system::io::is_directory(path);
    bool const is_closed = is_directory && ::access(path.c_str(), R_OK | X_OK) != 0;
    phrase problem = zolt::system::io::exists(path) ? phrase::not_readable : phrase::no_path;
    if (!is_closed && (is_directory || zolt::system::io::is_file(path))) {
        std::vector<ustring8> const files = catalog_files(path);
        for (ustring8 const& file : files) m_rules.plan(file);
        if (!files.empty()) return true;
        problem = phrase::no_files;
    }
    m_session.complain(m_session.texts.get(problem, {{"path", path}}));
    return m_is_complete = false;
}

exit_status check_run::run() {
    read_files();
    tree_rules rules(m_tree, m_report, normalized_language(m_session.options.reference), m_wanted);
    rules.check_messages();
    for (std::uint32_t const file : rules.check_includes()) load(file, true);
    for (std::uint32_t i = 0; i != m_tree.files.size(); ++i) {
        if (m_tree.files[i].is_readable && m_tree.files[i].result != scan_result::plain) load(i, false);
    }
    if (m_session.is_json()) {
        print_json();
    } else {
        m_found.print();
        if (!m_session.options.is_quiet) print_summary();
    }
    return m_is_complete ? m_found.status() : exit_failed;
}

void check_run::read_files() {
    progress_bar progress(m_session.err);
    for (std::uint32_t i = 0; i != m_tree.files.size(); ++i) {
        checked_file const& file = m_tree.files[i];
        if (!m_session.options.is_quiet) progress.show(i, m_tree.files.size());
        m_session.tell(file.path);
        m_rules.check(i);
        if (file.is_readable) continue;
        m_is_complete = false;
        m_session.complain(m_session.texts.get(phrase::not_readable, {{"path", file.path}}));
    }
}

// Whatever the library itself reports, under each language of the file.
void check_run::load(std::uint32_t index, bool has_limits) {
    checked_file const& file = m_tree.files[index];
    catalog_sources sources;
    sources.add(file.path);
    while (sources.read_next()) {
    }
    source_file const& loaded = sources.files().front();
    std::map<ustring8, ustring8> languages = loaded.languages();
    if (languages.empty()) languages.emplace("en", "en");
    std::size_t loads = 0;
    for (auto const& [normalized, language] : languages) {
        if (loads++ == (loaded.is_well_formed ? most_loads : 1)) break;
        message_catalogs catalogs;
        auto const result = catalogs.load_file(file.path, language);
        bool const is_of_include = result.code() == message_catalogs::file_not_found ||
                                   result.code() == message_catalogs::unexpected_error;
        if (result.code() == message_catalogs::no_error || (is_of_include && !has_limits)) continue;
        add_fault(locate_fault(result.message(), language, loaded, sources), result.message());
    }
}

// The library's text tells the line at best; the column is that of the first tag in it.
void check_run::add_fault(fault_location const& at, ustring8 const& text) {
    std::uint32_t const index = m_rules.plan(at.file->path);
    checked_file& file = m_tree.files[index];
    place_of(file, 0);
    std::size_t const line = std::min<std::size_t>(at.line, file.line_starts.size());
    std::size_t const start = file.line_starts[line - 1];
    std::size_t const end = std::min(file.text.find('\n', start), file.text.size());
    std::size_t const tag = std::min(file.text.find('<', start), file.text.size());
    m_report.add(rule_id::load, index, tag < end ? tag : start, 0, {}, text);
}

//--------------------------------------------------------------------------------------------------

std::vector<ustring8> check_run::languages() const {
    std::map<ustring8, ustring8> sorted;
    for (checked_catalog const& catalog : m_tree.catalogs) {
        for (auto const& [language, start] : catalog.languages)
            sorted.emplace(m_tree.languages[language].id, m_tree.languages[language].spelling);
    }
    std::vector<ustring8> result;
    for (auto const& [id, spelling] : sorted) result.push_back(spelling);
    return result;
}

std::size_t check_run::count_catalogs() const {
    return static_cast<std::size_t>(
        std::count_if(m_tree.catalogs.begin(), m_tree.catalogs.end(),
                      [](checked_catalog const& catalog) { return !catalog.languages.empty(); }));
}

void check_run::print_summary() {
    auto const counted = [&](phrase one, std::size_t number) { return m_session.texts.counted(one, number); };
    m_session.out.line(m_session.texts.get(
        phrase::check_summary, {{"files", counted(phrase::files_one, m_tree.files.size())},
                                {"catalogs", counted(phrase::catalogs_one, count_catalogs())},
                                {"languages", counted(phrase::languages_one, languages().size())},
                                {"errors", counted(phrase::errors_one, m_found.count(severity::error))},
                                {"warnings", counted(phrase::warnings_one, m_found.count(severity::warning))},
                                {"notes", counted(phrase::notes_one, m_found.count(severity::note))}}));
}

void check_run::print_json() {
    json_writer json;
    json.begin_object();
    json.member("files", m_tree.files.size());
    json.member("catalogs", count_catalogs());
    json.begin_array("languages");
    for (ustring8 const& language : languages()) json.value(language);
    json.end_array();
    m_found.append_to(json);
    json.end_object();
    m_session.out.line(json.text());
}

} // namespace

exit_status check_catalogs(session const& session, std::vector<ustring8> const& paths) {
    check_run run(session);
    for (ustring8 const& path : paths) run.add_path(path);
    return run.has_files() ? run.run() : exit_failed;
}

} // namespace tools

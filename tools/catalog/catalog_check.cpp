// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "catalog_check.hpp"

#include "check_file_rules.hpp"
#include "check_input.hpp"
#include "check_rules.hpp"
#include "check_tree.hpp"
#include "check_tree_rules.hpp"
#include "tools/program/findings.hpp"
#include "tools/program/json.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tools {
namespace {

class check_run {
public:
    explicit check_run(session const& session)
        : m_session(session),
          m_found(session),
          m_report(session, m_tree, m_found),
          m_wanted(session.options.language ? normalized_language(*session.options.language) : ustring8()),
          m_rules(m_tree, m_report, m_wanted),
          m_input(session, m_tree, m_report, m_rules) {}

    exit_status run(std::vector<ustring8> const& paths);

private:
    bool tell_lack_of_reference() const;
    std::size_t count_catalogs() const;
    void print_summary();
    void print_json();

    session const& m_session;
    check_tree m_tree;
    finding_list m_found;
    rule_report m_report;
    ustring8 m_wanted;
    file_rules m_rules;
    check_input m_input;
};

exit_status check_run::run(std::vector<ustring8> const& paths) {
    m_input.add(paths);
    if (!m_input.has_files()) return exit_failed;
    m_input.read();
    tree_rules rules(m_tree, m_report, normalized_language(m_session.options.reference), m_wanted);
    rules.check_messages();
    bool const has_reference = rules.has_reference() || tell_lack_of_reference();
    m_input.load(rules.check_includes());
    if (m_session.is_json()) {
        print_json();
    } else {
        m_found.print();
        if (!m_session.options.is_quiet) print_summary();
    }
    return m_input.is_complete() && has_reference ? m_found.status() : exit_failed;
}

// False when the user has asked for one.
bool check_run::tell_lack_of_reference() const {
    common_options const& options = m_session.options;
    std::size_t const languages = languages_of(m_tree).size();
    if (languages == 0 || (languages == 1 && !options.has_reference)) return true;
    if (options.has_reference || !options.is_quiet)
        m_session.complain(m_session.texts.get(options.has_reference ? phrase::no_reference : phrase::no_comparison,
                                               {{"language", options.reference}}));
    return !options.has_reference;
}

//--------------------------------------------------------------------------------------------------

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
                                {"languages", counted(phrase::languages_one, languages_of(m_tree).size())},
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
    for (std::uint32_t const language : languages_of(m_tree)) json.value(m_tree.languages[language].spelling);
    json.end_array();
    m_found.append_to(json);
    json.end_object();
    m_session.out.line(json.text());
}

} // namespace

exit_status check_catalogs(session const& session, std::vector<ustring8> const& paths) {
    return check_run(session).run(paths);
}

} // namespace tools

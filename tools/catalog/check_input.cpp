// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "check_input.hpp"

#include "catalog_paths.hpp"
#include "catalog_sources.hpp"
#include "fault_location.hpp"
#include "tools/program/files.hpp"

#include <zolt/i18n/message_catalogs.hpp>
#include <zolt/system/io.hpp>

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <utility>

namespace tools {
namespace {

using zolt::i18n::message_catalogs;

// So that a file with a great many languages does not take as many loads.
constexpr std::size_t most_loads = 100;

} // namespace

void check_input::add(std::vector<ustring8> const& paths) {
    for (ustring8 const& path : paths) add(path);
}

void check_input::add(ustring8 const& path) {
    bool const is_directory = zolt::system::io::is_directory(path);
    bool const is_closed = is_directory && ::access(path.c_str(), R_OK | X_OK) != 0;
    phrase problem = zolt::system::io::exists(path) ? phrase::not_readable : phrase::no_path;
    if (!is_closed && (is_directory || zolt::system::io::is_file(path))) {
        std::vector<ustring8> const files = catalog_files(path);
        std::vector<std::uint32_t> planned;
        planned.reserve(files.size());
        for (ustring8 const& file : files) planned.push_back(m_rules.plan(file));
        if (is_directory) m_tree.directories.push_back({path, std::move(planned)});
        if (!files.empty()) return;
        problem = phrase::no_files;
    }
    m_session.complain(m_session.texts.get(problem, why_unreadable(path)));
    m_is_complete = false;
}

void check_input::read() {
    progress_bar progress(m_session.err);
    for (std::uint32_t i = 0; i != m_tree.files.size(); ++i) {
        checked_file const& file = m_tree.files[i];
        if (!m_session.options.is_quiet) progress.show(i, m_tree.files.size());
        m_session.tell(file.path);
        m_rules.check(i);
        if (is_target(m_session, file.path)) m_is_complete = false;
        if (file.is_readable) continue;
        m_is_complete = false;
        m_session.complain(m_session.texts.get(phrase::not_readable, why_unreadable(file.path)));
    }
}

void check_input::load(std::vector<std::uint32_t> const& chains) {
    for (std::uint32_t const file : chains) load(file, true);
    for (std::uint32_t i = 0; i != m_tree.files.size(); ++i) {
        if (m_tree.files[i].is_readable && m_tree.files[i].result != scan_result::plain) load(i, false);
    }
}

// Whatever the library itself reports, under each language of the file.
void check_input::load(std::uint32_t index, bool has_limits) {
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
        add_fault(locate_fault(result.message(), language, loaded, sources),
                  text_of_fault(m_session, result.message()));
    }
}

void check_input::add_fault(fault_location const& at, ustring8 const& text) {
    std::uint32_t const index = m_rules.plan(at.file->path);
    checked_file& file = m_tree.files[index];
    place_of(file, 0);
    std::size_t const line = std::min<std::size_t>(at.line, file.line_starts.size());
    std::size_t const start = file.line_starts[line - 1];
    m_report.add(rule_id::load, index, place_in_line(file.text, start), 0, {}, text);
}

} // namespace tools

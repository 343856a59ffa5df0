// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The file that is loaded last wins, so files are gone through from the last to the first and a message that is
// there stays. Then no file has to be looked at twice, however many others include it.
#include "catalog_tree.hpp"

#include "catalog_paths.hpp"
#include "fault_location.hpp"
#include "tools/program/files.hpp"
#include "tools/program/languages.hpp"

#include <zolt/i18n/message_catalogs.hpp>
#include <zolt/system/io.hpp>
#include <zolt/types/nil.hpp>

#include <algorithm>
#include <set>
#include <utility>

namespace tools {
namespace {

using zolt::i18n::message_catalogs;
using zolt::i18n::message_item;
using zolt::i18n::message_t;

constexpr char fault_rule[] = "load";

// So that a file with a great many languages does not take as many loads.
constexpr std::size_t most_loads = 100;

// A message that the reader of messages takes.
bool is_read(source_file const& file, element const& element) {
    if (element.name != "msg" || file.parent_name(element) != "catalog") return false;
    ustring8 const* const language = file.elements[element.parent].attribute("lang");
    return language && !language->empty();
}

std::size_t column_in(ustring8 const& path, unsigned line) {
    ustring8 text;
    if (!load(path, text)) return 1;
    std::size_t start = 0;
    for (; line > 1; --line) start = std::min(text.find('\n', start), text.size() - 1) + 1;
    return place_in_line(text, start) - start + 1;
}

message_key key_of(catalog_message const& entry) {
    return {normalized_language(entry.message._orginal_locale()), entry.catalog, entry.message.name()};
}

} // namespace

std::optional<std::vector<ustring8>> files_to_read(session const& session, std::vector<ustring8> const& paths) {
    std::vector<ustring8> files;
    std::set<ustring8> known;
    bool is_complete = true;
    for (ustring8 const& path : paths) {
        bool const is_there = zolt::system::io::is_directory(path) || zolt::system::io::is_file(path);
        std::vector<ustring8> const found = is_there ? catalog_files(path) : std::vector<ustring8>();
        for (ustring8 const& file : found) {
            if (known.insert(file).second) files.push_back(file);
        }
        if (!found.empty()) continue;
        session.complain(session.texts.get(is_there ? phrase::no_files : phrase::no_path, {{"path", path}}));
        is_complete = false;
    }
    return is_complete ? std::optional(std::move(files)) : std::nullopt;
}

std::vector<ustring8> languages_of(source_file const& file) {
    std::vector<ustring8> result;
    for (auto const& [normalized, language] : file.languages()) result.push_back(language);
    if (result.empty()) result.emplace_back("en");
    return result;
}

bool has_same_content(message_t const& left, message_t const& right) {
    return left.meta() == right.meta() && std::equal(left.begin(), left.end(), right.begin(), right.end(),
                                                     [](message_item const& a, message_item const& b) {
                                                         return a.type() == b.type() && a.data() == b.data();
                                                     });
}

bool add_load_fault(session const& session, finding_list& found, source_file const& file,
                    std::vector<ustring8> const& languages) {
    for (std::size_t i = 0; i != std::min(languages.size(), most_loads); ++i) {
        message_catalogs catalogs;
        auto const result = catalogs.load_file(file.path, languages[i]);
        if (result.code() == message_catalogs::no_error) continue;
        catalog_sources sources; // with what it includes, where the fault may be
        sources.add(file.path);
        while (sources.read_next()) {
        }
        fault_location const at = locate_fault(result.message(), languages[i], sources.files().front(), sources);
        found.add({at.file->path, at.line, column_in(at.file->path, at.line), severity::error, fault_rule,
                   text_of_fault(session, result.message())});
        return true;
    }
    return false;
}

void add_element_fault(session const& session, finding_list& found, source_file const& file, unsigned line) {
    if (!add_load_fault(session, found, file, languages_of(file)))
        found.add({file.path, line, column_in(file.path, line), severity::error, fault_rule,
                   session.texts.get(phrase::po_faulty_catalog)});
}

bool catalog_tree::read(std::vector<ustring8> const& paths, ustring8 const& left_out) {
    std::optional<std::vector<ustring8>> files = files_to_read(m_session, paths);
    if (!files) return m_is_complete = false;
    if (!left_out.empty()) {
        ustring8 const left = real_path(left_out);
        std::erase_if(*files, [&left](ustring8 const& file) { return real_path(file) == left; });
    }
    for (ustring8 const& file : *files) m_sources.add(file);
    std::size_t const loaded = m_sources.total();
    progress_bar progress(m_session.err);
    while (source_file const* const file = m_sources.read_next()) {
        if (!m_session.options.is_quiet) progress.show(m_sources.done(), m_sources.total());
        read_file(*file, m_sources.done() > loaded);
    }
    m_own.print();
    if (!m_is_complete || m_is_refused) return false;
    m_is_served.resize(m_sources.done());
    for (std::size_t i = loaded; i-- != 0;) serve(m_sources.files()[i]);
    return true;
}

void catalog_tree::read_file(source_file const& file, bool is_included) {
    m_session.tell(file.path);
    m_first.push_back(m_messages.size());
    if (is_target(m_session, file.path)) m_is_complete = false;
    if (!file.is_readable) {
        m_session.complain(m_session.texts.get(phrase::not_readable, why_unreadable(file.path)));
        m_is_complete = false;
        return;
    }
    unsigned const fault = file.is_well_formed ? read_messages(file, m_messages) : file.fault_line;
    if (fault != 0) add_element_fault(m_session, m_found, file, fault);
    // A file that is included is loaded with the one that includes it.
    if (fault != 0 || (!is_included && add_load_fault(m_session, m_found, file, {"en"}))) m_is_refused = true;
}

bool catalog_tree::is_served(catalog_message const& message) const {
    auto const found = m_served.find(key_of(message));
    return found != m_served.end() && found->second == &message;
}

// The messages of a file and its includes in their order, without recursion.
void catalog_tree::serve(source_file const& start) {
    struct position {
        source_file const* file;
        std::size_t element;
        std::size_t message;
    };
    std::vector<position> open;
    auto const enter = [&](source_file const* file) {
        if (!file || m_is_served[file->index]) return;
        m_is_served[file->index] = true;
        open.push_back({file, 0, m_first[file->index]});
    };
    enter(&start);
    while (!open.empty()) {
        position& at = open.back();
        if (at.element == at.file->elements.size()) {
            open.pop_back();
            continue;
        }
        element const& next = at.file->elements[at.element++];
        if (is_read(*at.file, next)) {
            if (at.message == m_messages.size()) return; // the file has changed between two looks at it
            catalog_message const& entry = m_messages[at.message++];
            // One that is empty, its name as well, gives way to the next one.
            if (entry.message != zolt::types::nil) m_served.try_emplace(key_of(entry), &entry);
        } else if (std::optional<ustring8> const path = at.file->included_path(next)) {
            enter(m_sources.find(*path));
        }
    }
}

} // namespace tools

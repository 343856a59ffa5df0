// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// catalog_tree: what the library would serve of catalog files and directories, in every language at once.
//
//     catalog_tree tree(session);
//     if (!tree.read({"catalogs"})) return exit_failed;    // what is wrong has been said
//     for (auto const& [key, message] : tree.served()) ...
//
// Each file is read once. Where several files hold a message it is the library's that counts: within a file and
// its includes the first one, of several files the last. Files of a directory come in the order of their names.
#pragma once

#include "catalog_sources.hpp"
#include "catalog_texts.hpp"
#include "tools/program/findings.hpp"
#include "tools/program/library.hpp"
#include "tools/program/session.hpp"

#include <compare>
#include <cstddef>
#include <map>
#include <optional>
#include <vector>

namespace tools {

/// The files to read for the paths of a command line, each once and those of a directory in the order of their
/// names. Nothing, and a complaint, where there are none.
std::optional<std::vector<ustring8>> files_to_read(session const& session, std::vector<ustring8> const& paths);

/// The languages of a file's catalogs, of which there is always one: English if there is no other.
std::vector<ustring8> languages_of(source_file const& file);

/// True when both show the same, whatever they are called: items and meta text.
bool has_same_content(zolt::i18n::message_t const& left, zolt::i18n::message_t const& right);

/// Adds what the library says of a file that it refuses: its fault in one of the languages, with its line. False
/// when it refuses none. More than a few languages are not tried.
bool add_load_fault(session const& session, finding_list& found, source_file const& file,
                    std::vector<ustring8> const& languages);
/// The same for a file whose elements have a fault in this line.
void add_element_fault(session const& session, finding_list& found, source_file const& file, unsigned line);

/// In the order in which messages are listed.
struct message_key {
    ustring8 language; ///< normalized
    ustring8 catalog;
    ustring8 message;

    friend bool operator==(message_key const&, message_key const&) = default;
    friend auto operator<=>(message_key const&, message_key const&) = default;
};

class catalog_tree {
public:
    explicit catalog_tree(session const& session) : m_session(session), m_own(session), m_found(m_own) {}
    /// Findings go there, and are printed by whom it belongs to.
    catalog_tree(session const& session, finding_list& found)
        : m_session(session), m_own(session), m_found(found) {}
    catalog_tree(catalog_tree const&) = delete;
    catalog_tree& operator=(catalog_tree const&) = delete;

    /// Once. False, with findings and complaints printed, when something cannot be read or loaded, or is the file
    /// of -o. One file may be left out of what directories have.
    bool read(std::vector<ustring8> const& paths, ustring8 const& left_out = {});
    /// After that: everything could be read, but the library refuses something.
    bool is_refused() const { return m_is_refused && m_is_complete; }

    std::map<message_key, catalog_message const*> const& served() const { return m_served; }
    /// All, also those that are not served, file by file in their order.
    std::vector<catalog_message> const& messages() const { return m_messages; }
    /// False for a message that gives way to another one.
    bool is_served(catalog_message const& message) const;
    ustring8 const& path_of(catalog_message const& message) const { return m_sources.files()[message.file].path; }

private:
    void read_file(source_file const& file, bool is_included);
    void serve(source_file const& start);

    session const& m_session;
    finding_list m_own;
    finding_list& m_found;
    catalog_sources m_sources;
    std::vector<catalog_message> m_messages; // of all files in turn, each in its order
    std::vector<std::size_t> m_first;        // of each file
    std::vector<bool> m_is_served;           // files
    std::map<message_key, catalog_message const*> m_served;
    bool m_is_complete = true; // all could be read
    bool m_is_refused = false; // by the library, in part at least
};

} // namespace tools

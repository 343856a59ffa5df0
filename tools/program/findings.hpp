// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// finding_list: what a command has found in files, for people, editors and other programs.
//
//     finding_list found(session);
//     found.add({"app.xmc", 3, 7, severity::warning, "edge-space", "text"});
//     found.print();            // app.xmc:3:7: warning: text [edge-space]
//     return found.status();
//
// The options --ignore and --fail-on work in here.
#pragma once

#include "json.hpp"
#include "library.hpp"
#include "session.hpp"

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace tools {

/// The word in findings; the same in every language, so that other programs can read them.
std::string_view severity_word(severity level);

struct finding {
    ustring8 file;
    std::size_t line;   ///< from 1
    std::size_t column; ///< from 1, in bytes
    severity level;
    std::string_view rule; ///< its id, which lives as long as the program
    ustring8 text;         ///< of the library also several lines: what is wrong, what was met, and where
    ustring8 scope{};      ///< "catalog/message", by which --ignore may silence it
    /// Further members of its JSON form; the names live as long as the program.
    std::vector<std::pair<std::string_view, ustring8>> details{};
};

class finding_list {
public:
    explicit finding_list(session const& session) : m_session(session) {}

    /// Keeps the finding unless it is to be ignored.
    void add(finding found);
    bool is_ignored(finding const& found) const;

    /// In the order of files, lines and columns, each only once.
    std::vector<finding> const& sorted();
    std::size_t count(severity level);
    /// exit_findings when one is as bad as --fail-on says or worse, else exit_good.
    exit_status status();

    /// On standard error, one in a line; further lines of a library's text follow indented.
    void print();
    /// Where there is no result: so, or as an object of JSON in place of it.
    void print_alone();
    /// As members "errors", "warnings", "notes" and "findings" of the object that is open.
    void append_to(json_writer& json);

private:
    session const& m_session;
    std::vector<finding> m_findings;
    bool m_is_sorted = true;
};

} // namespace tools

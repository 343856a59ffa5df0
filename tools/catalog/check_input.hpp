// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// check_input: the files of a run of `zolt catalog check`, `missing` or `stats`. Each file is read once and kept;
// only what is not in the plain form of catalog files is given to the library as well, whose own words then say
// what is wrong.
#pragma once

#include "check_file_rules.hpp"
#include "check_tree.hpp"
#include "tools/program/library.hpp"
#include "tools/program/session.hpp"

#include <cstdint>
#include <vector>

namespace tools {

struct fault_location;

class check_input {
public:
    check_input(session const& session, check_tree& tree, rule_report const& report, file_rules& rules)
        : m_session(session), m_tree(tree), m_report(report), m_rules(rules) {}

    /// Plans to read a file or those below directories. Complains about what is not there.
    void add(std::vector<ustring8> const& paths);
    /// Reads what is planned and what it includes.
    void read();
    /// What the library reports of files that are not plain, and of those that begin a chain of includes without
    /// end, under each language.
    void load(std::vector<std::uint32_t> const& chains);

    bool has_files() const { return !m_tree.files.empty(); }
    /// False when something could not be read.
    bool is_complete() const { return m_is_complete; }

private:
    void add(ustring8 const& path);
    void load(std::uint32_t file, bool has_limits);
    void add_fault(fault_location const& at, ustring8 const& text);

    session const& m_session;
    check_tree& m_tree;
    rule_report const& m_report;
    file_rules& m_rules;
    bool m_is_complete = true;
};

} // namespace tools

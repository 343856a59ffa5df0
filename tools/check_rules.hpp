// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The rules of `zolt catalog check`, one row each in a table. A new rule is a function, a row and the
// texts of its findings.
#pragma once

#include "catalog_sources.hpp"
#include "findings.hpp"
#include "library.hpp"
#include "program_messages.hpp"

#include <cstddef>
#include <string_view>
#include <vector>

namespace tools {

class rule_run;

struct rule {
    std::string_view name;
    severity level;
    /// Called for each file when it has been read; null when the rule needs all files.
    void (*check_file)(rule_run&, source_file const&);
    /// Called once at the end; null when the rule looks at single files.
    void (*check_all)(rule_run&);
};

/// What has been found so far, and what rules need to find it.
class rule_run {
public:
    rule_run(catalog_sources const& all_sources, program_messages const& program_texts, finding_list& found)
        : sources(all_sources), texts(program_texts), m_found(found) {}

    /// Runs every rule for single files, or every rule for all of them.
    void check(source_file const& file);
    void check_all();

    /// Called by rules.
    void add(source_file const& file, unsigned line, ustring8 const& text);

    catalog_sources const& sources;
    program_messages const& texts;

private:
    rule const* m_rule = nullptr; // the one that is running
    finding_list& m_found;
};

} // namespace tools

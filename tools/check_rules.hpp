// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The rules of `zolt catalog check`, one row each in a table. A new rule is a function, a row and the
// texts of its findings.
#pragma once

#include "catalog_sources.hpp"
#include "library.hpp"
#include "program_messages.hpp"

#include <cstddef>
#include <string_view>
#include <vector>

namespace tools {

enum class severity { error, warning };

/// The word in findings; the same in every language, so that other programs can read them.
std::string_view severity_word(severity level);

struct finding {
    std::string_view rule;
    severity level;
    std::size_t file; ///< index within catalog_sources
    unsigned line;
    ustring8 text; ///< may have several lines
};

class findings;

struct rule {
    std::string_view name;
    severity level;
    /// Called for each file when it has been read; null when the rule needs all files.
    void (*check_file)(findings&, source_file const&);
    /// Called once at the end; null when the rule looks at single files.
    void (*check_all)(findings&);
};

/// What has been found so far, and what rules need to find it.
class findings {
public:
    findings(catalog_sources const& all_sources, program_messages const& program_texts)
        : sources(all_sources), texts(program_texts) {}

    /// Runs every rule for single files, or every rule for all of them.
    void check(source_file const& file);
    void check_all();

    /// Called by rules.
    void add(source_file const& file, unsigned line, ustring8 const& text);

    /// In the order of files and lines, each only once.
    std::vector<finding> sorted() const;

    catalog_sources const& sources;
    program_messages const& texts;

private:
    rule const* m_rule = nullptr; // the one that is running
    std::vector<finding> m_findings;
};

} // namespace tools

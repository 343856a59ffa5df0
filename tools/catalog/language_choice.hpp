// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// language_choice: in which of the languages that there are a request finds its messages. The library is asked
// how well each of them fits.
#pragma once

#include "tools/program/library.hpp"

#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

namespace tools {

struct serving_language {
    std::uint32_t language; ///< a number of the caller's
    bool is_fitting;        ///< the one that was asked for, its base or "."; others are shown for want of a text
};

class language_choice {
public:
    /// A language by its normalized id.
    void add(ustring8 const& id, std::uint32_t language) { m_languages.emplace(id, language); }
    /// Those that a program gets which asks for this normalized id, the best first.
    std::vector<serving_language> for_request(ustring8 const& id) const;

private:
    std::map<ustring8, std::uint32_t, std::less<>> m_languages;
};

} // namespace tools

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "languages.hpp"

#include <algorithm>
#include <cstdlib>

namespace tools {

ustring8 usable_language(std::string_view id) {
    id = id.substr(0, id.find('@'));
    std::string_view const language = id.substr(0, id.find('.'));
    bool const is_none = id.empty() || language == "C" || language == "POSIX";
    return is_none ? ustring8("en") : ustring8(std::string(id));
}

ustring8 language_of_environment() {
    for (char const* const name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        char const* const value = std::getenv(name);
        if (value && *value) return usable_language(value);
    }
    return usable_language("");
}

ustring8 normalized_language(ustring8 id) {
    if (id.size() == 1) return id;
    std::replace(id.begin(), id.end(), '.', '_');
    std::replace(id.begin(), id.end(), '-', '_');
    return id;
}

} // namespace tools

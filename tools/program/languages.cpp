// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "languages.hpp"

#include <algorithm>
#include <cstdlib>

namespace tools {
namespace {

bool is_no_language(std::string_view id) {
    std::string_view const language = id.substr(0, id.find('.'));
    return id.empty() || language == "C" || language == "POSIX";
}

std::string_view without_modifier(std::string_view id) { return id.substr(0, id.find('@')); }

std::string_view first_of(std::string_view list) { return list.substr(0, list.find(':')); }

} // namespace

ustring8 usable_language(std::string_view id) {
    id = without_modifier(id);
    return is_no_language(id) ? ustring8("en") : ustring8(std::string(id));
}

ustring8 language_of_environment() {
    for (char const* const name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        char const* const value = std::getenv(name);
        if (!value || !*value) continue;
        if (is_no_language(without_modifier(value))) break;
        char const* const wanted = std::getenv("LANGUAGE");
        return usable_language(wanted && *wanted ? first_of(wanted) : value);
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

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Language ids such as "de_AT.UTF-8": where they come from and how they compare.
#pragma once

#include "library.hpp"

#include <cstddef>
#include <string_view>

namespace tools {

/// The id as the library takes it: without an "@modifier", and "en" for what stands for no language
/// at all ("", "C", "POSIX", also with a codeset). Everything else stays as it is.
ustring8 usable_language(std::string_view id);

/// The first of LC_ALL, LC_MESSAGES and LANG that is not empty, made usable. When this is a language, the first
/// one in LANGUAGE, a list with colons, is preferred.
ustring8 language_of_environment();

/// The spelling in which the library compares ids: "_" for every "." and "-", except in an id of one
/// character.
ustring8 normalized_language(ustring8 id);

/// Where the last shorter form of a normalized id ends, if there is one. Of an id only the first 64 parts count, as
/// for the library.
inline std::size_t end_of_longest_base(std::string_view id) {
    std::size_t end = std::string_view::npos;
    std::size_t next = id.find('_');
    for (int parts = 0; parts != 64 && next != std::string_view::npos; ++parts) {
        end = next;
        next = id.find('_', next + 1);
    }
    return end;
}

/// Calls `visit` with every shorter form of a normalized id, the longest first: de_AT_x, then de_AT,
/// then de for "de_AT_x_y".
template <typename Visitor>
void for_each_base(std::string_view id, Visitor visit) {
    for (auto end = end_of_longest_base(id); end != std::string_view::npos && end != 0;
         end = id.rfind('_', end - 1)) {
        visit(id.substr(0, end));
    }
}

} // namespace tools

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Language ids such as "de_AT.UTF-8": where they come from and how they compare.
#pragma once

#include "library.hpp"

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

/// Calls `visit` with every shorter form of a normalized id, the longest first: de_AT_x, then de_AT,
/// then de for "de_AT_x_y".
template <typename Visitor>
void for_each_base(std::string_view id, Visitor visit) {
    for (auto end = id.rfind('_'); end != std::string_view::npos && end != 0; end = id.rfind('_', end - 1)) {
        visit(id.substr(0, end));
    }
}

} // namespace tools

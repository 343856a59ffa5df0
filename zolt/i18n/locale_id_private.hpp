// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The one spelling in which locale ids are compared, for the loader and the catalogs.
#pragma once

#include <zolt/strings/ustring.hpp>

#include <algorithm>

namespace ZOLT_2_18::i18n::_private {

/// The id with "_" for every "." and "-", so that "de-DE.UTF-8" and "de_DE_UTF_8" are the same. An id
/// of one character stays as it is: "." is a language of its own.
inline strings::ustring8 normalized_locale(strings::ustring8 id) {
    if (id.size() != 1) {
        std::replace(id.begin(), id.end(), '.', '_');
        std::replace(id.begin(), id.end(), '-', '_');
    }
    return id;
}

} // namespace ZOLT_2_18::i18n::_private

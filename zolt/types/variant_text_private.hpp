// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A look at a variant's text for those who copy it elsewhere at once. Not installed.
#pragma once

#include <zolt/types/variant.hpp>

#include <string>
#include <string_view>

namespace ZOLT_2_18::types::_private {

struct text_access {
    /// What as_string() gives: the held text itself where it is narrow, otherwise `made`, which receives it.
    static std::string_view narrow(variant const& value, std::string& made);
};

} // namespace ZOLT_2_18::types::_private

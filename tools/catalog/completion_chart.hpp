// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// completion_chart: a bar for each language as an SVG picture that needs nothing but itself and is readable on
// light and dark ground. The same bars make the same bytes.
#pragma once

#include "tools/program/library.hpp"

#include <cstddef>
#include <string>
#include <vector>

namespace tools {

struct completion_bar {
    ustring8 language;
    std::size_t total;
    std::size_t translated; ///< copies, too
    std::size_t copies;     ///< shown in another colour
};

/// The texts under the picture.
struct chart_legend {
    ustring8 title;
    ustring8 translated;
    ustring8 copies;
    ustring8 missing;
};

std::string completion_chart(std::vector<completion_bar> const& bars, chart_legend const& legend);

/// A part of a whole in per cent, 100 only when nothing is left and for a whole of nothing.
std::size_t percent(std::size_t part, std::size_t whole);

} // namespace tools

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Destructors out of line: each mix-in's type information is emitted once, here and beside the payloads that are
// destroyed most, in types/variant_value.cpp.
#include <zolt/generic/abilities.hpp>

namespace ZOLT_2_18::generic::abilities {

create_ability::~create_ability() = default;

} // namespace ZOLT_2_18::generic::abilities

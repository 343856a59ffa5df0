// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Destructors out of line: each mix-in's type information is emitted once, here.
#include <zolt/generic/abilities.hpp>

namespace ZOLT_2_18::generic::abilities {

alloc_detection_ability::~alloc_detection_ability() = default;
reference_count_pointer_ability_b::~reference_count_pointer_ability_b() = default;
clone_ability::~clone_ability() = default;
create_ability::~create_ability() = default;

} // namespace ZOLT_2_18::generic::abilities

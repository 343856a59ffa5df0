// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/generic/clone_interface.hpp>

namespace ZOLT_2_18::generic {

clone_interface::~clone_interface() = default;

} // namespace ZOLT_2_18::generic

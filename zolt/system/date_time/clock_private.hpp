// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The system's clock, for the library's own sources. Not installed.
#pragma once

#include <zolt/system/date_time/date_time.hpp>

namespace ZOLT_2_18::system::date_time::_private {

enum class clock_zone { local, utc };

/// To the millisecond, truncated. A leap second reads as second 59; a time that the platform cannot break
/// down reads as all fields 0.
date_time_t read_clock(clock_zone zone);

/// To the second. The platform may take it from a coarser clock than the above, which is behind by a tick.
date_time_t read_seconds_clock(clock_zone zone);

} // namespace ZOLT_2_18::system::date_time::_private

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The only source that sees the platform's time types: they are asked for with 64 bits, so that 32-bit
// builds read the clock beyond the year 2038.
#define _FILE_OFFSET_BITS 64 // the C library insists on it beside the next
#define _TIME_BITS 64

#include <zolt/system/date_time/clock_private.hpp>

#include <algorithm>

#include <sys/time.h>
#include <time.h>

namespace ZOLT_2_18::system::date_time::_private {
namespace {

bool break_down(::time_t seconds, clock_zone zone, ::tm& fields) noexcept {
    if (zone == clock_zone::utc) return ::gmtime_r(&seconds, &fields) != nullptr;
    ::tzset(); // localtime_r alone need not notice that TZ has changed
    return ::localtime_r(&seconds, &fields) != nullptr;
}

date_time_t date_time_of(::time_t seconds, long long microseconds, clock_zone zone) {
    ::tm fields{};
    if (!break_down(seconds, zone, fields)) return date_time_t();
    auto const number = [](long long value) { return static_cast<unsigned int>(value); };
    return date_time_t(date(number(fields.tm_mday), number(fields.tm_mon + 1), number(fields.tm_year + 1900LL)),
                       time(number(fields.tm_hour), number(fields.tm_min), number(std::min(fields.tm_sec, 59)),
                            number(microseconds / 1000)));
}

} // namespace

date_time_t read_clock(clock_zone zone) {
    ::timeval now{};
    ::gettimeofday(&now, nullptr);
    return date_time_of(now.tv_sec, now.tv_usec, zone);
}

date_time_t read_seconds_clock(clock_zone zone) { return date_time_of(::time(nullptr), 0, zone); }

} // namespace ZOLT_2_18::system::date_time::_private

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// time: a time of day, 00:00:00.000 to 23:59:59.999, without a zone. Arithmetic goes round the clock:
//
//     namespace date_time = ZOLT_2_18::system::date_time;
//     date_time::time clock(23, 59, 59, 999);
//     clock += date_time::time_duration(0, 0, 0, 1);   // 00:00:00.000
//
// The C library has a function of the same name: write the class with its namespace.
#pragma once

#include <zolt/export.hpp>
#include <zolt/system/date_time/duration.hpp>

namespace ZOLT_2_18::system::date_time {

class ZOLT_API time {
public:
    /// Midnight: all fields 0.
    time() noexcept = default;
    /// Sets hour, minute, second and millisecond in this order.
    /// @throws exceptions::out_of_range as the setters do.
    time(unsigned int hour, unsigned int minute, unsigned int second, unsigned int millisecond);
    time(time const&) noexcept = default;

    /// The current time of day by the system's clock, in the zone of the environment variable TZ or in
    /// UTC; milliseconds are truncated, a leap second reads as second 59.
    static time local_time();
    static time UTC_time();

    /// The fields: 0 to 23, 0 to 59, 0 to 59 and 0 to 999.
    unsigned int hour() const noexcept { return m_hour; }
    unsigned int minute() const noexcept { return m_minute; }
    unsigned int second() const noexcept { return m_second; }
    unsigned int millisecond() const noexcept { return m_millisecond; }

    /// Each setter returns the value that it stored.
    /// @throws exceptions::out_of_range above 23, 59, 59 and 999; the time is unchanged.
    unsigned int hour(unsigned int value);
    unsigned int minute(unsigned int value);
    unsigned int second(unsigned int value);
    unsigned int millisecond(unsigned int value);

    time& operator=(time const& other) noexcept { return assign(other); }
    time& operator+=(time_duration const& duration) { return plus_assign(duration); }
    time& operator-=(time_duration const& duration) { return minus_assign(duration); }
    time& assign(time const& other) noexcept;

    /// Moves round the clock, forth or back; whole days make no difference.
    /// Kept: back only as far as a day before midnight. If the sum lies before that by other than whole
    /// days, the setters refuse its negative parts and fields set before the refused one stay set:
    /// 01:30:00.000 plus -27 hours is refused by the hour and unchanged, plus -25 hours 31 minutes by the
    /// minute and left at 00:30:00.000.
    /// Kept: a sum beyond 64 bits wraps, and so ends there as well.
    /// @throws exceptions::out_of_range as the setters do.
    time& plus_assign(time_duration const& duration);
    /// Adds the negative of the duration; that of the most negative one is itself.
    time& minus_assign(time_duration const& duration);

    /// Compares hour, minute, second and millisecond in this order.
    bool equal(time const& other) const noexcept;
    bool less(time const& other) const noexcept;
    bool operator==(time const& other) const noexcept { return equal(other); }
    bool operator!=(time const& other) const noexcept { return !equal(other); }
    bool operator<(time const& other) const noexcept { return less(other); }
    bool operator>(time const& other) const noexcept { return other.less(*this); }
    bool operator<=(time const& other) const noexcept { return !other.less(*this); }
    bool operator>=(time const& other) const noexcept { return !less(other); }

private:
    unsigned int m_hour = 0;
    unsigned int m_minute = 0;
    unsigned int m_second = 0;
    unsigned int m_millisecond = 0;
};

/// From the right time to the left one on the same day; negative when the left one is earlier.
ZOLT_API time_duration minus(time const& left, time const& right) noexcept;
inline time_duration operator-(time const& left, time const& right) noexcept { return minus(left, right); }

/// The time moved by plus_assign or minus_assign, with their limits.
ZOLT_API time plus(time const& start, time_duration const& duration);
ZOLT_API time plus(time_duration const& duration, time const& start);
ZOLT_API time minus(time const& start, time_duration const& duration);
inline time operator+(time const& start, time_duration const& duration) { return plus(start, duration); }
inline time operator+(time_duration const& duration, time const& start) { return plus(duration, start); }
inline time operator-(time const& start, time_duration const& duration) { return minus(start, duration); }

} // namespace ZOLT_2_18::system::date_time

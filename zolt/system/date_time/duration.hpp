// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The two lengths of time that dates and times are moved by: date_duration, a whole number of days, and
// time_duration, a number of milliseconds. Both may be negative.
//
//     system::date_time::time_duration const film(1, 30, 0, 0);
//     film.hour();          // 1
//     film.minute();        // 30
//     film.total_hours();   // 1.5
//
// Arithmetic never fails: what does not fit its 32-bit count of days or 64-bit count of milliseconds wraps.
#pragma once

#include <zolt/export.hpp>

namespace ZOLT_2_18::system::date_time {

/// A signed 32-bit count of days, by default 0.
class ZOLT_API date_duration {
public:
    date_duration() noexcept = default;
    /// That many days.
    date_duration(int days) noexcept : m_days(days) {}
    date_duration(date_duration const&) noexcept = default;

    /// The count.
    int days() const noexcept { return m_days; }
    /// Returns the count that it stored.
    int days(int count) noexcept { return m_days = count; }

    date_duration& operator=(date_duration const& other) noexcept { return assign(other); }
    date_duration& operator+=(date_duration const& other) noexcept { return plus_assign(other); }
    date_duration& operator-=(date_duration const& other) noexcept { return minus_assign(other); }
    date_duration& assign(date_duration const& other) noexcept;
    /// Sum and difference of the counts.
    date_duration& plus_assign(date_duration const& other) noexcept;
    date_duration& minus_assign(date_duration const& other) noexcept;

    /// Compares the counts.
    bool equal(date_duration const& other) const noexcept { return m_days == other.m_days; }
    bool less(date_duration const& other) const noexcept { return m_days < other.m_days; }
    bool operator==(date_duration const& other) const noexcept { return equal(other); }
    bool operator!=(date_duration const& other) const noexcept { return !equal(other); }
    bool operator<(date_duration const& other) const noexcept { return less(other); }
    bool operator>(date_duration const& other) const noexcept { return other.less(*this); }
    bool operator<=(date_duration const& other) const noexcept { return !other.less(*this); }
    bool operator>=(date_duration const& other) const noexcept { return !less(other); }

private:
    int m_days = 0;
};

/// Sum and difference of the counts.
ZOLT_API date_duration plus(date_duration const& left, date_duration const& right) noexcept;
ZOLT_API date_duration minus(date_duration const& left, date_duration const& right) noexcept;
inline date_duration operator+(date_duration const& left, date_duration const& right) noexcept {
    return plus(left, right);
}
inline date_duration operator-(date_duration const& left, date_duration const& right) noexcept {
    return minus(left, right);
}

/// A signed 64-bit count of milliseconds, by default 0.
class ZOLT_API time_duration {
public:
    time_duration() noexcept = default;
    /// The sum of the four; each may be negative or larger than its unit allows on a clock.
    /// Kept: hours, minutes and seconds are summed up in 32 bits, so that together they wrap beyond
    /// 2147483647 milliseconds (about 596 hours): time_duration(597, 0, 0, 0) is negative. Give longer
    /// durations in milliseconds, which count in 64 bits.
    time_duration(int hours, int minutes, int seconds, long long milliseconds) noexcept;
    time_duration(time_duration const&) noexcept = default;

    /// The count.
    long long total_milliseconds() const noexcept { return m_milliseconds; }
    /// The whole duration in one unit, with its fraction.
    double total_seconds() const noexcept;
    double total_minutes() const noexcept;
    double total_hours() const noexcept;

    /// The parts, truncated toward zero; each has the sign of the duration. Hours go beyond 23, the others
    /// do not reach a unit of the next part.
    /// Kept: they are taken from the totals above, so beyond 2^53 milliseconds (285,000 years) they are only
    /// as exact as a double is.
    long long hour() const noexcept;
    int minute() const noexcept;
    int second() const noexcept;
    /// Kept: taken from the low 32 bits of the count, read as signed, so beyond 2^31 milliseconds (24 days)
    /// it is neither the true part nor has it always the duration's sign: for 2147483648 it is -648.
    int millisecond() const noexcept;

    /// True below 0.
    bool is_negative() const noexcept { return m_milliseconds < 0; }

    time_duration& operator=(time_duration const& other) noexcept { return assign(other); }
    time_duration& operator+=(time_duration const& other) noexcept { return plus_assign(other); }
    time_duration& operator-=(time_duration const& other) noexcept { return minus_assign(other); }
    time_duration& assign(time_duration const& other) noexcept;
    /// Sum and difference of the counts.
    time_duration& plus_assign(time_duration const& other) noexcept;
    time_duration& minus_assign(time_duration const& other) noexcept;

    /// Compares the counts.
    bool equal(time_duration const& other) const noexcept { return m_milliseconds == other.m_milliseconds; }
    bool less(time_duration const& other) const noexcept { return m_milliseconds < other.m_milliseconds; }
    bool operator==(time_duration const& other) const noexcept { return equal(other); }
    bool operator!=(time_duration const& other) const noexcept { return !equal(other); }
    bool operator<(time_duration const& other) const noexcept { return less(other); }
    bool operator>(time_duration const& other) const noexcept { return other.less(*this); }
    bool operator<=(time_duration const& other) const noexcept { return !other.less(*this); }
    bool operator>=(time_duration const& other) const noexcept { return !less(other); }

private:
    long long m_milliseconds = 0;
};

/// Sum and difference of the counts.
ZOLT_API time_duration plus(time_duration const& left, time_duration const& right) noexcept;
ZOLT_API time_duration minus(time_duration const& left, time_duration const& right) noexcept;
inline time_duration operator+(time_duration const& left, time_duration const& right) noexcept {
    return plus(left, right);
}
inline time_duration operator-(time_duration const& left, time_duration const& right) noexcept {
    return minus(left, right);
}

} // namespace ZOLT_2_18::system::date_time

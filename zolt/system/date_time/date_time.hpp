// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// date_time_t: a time of day on a date, without a zone. Its fields are read and set as those of its parts.
//
//     namespace date_time = ZOLT_2_18::system::date_time;
//     date_time::date_time_t moment(date_time::date(28, 2, 2023), date_time::time(12, 30, 0, 0));
//     moment.day();               // 28
//     moment.hour(13);            // now 13:30
//
// Its arithmetic is not a calendar's: see plus_assign. Move the parts for that.
#pragma once

#include <zolt/export.hpp>
#include <zolt/system/date_time/date.hpp>
#include <zolt/system/date_time/time.hpp>

namespace ZOLT_2_18::system::date_time {

class ZOLT_API date_time_t {
public:
    /// All fields 0.
    date_time_t() noexcept = default;
    /// Of these parts.
    date_time_t(date_time::date const& date_part, date_time::time const& time_part) noexcept
        : m_time(time_part), m_date(date_part) {}
    date_time_t(date_time_t const&) noexcept = default;

    /// Date and time of one reading of the system's clock, in the zone of the environment variable TZ or in
    /// UTC; milliseconds are truncated, a leap second reads as second 59.
    static date_time_t local_date_time();
    static date_time_t UTC_date_time();

    /// The parts.
    date_time::date const& date() const noexcept { return m_date; }
    date_time::time const& time() const noexcept { return m_time; }

    /// The fields of the parts.
    unsigned int year() const noexcept { return m_date.year(); }
    unsigned int month() const noexcept { return m_date.month(); }
    unsigned int day() const noexcept { return m_date.day(); } ///< constrained to the month
    bool is_leap_year() const noexcept { return m_date.is_leap_year(); }
    bool is_day_constrained() const noexcept { return m_date.is_day_constrained(); }
    unsigned int hour() const noexcept { return m_time.hour(); }
    unsigned int minute() const noexcept { return m_time.minute(); }
    unsigned int second() const noexcept { return m_time.second(); }
    unsigned int millisecond() const noexcept { return m_time.millisecond(); }

    /// Each setter returns the value that it stored.
    /// @throws exceptions::out_of_range as the setters of the parts do.
    unsigned int year(unsigned int value) noexcept { return m_date.year(value); }
    unsigned int month(unsigned int value) { return m_date.month(value); }
    unsigned int day(unsigned int value) { return m_date.day(value); }
    unsigned int hour(unsigned int value) { return m_time.hour(value); }
    unsigned int minute(unsigned int value) { return m_time.minute(value); }
    unsigned int second(unsigned int value) { return m_time.second(value); }
    unsigned int millisecond(unsigned int value) { return m_time.millisecond(value); }

    date_time_t& operator=(date_time_t const& other) noexcept { return assign(other); }
    date_time_t& operator=(date_time::date const& date_part) noexcept { return assign(date_part); }
    date_time_t& operator=(date_time::time const& time_part) noexcept { return assign(time_part); }
    date_time_t& operator+=(date_duration const& duration) noexcept { return plus_assign(duration); }
    date_time_t& operator-=(date_duration const& duration) noexcept { return minus_assign(duration); }
    date_time_t& operator+=(time_duration const& duration) { return plus_assign(duration); }
    date_time_t& operator-=(time_duration const& duration) { return minus_assign(duration); }

    date_time_t& assign(date_time_t const& other) noexcept;
    /// Replaces one part.
    date_time_t& assign(date_time::date const& date_part) noexcept;
    date_time_t& assign(date_time::time const& time_part) noexcept;
    date_time_t& assign(date_time::date const& date_part, date_time::time const& time_part) noexcept;

    /// Kept: days are ignored; the object stays as it is.
    date_time_t& plus_assign(date_duration const&) noexcept { return *this; }
    date_time_t& minus_assign(date_duration const&) noexcept { return *this; }

    /// Moves the time by a duration of less than 24 hours; the date stays, over midnight too.
    /// Kept: with H whole hours, 24 or more, the day is set to the remainder of H by 24 and the date then
    /// moved by as many days: plus 25 hours leads to day 2, minus 25 hours to the end of the month before,
    /// whatever the day was. A remainder of 0 and every duration of -24 hours or less are refused by the
    /// day, and the object is unchanged.
    /// Kept: when the date or the time refuses its move, what was changed before stays changed.
    /// @throws exceptions::out_of_range as date::day, date::minus_assign and time::plus_assign do.
    date_time_t& plus_assign(time_duration const& duration);
    date_time_t& minus_assign(time_duration const& duration);

    /// Compares the dates, then the times.
    bool equal(date_time_t const& other) const noexcept;
    bool less(date_time_t const& other) const noexcept;
    bool operator==(date_time_t const& other) const noexcept { return equal(other); }
    bool operator!=(date_time_t const& other) const noexcept { return !equal(other); }
    bool operator<(date_time_t const& other) const noexcept { return less(other); }
    bool operator>(date_time_t const& other) const noexcept { return other.less(*this); }
    bool operator<=(date_time_t const& other) const noexcept { return !other.less(*this); }
    bool operator>=(date_time_t const& other) const noexcept { return !less(other); }

private:
    date_time::time m_time;
    date_time::date m_date;
};

} // namespace ZOLT_2_18::system::date_time

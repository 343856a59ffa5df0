// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// date: a day of the Gregorian calendar, given by day, month and year in this order.
//
//     system::date_time::date day(1, 1, 2023);
//     day += system::date_time::date_duration(365);   // 1 January 2024
//
// A date keeps the day that it was given even where the month is shorter; day() shows it constrained to
// the month, so it comes back when the month or year changes:
//
//     system::date_time::date last(31, 2, 2023);
//     last.day();                                      // 28
//     last.year(2024), last.day();                     // 29
//     last.month(3), last.day();                       // 31
#pragma once

#include <zolt/export.hpp>
#include <zolt/system/date_time/duration.hpp>

namespace ZOLT_2_18::system::date_time {

class ZOLT_API date {
public:
    /// All fields 0, which is no day of the calendar.
    date() noexcept = default;
    /// Sets day, month and year in this order.
    /// @throws exceptions::out_of_range as the setters do.
    date(unsigned int day, unsigned int month, unsigned int year);
    date(date const&) noexcept = default;

    /// The current date by the system's clock, in the zone of the environment variable TZ or in UTC.
    static date local_date();
    static date UTC_date();

    /// The stored field.
    unsigned int year() const noexcept { return m_year; }
    unsigned int month() const noexcept { return m_month; }
    /// The stored day or, where the stored month is shorter, the last day of that month.
    ZOLT_API unsigned int day() const noexcept;

    /// Each setter returns the value that it stored; any year is accepted.
    /// @throws exceptions::out_of_range unless is_valid_month or is_valid_day; the date is unchanged.
    unsigned int year(unsigned int value) noexcept { return m_year = value; }
    unsigned int month(unsigned int value);
    unsigned int day(unsigned int value);

    /// 1 to 31, whatever the month.
    static bool is_valid_day(unsigned int value) noexcept { return value >= 1 && value <= 31; }
    /// 1 to 12.
    static bool is_valid_month(unsigned int value) noexcept { return value >= 1 && value <= 12; }

    /// By the Gregorian rule.
    ZOLT_API bool is_leap_year() const noexcept;
    /// True when day() is not the stored day.
    bool is_day_constrained() const noexcept { return day() != m_day; }

    /// Counts days from 1 March of year 0, which is day 1; 1 March 2000 is day 730486. The stored day
    /// counts, so 31 February is the day of 3 March (2 March in a leap year).
    /// Kept: the count is taken modulo 2^32. January and February of year 0 share numbers with dates of the
    /// year 2851611, and from 21 March 11759221 on the numbers start again at 1.
    ZOLT_API unsigned int pJulian_day_number() const noexcept;
    /// Sets all fields from such a count.
    /// Kept: the number of a 29 February sets 1 March of that year, as the last day of each cycle of four and
    /// of 400 years is taken for the first one of the next. The number 0 sets 20 March 11759221.
    ZOLT_API void pJulian_day_number(unsigned int number) noexcept;

    date& operator=(date const& other) noexcept { return assign(other); }
    date& operator+=(date_duration const& duration) { return plus_assign(duration); }
    date& operator-=(date_duration const& duration) { return minus_assign(duration); }
    date& assign(date const& other) noexcept;

    /// Moves by days, forth or back, through the day number; a stored day beyond its month becomes a day of
    /// the next month, even by 0 days.
    /// Kept: the result is never a 29 February but the 1 March after it: 28 February 2024 plus one day is
    /// 1 March 2024, 1 March 2024 minus one day again 1 March 2024, and 29 February 2024 plus 0 days too.
    /// Kept: negative days that reach before 1 March of year 0 end in the year 11759221 and before, without
    /// an exception.
    date& plus_assign(date_duration const& duration);
    /// As plus_assign, the other way round; negative days are added.
    /// @throws exceptions::out_of_range when that many days do not lie behind; the date is unchanged.
    date& minus_assign(date_duration const& duration);

    /// Compares year, month and stored day: 31 February differs from and follows 28 February.
    bool equal(date const& other) const noexcept;
    bool less(date const& other) const noexcept;
    bool operator==(date const& other) const noexcept { return equal(other); }
    bool operator!=(date const& other) const noexcept { return !equal(other); }
    bool operator<(date const& other) const noexcept { return less(other); }
    bool operator>(date const& other) const noexcept { return other.less(*this); }
    bool operator<=(date const& other) const noexcept { return !other.less(*this); }
    bool operator>=(date const& other) const noexcept { return !less(other); }

private:
    unsigned int m_year = 0;
    unsigned int m_month = 0;
    unsigned int m_day = 0;
};

// ------------------------------------------------------------------------------------------------
// Inline, since a call into the library would take longer than the work itself.
//
// Day numbers count in years that begin on 1 March, so that the leap day is a year's last. Within such a
// year the lengths of the months repeat after five: 31, 30, 31, 30, 31 days; so a straight line, rounded
// down, runs through the months' first days. Counted in quarters of days, all centuries are equally long,
// and so are all years.

inline bool date::is_leap_year() const noexcept {
    return (m_year % 4 == 0 && m_year % 100 != 0) || m_year % 400 == 0;
}

inline unsigned int date::day() const noexcept {
    if (m_day <= 28) return m_day;
    unsigned int length = 31;
    if (m_month == 4 || m_month == 6 || m_month == 9 || m_month == 11) length = 30;
    if (m_month == 2) length = is_leap_year() ? 29 : 28;
    return m_day < length ? m_day : length;
}

inline unsigned int date::pJulian_day_number() const noexcept {
    unsigned int const before_march = m_month < 3; // computed with: as a branch, one date in six is a wrong guess
    unsigned int const year = m_year - before_march;
    unsigned int const month = m_month + 12 * before_march;
    unsigned int const century = year / 100;
    auto const julian_days = static_cast<unsigned int>(1461ULL * year / 4);
    return julian_days - century + century / 4 + (979 * month - 2919) / 32 + m_day; // 979 / 32 is 153 / 5, nearly
}

inline void date::pJulian_day_number(unsigned int number) noexcept {
    constexpr unsigned int quarters_of_century = 146097;
    unsigned long long const quarters = 4ULL * (number - 1) + 3;
    unsigned int const century = static_cast<unsigned int>(quarters / quarters_of_century);
    unsigned int const rest = static_cast<unsigned int>(quarters % quarters_of_century) | 3;

    // The quotient by 1461 stands above 32 bits, the rest, stretched, in them.
    constexpr unsigned int stretch = 2939745; // 2^32 / 1461, rounded up
    unsigned long long const years = static_cast<unsigned long long>(stretch) * rest;
    unsigned int const year = static_cast<unsigned int>(years >> 32);
    unsigned int const day = static_cast<unsigned int>(years) / stretch / 4;

    // The line in the same way: 2141 is 2^16 * 5 / 153. A leap day, 365, counts as the first day of a 13th month,
    // as if years had only 365.
    unsigned int const line = day == 365 ? 12 << 16 : 2141 * day + 1305;
    unsigned int const next_year = day >= 306;
    m_day = (line & 0xFFFF) / 2141 + 1;
    m_month = (line >> 16) + 3 - 12 * next_year; // month 0 of the line is March
    m_year = 100 * century + year + next_year;
}

} // namespace ZOLT_2_18::system::date_time

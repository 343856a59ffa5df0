// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Day numbers count in years that begin on 1 March, so that the leap day is a year's last. Within such a year
// the lengths of the months repeat after five: 31, 30, 31, 30, 31 days; so a straight line, rounded down, runs
// through the months' first days. Divisions by the lengths of centuries and years become multiplications
// with days in quarters: a century has 146097 of them, a year 1461.
#include <zolt/system/date_time/date.hpp>

#include <zolt/exceptions/exception.hpp>
#include <zolt/system/date_time/clock_private.hpp>

#include <tuple>

namespace ZOLT_2_18::system::date_time {
namespace {

struct range_fault {
    char const* message;
    unsigned int line;
    char const* label;
};

constexpr range_fault invalid_month{"month value out of valid range", 58, "month"};
constexpr range_fault invalid_day{"day value out of valid range", 68, "day"};
constexpr range_fault no_day_before{"date value out of valid range", 146, "minus_assign"};

[[noreturn]] void raise(range_fault const& fault) {
    throw exceptions::out_of_range(fault.message, fault.line, "system/date_time/date", fault.label);
}

/// From 1 March to the first of each month; a date without a month counts as December.
constexpr unsigned short days_before_month[13] = {275, 306, 337, 0, 31, 61, 92, 122, 153, 184, 214, 245, 275};

constexpr unsigned int leap_day = 365; // of the year that begins on 1 March

void move_to(date& target, unsigned int number) {
    date moved;
    moved.pJulian_day_number(number);
    target.day(moved.day());
    target.month(moved.month());
    target.year(moved.year());
}

} // namespace

date::date(unsigned int day_value, unsigned int month_value, unsigned int year_value) {
    day(day_value);
    month(month_value);
    year(year_value);
}

date date::local_date() { return _private::read_seconds_clock(_private::clock_zone::local).date(); }

date date::UTC_date() { return _private::read_seconds_clock(_private::clock_zone::utc).date(); }

unsigned int date::day() const noexcept {
    if (m_day <= 28) return m_day;
    unsigned int length = 31;
    if (m_month == 4 || m_month == 6 || m_month == 9 || m_month == 11) length = 30;
    if (m_month == 2) length = is_leap_year() ? 29 : 28;
    return m_day < length ? m_day : length;
}

unsigned int date::month(unsigned int value) {
    if (!is_valid_month(value)) raise(invalid_month);
    return m_month = value;
}

unsigned int date::day(unsigned int value) {
    if (!is_valid_day(value)) raise(invalid_day);
    return m_day = value;
}

bool date::is_leap_year() const noexcept { return (m_year % 4 == 0 && m_year % 100 != 0) || m_year % 400 == 0; }

unsigned int date::pJulian_day_number() const noexcept {
    unsigned int const year = m_month < 3 ? m_year - 1 : m_year;
    unsigned int const century = year / 100;
    return 365 * year + year / 4 - century + century / 4 + days_before_month[m_month] + m_day;
}

void date::pJulian_day_number(unsigned int number) noexcept {
    constexpr unsigned int days_of_400_years = 146097, quarters_of_century = 146097, quarters_of_year = 1461;
    unsigned int const quarters = 4 * ((number - 1) % days_of_400_years) + 3;
    unsigned int const century = 4 * ((number - 1) / days_of_400_years) + quarters / quarters_of_century;
    unsigned int const rest = quarters % quarters_of_century | 3; // the last quarter of its day
    unsigned int const year = rest / quarters_of_year;
    unsigned int const day = rest % quarters_of_year / 4;

    // The leap day is the first of the next year, as if it were counted in years of 365 days.
    bool const ends_year = day >= days_before_month[1];
    unsigned int const line = day == leap_day ? 0 : 5 * day + 2; // 153 for five months
    unsigned int const month = line / 153;
    m_day = line % 153 / 5 + 1;
    m_month = month < 10 ? month + 3 : month - 9;
    m_year = 100 * century + year + (ends_year ? 1 : 0);
}

date& date::assign(date const& other) noexcept {
    m_year = other.m_year;
    m_month = other.m_month;
    m_day = other.m_day;
    return *this;
}

date& date::plus_assign(date_duration const& duration) {
    move_to(*this, pJulian_day_number() + static_cast<unsigned int>(duration.days()));
    return *this;
}

date& date::minus_assign(date_duration const& duration) {
    long long const number = pJulian_day_number();
    if (number <= duration.days()) raise(no_day_before);
    move_to(*this, static_cast<unsigned int>(number - duration.days()));
    return *this;
}

bool date::equal(date const& other) const noexcept {
    return m_year == other.m_year && m_month == other.m_month && m_day == other.m_day;
}

bool date::less(date const& other) const noexcept {
    return std::tie(m_year, m_month, m_day) < std::tie(other.m_year, other.m_month, other.m_day);
}

} // namespace ZOLT_2_18::system::date_time

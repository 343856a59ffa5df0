// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Day numbers count in years that begin on 1 March, so that the leap day is a year's last, and within
// a year in pairs of months: all pairs have 61 days but July and August, which have 62. Each pair's first
// month has 31 days, in September and October and in November and December it has 30.
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

constexpr unsigned int days_of_400_years = 146097;
constexpr unsigned int days_of_century = 36524;
constexpr unsigned int days_of_4_years = 1461;
constexpr unsigned int days_of_year = 365;
constexpr unsigned int days_of_pair = 61;
constexpr unsigned int august = 2; // the pair that ends with August and has one day more
constexpr unsigned int last_of_august = 184;

constexpr unsigned int first_month_length(unsigned int pair) noexcept { return pair == 3 || pair == 4 ? 30 : 31; }

/// How often the length fits; leaves what remains.
unsigned int take_out(unsigned int& rest, unsigned int length) noexcept {
    unsigned int const count = rest / length;
    rest %= length;
    return count;
}

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
    bool const ends_year = m_month < 3;
    unsigned int const year = ends_year ? m_year - 1 : m_year;
    unsigned int const month = (ends_year ? m_month + 12 : m_month) - 3;
    unsigned int const pair = month / 2;
    unsigned int const leap_days = year / 4 - (year / 100 - year / 400);
    unsigned int const first_month = month % 2 != 0 ? first_month_length(pair) : 0;
    return days_of_year * year + leap_days + days_of_pair * pair + (pair > august ? 1 : 0) + first_month + m_day;
}

void date::pJulian_day_number(unsigned int number) noexcept {
    // The counts of centuries and of years are not held below 4; that is what passes over the leap day.
    unsigned int rest = number - 1;
    unsigned int year = 400 * take_out(rest, days_of_400_years);
    year += 100 * take_out(rest, days_of_century);
    year += 4 * take_out(rest, days_of_4_years);
    year += take_out(rest, days_of_year);

    unsigned int const day_of_year = rest + 1;
    unsigned int const pair = (rest - (day_of_year >= last_of_august ? 1 : 0)) / days_of_pair;
    unsigned int const day_of_pair = day_of_year - days_of_pair * pair - (pair > august ? 1 : 0);
    unsigned int const first_month = first_month_length(pair);
    bool const in_second = day_of_pair > first_month;
    unsigned int const month = 2 * pair + (in_second ? 1 : 0); // 0 is March, 10 January

    m_day = in_second ? day_of_pair - first_month : day_of_pair;
    m_month = month < 10 ? month + 3 : month - 9;
    m_year = month < 10 ? year : year + 1;
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

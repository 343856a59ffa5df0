// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
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

// These are inline, but programs may call them here, too.
[[gnu::used]] unsigned int (date::*const reading[])() const noexcept = {&date::day, &date::pJulian_day_number};
[[gnu::used]] bool (date::*const asking)() const noexcept = &date::is_leap_year;
[[gnu::used]] void (date::*const writing)(unsigned int) noexcept = &date::pJulian_day_number;

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

unsigned int date::month(unsigned int value) {
    if (!is_valid_month(value)) raise(invalid_month);
    return m_month = value;
}

unsigned int date::day(unsigned int value) {
    if (!is_valid_day(value)) raise(invalid_day);
    return m_day = value;
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

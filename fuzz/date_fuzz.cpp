// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Day numbers in both directions, moving by days, and the clock's round, in plain arithmetic.
#include "input.hpp"

#include <zolt/exceptions/exception.hpp>
#include <zolt/system/date_time/date_time.hpp>

namespace {

using fuzz::check;
using zolt::exceptions::out_of_range;
using zolt::system::date_time::date;
using zolt::system::date_time::time_duration;

/// Days from 1 March of year 0, which is 1, modulo 2^32; the months' lengths are counted up.
unsigned plain_number(unsigned day, unsigned month, unsigned year) {
    static constexpr unsigned lengths[] = {31, 30, 31, 30, 31, 31, 30, 31, 30, 31, 31}; // from March on
    if (month < 3) --year;
    unsigned number = 365 * year + year / 4 - year / 100 + year / 400 + day;
    for (unsigned i = 0; i < (month + 9) % 12; ++i) number += lengths[i];
    return number;
}

/// A number gives the date that it counts; that of a 29 February the day after.
date of_number(unsigned number) {
    date day;
    day.pJulian_day_number(number);
    unsigned const back = plain_number(day.day(), day.month(), day.year());
    bool const after_leap_day = day.day() == 1 && day.month() == 3 && day.is_leap_year();
    check(!day.is_day_constrained() && date::is_valid_month(day.month()), "a day of the calendar");
    check(day.month() != 2 || day.day() != 29, "no number gives a 29 February");
    check(back == number || (after_leap_day && back == number + 1), "the day of a number");
    return day;
}

void check_date(date const& day, unsigned number, int days) {
    check(day.pJulian_day_number() == number, "a date's number");
    date moved = day;
    moved += days;
    check(moved == of_number(number + static_cast<unsigned>(days)), "a later day");
    date expected = day;
    if (number > static_cast<long long>(days)) expected = of_number(number - static_cast<unsigned>(days));
    moved = day;
    try {
        moved -= days;
    } catch (out_of_range const&) {
        check(number <= static_cast<long long>(days), "a day is refused only where none lies behind");
    }
    check(moved == expected, "an earlier day");
}

/// Round the clock in 64 bits that wrap; what remains below midnight is refused.
void check_time(unsigned start, long long by) {
    zolt::system::date_time::time clock(start / 3600000, start / 60000 % 60, start / 1000 % 60, start % 1000);
    auto const sum = static_cast<long long>(start + static_cast<unsigned long long>(by) + 86400000) % 86400000;
    try {
        clock += time_duration(0, 0, 0, by);
        auto const now = ((clock.hour() * 60 + clock.minute()) * 60 + clock.second()) * 1000 + clock.millisecond();
        check(now == sum, "the clock's round");
    } catch (out_of_range const&) {
        check(sum < 0, "a time is refused only before the day before");
    }
}

} // namespace

void fuzz::run(input in) {
    unsigned const day = 1 + in.below(31);
    unsigned const month = 1 + in.below(12);
    unsigned const start = in.number<unsigned>() % 86400000;
    auto const year = in.number<unsigned>();
    auto const days = in.number<int>();
    auto const milliseconds = in.number<long long>();
    of_number(year);
    check_date(date(day, month, year), plain_number(day, month, year), days);
    check_date(date(day, month, year % 3000), plain_number(day, month, year % 3000), days % 1000000);
    check_time(start, milliseconds);
    check_time(start, milliseconds % 200000000);
}

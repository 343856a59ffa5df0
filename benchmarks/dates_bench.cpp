// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Dates to and from day numbers. The days are random ones of four centuries without the 29th of February,
// which our numbers do not give back.
#include "bench.hpp"

#include <zolt/zolt.hpp>

#include <chrono>
#include <random>

using namespace zolt;

namespace {

namespace chrono = std::chrono;
using chrono::sys_days;
using chrono::year_month_day;
using system::date_time::date;

constexpr sys_days origin = chrono::year(0) / 2 / 29; // day number 0

std::vector<unsigned int> day_numbers(std::size_t count) {
    std::mt19937 random(11);
    std::vector<unsigned int> numbers;
    while (numbers.size() < count) {
        unsigned int const number = 650000 + static_cast<unsigned int>(random() % 146097);
        year_month_day const day(origin + chrono::days(number));
        if (day.month() != chrono::February || day.day() != chrono::day(29)) numbers.push_back(number);
    }
    return numbers;
}

date date_of(unsigned int number) {
    date day;
    day.pJulian_day_number(number);
    return day;
}

auto sum_of_numbers(std::size_t count) {
    std::vector<date> days;
    for (unsigned int const number : day_numbers(count)) days.push_back(date_of(number));
    return [days] {
        unsigned int sum = 0;
        for (date const& day : days) sum += day.pJulian_day_number();
        return sum;
    };
}

auto sum_of_dates(std::size_t count) {
    return [numbers = day_numbers(count)] {
        unsigned int sum = 0;
        for (unsigned int const number : numbers) {
            date const day = date_of(number);
            sum += 10000 * day.year() + 100 * day.month() + day.day();
        }
        return sum;
    };
}

} // namespace

void add_benchmarks() {
    constexpr std::size_t count = 1000;
    std::vector<unsigned int> const numbers = day_numbers(count);
    std::vector<year_month_day> days;
    for (unsigned int const number : numbers) days.emplace_back(origin + chrono::days(number));

    bench::comparison to_number("dates/to_day_number/random", count);
    to_number.side("zolt", sum_of_numbers(count));
    to_number.side("chrono", [days] {
        unsigned int sum = 0;
        for (year_month_day const& day : days) sum += static_cast<unsigned int>((sys_days(day) - origin).count());
        return sum;
    });

    bench::comparison from_number("dates/from_day_number/random", count);
    from_number.side("zolt", sum_of_dates(count));
    from_number.side("chrono", [numbers] {
        unsigned int sum = 0;
        for (unsigned int const number : numbers) {
            year_month_day const day(origin + chrono::days(number));
            sum += 10000 * static_cast<unsigned int>(static_cast<int>(day.year())) +
                   100 * static_cast<unsigned int>(day.month()) + static_cast<unsigned int>(day.day());
        }
        return sum;
    });

    bench::growth("dates/to_day_number", 100, sum_of_numbers);
    bench::growth("dates/from_day_number", 100, sum_of_dates);
}

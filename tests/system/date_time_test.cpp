// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/exceptions/exception.hpp>
#include <zolt/system/date_time/date_time.hpp>

#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/time.h>
#include <time.h>

namespace {

namespace date_time = ZOLT_2_18::system::date_time;
using date_time::date;
using date_time::date_duration;
using date_time::date_time_t;
using date_time::time_duration;
using clock = date_time::time;

template <typename... Args>
std::string printed(char const* format, Args... args) {
    char buffer[64];
    return std::snprintf(buffer, sizeof buffer, format, args...) > 0 ? buffer : "";
}

std::string text(date const& d) { return printed("%u-%02u-%02u", d.year(), d.month(), d.day()); }
std::string text(clock const& t) {
    return printed("%02u:%02u:%02u.%03u", t.hour(), t.minute(), t.second(), t.millisecond());
}
std::string text(date_time_t const& m) { return text(m.date()) + " " + text(m.time()); }

time_duration milliseconds(long long count) { return time_duration(0, 0, 0, count); }

/// What the action raised: "source:line label: message".
template <typename Action>
std::string fault_of(Action action) {
    try {
        action();
        return "";
    } catch (ZOLT_2_18::exceptions::out_of_range const& e) {
        return printed("%s:%u %s: ", e.where.file, e.where.line, e.where.function) + e.get_message();
    }
}

/// What the action left, with the field that raised.
template <typename T, typename Action>
std::string outcome(T value, Action action) {
    std::string const fault = fault_of([&] { action(value); });
    return text(value) + fault.substr(0, fault.rfind(':')).erase(0, fault.find(' '));
}

// A calendar by rote, the oracle for day numbers.
bool is_leap(unsigned y) { return y % 400 == 0 || (y % 4 == 0 && y % 100 != 0); }
unsigned month_length(unsigned m, unsigned y) {
    return m == 2 ? (is_leap(y) ? 29 : 28) : m == 4 || m == 6 || m == 9 || m == 11 ? 30 : 31;
}

TEST(Date, FollowsTheCalendarButForLeapDays) {
    unsigned number = 0;
    for (unsigned month = 2; month < 12 * 2402; ++month) { // from March of year 0
        unsigned const y = month / 12, m = month % 12 + 1;
        date const last(31, m, y);
        ASSERT_EQ(is_leap(y), last.is_leap_year()) << y;
        ASSERT_EQ(month_length(m, y), last.day()) << text(last);
        ASSERT_EQ(month_length(m, y) < 31, last.is_day_constrained()) << text(last);
        for (unsigned d = 1; d <= month_length(m, y); ++d) {
            date const day(d, m, y), expected = m == 2 && d == 29 ? date(1, 3, y) : day;
            date back, moved(1, 3, 0);
            back.pJulian_day_number(++number);
            moved += date_duration(static_cast<int>(number) - 1);
            ASSERT_TRUE(day.pJulian_day_number() == number && back == expected && moved == expected) << text(day);
        }
    }
    EXPECT_EQ(730486u, date(1, 3, 2000).pJulian_day_number());
}

TEST(Date, MovesByDays) {
    struct {
        date start;
        int days;
        char const *sum, *difference;
    } const rows[] = {
        {date(10, 3, 2023), -9, "2023-03-01", "2023-03-19"},
        {date(31, 2, 2023), 0, "2023-03-03", "2023-03-03"},
        // the leap day is passed over
        {date(1, 3, 2000), -1, "2000-03-01", "2000-03-02"},
        {date(28, 2, 2024), 1, "2024-03-01", "2024-02-27"},
        // the number wraps
        {date(1, 3, 0), -1, "11759221-03-20", "0-03-02"},
        {date(1, 1, 0), 0, "2851611-02-09", "2851611-02-09"},
        {date(19, 3, 11759221), 2, "0-03-01", "11759221-03-17"},
        {date(5, 3, 0), 5, "0-03-10", "0-03-05 minus_assign"},
        {date(1, 3, 2000), INT_MIN, "5881610-09-10", "5881610-09-10"},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(text(row.start) + printed(" %d", row.days));
        EXPECT_EQ(row.sum, outcome(row.start, [&](date& d) { d += row.days; }));
        EXPECT_EQ(row.difference, outcome(row.start, [&](date& d) { d -= row.days; }));
    }
}

TEST(DateTime, SettersRefuseAndKeepTheField) {
    struct {
        unsigned (date_time_t::*set)(unsigned);
        unsigned first, last;
        char const* fault;
    } const rows[] = {
        {&date_time_t::day, 1, 31, "system/date_time/date:68 day: day value out of valid range"},
        {&date_time_t::month, 1, 12, "system/date_time/date:58 month: month value out of valid range"},
        {&date_time_t::hour, 0, 23, "system/date_time/time:51 hour: Hour value out of valid range"},
        {&date_time_t::minute, 0, 59, "system/date_time/time:61 minute: Minute value out of valid range"},
        {&date_time_t::second, 0, 59, "system/date_time/time:71 second: Second value out of valid range"},
        {&date_time_t::millisecond, 0, 999,
         "system/date_time/time:81 millisecond: Millisecond value out of valid range"},
    };
    for (auto const& row : rows) {
        date_time_t moment(date(4, 5, 6), clock(7, 8, 9, 10));
        for (unsigned value : {row.first - 1, row.last + 1}) {
            EXPECT_EQ(row.fault, fault_of([&] { (moment.*row.set)(value); })) << value;
            EXPECT_EQ("6-05-04 07:08:09.010", text(moment)) << row.fault;
        }
        EXPECT_EQ(row.first, (moment.*row.set)(row.first)) << row.fault;
        EXPECT_EQ(row.last, (moment.*row.set)(row.last)) << row.fault;
    }
    EXPECT_EQ("system/date_time/date:146 minus_assign: date value out of valid range",
              fault_of([] { date(1, 3, 0) -= 1; }));
    // constructors check in the order of their arguments
    EXPECT_EQ(rows[0].fault, fault_of([] { date(0, 13, 2000); }));
    EXPECT_EQ(rows[2].fault, fault_of([] { clock(24, 60, 60, 1000); }));
}

TEST(Duration, SumsAndParts) {
    struct {
        time_duration duration;
        long long total;
        char const* parts;
    } const rows[] = {
        {time_duration(1, 30, 0, 0), 5400000, "1 30 0 0"},
        {time_duration(-30, 0, -59, -999), -108059999, "-30 0 -59 -999"},
        {time_duration(596, 31, 23, 647), 2147483647, "596 31 23 647"},
        // the first three wrap in 32 bits, the milliseconds in 64
        {time_duration(596, 31, 24, 0), -2147483296, "-596 -31 -23 -296"},
        {time_duration(0, 0, 1, LLONG_MAX), LLONG_MIN + 999, "-2562047788015 -12 -54 999"},
        // the last part sees 32 bits
        {milliseconds(2147483648), 2147483648, "596 31 23 -648"},
        // doubles round
        {milliseconds((1LL << 60) + 1), (1LL << 60) + 1, "320255973501 54 7 1"},
        {milliseconds((3600000LL << 40) - 1), (3600000LL << 40) - 1, "1099511627776 0 0 -1"},
    };
    for (auto const& row : rows) {
        time_duration const& d = row.duration;
        EXPECT_EQ(row.total, d.total_milliseconds());
        EXPECT_EQ(row.parts, printed("%lld %d %d %d", d.hour(), d.minute(), d.second(), d.millisecond()));
        EXPECT_EQ(row.total < 0, d.is_negative());
    }
    EXPECT_EQ(1.5, rows[0].duration.total_hours());
    EXPECT_EQ(90.0, rows[0].duration.total_minutes());
    EXPECT_EQ(0.001, milliseconds(1).total_seconds());
    EXPECT_LT(milliseconds(-1), time_duration());
    EXPECT_EQ(7, date_duration().days(7));
    // sums wrap
    EXPECT_EQ(INT_MIN, (date_duration(INT_MAX) + 1).days());
    EXPECT_EQ(INT_MAX, (date_duration(INT_MIN) - 1).days());
    EXPECT_EQ(milliseconds(LLONG_MIN), milliseconds(LLONG_MAX) + milliseconds(1));
    EXPECT_EQ(milliseconds(LLONG_MAX), milliseconds(LLONG_MIN) - milliseconds(1));
}

TEST(Time, GoesRoundTheClock) {
    struct {
        clock start;
        long long count;
        char const* sum;
    } const rows[] = {
        {clock(23, 59, 59, 999), 1, "00:00:00.000"},
        {clock(0, 0, 0, 0), -1, "23:59:59.999"},
        {clock(1, 2, 3, 4), 3 * 86400000LL + 5, "01:02:03.009"},
        {clock(0, 0, 0, 0), -3 * 86400000LL, "00:00:00.000"},
        // more than a day before midnight: fields before the refused one are set
        {clock(1, 30, 0, 0), -27 * 3600000LL, "01:30:00.000 hour"},
        {clock(1, 30, 0, 0), -(25 * 60 + 31) * 60000LL, "00:30:00.000 minute"},
        {clock(0, 0, 7, 0), -86400000 - 8000, "00:00:07.000 second"},
        {clock(0, 0, 0, 7), -86400000 - 8, "00:00:00.007 millisecond"},
        {clock(1, 2, 3, 4), LLONG_MAX, "01:02:03.004 hour"},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(text(row.start) + printed(" %lld", row.count));
        EXPECT_EQ(row.sum, outcome(row.start, [&](clock& c) { c += milliseconds(row.count); }));
        EXPECT_EQ(row.sum, outcome(row.start, [&](clock& c) { c -= milliseconds(0) - milliseconds(row.count); }));
    }
    time_duration const hour(1, 0, 0, 0);
    EXPECT_EQ("00:30:00.000", text(clock(23, 30, 0, 0) + hour));
    EXPECT_EQ("00:30:00.000", text(hour + clock(23, 30, 0, 0)));
    EXPECT_EQ("23:30:00.000", text(clock(0, 30, 0, 0) - hour));
    EXPECT_EQ(-3723004, (clock() - clock(1, 2, 3, 4)).total_milliseconds());
}

TEST(DateTime, MovesInItsOwnWay) {
    struct {
        date day;
        int hours; // from 12:00, forth and back
        char const *sum, *difference;
    } const rows[] = {
        {date(9, 1, 2023), 13, "2023-01-09 01:00:00.000", "2023-01-09 23:00:00.000"},
        {date(9, 1, 2023), 24, "2023-01-09 12:00:00.000 day", "2023-01-09 12:00:00.000 day"},
        {date(9, 1, 2023), -25, "2023-01-09 12:00:00.000 day", "2023-01-09 12:00:00.000 day"},
        {date(9, 1, 2023), 25, "2023-01-02 13:00:00.000", "2022-12-31 11:00:00.000"},
        {date(9, 3, 2024), 25, "2024-03-02 13:00:00.000", "2024-03-01 11:00:00.000"},
        {date(9, 2, 2023), 47, "2023-03-18 11:00:00.000", "2023-01-31 12:00:00.000 hour"},
        {date(9, 3, 0), 26, "0-03-04 14:00:00.000", "0-03-02 12:00:00.000 minus_assign"},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(text(row.day) + printed(" %d", row.hours));
        time_duration const duration(row.hours, 0, 0, 0);
        date_time_t const start(row.day, clock(12, 0, 0, 0));
        EXPECT_EQ(row.sum, outcome(start, [&](date_time_t& m) { m += duration; }));
        EXPECT_EQ(row.difference, outcome(start, [&](date_time_t& m) { m -= duration; }));
    }
}

TEST(DateTime, IgnoresDaysAndReplacesParts) {
    date_time_t moment(date(31, 2, 2024), clock(1, 2, 3, 4));
    moment += date_duration(5);
    moment -= date_duration(9);
    EXPECT_EQ("2024-02-29 01:02:03.004", text(moment));
    EXPECT_TRUE(moment.is_leap_year() && moment.is_day_constrained());
    EXPECT_EQ("2023-01-02 01:02:03.004", text(moment = date(2, 1, 2023)));
    EXPECT_EQ("2023-01-02 00:00:00.005", text(moment = clock(0, 0, 0, 5)));
    EXPECT_LT(moment, date_time_t(moment.date(), clock(0, 0, 0, 6)));
    EXPECT_GT(moment, date_time_t(date(1, 1, 2023), clock(0, 0, 0, 6)));
    EXPECT_EQ(moment, date_time_t().assign(moment.date(), moment.time()));
}

TEST(DateTime, EveryPartCountsForEquality) {
    date_time_t const moment(date(1, 2, 3), clock(4, 5, 6, 7));
    using setter = unsigned (date_time_t::*)(unsigned);
    for (setter const set : std::initializer_list<setter>{
             &date_time_t::day, &date_time_t::month, &date_time_t::year, &date_time_t::hour, &date_time_t::minute,
             &date_time_t::second, &date_time_t::millisecond}) {
        date_time_t other;
        other = moment;
        EXPECT_EQ(moment, other);
        (other.*set)(9);
        EXPECT_FALSE(moment == other) << text(other);
    }
    date_duration days;
    time_duration span;
    EXPECT_TRUE((days = date_duration(5)) == date_duration(5) && (span = milliseconds(5)) == milliseconds(5));
}

std::string c_library_reading(bool local) {
    ::timeval now{};
    ::gettimeofday(&now, nullptr);
    char buffer[32];
    ::strftime(buffer, sizeof buffer, "%Y-%m-%d %T", local ? ::localtime(&now.tv_sec) : ::gmtime(&now.tv_sec));
    return buffer + printed(".%03d", static_cast<int>(now.tv_usec / 1000));
}

TEST(Clock, ReadsAsTheCLibraryDoes) {
    for (char const* zone : {"XYZ-13:45", "XYZ+11:30"}) { // a change of the zone is seen
        ::setenv("TZ", zone, 1);
        for (bool local : {false, true}) {
            std::string expected, parts, both;
            int tries = 0;
            do { // again when the clock ticks in between
                expected = c_library_reading(local);
                both = text(local ? date_time_t::local_date_time() : date_time_t::UTC_date_time());
                parts = text(date_time_t(local ? date::local_date() : date::UTC_date(),
                                         local ? clock::local_time() : clock::UTC_time()));
            } while ((parts != expected || both != expected) && ++tries < 1000);
            EXPECT_EQ(expected, parts);
            EXPECT_EQ(expected, both);
        }
    }
    ::unsetenv("TZ");
}

} // namespace

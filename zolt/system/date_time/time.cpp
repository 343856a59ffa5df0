// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Arithmetic goes by way of a duration from midnight, which is reduced to one day and read back.
#include <zolt/system/date_time/time.hpp>

#include <zolt/exceptions/exception.hpp>
#include <zolt/system/date_time/clock_private.hpp>

#include <tuple>

namespace ZOLT_2_18::system::date_time {
namespace {

struct checked_field {
    unsigned int limit;
    char const* message;
    unsigned int line;
    char const* label;
};

constexpr checked_field hour_field{24, "Hour value out of valid range", 51, "hour"};
constexpr checked_field minute_field{60, "Minute value out of valid range", 61, "minute"};
constexpr checked_field second_field{60, "Second value out of valid range", 71, "second"};
constexpr checked_field millisecond_field{1000, "Millisecond value out of valid range", 81, "millisecond"};

[[noreturn]] void raise(checked_field const& field) {
    throw exceptions::out_of_range(field.message, field.line, "system/date_time/time", field.label);
}

unsigned int checked(unsigned int value, checked_field const& field) {
    if (value >= field.limit) raise(field);
    return value;
}

constexpr long long milliseconds_of_day = 86400000;

/// One day is added for times before midnight; what is still negative then stays negative.
time_duration reduced_to_a_day(time_duration const& total) noexcept {
    time_duration const raised = total + time_duration(0, 0, 0, milliseconds_of_day);
    return time_duration(0, 0, 0, raised.total_milliseconds() % milliseconds_of_day);
}

time_duration since_midnight(time const& moment) noexcept { return moment - time(); }

constexpr int difference(unsigned int left, unsigned int right) noexcept {
    return static_cast<int>(left) - static_cast<int>(right);
}

} // namespace

time::time(unsigned int hour_value, unsigned int minute_value, unsigned int second_value,
           unsigned int millisecond_value) {
    hour(hour_value);
    minute(minute_value);
    second(second_value);
    millisecond(millisecond_value);
}

time time::local_time() { return _private::read_clock(_private::clock_zone::local).time(); }

time time::UTC_time() { return _private::read_clock(_private::clock_zone::utc).time(); }

unsigned int time::hour(unsigned int value) { return m_hour = checked(value, hour_field); }
unsigned int time::minute(unsigned int value) { return m_minute = checked(value, minute_field); }
unsigned int time::second(unsigned int value) { return m_second = checked(value, second_field); }
unsigned int time::millisecond(unsigned int value) { return m_millisecond = checked(value, millisecond_field); }

time& time::assign(time const& other) noexcept {
    m_hour = other.m_hour;
    m_minute = other.m_minute;
    m_second = other.m_second;
    m_millisecond = other.m_millisecond;
    return *this;
}

time& time::plus_assign(time_duration const& duration) {
    time_duration const reached = reduced_to_a_day(since_midnight(*this) + duration);
    hour(static_cast<unsigned int>(reached.hour()));
    minute(static_cast<unsigned int>(reached.minute()));
    second(static_cast<unsigned int>(reached.second()));
    millisecond(static_cast<unsigned int>(reached.millisecond()));
    return *this;
}

time& time::minus_assign(time_duration const& duration) { return plus_assign(time_duration() - duration); }

bool time::equal(time const& other) const noexcept {
    return m_hour == other.m_hour && m_minute == other.m_minute && m_second == other.m_second &&
           m_millisecond == other.m_millisecond;
}

bool time::less(time const& other) const noexcept {
    return std::tie(m_hour, m_minute, m_second, m_millisecond) <
           std::tie(other.m_hour, other.m_minute, other.m_second, other.m_millisecond);
}

time_duration minus(time const& left, time const& right) noexcept {
    return time_duration(difference(left.hour(), right.hour()), difference(left.minute(), right.minute()),
                         difference(left.second(), right.second()),
                         difference(left.millisecond(), right.millisecond()));
}

time plus(time const& start, time_duration const& duration) { return time(start).plus_assign(duration); }

time plus(time_duration const& duration, time const& start) { return plus(start, duration); }

time minus(time const& start, time_duration const& duration) { return time(start).minus_assign(duration); }

} // namespace ZOLT_2_18::system::date_time

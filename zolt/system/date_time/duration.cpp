// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Counts wrap: sums are made of wider or of unsigned integers, and the low bits read back as signed.
#include <zolt/system/date_time/duration.hpp>

namespace ZOLT_2_18::system::date_time {
namespace {

constexpr long long wrapping_sum(long long left, long long right) noexcept {
    return static_cast<long long>(static_cast<unsigned long long>(left) + static_cast<unsigned long long>(right));
}

constexpr long long wrapping_difference(long long left, long long right) noexcept {
    return static_cast<long long>(static_cast<unsigned long long>(left) - static_cast<unsigned long long>(right));
}

/// In 32 bits, which is part of the interface.
constexpr int clock_milliseconds(int hours, int minutes, int seconds) noexcept {
    return static_cast<int>(3600000u * static_cast<unsigned int>(hours) +
                            60000u * static_cast<unsigned int>(minutes) +
                            1000u * static_cast<unsigned int>(seconds));
}

constexpr int below_60(double total) noexcept { return static_cast<int>(static_cast<long long>(total) % 60); }

} // namespace

date_duration& date_duration::assign(date_duration const& other) noexcept {
    m_days = other.m_days;
    return *this;
}

date_duration& date_duration::plus_assign(date_duration const& other) noexcept {
    m_days = static_cast<int>(static_cast<long long>(m_days) + other.m_days);
    return *this;
}

date_duration& date_duration::minus_assign(date_duration const& other) noexcept {
    m_days = static_cast<int>(static_cast<long long>(m_days) - other.m_days);
    return *this;
}

date_duration plus(date_duration const& left, date_duration const& right) noexcept {
    return date_duration(left).plus_assign(right);
}

date_duration minus(date_duration const& left, date_duration const& right) noexcept {
    return date_duration(left).minus_assign(right);
}

time_duration::time_duration(int hours, int minutes, int seconds, long long milliseconds) noexcept
    : m_milliseconds(wrapping_sum(clock_milliseconds(hours, minutes, seconds), milliseconds)) {}

double time_duration::total_seconds() const noexcept { return static_cast<double>(m_milliseconds) / 1000.0; }
double time_duration::total_minutes() const noexcept { return static_cast<double>(m_milliseconds) / 60000.0; }
double time_duration::total_hours() const noexcept { return static_cast<double>(m_milliseconds) / 3600000.0; }

long long time_duration::hour() const noexcept { return static_cast<long long>(total_hours()); }
int time_duration::minute() const noexcept { return below_60(total_minutes()); }
int time_duration::second() const noexcept { return below_60(total_seconds()); }
int time_duration::millisecond() const noexcept { return static_cast<int>(m_milliseconds) % 1000; }

time_duration& time_duration::assign(time_duration const& other) noexcept {
    m_milliseconds = other.m_milliseconds;
    return *this;
}

time_duration& time_duration::plus_assign(time_duration const& other) noexcept {
    m_milliseconds = wrapping_sum(m_milliseconds, other.m_milliseconds);
    return *this;
}

time_duration& time_duration::minus_assign(time_duration const& other) noexcept {
    m_milliseconds = wrapping_difference(m_milliseconds, other.m_milliseconds);
    return *this;
}

time_duration plus(time_duration const& left, time_duration const& right) noexcept {
    return time_duration(left).plus_assign(right);
}

time_duration minus(time_duration const& left, time_duration const& right) noexcept {
    return time_duration(left).minus_assign(right);
}

} // namespace ZOLT_2_18::system::date_time

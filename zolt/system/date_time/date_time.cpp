// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The parts do the work. The odd road that a long duration takes through the day is part of the interface.
#include <zolt/system/date_time/date_time.hpp>

#include <zolt/system/date_time/clock_private.hpp>

namespace ZOLT_2_18::system::date_time {
namespace {

constexpr int hours_of_day = 24;

bool lasts_a_day(time_duration const& duration) noexcept {
    return duration.hour() >= hours_of_day || duration.hour() <= -hours_of_day;
}

/// Sets the day to the hours beyond whole days; as many days are to be moved.
date_duration set_day_to_hours(date_time_t& moment, time_duration const& duration) {
    return static_cast<int>(moment.day(static_cast<unsigned int>(duration.hour() % hours_of_day)));
}

} // namespace

date_time_t date_time_t::local_date_time() { return _private::read_clock(_private::clock_zone::local); }

date_time_t date_time_t::UTC_date_time() { return _private::read_clock(_private::clock_zone::utc); }

date_time_t& date_time_t::assign(date_time_t const& other) noexcept { return assign(other.m_date, other.m_time); }

date_time_t& date_time_t::assign(date_time::date const& date_part) noexcept {
    m_date = date_part;
    return *this;
}

date_time_t& date_time_t::assign(date_time::time const& time_part) noexcept {
    m_time = time_part;
    return *this;
}

date_time_t& date_time_t::assign(date_time::date const& date_part, date_time::time const& time_part) noexcept {
    return assign(date_part).assign(time_part);
}

date_time_t& date_time_t::plus_assign(time_duration const& duration) {
    if (lasts_a_day(duration)) m_date += set_day_to_hours(*this, duration);
    m_time += duration;
    return *this;
}

date_time_t& date_time_t::minus_assign(time_duration const& duration) {
    if (lasts_a_day(duration)) m_date -= set_day_to_hours(*this, duration);
    m_time -= duration;
    return *this;
}

bool date_time_t::equal(date_time_t const& other) const noexcept {
    return m_date == other.m_date && m_time == other.m_time;
}

bool date_time_t::less(date_time_t const& other) const noexcept {
    return m_date != other.m_date ? m_date < other.m_date : m_time < other.m_time;
}

} // namespace ZOLT_2_18::system::date_time

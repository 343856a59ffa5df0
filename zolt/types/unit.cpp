// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A length in a unit is the internal length times the number of those units in an inch, over the
// 100000 internal units of an inch.
#include <zolt/types/unit.hpp>

#include <zolt/types/saturate_private.hpp>

#include <cmath>

namespace ZOLT_2_18::types {
namespace {

constexpr int internal_kind = 1; // read as it is stored, without going through the factor
constexpr double internal_per_inch = 100000.0;

/// Units in an inch, by kind; 0 where there is no such kind.
constexpr double per_inch(int kind) noexcept {
    constexpr double factors[] = {0.0, internal_per_inch, 300.0, 25.4, 2.54, 1.0, 72.0, 6.0, 96.0};
    return kind >= 1 && kind <= 8 ? factors[kind] : 0.0;
}

double half_up(double value) noexcept { return std::floor(value + 0.5); }

double whole(double value) noexcept {
    if (value != value) return 0.0;
    return std::trunc(value) + 0.0; // the sum turns a negative zero into a plain one
}

} // namespace

// The casts between integers keep the low 32 bits.
device_unit::device_unit(signed char const& count) noexcept : m_count(count) {}
device_unit::device_unit(unsigned char const& count) noexcept : m_count(count) {}
device_unit::device_unit(short const& count) noexcept : m_count(count) {}
device_unit::device_unit(unsigned short const& count) noexcept : m_count(count) {}
device_unit::device_unit(int const& count) noexcept : m_count(count) {}
device_unit::device_unit(unsigned int const& count) noexcept : m_count(static_cast<int>(count)) {}
device_unit::device_unit(long const& count) noexcept : m_count(static_cast<int>(count)) {}
device_unit::device_unit(unsigned long const& count) noexcept : m_count(static_cast<int>(count)) {}
device_unit::device_unit(long long const& count) noexcept : m_count(static_cast<int>(count)) {}
device_unit::device_unit(unsigned long long const& count) noexcept : m_count(static_cast<int>(count)) {}
device_unit::device_unit(float const& count) noexcept : m_count(_private::saturated<int>(count)) {}
device_unit::device_unit(double const& count) noexcept : m_count(_private::saturated<int>(count)) {}

device_unit::~device_unit() = default;

device_unit& device_unit::assign(device_unit const& other) noexcept {
    m_count = other.m_count;
    return *this;
}

device_unit& device_unit::assign(long count) noexcept {
    m_count = static_cast<int>(count);
    return *this;
}

int device_unit::do_type() const { return 1; }
int device_unit::do_as_int32() const { return m_count; }
float device_unit::do_as_float() const { return static_cast<float>(m_count); }
double device_unit::do_as_double() const { return m_count; }

absolute_unit::absolute_unit(long internal) noexcept : m_internal(static_cast<double>(internal)) {}
absolute_unit::absolute_unit(int internal) noexcept : m_internal(internal) {}
absolute_unit::absolute_unit(double internal) noexcept : m_internal(whole(internal)) {}

absolute_unit::~absolute_unit() = default;

absolute_unit& absolute_unit::assign(absolute_unit const& other) noexcept {
    m_internal = other.m_internal;
    return *this;
}

int absolute_unit::as_md() const noexcept { return _private::saturated<int>(m_internal); }

double absolute_unit::value() const {
    int const kind = type();
    if (kind == internal_kind) return m_internal;
    double const factor = per_inch(kind);
    return factor == 0.0 ? 0.0 : m_internal * factor / internal_per_inch;
}

void absolute_unit::value(double length) {
    int const kind = type();
    double const factor = per_inch(kind);
    if (kind == internal_kind) {
        m_internal = length;
    } else {
        m_internal = factor == 0.0 ? 0.0 : length * internal_per_inch / factor;
    }
}

template <int N>
basic_absolute_impl<N>::~basic_absolute_impl() = default;

template <int N>
int basic_absolute_impl<N>::do_type() const {
    return N;
}

template <int N>
int basic_absolute_impl<N>::do_as_int32() const {
    return _private::saturated<int>(half_up(value()));
}

template <int N>
double basic_absolute_impl<N>::do_as_double() const {
    return half_up(value() * 100.0) / 100.0;
}

template class basic_absolute_impl<1>;
template class basic_absolute_impl<2>;
template class basic_absolute_impl<3>;
template class basic_absolute_impl<4>;
template class basic_absolute_impl<5>;
template class basic_absolute_impl<6>;
template class basic_absolute_impl<7>;
template class basic_absolute_impl<8>;

} // namespace ZOLT_2_18::types

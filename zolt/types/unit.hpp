// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Lengths for layout: device_unit, a whole number of a device's own units, and absolute_unit, a
// physical length that is kept in 1/100000 inch and read in one of eight units:
//
//     basic_absolute_impl<1>  1/100000 inch, the internal unit
//     basic_absolute_impl<2>  dots at 300 per inch
//     basic_absolute_impl<3>  millimetres
//     basic_absolute_impl<4>  centimetres
//     basic_absolute_impl<5>  inches
//     basic_absolute_impl<6>  points, 1/72 inch
//     basic_absolute_impl<7>  picas, 1/6 inch
//     basic_absolute_impl<8>  pixels at 96 per inch
//
//     types::basic_absolute_impl<3> width(100000);       // an inch, given in the internal unit
//     width.value();                                     // 25.4
//     types::basic_absolute_impl<6>(width).value();      // 72
//
// A floating-point number that becomes an integer is truncated toward zero; one beyond the integer's
// range gives the nearest limit, not-a-number gives 0.
#pragma once

#include <zolt/export.hpp>

namespace ZOLT_2_18::types {

/// A signed 32-bit count of device units.
class ZOLT_API device_unit {
public:
    /// No units.
    device_unit() noexcept = default;
    /// Floating-point counts are truncated toward zero, wider integers reduced to their low 32 bits.
    device_unit(signed char const& count) noexcept;
    device_unit(unsigned char const& count) noexcept;
    device_unit(short const& count) noexcept;
    device_unit(unsigned short const& count) noexcept;
    device_unit(int const& count) noexcept;
    device_unit(unsigned int const& count) noexcept;
    device_unit(long const& count) noexcept;
    device_unit(unsigned long const& count) noexcept;
    device_unit(long long const& count) noexcept;
    device_unit(unsigned long long const& count) noexcept;
    device_unit(float const& count) noexcept;
    device_unit(double const& count) noexcept;
    device_unit(device_unit const&) noexcept = default;

    device_unit& operator=(device_unit const& other) noexcept { return assign(other); }
    device_unit& operator=(long count) noexcept { return assign(count); }
    device_unit& assign(device_unit const& other) noexcept;
    /// Reduced to its low 32 bits.
    device_unit& assign(long count) noexcept;

    /// Each of these asks the virtual operation of its name.
    int type() const { return do_type(); }
    int as_int32() const { return do_as_int32(); }
    float as_float() const { return do_as_float(); }
    double as_double() const { return do_as_double(); }

    /// True when the counts are equal.
    bool equal(device_unit const& other) const noexcept { return m_count == other.m_count; }
    bool operator==(device_unit const& other) const noexcept { return equal(other); }
    bool operator!=(device_unit const& other) const noexcept { return !equal(other); }

    // The order of the virtual operations is part of the binary interface.
    virtual int do_type() const; ///< 1
    /// The count.
    virtual int do_as_int32() const;
    virtual float do_as_float() const;
    virtual double do_as_double() const;
    virtual ~device_unit();

private:
    int m_count = 0;
};

/// A physical length. A subclass says by do_type() in which unit it is read, 1 to 8 as listed above.
class ZOLT_API absolute_unit {
public:
    /// No length.
    absolute_unit() noexcept = default;
    /// A length in the internal unit.
    absolute_unit(long internal) noexcept;
    absolute_unit(int internal) noexcept;
    /// A length in the internal unit, truncated toward zero to a whole number; not-a-number gives 0.
    /// Kept: fractions of the internal unit are dropped here, though value(double) stores them.
    absolute_unit(double internal) noexcept;
    absolute_unit(absolute_unit const&) noexcept = default;

    /// Takes over the length; the unit in which it is read stays.
    absolute_unit& operator=(absolute_unit const& other) noexcept { return assign(other); }
    absolute_unit& assign(absolute_unit const& other) noexcept;

    /// Each of these asks the virtual operation of its name.
    int type() const { return do_type(); }
    int as_int32() const { return do_as_int32(); }
    double as_double() const { return do_as_double(); }

    /// The internal value truncated to an integer.
    int as_md() const noexcept;

    /// The length in the unit of type(), not rounded; 0 when type() is none of 1 to 8.
    double value() const;
    /// Stores a length given in the unit of type(), fractions included; a type() that is none of
    /// 1 to 8 stores 0.
    void value(double length);

    // The order of the virtual operations is part of the binary interface.
    virtual int do_type() const = 0;         ///< the number of the unit
    virtual int do_as_int32() const = 0;     ///< the length in that unit, rounded
    virtual double do_as_double() const = 0; ///< the same with two decimals
    virtual ~absolute_unit();

private:
    double m_internal = 0.0;
};

/// A length that is read in unit N, 1 to 8.
template <int N>
class ZOLT_API basic_absolute_impl : public absolute_unit {
public:
    static_assert(N >= 1 && N <= 8, "there are eight units");

    basic_absolute_impl() noexcept = default;
    /// A length in the internal unit; the fraction of a double is dropped.
    basic_absolute_impl(long internal) noexcept : absolute_unit(internal) {}
    basic_absolute_impl(int internal) noexcept : absolute_unit(internal) {}
    basic_absolute_impl(double internal) noexcept : absolute_unit(internal) {}
    basic_absolute_impl(basic_absolute_impl const&) noexcept = default;
    /// The same length, read in unit N from now on.
    basic_absolute_impl(absolute_unit const& other) noexcept : absolute_unit(other) {}
    basic_absolute_impl& operator=(basic_absolute_impl const&) noexcept = default;

    /// N.
    int do_type() const override;
    /// value() rounded half up.
    int do_as_int32() const override;
    /// value() rounded half up to two decimals.
    double do_as_double() const override;
    ~basic_absolute_impl() override;
};

extern template class ZOLT_API basic_absolute_impl<1>;
extern template class ZOLT_API basic_absolute_impl<2>;
extern template class ZOLT_API basic_absolute_impl<3>;
extern template class ZOLT_API basic_absolute_impl<4>;
extern template class ZOLT_API basic_absolute_impl<5>;
extern template class ZOLT_API basic_absolute_impl<6>;
extern template class ZOLT_API basic_absolute_impl<7>;
extern template class ZOLT_API basic_absolute_impl<8>;

} // namespace ZOLT_2_18::types

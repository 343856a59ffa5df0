// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Numbers packed into byte strings of fixed width, and back. The size is in the name: an image has 2
// bytes for int16, 4 for int32 and float, 8 for int64 and double, on every build. So int32_to_bin_str
// packs the low 32 bits of its `long`, and bin_str_to_int32 gives them back sign-extended. Floating-point
// values travel as their IEEE 754 bit patterns.
//
//     generic::convert::uint32_to_bin_str(0x01020304);              // 04 03 02 01
//     generic::convert::big_endian::uint32_to_bin_str(0x01020304);  // 01 02 03 04
//     generic::convert::bin_str_to_int16(std::string("\x34\x12"));  // 0x1234
//
// Readers take either a pointer, which must have the whole image behind it and needs no alignment, or a
// string: one shorter than the image gives 0, of a longer one the first bytes are read.
#pragma once

#include <zolt/export.hpp>

#include <string>

namespace ZOLT_2_18::generic::convert {

// Native order: the value's bytes as they lie in memory, least significant first on x86.

/// The 2, 4 or 8 bytes of the value; of a long the low 32 bits.
ZOLT_API std::string int16_to_bin_str(short const& value);
ZOLT_API std::string int32_to_bin_str(long const& value);
ZOLT_API std::string int64_to_bin_str(long long const& value);
ZOLT_API std::string uint16_to_bin_str(unsigned short const& value);
ZOLT_API std::string uint32_to_bin_str(unsigned long const& value);
ZOLT_API std::string uint64_to_bin_str(unsigned long long const& value);
ZOLT_API std::string float_to_bin_str(float const& value);
ZOLT_API std::string double_to_bin_str(double const& value);

/// The value of such bytes; 32-bit integers come back with their sign.
ZOLT_API short bin_str_to_int16(char const* bytes);
ZOLT_API short bin_str_to_int16(std::string const& bytes);
ZOLT_API long bin_str_to_int32(char const* bytes);
ZOLT_API long bin_str_to_int32(std::string const& bytes);
ZOLT_API long long bin_str_to_int64(char const* bytes);
ZOLT_API long long bin_str_to_int64(std::string const& bytes);
ZOLT_API unsigned short bin_str_to_uint16(char const* bytes);
ZOLT_API unsigned short bin_str_to_uint16(std::string const& bytes);
ZOLT_API unsigned long bin_str_to_uint32(char const* bytes);
ZOLT_API unsigned long bin_str_to_uint32(std::string const& bytes);
ZOLT_API unsigned long long bin_str_to_uint64(char const* bytes);
ZOLT_API unsigned long long bin_str_to_uint64(std::string const& bytes);
ZOLT_API float bin_str_to_float(char const* bytes);
ZOLT_API float bin_str_to_float(std::string const& bytes);
ZOLT_API double bin_str_to_double(char const* bytes);
ZOLT_API double bin_str_to_double(std::string const& bytes);

/// Kept: most significant byte first, the same as big_endian in spite of the name.
namespace little_endian {

/// The 2, 4 or 8 bytes of the value; of a long the low 32 bits.
ZOLT_API std::string int16_to_bin_str(short const& value);
ZOLT_API std::string int32_to_bin_str(long const& value);
ZOLT_API std::string int64_to_bin_str(long long const& value);
ZOLT_API std::string uint16_to_bin_str(unsigned short const& value);
ZOLT_API std::string uint32_to_bin_str(unsigned long const& value);
ZOLT_API std::string uint64_to_bin_str(unsigned long long const& value);
ZOLT_API std::string float_to_bin_str(float const& value);
ZOLT_API std::string double_to_bin_str(double const& value);

/// The value of such bytes; 32-bit integers come back with their sign.
ZOLT_API short bin_str_to_int16(char const* bytes);
ZOLT_API short bin_str_to_int16(std::string const& bytes);
ZOLT_API long bin_str_to_int32(char const* bytes);
ZOLT_API long bin_str_to_int32(std::string const& bytes);
ZOLT_API long long bin_str_to_int64(char const* bytes);
ZOLT_API long long bin_str_to_int64(std::string const& bytes);
ZOLT_API unsigned short bin_str_to_uint16(char const* bytes);
ZOLT_API unsigned short bin_str_to_uint16(std::string const& bytes);
ZOLT_API unsigned long bin_str_to_uint32(char const* bytes);
ZOLT_API unsigned long bin_str_to_uint32(std::string const& bytes);
ZOLT_API unsigned long long bin_str_to_uint64(char const* bytes);
ZOLT_API unsigned long long bin_str_to_uint64(std::string const& bytes);
ZOLT_API float bin_str_to_float(char const* bytes);
ZOLT_API float bin_str_to_float(std::string const& bytes);
ZOLT_API double bin_str_to_double(char const* bytes);
ZOLT_API double bin_str_to_double(std::string const& bytes);

} // namespace little_endian

/// Most significant byte first.
namespace big_endian {

/// The 2, 4 or 8 bytes of the value; of a long the low 32 bits.
ZOLT_API std::string int16_to_bin_str(short const& value);
ZOLT_API std::string int32_to_bin_str(long const& value);
ZOLT_API std::string int64_to_bin_str(long long const& value);
ZOLT_API std::string uint16_to_bin_str(unsigned short const& value);
ZOLT_API std::string uint32_to_bin_str(unsigned long const& value);
ZOLT_API std::string uint64_to_bin_str(unsigned long long const& value);
ZOLT_API std::string float_to_bin_str(float const& value);
ZOLT_API std::string double_to_bin_str(double const& value);

/// The value of such bytes; 32-bit integers come back with their sign.
ZOLT_API short bin_str_to_int16(char const* bytes);
ZOLT_API short bin_str_to_int16(std::string const& bytes);
ZOLT_API long bin_str_to_int32(char const* bytes);
ZOLT_API long bin_str_to_int32(std::string const& bytes);
ZOLT_API long long bin_str_to_int64(char const* bytes);
ZOLT_API long long bin_str_to_int64(std::string const& bytes);
ZOLT_API unsigned short bin_str_to_uint16(char const* bytes);
ZOLT_API unsigned short bin_str_to_uint16(std::string const& bytes);
ZOLT_API unsigned long bin_str_to_uint32(char const* bytes);
ZOLT_API unsigned long bin_str_to_uint32(std::string const& bytes);
ZOLT_API unsigned long long bin_str_to_uint64(char const* bytes);
ZOLT_API unsigned long long bin_str_to_uint64(std::string const& bytes);
ZOLT_API float bin_str_to_float(char const* bytes);
ZOLT_API float bin_str_to_float(std::string const& bytes);
ZOLT_API double bin_str_to_double(char const* bytes);
ZOLT_API double bin_str_to_double(std::string const& bytes);

} // namespace big_endian
} // namespace ZOLT_2_18::generic::convert

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The formatters behind i18n::format_value, one for each kind of value. Not for applications: these
// functions carry no promise of stability.
//
// Options are a flat sequence of keys and values separated by U+0001, split as
// strings::split_string splits; empty options mean the defaults. Keys and keywords may be cut short:
// "b", "ba", "bas" and "base" are one key. Keys are tried in the order in which they are listed below
// and a text matches the first that it is a leading part of, so an empty text means the first. When a
// key comes twice the last value wins.
//
// Every formatter returns "-0" when it cannot format: an unknown key or keyword, a key without a
// value, a field size or precision outside 0 to 4096 (even if a valid one follows it).
//
// Kept: an empty last value is lost in splitting, so its key stands alone: "-0".
#pragma once

#include <zolt/export.hpp>
#include <zolt/strings/ustring.hpp>
#include <zolt/types/variant.hpp>

namespace ZOLT_2_18::i18n::_private {

/// Stands between a placeholder's name, its option keys and their values.
inline constexpr char option_separator = '\1';

/// What every formatter returns when it cannot format.
inline constexpr char failed_format[] = "-0";

/// An integer in a chosen base, at least as wide as its field. Keys:
///
/// - "base": "dec" (the default), "default" (the same), "spaced_dec" (in groups of three with one
///   blank between them), "hex", "oct" or "bin", tried in this order.
/// - "fieldsize": the least number of characters, prefix and sign included; default 0.
///
/// Decimal forms keep their sign and are filled with blanks on the left. The others start with "0x",
/// "o" or "b", after which zeros fill the field. Their negative values are written as the complement
/// of as many digits as the magnitude has or the field leaves room for, never with a sign: -1 in
/// base 16 is "0xf", in a field of 6 "0xffff".
ZOLT_API strings::ustring8 format_int(long long value, strings::ustring8 const& options);

/// A number with a fixed count of decimals, as printf's "%f" writes it in the C locale in force. Keys:
///
/// - "precision": decimals; default 2.
/// - "fieldsize": the exact number of characters; default 0, which means as many as needed.
///
/// A text shorter than its field is filled with blanks on the left. One that is too long is written
/// as by "%e" instead and cut to the field. Infinities and not-a-number read as printf writes them.
///
/// Kept: of a three-digit exponent the first digit is dropped: 1e100 in a field of 8 is "1.00e+00".
/// Kept: the cut takes no care of what it loses: 1234567 in a field of 6 is "1.23e+".
ZOLT_API strings::ustring8 format_double(double value, strings::ustring8 const& options);

/// Seconds as days, hours, minutes and seconds: "1 dy 2 hr 3 min 4.50 sec" or "1d 2h 3m 4.50s". Leading
/// parts that are zero are left out, the seconds are always written. Keys:
///
/// - "precision": decimals of the seconds; default 2.
/// - "short_form": "true" or "false"; default false.
///
/// Returns "-0" also for a value that is not finite, a day count beyond 64 bits, and seconds that
/// are themselves written as "-0". Kept: every part of a negative duration carries its sign, and
/// seconds that round up to 60 are not carried over: 59.999 is "60.00 sec".
ZOLT_API strings::ustring8 format_duration(double seconds, strings::ustring8 const& options);

/// The amount of a memory size; its unit ("B", or a letter of "KMGTPEZY" and "B") goes to `unit_out`,
/// which is left alone on failure. Keys:
///
/// - "target_unit": the unit to write in, or "any" (the default): the value is divided by 1024 while
///   it is at least that.
/// - "base_unit": the unit that the value is given in; default "B".
/// - "precision", "fieldsize": as for format_double.
///
/// With a precision, or when the value holds a floating-point type, the amount is computed as
/// double and written by format_double. Otherwise it is an unsigned integer: division truncates, and
/// blanks on the left fill the field.
///
/// Returns "-0" also for an unknown unit, a value that is not finite or becomes too large, and a unit
/// beyond "YB". Kept: "any" never scales a negative floating-point value.
///
/// @throws what the value's conversion throws; see types::variant.
ZOLT_API strings::ustring8 format_memory(types::variant value, strings::ustring8 const& options,
                                         strings::ustring8& unit_out);

/// The amount of a metric value; the name of its prefix ("kilo", empty for none) goes to `unit_out`,
/// which is left alone on failure. Keys:
///
/// - "target_unit": the prefix to write in, as thousands() reads it, or "any" (the default): the one
///   that brings the magnitude to at least 1 and below 1000, as far as atto to yotta reach; zero
///   stays as it is.
/// - "base_unit": the prefix that the value is given in; default empty.
/// - "precision", "fieldsize": as for format_double.
///
/// Kept: in "target_unit" a prefix comes before a keyword cut short, so "a" means atto and the empty
/// text no prefix, not "any". An infinite value is an infinite number of the last prefix.
///
/// @throws what the value's conversion throws; see types::variant.
ZOLT_API strings::ustring8 format_metric(types::variant value, strings::ustring8 const& options,
                                         strings::ustring8& unit_out);

/// The power of 1000 of a metric prefix: "a" -6, "f" -5, "p" -4, "n" -3, "mc" -2, "m" -1, "k" 1, "M" 2,
/// "G" 3, "T" 4, "P" 5, "E" 6, "Z" 7, "Y" 8; 0 for the empty text and every leading part of "base";
/// -1000 for anything else. Kept: micro is "mc", there is no "u".
ZOLT_API int thousands(strings::ustring8 const& prefix);

/// The power of 1024 of a byte unit: 0 for "B", 1 to 8 for "KB" to "YB", -1 for anything else.
/// Kept: only the first two characters of a prefixed unit are looked at, so "KBit" is 1.
ZOLT_API int mem_prefix_index(strings::ustring8 const& unit);

} // namespace ZOLT_2_18::i18n::_private

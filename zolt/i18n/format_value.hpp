// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// format_value: the text of one placeholder's value.
//
//     i18n::format_value(i18n::message_item::int_, 255, "n\1base\1hex");         // "0xff"
//     i18n::format_value(i18n::message_item::duration, 93784.5, "elapsed");      // "1 dy 2 hr 3 min 4.50 sec"
//     i18n::format_value(i18n::message_item::memory, 1536, "bytes");             // "1"
//     i18n::format_value(i18n::message_item::memory_unit, 1536, "bytes");        // "KB"
//
// An amount and its unit are two placeholders on the same argument with the same options; both make
// the same choice of unit. <zolt/i18n/_private/format.hpp> describes the options of each kind.
#pragma once

#include <zolt/export.hpp>
#include <zolt/i18n/message_item.hpp>
#include <zolt/strings/ustring.hpp>
#include <zolt/types/variant.hpp>

namespace ZOLT_2_18::i18n {

/// Writes `value` in the way of `kind`. `data` is the whole data of a placeholder: what follows its
/// first U+0001 are the options, and without one there are none.
///
/// Returns "-0" when the value cannot be formatted with these options. The result is empty for the
/// kinds without a formatter: value, string, number, time, date and unknown ones.
///
/// @throws what the value's conversion throws; see types::variant.
ZOLT_API strings::ustring8 format_value(message_item::type_t kind, types::variant value,
                                        strings::ustring8 const& data);

} // namespace ZOLT_2_18::i18n

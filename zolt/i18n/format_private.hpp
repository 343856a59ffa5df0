// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The formatters of <zolt/i18n/_private/format.hpp> as messages use them: they append to a text.
//
// Options end at a NUL, as every part of a string does that reaches to its end. Each of the formatters
// returns false when it cannot format; what it has appended by then is the caller's to remove.
#pragma once

#include <zolt/i18n/message_item.hpp>
#include <zolt/strings/ustring.hpp>
#include <zolt/types/variant.hpp>

#include <string>
#include <string_view>

namespace ZOLT_2_18::i18n::_private {

bool append_int(std::string& text, long long value, std::string_view options);
bool append_double(std::string& text, double value, std::string_view options);
bool append_duration(std::string& text, double seconds, std::string_view options);
bool append_memory(std::string& text, types::variant const& value, std::string_view options,
                   strings::ustring8& unit_out);
bool append_metric(std::string& text, types::variant const& value, std::string_view options,
                   strings::ustring8& unit_out);

/// Appends what format_value returns for a placeholder with these options. False, with nothing appended,
/// when that is "-0".
bool append_value(std::string& text, message_item::type_t kind, types::variant const& value,
                  std::string_view options);

} // namespace ZOLT_2_18::i18n::_private

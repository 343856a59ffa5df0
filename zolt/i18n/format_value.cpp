// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/i18n/format_value.hpp>

#include <zolt/i18n/_private/format.hpp>
#include <zolt/i18n/format_private.hpp>

#include <string_view>

namespace ZOLT_2_18::i18n {
namespace {

using std::string_view;
using strings::ustring8;

using scaling_formatter = bool (*)(std::string&, types::variant const&, string_view, ustring8&);

string_view options_of(ustring8 const& data) noexcept {
    auto const separator = data.find(_private::option_separator);
    return separator == ustring8::npos ? string_view() : string_view(data).substr(separator + 1);
}

bool append_amount(std::string& text, scaling_formatter append, types::variant const& value, string_view options) {
    ustring8 unit;
    return append(text, value, options, unit);
}

bool append_unit(std::string& text, scaling_formatter append, types::variant const& value, string_view options) {
    ustring8 unit;
    ustring8 amount;
    if (!append(amount, value, options, unit) || amount == _private::failed_format) return false;
    text += unit;
    return true;
}

bool append_kind(std::string& text, message_item::type_t kind, types::variant const& value, string_view options) {
    switch (kind) {
    case message_item::int_:
        return _private::append_int(text, value.as_int64(), options);
    case message_item::double_:
        return _private::append_double(text, value.as_double(), options);
    case message_item::memory:
        return append_amount(text, _private::append_memory, value, options);
    case message_item::memory_unit:
        return append_unit(text, _private::append_memory, value, options);
    case message_item::metric:
        return append_amount(text, _private::append_metric, value, options);
    case message_item::metric_unit:
        return append_unit(text, _private::append_metric, value, options);
    case message_item::duration:
        return _private::append_duration(text, value.as_double(), options);
    case message_item::value:
    case message_item::string:
    case message_item::number:
    case message_item::time:
    case message_item::date:
        break;
    }
    return true;
}

} // namespace

bool _private::append_value(std::string& text, message_item::type_t kind, types::variant const& value,
                            string_view options) {
    std::size_t const start = text.size();
    bool const is_formatted = append_kind(text, kind, value, options);
    if (is_formatted && string_view(text).substr(start) != failed_format) return true;
    text.resize(start);
    return false;
}

ustring8 format_value(message_item::type_t kind, types::variant value, ustring8 const& data) {
    ustring8 text;
    if (!_private::append_value(text, kind, value, options_of(data))) text = _private::failed_format;
    return text;
}

} // namespace ZOLT_2_18::i18n

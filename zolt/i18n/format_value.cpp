// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/i18n/format_value.hpp>

#include <zolt/i18n/_private/format.hpp>

namespace ZOLT_2_18::i18n {
namespace {

using strings::ustring8;

using scaling_formatter = ustring8 (*)(types::variant, ustring8 const&, ustring8&);

ustring8 options_of(ustring8 const& data) {
    auto const separator = data.find(_private::option_separator);
    return separator == ustring8::npos ? ustring8() : ustring8(data, separator + 1);
}

ustring8 amount_of(scaling_formatter format, types::variant const& value, ustring8 const& options) {
    ustring8 unit;
    return format(value, options, unit);
}

ustring8 unit_of(scaling_formatter format, types::variant const& value, ustring8 const& options) {
    ustring8 unit;
    ustring8 amount = format(value, options, unit);
    return amount == _private::failed_format ? amount : unit;
}

} // namespace

ustring8 format_value(message_item::type_t kind, types::variant value, ustring8 const& data) {
    ustring8 const options = options_of(data);
    switch (kind) {
    case message_item::int_:
        return _private::format_int(value.as_int64(), options);
    case message_item::double_:
        return _private::format_double(value.as_double(), options);
    case message_item::memory:
        return amount_of(_private::format_memory, value, options);
    case message_item::memory_unit:
        return unit_of(_private::format_memory, value, options);
    case message_item::metric:
        return amount_of(_private::format_metric, value, options);
    case message_item::metric_unit:
        return unit_of(_private::format_metric, value, options);
    case message_item::duration:
        return _private::format_duration(value.as_double(), options);
    case message_item::value:
    case message_item::string:
    case message_item::number:
    case message_item::time:
    case message_item::date:
        break;
    }
    return {};
}

} // namespace ZOLT_2_18::i18n

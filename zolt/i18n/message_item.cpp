// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Each kind is rendered in one of three ways: the data itself, the text of the argument's value, or
// what format_value makes of that value. Whatever is left over shows as "?invalid?".
#include <zolt/i18n/message_item.hpp>

#include <zolt/generic/varg_list.hpp>
#include <zolt/i18n/_private/format.hpp>
#include <zolt/i18n/format_value.hpp>
#include <zolt/i18n/message_item_private.hpp>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace ZOLT_2_18::i18n {
namespace {

using std::string_view;
using strings::ustring8;

constexpr char invalid_text[] = "?invalid?";

enum class rendering { none, data, text, format };

constexpr rendering renderings[] = {
    rendering::data,   // value
    rendering::text,   // string
    rendering::none,   // number
    rendering::format, // int_
    rendering::format, // double_
    rendering::none,   // time
    rendering::none,   // date
    rendering::format, // memory
    rendering::format, // memory_unit
    rendering::format, // metric
    rendering::format, // metric_unit
    rendering::format, // duration
};

rendering rendering_of(message_item::type_t type) noexcept {
    return type < std::size(renderings) ? renderings[type] : rendering::none;
}

string_view name_part(ustring8 const& data) noexcept {
    return string_view(data).substr(0, data.find(_private::option_separator));
}

} // namespace

// A scan of its own, so that a name with options behind it needs no string of its own.
generic::argument const* _private::find_argument(generic::varg_list const& args, ustring8 const& data) {
    string_view const name = name_part(data);
    auto const found = std::find_if(args.begin(), args.end(), [name](generic::argument const& candidate) {
        return candidate.has_name() && candidate.name() == name;
    });
    return found == args.end() ? nullptr : &*found;
}

void _private::append_rendered(std::string& result, message_item::type_t type, ustring8 const& data,
                               generic::varg_list const& args) {
    rendering const how = rendering_of(type);
    if (how == rendering::data) {
        result += data;
        return;
    }
    generic::argument const* const argument = how == rendering::none ? nullptr : find_argument(args, data);
    if (argument == nullptr) {
        result += invalid_text;
    } else if (how == rendering::text) {
        result += argument->value().as_string();
    } else {
        ustring8 const text = format_value(type, argument->value(), data);
        result += text == failed_format ? string_view(invalid_text) : string_view(text);
    }
}

message_item::message_item(ustring8 data) noexcept : m_data(std::move(data)), m_type(value) {}

message_item::message_item(ustring8 data, type_t type) noexcept : m_data(std::move(data)), m_type(type) {}

message_item& message_item::assign(message_item const& other) {
    m_data = other.m_data;
    m_type = other.m_type;
    return *this;
}

message_item& message_item::assign(message_item&& other) noexcept {
    if (this != &other) {
        m_data = std::move(other.m_data);
        m_type = other.m_type;
    }
    return *this;
}

ustring8 message_item::name() const { return ustring8(name_part(m_data)); }

ustring8 message_item::as_string(generic::varg_list const& args) const {
    ustring8 result;
    _private::append_rendered(result, m_type, m_data, args);
    return result;
}

} // namespace ZOLT_2_18::i18n

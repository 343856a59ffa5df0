// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Each kind is rendered in one of three ways: the data itself, the text of the argument's value, or
// what append_value makes of that value. Whatever is left over shows as "?invalid?".
#include <zolt/i18n/message_item.hpp>

#include <zolt/generic/varg_list.hpp>
#include <zolt/i18n/_private/format.hpp>
#include <zolt/i18n/format_private.hpp>

#include <algorithm>
#include <cstring>
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

unsigned int size_of_name(ustring8 const& data) noexcept {
    std::size_t const size = std::min(data.find(_private::option_separator), data.size());
    return static_cast<unsigned int>(std::min<std::size_t>(size, 0xFFFFFFFF));
}

string_view options_behind(std::size_t name_size, ustring8 const& data) noexcept {
    return string_view(data).substr(std::min(name_size + 1, data.size()));
}

} // namespace

message_item::message_item(ustring8 data) noexcept
    : m_data(std::move(data)), m_type(value), m_name_size(unknown_size) {}

message_item::message_item(ustring8 data, type_t type) noexcept
    : m_data(std::move(data)), m_type(type), m_name_size(type == value ? unknown_size : size_of_name(m_data)) {}

message_item& message_item::assign(message_item const& other) {
    m_data = other.m_data;
    m_type = other.m_type;
    m_name_size = other.m_name_size;
    return *this;
}

message_item& message_item::assign(message_item&& other) noexcept {
    if (this != &other) {
        m_data = std::move(other.m_data);
        m_type = other.m_type;
        m_name_size = other.m_name_size;
    }
    return *this;
}

ustring8 message_item::name() const { return ustring8(name_view()); }

ustring8 message_item::as_string(generic::varg_list const& args) const {
    ustring8 result;
    append_to(result, args);
    return result;
}

// A scan of its own, so that the name needs no string.
generic::argument const* message_item::find_in(generic::varg_list const& args) const {
    string_view const name = name_view();
    if (name.empty()) return nullptr;
    for (generic::argument const& candidate : args) {
        ustring8 const& candidate_name = candidate.name();
        if (candidate_name.size() == name.size() &&
            std::memcmp(candidate_name.data(), name.data(), name.size()) == 0) {
            return &candidate;
        }
    }
    return nullptr;
}

void message_item::append_to(std::string& text, generic::varg_list const& args) const {
    rendering const how = rendering_of(m_type);
    if (how == rendering::data) {
        text += m_data;
        return;
    }
    generic::argument const* const argument = how == rendering::none ? nullptr : find_in(args);
    if (argument && how == rendering::text) {
        text += argument->value().as_string();
    } else if (!argument || !_private::append_value(text, m_type, argument->value(),
                                                    options_behind(name_view().size(), m_data))) {
        text += invalid_text;
    }
}

} // namespace ZOLT_2_18::i18n

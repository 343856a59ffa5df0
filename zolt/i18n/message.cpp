// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/i18n/message.hpp>

#include <zolt/strings/unicode.hpp>
#include <zolt/types/variant.hpp>

#include <algorithm>

namespace ZOLT_2_18::i18n {

using strings::ustring16;
using strings::ustring32;
using strings::ustring8;

namespace {

// As a rule a value takes no more, so that the text is allocated once.
constexpr std::size_t expected_value_size = 12;

} // namespace

message_t::message_t(ustring8 name, items_type items, ustring8 meta) noexcept
    : m_items(std::move(items)), m_name(std::move(name)), m_meta(std::move(meta)) {}

message_t& message_t::assign(message_t const& other) { return this == &other ? *this : assign(message_t(other)); }

message_t& message_t::assign(message_t&& other) noexcept {
    if (this != &other) {
        m_items = std::move(other.m_items);
        m_orginal_locale = std::move(other.m_orginal_locale);
        m_name = std::move(other.m_name);
        m_meta = std::move(other.m_meta);
    }
    return *this;
}

message_t& message_t::assign(types::nil_t const&) noexcept { return assign(message_t()); }

bool message_t::equal(types::nil_t const&) const noexcept {
    return m_items.empty() && m_name.empty() && m_meta.empty();
}

unsigned int message_t::argument_count() const noexcept {
    auto const is_placeholder = [](message_item const& item) { return item.type() != message_item::value; };
    return static_cast<unsigned int>(std::count_if(m_items.begin(), m_items.end(), is_placeholder));
}

generic::varg_list message_t::arguments() const {
    generic::varg_list list;
    types::variant const no_value;
    for (message_item const& item : m_items) {
        if (item.m_type != message_item::value) list.push_back(item.m_data, no_value);
    }
    return list;
}

bool message_t::has_valid_args(generic::varg_list const& args) const {
    if (m_items.empty() || args.count() < argument_count()) return false;
    return std::all_of(m_items.begin(), m_items.end(), [&](message_item const& item) {
        return item.m_type == message_item::value || item.find_in(args) != nullptr;
    });
}

std::string message_t::as_string(generic::varg_list const& args) const {
    std::size_t expected = 0;
    for (message_item const& item : m_items) {
        expected += item.m_type == message_item::value ? item.m_data.size() : expected_value_size;
    }
    std::string result;
    result.reserve(expected);
    for (message_item const& item : m_items) {
        if (item.m_type == message_item::value) {
            result += item.m_data;
        } else {
            item.append_to(result, args);
        }
    }
    return result;
}

ustring8 message_t::as_utf8(generic::varg_list const& args) const { return as_string(args); }

ustring8 message_t::as_ustring(generic::varg_list const& args) const { return as_string(args); }

ustring16 message_t::as_utf16(generic::varg_list const& args) const {
    return strings::utf8_to_utf16(as_utf8(args));
}

ustring32 message_t::as_utf32(generic::varg_list const& args) const {
    return strings::utf8_to_utf32(as_utf8(args));
}

std::wstring message_t::as_wstring(generic::varg_list const& args) const { return as_utf32(args); }

} // namespace ZOLT_2_18::i18n

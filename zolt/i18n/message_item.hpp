// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// message_item: one piece of a message, either literal text or a placeholder for an argument.
//
// A placeholder's data is the name of the argument it shows, optionally followed by options for the
// formatting, everything separated by U+0001:
//
//     name U+0001 key U+0001 value U+0001 key U+0001 value ...
//
// so a name cannot hold that character. Catalogs build items from their message elements; messages
// (<zolt/i18n/message.hpp>) hold them in order. <zolt/i18n/_private/format.hpp> lists the options.
//
//     i18n::message_item size("bytes\1target_unit\1KB", i18n::message_item::memory);
//     size.name();                                                          // "bytes"
//     size.as_string(generic::varg_list(generic::argument("bytes", 2048))); // "2"
//
// All text is UTF-8 and never checked. Items are plain values: copies share nothing.
#pragma once

#include <zolt/export.hpp>
#include <zolt/strings/ustring.hpp>

#include <string>
#include <string_view>
#include <utility>

namespace ZOLT_2_18::generic {
class argument;
class varg_list;
} // namespace ZOLT_2_18::generic

namespace ZOLT_2_18::i18n {

namespace _private {
class item_builder;
}

/// A literal text or a placeholder, with a rule for how the argument's value is written.
class ZOLT_API message_item {
public:
    /// What an item shows. The numbers are those of catalogs and of format_value.
    ///
    /// Kept: number, time and date exist and have keywords in catalogs, but nothing formats them;
    /// they always show "?invalid?".
    enum type_t : unsigned int {
        value,       ///< 0: literal text
        string,      ///< 1: the argument's text
        number,      ///< 2: not rendered
        int_,        ///< 3: an integer
        double_,     ///< 4: a floating-point number
        time,        ///< 5: not rendered
        date,        ///< 6: not rendered
        memory,      ///< 7: the amount of a memory size, without its unit
        memory_unit, ///< 8: the unit of a memory size, without its amount
        metric,      ///< 9: the amount of a metric value, without its prefix
        metric_unit, ///< 10: the prefix of a metric value, written out
        duration     ///< 11: a number of seconds as days, hours, minutes and seconds
    };

    /// A literal text.
    message_item(strings::ustring8 data) noexcept;
    /// An item of any kind. `data` is the text itself for `value`, else name and options.
    message_item(strings::ustring8 data, type_t type) noexcept;
    message_item(message_item const&) = default;
    message_item(message_item&&) noexcept = default;

    message_item& operator=(message_item const& other) { return assign(other); }
    message_item& operator=(message_item&& other) noexcept { return assign(std::move(other)); }
    message_item& assign(message_item const& other);
    message_item& assign(message_item&& other) noexcept;

    /// The kind.
    type_t type() const noexcept { return m_type; }

    /// The whole data: a literal's text, a placeholder's name, separators and options.
    strings::ustring8 data() const { return m_data; }

    /// The data up to the first U+0001; all of it when there is none.
    strings::ustring8 name() const;

    /// The text to show. A literal gives its data. A placeholder gives the value of the argument
    /// called name() as its kind formats it, or "?invalid?" when there is no such argument, when its
    /// kind is not rendered, or when the value cannot be formatted with the options. An empty name
    /// matches no argument; a string placeholder ignores its options.
    ///
    /// Kept: "-0" marks a failed formatting, so a value that is written as "-0" (-0.2 without
    /// decimals) shows "?invalid?" too.
    ///
    /// @throws what the argument's conversion throws; see types::variant.
    strings::ustring8 as_string(generic::varg_list const& args) const;

private:
    friend class message_t;
    friend class _private::item_builder;

    /// Of a name whose end is searched when it is asked for: a literal's, or one of 4 GiB.
    __attribute__((visibility("hidden"))) static constexpr unsigned int unknown_size = 0xFFFFFFFF;

    message_item(std::string_view data, type_t type, unsigned int name_size)
        : m_data(data), m_type(type), m_name_size(name_size) {}

    std::string_view name_view() const noexcept {
        return std::string_view(m_data).substr(0, m_name_size == unknown_size ? m_data.find('\1') : m_name_size);
    }
    __attribute__((visibility("hidden"))) generic::argument const* find_in(generic::varg_list const& args) const;
    __attribute__((visibility("hidden"))) void append_to(std::string& text, generic::varg_list const& args) const;

    strings::ustring8 m_data;
    type_t m_type;
    unsigned int m_name_size;
};

} // namespace ZOLT_2_18::i18n

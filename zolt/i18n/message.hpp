// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// message_t: one translatable text, cut into literal texts and placeholders.
//
// Catalogs (<zolt/i18n/catalog.hpp>) hand messages out; an application renders them with a list of
// named arguments. Arguments are found by name alone: their order does not matter and those that no
// placeholder names are ignored.
//
//     i18n::message_t message("loaded", {{"Loaded "}, {"n", i18n::message_item::int_}, {" files"}});
//     message.as_utf8(generic::varg_list(generic::argument("n", 5)));  // "Loaded 5 files"
//     message.as_utf8(generic::varg_list());                           // "Loaded ?invalid? files"
//
// Rendering never fails for a missing or unsuitable argument, it shows "?invalid?" in its place; an
// exception of an argument's own conversion (see types::variant) passes to the caller. All text is
// UTF-8 and never checked. Messages are plain values.
#pragma once

#include <zolt/export.hpp>
#include <zolt/generic/varg_list.hpp>
#include <zolt/i18n/message_item.hpp>
#include <zolt/strings/ustring.hpp>
#include <zolt/types/nil.hpp>

#include <string>
#include <utility>
#include <vector>

namespace ZOLT_2_18::i18n {

/// A message: its items, the locale it is written in, its name within the catalog, and free text
/// that describes it.
class ZOLT_API message_t {
public:
    /// Literal texts and placeholders in order.
    using items_type = std::vector<message_item>;
    /// Over these.
    using iterator = items_type::iterator;
    using const_iterator = items_type::const_iterator;

    /// A nil message: no items, all texts empty.
    message_t() noexcept = default;
    message_t(types::nil_t const&) noexcept {}
    message_t(strings::ustring8 name, items_type items, strings::ustring8 meta = strings::ustring8()) noexcept;
    message_t(message_t const&) = default;
    message_t(message_t&&) noexcept = default;

    message_t& operator=(message_t const& other) { return assign(other); }
    message_t& operator=(message_t&& other) noexcept { return assign(std::move(other)); }
    message_t& operator=(types::nil_t const& nil) noexcept { return assign(nil); }
    message_t& assign(message_t const& other);
    message_t& assign(message_t&& other) noexcept;
    /// Empties the items and all texts.
    message_t& assign(types::nil_t const&) noexcept;

    /// True when the message has no items, no name and no meta text.
    ///
    /// Kept: the original locale is not looked at.
    bool equal(types::nil_t const&) const noexcept;
    bool operator==(types::nil_t const& nil) const noexcept { return equal(nil); }
    bool operator!=(types::nil_t const& nil) const noexcept { return !equal(nil); }

    /// The name within the catalog.
    strings::ustring8 const& name() const noexcept { return m_name; }
    void name(strings::ustring8 const& name) { m_name = name; }

    /// Free text that describes the message.
    strings::ustring8 const& meta() const noexcept { return m_meta; }
    void meta(strings::ustring8 const& meta) { m_meta = meta; }

    /// The locale that the catalog was marked with, as written there.
    strings::ustring8 const& _orginal_locale() const noexcept { return m_orginal_locale; }
    void _orginal_locale(strings::ustring8 const& locale) { m_orginal_locale = locale; }

    /// Over the items in order.
    iterator begin() noexcept { return m_items.begin(); }
    iterator end() noexcept { return m_items.end(); }
    const_iterator begin() const noexcept { return m_items.begin(); }
    const_iterator end() const noexcept { return m_items.end(); }

    /// Number of items, literal texts included.
    unsigned int count() const noexcept { return static_cast<unsigned int>(m_items.size()); }
    unsigned int size() const noexcept { return count(); }

    /// Number of placeholders; two for the same argument count twice.
    unsigned int argument_count() const noexcept;

    /// The placeholders in order, as arguments without a value.
    ///
    /// Kept: each is named by its whole data, options included, not by its argument's name. A name
    /// met again is left out, as varg_list::push_back does.
    generic::varg_list arguments() const;

    /// True when every placeholder names an argument of the list.
    ///
    /// Kept: a message without items is never valid, and neither is a list with fewer arguments than
    /// there are placeholders, even when some placeholders name the same argument.
    bool has_valid_args(generic::varg_list const& args) const;

    /// The rendered text: every item's message_item::as_string, joined.
    std::string as_string(generic::varg_list const& args) const;
    strings::ustring8 as_utf8(generic::varg_list const& args) const;
    strings::ustring8 as_ustring(generic::varg_list const& args) const;

    /// The rendered text through strings::utf8_to_utf16: "-1" when it is not valid UTF-8.
    strings::ustring16 as_utf16(generic::varg_list const& args) const;

    /// The rendered text through strings::utf8_to_utf32: "?" for every byte that is not valid UTF-8.
    strings::ustring32 as_utf32(generic::varg_list const& args) const;
    std::wstring as_wstring(generic::varg_list const& args) const;

private:
    items_type m_items;
    strings::ustring8 m_orginal_locale;
    strings::ustring8 m_name;
    strings::ustring8 m_meta;
};

} // namespace ZOLT_2_18::i18n

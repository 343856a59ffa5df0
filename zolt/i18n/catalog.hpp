// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// catalog_t: one named catalog of messages.
//
// A collection (<zolt/i18n/message_catalogs.hpp>) fills and owns its catalogs; an application looks
// messages up in them. A name that is not there gives the nil message, which renders as empty text:
//
//     i18n::catalog_t const& texts = catalogs.catalog("app");
//     texts.message("greeting").as_utf8(arguments);
//
// Names are UTF-8 and compared byte by byte, in their order too.
#pragma once

#include <zolt/export.hpp>
#include <zolt/i18n/message.hpp>
#include <zolt/memory/shared_pointer.hpp>
#include <zolt/strings/ustring.hpp>
#include <zolt/types/nil.hpp>

#include <cstddef>
#include <map>
#include <set>
#include <vector>

namespace ZOLT_2_18::i18n {

namespace _private {
class xmc_file_loader;
}

class ZOLT_API catalog_t final : public memory::pointers::shared_count {
public:
    /// The messages by their names.
    using message_map = std::map<strings::ustring8, message_t>;
    /// Over (name, message) pairs.
    using const_iterator = message_map::const_iterator;
    /// Languages as catalogs wrote them.
    using language_set = std::set<strings::ustring8>;
    /// Over these.
    using language_iterator = language_set::const_iterator;

    /// The message returned for every name that is not there. Ready before any other static object.
    static message_t const m_nil_message;

    catalog_t();
    catalog_t(types::nil_t const&);
    catalog_t(catalog_t const&);
    ~catalog_t();

    catalog_t& operator=(catalog_t const& other) { return assign(other); }
    catalog_t& operator=(types::nil_t const& nil) { return assign(nil); }
    /// Copies name, messages and languages; who holds the catalog stays as it is.
    catalog_t& assign(catalog_t const& other);
    catalog_t& assign(types::nil_t const&);

    /// True without a name and without messages.
    bool equal(types::nil_t const&) const noexcept;
    bool operator==(types::nil_t const& nil) const noexcept { return equal(nil); }
    bool operator!=(types::nil_t const& nil) const noexcept { return !equal(nil); }

    /// The catalog's name.
    strings::ustring8 const& name() const noexcept { return m_name; }
    void _name(strings::ustring8 const& name) { m_name = name; }

    /// True when the catalog holds a message of that name.
    bool has_message(strings::ustring8 const& name) const;
    /// The message, valid until it is replaced or the catalog ends; m_nil_message when absent.
    message_t const& message(strings::ustring8 const& name) const;
    /// Stores the message under `name` (its own name is not looked at) or replaces the one there.
    void message(strings::ustring8 const& name, message_t const& message);
    void message(strings::ustring8 const& name, message_t&& message);

    /// The number of messages.
    unsigned int size() const noexcept { return static_cast<unsigned int>(m_messages.size()); }
    /// Over (name, message) pairs in the order of the names.
    const_iterator begin() const noexcept { return m_messages.begin(); }
    const_iterator end() const noexcept { return m_messages.end(); }

    /// The distinct languages of the messages, as their catalogs wrote them, in byte order. The list is
    /// built when first asked for; storing a message drops it and ends iterators into it.
    language_iterator languages_begin() const;
    language_iterator languages_end() const;
    /// True when a message came from a catalog of this language; "-" and "." in `lang` read as "_".
    /// Kept: the languages stay as written, so what a catalog calls "de-DE" is never found.
    bool is_language_loaded(strings::ustring8 const& lang) const;

private:
    friend class _private::xmc_file_loader;

    struct slot {
        std::size_t hash;
        message_map::value_type const* entry; ///< null: free
    };

    __attribute__((visibility("hidden"))) message_t const* find(strings::ustring8 const& name) const;
    __attribute__((visibility("hidden"))) void make_room(std::size_t count);
    __attribute__((visibility("hidden"))) void add_slot(message_map::value_type const& entry) noexcept;
    __attribute__((visibility("hidden"))) void take(message_map& messages);
    language_set const& gen_lang_set() const;

    strings::ustring8 m_name;
    message_map m_messages;
    std::vector<slot> m_slots;
    mutable language_set m_languages;
};

} // namespace ZOLT_2_18::i18n

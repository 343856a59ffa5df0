// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// message_catalogs: the collection of message catalogs that an application holds.
//
// It is filled from .xmc files and asked for messages by catalog and message name. A file holds
// catalogs, each written for one language; of every message the collection keeps the text in the
// language that fits the request best:
//
//     <?xml version="1.0"?>
//     <xmc version="1.1">
//       <include file="common.xmc"/>
//       <catalog name="app" lang="de_DE">
//         <msg name="loaded">Geladen: <arg name="n" type="int"/> Dateien</msg>
//       </catalog>
//     </xmc>
//
//     i18n::message_catalogs catalogs;
//     auto const result = catalogs.load("catalogs/", "de-DE.UTF-8");
//     if (result.code() != i18n::message_catalogs::no_error) report(result.message());
//     catalogs.message("app", "loaded").as_utf8(arguments);    // "Geladen: 5 Dateien"
//
// A request for "de-DE.UTF-8" takes catalogs in ".", "en", "de", "de_DE", "de_DE_UTF" and
// "de_DE_UTF_8", the later the better; all other languages are passed over. docs/formats/catalog.md
// describes the format for those who write such files.
//
// Loading never throws for a bad path or file, and looking up never fails: names that are not there
// give the nil catalog and the nil message. Every operation that takes names takes them in UTF-8,
// UTF-16 or UTF-32; the wide forms convert them and do the same.
#pragma once

#include <zolt/export.hpp>
#include <zolt/i18n/_private/xmc_file_loader.hpp>
#include <zolt/i18n/catalog.hpp>
#include <zolt/i18n/message.hpp>
#include <zolt/memory/shared_pointer.hpp>
#include <zolt/strings/ustring.hpp>
#include <zolt/types/nil.hpp>

#include <map>

namespace ZOLT_2_18::i18n {

class ZOLT_API message_catalogs {
    using ustring8 = strings::ustring8;
    using ustring16 = strings::ustring16;
    using ustring32 = strings::ustring32;

public:
    /// What a load comes to.
    enum error_type : unsigned int {
        no_error = 0,
        no_catalog_loaded = 1,          ///< nothing for the request was found
        default_locale_unsupported = 2, ///< the language was empty
        file_not_found = 3,
        directory_not_found = 4,
        entity_not_found = 5, ///< neither a file nor a directory
        xml_parse_error = 6,  ///< not well-formed XML
        xmc_not_valid = 7,    ///< well-formed, but not a catalog file
        unexpected_error = 8
    };

    /// The outcome of a load: a code and a text for the user, of several lines for a fault in a file.
    class ZOLT_API result_type {
    public:
        /// From a code, with its usual text about that path, or from the fault of a file.
        result_type(error_type code, strings::ustring8 const& path);
        explicit result_type(_private::xmc_file_loader::load_error const& fault);

        /// The code.
        error_type code() const noexcept { return m_code; }
        /// The text for the user.
        strings::ustring8 const& message() const noexcept { return m_message; }

    private:
        error_type m_code;
        strings::ustring8 m_message;
    };

    /// The catalogs by their names.
    using catalog_map = std::map<strings::ustring8, memory::pointers::shared_pointer<catalog_t>>;
    /// Over (name, catalog) pairs.
    using const_iterator = catalog_map::const_iterator;
    using iterator = const_iterator;

    /// Returned for every name that is not there. Ready before any other static object.
    static catalog_t const s_nil_catalog;
    static message_t const s_nil_message;

    message_catalogs();
    message_catalogs(types::nil_t const&);
    /// Copies every catalog: the copies share nothing.
    message_catalogs(message_catalogs const& other);
    message_catalogs(message_catalogs&& other) noexcept;
    ~message_catalogs();

    message_catalogs& operator=(message_catalogs const& other) { return assign(other); }
    message_catalogs& operator=(message_catalogs&& other) noexcept {
        return assign(static_cast<message_catalogs&&>(other));
    }
    message_catalogs& operator=(types::nil_t const& nil) { return assign(nil); }
    message_catalogs& assign(message_catalogs const& other);
    message_catalogs& assign(message_catalogs&& other) noexcept;
    message_catalogs& assign(types::nil_t const&);

    /// True without catalogs.
    bool equal(types::nil_t const&) const noexcept { return m_catalogs.empty(); }
    bool operator==(types::nil_t const& nil) const noexcept { return equal(nil); }
    bool operator!=(types::nil_t const& nil) const noexcept { return !equal(nil); }

    // Loading. With `catalog_id` only the catalog of that name is read; empty: all. What is loaded
    // merges into what is there: a message gives way to one whose language fits as well or better. A
    // file with a fault adds nothing. Kept: an empty `lang` is default_locale_unsupported, but with
    // `catalog_id` it loads what the languages "." and "en" give.

    /// Loads a file or a directory. entity_not_found when `path` is neither; no_catalog_loaded when all
    /// went well and the collection is still empty.
    result_type load(ustring8 const& path, ustring8 const& lang);
    result_type load(ustring8 const& path, ustring8 const& lang, ustring8 const& catalog_id);
    result_type load(ustring16 const& path, ustring16 const& lang);
    result_type load(ustring16 const& path, ustring16 const& lang, ustring16 const& catalog_id);
    result_type load(ustring32 const& path, ustring32 const& lang);
    result_type load(ustring32 const& path, ustring32 const& lang, ustring32 const& catalog_id);

    /// Loads one file and those that it includes.
    result_type load_file(ustring8 const& path, ustring8 const& lang);
    result_type load_file(ustring8 const& path, ustring8 const& lang, ustring8 const& catalog_id);
    result_type load_file(ustring16 const& path, ustring16 const& lang);
    result_type load_file(ustring16 const& path, ustring16 const& lang, ustring16 const& catalog_id);
    result_type load_file(ustring32 const& path, ustring32 const& lang);
    result_type load_file(ustring32 const& path, ustring32 const& lang, ustring32 const& catalog_id);

    /// Loads every file below a directory whose name ends in ".xmc" or ".xml", in any case of letters
    /// and in the order in which the system lists them. The first fault ends the scan and is returned;
    /// what was loaded before stays. Links are followed; a directory reached twice is read once.
    result_type load_directory(ustring8 const& path, ustring8 const& lang);
    result_type load_directory(ustring8 const& path, ustring8 const& lang, ustring8 const& catalog_id);
    result_type load_directory(ustring16 const& path, ustring16 const& lang);
    result_type load_directory(ustring16 const& path, ustring16 const& lang, ustring16 const& catalog_id);
    result_type load_directory(ustring32 const& path, ustring32 const& lang);
    result_type load_directory(ustring32 const& path, ustring32 const& lang, ustring32 const& catalog_id);

    /// True when a catalog of that name is loaded.
    bool has_catalog(ustring8 const& name) const;
    bool has_catalog(ustring16 const& name) const;
    bool has_catalog(ustring32 const& name) const;
    /// True when the catalog holds messages of the language; see catalog_t::is_language_loaded.
    bool has_catalog(ustring8 const& name, ustring8 const& lang) const;
    bool has_catalog(ustring16 const& name, ustring16 const& lang) const;
    bool has_catalog(ustring32 const& name, ustring32 const& lang) const;

    /// The catalog, s_nil_catalog when absent; valid until it is erased or the collection ends.
    catalog_t const& catalog(ustring8 const& name) const;
    catalog_t const& catalog(ustring16 const& name) const;
    catalog_t const& catalog(ustring32 const& name) const;

    /// True when the catalog holds a message of that name.
    bool has_message(ustring8 const& catalog, ustring8 const& message) const;
    bool has_message(ustring16 const& catalog, ustring16 const& message) const;
    bool has_message(ustring32 const& catalog, ustring32 const& message) const;

    /// The message; s_nil_message when the catalog is absent, catalog_t::m_nil_message when only the
    /// message is. Valid until a load replaces it or its catalog ends.
    message_t const& message(ustring8 const& catalog, ustring8 const& message) const;
    message_t const& message(ustring16 const& catalog, ustring16 const& message) const;
    message_t const& message(ustring32 const& catalog, ustring32 const& message) const;

    /// The number of catalogs.
    unsigned int count() const noexcept { return static_cast<unsigned int>(m_catalogs.size()); }
    unsigned int size() const noexcept { return count(); }
    /// The number of messages in a catalog, 0 when absent.
    unsigned int count(ustring8 const& name) const;
    unsigned int count(ustring16 const& name) const;
    unsigned int count(ustring32 const& name) const;
    unsigned int size(ustring8 const& name) const;
    unsigned int size(ustring16 const& name) const;
    unsigned int size(ustring32 const& name) const;

    /// Over (name, shared_pointer<catalog_t>) pairs in the order of the names.
    const_iterator begin() const noexcept { return m_catalogs.begin(); }
    const_iterator end() const noexcept { return m_catalogs.end(); }
    /// Over a catalog's (name, message) pairs; an absent one has none.
    catalog_t::const_iterator begin(ustring8 const& name) const;
    catalog_t::const_iterator begin(ustring16 const& name) const;
    catalog_t::const_iterator begin(ustring32 const& name) const;
    catalog_t::const_iterator end(ustring8 const& name) const;
    catalog_t::const_iterator end(ustring16 const& name) const;
    catalog_t::const_iterator end(ustring32 const& name) const;

    /// Removes every catalog.
    void erase();
    /// Removes one catalog; it lives on where it is still shared.
    void erase(ustring8 const& name);
    void erase(ustring16 const& name);
    void erase(ustring32 const& name);

private:
    catalog_map m_catalogs;
};

} // namespace ZOLT_2_18::i18n

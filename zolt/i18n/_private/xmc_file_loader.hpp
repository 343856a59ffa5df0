// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// xmc_file_loader: reads one .xmc message catalog file, with the files that it includes.
//
// Applications load catalogs through <zolt/i18n/message_catalogs.hpp>, which makes one loader for
// each file. The loader keeps, for every catalog and message name, the message in the language that
// fits the request best, and hands what it kept to a collection at the end:
//
//     _private::xmc_file_loader loader;
//     auto const fault = loader.parse("de.xmc", "de-DE");
//     if (fault.code() == _private::xmc_file_loader::no_error) loader.combine_data(catalogs);
//
// Faults are values, never exceptions. A fault's text names the first thing that went wrong and
// below it, one line each and innermost first, the message, the catalog and the files around it.
//
// Includes are followed to a bound, so that no set of files can hold the loader: a file that
// includes itself, straight or through others, more than 10,000 files for one call of `parse`,
// includes nested deeper than 1,000 and more than 1 GiB of text in all end in unexpected_parse_error.
//
// This interface carries no promise of stability.
#pragma once

#include <zolt/export.hpp>
#include <zolt/i18n/message.hpp>
#include <zolt/i18n/message_item.hpp>
#include <zolt/memory/shared_pointer.hpp>
#include <zolt/parser/xml_parser.hpp>
#include <zolt/strings/ustring.hpp>

#include <map>
#include <vector>

namespace ZOLT_2_18::i18n {
class catalog_t;
}

namespace ZOLT_2_18::i18n::_private {

class ZOLT_API xmc_file_loader {
public:
    enum error_type : unsigned int {
        no_error = 0,
        no_catalog_loaded = 1,
        default_locale_unsupported = 2,
        file_not_found = 3, ///< also: not a regular file, unreadable, or a path with a NUL
        xml_parse_error = 4,
        invalid_attribute = 5,
        invalid_element = 6,
        not_xmc_file = 7,
        unsupported_version = 8,
        br_end_missing = 9,
        msg_end_missing = 10,
        arg_end_missing = 11,
        include_end_missing = 12,
        catalog_end_missing = 13,
        unexpected_parse_error = 14 ///< nothing to read, or one of the bounds above
    };

    /// What went wrong and where: a code and the full text for the user.
    class ZOLT_API load_error {
    public:
        enum append_type : unsigned int { in_message = 1, in_catalog = 2, in_file = 3, at_line = 4 };

        load_error(error_type code, strings::ustring8 const& value);
        load_error(error_type code, parser::xml_parser::parse_error const& fault);

        error_type code() const noexcept { return m_code; }
        strings::ustring8 const& message() const noexcept { return m_message; }

        /// Adds one context line to the text.
        void append_error_stack(append_type type, strings::ustring8 const& value);

        static strings::ustring8 format_msg(error_type code, strings::ustring8 const& value);
        static strings::ustring8 format_msg(parser::xml_parser::parse_error const& fault);
        static strings::ustring8 format_msg(append_type type, strings::ustring8 const& value);

    private:
        strings::ustring8 m_message;
        error_type m_code;
    };

    using message_map = std::map<strings::ustring8, message_t>;
    using catalog_map = std::map<strings::ustring8, memory::pointers::shared_pointer<catalog_t>>;

    xmc_file_loader();
    ~xmc_file_loader();
    xmc_file_loader(xmc_file_loader const&) = delete;
    xmc_file_loader& operator=(xmc_file_loader const&) = delete;

    /// Reads `file` for the language `lang`, such as "de-DE.UTF-8"; an empty one is
    /// default_locale_unsupported before the file is looked at. What was read before a fault stays.
    load_error parse(strings::ustring8 const& file, strings::ustring8 const& lang);
    /// Reads only the catalog named `catalog_id`; empty: all. Kept: an empty `lang` is no fault here,
    /// it loads what the default languages "." and "en" give.
    load_error parse(strings::ustring8 const& file, strings::ustring8 const& lang,
                     strings::ustring8 const& catalog_id);
    /// Reads `file` for the default languages and those requested before.
    load_error parse(strings::ustring8 const& file);

    /// Moves what was read into `catalogs` and leaves the loader without messages. A message already
    /// there gives way to one whose language weighs the same or more.
    /// Kept: within one file the first of equal weight wins, here the last.
    /// @return the number of messages stored
    /// @throws exceptions::runtime_error when `catalogs` holds an empty pointer under a name read.
    unsigned int combine_data(catalog_map& catalogs);

    /// How well a language fits the request: 0 not at all, 1 for ".", 2 for "en", above that the more
    /// the more parts of the requested id it has. "-" and "." read as "_"; an empty locale weighs 0.
    unsigned int get_locale_weight(strings::ustring8 const& locale) const;

    /// Does nothing.
    void reset() {}

    // The steps of a load that stand on their own, for tests and tools.

    /// Adds a request to the list of languages: ".", "en", then "de", "de_DE", "de_DE_UTF",
    /// "de_DE_UTF_8" for "de-DE.UTF-8". Only the first 64 parts of an id count.
    void handle_language(strings::ustring8 const& lang);
    bool is_lang_id_good(strings::ustring8 const& lang) const { return get_locale_weight(lang) != 0; }
    bool is_cat_id_set() const noexcept { return !m_catalog_filter.empty(); }
    bool is_catalog_matched(strings::ustring8 const& name) const;

    /// Reads one file for the languages listed so far.
    load_error parse_file(strings::ustring8 const& path);
    /// Reads a file's text. `path` serves the fault's text only; includes are found relative to the
    /// file read last, at first to the working directory.
    load_error parse_string(strings::ustring8 const& text, strings::ustring8 const& path);

    /// The kind that an argument's `type` names, in any case of letters. Kept: an unknown word is a
    /// string argument.
    static message_item::type_t parse_message_type(strings::ustring8 const& text);

    /// Keeps a message unless one of the same name and of equal or greater weight is there.
    void set_message(message_t message, strings::ustring8 const& catalog);

private:
    class __attribute__((visibility("hidden"))) reading;

    void keep_messages(strings::ustring8 const& catalog, message_map&& messages);
    void keep_better(message_t& present, message_t&& message) const;
    unsigned int combine_messages(catalog_t& catalog, message_map& messages) const;

    std::vector<strings::ustring8> m_languages;
    std::map<strings::ustring8, message_map> m_data;
    strings::ustring8 m_base_directory;
    strings::ustring8 m_catalog_filter;
};

} // namespace ZOLT_2_18::i18n::_private

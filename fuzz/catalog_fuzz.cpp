// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// An input as four catalog files that may include one another: all ways to load the first give the same
// messages or the same fault, loading again changes nothing, and all queries agree.
#include "input.hpp"

#include <zolt/i18n/_private/xmc_file_loader.hpp>
#include <zolt/i18n/catalog.hpp>
#include <zolt/i18n/message_catalogs.hpp>
#include <zolt/strings/unicode.hpp>

namespace {

using namespace zolt::strings;
using fuzz::check;
using zolt::i18n::message_catalogs;
using zolt::i18n::message_t;
using loader_type = zolt::i18n::_private::xmc_file_loader;

constexpr char const* names[] = {"a.xmc", "b.xmc", "c.xmc", "sub/d.xmc"};
constexpr char const* languages[] = {"de_DE.UTF-8", "en", "de-AT", "fr", "."};

/// All that was loaded as one text.
template <typename Catalogs>
std::string described(Catalogs const& catalogs) {
    std::string all;
    for (auto const& [name, catalog] : catalogs) {
        check(catalog->name() == name && catalog->size() > 0, "a catalog under its name");
        for (auto const& [id, message] : *catalog) {
            all += name + '\2' + id + '\2' + message.meta() + '\2' + message._orginal_locale();
            for (auto const& item : message) all += '\2' + std::to_string(item.type()) + item.data();
            all += '\n';
        }
    }
    return all;
}

void check_message(message_catalogs const& catalogs, ustring8 const& name, ustring8 const& id,
                   message_t const& message) {
    check(catalogs.has_message(name, id) && &catalogs.message(name, id) == &message, "a message by its name");
    ustring16 const wide_name = utf8_to_utf16(name);
    ustring16 const wide_id = utf8_to_utf16(id);
    bool const same = utf16_to_utf8(wide_name) == name && utf16_to_utf8(wide_id) == id;
    if (same) check(&catalogs.message(wide_name, wide_id) == &message, "a message by its name in UTF-16");
    ustring8 const text = message.as_utf8(message.arguments());
    check(message.as_utf32(message.arguments()) == utf8_to_utf32(text), "the message in UTF-32");
}

void check_queries(message_catalogs const& catalogs, loader_type const& loader) {
    for (auto const& [name, catalog] : catalogs) {
        check(catalogs.count(name) == catalog->size() && &catalogs.catalog(name) == &*catalog, "a catalog by name");
        for (auto const& [id, message] : *catalog) {
            check_message(catalogs, name, id, message);
            ustring8 const& language = message._orginal_locale();
            check(loader.get_locale_weight(language) > 0, "a language that was asked for");
            bool const normal = language.find_first_of("-.") == language.npos;
            if (normal) check(catalogs.has_catalog(name, language), "a language that is loaded");
        }
    }
}

/// Without includes a text gives what its file gives; a text without any token is a fault of its own.
void check_text(ustring8 const& text, loader_type& loader, loader_type::error_type code,
                std::string const& content) {
    auto const fault = loader.parse_string(text, "text");
    bool const empty = code == loader_type::not_xmc_file && fault.code() == loader_type::unexpected_parse_error;
    check(fault.code() == code || empty, "the fault of a text");
    loader_type::catalog_map map;
    if (code == loader_type::no_error) loader.combine_data(map);
    check(described(map) == content, "the messages of a text");
}

} // namespace

void fuzz::run(input in) {
    static private_folder const folder;
    static bool const prepared = std::filesystem::create_directory(folder.path("sub").c_str());
    check(prepared, "a folder can be made");
    ustring8 const language = languages[in.below(std::size(languages))];
    ustring8 const filter = in.below(4) == 1 ? "app" : "";
    ustring8 const top = in.text();
    folder.write(names[0], top);
    for (int i = 1; i < 4; ++i) folder.write(names[i], in.text());
    ustring8 const path = folder.path(names[0]);

    message_catalogs catalogs;
    auto const result = catalogs.load_file(path, language, filter);
    bool const good = result.code() == message_catalogs::no_error;
    check(result.code() <= message_catalogs::unexpected_error, "a known result");
    check(good || catalogs.count() == 0, "a fault adds nothing");
    std::string const content = described(catalogs);

    loader_type loader;
    auto const fault = loader.parse(path, language, filter);
    loader_type::catalog_map map;
    if (good) loader.combine_data(map);
    check((fault.code() == loader_type::no_error) == good && described(map) == content, "what the loader gives");
    check_queries(catalogs, loader);
    loader_type reader;
    reader.parse("", language, filter); // for the languages; there is no such file
    if (top.find("include") == top.npos) check_text(top, reader, fault.code(), content);

    message_catalogs copy(catalogs);
    check(copy.load_file(path, language, filter).code() == result.code(), "the same result again");
    catalogs.erase();
    check(described(copy) == content, "loaded again; a copy shares nothing");
    copy.load_directory(folder.path(""), language);
    described(copy);
}

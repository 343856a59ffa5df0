// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "catalog_commands.hpp"

#include "catalog_sources.hpp"
#include "json.hpp"
#include "notation.hpp"
#include "render_values.hpp"

#include <zolt/exceptions/exception.hpp>
#include <zolt/i18n/message_catalogs.hpp>

#include <set>
#include <string>
#include <utility>

namespace tools {
namespace {

using zolt::i18n::catalog_t;
using zolt::i18n::message_catalogs;
using zolt::i18n::message_item;
using zolt::i18n::message_t;

bool load(session const& session, message_catalogs& catalogs, ustring8 const& path, ustring8 const& language) {
    auto const result = catalogs.load(path, language);
    if (result.code() == message_catalogs::no_error) return true;
    session.complain(result.message());
    return false;
}

//--------------------------------------------------------------------------------------------------
// list

/// Number of messages by catalog and by language as written.
using language_counts = std::vector<std::pair<ustring8, std::size_t>>;
struct catalog_counts {
    ustring8 catalog;
    language_counts languages;
    std::size_t messages;
};

// Every language is loaded too, so that whatever an application would stumble over is reported.
bool count_all(session const& session, ustring8 const& path, std::vector<catalog_counts>& counts) {
    catalog_sources sources;
    sources.add(path);
    while (sources.read_next()) {
    }
    std::map<ustring8, ustring8> languages = sources.languages();
    if (languages.empty()) languages.emplace("en", "en");
    for (auto const& [normalized, language] : languages) {
        message_catalogs catalogs;
        if (!load(session, catalogs, path, language)) return false;
    }
    for (auto const& [name, texts] : sources.catalogs()) {
        std::set<ustring8> messages;
        catalog_counts& entry = counts.emplace_back(catalog_counts{name, {}, 0});
        for (auto const& [normalized, in_language] : texts) {
            entry.languages.emplace_back(in_language.language, in_language.messages.size());
            for (auto const& [message, places] : in_language.messages) messages.insert(message);
        }
        entry.messages = messages.size();
    }
    return true;
}

bool count_loaded(session const& session, ustring8 const& path, ustring8 const& language,
                  std::vector<catalog_counts>& counts) {
    message_catalogs catalogs;
    if (!load(session, catalogs, path, language)) return false;
    for (auto const& [name, catalog] : catalogs) {
        std::map<ustring8, std::size_t> languages;
        for (auto const& [message, content] : *catalog) ++languages[content._orginal_locale()];
        counts.push_back({name, {languages.begin(), languages.end()}, catalog->size()});
    }
    return true;
}

// A row for each catalog and language, or for each catalog with all of its languages.
void print_table(session const& session, std::vector<catalog_counts> const& counts, bool is_loaded) {
    program_messages const& texts = session.texts;
    table table({{texts.get(phrase::catalog_heading)},
                 {texts.get(is_loaded ? phrase::languages_heading : phrase::language_heading)},
                 {texts.get(phrase::messages_heading), table::align::right}});
    for (catalog_counts const& entry : counts) {
        ustring8 languages;
        for (auto const& [language, messages] : entry.languages) {
            if (!is_loaded) table.row({entry.catalog, language, std::to_string(messages)});
            languages.append(languages.empty() ? "" : ", ").append(language);
        }
        if (is_loaded) table.row({entry.catalog, languages, std::to_string(entry.messages)});
    }
    table.print(session.out);
}

void print_json(session const& session, std::vector<catalog_counts> const& counts) {
    json_writer json;
    json.begin_object();
    json.begin_array("catalogs");
    for (catalog_counts const& entry : counts) {
        json.begin_object();
        json.member("name", entry.catalog);
        json.member("messages", entry.messages);
        json.begin_array("languages");
        for (auto const& [language, messages] : entry.languages) {
            json.begin_object();
            json.member("language", language);
            json.member("messages", messages);
            json.end_object();
        }
        json.end_array();
        json.end_object();
    }
    json.end_array();
    json.end_object();
    session.out.line(json.text());
}

//--------------------------------------------------------------------------------------------------
// show, render

catalog_t const* find_catalog(session const& session, message_catalogs const& catalogs, ustring8 const& path,
                              ustring8 const& name) {
    if (catalogs.has_catalog(name)) return &catalogs.catalog(name);
    session.complain(session.texts.get(phrase::no_catalog, {{"catalog", name}, {"path", path}}));
    return nullptr;
}

message_t const* find_message(session const& session, catalog_t const& catalog, ustring8 const& name) {
    if (catalog.has_message(name)) return &catalog.message(name);
    session.complain(session.texts.get(phrase::no_message, {{"message", name}, {"catalog", catalog.name()}}));
    return nullptr;
}

void print_messages(session const& session, std::vector<message_t const*> const& messages) {
    bool has_notes = false;
    for (message_t const* const message : messages) has_notes = has_notes || !message->meta().empty();

    std::vector<table::column> columns = {{session.texts.get(phrase::message_heading)},
                                          {session.texts.get(phrase::language_heading)}};
    if (has_notes) columns.push_back({session.texts.get(phrase::note_heading)});
    columns.push_back({session.texts.get(phrase::text_heading)});
    table table(std::move(columns));
    for (message_t const* const message : messages) {
        std::vector<ustring8> cells = {message->name(), message->_orginal_locale()};
        if (has_notes) cells.push_back(message->meta());
        cells.push_back(notation(*message));
        table.row(std::move(cells));
    }
    table.print(session.out);
}

// False when an argument is missing; each one is named once.
bool has_all_arguments(session const& session, message_t const& message,
                       zolt::generic::varg_list const& arguments) {
    std::set<ustring8> missing;
    for (message_item const& item : message) {
        ustring8 const name = item.name();
        if (item.type() == message_item::value || arguments.has_argument(name)) continue;
        if (missing.insert(name).second) {
            session.complain(session.texts.get(phrase::missing_argument, {{"name", name}}));
        }
    }
    return missing.empty();
}

} // namespace

exit_status list_catalogs(session const& session, ustring8 const& path) {
    std::optional<ustring8> const& language = session.options.language;
    std::vector<catalog_counts> counts;
    bool const is_counted =
        language ? count_loaded(session, path, *language, counts) : count_all(session, path, counts);
    if (!is_counted) return exit_failed;
    session.is_json() ? print_json(session, counts) : print_table(session, counts, language.has_value());
    return exit_good;
}

exit_status show_messages(session const& session, show_options const& options) {
    message_catalogs catalogs;
    if (!load(session, catalogs, options.path, session.language())) return exit_failed;
    catalog_t const* const catalog = find_catalog(session, catalogs, options.path, options.catalog);
    if (!catalog) return exit_findings;
    std::vector<message_t const*> messages;
    if (options.message) {
        message_t const* const message = find_message(session, *catalog, *options.message);
        if (!message) return exit_findings;
        messages.push_back(message);
    } else {
        for (auto const& [name, message] : *catalog) messages.push_back(&message);
    }
    print_messages(session, messages);
    return exit_good;
}

exit_status render_message(session const& session, render_options const& options) {
    zolt::generic::varg_list arguments;
    if (!read_values(session, options.values, arguments)) return exit_failed;
    message_catalogs catalogs;
    if (!load(session, catalogs, options.path, session.language())) return exit_failed;
    catalog_t const* const catalog = find_catalog(session, catalogs, options.path, options.catalog);
    message_t const* const message = catalog ? find_message(session, *catalog, options.message) : nullptr;
    if (!message) return exit_findings;
    session.out.line(message->as_utf8(arguments));
    return has_all_arguments(session, *message, arguments) ? exit_good : exit_findings;
}

} // namespace tools

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "catalog_commands.hpp"

#include "catalog_paths.hpp"
#include "check_file_rules.hpp"
#include "check_tree.hpp"
#include "check_tree_rules.hpp"
#include "message_json.hpp"
#include "render_values.hpp"
#include "tools/program/findings.hpp"
#include "tools/program/json.hpp"
#include "tools/program/notation.hpp"

#include <zolt/exceptions/exception.hpp>
#include <zolt/i18n/message_catalogs.hpp>
#include <zolt/system/io.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
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

// A directory or an include may have the file of -o.
bool reads_target(session const& session, ustring8 const& path) {
    if (!zolt::system::io::is_file(session.options.result_file)) return false;
    check_tree tree;
    finding_list found(session);
    rule_report const report(session, tree, found);
    file_rules files(tree, report);
    for (ustring8 const& file : catalog_files(path)) files.plan(file);
    for (std::uint32_t i = 0; i != tree.files.size(); ++i) { // includes come in
        if (is_target(session, tree.files[i].path)) return true;
        files.check(i);
    }
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

// Below the library's own limit for one load; it is asked about larger trees.
constexpr std::size_t most_plain_files = 10000;

// Reads all files, each once. False when the library may refuse one of them in some language.
bool read_tree(session const& session, ustring8 const& path, check_tree& tree) {
    if (!zolt::system::io::is_directory(path) && !zolt::system::io::is_file(path)) return false;
    finding_list found(session);
    rule_report const report(session, tree, found);
    file_rules files(tree, report);
    for (ustring8 const& file : catalog_files(path)) files.plan(file);
    bool is_plain = !tree.files.empty();
    progress_bar progress(session.err);
    for (std::uint32_t i = 0; i != tree.files.size(); ++i) {
        if (!session.options.is_quiet) progress.show(i, tree.files.size());
        files.check(i);
        is_plain = is_plain && tree.files[i].is_readable && tree.files[i].result == scan_result::plain;
    }
    group_messages(tree);
    bool const has_chains = !tree_rules(tree, report, {}, {}).check_includes().empty();
    return is_plain && !has_chains && found.sorted().empty() && tree.files.size() < most_plain_files;
}

std::vector<catalog_counts> count_messages(check_tree const& tree) {
    // by catalog, then by language
    std::vector<std::map<std::uint32_t, std::size_t>> in_language(tree.catalogs.size());
    std::vector<std::size_t> messages(tree.catalogs.size());
    for (message_group const& group : tree.groups) {
        std::uint32_t const catalog = tree.messages[group.first].catalog;
        ++messages[catalog];
        std::set<std::uint32_t> languages;
        for (std::uint32_t i = group.first; i != none; i = tree.messages[i].next)
            languages.insert(tree.messages[i].language);
        for (std::uint32_t const language : languages) ++in_language[catalog][language];
    }
    std::vector<catalog_counts> counts;
    for (std::size_t i = 0; i != tree.catalogs.size(); ++i) {
        checked_catalog const& catalog = tree.catalogs[i];
        if (catalog.languages.empty()) continue;
        std::map<ustring8, std::pair<ustring8, std::size_t>> sorted; // by id
        for (auto const& [language, start] : catalog.languages) {
            checked_language const& each = tree.languages[language];
            sorted.emplace(each.id, std::pair(each.spelling, in_language[i][language]));
        }
        catalog_counts& entry = counts.emplace_back(catalog_counts{catalog.name, {}, messages[i]});
        for (auto const& [id, count] : sorted) entry.languages.push_back(count);
    }
    std::sort(counts.begin(), counts.end(),
              [](catalog_counts const& a, catalog_counts const& b) { return a.catalog < b.catalog; });
    return counts;
}

// Whatever an application would stumble over is reported, in any language.
bool count_all(session const& session, ustring8 const& path, std::vector<catalog_counts>& counts) {
    check_tree tree;
    if (!read_tree(session, path, tree)) {
        std::vector<ustring8> languages;
        for (std::uint32_t const language : languages_of(tree))
            languages.push_back(tree.languages[language].spelling);
        if (languages.empty()) languages.emplace_back("en");
        for (ustring8 const& language : languages) {
            message_catalogs catalogs;
            if (!load(session, catalogs, path, language)) return false;
        }
    }
    counts = count_messages(tree);
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

void print_messages(session const& session, message_list const& messages) {
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

void print_messages_json(session const& session, ustring8 const& catalog, message_list const& messages) {
    json_writer json;
    json.begin_object();
    append_messages(json, session.out, catalog, messages);
    json.end_object();
    session.out.line(json.text());
}

/// Each one once, as they come in the text.
std::vector<ustring8> missing_arguments(message_t const& message, zolt::generic::varg_list const& arguments) {
    std::vector<ustring8> missing;
    std::set<ustring8> seen;
    for (message_item const& item : message) {
        ustring8 const name = item.name();
        if (item.type() == message_item::value || arguments.has_argument(name)) continue;
        if (seen.insert(name).second) missing.push_back(name);
    }
    return missing;
}

void print_rendered_json(session const& session, ustring8 const& text, std::vector<ustring8> const& missing) {
    json_writer json;
    json.begin_object();
    json.member("text", text);
    json.begin_array("missing");
    for (ustring8 const& name : missing) json.value(name);
    json.end_array();
    json.end_object();
    session.out.line(json.text());
}

} // namespace

exit_status list_catalogs(session const& session, ustring8 const& path) {
    std::optional<ustring8> const& language = session.options.language;
    if (reads_target(session, path)) return exit_failed;
    std::vector<catalog_counts> counts;
    bool const is_counted =
        language ? count_loaded(session, path, *language, counts) : count_all(session, path, counts);
    if (!is_counted) return exit_failed;
    session.is_json() ? print_json(session, counts) : print_table(session, counts, language.has_value());
    return exit_good;
}

exit_status show_messages(session const& session, show_options const& options) {
    message_catalogs catalogs;
    if (reads_target(session, options.path) || !load(session, catalogs, options.path, session.language()))
        return exit_failed;
    catalog_t const* const catalog = find_catalog(session, catalogs, options.path, options.catalog);
    if (!catalog) return exit_findings;
    message_list messages;
    if (options.message) {
        message_t const* const message = find_message(session, *catalog, *options.message);
        if (!message) return exit_findings;
        messages.push_back(message);
    } else {
        for (auto const& [name, message] : *catalog) messages.push_back(&message);
    }
    session.is_json() ? print_messages_json(session, options.catalog, messages) : print_messages(session, messages);
    return exit_good;
}

exit_status render_message(session const& session, render_options const& options) {
    zolt::generic::varg_list arguments;
    if (!read_values(session, options.values, arguments)) return exit_failed;
    message_catalogs catalogs;
    if (reads_target(session, options.path) || !load(session, catalogs, options.path, session.language()))
        return exit_failed;
    catalog_t const* const catalog = find_catalog(session, catalogs, options.path, options.catalog);
    message_t const* const message = catalog ? find_message(session, *catalog, options.message) : nullptr;
    if (!message) return exit_findings;
    ustring8 const text = message->as_utf8(arguments);
    std::vector<ustring8> const missing = missing_arguments(*message, arguments);
    session.is_json() ? print_rendered_json(session, text, missing) : session.out.line(text);
    for (ustring8 const& name : missing)
        session.complain(session.texts.get(phrase::missing_argument, {{"name", name}}));
    return missing.empty() ? exit_good : exit_findings;
}

} // namespace tools

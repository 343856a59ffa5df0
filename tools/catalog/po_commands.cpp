// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "po_commands.hpp"

#include "catalog_texts.hpp"
#include "catalog_tree.hpp"
#include "message_json.hpp"
#include "po_exchange.hpp"
#include "po_file.hpp"
#include "po_rules.hpp"
#include "tools/program/files.hpp"
#include "tools/program/findings.hpp"
#include "tools/program/json.hpp"
#include "tools/program/languages.hpp"
#include "tools/program/result_file.hpp"

#include <zolt/types/nil.hpp>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <tuple>
#include <utility>

namespace tools {
namespace {

/// Catalog and message.
using name_pair = std::pair<ustring8, ustring8>;
using message_table = std::map<name_pair, catalog_message const*>;

struct language_table {
    ustring8 language; // as first written
    message_table messages;
};

name_pair names_of(catalog_message const& entry) { return {entry.catalog, entry.message.name()}; }

ustring8 scope_of(catalog_message const& entry) { return entry.catalog + "/" + entry.message.name(); }

// What a header and a file name can hold.
bool is_language_id(ustring8 const& id) {
    auto const is_part = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '@' || c == '_';
    };
    ustring8 const normalized = normalized_language(id);
    return id == "." || (id.size() <= 64 && std::all_of(normalized.begin(), normalized.end(), is_part) &&
                         normalized.find_first_not_of('_') != ustring8::npos);
}

/// A directory that is made, and those above it, when it is not there. What was made goes again unless it is kept.
class new_directory {
public:
    explicit new_directory(ustring8 const& path) {
        namespace fs = std::filesystem;
        std::error_code error;
        std::vector<fs::path> missing;
        if (path.empty()) m_error = std::make_error_code(std::errc::no_such_file_or_directory);
        for (fs::path each = path.c_str(); !each.empty() && !fs::exists(each, error); each = each.parent_path())
            missing.push_back(each);
        for (; !missing.empty() && !m_error; missing.pop_back()) {
            if (fs::create_directory(missing.back(), m_error)) m_made.push_back(missing.back());
        }
    }
    new_directory(new_directory const&) = delete;
    new_directory& operator=(new_directory const&) = delete;
    ~new_directory() {
        std::error_code error;
        for (; !m_made.empty(); m_made.pop_back()) std::filesystem::remove(m_made.back(), error);
    }

    /// Why it could not be made, or 0.
    int error() const { return m_error.value(); }
    void keep() { m_made.clear(); }

private:
    std::vector<std::filesystem::path> m_made;
    std::error_code m_error;
};

//--------------------------------------------------------------------------------------------------
// Export

struct exported_language {
    ustring8 language; // as first written
    ustring8 path;     // empty: no file of its own
    std::vector<po_entry> entries{};
};

class po_exporter {
public:
    po_exporter(session const& session, po_export_options const& options)
        : m_session(session), m_options(options), m_findings(session), m_tree(session, m_findings) {}

    exit_status run() {
        if (auto const fault = fault_of_options()) return fail(*fault);
        if (!m_tree.read(m_options.paths)) return end_unread();
        make_tables();
        make_reference();
        if (auto const& language = m_session.options.language)
            m_tables.try_emplace(normalized_language(*language), language_table{*language, {}});
        std::vector<exported_language> languages;
        for (auto const& [language, table] : m_tables) {
            if (is_wanted(language)) languages.push_back(make_entries(language, table));
        }
        if (m_findings.status() != exit_good) return m_findings.print_alone(), exit_findings;
        if (!m_session.is_json() || languages.empty()) m_findings.print();
        if (languages.empty()) return fail(m_session.texts.get(phrase::po_no_messages));
        if (m_options.directory) {
            exit_status const status = write_files(*m_options.directory, languages);
            if (status != exit_good) return status;
        }
        if (m_session.is_json()) {
            write_json(languages);
        } else if (!m_options.directory) {
            m_session.out.write(file_text(languages.front()));
        }
        return exit_good;
    }

private:
    std::optional<ustring8> fault_of_options() const {
        common_options const& common = m_session.options;
        if (common.language && !is_language_id(*common.language))
            return m_session.texts.get(phrase::po_language_refused, {{"lang", *common.language}});
        if (m_session.is_json()) return std::nullopt;
        if (!m_options.directory && !common.language) return m_session.texts.get(phrase::po_one_language);
        if (m_options.directory && common.result_file != "-") return m_session.texts.get(phrase::no_result);
        return std::nullopt;
    }

    exit_status fail(ustring8 const& text) const {
        m_session.complain(text);
        return exit_failed;
    }

    // What the library refuses is not exported, also when nobody wants to hear of it.
    exit_status end_unread() {
        if (m_tree.is_refused() && m_findings.status() == exit_findings)
            return m_findings.print_alone(), exit_findings;
        m_findings.print();
        if (!m_tree.is_refused()) return exit_failed;
        m_session.complain(m_session.texts.get(phrase::po_no_messages));
        return exit_findings;
    }

    void find(catalog_message const& entry, std::string_view rule, phrase id) {
        bool const is_ignored = std::any_of(entry.ignored.begin(), entry.ignored.end(),
                                            [rule](std::string_view ignored) { return ignored == rule; });
        if (is_ignored) return;
        ustring8 const text =
            m_session.texts.get(id, {{"message", entry.message.name()}, {"lang", entry.message._orginal_locale()}});
        m_findings.add({path_of(entry), entry.line, entry.column, find_rule(export_po_rules(), rule)->level, rule,
                        text, scope_of(entry)});
    }

    ustring8 const& path_of(catalog_message const& entry) const { return m_tree.path_of(entry); }

    // By file and line.
    void sort(std::vector<catalog_message const*>& messages) const {
        std::sort(messages.begin(), messages.end(), [this](auto const* left, auto const* right) {
            return std::tie(path_of(*left), left->line, left) < std::tie(path_of(*right), right->line, right);
        });
    }

    // In the order of files and lines, each message once for each language.
    void make_tables() {
        std::vector<catalog_message const*> messages;
        for (catalog_message const& entry : m_tree.messages()) {
            if (entry.message != zolt::types::nil && !entry.message._orginal_locale().empty())
                messages.push_back(&entry);
        }
        sort(messages);
        for (catalog_message const* const entry : messages) {
            ustring8 const& language = entry->message._orginal_locale();
            if (!is_language_id(language)) {
                find(*entry, "po-language", phrase::po_bad_language);
            } else if (!m_tree.is_served(*entry)) {
                find(*entry, "duplicate-message", phrase::po_second_message);
            } else if (!fits_po(entry->catalog, entry->message)) {
                find(*entry, "po-text", phrase::po_bad_text);
            } else {
                language_table& table = m_tables.try_emplace(normalized_language(language)).first->second;
                if (table.language.empty()) table.language = language;
                table.messages.emplace(names_of(*entry), entry);
            }
        }
    }

    // The reference text of a message is the one that the library would show for that language.
    void make_reference() {
        ustring8 const language = normalized_language(m_session.options.reference);
        std::vector<ustring8> served_by{language};
        for_each_base(language, [&](std::string_view base) { served_by.emplace_back(base); });
        served_by.insert(served_by.end(), {"en", "."});
        for (ustring8 const& part : served_by) {
            auto const table = m_tables.find(part);
            if (table == m_tables.end()) continue;
            for (auto const& [key, entry] : table->second.messages) m_reference.emplace(key, entry);
        }
        for (auto const& [key, entry] : m_reference) m_in_order.push_back(entry);
        sort(m_in_order);
    }

    bool is_wanted(ustring8 const& language) const {
        auto const& wanted = m_session.options.language;
        return !wanted || normalized_language(*wanted) == language;
    }

    // From a region only what it has itself is expected, and what its language lacks.
    exported_language make_entries(ustring8 const& language, language_table const& table) {
        exported_language result{table.language, {}};
        if (m_options.directory) {
            result.path = *m_options.directory;
            if (!std::string_view(result.path).ends_with('/')) result.path += '/';
            result.path.append(language == "." ? "_" : language).append(".po");
        }
        std::vector<message_table const*> bases;
        for_each_base(language, [&](std::string_view base) {
            auto const found = m_tables.find(ustring8(base));
            if (found != m_tables.end()) bases.push_back(&found->second.messages);
        });
        for (catalog_message const* const entry : m_in_order) {
            name_pair const key = names_of(*entry);
            auto const own = table.messages.find(key);
            if (own != table.messages.end()) {
                append(result, *entry, entry, own->second);
                continue;
            }
            bool const is_served = std::any_of(bases.begin(), bases.end(),
                                               [&](message_table const* base) { return base->count(key) != 0; });
            bool const is_everywhere = entry->message._orginal_locale() == "." || language == ".";
            if (!is_served && !is_everywhere) append(result, *entry, entry, nullptr);
        }
        std::vector<catalog_message const*> others;
        for (auto const& [key, entry] : table.messages) {
            if (m_reference.count(key) == 0) others.push_back(entry);
        }
        sort(others);
        for (catalog_message const* const entry : others) append(result, *entry, nullptr, entry);
        return result;
    }

    // The place is that of the reference, else of the language's own message.
    void append(exported_language& result, catalog_message const& place, catalog_message const* reference,
                catalog_message const* own) {
        po_entry& entry = result.entries.emplace_back(
            to_po_entry(place.catalog, reference ? &reference->message : nullptr, own ? &own->message : nullptr));
        entry.references.push_back(printable(path_of(place)) + ":" + std::to_string(place.line));
        if (own && entry.is_fuzzy) find(*own, "po-fuzzy", phrase::po_refused_text);
        if (own && !reference) find(*own, "po-reference", phrase::po_no_reference);
    }

    ustring8 file_text(exported_language const& language) const {
        ustring8 const& reference = m_session.options.reference;
        ustring8 file;
        append_po(file, po_header(language.language, is_language_id(reference) ? reference : ustring8()));
        for (po_entry const& entry : language.entries) append_po(file, entry);
        file.pop_back(); // the last empty line
        return file;
    }

    // Each takes its place when all are on the disk.
    exit_status write_files(ustring8 const& path, std::vector<exported_language> const& languages) const {
        new_directory directory(path);
        if (directory.error() != 0) return fail_to_write(phrase::directory_not_made, path, directory.error());
        std::map<ustring8, result_file> results; // by path; gone before the directory
        for (exported_language const& each : languages) {
            result_file& file = results.try_emplace(each.path, each.path).first->second;
            file.write(file_text(each));
            if (int const error = file.finish()) return fail_to_write(phrase::file_not_written, each.path, error);
        }
        for (auto& [file_path, file] : results) {
            if (int const error = file.commit()) return fail_to_write(phrase::file_not_written, file_path, error);
            m_session.tell(file_path);
        }
        directory.keep();
        return exit_good;
    }

    exit_status fail_to_write(phrase id, ustring8 const& path, int error) const {
        return fail(m_session.texts.get(id, {{"path", path}, {"reason", std::strerror(error)}}));
    }

    void write_json(std::vector<exported_language> const& languages) {
        json_writer json;
        json.begin_object();
        json.begin_array("languages");
        for (exported_language const& each : languages) {
            json.begin_object();
            json.member("language", each.language);
            if (!each.path.empty()) json.member("file", each.path);
            json.begin_array("entries");
            for (po_entry const& entry : each.entries) {
                append_entry(json, entry);
                m_session.out.write(json.take());
            }
            json.end_array();
            json.end_object();
        }
        json.end_array();
        m_findings.append_to(json);
        json.end_object();
        m_session.out.line(json.text());
    }

    static void append_entry(json_writer& json, po_entry const& entry) {
        json.begin_object();
        json.member("context", *entry.context);
        json.member("id", entry.id);
        json.member("text", entry.texts.front());
        json.member("fuzzy", entry.is_fuzzy);
        json.begin_array("references");
        for (ustring8 const& reference : entry.references) json.value(reference);
        json.end_array();
        json.begin_array("comments");
        for (ustring8 const& note : entry.notes) json.value(note);
        json.end_array();
        json.end_object();
    }

    session const& m_session;
    po_export_options const& m_options;
    finding_list m_findings;
    catalog_tree m_tree;
    std::map<ustring8, language_table> m_tables; // by normalized language
    message_table m_reference;
    std::vector<catalog_message const*> m_in_order; // the reference's, by file and line
};

//--------------------------------------------------------------------------------------------------
// Import

constexpr std::pair<po_problem, phrase> problem_texts[] = {
    {po_problem::open_string, phrase::po_open_string},
    {po_problem::bad_escape, phrase::po_bad_escape},
    {po_problem::control_character, phrase::po_control_character},
    {po_problem::not_utf8, phrase::po_not_utf8},
    {po_problem::no_keyword, phrase::po_no_keyword},
    {po_problem::misplaced, phrase::po_misplaced},
    {po_problem::no_text, phrase::po_no_text},
    {po_problem::charset, phrase::po_charset},
    {po_problem::not_charset, phrase::po_not_charset},
};

phrase text_of(po_problem problem) {
    return std::find_if(std::begin(problem_texts), std::end(problem_texts),
                        [problem](auto const& row) { return row.first == problem; })
        ->second;
}

class po_import {
public:
    po_import(session const& session, po_import_options const& options)
        : m_session(session), m_options(options), m_findings(session) {}

    exit_status run() {
        auto const& language = m_session.options.language;
        if (language && !is_language_id(*language)) {
            m_session.complain(m_session.texts.get(phrase::po_language_refused, {{"lang", *language}}));
            return exit_failed;
        }
        for (ustring8 const& path : m_options.paths) {
            ustring8 bytes;
            if (!load(path, bytes)) {
                m_session.complain(m_session.texts.get(phrase::not_readable, why_unreadable(path)));
                return exit_failed;
            }
            take(path, read_po(bytes));
        }
        bool const is_good = m_findings.status() == exit_good;
        if (!is_good || m_messages.empty()) {
            m_findings.print_alone();
            // The library refuses a file without catalogs.
            if (is_good) m_session.complain(m_session.texts.get(phrase::po_no_translations));
            return exit_findings;
        }
        m_session.is_json() ? write_json() : write_catalogs();
        return exit_good;
    }

private:
    using result = po_importer::result;

    void find(ustring8 const& path, std::size_t line, std::size_t column, std::string_view rule, phrase id,
              ustring8 const& scope = ustring8()) {
        finding found{path, line, column, find_rule(import_po_rules(), rule)->level, rule, {}, scope};
        if (m_findings.is_ignored(found)) return;
        m_errors += found.level == severity::error ? 1 : 0;
        found.text = m_session.texts.get(id, {{"n", static_cast<unsigned long long>(most_po_faults)}});
        m_findings.add(std::move(found));
    }

    void take(ustring8 const& path, po_file const& file) {
        for (po_fault const& fault : file.faults)
            find(path, fault.line, fault.column, "po-syntax", text_of(fault.problem));
        if (file.unread_line != 0) find(path, file.unread_line, 1, "po-syntax", phrase::po_many_faults);
        if (!file.faults.empty()) return;
        ustring8 const language = m_session.options.language.value_or(file.field("Language"));
        if (!is_language_id(language)) return find(path, 1, 1, "po-language", phrase::po_no_language);

        po_importer& importer =
            m_importers.try_emplace(normalized_language(language), language, m_options.catalog, m_options.use_fuzzy)
                .first->second;
        ustring8 const plural_rule = file.field("Plural-Forms");
        std::size_t const before = m_messages.size();
        std::size_t counts[result_count] = {};
        m_errors = 0;
        for (po_entry const& entry : file.entries) {
            if (m_errors == most_po_faults) return find(path, entry.line, 1, "po-syntax", phrase::po_many_faults);
            result const what = importer.add(entry, plural_rule, m_messages);
            ++counts[static_cast<std::size_t>(what)];
            find_faults(path, importer, entry, what);
        }
        m_session.tell(m_session.texts.get(
            phrase::po_imported,
            {{"path", path},
             {"messages", m_session.texts.counted(phrase::messages_one, m_messages.size() - before)},
             {"untranslated", count(counts, result::untranslated)},
             {"fuzzy", count(counts, result::fuzzy)}}));
    }

    void find_faults(ustring8 const& path, po_importer const& importer, po_entry const& entry, result what) {
        auto const find_here = [&](std::string_view rule, phrase id) {
            auto const names = importer.name_of(entry);
            find(path, entry.line, 1, rule, id,
                 names ? names->first + "/" + names->second : entry.context.value_or(""));
        };
        if (what == result::no_name) find_here("po-context", phrase::po_no_name);
        if (what == result::duplicate) find_here("duplicate-message", phrase::po_duplicate);
        if (what != result::imported) return;
        bool const is_foreign = m_options.catalog.has_value(); // its notes may be anything
        for (po_doubt const doubt : doubts_about(entry)) {
            if (doubt == po_doubt::placeholders) find_here("placeholder-set", phrase::po_placeholders);
            if (doubt == po_doubt::brace) find_here("po-brace", phrase::po_stray_brace);
            if (doubt == po_doubt::note && !is_foreign) find_here("po-note", phrase::po_bad_note);
        }
    }

    static constexpr std::size_t result_count = static_cast<std::size_t>(result::duplicate) + 1;
    static long long count(std::size_t const (&counts)[result_count], result what) {
        return static_cast<long long>(counts[static_cast<std::size_t>(what)]);
    }

    void write_catalogs() {
        m_findings.print();
        catalog_writer writer;
        for (po_message const& message : m_messages) writer.add(message.catalog, message.message);
        m_session.out.write(writer.text());
    }

    void write_json() {
        std::set<ustring8> languages;
        std::map<ustring8, message_list> catalogs;
        for (po_message const& each : m_messages) {
            languages.insert(each.message._orginal_locale());
            catalogs[each.catalog].push_back(&each.message);
        }
        json_writer json;
        json.begin_object();
        json.begin_array("languages");
        for (ustring8 const& language : languages) json.value(language);
        json.end_array();
        append_catalogs(json, m_session.out, catalogs);
        m_findings.append_to(json);
        json.end_object();
        m_session.out.line(json.text());
    }

    session const& m_session;
    po_import_options const& m_options;
    finding_list m_findings;
    std::vector<po_message> m_messages;
    std::size_t m_errors = 0;                    // of the entries of a file
    std::map<ustring8, po_importer> m_importers; // by normalized language: several files may make one
};

} // namespace

exit_status export_po(session const& session, po_export_options const& options) {
    return po_exporter(session, options).run();
}

exit_status import_po(session const& session, po_import_options const& options) {
    return po_import(session, options).run();
}

} // namespace tools

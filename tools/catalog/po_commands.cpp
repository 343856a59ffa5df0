// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "po_commands.hpp"

#include "catalog_texts.hpp"
#include "catalog_tree.hpp"
#include "po_exchange.hpp"
#include "po_file.hpp"
#include "tools/program/files.hpp"
#include "tools/program/findings.hpp"
#include "tools/program/languages.hpp"
#include "tools/program/result_file.hpp"

#include <zolt/types/nil.hpp>

#include <algorithm>
#include <cstring>
#include <map>
#include <string>
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

//--------------------------------------------------------------------------------------------------
// Export

class po_exporter {
public:
    explicit po_exporter(session const& session) : m_session(session), m_findings(session), m_tree(session) {}

    exit_status run(po_export_options const& options) {
        if (!options.directory && !m_session.options.language) return fail(phrase::po_one_language, {});
        if (!m_tree.read(options.paths)) return m_tree.is_refused() ? exit_findings : exit_failed;
        make_tables();
        make_reference();
        if (auto const& language = m_session.options.language)
            m_tables.try_emplace(normalized_language(*language), language_table{*language, {}});
        std::vector<std::pair<ustring8, ustring8>> files; // by language
        for (auto const& [language, table] : m_tables) {
            if (is_wanted(language)) files.emplace_back(language, make_file(language, table));
        }
        m_findings.print();
        if (m_findings.status() != exit_good) return m_findings.status();
        if (files.empty()) return fail(phrase::po_no_messages, {});
        if (options.directory) return write_files(*options.directory, files);
        m_session.out.write(files.front().second);
        return exit_good;
    }

private:
    exit_status fail(phrase id, zolt::generic::varg_list const& arguments) const {
        m_session.complain(m_session.texts.get(id, arguments));
        return exit_failed;
    }

    void find(catalog_message const& entry, severity level, std::string_view rule, phrase id) {
        bool const is_ignored = std::any_of(entry.ignored.begin(), entry.ignored.end(),
                                            [rule](std::string_view ignored) { return ignored == rule; });
        if (is_ignored) return;
        ustring8 const text =
            m_session.texts.get(id, {{"message", entry.message.name()}, {"lang", entry.message._orginal_locale()}});
        m_findings.add({path_of(entry), entry.line, 1, level, rule, text, scope_of(entry)});
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
                find(*entry, severity::error, "po-language", phrase::po_bad_language);
            } else if (!m_tree.is_served(*entry)) {
                find(*entry, severity::warning, "duplicate-message", phrase::po_second_message);
            } else if (!fits_po(entry->catalog, entry->message)) {
                find(*entry, severity::error, "po-text", phrase::po_bad_text);
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
    ustring8 make_file(ustring8 const& language, language_table const& table) {
        std::vector<message_table const*> bases;
        for_each_base(language, [&](std::string_view base) {
            auto const found = m_tables.find(ustring8(base));
            if (found != m_tables.end()) bases.push_back(&found->second.messages);
        });
        ustring8 file;
        append_po(file, po_header(table.language, m_session.options.reference));
        for (catalog_message const* const entry : m_in_order) {
            name_pair const key = names_of(*entry);
            auto const own = table.messages.find(key);
            if (own != table.messages.end()) {
                append(file, entry, own->second);
                continue;
            }
            bool const is_served = std::any_of(bases.begin(), bases.end(),
                                               [&](message_table const* base) { return base->count(key) != 0; });
            bool const is_everywhere = entry->message._orginal_locale() == "." || language == ".";
            if (!is_served && !is_everywhere) append(file, entry, nullptr);
        }
        std::vector<catalog_message const*> others;
        for (auto const& [key, entry] : table.messages) {
            if (m_reference.count(key) == 0) others.push_back(entry);
        }
        sort(others);
        for (catalog_message const* const entry : others) append(file, nullptr, entry);
        file.pop_back(); // the last empty line
        return file;
    }

    void append(ustring8& file, catalog_message const* reference, catalog_message const* own) {
        catalog_message const& last = own ? *own : *reference; // one of them is there
        catalog_message const& place = reference ? *reference : last;
        po_entry entry =
            to_po_entry(place.catalog, reference ? &place.message : nullptr, own ? &last.message : nullptr);
        // Names with blanks stand between these two marks.
        ustring8 path = printable(path_of(place));
        if (path.find(' ') != ustring8::npos) path = "\u2068" + path + "\u2069";
        entry.references.push_back(path + ":" + std::to_string(place.line));
        append_po(file, entry);
        if (entry.is_fuzzy) find(*own, severity::warning, "po-fuzzy", phrase::po_refused_text);
        if (!reference) find(*own, severity::note, "po-reference", phrase::po_no_reference);
    }

    // Each takes its place when all are on the disk.
    exit_status write_files(ustring8 const& directory,
                            std::vector<std::pair<ustring8, ustring8>> const& files) const {
        std::map<ustring8, result_file> results; // by path
        for (auto const& [language, text] : files) {
            ustring8 const path = directory + "/" + (language == "." ? ustring8("_") : language) + ".po";
            result_file& file = results.try_emplace(path, path).first->second;
            file.write(text);
            if (int const error = file.finish()) return fail_to_write(path, error);
        }
        for (auto& [path, file] : results) {
            if (int const error = file.commit()) return fail_to_write(path, error);
            m_session.tell(path);
        }
        return exit_good;
    }

    exit_status fail_to_write(ustring8 const& path, int error) const {
        return fail(phrase::file_not_written, {{"path", path}, {"reason", std::strerror(error)}});
    }

    session const& m_session;
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
        for (ustring8 const& path : m_options.paths) {
            ustring8 bytes;
            if (!load(path, bytes)) {
                m_session.complain(m_session.texts.get(phrase::not_readable, why_unreadable(path)));
                return exit_failed;
            }
            take(path, read_po(bytes));
        }
        m_findings.print();
        if (m_findings.status() != exit_good) return m_findings.status();
        if (!m_has_messages) { // the library refuses a file without catalogs
            m_session.complain(m_session.texts.get(phrase::po_no_translations));
            return exit_findings;
        }
        m_session.out.write(m_writer.text());
        return exit_good;
    }

private:
    using result = po_importer::result;

    void find(ustring8 const& path, std::size_t line, std::size_t column, std::string_view rule, phrase id,
              severity level = severity::error) {
        m_findings.add({path, line, column, level, rule, m_session.texts.get(id)});
    }

    void take(ustring8 const& path, po_file const& file) {
        for (po_fault const& fault : file.faults)
            find(path, fault.line, fault.column, "po-syntax", text_of(fault.problem));
        if (!file.faults.empty()) return;
        ustring8 const language = m_session.options.language.value_or(file.field("Language"));
        if (!is_language_id(language)) return find(path, 1, 1, "po-language", phrase::po_no_language);

        auto const importer = m_importers.try_emplace(normalized_language(language), language, m_options.catalog,
                                                      m_options.use_fuzzy);
        ustring8 const plural_rule = file.field("Plural-Forms");
        std::vector<po_message> messages;
        std::size_t counts[result_count] = {};
        for (po_entry const& entry : file.entries) {
            result const what = importer.first->second.add(entry, plural_rule, messages);
            ++counts[static_cast<std::size_t>(what)];
            if (what == result::no_name) find(path, entry.line, 1, "po-context", phrase::po_no_name);
            if (what == result::duplicate) find(path, entry.line, 1, "duplicate-message", phrase::po_duplicate);
            if (what == result::imported) find_doubts(path, entry);
        }
        m_has_messages = m_has_messages || !messages.empty();
        for (po_message const& message : messages) m_writer.add(message.catalog, message.message);
        m_session.tell(
            m_session.texts.get(phrase::po_imported, {{"path", path},
                                                      {"n", static_cast<long long>(messages.size())},
                                                      {"untranslated", count(counts, result::untranslated)},
                                                      {"fuzzy", count(counts, result::fuzzy)}}));
    }

    void find_doubts(ustring8 const& path, po_entry const& entry) {
        for (po_doubt const doubt : doubts_about(entry)) {
            bool const is_foreign = m_options.catalog.has_value(); // its notes may be anything
            if (doubt == po_doubt::placeholders)
                find(path, entry.line, 1, "placeholder-set", phrase::po_placeholders, severity::warning);
            if (doubt == po_doubt::brace)
                find(path, entry.line, 1, "po-brace", phrase::po_stray_brace, severity::warning);
            if (doubt == po_doubt::note && !is_foreign)
                find(path, entry.line, 1, "po-note", phrase::po_bad_note, severity::warning);
        }
    }

    static constexpr std::size_t result_count = static_cast<std::size_t>(result::duplicate) + 1;
    static long long count(std::size_t const (&counts)[result_count], result what) {
        return static_cast<long long>(counts[static_cast<std::size_t>(what)]);
    }

    session const& m_session;
    po_import_options const& m_options;
    finding_list m_findings;
    catalog_writer m_writer;
    bool m_has_messages = false;
    std::map<ustring8, po_importer> m_importers; // by normalized language: several files may make one
};

} // namespace

exit_status export_po(session const& session, po_export_options const& options) {
    return po_exporter(session).run(options);
}

exit_status import_po(session const& session, po_import_options const& options) {
    return po_import(session, options).run();
}

} // namespace tools

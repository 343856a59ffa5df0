// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "catalog_missing.hpp"

#include "check_rules.hpp"
#include "tools/program/findings.hpp"
#include "tools/program/json.hpp"
#include "translations.hpp"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

namespace tools {
namespace {

// Findings for all languages together, besides one for each message of the files; what a language lacks beyond
// its share is counted.
constexpr std::size_t most_missing = 100000;

using number = unsigned long long;

struct language_report {
    std::size_t missing = 0;
    std::size_t obsolete = 0;
    std::size_t copies = 0;
    /// How many messages the library takes from each language of the tree, or from none.
    std::map<std::uint32_t, std::size_t> served{};
    /// Reference messages and what is shown for them.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> lacks{};
};

class missing_run {
public:
    missing_run(session const& session, missing_options const& options)
        : m_session(session), m_options(options), m_texts(session) {}

    exit_status run() {
        exit_status const status = m_texts.read(m_options.paths);
        if (status != exit_good) return status;
        m_reports.resize(m_texts.languages().size());
        m_texts.for_each([this](translation const& entry) { take(entry); });
        for (std::size_t i = 0; i != m_reports.size(); ++i) report_missing(i);
        if (m_session.is_json()) {
            print_json();
        } else {
            m_texts.found().print();
            if (!m_session.options.is_quiet) print_summary();
        }
        return m_texts.is_complete() ? m_texts.found().status() : exit_failed;
    }

private:
    void take(translation const& entry) {
        language_report& report = m_reports[entry.language];
        if (entry.reference == none) {
            add(rule_id::obsolete_message, entry, phrase::message_is_obsolete, report.obsolete);
            return;
        }
        ++report.served[entry.served == none ? none : message(entry.served).language];
        if (entry.is_copy) add(rule_id::untranslated_copy, entry, phrase::message_is_copy, report.copies);
        if (entry.is_same && !entry.is_copy)
            add(rule_id::untranslated_copy, entry, phrase::message_may_be_copy, report.copies, severity::note);
        if (entry.is_translated || is_silenced(rule_id::missing_translation, entry.reference)) return;
        ++report.missing;
        report.lacks.emplace_back(entry.reference, entry.served);
    }

    // What is wrong with a message of the language itself.
    void add(rule_id id, translation const& entry, phrase text, std::size_t& count,
             std::optional<severity> level = std::nullopt) {
        if (is_silenced(id, entry.own)) return;
        ++count;
        finding found = make(id, entry.own, describe(text, entry.own, entry.language));
        found.level = level.value_or(found.level);
        add_details(found, entry.own, entry.language);
        m_texts.found().add(std::move(found));
    }

    // A missing message is found where there is something to translate.
    void report_missing(std::size_t language) {
        language_report& report = m_reports[language];
        severity const level = report.missing <= m_options.allowed ? severity::warning : severity::error;
        std::size_t const share = (most_missing + m_texts.tree().messages.size()) / m_reports.size();
        std::size_t const listed = std::min(report.missing, share);
        for (std::size_t i = 0; i != listed; ++i) {
            auto const [reference, served] = report.lacks[i];
            finding found = make(rule_id::missing_translation, reference,
                                 served == none ? describe(phrase::translation_is_missing, reference, language)
                                                : describe(phrase::translation_is_served, reference, language,
                                                           spelling_of(message(served).language)));
            found.level = level;
            add_details(found, reference, language);
            if (m_session.is_json())
                found.details.emplace_back("served",
                                           served == none ? ustring8() : spelling_of(message(served).language));
            m_texts.found().add(std::move(found));
        }
        if (listed == report.missing) return;
        finding rest = make(rule_id::missing_translation, report.lacks[listed].first, {});
        rest.level = level;
        rest.text = m_session.texts.get(phrase::more_translations_missing,
                                        {{"n", static_cast<number>(report.missing - listed)},
                                         {"language", shown(m_texts.languages()[language].spelling)}});
        m_texts.found().add(std::move(rest));
    }

    //----------------------------------------------------------------------------------------------

    checked_message const& message(std::uint32_t index) { return m_texts.tree().messages[index]; }
    ustring8 const& catalog_of(std::uint32_t index) { return m_texts.tree().catalogs[message(index).catalog].name; }
    ustring8 const& spelling_of(std::uint32_t language) { return m_texts.tree().languages[language].spelling; }

    finding make(rule_id id, std::uint32_t index, ustring8 const& text) {
        checked_message const& where = message(index);
        checked_file& file = m_texts.tree().files[where.file];
        rule const& rule = get_rule(id);
        text_place const at = place_of(file, where.offset);
        finding found{file.path, at.line, at.column, rule.level, rule.name, text};
        if (!m_session.options.ignored.empty())
            found.scope.append(catalog_of(index)).append("/").append(where.name);
        return found;
    }

    bool is_silenced(rule_id id, std::uint32_t index) {
        if (message(index).ignored & in_set(id)) return true;
        return !m_session.options.ignored.empty() && m_texts.found().is_ignored(make(id, index, {}));
    }

    ustring8 describe(phrase text, std::uint32_t index, std::size_t language, ustring8 const& served = {}) {
        return m_session.texts.get(text, {{"catalog", shown(catalog_of(index))},
                                          {"message", shown(message(index).name)},
                                          {"language", shown(m_texts.languages()[language].spelling)},
                                          {"served", shown(served)},
                                          {"reference", shown(m_session.options.reference)}});
    }

    void add_details(finding& found, std::uint32_t index, std::size_t language) {
        if (!m_session.is_json()) return;
        found.details.emplace_back("language", m_texts.languages()[language].spelling);
        found.details.emplace_back("catalog", catalog_of(index));
        found.details.emplace_back("message", ustring8(std::string(message(index).name)));
    }

    // The languages in the order of their weight, then those without a text.
    std::vector<std::pair<ustring8, std::size_t>> served(std::size_t language) {
        std::vector<std::pair<ustring8, std::size_t>> result;
        std::map<std::uint32_t, std::size_t> const& counts = m_reports[language].served;
        auto const add = [&](std::uint32_t from, ustring8 const& name) {
            auto const found = counts.find(from);
            if (found != counts.end()) result.emplace_back(name, found->second);
        };
        for (serving_language const& each : m_texts.languages()[language].serving)
            add(each.language, spelling_of(each.language));
        add(none, {});
        return result;
    }

    void print_summary() {
        for (std::size_t i = 0; i != m_reports.size(); ++i) {
            target_language const& language = m_texts.languages()[i];
            if (language.is_reference) continue;
            language_report const& report = m_reports[i];
            ustring8 from;
            for (auto const& [name, count] : served(i)) {
                from.append(from.empty() ? "" : ", ")
                    .append(name.empty() ? m_session.texts.get(phrase::served_by_none) : shown(name));
                from.append(" ").append(std::to_string(count));
            }
            m_session.out.line(printable(
                m_session.texts.get(phrase::missing_summary, {{"language", shown(language.spelling)},
                                                              {"missing", static_cast<number>(report.missing)},
                                                              {"obsolete", static_cast<number>(report.obsolete)},
                                                              {"copies", static_cast<number>(report.copies)},
                                                              {"served", from}})));
        }
    }

    void print_json() {
        json_writer json;
        json.begin_object();
        json.member("reference", m_session.options.reference);
        json.begin_array("languages");
        for (std::size_t i = 0; i != m_reports.size(); ++i) {
            if (m_texts.languages()[i].is_reference) continue;
            json.begin_object();
            json.member("language", m_texts.languages()[i].spelling);
            json.member("missing", m_reports[i].missing);
            json.member("obsolete", m_reports[i].obsolete);
            json.member("same", m_reports[i].copies);
            json.begin_array("served");
            for (auto const& [name, count] : served(i)) {
                json.begin_object();
                json.member("language", name);
                json.member("messages", count);
                json.end_object();
            }
            json.end_array();
            json.end_object();
        }
        json.end_array();
        m_texts.found().append_to(json);
        json.end_object();
        m_session.out.line(json.text());
    }

    session const& m_session;
    missing_options const& m_options;
    translations m_texts;
    std::vector<language_report> m_reports; // by language that is looked at
};

} // namespace

exit_status find_missing(session const& session, missing_options const& options) {
    return missing_run(session, options).run();
}

} // namespace tools

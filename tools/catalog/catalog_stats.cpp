// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "catalog_stats.hpp"

#include "catalog_paths.hpp"
#include "completion_chart.hpp"
#include "tools/program/files.hpp"
#include "tools/program/json.hpp"
#include "tools/program/result_file.hpp"
#include "translations.hpp"

#include <algorithm>
#include <cstring>
#include <deque>
#include <map>
#include <string>
#include <utility>

namespace tools {
namespace {

// So that a small tree of many languages and catalogs does not make a table without end.
constexpr std::size_t most_rows = 1000000;

struct counts {
    std::size_t total = 0;      // messages of the reference
    std::size_t translated = 0; // of these
    std::size_t obsolete = 0;
    std::size_t copies = 0;
    std::size_t words = 0; // of the reference texts of what is translated
    std::size_t fuzzy = 0; // for gettext: with a text that it would not take as it is
    std::size_t empty = 0; // for gettext: the empty text, which is none there

    std::size_t missing() const { return total - translated; }

    counts& operator+=(counts const& other) {
        total += other.total;
        translated += other.translated;
        obsolete += other.obsolete;
        copies += other.copies;
        words += other.words;
        fuzzy += other.fuzzy;
        empty += other.empty;
        return *this;
    }
};

struct language_counts {
    counts sum;
    std::map<ustring8, counts> catalogs; // by name
};

// As msgfmt --statistics writes it.
std::string gettext_sentence(counts const& sum) {
    auto const part = [](std::size_t number, std::string_view what) {
        return std::to_string(number) + " " + std::string(what) + (number == 1 ? "" : "s");
    };
    std::string line = part(sum.translated - sum.fuzzy - sum.empty, "translated message");
    if (sum.fuzzy != 0) line += ", " + part(sum.fuzzy, "fuzzy translation");
    std::size_t const untranslated = sum.missing() + sum.empty;
    if (untranslated != 0) line += ", " + part(untranslated, "untranslated message");
    return line + ".";
}

class stats_run {
public:
    stats_run(session const& session, stats_options const& options)
        : m_session(session), m_options(options), m_texts(session) {}

    exit_status run() {
        if (has_same_targets()) return fail(phrase::same_result, {{"path", *m_options.chart}});
        exit_status const status = m_texts.read(m_options.paths);
        if (status != exit_good) return status;
        if (draws_over_input()) return exit_failed;
        if (!count()) return exit_failed;
        exit_status const found = m_texts.is_complete() ? m_texts.found().status() : exit_failed;
        if (!m_session.is_json() || draws_on_output()) m_texts.found().print();
        if ((found == exit_good || draws_on_output()) && !write_chart()) return exit_failed;
        if (!draws_on_output()) write_results();
        return found;
    }

private:
    exit_status fail(phrase text, zolt::generic::varg_list const& arguments) const {
        m_session.complain(m_session.texts.get(text, arguments));
        return exit_failed;
    }

    // A row for each catalog and language: also a catalog that nobody has begun to translate.
    bool count() {
        std::size_t const languages = m_texts.languages().size();
        std::vector<checked_catalog> const& catalogs = m_texts.tree().catalogs;
        if (languages * catalogs.size() > most_rows)
            return fail(phrase::too_many_languages, {{"n", static_cast<unsigned long long>(languages)}}), false;
        std::vector<std::vector<counts>> all(languages, std::vector<counts>(catalogs.size()));
        m_texts.for_each([&](translation const& entry) {
            counts& where = all[entry.language][entry.catalog];
            count_one(where, entry);
            if (m_options.is_gettext && m_texts.is_fuzzy(entry)) ++where.fuzzy;
        });
        m_counts.resize(languages);
        for (std::size_t language = 0; language != languages; ++language) {
            for (std::size_t i = 0; i != catalogs.size(); ++i) {
                counts const& each = all[language][i];
                m_counts[language].sum += each;
                if (each.total + each.obsolete != 0) m_counts[language].catalogs.emplace(catalogs[i].name, each);
            }
        }
        return true;
    }

    static void count_one(counts& where, translation const& entry) {
        if (entry.reference == none) {
            ++where.obsolete;
            return;
        }
        ++where.total;
        where.copies += entry.is_same ? 1 : 0;
        if (!entry.is_translated) return;
        ++where.translated;
        where.words += entry.words;
        where.empty += entry.is_empty ? 1 : 0;
    }

    void write_results() {
        if (m_session.is_json()) {
            print_json();
        } else if (m_options.is_gettext) {
            print_sentences();
        } else {
            print_table();
        }
    }

    void print_sentences() const {
        for (std::size_t i = 0; i != m_counts.size(); ++i) {
            ustring8 line;
            if (!m_session.options.language) line.append(m_texts.languages()[i].spelling).append(": ");
            m_session.out.line(printable(line.append(gettext_sentence(m_counts[i].sum))));
        }
    }

    void print_table() const {
        auto const heading = [&](phrase id) { return m_session.texts.get(id); };
        constexpr auto right = table::align::right;
        table table({{heading(phrase::language_heading)},
                     {heading(phrase::catalog_heading)},
                     {heading(phrase::total_heading), right},
                     {heading(phrase::translated_heading), right},
                     {heading(phrase::missing_heading), right},
                     {heading(phrase::obsolete_heading), right},
                     {heading(phrase::copies_heading), right},
                     {heading(phrase::words_heading), right},
                     {"%", right}});
        for (std::size_t i = 0; i != m_counts.size(); ++i) {
            ustring8 const& language = m_texts.languages()[i].spelling;
            auto const row = [&](ustring8 const& catalog, counts const& each) {
                table.row({language, catalog, std::to_string(each.total), std::to_string(each.translated),
                           std::to_string(each.missing()), std::to_string(each.obsolete),
                           std::to_string(each.copies), std::to_string(each.words),
                           std::to_string(percent(each.translated, each.total))});
            };
            for (auto const& [catalog, each] : m_counts[i].catalogs) row(catalog, each);
            if (m_counts[i].catalogs.size() != 1) row(m_session.texts.get(phrase::all_catalogs), m_counts[i].sum);
        }
        table.print(m_session.out);
    }

    void print_json() {
        json_writer json;
        json.begin_object();
        json.member("reference", m_session.options.reference);
        json.begin_array("languages");
        for (std::size_t i = 0; i != m_counts.size(); ++i) {
            json.begin_object();
            json.member("language", m_texts.languages()[i].spelling);
            if (m_options.is_gettext) json.member("sentence", gettext_sentence(m_counts[i].sum));
            append(json, m_counts[i].sum);
            json.begin_array("catalogs");
            for (auto const& [catalog, each] : m_counts[i].catalogs) {
                json.begin_object();
                json.member("catalog", catalog);
                append(json, each);
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

    static void append(json_writer& json, counts const& each) {
        json.member("total", each.total);
        json.member("translated", each.translated);
        json.member("missing", each.missing());
        json.member("obsolete", each.obsolete);
        json.member("same", each.copies);
        json.member("words", each.words);
        json.member("percent", percent(each.translated, each.total));
    }

    //----------------------------------------------------------------------------------------------

    // Neither needs to be there yet.
    bool has_same_targets() const {
        ustring8 const& result = m_session.options.result_file;
        return m_options.chart && !draws_on_output() && result != "-" && is_same_file(*m_options.chart, result);
    }

    bool draws_over_input() {
        std::deque<checked_file> const& files = m_texts.tree().files;
        return m_options.chart && std::any_of(files.begin(), files.end(), [this](checked_file const& file) {
                   return is_target(m_session, *m_options.chart, file.path);
               });
    }

    bool draws_on_output() const { return m_options.chart && *m_options.chart == "-"; }

    bool write_chart() const {
        if (!m_options.chart) return true;
        std::vector<completion_bar> bars;
        for (std::size_t i = 0; i != m_counts.size(); ++i) {
            if (m_texts.languages()[i].is_reference && m_counts.size() > 1) continue;
            counts const& sum = m_counts[i].sum;
            bars.push_back({m_texts.languages()[i].spelling, sum.total, sum.translated, sum.copies});
        }
        auto const text = [&](phrase id) { return m_session.texts.get(id); };
        std::string const picture =
            completion_chart(bars, {text(phrase::chart_title), text(phrase::translated_heading),
                                    text(phrase::chart_copies), text(phrase::missing_heading)});
        if (draws_on_output()) {
            m_session.out.write(picture);
            return true;
        }
        result_file file(*m_options.chart);
        file.write(picture);
        int const error = file.commit();
        if (error == 0) return true;
        fail(phrase::file_not_written, {{"path", *m_options.chart}, {"reason", std::strerror(error)}});
        return false;
    }

    session const& m_session;
    stats_options const& m_options;
    translations m_texts;
    std::vector<language_counts> m_counts; // by language that is looked at
};

} // namespace

exit_status count_translations(session const& session, stats_options const& options) {
    return stats_run(session, options).run();
}

} // namespace tools

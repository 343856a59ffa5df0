// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The messages of one name and catalog are looked at together: first which languages have one, then what each
// language that is asked about gets. Texts are read when they have to be compared.
#include "translations.hpp"

#include "catalog_texts.hpp"
#include "check_tree_rules.hpp"
#include "po_exchange.hpp"
#include "tools/program/languages.hpp"

#include <algorithm>
#include <string_view>

namespace tools {
namespace {

// More than any program is translated to; with so many a small tree could ask for a great deal.
constexpr std::size_t most_languages = 1000;

std::string_view base_of(std::string_view id) { return id.substr(0, id.find('_')); }

} // namespace

translations::translations(session const& session)
    : m_session(session),
      m_found(session),
      m_report(session, m_tree, m_found),
      m_rules(m_tree, m_report),
      m_input(session, m_tree, m_report, m_rules),
      m_lost(m_tree) {}

exit_status translations::read(std::vector<ustring8> const& paths) {
    m_input.add(paths);
    if (!m_input.has_files()) return exit_failed;
    m_input.read();
    m_input.load(tree_rules(m_tree, m_report, {}, {}).check_includes());
    group_messages(m_tree);
    m_lost.find();
    m_first.assign(m_tree.languages.size(), none);
    m_texts.resize(m_tree.languages.size());
    return choose_languages();
}

exit_status translations::choose_languages() {
    ustring8 const reference = normalized_language(m_session.options.reference);
    language_choice choice;
    auto const add = [&](ustring8 const& id, ustring8 const& spelling) {
        m_languages.push_back({id, spelling, choice.for_request(id), id == reference});
    };
    std::vector<std::uint32_t> const all = languages_of(m_tree);
    for (std::uint32_t const language : all) choice.add(m_tree.languages[language].id, language);
    m_reference_serving = choice.for_request(reference);
    std::erase_if(m_reference_serving, [](serving_language const& each) { return !each.is_fitting; });
    auto const fail = [&](phrase text) {
        m_session.complain(m_session.texts.get(
            text, {{"language", m_session.options.reference}, {"n", static_cast<unsigned long long>(all.size())}}));
        return exit_failed;
    };
    if (m_reference_serving.empty() && m_found.status() != exit_good) {
        m_found.print_alone();
        return m_input.is_complete() ? exit_findings : exit_failed;
    }
    if (m_reference_serving.empty()) return fail(phrase::no_reference);
    if (auto const& wanted = m_session.options.language) {
        add(normalized_language(*wanted), *wanted);
    } else if (all.size() > most_languages) {
        return fail(phrase::too_many_languages);
    } else {
        for (std::uint32_t const language : all) {
            checked_language const& each = m_tree.languages[language];
            if (each.id != "." || each.id == reference) add(each.id, each.spelling);
        }
    }
    for (checked_language const& each : m_tree.languages)
        m_may_copy.push_back(each.id == "." || base_of(each.id) == base_of(reference) ? 1 : 0);
    return exit_good;
}

void translations::for_each(std::function<void(translation const&)> const& visit) {
    progress_bar progress(m_session.err);
    std::size_t done = 0;
    for (message_group const& group : m_tree.groups) {
        if (!m_session.options.is_quiet) progress.show(done++, m_tree.groups.size());
        start(group);
        for (std::size_t i = 0; i != m_languages.size(); ++i) {
            target_language const& target = m_languages[i];
            translation entry{i, m_tree.messages[group.first].catalog, m_reference};
            entry.served = served(target.serving, entry.is_translated);
            entry.is_empty = entry.served != none && m_tree.messages[entry.served].is_empty;
            bool const is_own =
                entry.served != none && m_tree.languages[m_tree.messages[entry.served].language].id == target.id;
            if (is_own) entry.own = entry.served;
            if (m_reference == none && entry.own == none) continue;
            if (!entry.is_translated && m_reference != none && m_tree.messages[m_reference].is_empty)
                entry.is_translated = entry.is_empty = true;
            entry.words = m_words.count;
            if (m_reference != none && entry.is_translated) compare(entry);
            visit(entry);
        }
        end();
    }
}

void translations::start(message_group const& group) {
    for (std::uint32_t i = group.first; i != none; i = m_tree.messages[i].next) {
        std::uint32_t& first = m_first[m_tree.messages[i].language];
        if (first != none || m_lost.is_lost(i)) continue;
        first = i;
        m_ids.push_back(m_tree.messages[i].language);
    }
    bool is_fitting = false;
    m_reference = served(m_reference_serving, is_fitting);
    m_words = m_reference == none ? text_words{} : count_words(text_of(m_reference));
}

void translations::end() {
    for (std::uint32_t const language : m_ids) {
        m_first[language] = none;
        m_texts[language].reset();
    }
    m_ids.clear();
    m_is_seldom_copied.reset();
    m_reference_message.reset();
}

std::uint32_t translations::served(std::vector<serving_language> const& serving, bool& is_fitting) const {
    auto const best = std::find_if(serving.begin(), serving.end(),
                                   [&](serving_language const& each) { return m_first[each.language] != none; });
    is_fitting = best != serving.end() && best->is_fitting;
    return best == serving.end() ? none : m_first[best->language];
}

void translations::compare(translation& entry) {
    if (entry.own == none || entry.own == m_reference) return;
    checked_message const& served = m_tree.messages[entry.own];
    checked_message const& reference = m_tree.messages[m_reference];
    if (m_may_copy[served.language] || m_tree.languages[reference.language].id == ".") return;
    entry.is_same = m_words.kind != text_kind::no_words && text_of(entry.own) == text_of(m_reference);
    entry.is_copy = entry.is_same && (m_words.kind == text_kind::sentence || is_seldom_copied());
}

// Of most texts this can be told without a second look.
bool translations::is_fuzzy(translation const& entry) {
    if (entry.reference == none || !entry.is_translated || entry.is_empty || entry.served == m_reference)
        return false;
    auto const is_plain = [](std::string_view text) {
        return text.find(argument_start) == std::string_view::npos && !text.starts_with('\n') &&
               !text.ends_with('\n');
    };
    if (is_plain(text_of(entry.served)) && is_plain(text_of(m_reference))) return false;
    if (!m_reference_message) m_reference_message = read_message(source_of(m_reference));
    zolt::i18n::message_t const translated = read_message(source_of(entry.served));
    return to_po_entry({}, &*m_reference_message, &translated).is_fuzzy;
}

// What most languages leave as it is, is a name.
bool translations::is_seldom_copied() {
    if (m_is_seldom_copied) return *m_is_seldom_copied;
    std::size_t copies = 0;
    std::size_t others = 0;
    for (std::uint32_t const language : m_ids) {
        if (m_may_copy[language]) continue;
        ++(text_of(m_first[language]) == text_of(m_reference) ? copies : others);
    }
    m_is_seldom_copied = others > copies;
    return *m_is_seldom_copied;
}

std::string const& translations::text_of(std::uint32_t message) {
    checked_message const& entry = m_tree.messages[message];
    std::optional<std::string>& text = m_texts[entry.language];
    if (!text) text = read_message_text(source_of(message));
    return *text;
}

std::string_view translations::source_of(std::uint32_t message) const {
    checked_message const& entry = m_tree.messages[message];
    return std::string_view(m_tree.files[entry.file].text).substr(entry.offset, entry.end - entry.offset);
}

} // namespace tools

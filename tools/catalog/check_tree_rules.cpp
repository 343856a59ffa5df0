// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "check_tree_rules.hpp"

#include "tools/program/notation.hpp"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

namespace tools {
namespace {

constexpr std::size_t deepest_include = 1000; // of the library

// So that a small tree does not make findings without end.
constexpr std::size_t most_placeholders = 20; // missing from one message
constexpr std::size_t most_missing = 20;      // messages that a catalog lacks in one language; others are counted
constexpr std::size_t most_languages = 1000;  // of a catalog, to ask each for what it lacks

//--------------------------------------------------------------------------------------------------
// Punctuation

struct ending {
    std::string_view text;
    std::string_view meaning;
};

// What closes a text behind its punctuation, or a direction, or is a blank.
constexpr std::string_view closing[] = {"\"",     "'",      ")",      "]",      "}",      "“",      "”",
                                        "’",      "»",      "«",      "」",     "』",     "）",     "&quot;",
                                        "&apos;", "&#32;",  "&#x20;", "&nbsp;", "\u00A0", "\u202F", "\u200E",
                                        "\u200F", "\u202C", "\u2069", "\t",     "\r",     "\n"};
constexpr ending endings[] = {{"...", "..."},  {"…", "..."}, {"。", "."}, {"।", "."},  {"．", "."}, {"۔", "."},
                              {"\u0589", "."}, {"။", "."},   {"។", "."},  {"።", "."},  {".", "."},  {"!", "!"},
                              {"！", "!"},     {"?", "?"},   {"？", "?"}, {"؟", "?"},  {"፧", "?"},  {"\u037E", "?"},
                              {":", ":"},      {"：", ":"},  {",", ","},  {"，", ","}, {"、", ","}, {"،", ","}};

bool remove_ending(std::string_view& text, std::string_view end) {
    if (text.size() < end.size() || text.substr(text.size() - end.size()) != end) return false;
    text.remove_suffix(end.size());
    return true;
}

// The mark at the end of a text, in its Latin form; empty without one.
std::string_view punctuation_of(std::string_view text, ustring8 const& language) {
    auto const remove_any = [&] {
        return std::any_of(std::begin(closing), std::end(closing),
                           [&](std::string_view mark) { return remove_ending(text, mark); });
    };
    while (remove_any() || remove_ending(text, " ")) {
    }
    if (language.substr(0, 2) == "el" && remove_ending(text, ";")) return "?";
    for (ending const& known : endings) {
        if (remove_ending(text, known.text)) return known.meaning;
    }
    return {};
}

// Thai and Lao have no full stop.
bool is_fitting(std::string_view mark, std::string_view expected, ustring8 const& language) {
    if (mark == expected) return true;
    std::string_view const base = std::string_view(language).substr(0, language.find('_'));
    return mark.empty() && expected == "." && (base == "th" || base == "lo");
}

//--------------------------------------------------------------------------------------------------

using arguments = std::pair<checked_argument const*, checked_argument const*>;

arguments arguments_of(check_tree const& tree, checked_message const& message) {
    checked_argument const* const first = tree.arguments.data() + message.first_argument;
    return {first, first + message.argument_count};
}

checked_argument const* end_of_name(checked_argument const* first, checked_argument const* last) {
    return std::find_if(first, last, [&](checked_argument const& each) { return each.name != first->name; });
}

ustring8 types_of(checked_argument const* first, checked_argument const* last) {
    ustring8 result;
    for (; first != last; ++first) result.append(result.empty() ? "" : ", ").append(type_keyword(first->type));
    return result;
}

} // namespace

bool tree_rules::is_wanted(std::uint32_t language) const {
    return m_wanted.empty() || m_tree.languages[language].id == m_wanted;
}

void tree_rules::check_messages() {
    group_messages(m_tree);
    choose_reference();
    check_lost();
    m_first.assign(m_tree.languages.size(), none);
    for (message_group const& group : m_tree.groups) check_group(group);
    count_missing();
}

void tree_rules::choose_reference() {
    language_choice choice;
    for (std::uint32_t const language : languages_of(m_tree)) choice.add(m_tree.languages[language].id, language);
    for (serving_language const& each : choice.for_request(m_reference)) {
        if (each.is_fitting) m_references.push_back(each.language);
    }
    for (checked_language const& each : m_tree.languages) m_serving.push_back(choice.for_request(each.id));
}

void tree_rules::check_group(message_group const& group) {
    m_ids.clear();
    for (std::uint32_t i = group.first; i != none; i = m_tree.messages[i].next) {
        std::uint32_t& first = m_first[m_tree.messages[i].language];
        if (first != none || m_lost.is_lost(i)) continue;
        first = i;
        m_ids.push_back(i);
    }
    auto const found = std::find_if(m_references.begin(), m_references.end(),
                                    [&](std::uint32_t language) { return m_first[language] != none; });
    if (found != m_references.end()) compare_all(m_tree.messages[m_first[*found]]);
    for (std::uint32_t const i : m_ids) m_first[m_tree.messages[i].language] = none;
    if (group.first != group.last) check_duplicates(group);
}

void tree_rules::compare_all(checked_message const& reference) {
    for (std::uint32_t const i : m_ids) {
        checked_message const& message = m_tree.messages[i];
        if (&message != &reference && is_wanted(message.language)) compare(message, reference);
    }
    check_missing(reference);
}

// Within one file. Without name and text one gives way to the next.
void tree_rules::check_duplicates(message_group const& group) {
    m_ids.clear();
    for (std::uint32_t i = group.first; i != none; i = m_tree.messages[i].next) {
        checked_message const& message = m_tree.messages[i];
        if (message.name.empty() && message.is_empty) continue;
        std::uint32_t& first = m_first[message.language];
        if (first == none || m_tree.messages[first].file != message.file) {
            if (first == none) m_ids.push_back(message.language);
            first = i;
        } else if (is_wanted(message.language)) {
            std::size_t const line = place_of(m_tree.files[message.file], m_tree.messages[first].offset).line;
            m_report.add(rule_id::duplicate_message, message, message.offset,
                         m_report.texts().get(phrase::duplicate_message,
                                              {{"message", shown(message.name)},
                                               {"language", shown(m_tree.languages[message.language].spelling)},
                                               {"line", static_cast<unsigned long long>(line)}}));
        }
    }
    for (std::uint32_t const language : m_ids) m_first[language] = none;
}

void tree_rules::check_lost() {
    for (lost_messages::loss const& each : m_lost.find()) {
        checked_message const& message = m_tree.messages[each.lost];
        if (!is_wanted(message.language)) continue;
        checked_message const& kept = m_tree.messages[each.kept];
        checked_file& file = m_tree.files[kept.file];
        ustring8 const place = file.path + ":" + std::to_string(place_of(file, kept.offset).line);
        m_report.add(rule_id::duplicate_message, message, message.offset,
                     m_report.texts().get(phrase::message_gives_way,
                                          {{"message", shown(message.name)},
                                           {"language", shown(m_tree.languages[message.language].spelling)},
                                           {"place", place},
                                           {"path", *each.loaded}}));
    }
}

// A regional catalog need not repeat what its base language has, nor any catalog what stands in "." alone.
void tree_rules::check_missing(checked_message const& reference) {
    checked_catalog& catalog = m_tree.catalogs[reference.catalog];
    bool const is_ignored = (reference.ignored & in_set(rule_id::missing_message)) != 0;
    if (is_ignored || catalog.languages.size() > most_languages) return;
    for (auto& [language, start] : catalog.languages) {
        if (m_tree.languages[language].id == "." || !is_wanted(language)) continue;
        std::vector<serving_language> const& serving = m_serving[language];
        auto const best = std::find_if(serving.begin(), serving.end(), [&](serving_language const& each) {
            return m_first[each.language] != none;
        });
        if (best != serving.end() && best->is_fitting) continue;
        if (start.missing++ >= most_missing) continue;
        ustring8 scope = catalog.name;
        scope.append("/").append(reference.name);
        m_report.add(rule_id::missing_message, start.file, start.offset, start.ignored, scope,
                     m_report.texts().get(phrase::missing_message,
                                          {{"catalog", shown(catalog.name)},
                                           {"message", shown(reference.name)},
                                           {"language", shown(m_tree.languages[language].spelling)}}));
    }
}

void tree_rules::count_missing() {
    for (checked_catalog const& catalog : m_tree.catalogs) {
        for (auto const& [language, start] : catalog.languages) {
            if (start.missing <= most_missing) continue;
            m_report.add(rule_id::missing_message, start.file, start.offset, start.ignored, {},
                         m_report.texts().get(phrase::more_missing,
                                              {{"catalog", shown(catalog.name)},
                                               {"n", static_cast<unsigned long long>(start.missing - most_missing)},
                                               {"language", shown(m_tree.languages[language].spelling)}}));
        }
    }
}

void tree_rules::compare(checked_message const& message, checked_message const& reference) {
    ustring8 const language = shown(m_tree.languages[reference.language].spelling);
    ustring8 const name = shown(message.name);
    auto const add = [&](rule_id id, phrase text) {
        m_report.add(id, message, message.offset,
                     m_report.texts().get(text, {{"message", name}, {"language", language}}));
    };
    if (message.is_empty || reference.is_empty) {
        if (!reference.is_empty) add(rule_id::empty_translation, phrase::translation_is_empty);
        return;
    }
    compare_arguments(message, reference);
    if (message.starts_with_blank != reference.starts_with_blank)
        add(rule_id::edge_space,
            message.starts_with_blank ? phrase::space_is_added_at_start : phrase::space_is_missing_at_start);
    if (message.ends_in_blank != reference.ends_in_blank)
        add(rule_id::edge_space, message.ends_in_blank ? phrase::space_is_added : phrase::space_is_missing);
    auto const mark = punctuation_of(message.last_text, m_tree.languages[message.language].id);
    auto const expected = punctuation_of(reference.last_text, m_tree.languages[reference.language].id);
    if (is_fitting(mark, expected, m_tree.languages[message.language].id) ||
        is_fitting(expected, mark, m_tree.languages[reference.language].id))
        return;
    m_report.add(rule_id::punctuation, message, message.offset,
                 m_report.texts().get(phrase::punctuation_differs, {{"message", name},
                                                                    {"mark", std::string(mark)},
                                                                    {"other", std::string(expected)},
                                                                    {"language", language}}));
}

void tree_rules::add_placeholder(rule_id id, phrase text, checked_message const& message, std::size_t offset,
                                 std::string_view name, checked_message const& reference) {
    m_report.add(id, message, offset,
                 m_report.texts().get(text, {{"message", shown(message.name)},
                                             {"name", shown(name)},
                                             {"language", shown(m_tree.languages[reference.language].spelling)}}));
}

// Both are sorted by name and type.
void tree_rules::compare_arguments(checked_message const& message, checked_message const& reference) {
    auto [own, own_end] = arguments_of(m_tree, message);
    auto [other, other_end] = arguments_of(m_tree, reference);
    if (std::equal(own, own_end, other, other_end)) return;
    std::size_t missing = 0;
    while (own != own_end || other != other_end) {
        checked_argument const* const own_next = own == own_end ? own : end_of_name(own, own_end);
        checked_argument const* const other_next = other == other_end ? other : end_of_name(other, other_end);
        int const order = own == own_end ? 1 : other == other_end ? -1 : own->name.compare(other->name);
        if (order < 0) {
            add_placeholder(rule_id::placeholder_set, phrase::placeholder_unknown, message, own->offset, own->name,
                            reference);
        } else if (order > 0) {
            if (missing++ == most_placeholders) return;
            add_placeholder(rule_id::placeholder_set, phrase::placeholder_missing, message, message.offset,
                            other->name, reference);
        } else if (!std::equal(own, own_next, other, other_next)) {
            m_report.add(
                rule_id::placeholder_type, message, own->offset,
                m_report.texts().get(phrase::placeholder_type_differs,
                                     {{"message", shown(message.name)},
                                      {"name", shown(own->name)},
                                      {"types", types_of(own, own_next)},
                                      {"others", types_of(other, other_next)},
                                      {"language", shown(m_tree.languages[reference.language].spelling)}}));
        }
        if (order <= 0) own = own_next;
        if (order >= 0) other = other_next;
    }
}

//--------------------------------------------------------------------------------------------------

// A walk along the includes, without recursion; `open` is the chain of files being read.
std::vector<std::uint32_t> tree_rules::check_includes() {
    enum class state : unsigned char { unseen, open, done };
    struct step {
        std::uint32_t file;
        std::size_t next_include;
    };
    std::vector<state> states(m_tree.files.size(), state::unseen);
    std::vector<std::uint32_t> too_deep;
    std::vector<step> open;
    for (std::uint32_t root = 0; root != m_tree.files.size(); ++root) {
        if (states[root] == state::unseen) open.push_back({root, 0});
        while (!open.empty()) {
            step& top = open.back();
            states[top.file] = state::open;
            checked_file& file = m_tree.files[top.file];
            if (top.next_include == file.includes.size()) {
                states[top.file] = state::done;
                open.pop_back();
                continue;
            }
            checked_include const& include = file.includes[top.next_include++];
            if (states[include.target] == state::open) {
                m_report.add(
                    rule_id::include_cycle, top.file, include.offset, include.ignored, {},
                    m_report.texts().get(phrase::include_is_cycle, {{"path", m_tree.files[include.target].path}}));
            } else if (states[include.target] == state::unseen) {
                if (open.size() == deepest_include + 1) too_deep.push_back(root);
                open.push_back({include.target, 0});
            }
        }
    }
    return too_deep;
}

} // namespace tools

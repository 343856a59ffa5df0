// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "check_rules.hpp"

#include "fault_location.hpp"
#include "languages.hpp"
#include "notation.hpp"

#include <zolt/i18n/message_catalogs.hpp>
#include <zolt/strings/string_utility.hpp>

#include <algorithm>
#include <set>

namespace tools {
namespace {

using zolt::i18n::message_catalogs;

bool is_argument(source_file const& file, element const& element) {
    return (element.name == "arg" || element.name == "argument") && file.parent_name(element) == "msg";
}

//--------------------------------------------------------------------------------------------------
// Rules for one file

// Whatever the library itself reports, under each language of the file.
void load(rule_run& found, source_file const& file) {
    std::map<ustring8, ustring8> languages = file.languages();
    if (languages.empty()) languages.emplace("en", "en");
    for (auto const& [normalized, language] : languages) {
        message_catalogs catalogs;
        auto const result = catalogs.load_file(file.path, language);
        if (result.code() == message_catalogs::no_error) continue;
        fault_location const at = locate_fault(result.message(), language, file, found.sources);
        found.add(*at.file, at.line, result.message());
    }
}

void unknown_type(rule_run& found, source_file const& file) {
    for (element const& element : file.elements) {
        ustring8 const* const type = element.attribute("type");
        if (!type || !is_argument(file, element) || is_known_type(zolt::strings::to_lower(*type))) continue;
        ustring8 const* const name = element.attribute("name");
        found.add(
            file, element.line,
            found.texts.get(phrase::unknown_type, {{"argument", name ? *name : ustring8()}, {"type", *type}}));
    }
}

void lost_option(rule_run& found, source_file const& file) {
    for (element const& element : file.elements) {
        if (!is_argument(file, element) || !element.attribute("name")) continue;
        for (auto const& [name, value] : element.attributes) {
            if (name == "name") break;
            if (name != "type")
                found.add(file, element.line, found.texts.get(phrase::lost_option, {{"option", name}}));
        }
    }
}

void no_language(rule_run& found, source_file const& file) {
    for (element const& element : file.elements) {
        if (element.name != "catalog" || file.parent_name(element) != "xmc") continue;
        ustring8 const* const language = element.attribute("lang");
        if (language && !language->empty()) continue;
        ustring8 const* const name = element.attribute("name");
        found.add(file, element.line,
                  found.texts.get(phrase::no_language, {{"catalog", name ? *name : ustring8()}}));
    }
}

//--------------------------------------------------------------------------------------------------
// Rules for all files together

// Within one file; across files a later text may replace an earlier one on purpose.
void duplicate_message(rule_run& found) {
    for (auto const& [catalog, languages] : found.sources.catalogs()) {
        for (auto const& [language, texts] : languages) {
            for (auto const& [message, places] : texts.messages) {
                for (std::size_t i = 1; i < places.size(); ++i) {
                    place const& first = places[i - 1];
                    place const& again = places[i];
                    if (first.file != again.file) continue;
                    found.add(*again.file, again.where->line,
                              found.texts.get(phrase::duplicate_message, {{"message", message},
                                                                          {"language", texts.language},
                                                                          {"line", first.where->line}}));
                }
            }
        }
    }
}

// For each message the texts that the others are compared with: English where it has the message, else
// those of the first language that has it.
std::map<ustring8, language_texts const*> reference_texts(catalog_texts const& languages) {
    std::map<ustring8, language_texts const*> references;
    auto const add = [&](language_texts const& texts) {
        for (auto const& [message, places] : texts.messages) references.emplace(message, &texts);
    };
    auto const english = languages.find("en");
    if (english != languages.end()) add(english->second);
    for (auto const& [language, texts] : languages) add(texts);
    return references;
}

void add_difference(rule_run& found, place const& at, phrase id, ustring8 const& message,
                    language_texts const& other, std::set<ustring8> const& names, std::set<ustring8> const& known) {
    for (ustring8 const& name : names) {
        if (known.count(name) != 0) continue;
        found.add(*at.file, at.where->line,
                  found.texts.get(id, {{"message", message}, {"name", name}, {"language", other.language}}));
    }
}

void placeholder_names(rule_run& found) {
    for (auto const& [catalog, languages] : found.sources.catalogs()) {
        auto const references = reference_texts(languages);
        for (auto const& [language, texts] : languages) {
            for (auto const& [message, places] : texts.messages) {
                language_texts const& other = *references.at(message);
                if (&other == &texts) continue;
                auto const& names = texts.placeholders.at(message);
                auto const& expected = other.placeholders.at(message);
                add_difference(found, places.front(), phrase::placeholder_unknown, message, other, names, expected);
                add_difference(found, places.front(), phrase::placeholder_missing, message, other, expected, names);
            }
        }
    }
}

// A regional catalog need not repeat what its base language has, and "." serves every language.
bool has_message(catalog_texts const& languages, ustring8 const& language, ustring8 const& message) {
    auto const holds = [&](ustring8 const& id) {
        auto const texts = languages.find(id);
        return texts != languages.end() && texts->second.messages.count(message) != 0;
    };
    bool found = holds(language) || holds(".");
    for_each_base(language, [&](std::string_view base) { found = found || holds(ustring8(std::string(base))); });
    return found;
}

void missing_message(rule_run& found) {
    for (auto const& [name, languages] : found.sources.catalogs()) {
        std::set<ustring8> messages;
        for (auto const& [language, texts] : languages) {
            for (auto const& [message, places] : texts.messages) messages.insert(message);
        }
        for (auto const& [language, texts] : languages) {
            if (language == ".") continue;
            for (ustring8 const& message : messages) {
                if (has_message(languages, language, message)) continue;
                found.add(*texts.start.file, texts.start.where->line,
                          found.texts.get(phrase::missing_message,
                                          {{"catalog", name}, {"message", message}, {"language", texts.language}}));
            }
        }
    }
}

constexpr rule rules[] = {
    {"load", severity::error, load, nullptr},
    {"unknown-type", severity::warning, unknown_type, nullptr},
    {"lost-option", severity::warning, lost_option, nullptr},
    {"no-language", severity::warning, no_language, nullptr},
    {"duplicate-message", severity::warning, nullptr, duplicate_message},
    {"placeholder-names", severity::error, nullptr, placeholder_names},
    {"missing-message", severity::warning, nullptr, missing_message},
};

} // namespace

void rule_run::check(source_file const& file) {
    for (rule const& rule : rules) {
        m_rule = &rule;
        if (rule.check_file) rule.check_file(*this, file);
    }
}

void rule_run::check_all() {
    for (rule const& rule : rules) {
        m_rule = &rule;
        if (rule.check_all) rule.check_all(*this);
    }
}

void rule_run::add(source_file const& file, unsigned line, ustring8 const& text) {
    m_found.add({file.path, line, 1, m_rule->level, m_rule->name, text});
}

} // namespace tools

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "check_tree.hpp"

#include <algorithm>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <unordered_map>
#include <utility>

namespace tools {
namespace {

struct group_key {
    std::uint32_t catalog;
    std::string_view name;
    friend bool operator==(group_key const&, group_key const&) = default;
};

// Names are foreign: with a seed of its own, a run cannot be made to find all of them in one place.
struct seeded_hash {
    std::uint64_t seed;

    std::size_t operator()(group_key const& key) const {
        std::uint64_t hash = mix(seed, key.catalog + key.name.size() * 0x100000001B3u);
        std::string_view rest = key.name;
        while (!rest.empty()) {
            std::uint64_t word = 0;
            std::size_t const size = std::min(rest.size(), sizeof word);
            std::memcpy(&word, rest.data(), size);
            hash = mix(hash, word);
            rest.remove_prefix(size);
        }
        return static_cast<std::size_t>(hash ^ (hash >> 32));
    }

    static std::uint64_t mix(std::uint64_t hash, std::uint64_t word) {
        hash = (hash ^ word) * 0x9E3779B97F4A7C15u;
        return hash ^ (hash >> 29);
    }
};

} // namespace

text_place place_of(checked_file& file, std::size_t offset) {
    std::vector<std::size_t>& starts = file.line_starts;
    if (starts.empty()) {
        starts.push_back(0);
        for (auto at = file.text.find('\n'); at != ustring8::npos; at = file.text.find('\n', at + 1))
            starts.push_back(at + 1);
    }
    auto const next = std::upper_bound(starts.begin(), starts.end(), offset);
    return {static_cast<std::size_t>(next - starts.begin()), offset - *(next - 1) + 1};
}

void group_messages(check_tree& tree) {
    std::random_device source;
    std::unordered_map<group_key, std::uint32_t, seeded_hash> known(
        tree.messages.size(), seeded_hash{(std::uint64_t(source()) << 32) | 1});
    for (std::uint32_t i = 0; i != tree.messages.size(); ++i) {
        checked_message const& message = tree.messages[i];
        auto const number = static_cast<std::uint32_t>(tree.groups.size());
        auto const entry = known.try_emplace({message.catalog, message.name}, number);
        if (entry.second) {
            tree.groups.push_back({i, i});
        } else {
            message_group& group = tree.groups[entry.first->second];
            tree.messages[std::exchange(group.last, i)].next = i;
        }
    }
}

std::vector<std::uint32_t> languages_of(check_tree const& tree) {
    std::map<std::string_view, std::uint32_t> sorted;
    for (checked_catalog const& catalog : tree.catalogs) {
        for (auto const& [language, start] : catalog.languages)
            sorted.emplace(tree.languages[language].id, language);
    }
    std::vector<std::uint32_t> result;
    result.reserve(sorted.size());
    for (auto const& [id, language] : sorted) result.push_back(language);
    return result;
}

ustring8 shown(std::string_view name) {
    constexpr std::size_t longest = 100;
    if (name.size() <= longest) return ustring8(std::string(name));
    std::size_t end = longest;
    while (end != 0 && (static_cast<unsigned char>(name[end]) & 0xC0) == 0x80) --end;
    return ustring8(std::string(name.substr(0, end)) + "…");
}

void rule_report::add(rule_id id, std::uint32_t file, std::size_t offset, rule_set ignored, ustring8 const& scope,
                      ustring8 const& text) const {
    if (ignored & in_set(id)) return;
    text_place const at = place_of(m_tree.files[file], offset);
    rule const& rule = get_rule(id);
    m_found.add({m_tree.files[file].path, at.line, at.column, rule.level, rule.name, text, scope});
}

void rule_report::add(rule_id id, checked_message const& message, std::size_t offset, ustring8 const& text) const {
    ustring8 scope;
    if (!m_session.options.ignored.empty())
        scope.append(m_tree.catalogs[message.catalog].name).append("/").append(message.name);
    add(id, message.file, offset, message.ignored, scope, text);
}

} // namespace tools

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "check_lost_messages.hpp"

#include <algorithm>
#include <map>

namespace tools {
namespace {

// So that a few files which many others include do not take time without end.
constexpr std::size_t most_steps = 10'000'000;

} // namespace

// Without name and text a message gives way to the next one.
void lost_messages::find_shared() {
    m_slots.assign(m_tree.messages.size(), none);
    std::vector<std::uint32_t> last(m_tree.languages.size(), none); // of the group's messages in each language
    for (message_group const& group : m_tree.groups) {
        if (group.first == group.last) continue;
        for (std::uint32_t i = group.first; i != none; i = m_tree.messages[i].next) {
            checked_message const& message = m_tree.messages[i];
            if (message.name.empty() && message.is_empty) continue;
            std::uint32_t& before = last[message.language];
            bool const is_elsewhere = before != none && m_tree.messages[before].file != message.file;
            if (is_elsewhere) add(before, i);
            if (is_elsewhere || before == none) before = i;
        }
        for (std::uint32_t i = group.first; i != none; i = m_tree.messages[i].next)
            last[m_tree.messages[i].language] = none;
    }
}

// Two messages of one name, catalog and language in different files.
void lost_messages::add(std::uint32_t first, std::uint32_t second) {
    if (m_slots[first] == none) m_slots[first] = m_slot_count++;
    m_slots[second] = m_slots[first];
}

std::vector<lost_messages::loss> lost_messages::find() {
    find_shared();
    if (m_slot_count == 0) return {};
    for (std::uint32_t i = 0; i != m_slots.size(); ++i) {
        if (m_slots[i] != none) m_shared.push_back(i);
    }
    m_is_lost.resize(m_slots.size());
    m_seen.assign(m_tree.files.size(), 0);
    m_kept.assign(m_slot_count, none);
    m_loaded.assign(m_slot_count, 0);
    std::vector<bool> is_included(m_tree.files.size());
    for (checked_file const& file : m_tree.files) {
        for (checked_include const& include : file.includes) is_included[include.target] = true;
    }
    for (std::uint32_t root = 0; root != m_tree.files.size(); ++root) {
        if (is_included[root] || m_tree.files[root].includes.empty()) continue;
        load(root);
        for (auto const& [lost, kept] : m_behind) {
            if (!m_is_lost[kept]) lose(lost, kept, m_tree.files[root].path);
        }
    }
    for (checked_directory const& each : m_tree.directories) load(each);
    return std::move(m_found);
}

void lost_messages::lose(std::uint32_t message, std::uint32_t kept, ustring8 const& loaded) {
    if (m_is_lost[message]) return;
    m_is_lost[message] = true;
    m_found.push_back({message, kept, &loaded});
}

// Its files are loaded one by one. What an include has hidden already is not told again the other way round.
void lost_messages::load(checked_directory const& directory) {
    std::map<std::uint32_t, std::vector<std::uint32_t>> messages; // of a slot, in the order of files
    for (std::uint32_t const file : directory.files) {
        load(file);
        for (std::uint32_t const message : m_served) {
            std::vector<std::uint32_t>& served = messages[m_slots[message]];
            if (served.empty() || served.back() != message) served.push_back(message);
        }
    }
    for (auto const& [slot, served] : messages) {
        std::uint32_t const kept = served.back();
        if (m_is_lost[kept]) continue;
        for (std::uint32_t const each : served) {
            if (each != kept) lose(each, kept, directory.path);
        }
    }
}

// Without recursion. A file that comes a second time has nothing new.
void lost_messages::load(std::uint32_t root) {
    ++m_load;
    m_served.clear();
    m_behind.clear();
    std::vector<step> open{enter(root)};
    while (!open.empty() && m_steps < most_steps) {
        ++m_steps;
        step& at = open.back();
        if (is_include_next(at)) {
            std::uint32_t const target = m_tree.files[at.file].includes[at.next_include++].target;
            if (m_seen[target] != m_load) open.push_back(enter(target));
        } else if (at.next_message != m_shared.size() &&
                   m_tree.messages[m_shared[at.next_message]].file == at.file) {
            take(m_shared[at.next_message++]);
        } else {
            open.pop_back();
        }
    }
}

lost_messages::step lost_messages::enter(std::uint32_t file) {
    m_seen[file] = m_load;
    auto const first = std::lower_bound(
        m_shared.begin(), m_shared.end(), file,
        [this](std::uint32_t message, std::uint32_t wanted) { return m_tree.messages[message].file < wanted; });
    return {file, 0, static_cast<std::size_t>(first - m_shared.begin())};
}

bool lost_messages::is_include_next(step const& at) const {
    std::vector<checked_include> const& includes = m_tree.files[at.file].includes;
    if (at.next_include == includes.size()) return false;
    if (at.next_message == m_shared.size()) return true;
    checked_message const& message = m_tree.messages[m_shared[at.next_message]];
    return message.file != at.file || includes[at.next_include].offset < message.offset;
}

void lost_messages::take(std::uint32_t message) {
    std::uint32_t const slot = m_slots[message];
    if (m_loaded[slot] == m_load) {
        m_behind.emplace_back(message, m_kept[slot]);
        return;
    }
    m_loaded[slot] = m_load;
    m_kept[slot] = message;
    m_served.push_back(message);
}

} // namespace tools

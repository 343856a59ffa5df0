// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// An ordered map of messages, and beside it a hash table of its entries, in which names are looked up.
// A name's slot is among the few that begin at its hash, so that no set of names makes the table slow:
// those for which all of these are taken, as names made to collide can bring about, are found in the map.
//
// The set of the messages' languages is a cache: made when it is asked for and empty, dropped when a
// message is stored.
#include <zolt/i18n/catalog.hpp>

#include <zolt/i18n/locale_id_private.hpp>

#include <bit>
#include <functional>
#include <string_view>
#include <utility>

namespace ZOLT_2_18::i18n {
namespace {

constexpr std::size_t most_steps = 32;

std::size_t hash_of(strings::ustring8 const& name) noexcept { return std::hash<std::string_view>()(name); }

} // namespace

// The priority lets the static objects of other sources use it, in whatever order they are made.
[[gnu::init_priority(101)]] message_t const catalog_t::m_nil_message;

catalog_t::catalog_t() = default;
catalog_t::catalog_t(types::nil_t const&) {}
catalog_t::~catalog_t() = default;

catalog_t::catalog_t(catalog_t const& other)
    : shared_count(other), m_name(other.m_name), m_messages(other.m_messages), m_languages(other.m_languages) {
    make_room(m_messages.size());
}

catalog_t& catalog_t::assign(catalog_t const& other) {
    catalog_t copy(other);
    m_name.swap(copy.m_name);
    m_messages.swap(copy.m_messages);
    m_slots.swap(copy.m_slots);
    m_languages.swap(copy.m_languages);
    return *this;
}

catalog_t& catalog_t::assign(types::nil_t const&) {
    m_name.clear();
    m_messages.clear();
    m_slots.clear();
    m_languages.clear();
    return *this;
}

bool catalog_t::equal(types::nil_t const&) const noexcept {
    return m_name.empty() && m_messages.empty() && m_languages.empty();
}

bool catalog_t::has_message(strings::ustring8 const& name) const { return find(name) != nullptr; }

message_t const& catalog_t::message(strings::ustring8 const& name) const {
    message_t const* const found = find(name);
    return found ? *found : m_nil_message;
}

void catalog_t::message(strings::ustring8 const& name, message_t const& message) {
    this->message(name, message_t(message));
}

void catalog_t::message(strings::ustring8 const& name, message_t&& message) {
    make_room(m_messages.size() + 1);
    m_languages.clear();
    auto const [stored, is_new] = m_messages.insert_or_assign(name, std::move(message));
    if (is_new) add_slot(*stored);
}

// Takes over a map of messages in place of none; leaves an empty one.
void catalog_t::take(message_map& messages) {
    make_room(messages.size());
    m_messages.swap(messages);
    for (auto const& entry : m_messages) add_slot(entry);
}

message_t const* catalog_t::find(strings::ustring8 const& name) const {
    if (m_slots.empty()) return nullptr;
    std::size_t const hash = hash_of(name);
    for (std::size_t step = 0; step < most_steps; ++step) {
        slot const& candidate = m_slots[(hash + step) & (m_slots.size() - 1)];
        if (!candidate.entry) return nullptr;
        if (candidate.hash == hash && candidate.entry->first == name) return &candidate.entry->second;
    }
    auto const found = m_messages.find(name);
    return found == m_messages.end() ? nullptr : &found->second;
}

// At least twice as many slots as messages, a power of two.
void catalog_t::make_room(std::size_t count) {
    if (m_slots.size() >= 2 * count) return;
    m_slots = std::vector<slot>(std::bit_ceil(2 * count));
    for (auto const& entry : m_messages) add_slot(entry);
}

void catalog_t::add_slot(message_map::value_type const& entry) noexcept {
    std::size_t const hash = hash_of(entry.first);
    for (std::size_t step = 0; step < most_steps; ++step) {
        slot& candidate = m_slots[(hash + step) & (m_slots.size() - 1)];
        if (!candidate.entry) {
            candidate = {hash, &entry};
            return;
        }
    }
}

catalog_t::language_iterator catalog_t::languages_begin() const { return gen_lang_set().begin(); }
catalog_t::language_iterator catalog_t::languages_end() const { return gen_lang_set().end(); }

bool catalog_t::is_language_loaded(strings::ustring8 const& lang) const {
    return gen_lang_set().count(_private::normalized_locale(lang)) != 0;
}

catalog_t::language_set const& catalog_t::gen_lang_set() const {
    if (m_languages.empty()) {
        language_set languages; // so that none is ever half made
        for (auto const& entry : m_messages) languages.insert(entry.second._orginal_locale());
        m_languages.swap(languages);
    }
    return m_languages;
}

} // namespace ZOLT_2_18::i18n

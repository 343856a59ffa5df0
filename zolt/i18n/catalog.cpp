// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// An ordered map of messages. The set of their languages is a cache: made when it is asked for and
// empty, dropped when a message is stored.
#include <zolt/i18n/catalog.hpp>

#include <zolt/i18n/locale_id_private.hpp>

#include <utility>

namespace ZOLT_2_18::i18n {

// The priority lets the static objects of other sources use it, in whatever order they are made.
[[gnu::init_priority(101)]] message_t const catalog_t::m_nil_message;

catalog_t::catalog_t() = default;
catalog_t::catalog_t(types::nil_t const&) {}
catalog_t::catalog_t(catalog_t const&) = default;
catalog_t::~catalog_t() = default;

catalog_t& catalog_t::assign(catalog_t const& other) {
    catalog_t copy(other);
    m_name.swap(copy.m_name);
    m_messages.swap(copy.m_messages);
    m_languages.swap(copy.m_languages);
    return *this;
}

catalog_t& catalog_t::assign(types::nil_t const&) {
    m_name.clear();
    m_messages.clear();
    m_languages.clear();
    return *this;
}

bool catalog_t::equal(types::nil_t const&) const noexcept {
    return m_name.empty() && m_messages.empty() && m_languages.empty();
}

bool catalog_t::has_message(strings::ustring8 const& name) const {
    return m_messages.find(name) != m_messages.end();
}

message_t const& catalog_t::message(strings::ustring8 const& name) const {
    auto const found = m_messages.find(name);
    return found == m_messages.end() ? m_nil_message : found->second;
}

void catalog_t::message(strings::ustring8 const& name, message_t const& message) {
    m_languages.clear();
    m_messages.insert_or_assign(name, message);
}

void catalog_t::message(strings::ustring8 const& name, message_t&& message) {
    m_languages.clear();
    m_messages.insert_or_assign(name, std::move(message));
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

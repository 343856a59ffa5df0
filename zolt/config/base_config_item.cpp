// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/config/base_config_item.hpp>

#include <zolt/config/config_section_private.hpp>
#include <zolt/config/config_token_private.hpp>

#include <ostream>
#include <utility>

namespace ZOLT_2_18::config {
namespace {

using strings::ustring8;

bool is_space(config_token const& token) {
    return token.kind == config_token::T_SPACE || token.kind == config_token::T_TABCHAR;
}

} // namespace

base_config_item::base_config_item(ustring8 const& id) : m_id(id) {}
base_config_item::base_config_item(base_config_item const&) = default;
base_config_item::~base_config_item() = default;

base_config_item& base_config_item::assign(base_config_item const& other) {
    ustring8 id = other.m_id;
    m_tree = other.m_tree;
    m_id.swap(id);
    return *this;
}

bool base_config_item::load(item_list const&) { return load(); }
bool base_config_item::load() { return true; }
void base_config_item::save(item_list const&) {}
void base_config_item::save() {}
void base_config_item::unload() {}

config_tree::entry_type const* base_config_item::get_value(ustring8 const& key) const {
    config_tree const* const node = m_tree.get_node(key);
    return node && node->has_entry() ? &node->entry() : nullptr;
}

void base_config_item::get_array(ustring8 const& key, config_tree::entry_list& elements) const {
    m_tree.get_array(key, elements);
}

void base_config_item::get_value_pair_array(ustring8 const& key, config_tree::entry_list& pairs,
                                            bool nested) const {
    m_tree.get_value_pair_array(key, pairs, nested);
}

void base_config_item::set(ustring8 const& key, types::variant const& value, unsigned int kind) {
    m_tree.set_node(key, value, kind);
}

void base_config_item::set(std::pair<ustring8, types::variant> const& key_value, unsigned int kind) {
    set(key_value.first, key_value.second, kind);
}

void base_config_item::set(ustring8 const& text, unsigned int kind) {
    set(make_key_value(text, config_token::T_EQ), kind);
}

void base_config_item::set_array(ustring8 const& key, generic::varg_list const& values, generic::varg_list const&) {
    _private::config_section(m_tree).set_array(key, values);
}

std::pair<ustring8, types::variant> base_config_item::make_key_value(ustring8 const& text,
                                                                     config_token::tok_types separator) {
    ustring8 key;
    ustring8 value;
    unsigned int position = 0;
    config_token token;
    while (get_token(text, position, token) != config_token::T_END && token.kind != separator) {
        if (token.kind != config_token::T_NEWLINE && !is_space(token)) key += token.text;
    }
    while (get_token(text, position, token) != config_token::T_END && token.kind != config_token::T_NEWLINE) {
        if (!is_space(token)) value += token.text;
    }
    return {std::move(key), types::variant(std::move(value))};
}

unsigned int base_config_item::get_token(ustring8 const& text, unsigned int& position, config_token& token) {
    return _private::read_token(text, position, token);
}

void base_config_item::dump(std::ostream& stream) const {
    stream.write("object : ", 9);
    stream.write(m_id.data(), static_cast<std::streamsize>(m_id.size()));
    stream.write("\n|---------------\\\n", 19);
    m_tree.dump(stream, 1);
    stream.write("end\n", 4);
}

std::ostream& operator<<(std::ostream& stream, base_config_item const& item) {
    item.dump(stream);
    return stream;
}

} // namespace ZOLT_2_18::config

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/config/config_manager.hpp>

#include <zolt/config/config_children_private.hpp>

#include <algorithm>
#include <ostream>
#include <set>
#include <string_view>
#include <utility>

namespace ZOLT_2_18::config {
namespace {

using _private::child;
using _private::find_child;
using _private::key_path;
using strings::ustring8;

constexpr unsigned int array_kind = 2;
constexpr unsigned int first_element_bits = 3;
constexpr unsigned int reference_bit = 4;

bool is_reference(child const& entry) { return (entry.kind() & reference_bit) != 0; }
bool means_first_element(child const& entry) { return (entry.kind() & first_element_bits) == first_element_bits; }
bool is_plain(child const& entry) { return !is_reference(entry) && !means_first_element(entry); }

/// The child at the key unless it is only a step of a path.
child const* find_entry(base_config_item const& source, key_path const& key) {
    child const* const found = find_child(source.tree(), key);
    return found && found->has_entry() ? found : nullptr;
}

struct found_entry {
    base_config_item const* source;
    child const* entry; ///< null when no source holds the key
};

found_entry find_first(base_config_item::item_list const& sources, ustring8 const& key) {
    key_path const path(key);
    for (auto const& source : sources) {
        child const* const entry = source ? find_entry(*source.get(), path) : nullptr;
        if (entry) return {source.get(), entry};
    }
    return {nullptr, nullptr};
}

types::variant first_element(base_config_item const& source, ustring8 const& key) {
    child const* const element = find_entry(source, key_path(key + ".0"));
    return element && is_plain(*element) ? element->value() : types::variant();
}

/// The value of a key whose entry may be a reference or mean an element.
types::variant follow(base_config_item::item_list const& sources, ustring8 key,
                      types::variant const& default_value) {
    std::set<ustring8> visited;
    for (;;) {
        auto const [source, entry] = find_first(sources, key);
        if (!entry) return default_value;
        if (means_first_element(*entry)) return first_element(*source, key);
        if (!is_reference(*entry)) return entry->value();

        visited.insert(std::move(key));
        key = entry->value().as_utf8();
        if (visited.count(key) != 0) return entry->value();
    }
}

// Unformatted, so that the width of the stream plays no part.
void write(std::ostream& stream, std::string_view text) {
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
}

} // namespace

config_manager::config_manager() = default;
config_manager::~config_manager() = default;

void config_manager::init(config_dispatch const& dispatch) {
    std::unique_ptr<config_dispatch> copy(dispatch.clone()); // first: it may be the one held so far
    m_items.clear();
    m_dispatch = std::move(copy);
    m_dispatch->setup(m_items);
}

void config_manager::load() {
    if (m_dispatch) m_dispatch->load(m_items);
}

void config_manager::save() {
    if (m_dispatch) m_dispatch->save(m_items);
}

void config_manager::unload() {
    if (m_dispatch) m_dispatch->unload(m_items);
}

types::variant config_manager::get_value(ustring8 const& key, types::variant default_value) const {
    found_entry const found = find_first(m_items, key);
    if (!found.entry) return default_value;
    return is_plain(*found.entry) ? found.entry->value() : follow(m_items, key, default_value);
}

bool config_manager::value_exist(ustring8 const& key) const { return get_value(key, types::nil) != types::nil; }

config_origin config_manager::origin(ustring8 const& key) const {
    key_path const path(key);
    config_origin found;
    for (auto const& item : m_items) {
        if (!item || !find_entry(*item, path)) continue;
        if (found.source) {
            found.has_overridden = true;
            break;
        }
        found.source = item;
        found.id = item->get_id();
    }
    return found;
}

base_config_item const* config_manager::find_source(ustring8 const& key) const {
    key_path const path(key);
    auto const has_node = [&path](auto const& item) { return item && find_child(item->tree(), path); };
    auto const found = std::find_if(m_items.begin(), m_items.end(), has_node);
    return found != m_items.end() ? found->get() : nullptr;
}

bool config_manager::is_array(ustring8 const& key) const {
    base_config_item const* const source = find_source(key);
    return source && find_child(source->tree(), key_path(key))->kind() == array_kind;
}

void config_manager::get_array(ustring8 const& key, std::vector<types::variant>& values) const {
    config_tree::entry_list elements;
    if (base_config_item const* const source = find_source(key)) source->get_array(key, elements);
    values.clear();
    values.reserve(elements.size());
    for (auto const& element : elements) values.push_back(element.second.second);
}

void config_manager::get_key_value_array(ustring8 const& key,
                                         std::vector<std::pair<ustring8, types::variant>>& values,
                                         bool nested) const {
    config_tree::entry_list pairs;
    if (base_config_item const* const source = find_source(key)) source->get_value_pair_array(key, pairs, nested);
    values.clear();
    values.reserve(pairs.size());
    for (auto& [name, entry] : pairs) values.emplace_back(std::move(name), entry.second);
}

memory::pointers::rc_pointer<base_config_item> config_manager::get_config_item(ustring8 const& id) const {
    auto const has_id = [&id](auto const& item) { return item && item->get_id() == id; };
    auto const found = std::find_if(m_items.begin(), m_items.end(), has_id);
    return found != m_items.end() ? *found : nullptr;
}

void config_manager::dump(std::ostream& stream) const {
    write(stream, "config_manager:\n");
    for (auto const& item : m_items) {
        write(stream, "\nconfig_item:\n");
        if (item) item->dump(stream);
    }
    write(stream, "\nno more config_items!\n\nending output\n");
}

std::ostream& operator<<(std::ostream& stream, config_manager const& manager) {
    manager.dump(stream);
    return stream;
}

} // namespace ZOLT_2_18::config

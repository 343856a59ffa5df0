// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "config_settings.hpp"

#include <zolt/config/config_dispatch.hpp>
#include <zolt/config/file_item.hpp>

#include <unistd.h>

#include <array>
#include <iostream>
#include <sstream>

namespace tools {
namespace {

using zolt::config::base_config_item;
using zolt::config::config_tree;
using zolt::config::file_item;

/// The application's dispatcher, which also hands out the sources and tells whether a file was read.
class watched_dispatch : public zolt::config::std_config_dispatch {
public:
    watched_dispatch(std_config_dispatch const& dispatch, base_config_item::item_list& loaded, bool& is_file_read)
        : std_config_dispatch(dispatch), m_loaded(loaded), m_is_file_read(is_file_read) {}

    void load(item_list& items) const override {
        for (auto const& item : items) {
            bool const is_loaded = item->load(items);
            auto const* const file = dynamic_cast<file_item const*>(item.get());
            if (file && !file->get_filename().empty()) m_is_file_read = is_loaded;
        }
        m_loaded = items;
    }
    watched_dispatch* clone() const override { return new watched_dispatch(*this); }

private:
    base_config_item::item_list& m_loaded;
    bool& m_is_file_read;
};

/// Takes what the library writes to standard output, which is for settings alone.
class captured_output {
public:
    captured_output() : m_before(std::cout.rdbuf(m_text.rdbuf())) {}
    captured_output(captured_output const&) = delete;
    captured_output& operator=(captured_output const&) = delete;
    ~captured_output() { std::cout.rdbuf(m_before); }

    ustring8 text() const { return m_text.str(); }

private:
    std::ostringstream m_text;
    std::streambuf* m_before;
};

//--------------------------------------------------------------------------------------------------
// The trees of all sources are walked side by side. No recursion: keys may have any number of components.

template <typename T>
using per_source = std::array<T, source_count>;
using nodes = per_source<config_tree const*>; // null where a source has no node
using flags = per_source<bool>;

struct walk_level {
    nodes parents;
    flags has_elements; ///< whether the numbered children belong to an array that has been dealt with
    per_source<config_tree::const_iterator> next;
    per_source<config_tree::const_iterator> end;
    std::size_t path_size;
};

walk_level enter(nodes const& parents, flags const& has_elements, std::size_t path_size) {
    static config_tree const nothing;
    walk_level level{parents, has_elements, {}, {}, path_size};
    for (std::size_t i = 0; i != source_count; ++i) {
        config_tree const& tree = parents[i] ? *parents[i] : nothing;
        level.next[i] = tree.begin();
        level.end[i] = tree.end();
    }
    return level;
}

/// The smallest name that is still to come, or null.
ustring8 const* next_name(walk_level const& level) {
    ustring8 const* name = nullptr;
    for (std::size_t i = 0; i != source_count; ++i) {
        if (level.next[i] == level.end[i]) continue;
        ustring8 const& candidate = level.next[i]->first;
        if (!name || candidate < *name) name = &candidate;
    }
    return name;
}

bool is_array(config_tree const& node) { return node.kind() == 2; }

bool is_index(ustring8 const& name) { return !name.empty() && name.find_first_not_of("0123456789") == name.npos; }

void take_elements(config_tree const& parent, ustring8 const& name, setting& array) {
    config_tree::entry_list entries;
    parent.get_array(name, entries);
    for (auto const& [index, entry] : entries) {
        array.indices.push_back(index);
        array.values.push_back(entry.second.as_utf8());
    }
}

/// What the sources have at one path.
struct place {
    nodes found{};
    std::size_t first = source_count; ///< the first source with a node
    std::size_t owner = source_count; ///< the first one whose node holds something

    /// A mere step of a path hides an array as such, but not its elements.
    bool is_reachable() const { return owner == first; }
    flags shown_or_hidden_arrays() const {
        flags arrays{};
        for (std::size_t i = 0; i != source_count; ++i) {
            arrays[i] = found[i] && is_array(*found[i]) && (i != owner || is_reachable());
        }
        return arrays;
    }
};

place take(walk_level& level, ustring8 const& name) {
    place taken;
    for (std::size_t i = source_count; i-- != 0;) {
        if (level.next[i] == level.end[i] || level.next[i]->first != name) continue;
        taken.found[i] = (level.next[i]++)->second.get();
        taken.first = i;
        if (taken.found[i]->has_entry()) taken.owner = i;
    }
    return taken;
}

/// The setting that a source has at a place, unless there is none or it is an element of an array. Its name is
/// the last one of the path.
std::optional<setting> setting_at(place const& here, std::size_t source, walk_level const& level,
                                  ustring8 const& name, ustring8 const& path) {
    config_tree const* const node = here.found[source];
    if (!node || !node->has_entry()) return std::nullopt;
    bool const is_owner = source == here.owner;
    bool const is_shown =
        is_array(*node) ? !is_owner || here.is_reachable() : !level.has_elements[source] || !is_index(name);
    if (!is_shown) return std::nullopt;
    setting found{path, source, is_array(*node), {}, !is_owner};
    if (name.empty() && level.path_size != 0) found.key += '.'; // keeps the last name empty
    if (found.is_array) {
        take_elements(*level.parents[source], name, found);
    } else {
        found.values.push_back(node->value().as_utf8());
    }
    return found;
}

} // namespace

config_settings::config_settings(source_options const& options) {
    m_is_file_read = !options.file || !options.file->empty(); // unless the arguments choose another one
    m_arguments.push_back(nullptr);                           // the application's name is not known
    for (ustring8 const& argument : options.arguments) m_arguments.push_back(argument.c_str());
    m_arguments.push_back(nullptr);
    zolt::config::std_config_dispatch const dispatch(static_cast<int>(m_arguments.size()) - 1, m_arguments.data(),
                                                     options.has_environment ? environ : nullptr,
                                                     options.file.value_or(ustring8()), ustring8());
    captured_output const output;
    m_manager.init(watched_dispatch(dispatch, m_items, m_is_file_read));
    m_manager.load();
    m_warnings = output.text();
}

ustring8 config_settings::file_name() const {
    for (auto const& item : m_items) {
        if (auto const* const file = dynamic_cast<file_item const*>(item.get())) return file->get_filename();
    }
    return {};
}

void config_settings::for_each(shown_settings shown, std::function<void(setting const&)> const& visit) const {
    nodes roots{};
    std::size_t count = 0;
    for (auto const& item : m_items) roots[count++] = &item->tree();

    ustring8 path;
    std::vector<walk_level> levels{enter(roots, {}, 0)};
    while (!levels.empty()) {
        walk_level& level = levels.back();
        ustring8 const* const next = next_name(level);
        if (!next) {
            levels.pop_back();
            continue;
        }
        ustring8 const& name = *next;
        place const here = take(level, name);
        path.resize(level.path_size);
        path += name;
        std::size_t const last =
            shown == shown_settings::all ? source_count : std::min<std::size_t>(here.owner + 1, source_count);
        for (std::size_t source = here.owner; source < last; ++source) {
            if (auto const found = setting_at(here, source, level, name, path)) visit(*found);
        }
        path += '.';
        levels.push_back(enter(here.found, here.shown_or_hidden_arrays(), path.size()));
    }
}

} // namespace tools

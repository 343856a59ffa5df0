// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A tree may be as deep as its longest key has components, which is up to whoever wrote the configuration.
// So nothing here recurses: what has to come back to a node later keeps it in a list of its own.
#include <zolt/config/config_tree.hpp>

#include <zolt/config/config_children_private.hpp>
#include <zolt/config/config_token.hpp>
#include <zolt/generic/convert/x_to_str.hpp>

#include <algorithm>
#include <ostream>
#include <string_view>

namespace ZOLT_2_18::config {
namespace {

using _private::key_path;
using strings::ustring8;

/// A place in a walk over a tree: the children of one node that are still to come.
struct walk_level {
    _private::child_cursor rest;
    std::size_t path_size; ///< where in the path the names of this level start
};

bool is_number(std::string_view name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), isConfigDigit);
}

std::string_view without_zeros(ustring8 const& digits) {
    std::string_view const view(digits);
    return view.substr(std::min(view.find_first_not_of('0'), view.size()));
}

/// Compares numbers of any length.
bool has_smaller_name(config_tree::entry_list::value_type const& left,
                      config_tree::entry_list::value_type const& right) {
    std::string_view const a = without_zeros(left.first);
    std::string_view const b = without_zeros(right.first);
    return a.size() != b.size() ? a.size() < b.size() : a < b;
}

// Unformatted, so that the width, flags and locale of the stream play no part.
void write(std::ostream& stream, std::string_view text) {
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
}

void write_columns(std::ostream& stream, std::size_t count) {
    constexpr std::string_view columns = "|\t\t|\t\t|\t\t|\t\t|\t\t|\t\t|\t\t|\t\t";
    constexpr std::size_t most = columns.size() / 3;
    for (; count > most; count -= most) write(stream, columns);
    write(stream, columns.substr(0, 3 * count));
}

void write_entry(std::ostream& stream, _private::child const& child) {
    if (child.kind() == 0) return write(stream, "true\n");
    char kind[66];
    generic::convert::ultoa(child.kind(), kind, 10);
    write(stream, kind);
    write(stream, " ");
    write(stream, child.value().as_string());
    write(stream, "\n");
}

} // namespace

config_tree::config_tree() : m_entry(0, types::nil) {}
config_tree::config_tree(types::variant const& value, unsigned int kind) : m_entry(kind, value) {}
config_tree::config_tree(config_tree const&) = default;
config_tree::~config_tree() = default;

config_tree& config_tree::assign(config_tree const& other) {
    config_tree copy(other);
    m_entry.swap(copy.m_entry);
    m_children.swap(copy.m_children);
    return *this;
}

config_tree* config_tree::clone() const {
    auto* const copy = new config_tree(*this);
    copy->heap_allocated = true;
    return copy;
}

void config_tree::set_entry(types::variant const& value, unsigned int kind) noexcept {
    m_entry.second = value;
    m_entry.first = kind;
}

void config_tree::set_node(ustring8 const& key, types::variant const& value, unsigned int kind) {
    make_node(key).set_entry(value, kind);
}

config_tree& config_tree::make_node(ustring8 const& key) { return _private::make_node(*this, key_path(key)); }

config_tree const* config_tree::get_node(ustring8 const& key) const {
    return _private::find_node(*this, key_path(key));
}

void config_tree::parse_string(ustring8 const& key, ustring8& head, ustring8& rest) const {
    auto const separator = std::find_if(key.begin(), key.end(), isConfigDotSlash);
    std::string_view const first(key.data(), static_cast<std::size_t>(separator - key.begin()));
    ustring8 lowered = _private::lowered(first);
    rest = ustring8(separator == key.end() ? separator : separator + 1, key.end()); // may be the key itself
    head.swap(lowered);
}

void config_tree::get_array(ustring8 const& key, entry_list& elements) const {
    _private::child const* const head = find_child(*this, key_path(key));
    elements.clear();
    if (!head || head->kind() != 2) return;
    for (_private::child_cursor cursor(*head->node()); !cursor.at_end();) {
        _private::child const& child = cursor.take();
        if (is_number(child.name())) elements.emplace_back(child.name(), child.entry());
    }
    std::stable_sort(elements.begin(), elements.end(), has_smaller_name);
}

void config_tree::get_value_pair_array(ustring8 const& key, entry_list& pairs, bool nested) const {
    _private::child const* const top = find_child(*this, key_path(key));
    pairs.clear();
    if (!top || !top->node()) return;
    ustring8 path;
    std::vector<walk_level> levels{{_private::child_cursor(*top->node()), 0}};
    while (!levels.empty()) {
        walk_level& level = levels.back();
        if (level.rest.at_end()) {
            levels.pop_back();
            continue;
        }
        _private::child const& child = level.rest.take();
        path.resize(level.path_size);
        path += child.name();
        if (!child.is_nil()) pairs.emplace_back(path, child.entry());
        if (!nested || child.is_leaf()) continue;
        path += '.';
        levels.push_back({_private::child_cursor(*child.node()), path.size()});
    }
}

void config_tree::erase() noexcept { m_children.clear(); }

void config_tree::dump(std::ostream& stream, int depth) const {
    auto const columns = static_cast<std::size_t>(std::max(depth, 0));
    if (empty()) {
        write_columns(stream, columns);
        return write(stream, "end\n");
    }
    std::vector<_private::child_cursor> levels{_private::child_cursor(*this)};
    while (!levels.empty()) {
        if (levels.back().at_end()) {
            levels.pop_back();
            write(stream, levels.empty() ? "end\n" : "end\n|\n");
            continue;
        }
        _private::child const& child = levels.back().take();
        std::size_t const indentation = columns + levels.size() - 1;
        write_columns(stream, indentation);
        write(stream, child.name());
        write(stream, " : ");
        write_entry(stream, child);
        write_columns(stream, indentation);
        if (child.is_leaf()) continue;
        write(stream, "|---------------\\\n");
        levels.emplace_back(*child.node());
    }
}

std::ostream& operator<<(std::ostream& stream, config_tree const& tree) {
    tree.dump(stream, 0);
    return stream;
}

} // namespace ZOLT_2_18::config

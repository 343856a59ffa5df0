// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A tree may be as deep as its longest key has components, which is up to whoever wrote the configuration.
// So nothing here recurses: what has to come back to a node later keeps it in a list of its own.
#include <zolt/config/config_tree.hpp>

#include <zolt/config/config_token.hpp>
#include <zolt/generic/convert/x_to_str.hpp>

#include <algorithm>
#include <cctype>
#include <ostream>
#include <string_view>

namespace ZOLT_2_18::config {
namespace {

using memory::pointers::make_rc;
using memory::pointers::rc_pointer;
using strings::ustring8;

char lower(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

/// Takes the components of a key one after the other. Every key has at least one; a separator at its end
/// adds none.
class key_reader {
public:
    explicit key_reader(ustring8 const& key) : m_key(key) {}

    /// The next component in lower case, valid until the next call.
    ustring8 const& take() {
        auto const first = m_key.begin() + static_cast<std::ptrdiff_t>(m_position);
        auto const last = std::find_if(first, m_key.end(), isConfigDotSlash);
        m_component.assign(first, last);
        std::transform(m_component.begin(), m_component.end(), m_component.begin(), lower);
        m_position = static_cast<std::size_t>(last - m_key.begin()) + (last != m_key.end() ? 1 : 0);
        return m_component;
    }
    bool more() const { return m_position < m_key.size(); }
    std::size_t position() const { return m_position; }

private:
    ustring8 const& m_key;
    std::size_t m_position = 0;
    ustring8 m_component;
};

/// A place in a walk over a tree: the children of one node that are still to come.
struct walk_level {
    config_tree::const_iterator next;
    config_tree::const_iterator end;
    std::size_t path_size; ///< where in the path the names of this level start
};

bool is_number(ustring8 const& name) {
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

void write_entry(std::ostream& stream, config_tree const& node) {
    if (node.kind() == 0) return write(stream, "true\n");
    char kind[66];
    generic::convert::ultoa(node.kind(), kind, 10);
    write(stream, kind);
    write(stream, " ");
    write(stream, node.value().as_string());
    write(stream, "\n");
}

/// An order in which all names are equal: a list that takes over the nodes of maps without allocating.
struct no_order {
    bool operator()(ustring8 const&, ustring8 const&) const noexcept { return false; }
};
using doomed_list = std::multimap<ustring8, rc_pointer<config_tree>, no_order>;

/// Removes all nodes; those that go now but have children are moved to the list.
void empty_map(_private::deep_copy_map::map_type& nodes, doomed_list& doomed) noexcept {
    for (auto here = nodes.begin(); here != nodes.end();) {
        auto const node = here++;
        config_tree const& tree = *node->second;
        bool const goes_now = tree.reference_count == 1 && tree.heap_allocated;
        if (goes_now && !tree.empty()) doomed.insert(doomed.end(), nodes.extract(node));
    }
    nodes.clear();
}

} // namespace

namespace _private {

deep_copy_map::deep_copy_map() noexcept = default;

// Through the default constructor, so that a copy that fails half-way is taken apart like any other map.
deep_copy_map::deep_copy_map(deep_copy_map const& other) : deep_copy_map() {
    std::vector<std::pair<deep_copy_map const*, deep_copy_map*>> pending{{&other, this}};
    while (!pending.empty()) {
        auto const [source, target] = pending.back();
        pending.pop_back();
        for (auto const& [name, node] : *source) {
            auto const copy = make_rc<config_tree>(node->value(), node->kind());
            target->m_nodes.emplace_hint(target->end(), name, copy);
            if (!node->empty()) pending.emplace_back(&node->m_children, &copy->m_children);
        }
    }
}

deep_copy_map::~deep_copy_map() { clear(); }

deep_copy_map& deep_copy_map::assign(deep_copy_map const& other) {
    deep_copy_map copy(other);
    swap(copy);
    return *this;
}

config_tree* deep_copy_map::find(ustring8 const& name) const {
    auto const found = m_nodes.find(name);
    return found != m_nodes.end() ? found->second.get() : nullptr;
}

config_tree& deep_copy_map::find_or_make(ustring8 const& name) {
    auto place = m_nodes.lower_bound(name);
    if (place == m_nodes.end() || place->first != name) {
        place = m_nodes.emplace_hint(place, name, make_rc<config_tree>());
    }
    return *place->second;
}

// Each node goes only after its children have been taken from it, so its destructor finds nothing to do.
void deep_copy_map::clear() noexcept {
    doomed_list doomed;
    empty_map(m_nodes, doomed);
    while (!doomed.empty()) {
        auto const node = doomed.extract(doomed.begin());
        empty_map(node.mapped()->m_children.m_nodes, doomed);
    }
}

} // namespace _private

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

config_tree& config_tree::make_node(ustring8 const& key) {
    config_tree* node = this;
    key_reader reader(key);
    do {
        node = &node->m_children.find_or_make(reader.take());
    } while (reader.more());
    return *node;
}

config_tree const* config_tree::get_node(ustring8 const& key) const {
    config_tree const* node = this;
    key_reader reader(key);
    do {
        node = node->m_children.find(reader.take());
    } while (node && reader.more());
    return node;
}

void config_tree::parse_string(ustring8 const& key, ustring8& head, ustring8& rest) const {
    key_reader reader(key);
    ustring8 first = reader.take();
    rest = ustring8(key.substr(reader.position())); // may be the key itself
    head.swap(first);
}

void config_tree::get_array(ustring8 const& key, entry_list& elements) const {
    config_tree const* const head = get_node(key);
    elements.clear();
    if (!head || head->kind() != 2) return;
    for (auto const& [name, node] : *head) {
        if (is_number(name)) elements.emplace_back(name, node->entry());
    }
    std::stable_sort(elements.begin(), elements.end(), has_smaller_name);
}

void config_tree::get_value_pair_array(ustring8 const& key, entry_list& pairs, bool nested) const {
    config_tree const* const top = get_node(key);
    pairs.clear();
    if (!top) return;
    ustring8 path;
    std::vector<walk_level> levels{{top->begin(), top->end(), 0}};
    while (!levels.empty()) {
        walk_level& level = levels.back();
        if (level.next == level.end) {
            levels.pop_back();
            continue;
        }
        auto const& [name, node] = *level.next++;
        path.resize(level.path_size);
        path += name;
        if (node->value() != types::nil) pairs.emplace_back(path, node->entry());
        if (!nested || node->empty()) continue;
        path += '.';
        levels.push_back({node->begin(), node->end(), path.size()});
    }
}

void config_tree::erase() noexcept { m_children.clear(); }

void config_tree::dump(std::ostream& stream, int depth) const {
    auto const columns = static_cast<std::size_t>(std::max(depth, 0));
    if (empty()) {
        write_columns(stream, columns);
        return write(stream, "end\n");
    }
    std::vector<walk_level> levels{{begin(), end(), 0}};
    while (!levels.empty()) {
        walk_level& level = levels.back();
        if (level.next == level.end) {
            levels.pop_back();
            write(stream, levels.empty() ? "end\n" : "end\n|\n");
            continue;
        }
        auto const& [name, node] = *level.next++;
        std::size_t const indentation = columns + levels.size() - 1;
        write_columns(stream, indentation);
        write(stream, name);
        write(stream, " : ");
        write_entry(stream, *node);
        write_columns(stream, indentation);
        if (node->empty()) continue;
        write(stream, "|---------------\\\n");
        levels.push_back({node->begin(), node->end(), 0});
    }
}

std::ostream& operator<<(std::ostream& stream, config_tree const& tree) {
    tree.dump(stream, 0);
    return stream;
}

} // namespace ZOLT_2_18::config

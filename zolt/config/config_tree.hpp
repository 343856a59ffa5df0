// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// config_tree: the keys and values of one configuration source.
//
// A key is a path of components separated by ".", "/" or backslashes; each component names a child of the
// node before it, in lower case as the C library's tolower gives it. Every node may hold a value and may
// have children at the same time:
//
//     config::config_tree tree;
//     tree.set_node("Net.Port", strings::ustring8("80"), 0);
//     tree.get_node("net/port")->value().as_int();   // 80
//     tree.get_node("net")->value() == types::nil;   // true: a step of the path holds nothing
//
// Components may be empty: "a..b" goes through a child with the empty name, and so does the empty key. One
// separator at the end changes nothing: "net." is "net".
//
// An array is a head node of kind 2 whose children "0", "1", "2" are the elements.
//
// Setting or finding one of n keys costs its length times log n. No operation recurses, so keys may have
// millions of components. Nodes are counted (see <zolt/memory/rc_pointer.hpp>); copies are deep, so no two
// trees share a node. A tree belongs to one thread at a time, for reading, too: what a file holds is kept as
// plain text, of which get_node and iterators make nodes when they first come to it.
#pragma once

#include <zolt/export.hpp>
#include <zolt/generic/abilities.hpp>
#include <zolt/memory/rc_pointer.hpp>
#include <zolt/strings/ustring.hpp>
#include <zolt/types/variant.hpp>

#include <cstddef>
#include <iosfwd>
#include <string> // declares the iterator tags; <iterator> would add stream iterators, 6,000 lines
#include <utility>
#include <vector>

namespace ZOLT_2_18::config {

class config_tree;

namespace _private {

struct child_access;
struct child_block;

/// The children of a node by name, in byte order. A copy holds clones of the nodes; a node goes with the
/// map unless somebody else holds it too.
class ZOLT_API deep_copy_map {
public:
    using value_type = std::pair<strings::ustring8 const, memory::pointers::rc_pointer<config_tree>>;

    /// Forward iterator over (name, node), valid until a child is added or removed.
    class ZOLT_API const_iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = deep_copy_map::value_type;
        using difference_type = std::ptrdiff_t;
        using pointer = value_type const*;
        using reference = value_type const&;

        const_iterator() noexcept = default;
        reference operator*() const;
        pointer operator->() const { return &**this; }
        const_iterator& operator++() noexcept;
        const_iterator operator++(int) noexcept {
            const_iterator const before = *this;
            ++*this;
            return before;
        }
        friend bool operator==(const_iterator const& left, const_iterator const& right) noexcept {
            return left.m_block == right.m_block && left.m_index == right.m_index;
        }
        friend bool operator!=(const_iterator const& left, const_iterator const& right) noexcept {
            return !(left == right);
        }

    private:
        friend class deep_copy_map;
        const_iterator(child_block* block, unsigned int index) noexcept : m_block(block), m_index(index) {}

        child_block* m_block = nullptr; ///< null at the end
        unsigned int m_index = 0;
    };

    deep_copy_map() noexcept;
    deep_copy_map(deep_copy_map const& other);
    ~deep_copy_map();

    deep_copy_map& operator=(deep_copy_map const& other) { return assign(other); }
    /// The other map may be one of a node below this one.
    deep_copy_map& assign(deep_copy_map const& other);
    void swap(deep_copy_map& other) noexcept { std::swap(m_root, other.m_root); }

    bool empty() const noexcept { return !m_root; }
    const_iterator begin() const noexcept;
    const_iterator end() const noexcept { return {}; }
    void clear() noexcept;

private:
    friend struct child_access;

    child_block* m_root = nullptr; ///< null without children
};

} // namespace _private

/// One node with all that is below it. The root of a tree is a node without a name.
class ZOLT_API config_tree : public generic::abilities::reference_count_pointer_ability<config_tree> {
public:
    /// Kind and value. The kinds that the library's sources store are 0 for an ordinary value, 1 for a
    /// switch without value and 2 for the head of an array, whose value is nil. A node that is only a step
    /// of a path is of kind 0 and nil.
    using entry_type = std::pair<unsigned int, types::variant>;
    /// Names and what they stand for.
    using entry_list = std::vector<std::pair<strings::ustring8, entry_type>>;
    /// A forward iterator over (name, node) pairs.
    using const_iterator = _private::deep_copy_map::const_iterator;

    config_tree();
    /// A root or single node with an entry of its own.
    config_tree(types::variant const& value, unsigned int kind);
    config_tree(config_tree const& other);
    ~config_tree() override;

    config_tree& operator=(config_tree const& other) { return assign(other); }
    /// Copies kind, value and all nodes below. The other node may stand below or above this one.
    config_tree& assign(config_tree const& other);
    /// A new deep copy: count 0, marked as heap-allocated, for the caller to hand to a pointer.
    config_tree* clone() const;

    /// This node's own kind and value.
    entry_type const& entry() const noexcept { return m_entry; }
    unsigned int kind() const noexcept { return m_entry.first; }
    types::variant const& value() const noexcept { return m_entry.second; }
    void set_entry(types::variant const& value, unsigned int kind) noexcept;
    /// True unless the node is only a step of a path, of kind 0 and nil.
    bool has_entry() const noexcept { return m_entry.first != 0 || m_entry.second != types::nil; }

    /// True without children.
    bool empty() const noexcept { return m_children.empty(); }
    /// Over (name, node) pairs of the direct children, in byte order of the names. Iterators are valid until
    /// a child is added or removed.
    const_iterator begin() const noexcept { return m_children.begin(); }
    const_iterator end() const noexcept { return m_children.end(); }

    /// Makes the path as needed and gives its last node this value and kind; its children stay.
    void set_node(strings::ustring8 const& key, types::variant const& value, unsigned int kind);
    /// The node at the path, made with all steps to it as needed; as such steps are, it is of kind 0 and nil
    /// when new. Valid until the node is removed.
    config_tree& make_node(strings::ustring8 const& key);
    /// The node at the path, or null when a component is missing. Nothing is made.
    config_tree const* get_node(strings::ustring8 const& key) const;

    /// Splits a key at its first separator: `head` gets what is before it in lower case, `rest` what is
    /// after it unchanged. Without a separator `head` is the whole key and `rest` is empty.
    void parse_string(strings::ustring8 const& key, strings::ustring8& head, strings::ustring8& rest) const;

    /// Replaces `elements` by those of the array at the key: the children of a kind 2 node whose names are
    /// decimal digits, in numeric order, as (name, (kind, value)). No such node gives none.
    void get_array(strings::ustring8 const& key, entry_list& elements) const;
    /// Replaces `pairs` by (name, (kind, value)) of the nodes below the key that hold a value other than
    /// nil, in byte order of the names. With `nested` all nodes below, each one before those below it and
    /// named by its path from the key's node with "." between components; else the direct children only.
    /// Array heads hold no value, so of an array only the elements are listed.
    void get_value_pair_array(strings::ustring8 const& key, entry_list& pairs, bool nested) const;

    /// Removes all children; the node's own kind and value stay.
    void erase() noexcept;

    /// Writes what is below the node, one line for each, indented by `depth` columns; a level more for each
    /// level down. Kept: the value of a kind 0 node is not shown, it reads "true"; what follows the last
    /// line of a subtree continues that line's indentation.
    void dump(std::ostream& stream, int depth) const;

private:
    friend class _private::deep_copy_map;
    friend struct _private::child_access;

    entry_type m_entry;
    _private::deep_copy_map m_children;
};

/// dump at depth 0.
ZOLT_API std::ostream& operator<<(std::ostream& stream, config_tree const& tree);

} // namespace ZOLT_2_18::config

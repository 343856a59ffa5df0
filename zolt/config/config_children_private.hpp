// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The children of a node as the library's own readers and writers see them.
//
// Most nodes are a name with a text and nothing else. A config_tree for each of them would take six times
// the memory, so a reader stores them as such, and the tree makes a node of one when somebody asks for the
// node. What is here looks at children as they are and makes none.
// The printers for GDB (packaging/gdb/zolt_printers.py) read these layouts and those of the blocks.
#pragma once

#include <zolt/config/config_tree.hpp>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace ZOLT_2_18::config::_private {

/// A node that is a child. It holds itself until it is removed, so that node and name are one allocation.
struct named_node final : config_tree {
    named_node(std::string_view name, types::variant const& value, unsigned int kind);
    ~named_node() override;

    deep_copy_map::value_type self;
};

/// A name and a text of kind 0, one after the other behind this head.
struct text_record {
    static constexpr std::size_t most = 0xFFFF; ///< bytes of a name or a text

    unsigned short name_size;
    unsigned short text_size;
    unsigned short text_capacity; ///< room for another text

    char* bytes() noexcept { return reinterpret_cast<char*>(this + 1); }
    char const* bytes() const noexcept { return reinterpret_cast<char const*>(this + 1); }
    std::string_view name() const noexcept { return {bytes(), name_size}; }
    std::string_view text() const noexcept { return {bytes() + name_size, text_size}; }
};

/// A named node, owned by who stores it, or a text record, which goes with the blocks of its siblings.
class child {
public:
    child() noexcept = default;
    explicit child(named_node* node) noexcept : m_place(reinterpret_cast<char*>(node)) {}
    explicit child(text_record* record) noexcept : m_place(reinterpret_cast<char*>(record) + 1) {}

    /// Null for a node.
    text_record* record() const noexcept {
        return is_record() ? reinterpret_cast<text_record*>(m_place - 1) : nullptr;
    }
    /// Only for a node.
    named_node* named() const noexcept { return reinterpret_cast<named_node*>(m_place); }
    /// Null for a text record, which has no children.
    config_tree* node() const noexcept { return record() ? nullptr : named(); }

    std::string_view name() const noexcept {
        return record() ? record()->name() : std::string_view(named()->self.first);
    }
    unsigned int kind() const noexcept { return record() ? 0 : node()->kind(); }
    bool is_nil() const noexcept { return !record() && node()->value() == types::nil; }
    bool is_leaf() const noexcept { return record() || node()->empty(); }
    bool has_entry() const noexcept { return record() || node()->has_entry(); }
    types::variant value() const { return record() ? types::variant(text()) : node()->value(); }
    config_tree::entry_type entry() const { return {kind(), value()}; }

private:
    bool is_record() const noexcept { return (reinterpret_cast<std::uintptr_t>(m_place) & 1) != 0; }
    strings::ustring8 text() const { return strings::ustring8(record()->text()); }

    char* m_place; ///< of a record one byte further than it is, which is an odd address
};

/// A walk over the children of a node in byte order of their names. It ends when a child is added.
class child_cursor {
public:
    explicit child_cursor(config_tree const& node) noexcept;
    bool at_end() const noexcept { return !m_block; }
    /// The child that is next; the cursor moves behind it.
    child const& take() noexcept;

private:
    child_block* m_block;
    unsigned int m_index = 0;
};

/// A name to be found.
struct wanted_name {
    wanted_name() noexcept = default;
    explicit wanted_name(std::string_view name) noexcept;
    std::string_view text() const noexcept { return {data, size}; }

    char const* data;
    std::size_t size;
    unsigned char tag; ///< a byte of hash, which the children keep, too
};

/// A key cut into its components in lower case, to be looked up as often as need be. Every key has at least
/// one component; a separator at its end adds none.
class key_path {
public:
    /// The key has to outlive the path.
    explicit key_path(std::string_view key);
    key_path(key_path const&) = delete;
    key_path& operator=(key_path const&) = delete;

    wanted_name const* begin() const noexcept { return m_first; }
    wanted_name const* end() const noexcept { return m_end; }

private:
    static constexpr std::size_t few = 6;

    template <bool is_lowered>
    bool cut(std::string_view text);
    void make_room();

    wanted_name* m_first = m_few;
    wanted_name* m_end = m_few;
    wanted_name* m_limit = m_few + few;
    wanted_name m_few[few];
    std::vector<wanted_name> m_many; ///< all components if they are more than a few
    strings::ustring8 m_lowered;     ///< the key if it was not in lower case
};

/// The child of the node at the path, or null. It stays in place until the children beside it are added to,
/// walked over, or one of them made a node.
child const* find_child(config_tree const& node, key_path const& path) noexcept;

/// The same as a node, which is made if it was a text.
config_tree const* find_node(config_tree const& node, key_path const& path);

/// The text in lower case.
strings::ustring8 lowered(std::string_view text);

/// The node at the path, made with all steps to it as needed.
config_tree& make_node(config_tree& node, key_path const& path);

/// As node.set_node(key, a variant with the text, 0).
void set_text(config_tree& node, std::string_view key, std::string_view text);

/// What config_tree and deep_copy_map let their own sources do.
struct child_access {
    static deep_copy_map& children(config_tree& node) noexcept { return node.m_children; }
    static child_block*& root(config_tree& node) noexcept { return node.m_children.m_root; }
    static child_block* root(config_tree const& node) noexcept { return node.m_children.m_root; }
};

} // namespace ZOLT_2_18::config::_private

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A place for many keys that begin alike. Walking a long section name anew for each of its keys would cost
// the product of both lengths; a config_section walks it once.
#pragma once

#include <zolt/config/config_children_private.hpp>
#include <zolt/config/config_tree.hpp>
#include <zolt/generic/convert/x_to_str.hpp>
#include <zolt/generic/varg_list.hpp>

#include <string_view>
#include <vector>

namespace ZOLT_2_18::config::_private {

/// set_node and set_array with every key taken as prefix + key. The prefix is empty or ends in a separator.
/// Nothing is made before the first key is set. It refers to the tree's nodes: make a new one after erase.
class config_section {
public:
    explicit config_section(config_tree& tree, strings::ustring8 const& prefix = strings::ustring8())
        : m_tree(tree), m_prefix(prefix) {}

    /// As config_tree::set_node(prefix + key, a variant with the text, 0).
    void set_text(std::string_view key, std::string_view text) {
        if (key.empty() && !m_prefix.empty()) {
            top().set_entry(strings::ustring8(text), 0);
        } else {
            _private::set_text(top(), key, text);
        }
    }

    /// The head at prefix + key with kind 2 and nil, then each value at prefix + key + "." + its index with
    /// kind 0. Elements that were there beyond the last one stay.
    void set_array(strings::ustring8 const& key, generic::varg_list const& values) {
        config_tree& elements = make_array(key);
        unsigned long index = 0;
        for (generic::argument const& element : values) {
            elements.set_node(index_name(index++), element.value(), 0);
        }
    }
    void set_array(strings::ustring8 const& key, std::vector<strings::ustring8> const& texts) {
        config_tree& elements = make_array(key);
        unsigned long index = 0;
        for (strings::ustring8 const& text : texts) _private::set_text(elements, index_name(index++), text);
    }

private:
    config_tree& top() {
        if (!m_top) m_top = m_prefix.empty() ? &m_tree : &m_tree.make_node(m_prefix);
        return *m_top;
    }

    /// The node at prefix + key. The empty key adds nothing to a prefix: its last separator ends the path.
    config_tree& node(strings::ustring8 const& key) {
        return key.empty() && !m_prefix.empty() ? top() : top().make_node(key);
    }

    /// Makes the head of an array and returns the node of its elements.
    config_tree& make_array(strings::ustring8 const& key) {
        node(key).set_entry(types::nil, 2);
        return node(strings::ustring8(key + "."));
    }

    static strings::ustring8 index_name(unsigned long index) {
        char digits[66];
        generic::convert::ultoa(index, digits, 10);
        return strings::ustring8(digits);
    }

    config_tree& m_tree;
    strings::ustring8 m_prefix;
    config_tree* m_top = nullptr; ///< the prefix's node once it is needed
};

} // namespace ZOLT_2_18::config::_private

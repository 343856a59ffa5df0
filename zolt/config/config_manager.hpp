// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// config_manager: an application's single view of its configuration.
//
// It holds sources in order of precedence and answers each query by the first one that holds the key:
//
//     int main(int argc, char** argv, char** envp) {
//         config::config_manager manager;
//         manager.init(config::std_config_dispatch(argc, argv, envp, "tool.cfg", ""));
//         manager.load();
//         int const port = manager.get_value("net.port", 80).as_int();   // -net.port=8080 wins over the file
//     }
//
// Keys are paths without regard to case, as <zolt/config/config_tree.hpp> describes them: "Net.Port",
// "net/port" and "net\port" are one key. Sources are never merged: an array in the first source that holds
// its key hides all of an array in the next.
//
// An entry whose kind has the bit of value 4 is a reference: its text is the key to look up instead, in all
// sources from the first on. Files and arguments do not make such entries; applications do:
//
//     item->set("net.host", strings::ustring8("host.name"), 4);
//
// Queries do not throw for keys that are not there.
#pragma once

#include <zolt/config/base_config_item.hpp>
#include <zolt/config/config_dispatch.hpp>
#include <zolt/export.hpp>
#include <zolt/memory/rc_pointer.hpp>
#include <zolt/strings/ustring.hpp>
#include <zolt/types/variant.hpp>

#include <iosfwd>
#include <memory>
#include <utility>
#include <vector>

namespace ZOLT_2_18::config {

/// Which source answers for a key; see config_manager::origin.
struct config_origin {
    memory::pointers::rc_pointer<base_config_item> source; ///< null when no source holds the key
    strings::ustring8 id;                                  ///< source->get_id(); empty without a source
    bool has_overridden = false;                           ///< true when a later source holds the key, too
};

/// Cannot be copied: it owns its dispatcher, and its sources may be shared with others.
class ZOLT_API config_manager {
public:
    /// Without dispatcher and sources: nothing is found, and load, save and unload do nothing.
    config_manager();
    config_manager(config_manager const&) = delete;
    config_manager& operator=(config_manager const&) = delete;
    ~config_manager();

    /// Drops dispatcher and sources, keeps a clone of the given one and lets it set up new sources. They are
    /// empty until load().
    void init(config_dispatch const& dispatch);
    /// What the dispatcher does for these; those of the library go through all sources front to back.
    void load();
    void save();
    void unload();

    /// The value of the first source that holds the key, references followed; the default when there is none.
    /// A node that is only a step of a path does not hold its key.
    ///
    /// A reference that leads back to a key on the way gives the text of the last reference. An entry whose
    /// kind has both low bits gives the first element below its key in the same source, `key` + ".0"; nil
    /// when that is missing, a reference or again of such a kind. A chain of n references takes n log n.
    types::variant get_value(strings::ustring8 const& key, types::variant default_value) const;
    /// True when get_value(key, nil) is not nil.
    bool value_exist(strings::ustring8 const& key) const;
    /// The source that get_value asks first, and whether it hides a later one. Several sources may have one
    /// id, as the files of module_config_dispatch do; the pointer tells which of them it is.
    ///
    /// An array's head is an entry like any other. References are not followed: the origin is that of the
    /// entry at the key itself. Where no source holds the key all members are those of a new config_origin.
    config_origin origin(strings::ustring8 const& key) const;

    // For the next three the first source that has a node at the key answers, be it a mere step of a path.
    // References are not followed.

    /// True when the node is the head of an array, of kind 2.
    bool is_array(strings::ustring8 const& key) const;
    /// Replaces `values` by the elements of the array at the key in numeric order; by none for another node.
    void get_array(strings::ustring8 const& key, std::vector<types::variant>& values) const;
    /// Replaces `values` by the (name, value) pairs of the nodes below the key that hold a value, in byte
    /// order of the names. With `nested` all nodes below, named by their path from the key with "." between
    /// components; else the direct children only.
    void get_key_value_array(strings::ustring8 const& key,
                             std::vector<std::pair<strings::ustring8, types::variant>>& values, bool nested) const;

    /// The first source with exactly that id ("command line", "standard file", "enviroment", "user item"),
    /// empty when there is none. It lives as long as anybody holds it, whatever becomes of the manager.
    memory::pointers::rc_pointer<base_config_item> get_config_item(strings::ustring8 const& id) const;

    /// Writes all sources with their trees, for diagnostics.
    void dump(std::ostream& stream) const;

private:
    base_config_item const* find_source(strings::ustring8 const& key) const;

    base_config_item::item_list m_items;
    std::unique_ptr<config_dispatch> m_dispatch;
};

/// dump.
ZOLT_API std::ostream& operator<<(std::ostream& stream, config_manager const& manager);

} // namespace ZOLT_2_18::config

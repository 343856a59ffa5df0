// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// base_config_item: one source of configuration, such as the command line or a file.
//
// A source has a name, its id, and owns a config_tree that `load` fills and `unload` empties; loading again
// adds to what is there and overwrites it. Applications usually ask all their sources at once through
// config_manager; a single source answers for itself:
//
//     config::user_item item;
//     item.set("Net.Port", 80, 0);
//     item.set("user = ann", 0);                      // key "user", value "ann"
//     item.get_value("net.port")->second.as_int();    // 80
//     item.get_value("net.host");                     // null
//
// Keys are paths as <zolt/config/config_tree.hpp> describes them. Sources never throw for bad input.
// Items are counted (see <zolt/memory/rc_pointer.hpp>); a copy owns a deep copy of the tree.
#pragma once

#include <zolt/config/config_token.hpp>
#include <zolt/config/config_tree.hpp>
#include <zolt/export.hpp>
#include <zolt/generic/abilities.hpp>
#include <zolt/generic/varg_list.hpp>
#include <zolt/memory/rc_pointer.hpp>
#include <zolt/strings/ustring.hpp>
#include <zolt/types/variant.hpp>

#include <iosfwd>
#include <list>
#include <utility>

namespace ZOLT_2_18::config {

/// Abstract. The order of the virtual operations is part of the binary interface.
class ZOLT_API base_config_item : public generic::abilities::clone_ability,
                                  public generic::abilities::reference_count_pointer_ability<base_config_item> {
public:
    /// Sources in order of precedence.
    using item_list = std::list<memory::pointers::rc_pointer<base_config_item>>;

    ~base_config_item() override;

    /// Fills the tree; true when that went well. `others` are all sources in order of precedence, this one
    /// included, for a source that consults those before it. Here: load().
    virtual bool load(item_list const& others);
    /// Here: nothing, true.
    virtual bool load();
    /// Writes the tree back to where it came from. Here: nothing.
    virtual void save(item_list const& others);
    virtual void save();
    /// Empties the tree. Here: nothing.
    virtual void unload();
    /// A new copy: count 0, marked as heap-allocated, for the caller to hand to a pointer.
    virtual base_config_item* clone() const = 0;

    /// The name of the source, such as "standard file".
    strings::ustring8 get_id() const { return m_id; }
    /// What the source holds.
    config_tree const& tree() const noexcept { return m_tree; }

    /// Kind and value stored under the key, valid while the source is unchanged; null when there is none. A
    /// mere step of a path counts as none, an array's head as kind 2 with nil.
    config_tree::entry_type const* get_value(strings::ustring8 const& key) const;
    /// As config_tree::get_array.
    void get_array(strings::ustring8 const& key, config_tree::entry_list& elements) const;
    /// As config_tree::get_value_pair_array.
    void get_value_pair_array(strings::ustring8 const& key, config_tree::entry_list& pairs, bool nested) const;

    /// Stores the value; the kind as in config_tree, or one of the references of config_manager.
    void set(strings::ustring8 const& key, types::variant const& value, unsigned int kind);
    void set(std::pair<strings::ustring8, types::variant> const& key_value, unsigned int kind);
    /// Stores what make_key_value(text, T_EQ) finds: set("verbose", 1) is a switch with an empty value.
    void set(strings::ustring8 const& text, unsigned int kind);
    /// Stores an array: a head of kind 2 with nil under the key, and each value with kind 0 under the key
    /// followed by "." and its index from 0. `names` is not used.
    /// Kept: a shorter array set over a longer one leaves the elements beyond its own.
    void set_array(strings::ustring8 const& key, generic::varg_list const& values, generic::varg_list const& names);

    /// Splits text at its first token of the separator kind: the token texts before it are the key, those
    /// after it up to the line's end the value, a ustring8; without the separator the value is empty. Quotes
    /// vanish, and kept: so do all blanks and TABs outside quotes (and line ends in the key), so "A=x y"
    /// gives "A" and "xy".
    static std::pair<strings::ustring8, types::variant> make_key_value(strings::ustring8 const& text,
                                                                       config_token::tok_types separator);

    /// Reads the token at the position and moves the position behind it. Returns its kind, which is T_END
    /// (5) at the text's end, beyond it, and beyond 4294967295 bytes; the token's text, start and end are
    /// left as they are then. A run of blanks leaves the text as it is, too.
    ///
    /// A string goes from a double quote to the next one or to the text's end; a backslash and the byte
    /// after it are kept both, so that an escaped quote does not end it.
    ///
    /// Kept: "*/" gives a token of kind 24, but 16 (T_FSFS) is returned.
    static unsigned int get_token(strings::ustring8 const& text, unsigned int& position, config_token& token);

    /// Writes "object : ", the id, a rule, the tree at depth 1 and "end", for diagnostics.
    void dump(std::ostream& stream) const;

protected:
    /// A source without entries.
    explicit base_config_item(strings::ustring8 const& id);
    base_config_item(base_config_item const&);

    base_config_item& operator=(base_config_item const& other) { return assign(other); }
    /// Copies id and tree; who holds the item stays as it is.
    base_config_item& assign(base_config_item const& other);

    /// The tree for a source to fill.
    config_tree& own_tree() noexcept { return m_tree; }

private:
    strings::ustring8 m_id;
    config_tree m_tree;
};

/// dump.
ZOLT_API std::ostream& operator<<(std::ostream& stream, base_config_item const& item);

} // namespace ZOLT_2_18::config

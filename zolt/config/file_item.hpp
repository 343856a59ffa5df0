// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// file_item: a configuration file as a configuration source.
//
//     # where to listen
//     [net]
//     port = 80
//     banner = "hello world"          # blanks outside quotes vanish
//     hosts[] = alpha, beta,          // a comma at the end goes on in the next line
//               gamma
//
//     config::file_item item("tool.cfg");
//     item.load();
//     item.get_value("net.port")->second.as_int();    // 80
//     item.set("net.port", 8080, 0);
//     item.save();
//
// Values are text of type ustring8. docs/formats/configuration.md describes the format for those who write such
// files. Neither loading nor saving throws for what a file holds or for a file that is not there.
#pragma once

#include <zolt/config/base_config_item.hpp>
#include <zolt/export.hpp>

#include <vector>

namespace ZOLT_2_18::config {

class ZOLT_API file_item : public base_config_item {
public:
    /// The name may be empty; load(others) can find another one.
    explicit file_item(strings::ustring8 const& file_name);
    file_item(file_item const&);
    ~file_item() override;

    file_item& operator=(file_item const& other) { return assign(other); }
    file_item& assign(file_item const& other);

    /// The name given, until load(others) finds another one.
    strings::ustring8 const& get_filename() const noexcept { return m_file_name; }

    /// Chooses the file and reads it. From now on the file name is the first of these that can be opened:
    ///  - the value of "cfg_file" in each source that has one, front to back;
    ///  - the item's own name unless it is empty, whether it can be opened or not;
    ///  - the value of "application.name.raw" unless it is empty, followed by ".cfg", in each source.
    /// A directory cannot be opened. Returns what load() returns.
    /// Kept: this item is one of the sources, so a "cfg_file" in the file redirects the next load.
    bool load(item_list const& others) override;

    /// Reads the file: true, or false when it cannot be opened or is too large for a string, which leaves
    /// the tree as it is. Each entry of the file replaces one of the same key. Any text is valid.
    bool load() override;

    /// Replaces the file by a line for each entry of the tree, keys in full, so that loading it into an empty
    /// item gives the same keys and texts. Comments and sections of the old file are lost, and so are the
    /// entries that unsaved() tells. Values are saved as text, kinds other than an array's as 0.
    ///
    /// Does nothing while the tree is empty and no load has succeeded, so that what could not be read is
    /// not wiped out; nor when the text would exceed 2147483647 bytes, which could not be loaded again. A
    /// file that cannot be written is not reported.
    void save(item_list const& others) override;
    void save() override;

    /// The keys of the entries that save() leaves out because no line would bring them back, in full and in
    /// the order of the tree. These are
    ///  - a value with a double quote that has no backslash before it, a key with any double quote;
    ///  - an empty or nil value;
    ///  - an array without elements, one whose last element is empty, one with an element that cannot be
    ///    saved, one whose head has a value of its own, and one whose key has several components and an
    ///    empty last one. Such an array is left out with all its elements; the one key stands for them.
    /// The elements of an array go as far as the first index without a value of its own. What comes after
    /// that is saved, or listed here, under its own key.
    std::vector<strings::ustring8> unsaved() const;

    /// Empties the tree. Kept: a save after that empties the file if it was loaded before.
    void unload() override;
    file_item* clone() const override;

private:
    /// Stores what the text assigns if it is one that was read; returns `was_read`.
    bool take(strings::ustring8 const& text, bool was_read);

    strings::ustring8 m_file_name;
    bool m_was_loaded = false; ///< some load has succeeded
};

} // namespace ZOLT_2_18::config

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// enviroment_item: an environment block as a configuration source. The spelling of its name and of its id,
// "enviroment", is part of the interface.
//
// Each entry NAME=value is split by base_config_item::make_key_value, so quotes and, outside of them, blanks
// vanish from the value: "A=x y" gives "xy". The name is the key as it is, a path if it holds separators; an
// entry without "=" is a key with an empty value. The last of several entries with the same key wins.
#pragma once

#include <zolt/config/base_config_item.hpp>
#include <zolt/export.hpp>

namespace ZOLT_2_18::config {

class ZOLT_API enviroment_item : public base_config_item {
public:
    /// Takes a list that ends in a null pointer, or null for none; the process's own environment is not
    /// read. The caller keeps the strings alive while the item can still load.
    explicit enviroment_item(char const* const* envp);
    enviroment_item(enviroment_item const&);
    ~enviroment_item() override;

    enviroment_item& operator=(enviroment_item const& other) { return assign(other); }
    enviroment_item& assign(enviroment_item const& other);

    /// The list as it was given.
    char const* const* get_envp() const noexcept { return m_envp; }

    /// Returns true.
    bool load(item_list const& others) override;
    bool load() override;
    void unload() override;
    enviroment_item* clone() const override;

private:
    char const* const* m_envp;
};

} // namespace ZOLT_2_18::config

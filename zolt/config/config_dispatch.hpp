// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// config_dispatch: which sources a config_manager has, and in which order they are asked.
//
// A dispatcher is a recipe: it holds no sources, it makes them when a manager is initialised with it.
// std_config_dispatch is for a program with one configuration file, module_config_dispatch for a set of
// modules with a file each. For another order or other sources derive from config_dispatch:
//
//     struct fixed_dispatch : config::config_dispatch {
//         void setup(item_list& items) const override {
//             items.push_back(memory::pointers::make_rc<config::user_item>());
//             items.push_back(memory::pointers::make_rc<config::file_item>("fixed.cfg"));
//         }
//         config_dispatch* clone() const override { return new fixed_dispatch(*this); }
//     };
#pragma once

#include <zolt/config/base_config_item.hpp>
#include <zolt/export.hpp>
#include <zolt/generic/abilities.hpp>
#include <zolt/generic/varg_list.hpp>
#include <zolt/strings/ustring.hpp>

#include <vector>

namespace ZOLT_2_18::config {

/// Abstract. The order of the virtual operations is part of the binary interface.
class ZOLT_API config_dispatch : public generic::abilities::clone_ability {
public:
    /// Sources in order of precedence.
    using item_list = base_config_item::item_list;

    config_dispatch() noexcept;
    config_dispatch(config_dispatch const&) noexcept;
    config_dispatch& operator=(config_dispatch const&) noexcept = default;
    ~config_dispatch() override;

    /// Makes the sources and appends them to the list, the one that is asked first in front. Nothing is
    /// loaded.
    virtual void setup(item_list& items) const = 0;
    /// Each of these walks the list front to back. Loading and saving hand the whole list to each source.
    virtual void load(item_list& items) const;
    virtual void unload(item_list& items) const;
    virtual void save(item_list& items) const;
    /// A new copy, for the caller to delete.
    virtual config_dispatch* clone() const = 0;
};

/// Command line, configuration file, environment: each overrides those after it. The command line is loaded
/// before the file, so its "cfg_file" chooses the file; see file_item.
class ZOLT_API std_config_dispatch : public config_dispatch {
public:
    /// No arguments, no environment and no file name.
    std_config_dispatch();
    /// The caller keeps the arguments and the environment alive while sources can still load. A negative argc
    /// counts as 0. The second name is kept and copied, but nothing uses it.
    std_config_dispatch(int argc, char const* const* argv, char const* const* envp,
                        strings::ustring8 const& file_name, strings::ustring8 const& second_name);
    std_config_dispatch(std_config_dispatch const&);
    ~std_config_dispatch() override;

    std_config_dispatch& operator=(std_config_dispatch const& other) { return assign(other); }
    std_config_dispatch& assign(std_config_dispatch const& other);

    /// What the constructor was given.
    int get_argc() const noexcept { return m_argc; }
    char const* const* get_argv() const noexcept { return m_argv; }
    char const* const* get_envp() const noexcept { return m_envp; }
    strings::ustring8 const& get_filename() const noexcept { return m_file_name; }
    strings::ustring8 const& get_second_name() const noexcept { return m_second_name; }

    void setup(item_list& items) const override;
    std_config_dispatch* clone() const override;

private:
    int m_argc = 0;
    char const* const* m_argv = nullptr;
    char const* const* m_envp = nullptr;
    strings::ustring8 m_file_name;
    strings::ustring8 m_second_name;
};

/// What the application sets, the modules' files in the given order, environment: each overrides those
/// after it.
class ZOLT_API module_config_dispatch : public config_dispatch {
public:
    /// The values of the list, as text, are the names of the files. The caller keeps the environment alive
    /// while sources can still load.
    module_config_dispatch(generic::varg_list const& file_names, char const* const* envp);
    module_config_dispatch(module_config_dispatch const&);
    ~module_config_dispatch() override;

    module_config_dispatch& operator=(module_config_dispatch const& other) { return assign(other); }
    module_config_dispatch& assign(module_config_dispatch const& other);

    /// What the constructor was given, the values as text.
    std::vector<strings::ustring8> const& get_filenames() const noexcept { return m_file_names; }
    char const* const* get_envp() const noexcept { return m_envp; }

    void setup(item_list& items) const override;
    module_config_dispatch* clone() const override;

private:
    std::vector<strings::ustring8> m_file_names;
    char const* const* m_envp;
};

} // namespace ZOLT_2_18::config

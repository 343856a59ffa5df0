// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/config/config_dispatch.hpp>

#include <zolt/config/commandline_item.hpp>
#include <zolt/config/enviroment_item.hpp>
#include <zolt/config/file_item.hpp>
#include <zolt/config/user_item.hpp>

#include <algorithm>

namespace ZOLT_2_18::config {
namespace {

using strings::ustring8;
using item_list = config_dispatch::item_list;

void append_clone(item_list& items, base_config_item const& item) {
    item_list::value_type const clone(item.clone()); // owned before the list allocates
    items.push_back(clone);
}

} // namespace

config_dispatch::config_dispatch() noexcept = default;
config_dispatch::config_dispatch(config_dispatch const&) noexcept = default;
config_dispatch::~config_dispatch() = default;

void config_dispatch::load(item_list& items) const {
    for (auto const& item : items) {
        if (item) item->load(items);
    }
}

void config_dispatch::unload(item_list& items) const {
    for (auto const& item : items) {
        if (item) item->unload();
    }
}

void config_dispatch::save(item_list& items) const {
    for (auto const& item : items) {
        if (item) item->save(items);
    }
}

std_config_dispatch::std_config_dispatch() = default;

std_config_dispatch::std_config_dispatch(int argc, char const* const* argv, char const* const* envp,
                                         ustring8 const& file_name, ustring8 const& second_name)
    : m_argc(argc), m_argv(argv), m_envp(envp), m_file_name(file_name), m_second_name(second_name) {}

std_config_dispatch::std_config_dispatch(std_config_dispatch const&) = default;
std_config_dispatch::~std_config_dispatch() = default;

std_config_dispatch& std_config_dispatch::assign(std_config_dispatch const& other) {
    ustring8 file_name = other.m_file_name;
    m_second_name = other.m_second_name;
    m_file_name.swap(file_name);
    m_argc = other.m_argc;
    m_argv = other.m_argv;
    m_envp = other.m_envp;
    return *this;
}

void std_config_dispatch::setup(item_list& items) const {
    append_clone(items, commandline_item(static_cast<unsigned int>(std::max(m_argc, 0)), m_argv));
    append_clone(items, file_item(m_file_name));
    append_clone(items, enviroment_item(m_envp));
}

std_config_dispatch* std_config_dispatch::clone() const { return new std_config_dispatch(*this); }

module_config_dispatch::module_config_dispatch(generic::varg_list const& file_names, char const* const* envp)
    : m_envp(envp) {
    for (generic::argument const& name : file_names) m_file_names.push_back(name.value().as_utf8());
}

module_config_dispatch::module_config_dispatch(module_config_dispatch const&) = default;
module_config_dispatch::~module_config_dispatch() = default;

module_config_dispatch& module_config_dispatch::assign(module_config_dispatch const& other) {
    std::vector<ustring8> file_names = other.m_file_names;
    m_file_names.swap(file_names);
    m_envp = other.m_envp;
    return *this;
}

void module_config_dispatch::setup(item_list& items) const {
    append_clone(items, user_item());
    for (ustring8 const& name : m_file_names) append_clone(items, file_item(name));
    append_clone(items, enviroment_item(m_envp));
}

module_config_dispatch* module_config_dispatch::clone() const { return new module_config_dispatch(*this); }

} // namespace ZOLT_2_18::config

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/config/enviroment_item.hpp>

namespace ZOLT_2_18::config {

enviroment_item::enviroment_item(char const* const* envp) : base_config_item("enviroment"), m_envp(envp) {}
enviroment_item::enviroment_item(enviroment_item const&) = default;
enviroment_item::~enviroment_item() = default;

enviroment_item& enviroment_item::assign(enviroment_item const& other) {
    base_config_item::assign(other);
    m_envp = other.m_envp;
    return *this;
}

bool enviroment_item::load(item_list const&) { return load(); }

bool enviroment_item::load() {
    if (!m_envp) return true;
    for (char const* const* entry = m_envp; *entry; ++entry) set(*entry, 0);
    return true;
}

void enviroment_item::unload() { own_tree().erase(); }

enviroment_item* enviroment_item::clone() const {
    auto* const copy = new enviroment_item(*this);
    copy->heap_allocated = true;
    return copy;
}

} // namespace ZOLT_2_18::config

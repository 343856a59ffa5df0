// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/config/user_item.hpp>

namespace ZOLT_2_18::config {

user_item::user_item() : base_config_item("user item") {}
user_item::user_item(user_item const&) = default;
user_item::~user_item() = default;

user_item& user_item::assign(user_item const& other) {
    base_config_item::assign(other);
    return *this;
}

user_item* user_item::clone() const {
    auto* const copy = new user_item(*this);
    copy->heap_allocated = true;
    return copy;
}

} // namespace ZOLT_2_18::config

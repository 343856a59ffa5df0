// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// user_item: a configuration source for what the application sets itself. It loads and saves nothing.
#pragma once

#include <zolt/config/base_config_item.hpp>
#include <zolt/export.hpp>

namespace ZOLT_2_18::config {

class ZOLT_API user_item : public base_config_item {
public:
    user_item();
    user_item(user_item const&);
    ~user_item() override;

    user_item& operator=(user_item const& other) { return assign(other); }
    user_item& assign(user_item const& other);

    user_item* clone() const override;
};

} // namespace ZOLT_2_18::config

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The tokenizer behind base_config_item::get_token, which describes it.
#pragma once

#include <zolt/config/config_token.hpp>

namespace ZOLT_2_18::config::_private {

unsigned int read_token(strings::ustring8 const& text, unsigned int& position, config_token& token);

} // namespace ZOLT_2_18::config::_private

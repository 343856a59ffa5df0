// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The grammar of configuration files, which docs/formats/configuration.md describes for their authors.
#pragma once

#include <zolt/config/config_tree.hpp>
#include <zolt/strings/ustring.hpp>

namespace ZOLT_2_18::config::_private {

/// Stores in the tree what the text assigns. Every text is one of this grammar: a statement without "="
/// assigns nothing.
void read_config_text(strings::ustring8 const& text, config_tree& tree);

} // namespace ZOLT_2_18::config::_private

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The text of a configuration file from a tree: what config_file_reader_private.hpp reads, the other way.
#pragma once

#include <zolt/config/config_tree.hpp>
#include <zolt/strings/ustring.hpp>

#include <optional>
#include <vector>

namespace ZOLT_2_18::config::_private {

/// A line for every entry below the tree's root that a line can hold, in the order of the tree. Nothing
/// when the text would have more bytes than system::load_file takes.
std::optional<strings::ustring8> write_config_text(config_tree const& tree);

/// The keys of the entries that write_config_text leaves out, in the order of the tree.
std::vector<strings::ustring8> unwritable_keys(config_tree const& tree);

} // namespace ZOLT_2_18::config::_private

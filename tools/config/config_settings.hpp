// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// What an application gets from its configuration: the three sources of config::std_config_dispatch, and
// the settings that remain when each hides those after it.
#pragma once

#include "tools/program/library.hpp"

#include <zolt/config/base_config_item.hpp>
#include <zolt/config/config_manager.hpp>

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace tools {

struct source_options {
    std::optional<ustring8> file;
    bool has_environment = false;      ///< that of this process
    std::vector<ustring8> arguments{}; ///< of the application's command line, without its name
};

/// In order of precedence.
enum config_source : std::size_t { command_line_source, file_source, environment_source, source_count };

/// A value, or an array that stands for its elements.
struct setting {
    ustring8 key;
    std::size_t source;
    bool is_array;
    std::vector<ustring8> values;    ///< one unless it is an array
    bool is_overridden;              ///< hidden by a source before
    std::vector<ustring8> indices{}; ///< of an array's values; there may be gaps
    std::size_t line = 0;            ///< of a statement in the file that others there override
};

enum class shown_settings { effective, all };

class config_settings {
public:
    /// Loads the sources. Keeps a reference to the options.
    explicit config_settings(source_options const& options);

    zolt::config::config_manager const& manager() const { return m_manager; }
    /// The file that was chosen; empty when there is none.
    ustring8 file_name() const;
    /// False when there is a chosen file, but it could not be read.
    bool is_file_read() const { return m_is_file_read; }
    /// What the library has to say about arguments that it does not take; else empty.
    ustring8 const& warnings() const { return m_warnings; }

    /// Calls `visit` for every setting, sorted by its key's components; of one key the one that counts comes
    /// first. An array hides arrays of the same key in later sources, and so does a value.
    void for_each(shown_settings shown, std::function<void(setting const&)> const& visit) const;

private:
    std::vector<char const*> m_arguments;
    zolt::config::config_manager m_manager;
    zolt::config::base_config_item::item_list m_items;
    ustring8 m_warnings;
    bool m_is_file_read = true;
};

} // namespace tools

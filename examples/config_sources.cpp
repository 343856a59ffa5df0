// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Takes settings from the command line, a file and the environment, and tells where each comes from:
//
//     TIDEMARK_ZONE=UTC config_sources -cfg_file=examples/config/tidemark.cfg -backup.level=3
#include <zolt/config/config_dispatch.hpp>
#include <zolt/config/config_manager.hpp>
#include <zolt/zolt.hpp>

#include <iostream>
#include <vector>

namespace {

using zolt::config::config_manager;
using zolt::strings::ustring8;
using zolt::types::variant;

// The sources by their ids, in the order in which they are asked.
ustring8 source_of(config_manager const& settings, ustring8 const& key) {
    for (char const* const id : {"command line", "standard file", "enviroment"}) {
        auto const source = settings.get_config_item(id);
        if (source && source->get_value(key)) return id;
    }
    return "default";
}

} // namespace

int main(int argc, char** argv, char** envp) {
    config_manager settings;
    settings.init(zolt::config::std_config_dispatch(argc, argv, envp, "tidemark.cfg", ""));
    settings.load();

    for (char const* const key : {"backup.level", "backup.target", "tidemark_zone", "backup.keep"}) {
        variant const value = settings.get_value(key, "7 days");
        std::cout << key << " = " << value.as_string() << " (" << source_of(settings, key) << ")\n";
    }
    std::vector<variant> skipped;
    settings.get_array("backup.skip", skipped);
    std::cout << "skipping";
    for (variant const& pattern : skipped) std::cout << ' ' << pattern.as_string();
    std::cout << '\n';
}

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A little of everything, as a user's program and its modules do it.
#pragma once

#include <zolt/zolt.hpp>

#include <string>

namespace {

/// What the library that this file is compiled for makes of the examples: the same text, whichever it is.
inline std::string use_library(std::string const& examples) {
    std::string text = zolt::types::variant("0x2A").as_string() + ' ';
    text += std::to_string(zolt::types::variant("0x2A").as_int()) + ' ';

    zolt::i18n::message_catalogs catalogs;
    catalogs.load((examples + "/catalogs/tidemark.xmc").c_str(), "de_DE.UTF-8");
    zolt::generic::varg_list const arguments(zolt::generic::argument("size", 5368709120LL),
                                             zolt::generic::argument("elapsed", 3725.0),
                                             zolt::generic::argument("wait", 86400.0));
    text += catalogs.message("tidemark", "run.finished").as_string(arguments) + ' ';

    zolt::config::config_manager settings;
    settings.init(zolt::config::std_config_dispatch(0, nullptr, nullptr, examples + "/config/tidemark.cfg", ""));
    settings.load();
    return text + settings.get_value("backup.level", zolt::types::nil).as_string();
}

} // namespace

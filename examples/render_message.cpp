// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Loads a catalog for a language and renders one of its messages with typed arguments:
//
//     render_message examples/catalogs/tidemark.xmc de_DE.UTF-8
#include <zolt/i18n/message_catalogs.hpp>
#include <zolt/zolt.hpp>

#include <iostream>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: render_message CATALOG LANGUAGE\n";
        return 2;
    }
    zolt::i18n::message_catalogs catalogs;
    auto const result = catalogs.load(argv[1], argv[2]);
    if (result.code() != zolt::i18n::message_catalogs::no_error) {
        std::cerr << result.message() << '\n';
        return 1;
    }
    using zolt::generic::argument;
    zolt::generic::varg_list const arguments(argument("size", 5368709120LL), argument("elapsed", 3725.0),
                                             argument("wait", 86400.0));
    std::cout << catalogs.message("tidemark", "run.finished").as_string(arguments) << '\n';
    std::cout << catalogs.message("tidemark", "run.started").as_string(zolt::generic::varg_list()) << '\n';
}

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0

#include <zolt/zolt.hpp>
#include <iostream>

int main(int argc, char** argv) {
    using zolt::generic::argument;
    zolt::i18n::message_catalogs catalogs;
    auto const result = catalogs.load("app.xmc", argc > 1 ? argv[1] : "en");
    if (result.code() != zolt::i18n::message_catalogs::no_error) std::cerr << result.message() << '\n';
    zolt::generic::varg_list const arguments(argument("size", 5368709120LL), argument("t", 93784.5));
    std::cout << catalogs.message("app", "saved").as_string(arguments) << '\n';
}

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Loads all catalogs below a directory for the user's language, and tells in which language each text comes:
//
//     LC_ALL=de_AT.UTF-8@euro choose_language examples/catalogs
#include <zolt/i18n/message_catalogs.hpp>
#include <zolt/zolt.hpp>

#include <cstdlib>
#include <iostream>

namespace {

using zolt::strings::ustring8;

// The first of these that says something decides. What stands behind "@" is no part of a catalog's language.
ustring8 language_of_user() {
    for (char const* const name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        char const* const value = std::getenv(name);
        ustring8 const id = value ? value : "";
        if (!id.empty()) return id.substr(0, id.find('@'));
    }
    return "en";
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: choose_language DIRECTORY\n";
        return 2;
    }
    zolt::i18n::message_catalogs catalogs;
    auto const result = catalogs.load(argv[1], language_of_user());
    if (result.code() != zolt::i18n::message_catalogs::no_error) std::cerr << result.message() << '\n';

    using zolt::generic::argument;
    zolt::generic::varg_list const arguments(argument("files", 12345), argument("folders", 67));
    for (char const* const name : {"run.found", "run.lost"}) {
        auto const& message = catalogs.message("tidemark", name);
        bool const is_there = catalogs.has_message("tidemark", name);
        std::cout << name << " (" << (is_there ? message._orginal_locale() : "nowhere")
                  << "): " << message.as_string(arguments) << '\n';
    }
}

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Any bytes as a catalog file: load, merge, render every message without arguments.
#include <zolt/i18n/_private/xmc_file_loader.hpp>
#include <zolt/i18n/catalog.hpp>
#include <zolt/zolt.hpp>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    zolt::i18n::_private::xmc_file_loader loader;
    loader.handle_language("de_DE");
    zolt::strings::ustring8 const text(reinterpret_cast<char const*>(data), size);
    loader.parse_string(text, "fuzz.xmc");
    zolt::i18n::message_catalogs::catalog_map catalogs;
    loader.combine_data(catalogs);
    for (auto const& [name, catalog] : catalogs) {
        for (auto const& [message_name, message] : *catalog) message.as_utf8(message.arguments());
    }
    return 0;
}

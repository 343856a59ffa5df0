// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Catalog files for the tests, written below a directory that goes when the test ends.
#pragma once

#include <zolt/i18n/message.hpp>
#include <zolt/strings/ustring.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace catalog_files {

using ZOLT_2_18::strings::ustring8;

class temporary_directory {
public:
    temporary_directory() {
        char name[] = "/tmp/zolt_catalogs_XXXXXX";
        m_path = ::mkdtemp(name);
    }
    ~temporary_directory() { std::filesystem::remove_all(m_path); }

    ustring8 path(std::string const& name) const { return ustring8(m_path + "/" + name); }

    ustring8 write(std::string const& name, std::string const& text) const {
        std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
        std::ofstream(path(name), std::ios::binary) << text;
        return path(name);
    }

private:
    std::string m_path;
};

inline std::string document(std::string const& elements) {
    return "<?xml version='1.0'?>\n<xmc version='1.1'>" + elements + "</xmc>\n";
}

/// A catalog of one message "m", or of the elements given.
inline std::string catalog(std::string const& name, std::string const& lang, std::string const& content) {
    bool const is_text = content.find('<') == std::string::npos;
    return "<catalog name='" + name + "' lang='" + lang + "'>" +
           (is_text ? "<msg name='m'>" + content + "</msg>" : content) + "</catalog>";
}

/// The items of a message: texts in quotes, arguments as {type:data} with "|" for U+0001.
inline std::string items_of(ZOLT_2_18::i18n::message_t const& message) {
    std::string text;
    for (auto const& item : message) {
        std::string data = item.data();
        for (char& c : data) c = c == '\1' ? '|' : c;
        text += item.type() == 0 ? "'" + data + "'" : "{" + std::to_string(item.type()) + ":" + data + "}";
    }
    return text;
}

} // namespace catalog_files

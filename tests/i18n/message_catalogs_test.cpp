// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/i18n/message_catalogs.hpp>

#include "catalog_files.hpp"

#include <zolt/generic/varg_list.hpp>
#include <zolt/strings/unicode.hpp>
#include <zolt/system/io.hpp>

#include <gtest/gtest.h>

#include <iterator>
#include <string>

namespace {

using namespace ZOLT_2_18;
using namespace catalog_files;
using i18n::message_catalogs;
using load_error = i18n::_private::xmc_file_loader::load_error;
using result_type = message_catalogs::result_type;

std::string const prefix = "message_catalogs::result_type - ";

// Made while the static objects of all sources are made.
bool const nil_objects_were_ready = message_catalogs::s_nil_catalog == types::nil &&
                                    message_catalogs::s_nil_message == types::nil &&
                                    &message_catalogs().message("c", "m") == &message_catalogs::s_nil_message;

// The texts of codes 0, 1, 4 and 5 are met below.
TEST(message_catalogs, result_texts) {
    EXPECT_EQ(result_type(message_catalogs::file_not_found, "p").message(),
              prefix + "File \"p\" was not found on disk");
    EXPECT_EQ(result_type(message_catalogs::xml_parse_error, "p").message(),
              "unknown, or unhandle case happened! 6 str data=p");
    struct {
        unsigned int first, last; // of the loader's codes
        unsigned int code;
        char const* text;
    } const rows[] = {{0, 0, 0, "No Error\n "},
                      {1, 1, 1, "No catalog was loaded\n "},
                      {2, 2, 2, "Default locale lookup not supported yet\n "},
                      {3, 3, 3, "File was not found on disk\n "},
                      {4, 4, 6, "XML parse error, XML file not well formed\n "},
                      {5, 13, 7, "XMC file is not valid\n "},
                      {14, 14, 8, "Unexpected error happened during loading\n "},
                      {15, 16, 8, "Unhandled case\n "}};
    for (auto const& r : rows) {
        for (unsigned int code = r.first; code <= r.last; ++code) {
            load_error const fault(static_cast<i18n::_private::xmc_file_loader::error_type>(code), "p");
            EXPECT_EQ(result_type(fault).code(), r.code) << code;
            EXPECT_EQ(result_type(fault).message(), prefix + r.text + fault.message());
        }
    }
}

TEST(message_catalogs, nothing_there) {
    EXPECT_TRUE(nil_objects_were_ready);
    message_catalogs const catalogs;
    EXPECT_TRUE(catalogs == types::nil);
    EXPECT_EQ(&catalogs.catalog("c"), &message_catalogs::s_nil_catalog);
    EXPECT_FALSE(catalogs.has_catalog("c") || catalogs.has_catalog("c", "en") || catalogs.has_message("c", "m"));
    EXPECT_TRUE(catalogs.begin() == catalogs.end() && catalogs.begin("c") == catalogs.end("c"));
}

TEST(message_catalogs, loads_and_renders) {
    temporary_directory files;
    std::string const loaded = "<msg name='m'>Geladen: <arg name='n' type='int'/></msg><msg name='e'/>";
    ustring8 const path = files.write("a", document(catalog("app", "de_DE", loaded) + catalog("other", "en", "y")));
    message_catalogs catalogs;
    EXPECT_EQ(catalogs.load(path, "de-DE.UTF-8").code(), 0u);
    EXPECT_EQ(catalogs.message("app", "m").as_utf8(generic::varg_list(generic::argument("n", 5))), "Geladen: 5");
    EXPECT_EQ(&catalogs.message("app", "missing"), &i18n::catalog_t::m_nil_message);
    EXPECT_TRUE(catalogs.count() == 2 && catalogs.size("app") == 2 && catalogs.begin()->second->name() == "app");
    EXPECT_TRUE(catalogs.has_catalog("app", "de-DE") && !catalogs.has_catalog("app", "en"));

    message_catalogs only;
    EXPECT_EQ(only.load(path, "").code(), message_catalogs::default_locale_unsupported);
    EXPECT_EQ(only.load(path, "fr", "app").message(), prefix + "No catalog was loaded in file: \"" + path + "\"");
    EXPECT_EQ(only.load(path, "", "other").code(), 0u) << "the form with a filter takes an empty language";
    EXPECT_TRUE(only.count() == 1 && only.has_message("other", "m"));
    EXPECT_EQ(only.load(path, "fr", "app").code(), 0u) << "not empty any more";
}

TEST(message_catalogs, later_loads_merge) {
    char const* const rows[][3] = {{"en", "1", "'1'"}, {"de", "2", "'2'"}, {"en", "3", "'2'"}, {"de", "4", "'4'"}};
    temporary_directory files;
    message_catalogs catalogs;
    ustring8 const bad = files.write("bad", document(catalog("app", "de", "bad") + "<x/>"));
    for (auto const& [lang, text, result] : rows) {
        EXPECT_EQ(catalogs.load(files.write("f", document(catalog("app", lang, text))), "de").code(), 0u);
        EXPECT_EQ(catalogs.load(bad, "de").code(), message_catalogs::xmc_not_valid);
        EXPECT_EQ(items_of(catalogs.message("app", "m")), result);
        EXPECT_EQ(catalogs.has_catalog("app", "en"), text[0] == '1') << "the list of languages follows";
    }
}

TEST(message_catalogs, paths) {
    temporary_directory files;
    ustring8 const none = files.path("none"), empty = files.path("empty");
    std::filesystem::create_directory(files.path("empty"));
    std::string const not_found = none + "\" was not found on disk";
    message_catalogs catalogs;
    EXPECT_EQ(catalogs.load(none, "en").message(), prefix + "Entity (file or directory) \"" + not_found);
    EXPECT_EQ(catalogs.load(empty + std::string("\0", 1), "en").code(), message_catalogs::entity_not_found);
    EXPECT_EQ(catalogs.load_directory(none, "en").message(), prefix + "Directory \"" + not_found);
    EXPECT_EQ(catalogs.load_directory(empty, "en").message(), prefix + "No Error");
    EXPECT_EQ(catalogs.load(empty, "en").message(), prefix + "No catalog was loaded in file: \"" + empty + "\"");
}

TEST(message_catalogs, directories) {
    temporary_directory files;
    std::string deep = "deep";
    while (deep.size() < 1000) deep += "/d";
    std::string const names[] = {"A.XMC", "b.xml", "sub/.xmc", deep + "/e.xmc", "c.txt", "d_xmc"};
    for (std::string const& name : names) {
        files.write(name, document(catalog(name.substr(name.size() - 5), "en", "x")));
    }
    std::filesystem::create_directory_symlink(files.path(""), files.path("sub/loop"));
    std::filesystem::create_symlink(files.path("none"), files.path("broken.xmc"));
    message_catalogs catalogs;
    EXPECT_EQ(catalogs.load(files.path(""), "en").message(), prefix + "No Error");
    std::string read;
    for (auto const& [name, held] : catalogs) read += name + " ";
    EXPECT_EQ(read, "/.xmc A.XMC b.xml e.xmc ");
    EXPECT_EQ(message_catalogs().load_directory(files.path(""), "", "b.xml").code(), 0u);
    EXPECT_EQ(message_catalogs().load_directory(files.path(""), "").code(), 2u);
    ustring8 const bad = files.write("sub/bad.xml", document("<x/>"));
    EXPECT_TRUE(catalogs.load(files.path("sub"), "en").message().ends_with("\"x\"\n in file: \"" + bad + "\""));
}

TEST(message_catalogs, many_links_to_one_directory) {
    temporary_directory files;
    files.write("linked/f.xmc", document(catalog("app", "en", "1")));
    std::filesystem::create_directory(files.path("many"));
    for (char const name : std::string("abcdefghijk")) {
        if (name == 'f') {
            files.write("many/f/f.xmc", document(catalog("app", "en", "2")));
        } else {
            std::filesystem::create_directory_symlink(files.path("linked"), files.path("many") + "/" + name);
        }
    }
    message_catalogs catalogs;
    EXPECT_EQ(catalogs.load(files.path("many"), "en").code(), 0u);
    // The linked one is read when it is met first, so that the later links bring its text not back.
    bool const links_come_last = system::list_directory(files.path("many")).front().ends_with("/f");
    EXPECT_EQ(items_of(catalogs.message("app", "m")), links_come_last ? "'1'" : "'2'");
}

TEST(message_catalogs, copies_are_deep) {
    temporary_directory files;
    message_catalogs original;
    original.load(files.write("f", document(catalog("app", "en", "1"))), "en");
    message_catalogs copy(original);
    original.load(files.write("f", document(catalog("app", "en", "2"))), "en");
    EXPECT_EQ(items_of(copy.message("app", "m")), "'1'");
    copy = *&copy;
    copy = original;
    EXPECT_EQ(items_of(copy.message("app", "m")), "'2'");
    auto const shared = original.begin()->second;
    original.erase("none");
    original.erase(original.begin()->first);
    EXPECT_TRUE(original == types::nil && shared->size() == 1) << "lives on where it is shared";
    message_catalogs moved(std::move(copy));
    moved = std::move(*&moved);
    copy = moved;
    moved.erase();
    EXPECT_TRUE(moved == types::nil && copy != types::nil);
    EXPECT_TRUE((copy = types::nil) == types::nil && message_catalogs(types::nil) == types::nil);
}

template <typename Convert>
void expect_every_operation(Convert convert) {
    temporary_directory files;
    auto const path = convert(files.write("\xC3\xA4/f.xmc", document(catalog("\xE2\x82\xAC", "de", "x"))));
    auto const directory = convert(files.path("\xC3\xA4")), lang = convert("de");
    auto const app = convert("\xE2\x82\xAC"), m = convert("m");
    message_catalogs catalogs;
    EXPECT_EQ(catalogs.load(path, lang).code() + catalogs.load(path, lang, app).code(), 0u);
    EXPECT_EQ(catalogs.load_file(path, lang).code() + catalogs.load_file(path, lang, app).code(), 0u);
    EXPECT_EQ(catalogs.load_directory(directory, lang).code(), 0u);
    EXPECT_EQ(catalogs.load_directory(directory, lang, app).code(), 0u);
    EXPECT_TRUE(catalogs.has_catalog(app) && catalogs.has_catalog(app, lang) && catalogs.has_message(app, m));
    EXPECT_EQ(items_of(catalogs.message(app, m)), "'x'");
    EXPECT_EQ(catalogs.catalog(app).size() + catalogs.count(app) + catalogs.size(app), 3u);
    EXPECT_TRUE(std::next(catalogs.begin(app)) == catalogs.end(app));
    catalogs.erase(app);
    EXPECT_EQ(catalogs.count(), 0u);
}

TEST(message_catalogs, three_string_forms) {
    expect_every_operation(strings::utf8_to_utf16);
    expect_every_operation(strings::utf8_to_utf32);
    message_catalogs catalogs; // literals pick the form of their own width
    EXPECT_EQ(catalogs.load(std::string("/no"), "en", "c").code() + catalogs.load(L"/no", L"en").code(), 10u);
    EXPECT_FALSE(catalogs.has_message(L"a", L"b") || catalogs.has_catalog("a"));
}

} // namespace

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/i18n/_private/xmc_file_loader.hpp>

#include "catalog_files.hpp"

#include <zolt/exceptions/exception.hpp>
#include <zolt/i18n/catalog.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace {

using namespace ZOLT_2_18;
using namespace catalog_files;
using loader_t = i18n::_private::xmc_file_loader;
using load_error = loader_t::load_error;
using parse_error = parser::xml_parser::parse_error;

std::string const prefix = "xmc_file_loader::load_error - ";
std::string const header = "<?xml version='1.0'?>";

/// Everything a loader holds, as "catalog.message@language items;".
std::string drain(loader_t& loader) {
    loader_t::catalog_map catalogs;
    loader.combine_data(catalogs);
    std::string text;
    for (auto const& [catalog_name, held] : catalogs) {
        for (auto const& [name, message] : *held) {
            text += catalog_name + "." + name + "@" + message._orginal_locale() + " " + items_of(message) + ";";
        }
    }
    return text;
}

/// What an English load of the file tells, without the prefix of all such texts.
std::string told(ustring8 const& path) { return loader_t().parse(path, "en").message().substr(prefix.size()); }

// The other texts are met in the tables below.
TEST(xmc_load_error, texts) {
    std::string const unknown = "unknown, or unhandle case happened! ";
    auto const text_of = [](unsigned int code) {
        return load_error(static_cast<loader_t::error_type>(code), "v").message();
    };
    EXPECT_EQ(text_of(4), unknown + "4 str data=v");
    EXPECT_EQ(text_of(11), prefix + "Expected arg (argument) end tag not found for argument \"v\"");
    EXPECT_EQ(text_of(15), unknown + "15 str data=v");
    char const* const parse_errors[] = {"Unexpected end of file during XML parsing",
                                        "Mismatched end element \"v\" was found",
                                        "No root element was found",
                                        "Valid XML header not found",
                                        "Unexpected character \"v\" found while parsing",
                                        "Missing \" while parsing attribute \"v\"",
                                        "Unknown enity being parsed",
                                        "Missing = sign for attribute \"v\"",
                                        "attribute \"v\" is being redefined",
                                        "Data found after root element"};
    auto const parse_text_of = [](unsigned int kind) {
        parse_error const fault(static_cast<parse_error::error_type>(kind), 17, "v");
        return load_error(loader_t::xml_parse_error, fault).message();
    };
    unsigned int kind = 0;
    EXPECT_EQ(parse_text_of(kind), prefix + "Unknown Parse error");
    for (ustring8 const text : parse_errors) EXPECT_EQ(parse_text_of(++kind), prefix + text + "\n at line: \"17\"");
    EXPECT_EQ(parse_text_of(++kind), prefix + "Unknown Parse error");
    load_error error(loader_t::no_error, "");
    error.append_error_stack(load_error::at_line, "v");
    error.append_error_stack(static_cast<load_error::append_type>(5), "v");
    EXPECT_EQ(error.message(), prefix + "No Error\n at line: \"v\"\n " + unknown + "5 str data=v");
}

TEST(xmc_file_loader, weighs_locales) {
    std::pair<char const*, std::map<char const*, unsigned int>> const rows[] = {
        {"de-DE.UTF-8", {{".", 1}, {"en", 2}, {"de", 3}, {"de_DE", 4}, {"de.DE", 4}, {"de-DE.UTF", 5}}},
        {"de-DE.UTF-8", {{"de_DE_UTF_8", 6}, {"de_AT", 0}, {"", 0}, {"DE", 0}, {"de_", 0}}},
        {"en_US", {{"en", 2}, {"en-US", 3}, {"US", 0}}},
        {"-", {{"-", 3}, {"_", 0}}}, // one character stays as it is
        {"__de", {{"_", 4}, {"", 0}, {"..de", 5}}},
        {"de_", {{"de", 3}, {"de_", 0}}}, // no part behind the last "_"
    };
    for (auto const& [request, weights] : rows) {
        loader_t loader;
        loader.handle_language(request);
        for (auto const& [locale, weight] : weights) {
            EXPECT_EQ(loader.get_locale_weight(locale), weight) << request << " " << locale;
        }
    }
    loader_t hostile;
    hostile.handle_language(ustring8(1 << 20, '_')); // every prefix of it would fill 512 GiB
    EXPECT_EQ(hostile.get_locale_weight(ustring8(63, '_')), 66u);
    EXPECT_EQ(hostile.get_locale_weight(ustring8(64, '_')), 0u);
}

TEST(xmc_file_loader, types_of_arguments) {
    std::map<char const*, unsigned int> const types = {
        {"value", 0},     {"string", 1}, {"number", 2}, {"int", 3},          {"double", 4},       {"time", 5},
        {"date", 6},      {"memory", 7}, {"mem", 7},    {"mem_unit", 8},     {"memory_unit", 8},  {"metric", 9},
        {"duration", 11}, {"", 1},       {"memo", 1},   {"metric_unit", 10}, {"MetrIc_UNIT", 10}, {"int ", 1}};
    for (auto const& [text, type] : types) EXPECT_EQ(loader_t::parse_message_type(text), type) << text;
}

TEST(xmc_file_loader, content_of_messages) {
    std::pair<std::string, std::string> const rows[] = {
        {"  a   b  <br/> c ", "'a b \n c '"},
        {"  ", ""},
        {"\n\t a&nbsp; b", "'a b'"}, // the blank of a reference stands for the run behind it
        {"&#32; a&lt;&amp;\xC3\xA4", "' a<&\xC3\xA4'"},
        {"<br><!-- c --><!-- d --></br>", "'\n'"},
        {"<!--c-->a<!-- c --> <!-- c -->b", "'a b'"},
        {"a <arg name='n'/> <argument name='m' type='INT'/> ", "'a '{1:n}' '{3:m}' '"},
        {"<arg/><!-- c --> x", "{1:}' x'"},
        {"<arg name='n'/><br/> x", "{1:n}'\n x'"},
        {"<arg name='n' precision='2'/>", "{1:n|precision|2}"},
        {"<arg precision='2' name='n'/>", "{1:n}"},
        {"<arg precision='2' type='double' name='n' fieldsize='' type2='x'/>", "{4:n|fieldsize||type2|x}"},
        {"<arg name='n' type='sometimes'><!-- c --> skipped <!-- c --></arg>!", "{1:n}'!'"},
    };
    for (auto const& [content, items] : rows) {
        loader_t loader;
        loader.handle_language("");
        std::string const text = document(catalog("c", "en", "<msg name='m'>" + content + "</msg>"));
        EXPECT_EQ(loader.parse_string(text, "f").message(), prefix + "No Error") << content;
        EXPECT_EQ(drain(loader), "c.m@en " + items + ";") << content;
    }
}

TEST(xmc_file_loader, structure_and_faults) {
    struct row {
        std::string text;
        unsigned int code;
        std::string message; // without the prefix
        std::string data = {};
    };
    std::string const file = "\"\n in file: \"f\"";
    std::string const in_catalog = "\"\n in catalog element: \"c" + file;
    std::string const message = "\"\n in message element: \"m" + in_catalog;
    std::string const msg_end = "Expected msg (message) end tag not found for message \"m";
    std::string const good = catalog("c", "en", "x");
    std::string const decorated = "\xEF\xBB\xBF" + header + "<!--c--> x<xmc version='1.0'><!--a--><!--b--> x" +
                                  good + "</xmc><!--c-->" + '\0';
    std::string const data = "c.m@en 'x';";
    auto const open = [](std::string const& content) { return document(catalog("c", "en", content)); };
    row const rows[] = {
        // roots
        {"", 4, "Valid XML header not found\n at line: \"0" + file},
        {header, 14, "Unexpected parse error happen!"},
        {header + "\n \n", 7, "Not XMC file, root element is not XMC but \"Value Not Defined" + file},
        {header + "<a/>", 7, "Not XMC file, root element is not XMC but \"a" + file},
        {header + "<xmc><!-- c -->" + good + "</xmc>", 5, "Invalid attibute \"" + file},
        {header + "<xmc lang='1.0'/>", 5, "Invalid attibute \"lang" + file},
        {header + "<xmc version='2.0'/>", 8, "XMC version \"2.0\" is not supported" + file.substr(1)},
        {header + "<xmc version='1.1' x='y'>" + good + "</xmc>", 6, "Invalid element \"y" + file},
        {document("<!-- c --> text <!-- c -->"), 1, "No catalog was loaded in file: \"f\""},
        {decorated, 0, "No Error", data},
        {header + "\n<xmc>\n</b>", 4, "Mismatched end element \"b\" was found\n at line: \"2" + file},
        {document(good + "<x/>"), 6, "Invalid element \"x" + file, data}, // what was read stays
        // catalogs
        {document("<catalog name='c' lang='fr'><x y='z'/><msg><x/></msg></catalog>" + good), 0, "No Error", data},
        {document("<catalog name='c' lang='fr'><catalog/></catalog>"), 6, "Invalid element \"catalog" + file},
        {document("<catalog name='c' id='x'/>"), 5, "Invalid attibute \"id" + file},
        {document("<catalog lang='en' name='c'>a<!--c--> <msg name='m'>x</msg> b</catalog>"), 0, "No Error", data},
        {open("<x/>"), 13, "Expected catalog end tag not found for catalog \"c" + in_catalog},
        // messages
        {open("<msg x='y' name='m'/>"), 5, "Invalid attibute \"x\"\n in message element: \"" + in_catalog},
        {open("<msg name='m'><br x='y'/></msg>"), 5, "Invalid attibute \"x" + message},
        {open("<msg name='m'><br> </br></msg>"), 9, "Expected BR end tag not found" + message.substr(1)},
        {open("<msg name='m'><arg><msg/></arg></msg>"), 10, msg_end + message},
        {open("<msg meta='only'/>"), 0, "No Error", "c.@en ;"},
        {open("<msg/><msg>a</msg><msg>b</msg>"), 0, "No Error", "c.@en 'a';"},
        {open("<msg name='m'>x</msg><msg/>"), 0, "No Error", "c.@en ;" + data},
        // includes that never reach a file
        {document("<include/><include path='x'><!--c--></include> text " + good), 0, "No Error", data},
        {document("<include file=''/>"), 3, "File \"\" was not found on disk" + file.substr(1)},
        {document("<include> </include>"), 12, "Expected \"include\" end tag not found" + file.substr(1)},
    };
    for (row const& r : rows) {
        SCOPED_TRACE(r.text);
        loader_t loader;
        loader.handle_language("en");
        load_error const error = loader.parse_string(r.text, "f");
        EXPECT_EQ(error.code(), r.code);
        EXPECT_EQ(error.message(), prefix + r.message);
        EXPECT_EQ(drain(loader), r.data);
    }
}

TEST(xmc_file_loader, best_language_wins) {
    temporary_directory files;
    ustring8 const path = files.write("f.xmc", document(catalog("a", "en", "1") + catalog("a", "de-DE", "2") +
                                                        catalog("a", "de", "3") + catalog("a", "de.DE", "4") +
                                                        catalog("b", "en", "5") + catalog("b", ".", "6") +
                                                        catalog("c", "fr", "7") + catalog("d", "de", "8")));
    auto const loaded = [&](auto... language_and_filter) {
        loader_t loader;
        EXPECT_EQ(loader.parse(path, language_and_filter...).code(), 0u);
        return drain(loader);
    };
    EXPECT_EQ(loaded("de_DE"), "a.m@de-DE '2';b.m@en '5';d.m@de '8';");
    EXPECT_EQ(loaded("de", "d"), "d.m@de '8';");
    EXPECT_EQ(loaded(), "a.m@en '1';b.m@en '5';");
    EXPECT_EQ(loaded("", "b"), "b.m@en '5';");
    EXPECT_EQ(loader_t().parse(path, "").message(), prefix + "Default locale lookup not supported yet");
}

TEST(xmc_file_loader, merging_lets_a_tie_replace) {
    auto const merge = [](loader_t::catalog_map& catalogs) {
        loader_t loader;
        loader.handle_language("de_DE");
        loader.parse_string(document(catalog("c", "de", "<msg name='m'>new</msg><msg name='n'/>")), "f");
        return loader.combine_data(catalogs);
    };
    for (std::string const lang : {"de", "de_DE", "en", "", "xx"}) { // of the message that is there
        bool const is_replaced = lang != "de_DE";
        loader_t::catalog_map catalogs = {{"c", memory::pointers::make_shared_pointer<i18n::catalog_t>()}};
        i18n::message_t present("m", {{"old"}});
        present._orginal_locale(lang);
        catalogs["c"]->message("m", present);
        EXPECT_EQ(merge(catalogs), is_replaced ? 2u : 1u) << lang;
        EXPECT_EQ(items_of(catalogs["c"]->message("m")), is_replaced ? "'new'" : "'old'") << lang;
    }
    loader_t loader; // here a tie does not
    loader.handle_language("de_DE");
    for (char const* const lang : {"en", "de", "", "de-DE", "de_DE"}) {
        i18n::message_t message("m", {{lang}});
        message._orginal_locale(lang);
        loader.set_message(message, "c");
    }
    EXPECT_EQ(drain(loader), "c.m@de-DE 'de-DE';");
    loader_t::catalog_map with_null = {{"c", nullptr}};
    EXPECT_THROW(merge(with_null), exceptions::runtime_error);
}

TEST(xmc_file_loader, includes) {
    temporary_directory files;
    files.write("sub/deep/1.xmc", document("<include file='../2.xmc'/>" + catalog("1", "en", "x")));
    ustring8 const second = files.write("sub/2.xmc", document(catalog("2", "en", "x")));
    files.write("3.xmc", document(catalog("3", "en", "x")));
    std::string const elements = "<include x='' file='sub/deep/1.xmc' y=''><!--c--></include><include file='" +
                                 second + "'/><include file='3.xmc'/>";
    loader_t loader;
    EXPECT_EQ(loader.parse(files.write("top.xmc", document(elements)), "en").message(), prefix + "No Error");
    EXPECT_EQ(drain(loader), "1.m@en 'x';2.m@en 'x';3.m@en 'x';");

    // The text names the first fault, then what is around it from the inside out.
    ustring8 const outer = files.write("outer.xmc", document("<include file='sub/inner.xmc'>late</include>"));
    ustring8 const inner = files.write("sub/inner.xmc", document(catalog("c", "en", "<msg name='m'><b/></msg>")));
    std::string const in_files = " in file: \"" + inner + "\"\n in file: \"" + outer + "\"";
    EXPECT_EQ(told(outer),
              "Invalid element \"b\"\n in message element: \"m\"\n in catalog element: \"c\"\n" + in_files);
    files.write("sub/inner.xmc", document(""));
    EXPECT_EQ(told(outer), "No catalog was loaded" + in_files);
    files.write("sub/inner.xmc", header);
    EXPECT_EQ(told(outer), "Not XMC file, root element is not XMC but \"Value Not Defined\"\n" + in_files);
    files.write("sub/inner.xmc", document("<catalog/>"));
    EXPECT_EQ(loader.parse(outer, "en").code(), 12u) << "found after the include was read";
}

TEST(xmc_file_loader, paths_that_are_no_files) {
    temporary_directory files;
    ustring8 const good = files.write("good.xmc", document("<catalog/>"));
    ustring8 const paths[] = {files.path("none"), files.path(""), "/dev/zero", "", good + std::string("\0", 1)};
    for (ustring8 const& path : paths) EXPECT_EQ(told(path), "File \"" + path + "\" was not found on disk");
    for (std::string const path : {"/no/x", "\\x", "c:x"}) { // absolute ones
        ustring8 const top = files.write("f.xmc", document("<include file='" + path + "'/>"));
        EXPECT_EQ(told(top), "File \"" + path + "\" was not found on disk\n in file: \"" + top + "\"");
    }
    EXPECT_EQ(loader_t().parse(files.write("f.xmc", document("<include file='good.xmc&#0;'/>")), "en").code(), 3u);
}

TEST(xmc_file_loader, include_cycles_end) {
    temporary_directory files;
    std::string const fault = "Unexpected parse error happen!\n in file: \"";
    ustring8 const self = files.write("self.xmc", document("<include file='self.xmc'/>"));
    EXPECT_EQ(told(self), fault + self + "\"");
    ustring8 const a = files.write("a.xmc", document("<include file='b.xmc'/>"));
    ustring8 const b = files.write("b.xmc", document("<include file='link.xmc'/>"));
    std::filesystem::create_symlink(files.path("a.xmc"), files.path("link.xmc"));
    EXPECT_EQ(told(a), fault + b + "\"\n in file: \"" + a + "\"");
}

TEST(xmc_file_loader, bounds_of_includes) {
    temporary_directory files;
    files.write("0", document("<catalog/>"));
    for (int i = 1; i <= 1001; ++i) {
        files.write(std::to_string(i), document("<include file='" + std::to_string(i - 1) + "'/>"));
    }
    EXPECT_EQ(loader_t().parse(files.path("1000"), "en").code(), 0u);
    load_error const too_deep = loader_t().parse(files.path("1001"), "en");
    EXPECT_EQ(too_deep.code(), 14u);
    EXPECT_EQ(std::count(too_deep.message().begin(), too_deep.message().end(), '\n'), 1001);

    std::string many;
    for (int i = 0; i < 9999; ++i) many += "<include file='0'/>";
    EXPECT_EQ(loader_t().parse(files.write("wide", document(many)), "en").code(), 0u);
    EXPECT_EQ(loader_t().parse(files.write("wider", document(many + "<include file='0'/>")), "en").code(), 14u);

    ustring8 const huge = files.write("huge", "");
    std::filesystem::resize_file(files.path("huge"), (1 << 30) + 1); // takes no room on the disk
    EXPECT_EQ(told(huge), "Unexpected parse error happen!\n in file: \"" + huge + "\"");
}

std::string const sample =
    document("<!-- c --><include note='x'/>" + catalog("d", "fr", "<msg><x/></msg>") +
             catalog("c", "de_DE",
                     "<msg name='m' meta='t'> a &lt; <arg name='n' type='int' base='hex'/><br/>b</msg>"
                     "<!-- c --><msg name='n'><argument name='k'><!-- c --></argument></msg>"));

TEST(xmc_file_loader, survives_every_truncation) {
    std::size_t const root_end = sample.rfind('>') + 1;
    for (std::size_t length = 0; length <= sample.size(); ++length) {
        loader_t loader;
        loader.handle_language("de_DE");
        bool const is_whole = loader.parse_string(sample.substr(0, length), "f").code() == 0;
        EXPECT_EQ(is_whole, length >= root_end) << length;
        EXPECT_EQ(is_whole, drain(loader) == "c.m@de_DE 'a < '{3:n|base|hex}'\nb';c.n@de_DE {1:k};");
    }
}

} // namespace

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Message catalogs: loading a file of 10,000 messages, looking messages up, rendering one.
//
// The XML peers parse the same file and fill a map of message names to lists of texts and arguments;
// gettext looks the same names up in a compiled catalog that msgfmt makes when the program starts.
#include "bench.hpp"

#include <zolt/zolt.hpp>

#include <algorithm>
#include <clocale>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>

#if PEER_PUGIXML
#include <pugixml.hpp>
#endif
#if PEER_EXPAT
#include <expat.h>
#endif
#if PEER_FMT
#include <fmt/format.h>
#endif
#if __has_include(<libintl.h>)
#include <libintl.h>
#define PEER_GETTEXT 1
#endif

using namespace zolt;

namespace {

constexpr std::size_t message_count = 10000;

struct temporary_directory {
    temporary_directory() {
        char name[] = "/tmp/catalogs_bench_XXXXXX";
        path = mkdtemp(name);
    }
    ~temporary_directory() { std::filesystem::remove_all(path); }
    std::string path;
};

std::string write(std::string const& name, std::string const& text) {
    static temporary_directory const directory;
    std::string const path = directory.path + "/" + name;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

strings::ustring8 name_of(std::size_t i) { return "message." + std::to_string(i); }

std::string write_catalog(std::size_t count) {
    std::string text = "<?xml version=\"1.0\"?>\n<xmc version=\"1.1\">\n<catalog name=\"app\" lang=\"en\">\n";
    for (std::size_t i = 0; i < count; ++i) {
        text += "<msg name=\"" + name_of(i) + "\">Copied <arg name=\"n\" type=\"int\"/> of <arg name=\"all\" " +
                "type=\"int\"/> files &amp; links.</msg>\n";
    }
    return write("catalog." + std::to_string(count) + ".xmc", text += "</catalog>\n</xmc>\n");
}

// -- Loading ------------------------------------------------------------------------------------

i18n::message_catalogs load(std::string const& path) {
    i18n::message_catalogs catalogs;
    catalogs.load_file(path, "en");
    return catalogs;
}

std::string content(i18n::message_catalogs const& catalogs) {
    std::string text;
    for (auto at = catalogs.begin("app"); at != catalogs.end("app"); ++at) {
        text += at->first + ":";
        for (auto const& item : at->second) text += item.data() + "|";
    }
    return text;
}

/// What the peers fill: texts, and names of arguments, marked as such.
struct piece {
    std::string text;
    bool is_argument;
};
using peer_catalog = std::map<std::string, std::vector<piece>>;

[[maybe_unused]] std::string content(peer_catalog const& catalog) {
    std::string text;
    for (auto const& [name, pieces] : catalog) {
        text += name + ":";
        for (piece const& part : pieces) text += part.text + "|";
    }
    return text;
}

#if PEER_PUGIXML
peer_catalog load_by_pugixml(std::string const& path) {
    peer_catalog catalog;
    pugi::xml_document document;
    document.load_file(path.c_str());
    for (pugi::xml_node const message : document.child("xmc").child("catalog")) {
        std::vector<piece>& pieces = catalog[message.attribute("name").value()];
        for (pugi::xml_node const part : message) {
            bool const is_argument = part.type() == pugi::node_element;
            pieces.push_back({is_argument ? part.attribute("name").value() : part.value(), is_argument});
        }
    }
    return catalog;
}
#endif

#if PEER_EXPAT
struct expat_reader {
    peer_catalog catalog;
    std::vector<piece>* pieces = nullptr;

    static void start(void* data, char const* name, char const** attributes) {
        auto& self = *static_cast<expat_reader*>(data);
        if (std::strcmp(name, "msg") == 0) {
            self.pieces = &self.catalog[attributes[1]];
        } else if (self.pieces) {
            self.pieces->push_back({attributes[1], true});
        }
    }
    static void end(void* data, char const* name) {
        if (std::strcmp(name, "msg") == 0) static_cast<expat_reader*>(data)->pieces = nullptr;
    }
    static void characters(void* data, char const* text, int size) {
        auto& self = *static_cast<expat_reader*>(data);
        if (!self.pieces) return;
        if (self.pieces->empty() || self.pieces->back().is_argument) self.pieces->push_back({{}, false});
        self.pieces->back().text.append(text, static_cast<std::size_t>(size));
    }
};

peer_catalog load_by_expat(std::string const& path) {
    std::string text(std::filesystem::file_size(path), '\0');
    std::ifstream(path, std::ios::binary).read(text.data(), static_cast<std::streamsize>(text.size()));
    expat_reader reader;
    XML_Parser const parser = XML_ParserCreate(nullptr);
    XML_SetUserData(parser, &reader);
    XML_SetElementHandler(parser, expat_reader::start, expat_reader::end);
    XML_SetCharacterDataHandler(parser, expat_reader::characters);
    XML_Parse(parser, text.data(), static_cast<int>(text.size()), 1);
    XML_ParserFree(parser);
    return std::move(reader.catalog);
}
#endif

void add_load() {
    static std::string const path = write_catalog(message_count);
    bench::comparison task("catalogs/load/10000_messages", message_count);
    task.side(
        "zolt", [] { return load(path); }, [] { return content(load(path)); });
#if PEER_PUGIXML
    task.side(
        "pugixml", [] { return load_by_pugixml(path); }, [] { return content(load_by_pugixml(path)); });
#endif
#if PEER_EXPAT
    task.side(
        "expat", [] { return load_by_expat(path); }, [] { return content(load_by_expat(path)); });
#endif
    bench::growth("catalogs_load", 10,
                  [](std::size_t count) { return [file = write_catalog(count)] { return load(file); }; });
}

// -- Looking up ---------------------------------------------------------------------------------

/// Opens the messages to dgettext; false when the system cannot translate.
[[maybe_unused]] bool compile_for_gettext() {
#if PEER_GETTEXT
    std::string po = "msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n\n";
    for (std::size_t i = 0; i < message_count; ++i) {
        po += "msgid \"" + name_of(i) + "\"\nmsgstr \"Copied %d of %d files & links.\"\n\n";
    }
    std::string const source = write("app.po", po);
    std::string const directory = std::filesystem::path(source).parent_path();
    write("xx/LC_MESSAGES/app.mo", "");
    std::string const compile = "msgfmt -o " + directory + "/xx/LC_MESSAGES/app.mo " + source;
    // A locale of our own is needed: the C locale is never translated.
    std::string const make_locale = "localedef -i POSIX -f UTF-8 " + directory + "/xx_XX.UTF-8 2>/dev/null";
    if (std::system(compile.c_str()) != 0) return false;
    [[maybe_unused]] int const ignored = std::system(make_locale.c_str());
    setenv("LOCPATH", directory.c_str(), 1);
    setenv("LANGUAGE", "xx", 1);
    if (!std::setlocale(LC_MESSAGES, "xx_XX.UTF-8") && !std::setlocale(LC_MESSAGES, "C.UTF-8")) return false;
    std::setlocale(LC_CTYPE, std::setlocale(LC_MESSAGES, nullptr));
    bindtextdomain("app", directory.c_str());
    return std::strcmp(dgettext("app", "message.1"), "message.1") != 0;
#else
    return false;
#endif
}

void add_find() {
    static i18n::message_catalogs const catalogs = load(write_catalog(message_count));
    static std::vector<strings::ustring8> hits, misses;
    for (std::size_t i = 0; i < message_count; ++i) hits.push_back(name_of(i));
    std::shuffle(hits.begin(), hits.end(), std::mt19937(7));
    for (strings::ustring8 const& name : hits) misses.push_back(name + ".");

    [[maybe_unused]] bool const has_gettext = compile_for_gettext();
    auto const add = [&](std::string const& input, std::vector<strings::ustring8> const& names) {
        auto const count = [&names](auto is_there) {
            return [&names, is_there] { return std::count_if(names.begin(), names.end(), is_there); };
        };
        bench::comparison task("catalogs/find/" + input, names.size());
        task.side("zolt", count([](auto const& name) { return catalogs.message("app", name) != types::nil; }));
#if PEER_GETTEXT
        if (has_gettext) {
            task.side("gettext",
                      count([](auto const& name) { return dgettext("app", name.c_str()) != name.c_str(); }));
        }
#endif
    };
    add("hit", hits);
    add("miss", misses);
}

// -- Rendering ----------------------------------------------------------------------------------

void add_render() {
    using item = i18n::message_item;
    static i18n::message_t const message("copied", {{"user", item::string},
                                                    {" copied "},
                                                    {"n", item::int_},
                                                    {" of "},
                                                    {"all", item::int_},
                                                    {" files to "},
                                                    {"target", item::string},
                                                    {" in "},
                                                    {"seconds", item::double_},
                                                    {" seconds."}});
    using generic::argument;
    static generic::varg_list const arguments(argument("seconds", 93.25), argument("user", "ann"),
                                              argument("n", 4711), argument("all", 10000),
                                              argument("target", "backup"));
    bench::comparison task("catalogs/render/five_arguments", 1);
    task.side("zolt", [] { return message.as_string(arguments); });
    static double seconds = 93.25;
    static int n = 4711, all = 10000; // not constants to the compiler
    static char const *user = "ann", *target = "backup";
    static std::string const positional = "%2$s copied %3$d of %4$d files to %5$s in %1$.2f seconds.";
    task.side("snprintf", [] {
        char text[256];
        int const size = std::snprintf(text, sizeof text, positional.c_str(), seconds, user, n, all, target);
        return std::string(text, static_cast<std::size_t>(size));
    });
#if PEER_FMT
    static std::string const format = "{user} copied {n} of {all} files to {target} in {seconds:.2f} seconds.";
    task.side("fmt", [] {
        return fmt::format(fmt::runtime(format), fmt::arg("seconds", seconds), fmt::arg("user", user),
                           fmt::arg("n", n), fmt::arg("all", all), fmt::arg("target", target));
    });
#endif
}

} // namespace

void add_benchmarks() {
    add_load();
    add_find();
    add_render();
}

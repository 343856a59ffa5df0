// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A configuration file of 20,000 keys in 500 sections beside the key files of others. Each side reads the
// same data in its own syntax, from a file.
#include "bench.hpp"

#include <zolt/config/config_manager.hpp>
#include <zolt/config/file_item.hpp>
#include <zolt/config/user_item.hpp>
#include <zolt/system/file_utility.hpp>
#include <zolt/zolt.hpp>

#include <algorithm>
#include <filesystem>
#include <list>
#include <memory>
#include <random>
#include <unistd.h>

#if PEER_GLIB
#include <glib.h>
#endif
#if PEER_INIH
#include <INIReader.h>
#endif
#if __has_include(<toml++/toml.h>)
#include <toml++/toml.h>
#define PEER_TOMLPLUSPLUS 1
#endif

using namespace zolt;
using strings::ustring8;

namespace {

constexpr std::size_t key_count = 20000;

/// One assignment, of which one in four is a number, one a path, one a sentence and one a word.
struct setting {
    std::string section; ///< two components
    std::string name;
    std::string value;

    ustring8 key() const { return section + "." + name; }
    bool is_number() const { return value.find_first_not_of("0123456789") == value.npos; }
};

std::vector<setting> make_settings(std::size_t count) {
    static char const* const areas[] = {"network", "storage", "logging", "render", "audio", "session", "cache"};
    static char const* const nouns[] = {"timeout", "limit", "path", "mode", "interval", "title", "size", "level"};
    static char const* const kinds[] = {"max", "default", "retry", "idle", "backup"};
    std::mt19937 random(11);
    std::vector<setting> settings;
    while (settings.size() < count) {
        std::size_t const section = settings.size() / 40;
        std::size_t const i = settings.size() % 40;
        std::string const number = std::to_string(random() % 100000);
        std::string const values[] = {number, "/var/lib/app/" + number, "all of " + number + " items", "enabled"};
        settings.push_back({std::string(areas[section % 7]) + ".unit" + std::to_string(section),
                            std::string(kinds[i % 5]) + "_" + nouns[i / 5], values[random() % 4]});
    }
    return settings;
}

enum class syntax { zolt, key_file, toml };

std::string make_text(std::vector<setting> const& settings, syntax form) {
    std::string text;
    std::string section;
    for (setting const& each : settings) {
        if (each.section != section) {
            section = each.section;
            text += "\n# " + section + "\n[" + section + "]\n";
        }
        bool const quoted =
            form == syntax::toml || (form == syntax::zolt && each.value.find(' ') != each.value.npos);
        text += each.name + " = " + (quoted ? "\"" + each.value + "\"" : each.value) + "\n";
    }
    return text;
}

/// A file that goes with the program.
class temporary_file {
public:
    explicit temporary_file(std::string const& text)
        : m_name((std::filesystem::temp_directory_path() /
                  ("zolt_bench_" + std::to_string(getpid()) + "_" + std::to_string(++made())))
                     .string()) {
        system::store_file(ustring8(m_name), ustring8(text));
    }
    temporary_file(temporary_file const&) = delete;
    temporary_file& operator=(temporary_file const&) = delete;
    ~temporary_file() { std::filesystem::remove(m_name); }

    std::string const& name() const { return m_name; }

private:
    static int& made() {
        static int count = 0;
        return count;
    }

    std::string m_name;
};

/// Sources that are given, in place of those that a program's dispatcher would make.
class given_sources : public config::config_dispatch {
public:
    using items = config::base_config_item::item_list;
    explicit given_sources(items sources) : m_sources(std::move(sources)) {}
    void setup(items& list) const override { list = m_sources; }
    void load(items&) const override {}
    void unload(items&) const override {}
    void save(items&) const override {}
    given_sources* clone() const override { return new given_sources(*this); }

private:
    items m_sources;
};

using source = memory::pointers::rc_pointer<config::base_config_item>;

source loaded(std::string const& file_name) {
    source item = memory::pointers::make_rc<config::file_item>(ustring8(file_name));
    item->load();
    return item;
}

std::vector<setting> const& settings() {
    static std::vector<setting> const all = make_settings(key_count);
    return all;
}

/// The settings in random order, all or those that hold a number.
std::vector<setting> shuffled(bool numbers_only) {
    std::vector<setting> result;
    for (setting const& each : settings()) {
        if (!numbers_only || each.is_number()) result.push_back(each);
    }
    std::shuffle(result.begin(), result.end(), std::mt19937(5));
    return result;
}

std::vector<ustring8> keys_of(std::vector<setting> const& list) {
    std::vector<ustring8> keys;
    for (setting const& each : list) keys.push_back(each.key());
    return keys;
}

#if PEER_GLIB
using key_file = std::unique_ptr<GKeyFile, void (*)(GKeyFile*)>;

key_file load_key_file(std::string const& name) {
    key_file file(g_key_file_new(), g_key_file_free);
    g_key_file_load_from_file(file.get(), name.c_str(), G_KEY_FILE_NONE, nullptr);
    return file;
}
#endif

void add_reading() {
    static temporary_file const own(make_text(settings(), syntax::zolt));
    auto const& last = settings().back();
    bench::comparison task("config/read_file/20000_keys", key_count);
    task.side(
        "zolt", [] { return loaded(own.name()); },
        [&] { return loaded(own.name())->get_value(last.key())->second.as_utf8(); });
#if PEER_GLIB || PEER_INIH
    static temporary_file const ini(make_text(settings(), syntax::key_file));
#endif
#if PEER_GLIB
    task.side(
        "GKeyFile", [] { return load_key_file(ini.name()); },
        [&] {
            key_file const file = load_key_file(ini.name());
            char* const value = g_key_file_get_string(file.get(), last.section.c_str(), last.name.c_str(), nullptr);
            std::string const result(value ? value : "");
            g_free(value);
            return result;
        });
#endif
#if PEER_INIH
    task.side(
        "inih", [] { return INIReader(ini.name()); },
        [&] { return INIReader(ini.name()).Get(last.section, last.name, ""); });
#endif
#if PEER_TOMLPLUSPLUS
    static temporary_file const toml_text(make_text(settings(), syntax::toml));
    task.side(
        "tomlplusplus", [] { return toml::parse_file(toml_text.name()); },
        [&] {
            toml::table const table = toml::parse_file(toml_text.name());
            return table.at_path(last.section + "." + last.name).value_or(std::string());
        });
#endif
}

void add_queries() {
    static temporary_file const own(make_text(settings(), syntax::zolt));
    static config::config_manager manager;
    manager.init(given_sources({loaded(own.name())}));
    static std::vector<setting> const texts = shuffled(false), numbers = shuffled(true);
    static std::vector<ustring8> const text_keys = keys_of(texts), number_keys = keys_of(numbers);
    static types::variant const none;

    bench::comparison text_task("config/get_text/20000_keys", texts.size());
    text_task.side("zolt", [] {
        std::size_t total = 0;
        for (ustring8 const& key : text_keys) total += manager.get_value(key, none).as_utf8().size();
        return total;
    });
    bench::comparison int_task("config/get_int/20000_keys", numbers.size());
    int_task.side("zolt", [] {
        std::size_t total = 0;
        for (ustring8 const& key : number_keys) total += manager.get_value(key, none).as_uint32();
        return total;
    });
#if PEER_GLIB
    static temporary_file const ini(make_text(settings(), syntax::key_file));
    static key_file const file = load_key_file(ini.name());
    text_task.side("GKeyFile", [] {
        std::size_t total = 0;
        for (setting const& each : texts) {
            char* const value = g_key_file_get_string(file.get(), each.section.c_str(), each.name.c_str(), nullptr);
            total += std::char_traits<char>::length(value);
            g_free(value);
        }
        return total;
    });
    int_task.side("GKeyFile", [] {
        std::size_t total = 0;
        for (setting const& each : numbers) {
            int const value = g_key_file_get_integer(file.get(), each.section.c_str(), each.name.c_str(), nullptr);
            total += static_cast<std::size_t>(value);
        }
        return total;
    });
#endif
}

/// The same keys in the third of three sources and in the first; those before the third hold other keys in
/// the same sections.
void add_layers() {
    static temporary_file const own(make_text(settings(), syntax::zolt));
    std::vector<setting> others = settings();
    for (setting& each : others) each.name += "_other";
    temporary_file const other(make_text(others, syntax::zolt));
    source const holder = loaded(own.name());
    static config::config_manager first, third;
    first.init(given_sources({holder, loaded(other.name()), loaded(other.name())}));
    third.init(given_sources({loaded(other.name()), loaded(other.name()), holder}));
    static std::vector<ustring8> const keys = keys_of(shuffled(false));
    auto const look_up = [](config::config_manager const& manager) {
        return [&manager] {
            std::size_t total = 0;
            for (ustring8 const& key : keys) total += manager.get_value(key, types::nil).as_utf8().size();
            return total;
        };
    };
    bench::comparison task("config/third_layer/20000_keys", keys.size());
    task.side("zolt", look_up(third));
    task.side("first_layer", look_up(first));
}

void add_growth() {
    static std::list<temporary_file> files;
    bench::growth("config_read", 200, [](std::size_t count) {
        std::string const& name = files.emplace_back(make_text(make_settings(count), syntax::zolt)).name();
        return [&name] { return loaded(name); };
    });
}

} // namespace

void add_benchmarks() {
    add_reading();
    add_queries();
    add_layers();
    add_growth();
}

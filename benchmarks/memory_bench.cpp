// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Bytes of heap, not time: what a catalog, a configuration and a value take, at the highest point while
// they are made and when they are ready, beside the peers. Every allocation of the process goes through
// the counters below; a block counts with its usable size and the allocator's own word.
#include "bench.hpp"

#include <zolt/zolt.hpp>

#include <malloc.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <fstream>
#include <map>
#include <memory>
#include <random>

#if PEER_GLIB
#include <glib.h>
#endif
#if PEER_PUGIXML
#include <pugixml.hpp>
#endif
#if PEER_QT
#include <QString>
#include <QVariant>
#endif

// ------------------------------------------------------------------------------------------------
// The counters, over the C library's own allocator

extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
void __libc_free(void*);
}

namespace {

std::size_t held = 0;
std::size_t highest = 0;

void* taken(void* block) {
    if (block) held += malloc_usable_size(block) + sizeof(std::size_t);
    if (held > highest) highest = held;
    return block;
}

void given_back(void* block) {
    if (block) held -= malloc_usable_size(block) + sizeof(std::size_t);
}

} // namespace

extern "C" {
void* malloc(std::size_t size) { return taken(__libc_malloc(size)); }
void* calloc(std::size_t count, std::size_t size) { return taken(__libc_calloc(count, size)); }
void* aligned_alloc(std::size_t alignment, std::size_t size) { return taken(__libc_memalign(alignment, size)); }
void* memalign(std::size_t alignment, std::size_t size) { return taken(__libc_memalign(alignment, size)); }
void* realloc(void* block, std::size_t size) {
    std::size_t const before = block ? malloc_usable_size(block) + sizeof(std::size_t) : 0;
    void* const moved = __libc_realloc(block, size);
    if (moved || size == 0) held -= before;
    return taken(moved);
}
int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
    *block = taken(__libc_memalign(alignment, size));
    return *block ? 0 : ENOMEM;
}
void free(void* block) {
    given_back(block);
    __libc_free(block);
}
}

using namespace zolt;

namespace {

// ------------------------------------------------------------------------------------------------
// Measuring

std::string report;

// Makes the thing, which is kept until both figures are taken.
template <typename Make>
void measure(char const* task, char const* who, std::size_t units, Make make) {
    std::size_t const before = held;
    highest = held;
    std::size_t peak = 0;
    std::size_t ready = 0;
    {
        auto const made = make();
        peak = highest - before;
        ready = held - before;
    }
    char line[256];
    std::snprintf(line, sizeof line, "%s\n    {\"name\": \"memory/%s:%s\", \"peak\": %.1f, \"ready\": %.1f}",
                  report.empty() ? "" : ",", task, who, static_cast<double>(peak) / static_cast<double>(units),
                  static_cast<double>(ready) / static_cast<double>(units));
    report += line;
}

class temporary_file {
public:
    explicit temporary_file(std::string const& content) {
        int const descriptor = mkstemp(m_name.data());
        if (descriptor < 0) std::abort();
        close(descriptor);
        std::ofstream(m_name) << content;
    }
    temporary_file(temporary_file const&) = delete;
    ~temporary_file() { std::remove(m_name.c_str()); }
    std::string const& name() const { return m_name; }

private:
    std::string m_name = "/tmp/zolt_memory_XXXXXX";
};

// ------------------------------------------------------------------------------------------------
// A catalog

constexpr int message_count = 100000;

std::string catalog_text() {
    std::string text = "<?xml version=\"1.0\"?><xmc version=\"1.1\"><catalog name=\"app\" lang=\"en\">\n";
    for (int i = 0; i < message_count; ++i) {
        text += "<msg name=\"message." + std::to_string(i) +
                "\">Copied <arg name=\"n\" type=\"int\"/> of <arg name=\"all\" type=\"int\"/> files.</msg>\n";
    }
    return text + "</catalog></xmc>\n";
}

#if PEER_PUGIXML
// What a program that reads the same file with a document tree keeps: the message's pieces by its name.
using pieces = std::vector<std::pair<bool, std::string>>;

std::map<std::string, pieces> by_pugixml(std::string const& file) {
    pugi::xml_document document;
    if (!document.load_file(file.c_str(), pugi::parse_default | pugi::parse_ws_pcdata)) std::abort();
    std::map<std::string, pieces> messages;
    for (pugi::xml_node const message : document.child("xmc").child("catalog").children("msg")) {
        pieces& parts = messages[message.attribute("name").value()];
        for (pugi::xml_node const part : message) {
            bool const is_text = part.type() == pugi::node_pcdata;
            parts.emplace_back(is_text, is_text ? part.value() : part.attribute("name").value());
        }
    }
    return messages;
}
#endif

void catalogs() {
    temporary_file const file(catalog_text());
    measure("catalog/100000 messages", "zolt", message_count, [&file] {
        auto result = std::make_unique<i18n::message_catalogs>();
        result->load_file(file.name(), "en");
        if (result->count("app") != message_count) std::abort();
        return result;
    });
#if PEER_PUGIXML
    measure("catalog/100000 messages", "pugixml", message_count, [&file] { return by_pugixml(file.name()); });
#endif
}

// ------------------------------------------------------------------------------------------------
// A configuration

constexpr int key_count = 200000;
constexpr int keys_in_group = 20;

// Both syntaxes share sections in brackets and "key=value" lines.
std::string configuration_text() {
    std::string text;
    for (int i = 0; i < key_count; ++i) {
        if (i % keys_in_group == 0) text += "[group" + std::to_string(i / keys_in_group) + "]\n";
        text += "key" + std::to_string(i) + "=value of " + std::to_string(i * 7) + "\n";
    }
    return text;
}

void configurations() {
    temporary_file const file(configuration_text());
    measure("configuration/200000 keys", "zolt", key_count, [&file] {
        auto item = std::make_unique<config::file_item>(file.name());
        if (!item->load() || !item->get_value("group5.key105")) std::abort();
        return item;
    });
#if PEER_GLIB
    measure("configuration/200000 keys", "GKeyFile", key_count, [&file] {
        std::unique_ptr<GKeyFile, void (*)(GKeyFile*)> keys(g_key_file_new(), g_key_file_free);
        if (!g_key_file_load_from_file(keys.get(), file.name().c_str(), G_KEY_FILE_NONE, nullptr)) std::abort();
        return keys;
    });
#endif
}

// ------------------------------------------------------------------------------------------------
// Values

constexpr std::size_t value_count = 100000;
char const short_text[] = "a text of 29 characters' size";

// A vector of values that `make(i)` gives, its own block included.
template <typename Make>
void values(char const* task, char const* who, Make make) {
    measure(task, who, value_count, [make] {
        std::vector<decltype(make(0))> result;
        result.reserve(value_count);
        for (std::size_t i = 0; i < value_count; ++i) result.push_back(make(static_cast<int>(i)));
        return result;
    });
}

void variants() {
    values("variant/int", "zolt", [](int i) { return types::variant(i); });
    values("variant/int", "shared_ptr", [](int i) { return std::make_shared<int>(i); });
    values("variant/text", "zolt", [](int) { return types::variant(short_text); });
    values("variant/text", "shared_ptr", [](int) { return std::make_shared<std::string>(short_text); });
#if PEER_QT
    values("variant/int", "QVariant", [](int i) { return QVariant(i); });
    values("variant/text", "QVariant", [](int) { return QVariant(QString::fromLatin1(short_text)); });
#endif
}

} // namespace

// The only option that matters is Google Benchmark's --benchmark_out=FILE.
int main(int argc, char** argv) {
    catalogs();
    configurations();
    variants();
    std::string const text = "{\n  \"benchmarks\": [" + report + "\n  ]\n}\n";
    std::string_view const option = "--benchmark_out=";
    for (int i = 1; i < argc; ++i) {
        std::string_view const argument = argv[i];
        if (argument.substr(0, option.size()) == option) {
            return (std::ofstream(std::string(argument.substr(option.size()))) << text).good() ? 0 : 1;
        }
    }
    std::fputs(text.c_str(), stdout);
}

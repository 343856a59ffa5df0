// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A generated catalog of 10,000 messages: tokenizing, loading, looking up and rendering.
#include <zolt/i18n/_private/xmc_file_loader.hpp>
#include <zolt/parser/xml_token_stream.hpp>
#include <zolt/zolt.hpp>

#include <benchmark/benchmark.h>

#include <string>

namespace {

using namespace zolt;

constexpr int message_count = 10000;

strings::ustring8 name_of(int i) { return "message." + std::to_string(i); }

strings::ustring8 const& catalog_text() {
    static strings::ustring8 const text = [] {
        strings::ustring8 result("<?xml version=\"1.0\"?><xmc version=\"1.1\"><catalog name=\"app\" lang=\"en\">\n");
        for (int i = 0; i < message_count; ++i) {
            result += "<msg name=\"" + name_of(i) +
                      "\">Copied <arg name=\"n\" type=\"int\"/> of <arg name=\"all\" type=\"int\"/> files.</msg>\n";
        }
        return result += "</catalog></xmc>\n";
    }();
    return text;
}

i18n::message_catalogs::catalog_map load() {
    i18n::_private::xmc_file_loader loader;
    loader.handle_language("en");
    loader.parse_string(catalog_text(), "bench.xmc");
    i18n::message_catalogs::catalog_map catalogs;
    loader.combine_data(catalogs);
    return catalogs;
}

void set_bytes(benchmark::State& state) {
    state.SetBytesProcessed(state.iterations() * static_cast<long>(catalog_text().size()));
}

void tokenize(benchmark::State& state) {
    for (auto _ : state) {
        parser::xml_token_stream stream;
        benchmark::DoNotOptimize(stream.parse(catalog_text()).kind);
    }
    set_bytes(state);
}
BENCHMARK(tokenize)->Unit(benchmark::kMillisecond);

void load_catalog(benchmark::State& state) {
    if (load()["app"]->size() != message_count) return state.SkipWithError("messages are missing");
    for (auto _ : state) benchmark::DoNotOptimize(load());
    set_bytes(state);
}
BENCHMARK(load_catalog)->Unit(benchmark::kMillisecond);

void render_message(benchmark::State& state) {
    auto const catalogs = load();
    i18n::catalog_t const& app = *catalogs.at("app");
    strings::ustring8 const name = name_of(4711);
    generic::varg_list const arguments(generic::argument("n", 7), generic::argument("all", 12));
    if (app.message(name).as_string(arguments) != "Copied 7 of 12 files.") return state.SkipWithError("wrong text");
    for (auto _ : state) benchmark::DoNotOptimize(app.message(name).as_string(arguments));
}
BENCHMARK(render_message);

} // namespace

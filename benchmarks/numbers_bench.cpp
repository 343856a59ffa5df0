// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Text to number and back beside the C and C++ libraries, over the same 1,000 generated texts. The
// sums are compared before anything is timed.
#include <zolt/generic/convert/str_to_x.hpp>
#include <zolt/generic/convert/x_to_str.hpp>
#include <zolt/zolt.hpp>

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace {

using zolt::types::radix_t;

std::vector<std::string> const& texts() {
    static std::vector<std::string> const generated = [] {
        std::mt19937 random(7);
        std::vector<std::string> result;
        for (int i = 0; i < 1000; ++i) result.push_back(std::to_string(static_cast<int>(random())));
        return result;
    }();
    return generated;
}

int by_zolt(std::string const& text) {
    return zolt::generic::convert::str_to_int32(text.data(), static_cast<unsigned long>(text.size()),
                                                radix_t::decimal);
}
int by_strtol(std::string const& text) { return static_cast<int>(std::strtol(text.c_str(), nullptr, 10)); }
int by_from_chars(std::string const& text) {
    int value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

template <int (*Read)(std::string const&)>
void text_to_int(benchmark::State& state) {
    for (std::string const& text : texts()) {
        if (Read(text) != by_strtol(text)) return state.SkipWithError("answers differ");
    }
    for (auto _ : state) {
        for (std::string const& text : texts()) benchmark::DoNotOptimize(Read(text));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(texts().size()));
}
BENCHMARK(text_to_int<by_zolt>);
BENCHMARK(text_to_int<by_strtol>);
BENCHMARK(text_to_int<by_from_chars>);

void write_zolt(int value, char* buffer) { zolt::generic::convert::ltoa(value, buffer, 10); }
void write_to_chars(int value, char* buffer) { *std::to_chars(buffer, buffer + 65, value).ptr = '\0'; }

template <void (*Write)(int, char*)>
void int_to_text(benchmark::State& state) {
    std::vector<int> values;
    char buffer[66];
    for (std::string const& text : texts()) {
        values.push_back(by_strtol(text));
        Write(values.back(), buffer);
        if (text != buffer) return state.SkipWithError("answers differ");
    }
    for (auto _ : state) {
        for (int const value : values) {
            Write(value, buffer);
            benchmark::DoNotOptimize(buffer);
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(values.size()));
}
BENCHMARK(int_to_text<write_zolt>);
BENCHMARK(int_to_text<write_to_chars>);

} // namespace

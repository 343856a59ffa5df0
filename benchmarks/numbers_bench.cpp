// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Text to number and back beside the C and C++ libraries.
#include "bench.hpp"

#include <zolt/generic/convert/str_to_x.hpp>
#include <zolt/zolt.hpp>

#include <charconv>
#include <random>

using namespace zolt;

namespace {

std::vector<std::string> decimal_texts() {
    std::mt19937 random(7);
    std::vector<std::string> result;
    for (int i = 0; i < 1000; ++i) result.push_back(std::to_string(static_cast<int>(random())));
    return result;
}

} // namespace

void add_benchmarks() {
    static std::vector<std::string> const texts = decimal_texts();
    auto const sum = [](auto read) {
        return [read] {
            unsigned total = 0;
            for (std::string const& text : texts) total += static_cast<unsigned>(read(text));
            return total;
        };
    };
    bench::comparison task("numbers/text_to_int32/decimal", texts.size());
    task.side("zolt", sum([](std::string const& text) {
                  return generic::convert::str_to_int32(text.data(), static_cast<unsigned long>(text.size()),
                                                        types::radix_t::decimal);
              }));
    task.side("from_chars", sum([](std::string const& text) {
                  int value = 0;
                  std::from_chars(text.data(), text.data() + text.size(), value);
                  return value;
              }));
}

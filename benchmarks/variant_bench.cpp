// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Variants beside the shared pointer, whose counted payload they resemble, and Qt's variant. The programs
// that hand values around have threads, so one is started first: with the first of them the counts of the
// shared pointer become atomic for good.
#include "bench.hpp"

#include <zolt/generic/convert/str_to_x.hpp>
#include <zolt/generic/convert/x_to_str.hpp>
#include <zolt/zolt.hpp>

#include <memory>
#include <thread>

#if PEER_QT
#include <QString>
#include <QVariant>
#endif

using namespace zolt;
using types::variant;

namespace {

constexpr int count = 1000;
char const* const long_text = "the value of a setting";

// Copies one value and destroys the copy, again and again.
template <typename Value>
auto copies(Value original) {
    return [original] {
        for (int i = 0; i < count; ++i) {
            Value copy(original);
            benchmark::DoNotOptimize(copy);
        }
        return 0;
    };
}

// Makes values and destroys them.
template <typename Make>
auto makes(Make make) {
    return [make] {
        for (int i = 0; i < count; ++i) {
            auto made = make(i);
            benchmark::DoNotOptimize(made);
        }
        return 0;
    };
}

// Adds up what `convert` makes of every item.
template <typename Item, typename Convert>
auto conversions(std::vector<Item> items, Convert convert) {
    return [items = std::move(items), convert] {
        std::size_t total = 0;
        for (Item const& item : items) total += static_cast<std::size_t>(convert(item));
        return total;
    };
}

template <typename Value>
auto vector_copies(std::vector<Value> const& original) {
    return [original] { return std::vector<Value>(original); };
}

template <typename Make>
auto vector_of(std::size_t size, Make make) {
    std::vector<decltype(make(0))> result;
    for (std::size_t i = 0; i < size; ++i) result.push_back(make(static_cast<int>(i)));
    return result;
}

int number_at(int i) { return static_cast<int>(static_cast<unsigned>(i) * 2654435761u); }

variant make_variant(int i) { return variant(i); }
auto no_answer = [] { return 0; };

void add_copies() {
    bench::comparison number("variant/copy/int", count);
    number.side("zolt", copies(variant(5)));
    number.side("shared_ptr", copies(std::make_shared<int>(5)));
    bench::comparison text("variant/copy/text", count);
    text.side("zolt", copies(variant(long_text)));
    text.side("shared_ptr", copies(std::make_shared<std::string>(long_text)));
    bench::comparison list("variant/copy_vector/int", count);
    list.side("zolt", vector_copies(vector_of(count, make_variant)), no_answer);
    list.side("shared_ptr", vector_copies(vector_of(count, std::make_shared<int, int>)), no_answer);
#if PEER_QT
    number.side("QVariant", copies(QVariant(5)));
    text.side("QVariant", copies(QVariant(QString(long_text))));
    list.side("QVariant", vector_copies(vector_of(count, [](int i) { return QVariant(i); })), no_answer);
#endif
}

void add_makes() {
    bench::comparison number("variant/make/int", count);
    number.side("zolt", makes([](int i) { return variant(i); }));
    number.side("shared_ptr", makes([](int i) { return std::make_shared<int>(i); }));
    std::string const content(long_text);
    bench::comparison text("variant/make/text", count);
    text.side("zolt", makes([content](int) { return variant(content); }));
    text.side("shared_ptr", makes([content](int) { return std::make_shared<std::string>(content); }));
}

void add_conversions() {
    auto const numbers = vector_of(count, number_at);
    auto const held = vector_of(count, [](int i) { return variant(number_at(i)); });
    bench::comparison to_text("variant/to_text/int", count);
    to_text.side("zolt", conversions(held, [](variant const& value) { return value.as_string().size(); }));
    to_text.side("ltoa", conversions(numbers, [](int number) {
                     char digits[66];
                     generic::convert::ltoa(number, digits, 10);
                     return std::string(digits).size();
                 }));

    auto const texts = vector_of(count, [](int i) { return std::to_string(number_at(i)); });
    auto const held_texts = std::vector<variant>(texts.begin(), texts.end());
    bench::comparison to_int("variant/to_int/text", count);
    to_int.side("zolt", conversions(held_texts, [](variant const& value) { return value.as_int(); }));
    to_int.side("str_to_int32", conversions(texts, [](std::string const& text) {
                    return generic::convert::str_to_int32(text.data(), static_cast<unsigned long>(text.size()));
                }));
}

} // namespace

void add_benchmarks() {
    std::thread([] {}).join();
    add_copies();
    add_makes();
    add_conversions();
    // Few payloads for all: one each, of 48 bytes, would show where the processor's first cache ends. The number of
    // instructions for a copy is the same at all sizes.
    bench::growth("variant_copy_vector", 10, [](std::size_t size) {
        auto const payloads = vector_of(10, make_variant);
        return vector_copies(vector_of(size, [&](int i) { return payloads[static_cast<std::size_t>(i) % 10]; }));
    });
}

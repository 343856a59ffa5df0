// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Prints a table of memory sizes and of durations, formatted as a catalog's placeholders would be.
// The options of a placeholder follow its name, each part separated by the byte 01.
#include <zolt/i18n/format_value.hpp>
#include <zolt/i18n/message_item.hpp>
#include <zolt/types/variant.hpp>
#include <zolt/zolt.hpp>

#include <iostream>

namespace {

using zolt::i18n::format_value;
using zolt::i18n::message_item;
using zolt::strings::ustring8;

void print_size(long long bytes) {
    ustring8 const options("size\x01precision\x01" "1\x01" "fieldsize\x01" "8");
    std::cout << format_value(message_item::memory, bytes, options) << ' '
              << format_value(message_item::memory_unit, bytes, options) << '\n';
}

void print_duration(double seconds) {
    std::cout << format_value(message_item::duration, seconds, ustring8("t\x01precision\x01" "1\x01short_form\x01true"))
              << "  " << format_value(message_item::duration, seconds, ustring8("t")) << '\n';
}

} // namespace

int main() {
    for (long long const bytes : {0LL, 1023LL, 1024LL, 1536LL, 700LL << 20, 3LL << 40}) print_size(bytes);
    for (double const seconds : {0.25, 59.9, 61.0, 3600.0, 93784.5}) print_duration(seconds);
}

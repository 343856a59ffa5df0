// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Writes docs/variant_conversions.md: for each type that a variant can hold some values, usual and odd ones, and
// what every conversion makes of them. Conversions that give the same for all values of a table share a row, but
// for those to long, whose rows differ between 64 and 32 bits and are the only ones that do.
#include <zolt/types/variant.hpp>
#include <zolt/zolt.hpp>

#include <charconv>
#include <cstdio>
#include <iostream>
#include <limits>
#include <type_traits>
#include <vector>

namespace {

using zolt::strings::ustring16;
using zolt::strings::ustring32;
using zolt::strings::ustring8;
using zolt::types::variant;

template <typename C, typename Traits>
std::string literal(std::basic_string<C, Traits> const& text) {
    std::string result = "`\"";
    for (C const unit : text) {
        auto const number = static_cast<unsigned long>(static_cast<std::make_unsigned_t<C>>(unit));
        char escape[16];
        std::snprintf(escape, sizeof escape, sizeof unit == 1 ? "\\x%02lX" : "\\x%04lX", number);
        result += number >= 0x20 && number < 0x7F ? std::string(1, static_cast<char>(number)) : escape;
    }
    return result + "\"`";
}

template <typename T>
std::string cell(T const& value) {
    if constexpr (std::is_same_v<T, zolt::types::nil_t>) {
        return "nil";
    } else if constexpr (std::is_same_v<T, bool>) {
        return value ? "true" : "false";
    } else if constexpr (std::is_arithmetic_v<T>) {
        char digits[64];
        return std::string(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
    } else {
        return literal(value);
    }
}

struct conversion {
    char const* name;
    std::string (*cell_of)(variant const&);
};

#define CONVERSION(name)                                                                                           \
    {                                                                                                              \
#name, [](variant const& value) { return cell(value.name()); }                                             \
    }
conversion const conversions[] = {
    CONVERSION(as_bool),   CONVERSION(as_int),     CONVERSION(as_int32),    CONVERSION(as_signed),
    CONVERSION(as_long),   CONVERSION(as_int64),   CONVERSION(as_short),    CONVERSION(as_int16),
    CONVERSION(as_int8),   CONVERSION(as_uint),    CONVERSION(as_unsigned), CONVERSION(as_uint32),
    CONVERSION(as_ulong),  CONVERSION(as_uint64),  CONVERSION(as_ushort),   CONVERSION(as_uint16),
    CONVERSION(as_uint8),  CONVERSION(as_float),   CONVERSION(as_double),   CONVERSION(as_long_double),
    CONVERSION(as_string), CONVERSION(as_ustring), CONVERSION(as_utf8),     CONVERSION(as_utf16),
    CONVERSION(as_utf32),  CONVERSION(as_wstring),
};
#undef CONVERSION

struct row {
    std::string names;
    std::vector<std::string> cells;
    bool is_long;
};

std::vector<row> rows_of(std::vector<variant> const& values) {
    std::vector<row> rows;
    for (auto const& [name, cell_of] : conversions) {
        row next{std::string("`") + name + '`', {}, std::string_view(name).ends_with("long")};
        for (variant const& value : values) next.cells.push_back(cell_of(value));
        row* same = nullptr;
        for (row& each : rows) {
            if (!each.is_long && !next.is_long && each.cells == next.cells) same = &each;
        }
        if (same) {
            same->names += ", " + next.names;
        } else {
            rows.push_back(next);
        }
    }
    return rows;
}

template <typename T>
void write_table(char const* type, std::vector<T> const& held) {
    std::vector<variant> values;
    std::cout << "\n## " << type << "\n\n| |";
    for (T const& value : held) {
        values.push_back(variant(value));
        std::cout << ' ' << cell(value) << " |";
    }
    std::cout << "\n|---|";
    for (std::size_t i = 0; i < held.size(); ++i) std::cout << "---|";
    for (row const& each : rows_of(values)) {
        std::cout << "\n| " << each.names << " |";
        for (std::string const& text : each.cells) std::cout << ' ' << text << " |";
    }
    std::cout << '\n';
}

template <typename Text>
void write_text_table(char const* type, std::vector<char const*> const& usual, std::vector<Text> const& odd) {
    std::vector<Text> texts;
    for (char const* const text : usual) texts.push_back(Text(text, text + std::char_traits<char>::length(text)));
    texts.insert(texts.end(), odd.begin(), odd.end());
    write_table(type, texts);
}

template <typename Number>
std::vector<Number> floating() {
    using limits = std::numeric_limits<Number>;
    return {Number(0.1), Number(-0.5), Number(300.5), Number(-3e9), limits::max(), limits::quiet_NaN()};
}

} // namespace

int main() {
    std::cout
        << "# Variant conversions\n\n"
           "What each conversion of a `types::variant` gives, by the type that it holds. The program\n"
           "`docs/conversion_table.cpp` writes this page; the tests run it and compare. `as_long` and `as_ulong`\n"
           "are shown as they are where `long` has 64 bits; where it has 32, they give what `as_int` and "
           "`as_uint`\n"
           "give. In texts, bytes and units outside ASCII are shown as `\\x...`.\n";

    write_table<zolt::types::nil_t>("nil", {zolt::types::nil});
    write_table<bool>("bool", {true, false});
    write_table<signed char>("signed char", {65, -1, -128});
    write_table<unsigned char>("unsigned char", {65, 200, 255});
    write_table<short>("short", {300, -1, -32768});
    write_table<unsigned short>("unsigned short", {300, 65535});
    write_table<int>("int", {300, -1, 65536, 2147483647});
    write_table<unsigned int>("unsigned int", {300, 2147483648, 4294967295});
    write_table<long>("long", {300, -1, -2147483647});
    write_table<unsigned long>("unsigned long", {300, 2147483647});
    write_table<long long>("long long", {-1, 4294967296, std::numeric_limits<long long>::min()});
    write_table<unsigned long long>("unsigned long long",
                                    {4294967295, std::numeric_limits<unsigned long long>::max()});
    write_table("float", floating<float>());
    write_table("double", floating<double>());
    write_table("long double", floating<long double>());

    std::vector<char const*> const usual = {"42", "-1", "0x1F", " 010", "3000000000", "1.5e3", "yes", "no", ""};
    write_text_table<std::string>("std::string", usual, {"caf\xC3\xA9", "a\xFF"});
    write_text_table<ustring8>("ustring8", usual, {"caf\xC3\xA9", "a\xFF"});
    write_text_table<ustring16>("ustring16", usual, {{u'\xE9'}, {0xD83D, 0xDE00}, {u'a', 0xD800}});
    write_text_table<ustring32>("ustring32", usual, {L"\xE9", L"\x1F600", L"a\xD800"});
    write_text_table<std::wstring>("std::wstring", usual, {L"\xE9", L"\x1F600", L"a\xD800"});
}

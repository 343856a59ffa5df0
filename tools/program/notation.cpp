// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "notation.hpp"

#include <algorithm>
#include <iterator>

namespace tools {
namespace {

using zolt::i18n::message_item;

constexpr char separator = '\1';

struct keyword {
    std::string_view word;
    message_item::type_t type;
};

// The first word of a type is the one that is written.
constexpr keyword keywords[] = {
    {"value", message_item::value},
    {"string", message_item::string},
    {"number", message_item::number},
    {"int", message_item::int_},
    {"double", message_item::double_},
    {"time", message_item::time},
    {"date", message_item::date},
    {"memory", message_item::memory},
    {"mem", message_item::memory},
    {"memory_unit", message_item::memory_unit},
    {"mem_unit", message_item::memory_unit},
    {"metric", message_item::metric},
    {"metric_unit", message_item::metric_unit},
    {"duration", message_item::duration},
    {"value", value_argument},
};

keyword const* find_type(std::string_view word) {
    auto const found = std::find_if(std::begin(keywords), std::end(keywords),
                                    [word](keyword const& known) { return known.word == word; });
    return found == std::end(keywords) ? nullptr : found;
}

// Takes what stands before the mark, and the mark, off the front of the text.
std::string_view take(std::string_view& text, std::string_view marks) {
    auto const end = text.find_first_of(marks);
    std::string_view const taken = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return taken;
}

void append_doubling(ustring8& line, std::string_view text, std::string_view doubled) {
    for (char const c : text) {
        line += c;
        if (doubled.find(c) != std::string_view::npos) line += c;
    }
}

void append_option(ustring8& line, std::string_view key, std::string_view value) {
    line.append(" ").append(key).append("=");
    if (!value.empty() && value.find_first_of(" \t\n\"{}") == std::string_view::npos) {
        line.append(value);
        return;
    }
    line += '"';
    append_doubling(line, value, "\"");
    line += '"';
}

void append_placeholder(ustring8& line, message_item const& item) {
    ustring8 const data = item.data();
    std::string_view rest = data;
    line.append("{").append(take(rest, {&separator, 1})).append(":").append(type_keyword(item.type()));
    while (!rest.empty()) {
        std::string_view const key = take(rest, {&separator, 1});
        append_option(line, key, take(rest, {&separator, 1}));
    }
    line += '}';
}

message_item parse_placeholder(std::string_view text) {
    ustring8 data{std::string(take(text, ":"))};
    keyword const* const known = find_type(take(text, " "));
    while (!text.empty()) {
        std::string_view const key = take(text, "=");
        (data += separator).append(key);
        (data += separator).append(take(text, " "));
    }
    return message_item(data, known ? known->type : message_item::string);
}

} // namespace

std::string_view type_keyword(message_item::type_t type) {
    auto const found = std::find_if(std::begin(keywords), std::end(keywords),
                                    [type](keyword const& known) { return known.type == type; });
    return found == std::end(keywords) ? std::string_view("?") : found->word;
}

std::optional<message_item::type_t> type_of_keyword(std::string_view word) {
    keyword const* const known = find_type(word);
    return known ? std::optional(known->type) : std::nullopt;
}

ustring8 notation(zolt::i18n::message_t const& message) {
    ustring8 line;
    for (message_item const& item : message) {
        if (item.type() == message_item::value) {
            append_doubling(line, item.data(), "{}");
        } else {
            append_placeholder(line, item);
        }
    }
    return line;
}

zolt::i18n::message_t::items_type parse_notation(std::string_view text) {
    zolt::i18n::message_t::items_type items;
    ustring8 literal;
    while (!text.empty()) {
        char const c = text.front();
        text.remove_prefix(1);
        bool const is_brace = c == '{' || c == '}';
        bool const is_doubled = is_brace && !text.empty() && text.front() == c;
        if (is_doubled) text.remove_prefix(1);
        if (c != '{' || is_doubled) {
            literal += c;
            continue;
        }
        if (!literal.empty()) items.emplace_back(literal);
        literal.clear();
        items.push_back(parse_placeholder(take(text, "}")));
    }
    if (!literal.empty()) items.emplace_back(literal);
    return items;
}

} // namespace tools

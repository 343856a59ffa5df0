// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "render_values.hpp"

#include <zolt/strings/string_utility.hpp>
#include <zolt/types/variant.hpp>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>
#include <string_view>

namespace tools {
namespace {

using zolt::types::variant;
using conversion = std::optional<variant> (*)(ustring8 const&);

// The whole text, decimal or hexadecimal after "0x", within the range of the type.
template <typename Integer>
std::optional<variant> to_integer(ustring8 const& text) {
    std::string_view digits = text;
    bool const is_hexadecimal = digits.substr(0, 2) == "0x" || digits.substr(0, 2) == "0X";
    if (is_hexadecimal) digits.remove_prefix(2);
    Integer value{};
    auto const end = digits.data() + digits.size();
    auto const result = std::from_chars(digits.data(), end, value, is_hexadecimal ? 16 : 10);
    if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
    return variant(value);
}

std::optional<variant> to_double(ustring8 const& text) {
    double value = 0;
    auto const end = text.data() + text.size();
    auto const result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
    return variant(value);
}

std::optional<variant> to_bool(ustring8 const& text) {
    constexpr std::string_view yes[] = {"true", "yes", "on", "1"};
    constexpr std::string_view no[] = {"false", "no", "off", "0"};
    ustring8 const word = zolt::strings::to_lower(text);
    auto const is_in = [&](auto const& words) {
        return std::find(std::begin(words), std::end(words), word) != std::end(words);
    };
    if (is_in(yes)) return variant(true);
    if (is_in(no)) return variant(false);
    return std::nullopt;
}

std::optional<variant> to_text(ustring8 const& text) { return variant(text); }

struct value_type {
    std::string_view name;
    conversion convert;
};

constexpr value_type value_types[] = {
    {"int", to_integer<long long>},
    {"uint", to_integer<unsigned long long>},
    {"double", to_double},
    {"bool", to_bool},
    {"string", to_text},
};

bool read_value(session const& session, ustring8 const& value, zolt::generic::varg_list& arguments) {
    auto const equal_sign = value.find('=');
    ustring8 const target = value.substr(0, equal_sign);
    auto const colon = target.rfind(':');
    ustring8 const name = target.substr(0, colon);
    ustring8 const type = colon == ustring8::npos ? ustring8("string") : ustring8(target.substr(colon + 1));
    if (equal_sign == ustring8::npos || name.empty()) {
        session.complain(session.texts.get(phrase::bad_argument, {{"argument", value}}));
        return false;
    }
    ustring8 const content = value.substr(equal_sign + 1);
    auto const known = std::find_if(std::begin(value_types), std::end(value_types),
                                    [&](value_type const& candidate) { return candidate.name == type; });
    if (known == std::end(value_types)) {
        session.complain(session.texts.get(phrase::bad_type, {{"name", name}, {"type", type}}));
        return false;
    }
    std::optional<variant> const converted = known->convert(content);
    if (!converted) {
        session.complain(
            session.texts.get(phrase::bad_value, {{"name", name}, {"type", type}, {"value", content}}));
        return false;
    }
    if (arguments.push_back(name, *converted)) return true;
    session.complain(session.texts.get(phrase::repeated_argument, {{"name", name}}));
    return false;
}

} // namespace

bool read_values(session const& session, std::vector<ustring8> const& values, zolt::generic::varg_list& arguments) {
    return std::all_of(values.begin(), values.end(),
                       [&](ustring8 const& value) { return read_value(session, value, arguments); });
}

} // namespace tools

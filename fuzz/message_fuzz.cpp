// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Messages of any items with any options and arguments: a message is its items' texts, in every encoding. The
// formatters with well-formed options, against plain arithmetic and the C library.
#include "input.hpp"

#include <zolt/i18n/_private/format.hpp>
#include <zolt/i18n/format_value.hpp>
#include <zolt/i18n/message.hpp>
#include <zolt/strings/unicode.hpp>

#include <cmath>

namespace {

using namespace zolt::i18n;
using fuzz::check;
using zolt::generic::varg_list;
using zolt::strings::ustring8;
using zolt::types::variant;

variant any_value(fuzz::input& in) {
    switch (in.below(7)) {
    case 0:
        return {};
    case 1:
        return in.number<long long>();
    case 2:
        return in.number<unsigned long long>();
    case 3:
        return in.number<double>();
    case 4:
        return in.number<short>();
    case 5:
        return zolt::strings::utf8_to_utf16(in.text());
    default:
        return in.text();
    }
}

ustring8 plain_text(message_item const& item, varg_list const& arguments) {
    if (item.type() == message_item::value) return item.data();
    ustring8 const name = item.data().substr(0, item.data().find('\1'));
    bool const unknown = item.type() == message_item::number || item.type() == message_item::time ||
                         item.type() == message_item::date || item.type() > message_item::duration;
    if (unknown || name.empty() || !arguments.has_argument(name)) return "?invalid?";
    variant const value = arguments.at(name).value();
    if (item.type() == message_item::string) return value.as_utf8();
    ustring8 const text = format_value(item.type(), value, item.data());
    check(text.size() <= 3 * 4096, "no more than a field or a precision of 4096 and the largest double");
    return text == "-0" ? ustring8("?invalid?") : text;
}

std::string described(varg_list const& arguments) {
    std::string all;
    for (auto const& argument : arguments) all += argument.name() + '\2' + argument.value().as_string() + '\n';
    return all;
}

void check_message(fuzz::input& in) {
    varg_list arguments;
    for (unsigned count = in.below(4); count > 0; --count) {
        ustring8 const name = in.text();
        arguments.push_back(name, any_value(in));
    }
    std::string const before = described(arguments);
    message_t::items_type items;
    ustring8 expected;
    unsigned placeholders = 0;
    bool valid = true;
    while (!in.empty() && items.size() < 20) {
        auto const type = static_cast<message_item::type_t>(in.below(14));
        message_item const& item = items.emplace_back(in.text(), type);
        expected += plain_text(item, arguments);
        check(item.as_string(arguments) == plain_text(item, arguments), "an item's text");
        placeholders += type != message_item::value;
        valid &= type == message_item::value || (!item.name().empty() && arguments.has_argument(item.name()));
    }
    message_t const message("m", items);
    check(message.as_utf8(arguments) == expected && message.as_string(arguments) == expected,
          "a message is its items");
    check(message.as_utf16(arguments) == zolt::strings::utf8_to_utf16(expected), "in UTF-16");
    check(message.as_utf32(arguments) == zolt::strings::utf8_to_utf32(expected), "in UTF-32");
    check(message.argument_count() == placeholders, "argument_count");
    valid = valid && !items.empty() && arguments.count() >= placeholders;
    check(message.has_valid_args(arguments) == valid, "has_valid_args");
    check(described(arguments) == before, "rendering changes no argument");
}

std::string filled(std::string const& text, std::size_t field, char with) {
    return std::string(field > text.size() ? field - text.size() : 0, with) + text;
}

struct base_form {
    char const* name;
    char const* prefix;
    unsigned base;
};

std::string plain_int(long long value, base_form const& form, std::size_t field) {
    static constexpr std::string_view symbols = "0123456789abcdef";
    auto magnitude = static_cast<unsigned long long>(value);
    if (value < 0) magnitude = 0 - magnitude;
    std::string digits;
    do digits.insert(0, 1, symbols[static_cast<unsigned>(magnitude % form.base)]);
    while ((magnitude /= form.base) > 0);
    if (form.base == 10) {
        std::size_t const last = form.name[0] == 's' ? digits.size() : 0;
        for (std::size_t i = last; i > 3;) digits.insert(i -= 3, 1, ' ');
        return filled((value < 0 ? "-" : "") + digits, field, ' ');
    }
    std::size_t const prefix = std::strlen(form.prefix);
    digits = filled(digits, field > prefix ? field - prefix : 0, '0');
    unsigned sum = 1; // the complement: each digit from the highest one, and 1 to it all
    for (std::size_t i = digits.size(); value < 0 && i-- > 0; sum /= form.base) {
        sum += form.base - 1 - static_cast<unsigned>(symbols.find(digits[i]));
        digits[i] = symbols[sum % form.base];
    }
    return form.prefix + digits;
}

void check_double(double value, unsigned precision, std::size_t field) {
    char exact[600];
    std::snprintf(exact, sizeof exact, "%.*f", static_cast<int>(precision), value);
    std::string const options = "precision\1" + std::to_string(precision) + "\1fieldsize\1" + std::to_string(field);
    std::string const text = _private::format_double(value, options);
    bool const fits = field == 0 || std::strlen(exact) <= field;
    check(fits ? text == filled(exact, field, ' ') : text.size() == field, "a double in its field");
}

/// The parts of a duration sum up to it.
void check_duration(double seconds, unsigned precision, bool short_form) {
    std::string const options =
        "precision\1" + std::to_string(precision) + "\1short_form\1" + (short_form ? "true" : "false");
    ustring8 const text = _private::format_duration(seconds, options);
    if (!std::isfinite(seconds)) return check(text == "-0", "no duration");
    if (std::fabs(seconds) > 1e12 || text == "-0") return;
    double sum = 0;
    for (char const* at = text.c_str(); *at != '\0';) {
        char* unit;
        double const part = std::strtod(at, &unit);
        unit += std::strspn(unit, " ");
        sum += part * (*unit == 'd' ? 86400 : *unit == 'h' ? 3600 : *unit == 'm' ? 60 : 1);
        at = unit + std::strcspn(unit, " ");
    }
    check(std::fabs(sum - seconds) <= 0.51 * std::pow(10, -double(precision)) + std::fabs(seconds) * 1e-12,
          "its parts");
}

void check_memory(unsigned long long value) {
    static constexpr char const* units[] = {"B", "KB", "MB", "GB", "TB", "PB", "EB"};
    ustring8 unit;
    ustring8 const text = _private::format_memory(value, "", unit);
    std::size_t steps = 0;
    for (; value >= 1024; value /= 1024) ++steps;
    check(text == std::to_string(value) && unit == units[steps], "a memory size");
}

} // namespace

void fuzz::run(input in) {
    static constexpr base_form forms[] = {
        {"dec", "", 10}, {"spaced_dec", "", 10}, {"hex", "0x", 16}, {"oct", "o", 8}, {"bin", "b", 2}};
    auto const number = input(in).number<long long>();
    auto const real = input(in).number<double>();
    unsigned const field = in.below(90);
    unsigned const precision = in.below(12);
    for (base_form const& form : forms) {
        std::string const options = "base\1" + std::string(form.name) + "\1fieldsize\1" + std::to_string(field);
        check(_private::format_int(number, options) == plain_int(number, form, field), "an integer in its field");
    }
    for (double const value : {real, static_cast<double>(number), static_cast<double>(number) / 1e9}) {
        check_double(value, precision, field);
        check_duration(value, precision, field % 2 == 1);
    }
    check_memory(static_cast<unsigned long long>(number));
    check_message(in);
}

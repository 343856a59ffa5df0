// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Each formatter has a settings struct with its defaults and a table of option keys that write into
// it. read_options walks the option text in place, without splitting it into strings; the formatting
// itself starts only when all options are known to be good. All of them append to a text, so that
// messages are rendered without strings of their own for every value.
#include <zolt/i18n/_private/format.hpp>

#include <zolt/generic/convert/x_to_str.hpp>
#include <zolt/i18n/format_private.hpp>

#include <algorithm>
#include <cfenv>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <string_view>
#include <typeinfo>

#include <langinfo.h>

namespace ZOLT_2_18::i18n::_private {
namespace {

using std::string_view;
using strings::ustring8;

constexpr long max_width = 4096;

// -- Options ------------------------------------------------------------------------------------

/// Yields the pieces between separators one by one. As in strings::split_string an empty piece counts
/// unless it is the last one. Every piece is followed in memory by a separator or a NUL, as the options
/// are.
class option_pieces {
public:
    explicit option_pieces(string_view options) noexcept : m_rest(options) {}

    bool next(string_view& piece) noexcept {
        if (m_rest.empty()) return false;
        piece = m_rest.substr(0, m_rest.find(option_separator));
        m_rest.remove_prefix(std::min(piece.size() + 1, m_rest.size()));
        return true;
    }

private:
    string_view m_rest;
};

bool is_leading_part(string_view text, string_view keyword) noexcept { return keyword.starts_with(text); }

/// The first row of which the text is a leading part of the keyword, null when there is none.
template <typename Row, std::size_t Count>
Row const* find_keyword(Row const (&table)[Count], string_view text) noexcept {
    auto const row = std::find_if(std::begin(table), std::end(table), [text](Row const& candidate) {
        return is_leading_part(text, candidate.keyword);
    });
    return row == std::end(table) ? nullptr : row;
}

template <typename Settings>
struct option {
    string_view keyword;
    bool (*read)(Settings&, string_view); ///< false for a value that will not do
};

/// False for an unknown key, a key without a value and a value that will not do.
template <typename Settings, std::size_t Count>
bool read_options(string_view options, option<Settings> const (&table)[Count], Settings& settings) {
    option_pieces pieces(options);
    for (string_view key, value; pieces.next(key);) {
        option<Settings> const* const known = find_keyword(table, key);
        if (known == nullptr || !pieces.next(value) || !known->read(settings, value)) return false;
    }
    return true;
}

/// Reads as atol does, so a text without digits is 0. A number too large for a long is out of range
/// at either width of long.
bool read_width(string_view text, int& width) noexcept {
    long const number = std::strtol(text.data(), nullptr, 10);
    if (number < 0 || number > max_width) return false;
    width = static_cast<int>(number);
    return true;
}

// -- Text ---------------------------------------------------------------------------------------

std::size_t as_size(int width) noexcept { return static_cast<std::size_t>(width); }

void append_right_aligned(std::string& text, string_view part, int fieldsize) {
    if (part.size() < as_size(fieldsize)) text.append(as_size(fieldsize) - part.size(), ' ');
    text.append(part);
}

/// One conversion of printf, "%f" or "%e".
enum class notation { fixed, scientific };

int print(char* buffer, std::size_t size, notation form, int width, int precision, double value) {
    return form == notation::fixed ? std::snprintf(buffer, size, "%*.*f", width, precision, value)
                                   : std::snprintf(buffer, size, "%*.*e", width, precision, value);
}

ustring8 printed(notation form, int width, int precision, double value) {
    char buffer[128];
    int const length = print(buffer, sizeof buffer, form, width, precision, value);
    if (length < 0) return failed_format;
    if (as_size(length) < sizeof buffer) return ustring8(buffer, as_size(length));
    ustring8 text(as_size(length), '\0');
    print(text.data(), text.size() + 1, form, width, precision, value);
    return text;
}

/// The scientific form in exactly `fieldsize` characters.
ustring8 squeezed(double value, int precision, int fieldsize) {
    ustring8 text = printed(notation::scientific, fieldsize, precision, value);
    auto const exponent = text.rfind('e');
    if (exponent != ustring8::npos && text.size() - exponent > 4) {
        text.erase(exponent + 2, 1);
        if (text.size() < as_size(fieldsize)) text.insert(0, 1, ' ');
    }
    if (text.size() > as_size(fieldsize)) text.resize(as_size(fieldsize));
    return text;
}

void append_fixed(std::string& text, string_view fixed, double value, int precision, int fieldsize) {
    if (fieldsize == 0 || fixed.size() <= as_size(fieldsize)) {
        append_right_aligned(text, fixed, fieldsize);
    } else {
        text += squeezed(value, precision, fieldsize);
    }
}

/// True when printf writes a point and rounds to the nearest, as std::to_chars does.
bool is_printf_plain() noexcept {
    char const* const point = ::nl_langinfo(RADIXCHAR);
    return point[0] == '.' && point[1] == '\0' && std::fegetround() == FE_TONEAREST;
}

void append_double(std::string& text, double value, int precision, int fieldsize) {
    char buffer[128];
    if (std::isfinite(value) && is_printf_plain()) {
        auto const written = std::to_chars(buffer, std::end(buffer), value, std::chars_format::fixed, precision);
        if (written.ec == std::errc()) {
            return append_fixed(text, string_view(buffer, written.ptr), value, precision, fieldsize);
        }
    }
    append_fixed(text, printed(notation::fixed, fieldsize, precision, value), value, precision, fieldsize);
}

// -- Integers -----------------------------------------------------------------------------------

struct numeral_form {
    string_view keyword;
    string_view prefix;
    unsigned int base;
    bool grouped;
};

constexpr numeral_form numeral_forms[] = {
    {"dec", "", 10, false},   {"default", "", 10, false}, {"spaced_dec", "", 10, true},
    {"hex", "0x", 16, false}, {"oct", "o", 8, false},     {"bin", "b", 2, false},
};

struct int_settings {
    numeral_form const* form = numeral_forms;
    int fieldsize = 0;
};

bool read_base(int_settings& settings, string_view text) {
    settings.form = find_keyword(numeral_forms, text);
    return settings.form != nullptr;
}

constexpr option<int_settings> int_options[] = {
    {"base", read_base},
    {"fieldsize", [](int_settings& settings, string_view text) { return read_width(text, settings.fieldsize); }},
};

constexpr std::size_t digit_buffer = 66;

/// Puts a blank before every group of three digits but the first.
void group_digits(ustring8& text) {
    std::size_t const first_digit = text[0] == '-' ? 1 : 0;
    for (std::size_t position = text.size(); position > first_digit + 3;) {
        position -= 3;
        text.insert(position, 1, ' ');
    }
}

template <typename Integer>
void append_decimal(std::string& text, Integer value) {
    char digits[digit_buffer];
    char const* const end = std::to_chars(digits, std::end(digits), value).ptr;
    text.append(digits, static_cast<std::size_t>(end - digits));
}

void append_decimal_form(std::string& text, long long value, int_settings const& settings) {
    ustring8 digits;
    append_decimal(digits, value);
    if (settings.form->grouped) group_digits(digits);
    append_right_aligned(text, digits, settings.fieldsize);
}

constexpr char digit_characters[] = "0123456789abcdef";

/// Turns the digits of a magnitude other than zero into those of base^n minus the magnitude, for any n
/// of at least the digits' count: zeros at the end stay, the last other digit is taken from the
/// base, all before it from the base less one.
void complement(char* first, char* last, unsigned int base) {
    auto const taken_from = [](unsigned int minuend, char digit) {
        return digit_characters[minuend - static_cast<unsigned int>(string_view(digit_characters).find(digit))];
    };
    while (last[-1] == '0') --last;
    --last;
    *last = taken_from(base, *last);
    std::transform(first, last, first, [&](char digit) { return taken_from(base - 1, digit); });
}

void append_prefixed(std::string& text, long long value, int_settings const& settings) {
    unsigned int const base = settings.form->base;
    string_view const prefix = settings.form->prefix;
    auto const bits = static_cast<unsigned long long>(value);
    char digits[digit_buffer];
    generic::convert::ulltoa(value < 0 ? 0 - bits : bits, digits, base);
    std::size_t const count = string_view(digits).size();
    if (value < 0) complement(digits, digits + count, base);

    std::size_t const width = std::max(as_size(settings.fieldsize), prefix.size() + count);
    text.append(prefix);
    text.append(width - prefix.size() - count, value < 0 ? digit_characters[base - 1] : '0');
    text.append(digits, count);
}

// -- Floating-point numbers ---------------------------------------------------------------------

struct double_settings {
    int precision = 2;
    int fieldsize = 0;
    bool has_precision = false;
};

bool read_precision(double_settings& settings, string_view text) {
    settings.has_precision = true;
    return read_width(text, settings.precision);
}

bool read_fieldsize(double_settings& settings, string_view text) { return read_width(text, settings.fieldsize); }

constexpr option<double_settings> double_options[] = {
    {"precision", read_precision},
    {"fieldsize", read_fieldsize},
};

// -- Durations ----------------------------------------------------------------------------------

struct duration_settings {
    string_view precision = "2"; ///< as written; an empty one will not do, whatever comes before it
    bool short_form = false;
};

bool read_duration_precision(duration_settings& settings, string_view text) {
    settings.precision = text;
    int checked;
    return read_width(text, checked);
}

bool read_short_form(duration_settings& settings, string_view text) {
    settings.short_form = is_leading_part(text, "true");
    return settings.short_form || is_leading_part(text, "false");
}

constexpr option<duration_settings> duration_options[] = {
    {"precision", read_duration_precision},
    {"short_form", read_short_form},
};

struct duration_words {
    char const* days;
    char const* hours;
    char const* minutes;
    char const* seconds;
};

constexpr duration_words long_words = {" dy ", " hr ", " min ", " sec"};
constexpr duration_words short_words = {"d ", "h ", "m ", "s"};

constexpr double seconds_per_day = 86400;
constexpr double seconds_per_hour = 3600;
constexpr double seconds_per_minute = 60;

struct division {
    double whole;
    double rest;
};

/// The remainder is exact; what it leaves is a whole number of units, but for the rounding of amounts
/// beyond 2^60. Adding zero makes a negative zero positive.
division divide(double amount, double unit) noexcept {
    double const rest = std::fmod(amount, unit) + 0.0;
    return {std::round((amount - rest) / unit), rest};
}

void append_whole(std::string& text, double whole, char const* word) {
    append_decimal(text, static_cast<long long>(whole));
    text.append(word);
}

// -- Amounts with a unit ------------------------------------------------------------------------

constexpr string_view any_keyword = "any";
constexpr int any_unit = std::numeric_limits<int>::max();

struct unit_settings : double_settings {
    string_view target = any_keyword;
    string_view base;
};

/// Keeps a unit as written; which texts are units is the formatter's to say.
template <string_view unit_settings::*Unit>
bool read_unit(unit_settings& settings, string_view text) {
    settings.*Unit = text;
    return true;
}

constexpr option<unit_settings> unit_options[] = {
    {"target_unit", read_unit<&unit_settings::target>},
    {"base_unit", read_unit<&unit_settings::base>},
    {"precision", [](unit_settings& settings, string_view text) { return read_precision(settings, text); }},
    {"fieldsize", [](unit_settings& settings, string_view text) { return read_fieldsize(settings, text); }},
};

// -- Memory sizes -------------------------------------------------------------------------------

constexpr string_view memory_letters = "KMGTPEZY";
constexpr int unknown_memory_unit = -1;
constexpr int last_memory_unit = static_cast<int>(memory_letters.size());

int memory_unit_index(string_view unit) noexcept {
    if (unit == "B") return 0;
    auto const letter = unit.size() < 2 || unit[1] != 'B' ? string_view::npos : memory_letters.find(unit[0]);
    return letter == string_view::npos ? unknown_memory_unit : static_cast<int>(letter) + 1;
}

ustring8 memory_unit_name(int index) {
    ustring8 name;
    if (index > 0) name += memory_letters[static_cast<std::size_t>(index - 1)];
    return name += 'B';
}

int target_memory_unit(string_view text) noexcept {
    int const index = memory_unit_index(text);
    return index == unknown_memory_unit && is_leading_part(text, any_keyword) ? any_unit : index;
}

void divide_by_1024(unsigned long long& amount) noexcept { amount >>= 10; }
void divide_by_1024(double& amount) noexcept { amount *= 0x1p-10; }

/// False when the product does not fit.
bool multiply_by_1024(unsigned long long& amount) noexcept {
    bool const fits = amount <= std::numeric_limits<unsigned long long>::max() >> 10;
    amount <<= 10;
    return fits;
}
bool multiply_by_1024(double& amount) noexcept {
    amount *= 1024;
    return std::isfinite(amount);
}

/// Brings an amount from the unit `index` to the target, which for any_unit is the first in which it
/// is below 1024. False when the amount or the unit goes out of range.
template <typename Number>
bool rescale(Number& amount, int& index, int target) noexcept {
    for (; target == any_unit ? amount >= 1024 : index < target; ++index) divide_by_1024(amount);
    for (; index > target; --index) {
        if (!multiply_by_1024(amount)) return false;
    }
    return index <= last_memory_unit;
}

bool holds_floating_point(types::variant const& value) {
    std::type_info const& type = value.type();
    return type == typeid(double) || type == typeid(float) || type == typeid(long double);
}

// -- Metric values ------------------------------------------------------------------------------

constexpr int unknown_metric_prefix = -1000;
constexpr int first_metric_power = -6;
constexpr int last_metric_power = 8;

struct metric_prefix {
    string_view symbol;
    char const* name;
};

/// Ordered by power, from first_metric_power on.
constexpr metric_prefix metric_prefixes[] = {
    {"a", "atto"},  {"f", "femto"}, {"p", "pico"}, {"n", "nano"},  {"mc", "micro"},
    {"m", "milli"}, {"", ""},       {"k", "kilo"}, {"M", "mega"},  {"G", "giga"},
    {"T", "tera"},  {"P", "peta"},  {"E", "exa"},  {"Z", "zetta"}, {"Y", "yotta"},
};

constexpr double powers_of_1000[] = {1e0,  1e3,  1e6,  1e9,  1e12, 1e15, 1e18, 1e21,
                                     1e24, 1e27, 1e30, 1e33, 1e36, 1e39, 1e42};

int metric_power(string_view symbol) noexcept {
    if (is_leading_part(symbol, "base")) return 0;
    auto const prefix =
        std::find_if(std::begin(metric_prefixes), std::end(metric_prefixes),
                     [symbol](metric_prefix const& candidate) { return candidate.symbol == symbol; });
    if (prefix == std::end(metric_prefixes)) return unknown_metric_prefix;
    return static_cast<int>(prefix - metric_prefixes) + first_metric_power;
}

int target_metric_power(string_view text) noexcept {
    int const power = metric_power(text);
    return power == unknown_metric_prefix && is_leading_part(text, any_keyword) ? any_unit : power;
}

/// The amount in a unit that is 1000^powers times larger, rounded once.
double scaled(double amount, int powers) noexcept {
    return powers < 0 ? amount * powers_of_1000[-powers] : amount / powers_of_1000[powers];
}

/// The power in which the magnitude is at least 1 and below 1000, or the nearest one that has a name.
int natural_power(double amount, int base) noexcept {
    auto const magnitude = [&](int power) { return std::abs(scaled(amount, power - base)); };
    int power = base;
    if (amount == 0) return power;
    while (power < last_metric_power && magnitude(power) >= 1000) ++power;
    while (power > first_metric_power && magnitude(power) < 1) --power;
    return power;
}

/// What `append` makes of an empty text, or the failure mark.
template <typename Append>
ustring8 formatted(Append append) {
    ustring8 text;
    if (!append(text)) text = failed_format;
    return text;
}

} // namespace

bool append_int(std::string& text, long long value, string_view options) {
    if (options.empty()) {
        append_decimal(text, value);
        return true;
    }
    int_settings settings;
    if (!read_options(options, int_options, settings)) return false;
    if (settings.form->base == 10) {
        append_decimal_form(text, value, settings);
    } else {
        append_prefixed(text, value, settings);
    }
    return true;
}

bool append_double(std::string& text, double value, string_view options) {
    double_settings settings;
    if (!read_options(options, double_options, settings)) return false;
    append_double(text, value, settings.precision, settings.fieldsize);
    return true;
}

bool append_duration(std::string& text, double seconds, string_view options) {
    duration_settings settings;
    int precision;
    if (!read_options(options, duration_options, settings) || !std::isfinite(seconds)) return false;
    if (settings.precision.empty() || !read_width(settings.precision, precision)) return false;

    division const days = divide(seconds, seconds_per_day);
    if (days.whole < -0x1p63 || days.whole >= 0x1p63) return false;
    division const hours = divide(days.rest, seconds_per_hour);
    division const minutes = divide(hours.rest, seconds_per_minute);

    duration_words const& words = settings.short_form ? short_words : long_words;
    bool const with_days = days.whole != 0;
    bool const with_hours = with_days || hours.whole != 0;
    bool const with_minutes = with_hours || minutes.whole != 0;
    if (with_days) append_whole(text, days.whole, words.days);
    if (with_hours) append_whole(text, hours.whole, words.hours);
    if (with_minutes) append_whole(text, minutes.whole, words.minutes);

    std::size_t const start = text.size();
    append_double(text, minutes.rest, precision, 0);
    if (string_view(text).substr(start) == failed_format) return false;
    text.append(words.seconds);
    return true;
}

bool append_memory(std::string& text, types::variant const& value, string_view options, ustring8& unit_out) {
    unit_settings settings;
    settings.base = "B";
    if (!read_options(options, unit_options, settings)) return false;
    int index = memory_unit_index(settings.base);
    int const target = target_memory_unit(settings.target);
    if (index == unknown_memory_unit || target == unknown_memory_unit) return false;

    if (settings.has_precision || holds_floating_point(value)) {
        double amount = value.as_double();
        if (!std::isfinite(amount) || !rescale(amount, index, target)) return false;
        append_double(text, amount, settings.precision, settings.fieldsize);
    } else {
        unsigned long long amount = value.as_uint64();
        if (!rescale(amount, index, target)) return false;
        ustring8 digits;
        append_decimal(digits, amount);
        append_right_aligned(text, digits, settings.fieldsize);
    }
    unit_out = memory_unit_name(index);
    return true;
}

bool append_metric(std::string& text, types::variant const& value, string_view options, ustring8& unit_out) {
    unit_settings settings;
    if (!read_options(options, unit_options, settings)) return false;
    int const base = metric_power(settings.base);
    int target = target_metric_power(settings.target);
    if (base == unknown_metric_prefix || target == unknown_metric_prefix) return false;

    double const amount = value.as_double();
    if (target == any_unit) target = natural_power(amount, base);
    append_double(text, scaled(amount, target - base), settings.precision, settings.fieldsize);
    unit_out = metric_prefixes[target - first_metric_power].name;
    return true;
}

ustring8 format_int(long long value, ustring8 const& options) {
    return formatted([&](std::string& text) { return append_int(text, value, options); });
}

ustring8 format_double(double value, ustring8 const& options) {
    return formatted([&](std::string& text) { return append_double(text, value, options); });
}

ustring8 format_duration(double seconds, ustring8 const& options) {
    return formatted([&](std::string& text) { return append_duration(text, seconds, options); });
}

ustring8 format_memory(types::variant value, ustring8 const& options, ustring8& unit_out) {
    return formatted([&](std::string& text) { return append_memory(text, value, options, unit_out); });
}

ustring8 format_metric(types::variant value, ustring8 const& options, ustring8& unit_out) {
    return formatted([&](std::string& text) { return append_metric(text, value, options, unit_out); });
}

int thousands(ustring8 const& prefix) { return metric_power(prefix); }

int mem_prefix_index(ustring8 const& unit) { return memory_unit_index(unit); }

} // namespace ZOLT_2_18::i18n::_private

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Every integer function has two readers. The usual number goes through a short one for its kind of text, which
// gathers the digits unchecked and looks at the range afterwards. Any other text is read by a cursor that hands
// out the units one by one: the head of the text (blanks, sign, radix prefix) is read the same way for every type,
// then the magnitude is gathered in an unsigned word of 32 or 64 bits. Two numbers, the quotient and the remainder
// of the type's limit by the radix, tell before each digit whether it still fits, so that nothing overflows and no
// wider type is needed.
//
// Floating-point text is read by a stream unless the locale is the classic one. Then the digits are gathered in
// one pass, of which the first 19 nearly always decide; the C library is asked for the rest and for long double.
// What it accepts beyond a stream (infinities, not-a-number, hexadecimal digits) or differently (an exponent mark
// without digits) is sorted out around it.
#include <zolt/generic/convert/str_to_x.hpp>

#include <zolt/exceptions/exception.hpp>
#include <zolt/generic/convert/classic_locale_private.hpp>
#include <zolt/generic/convert/digit_block_private.hpp>
#include <zolt/generic/convert/nearest_binary_private.hpp>

#include <algorithm>
#include <array>
#include <cctype>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <locale>
#include <sstream>
#include <type_traits>

namespace ZOLT_2_18::generic::convert {
namespace {

using _private::digit_value;
using _private::digit_values;
using types::radix_t;

// --- Failures --------------------------------------------------------------------------------------------

enum class failure { invalid_radix, too_small, too_large, negative };

/// The published label and lines of the raise sites.
struct raise_sites {
    char const* label;
    unsigned int invalid_radix;
    unsigned int too_small;
    unsigned int too_large;
    unsigned int negative; ///< a negative number within the range of its unsigned type
};

constexpr raise_sites signed_sites{"strtointx", 132, 174, 175, 0};
constexpr raise_sites unsigned_sites{"strtouintx", 257, 300, 301, 316};

[[noreturn]] void raise(raise_sites const& at, failure what) {
    constexpr char const* file = "generic/convert/str_to_x";
    switch (what) {
    case failure::invalid_radix:
        throw exceptions::invalid_argument_value("invalid radix value, values of 0, 2-36 are the only valid values",
                                                 at.invalid_radix, file, at.label);
    case failure::too_large:
        throw exceptions::overflow_error("Number value is to large", at.too_large, file, at.label);
    case failure::too_small:
    case failure::negative:
        break;
    }
    throw exceptions::underflow_error("Number value is to small",
                                      what == failure::negative ? at.negative : at.too_small, file, at.label);
}

// --- Integers --------------------------------------------------------------------------------------------

constexpr std::uint32_t code(char unit) { return static_cast<unsigned char>(unit); }
constexpr std::uint32_t code(unsigned short unit) { return unit; }
constexpr std::uint32_t code(wchar_t unit) { return static_cast<std::uint32_t>(unit); }

/// Printable ASCII is a blank in no locale, so that the usual number asks the C library nothing.
bool is_blank(std::uint32_t unit) {
    if (unit > 0x20 && unit < 0x7F) return false;
    return unit <= 0xFF && std::isspace(static_cast<int>(unit)) != 0;
}

/// Hands out the units of a text of given length, or of one that ends before its NUL when that is 0.
template <typename C>
class cursor {
public:
    cursor(C const* text, unsigned long length)
        : m_next(text),
          m_left(length ? length : std::numeric_limits<unsigned long>::max()),
          m_bounded(length != 0) {}

    /// Goes on to the next unit; false at the end, which is not to be stepped over.
    bool step() {
        if (m_left == 0) return false;
        unit = next();
        return m_bounded || unit != 0;
    }

    /// The next unit, 0 at the end: for those who stop at a unit 0 anyway.
    std::uint32_t next() { return m_left-- ? code(*m_next++) : 0; }

    std::uint32_t unit = 0;

private:
    C const* m_next;
    unsigned long m_left;
    bool m_bounded;
};

/// Steps over the prefix and returns the radix that it selects, 0 when the text ends with it.
template <typename C>
std::uint32_t detect_radix(cursor<C>& at) {
    if (at.unit != '0' && at.unit != '\\') return 10;
    if (!at.step()) return 0;
    std::uint32_t const letter = at.unit | 0x20;
    if (letter != 'x' && letter != 'b') return 8;
    if (!at.step()) return 0;
    return letter == 'x' ? 16 : 2;
}

struct number_head {
    bool negative = false;
    std::uint32_t radix = 0; ///< 0: there is no number
};

/// Reads up to the first digit. Only empty text has no blanks to skip and comes to the radix check.
template <typename C>
number_head read_head(cursor<C>& at, radix_t::base radix, raise_sites const& sites) {
    number_head head;
    if (at.step()) {
        while (is_blank(at.unit)) {
            if (!at.step()) return head;
        }
    }
    head.negative = at.unit == '-';
    if ((head.negative || at.unit == '+') && !at.step()) return head;
    if (radix == 1 || radix > 36) raise(sites, failure::invalid_radix);
    head.radix = radix == radix_t::automatic ? detect_radix(at) : static_cast<std::uint32_t>(radix);
    if (digit_value(at.unit) >= head.radix) head.radix = 0;
    return head;
}

template <typename T>
struct magnitude_t {
    using word = std::conditional_t<sizeof(T) <= 4, std::uint32_t, std::uint64_t>;
    static constexpr word max = std::numeric_limits<T>::max();
    static constexpr word max_negative = max + std::is_signed_v<T>; ///< an unsigned type ignores the sign here

    word value;
    bool fits;
};

/// Gathers the digits from the current one on, up to one that makes the number too large for T. The
/// radix is a constant or a number.
template <typename T, typename Radix, typename C>
magnitude_t<T> read_magnitude(cursor<C>& at, Radix radix, bool negative) {
    using limits = magnitude_t<T>;
    using word = typename limits::word;
    word const cutoff = negative ? limits::max_negative / radix : limits::max / radix;
    word const last_digit = (negative ? limits::max_negative : limits::max) - cutoff * radix;
    word value = 0;
    for (auto digit = digit_value(at.unit); digit < radix; digit = digit_value(at.next())) {
        if (value > cutoff || (value == cutoff && digit > last_digit)) return {value, false};
        value = value * radix + digit;
    }
    return {value, true};
}

/// Reads any text.
template <typename T, typename C>
[[gnu::noinline]] T read_any(C const* text, unsigned long length, radix_t::base radix, bool throw_on_overflow) {
    constexpr bool is_signed = std::is_signed_v<T>;
    constexpr raise_sites const& sites = is_signed ? signed_sites : unsigned_sites;
    using limits = magnitude_t<T>;

    cursor<C> at(text, length);
    auto const [negative, base] = read_head(at, radix, sites);
    if (base == 0) return 0;
    auto magnitude = base == 10 ? read_magnitude<T>(at, std::integral_constant<std::uint32_t, 10>(), negative)
                                : read_magnitude<T>(at, base, negative);
    if (!magnitude.fits) {
        if (throw_on_overflow) raise(sites, negative ? failure::too_small : failure::too_large);
        magnitude.value = negative ? limits::max_negative : limits::max;
    }
    if (!negative) return static_cast<T>(magnitude.value);
    if constexpr (is_signed) return static_cast<T>(0 - magnitude.value);
    if (magnitude.value != 0 && throw_on_overflow) raise(sites, failure::negative);
    return 0;
}

// The usual number is read by one of the functions below: no blanks in front, nothing behind, few enough
// digits to gather them unchecked, within the range of its type. Whatever else turns up, read_any starts again
// from the beginning.

template <typename C>
std::uint64_t listed_value(C unit) {
    return sizeof(C) == 1 || code(unit) < 256 ? digit_values.of[code(unit)] : 36;
}

/// By radix: how many digits make a number of 64 bits whatever they are.
constexpr auto safe_counts = [] {
    std::array<unsigned char, 37> counts{};
    for (std::size_t radix = 2; radix < counts.size(); ++radix) {
        std::uint64_t largest = 0;
        for (; largest <= (std::numeric_limits<std::uint64_t>::max() - (radix - 1)) / radix; ++counts[radix]) {
            largest = largest * radix + (radix - 1);
        }
    }
    return counts;
}();

/// What a sign and a magnitude make of a T.
template <typename T>
struct signed_number {
    bool negative;

    bool can_be(std::uint64_t magnitude) const {
        constexpr auto max = static_cast<std::uint64_t>(std::numeric_limits<T>::max());
        if constexpr (std::is_signed_v<T>) return magnitude <= max + negative;
        return magnitude <= max && !negative;
    }
    T of(std::uint64_t magnitude) const {
        return static_cast<T>((magnitude ^ (0 - std::uint64_t{negative})) + negative);
    }
};

template <typename C>
C const* behind_sign(C const* text) {
    return text + ((*text == '-') | (*text == '+'));
}

/// The text ends before its NUL.
template <typename T, typename C>
[[gnu::noinline]] T read_terminated(C const* text, unsigned long length, radix_t::base radix,
                                    bool throw_on_overflow) {
    auto const unusual = [&] { return read_any<T>(text, length, radix, throw_on_overflow); };
    std::uint64_t const base = radix;
    if (base - 2 > 34) return unusual();
    signed_number<T> const number{*text == '-'};
    C const* const digits = behind_sign(text);
    C const* at = digits;
    std::uint64_t magnitude = 0;
    for (std::uint64_t digit = 0; (digit = listed_value(*at)) < base; ++at) magnitude = magnitude * base + digit;
    auto const count = static_cast<std::size_t>(at - digits);
    bool const is_usual = count - 1 < safe_counts[radix] && number.can_be(magnitude);
    return is_usual ? number.of(magnitude) : unusual();
}

/// Radix 10: one after the other up to seven digits, by eight from there on, the parts in front filled up with
/// zeros.
template <typename T>
[[gnu::always_inline]] inline T read_decimal(char const* text, unsigned long length, radix_t::base radix,
                                             bool throw_on_overflow) {
    using namespace _private;
    auto const unusual = [&] { return read_any<T>(text, length, radix, throw_on_overflow); };
    signed_number<T> const number{*text == '-'};
    char const* const digits = behind_sign(text);
    char const* const end = text + length;
    auto const count = static_cast<std::size_t>(end - digits);
    constexpr bool is_wide = sizeof(T) > 4; // more than 16 digits are too many for 32 bits
    if (count == 0 || count > (is_wide ? 19 : 16)) return unusual();

    if (count < 8) {
        std::uint32_t magnitude = 0, others = 0; // others is "negative" when there is a unit that is no digit
        auto left = digits - end;
        do {
            auto const digit = static_cast<unsigned char>(end[left] - '0');
            others |= 9u - digit;
            magnitude = magnitude * 10 + digit;
        } while (++left);
        bool const is_usual = static_cast<std::int32_t>(others) >= 0 && number.can_be(magnitude);
        return is_usual ? number.of(magnitude) : unusual();
    }
    auto const last = digit_values_at(end - 8);
    auto others = beyond_nine(last);
    std::uint64_t magnitude = decimal_number(last);
    if (count > 8) {
        auto const middle = count < 16 ? digit_values_at(digits) << (128 - 8 * count) : digit_values_at(end - 16);
        others |= beyond_nine(middle);
        magnitude += decimal_number(middle) * 100'000'000;
    }
    if (is_wide && count > 16) {
        auto const first = digit_values_at(digits) << (192 - 8 * count);
        others |= beyond_nine(first);
        magnitude += decimal_number(first) * 10'000'000'000'000'000;
    }
    return others == 0 && number.can_be(magnitude) ? number.of(magnitude) : unusual();
}

/// The number that 8 to 64 binary digits make; false when one is none.
inline bool read_binary(char const* digits, char const* end, std::uint64_t& number) {
    auto left = end - digits;
    std::uint64_t others = 0;
    for (; left > 8; digits += 8, left -= 8) {
        auto const values = _private::digit_values_at(digits);
        others |= _private::beyond_one(values);
        number = number << 8 | _private::binary_number(values);
    }
    auto const values = _private::digit_values_at(end - 8);
    number = number << left | (_private::binary_number(values) & ((1u << left) - 1));
    return (others | _private::beyond_one(values)) == 0;
}

/// Any radix, in a text of known length.
template <typename T, typename C>
[[gnu::noinline]] T read_bounded(C const* text, unsigned long length, radix_t::base radix, bool throw_on_overflow) {
    auto const unusual = [&] { return read_any<T>(text, length, radix, throw_on_overflow); };
    signed_number<T> const number{*text == '-'};
    C const* digits = behind_sign(text);
    C const* const end = text + length;
    std::uint64_t base = radix;
    if (base - 2 > 34) {
        if (base != 0 || digits == end || *digits == '\\') return unusual();
        if (*digits != '0') {
            if constexpr (sizeof(C) == 1) return read_decimal<T>(text, length, radix, throw_on_overflow);
            base = 10;
        } else {
            if (++digits == end) return 0;
            auto const letter = code(*digits) | 0x20;
            base = letter == 'x' ? 16 : letter == 'b' ? 2 : 8;
            digits += base != 8;
        }
    }
    if (static_cast<std::size_t>(end - digits) - 1 >= safe_counts[static_cast<std::size_t>(base)]) return unusual();
    std::uint64_t magnitude = 0;
    if constexpr (sizeof(C) == 1) {
        if (base == 2 && end - digits >= 8) {
            bool const is_usual = read_binary(digits, end, magnitude) && number.can_be(magnitude);
            return is_usual ? number.of(magnitude) : unusual();
        }
    }
    std::uint64_t others = 0; // "negative" when there is a unit that is no digit
    auto left = digits - end;
    do {
        auto const digit = listed_value(end[left]);
        others |= base - 1 - digit;
        magnitude = magnitude * base + digit;
    } while (++left);
    bool const is_usual = static_cast<std::int64_t>(others) >= 0 && number.can_be(magnitude);
    return is_usual ? number.of(magnitude) : unusual();
}

template <typename T, typename C>
[[gnu::always_inline]] inline T read_integer(C const* text, unsigned long length, radix_t::base radix,
                                             bool throw_on_overflow) {
    if (length == 0) return read_terminated<T>(text, length, radix, throw_on_overflow);
    if constexpr (sizeof(C) == 1) {
        if (radix == radix_t::decimal) return read_decimal<T>(text, length, radix, throw_on_overflow);
    }
    return read_bounded<T>(text, length, radix, throw_on_overflow);
}

// --- Floating point --------------------------------------------------------------------------------------

constexpr bool is_classic_blank(char unit) { return unit == ' ' || (unit >= '\t' && unit <= '\r'); }
constexpr bool is_digit(char unit) { return unit >= '0' && unit <= '9'; }
constexpr bool is_exponent_mark(char unit) { return unit == 'e' || unit == 'E'; }

locale_t c_locale() {
    static locale_t const locale = ::newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

void c_library_read(char const* text, char** stop, float& value) { value = ::strtof_l(text, stop, c_locale()); }
void c_library_read(char const* text, char** stop, double& value) { value = ::strtod_l(text, stop, c_locale()); }
void c_library_read(char const* text, char** stop, long double& value) {
    value = ::strtold_l(text, stop, c_locale());
}

/// Reads the number at `text`, which has no blanks in front, as the stream does: no infinities, no not-a-number,
/// no hexadecimal digits, and an exponent mark needs digits behind it.
long double c_library_number(char const* text) {
    char const* const digits = behind_sign(text);
    if (*digits != '.' && !is_digit(*digits)) return 0;
    if (digits[0] == '0' && (digits[1] | 0x20) == 'x') return *text == '-' ? -0.0L : 0.0L;
    char* stop = nullptr;
    long double value = 0;
    c_library_read(text, &stop, value);
    bool const is_dangling =
        is_exponent_mark(*stop) && std::none_of(text, static_cast<char const*>(stop), is_exponent_mark);
    return std::isinf(value) || is_dangling ? 0 : value;
}

/// Adds the digits at `at` to the end of a number and returns the place behind them. The number wraps round.
[[gnu::always_inline]] inline char const* gather_digits(char const* at, std::uint64_t& number) {
    for (; is_digit(*at); ++at) number = number * 10 + static_cast<unsigned char>(*at - '0');
    return at;
}

[[gnu::always_inline]] inline char const* gather_many_digits(char const* at, char const* end,
                                                             std::uint64_t& number) {
    for (; end - at >= 8; at += 8) {
        auto const values = _private::digit_values_at(at);
        if (_private::beyond_nine(values)) break;
        number = number * 100'000'000 + _private::decimal_number(values);
    }
    return gather_digits(at, number);
}

/// The number of 20 digits or more between `digits` and `end`, with one point or none among them, times ten to
/// the power of `exponent`. Its first 19 digits decide unless a limit between two values lies within their last.
/// Denormal values are the C library's, as in a stream: it rounds some that have one bit too many to even although
/// they lie beyond the middle.
template <typename T>
[[gnu::noinline]] T many_digits_number(char const* text, char const* digits, char const* end,
                                       std::int64_t exponent) {
    std::uint64_t number = 0;
    digits = std::find_if_not(digits, end, [](char unit) { return unit == '0' || unit == '.'; });
    for (int count = 0; count < 19 && digits != end; ++digits) {
        if (*digits == '.') continue;
        number = number * 10 + static_cast<std::uint64_t>(*digits - '0');
        ++count;
    }
    exponent += end - digits - (std::find(digits, end, '.') != end);
    T const below = _private::nearest_binary<T>(number, exponent);
    bool const is_decided = digits == end || below == _private::nearest_binary<T>(number + 1, exponent);
    if (is_decided && below > std::numeric_limits<T>::min()) return below;
    char* stop = nullptr;
    T value = 0;
    c_library_read(text, &stop, value);
    return std::abs(value);
}

template <typename T>
T classic_number(strings::ustring8 const& whole) {
    char const* text = whole.c_str(); // the NUL behind it ends each step below
    while (is_classic_blank(*text)) ++text;
    char const* const digits = behind_sign(text);
    char const* const end = whole.c_str() + whole.size();

    std::uint64_t number = 0;
    char const* at = gather_digits(digits, number);
    auto count = at - digits;
    std::int64_t exponent = 0;
    if (*at == '.') {
        char const* const fraction = ++at;
        at = gather_many_digits(fraction, end, number);
        exponent = fraction - at;
        count += at - fraction;
    }
    if (count == 0) return 0;
    char const* const digits_end = at;
    if (is_exponent_mark(*at)) {
        char const* const mark = behind_sign(at + 1);
        if (!is_digit(*mark)) return 0;
        constexpr std::int64_t enough = 100'000'000'000'000'000; // whatever digits are there
        std::int64_t written = 0;
        for (char const* digit = mark; is_digit(*digit); ++digit) {
            if (written < enough) written = written * 10 + (*digit - '0');
        }
        exponent += at[1] == '-' ? -written : written;
    }
    T const value = count <= 19 ? _private::nearest_binary<T>(number, exponent)
                                : many_digits_number<T>(text, digits, digits_end, exponent);
    if (value == std::numeric_limits<T>::infinity()) return 0;
    return *text == '-' ? -value : value;
}

template <>
long double classic_number(strings::ustring8 const& whole) {
    char const* text = whole.c_str();
    while (is_classic_blank(*text)) ++text;
    return c_library_number(text);
}

template <typename T>
[[gnu::noinline]] T streamed_number(strings::ustring8 const& text, std::locale const& locale) {
    std::istringstream stream(text);
    stream.imbue(locale);
    T value = 0;
    return stream >> value ? value : T{0};
}

template <typename T>
T read_number(strings::ustring8 const& text, std::locale const& locale) {
    return _private::is_classic(locale) ? classic_number<T>(text) : streamed_number<T>(text, locale);
}

} // namespace

bool is_space(char unit) { return is_blank(code(unit)); }
bool is_space(unsigned short unit) { return is_blank(code(unit)); }
bool is_space(wchar_t unit) { return is_blank(code(unit)); }

#define ZOLT_STR_TO_INTEGER(name, result, range)                                                                   \
    result name(char const* text, unsigned long length, radix_t::base radix, bool throw_on_overflow) {             \
        return read_integer<range>(text, length, radix, throw_on_overflow);                                        \
    }                                                                                                              \
    result name(unsigned short const* text, unsigned long length, radix_t::base radix, bool throw_on_overflow) {   \
        return read_integer<range>(text, length, radix, throw_on_overflow);                                        \
    }                                                                                                              \
    result name(wchar_t const* text, unsigned long length, radix_t::base radix, bool throw_on_overflow) {          \
        return read_integer<range>(text, length, radix, throw_on_overflow);                                        \
    }

ZOLT_STR_TO_INTEGER(str_to_int8, signed char, std::int8_t)
ZOLT_STR_TO_INTEGER(str_to_int16, short, std::int16_t)
ZOLT_STR_TO_INTEGER(str_to_short, short, std::int16_t)
ZOLT_STR_TO_INTEGER(str_to_int32, int, std::int32_t)
ZOLT_STR_TO_INTEGER(str_to_int, int, std::int32_t)
ZOLT_STR_TO_INTEGER(str_to_signed, int, std::int32_t)
ZOLT_STR_TO_INTEGER(str_to_long, long, std::int32_t)
ZOLT_STR_TO_INTEGER(str_to_int64, long long, std::int64_t)
ZOLT_STR_TO_INTEGER(str_to_uint8, unsigned char, std::uint8_t)
ZOLT_STR_TO_INTEGER(str_to_uint16, unsigned short, std::uint16_t)
ZOLT_STR_TO_INTEGER(str_to_uint32, unsigned int, std::uint32_t)
ZOLT_STR_TO_INTEGER(str_to_unsigned, unsigned int, std::uint32_t)
ZOLT_STR_TO_INTEGER(str_to_uint64, unsigned long long, std::uint64_t)

#undef ZOLT_STR_TO_INTEGER

float str_to_float(strings::ustring8 const& text) { return read_number<float>(text, std::locale()); }
float str_to_float(strings::ustring8 const& text, std::locale const& locale) {
    return read_number<float>(text, locale);
}
double str_to_double(strings::ustring8 const& text) { return read_number<double>(text, std::locale()); }
double str_to_double(strings::ustring8 const& text, std::locale const& locale) {
    return read_number<double>(text, locale);
}
long double str_to_long_double(strings::ustring8 const& text) {
    return read_number<long double>(text, std::locale());
}
long double str_to_long_double(strings::ustring8 const& text, std::locale const& locale) {
    return read_number<long double>(text, locale);
}

} // namespace ZOLT_2_18::generic::convert

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Text as integers of every type, width of text, radix and way to fail, against the rules of str_to_x.hpp
// written down plainly; numbers as text and back.
#include "input.hpp"

#include <zolt/exceptions/exception.hpp>
#include <zolt/generic/convert/str_to_x.hpp>
#include <zolt/generic/convert/x_to_str.hpp>

#include <limits>

namespace {

using namespace zolt::generic::convert;
using zolt::types::radix_t;

enum class fault { none, radix, too_large, too_small };

struct reading {
    bool bad_radix = false;
    bool negative = false;
    bool huge = false; ///< beyond 64 bits
    std::uint64_t magnitude = 0;
};

unsigned digit(char32_t unit) {
    if (unit >= '0' && unit <= '9') return unit - '0';
    if (unit >= 'a' && unit <= 'z') return unit - 'a' + 10;
    return unit >= 'A' && unit <= 'Z' ? unit - 'A' + 10 : 99;
}

reading read(std::u32string const& text, unsigned radix) {
    reading result;
    std::size_t at = 0;
    while (at < text.size() && (text[at] == ' ' || (text[at] >= 9 && text[at] <= 13))) ++at;
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) result.negative = text[at++] == '-';
    if (!text.empty() && at == text.size()) return result;
    result.bad_radix = radix == 1 || radix > 36;
    if (result.bad_radix || text.empty()) return result;
    if (radix == 0) {
        char32_t const mark = at + 1 < text.size() ? text[at + 1] | 0x20 : 0;
        bool const prefixed = text[at] == '0' || text[at] == '\\';
        radix = !prefixed ? 10 : mark == 'x' ? 16 : mark == 'b' ? 2 : 8;
        at += !prefixed ? 0 : radix == 8 ? 1 : 2;
    }
    for (; at < text.size() && digit(text[at]) < radix; ++at) {
        result.huge |= __builtin_mul_overflow(result.magnitude, radix, &result.magnitude);
        result.huge |= __builtin_add_overflow(result.magnitude, digit(text[at]), &result.magnitude);
    }
    return result;
}

template <typename Number>
std::pair<Number, fault> plain(reading const& read, bool throws) {
    using limits = std::numeric_limits<Number>;
    if (read.bad_radix) return {Number(0), fault::radix};
    std::uint64_t const most = limits::max() + std::uint64_t(read.negative && limits::is_signed);
    bool const below_zero = read.negative && (read.huge || read.magnitude > 0);
    if (!read.huge && read.magnitude <= most && (limits::is_signed || !below_zero)) {
        return {static_cast<Number>(read.negative ? 0 - read.magnitude : read.magnitude), fault::none};
    }
    if (throws) return {Number(0), read.negative ? fault::too_small : fault::too_large};
    return {read.negative ? limits::min() : limits::max(), fault::none};
}

template <typename Number, typename Read>
std::pair<Number, fault> outcome(Read read) {
    using namespace zolt::exceptions;
    try {
        return {static_cast<Number>(read()), fault::none};
    } catch (overflow_error const&) {
        return {Number(0), fault::too_large};
    } catch (underflow_error const&) {
        return {Number(0), fault::too_small};
    } catch (invalid_argument_value const&) {
        return {Number(0), fault::radix};
    }
}

/// Every function on the same text, all of it when its length is given, else what a NUL ends.
template <typename Unit>
void check_text(std::string const& bytes, bool with_length, unsigned radix, bool throws) {
    std::basic_string<Unit> text;
    std::u32string units;
    for (char const byte : bytes) { // wide units from 0x80 on turn into some above a byte
        char32_t const unit = static_cast<unsigned char>(byte);
        if (unit == 0 && !with_length) break;
        units += sizeof(Unit) == 1 || unit < 0x80 ? unit : unit + 0x80;
        text += static_cast<Unit>(units.back());
    }
    auto const length = with_length ? static_cast<unsigned long>(text.size()) : 0UL;
    reading const expected = read(units, radix);
    auto const check = [&](auto sample, auto function) {
        using number = decltype(sample);
        auto const call = [&] { return function(text.c_str(), length, radix_t::base(radix), throws); };
        fuzz::check(outcome<number>(call) == plain<number>(expected, throws), "an integer, or its way to fail");
    };
    check(std::int8_t(), [](auto... of) { return str_to_int8(of...); });
    check(std::int16_t(), [](auto... of) { return str_to_int16(of...); });
    check(std::int32_t(), [](auto... of) { return str_to_int32(of...); });
    check(std::int32_t(), [](auto... of) { return str_to_int(of...); });
    check(std::int32_t(), [](auto... of) { return str_to_long(of...); });
    check(std::int32_t(), [](auto... of) { return str_to_signed(of...); });
    check(std::int64_t(), [](auto... of) { return str_to_int64(of...); });
    check(std::uint8_t(), [](auto... of) { return str_to_uint8(of...); });
    check(std::uint16_t(), [](auto... of) { return str_to_uint16(of...); });
    check(std::uint32_t(), [](auto... of) { return str_to_uint32(of...); });
    check(std::uint32_t(), [](auto... of) { return str_to_unsigned(of...); });
    check(std::uint64_t(), [](auto... of) { return str_to_uint64(of...); });
}

void check_number(long long value, unsigned radix) {
    wchar_t digits[66];
    lltoa(value, digits, radix);
    bool const valid = radix >= 2 && radix <= 36;
    fuzz::check(valid ? str_to_int64(digits, 0, radix_t::base(radix)) == value : digits[0] == 0,
                "lltoa reads back");
    fuzz::check(to_str(value) == std::to_string(value), "to_str");
}

} // namespace

void fuzz::run(input in) {
    check_number(input(in).number<long long>(), input(in).below(40));
    unsigned const radix = in.below(40);
    unsigned const flags = in.below(4);
    std::string const text = in.rest();
    check_text<char>(text, flags & 1, radix, flags & 2);
    check_text<unsigned short>(text, flags & 1, radix, flags & 2);
    check_text<wchar_t>(text, flags & 1, radix, flags & 2);
}

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Text as floating-point values, and such values as text, against a stream in the classic locale.
#include "input.hpp"

#include <zolt/generic/convert/str_to_x.hpp>
#include <zolt/generic/convert/x_to_str.hpp>

#include <cmath>
#include <limits>

namespace {

using namespace zolt::generic::convert;

template <typename Number>
void check_both(Number (*read)(zolt::strings::ustring8 const&), std::string const& text, Number value) {
    auto const same = [](Number left, Number right) {
        return left == right && std::signbit(left) == std::signbit(right);
    };
    std::istringstream source(text);
    Number expected;
    source >> expected;
    fuzz::check(same(read(text), source.fail() ? Number(0) : expected), "a number reads as a stream reads it");

    std::ostringstream target;
    target << value;
    fuzz::check(to_str(value) == target.str(), "to_str writes what a stream writes");
    target.str("");
    target.precision(std::numeric_limits<Number>::max_digits10);
    target << value;
    fuzz::check(same(read(target.str()), std::isfinite(value) ? value : 0), "a written number reads back");
}

} // namespace

void fuzz::run(input in) {
    auto const value = input(in).number<double>();
    auto const small = input(in).number<float>();
    std::string const text = in.rest();
    check_both<float>(str_to_float, text, small);
    check_both<double>(str_to_double, text, value);
    check_both<long double>(str_to_long_double, text, static_cast<long double>(value) / 3);
}

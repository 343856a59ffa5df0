// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// function_traits<Sig>: the result and argument types of a signature such as `int (char, long)`.
#pragma once

#include <cstddef>
#include <tuple>

namespace ZOLT_2_18::traits {
namespace _private {

template <typename Sig>
struct function_traits_helper;

template <typename Result, typename... Arguments>
struct function_traits_helper<Result(Arguments...)> {
    using result_type = Result;
    static constexpr std::size_t arity = sizeof...(Arguments);
    template <std::size_t Index>
    using argument_type = std::tuple_element_t<Index, std::tuple<Arguments...>>;
};

} // namespace _private

/// `result_type`, `arity` and `argument_type<Index>` of the signature; the type itself is empty.
template <typename Sig>
struct function_traits : _private::function_traits_helper<Sig> {};

} // namespace ZOLT_2_18::traits

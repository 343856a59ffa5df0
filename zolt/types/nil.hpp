// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// nil_t, the "no value" tag, and its one instance types::nil.
//
// Value classes throughout the library take part in one empty-state protocol: constructed from nil
// they are empty, assigned nil they become empty, and `object == nil` asks whether they are empty.
//
//     types::variant value(42);
//     value = types::nil;              // empty again
//     bool empty = value == types::nil; // true
#pragma once

namespace ZOLT_2_18::types {

/// The empty value: it carries nothing and is only ever compared, assigned or passed. Its default
/// constructor is explicit, so that `object = {}` never means nil by accident.
struct nil_t {
    explicit constexpr nil_t() noexcept = default;
};

/// The instance that the whole library uses.
inline constexpr nil_t nil{};

} // namespace ZOLT_2_18::types

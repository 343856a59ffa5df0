// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// radix_t::base, the number base that the text conversions of generic/convert accept: 0 to take the
// base from the text's own prefix, or 2 to 36. The enumerators' values are the bases themselves, so
// a computed base is written `static_cast<types::radix_t::base>(n)`; the text readers refuse 1 and
// anything above 36.
#pragma once

namespace ZOLT_2_18::types {

/// Holder of the enumeration of number bases.
struct radix_t {
    /// A number base.
    enum base : unsigned int {
        automatic = 0, ///< taken from the prefix: "0x" 16, "0b" 2, "0" 8, else 10
        binary = 2,
        octal = 8,
        decimal = 10,
        hexadecimal = 16,
        base_2 = 2,
        base_3,
        base_4,
        base_5,
        base_6,
        base_7,
        base_8,
        base_9,
        base_10,
        base_11,
        base_12,
        base_13,
        base_14,
        base_15,
        base_16,
        base_17,
        base_18,
        base_19,
        base_20,
        base_21,
        base_22,
        base_23,
        base_24,
        base_25,
        base_26,
        base_27,
        base_28,
        base_29,
        base_30,
        base_31,
        base_32,
        base_33,
        base_34,
        base_35,
        base_36
    };
};

} // namespace ZOLT_2_18::types

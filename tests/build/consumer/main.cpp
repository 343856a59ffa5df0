// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A user's program: links the library and catches what it throws across the library's border.
#include <zolt/zolt.hpp>

#include <cstdio>

int main() {
    try {
        zolt::generic::convert::str_to_int32("2147483648", 0, zolt::types::radix_t::decimal, true);
    } catch (zolt::exceptions::overflow_error const& e) {
        return std::puts(e.get_message()) < 0;
    }
    return 1;
}

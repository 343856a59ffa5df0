// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A module that a program loads. It may be built with another series of the library than the program.
#include "use.hpp"

#include <cstring>

namespace {

class module_error : public zolt::exceptions::full_error {
public:
    using full_error::full_error;
};

} // namespace

#define EXPORTED extern "C" __attribute__((visibility("default")))

EXPORTED char const* module_version() { return zolt::version(); }

/// Fails inside the library, or with an exception of the module's own that derives from the library's.
EXPORTED void module_fail(bool inside) {
    if (inside) zolt::generic::convert::str_to_int32("2147483648", 0, zolt::types::radix_t::decimal, true);
    throw module_error("the module is full", 1, "module", "fail");
}

EXPORTED void module_assert() { ZOLT_ASSERT(!"reached"); }

EXPORTED void const* module_nil() { return &zolt::generic::varg_list::nil_argument; }

EXPORTED char* module_use(char const* examples) { return ::strdup(use_library(examples).c_str()); }

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The library's version, in one place; the build reads it from here.
//
// Every public name lives in the namespace ZOLT_2_18, so that two minor versions can be loaded into
// one process. <zolt/zolt.hpp> adds the short alias `zolt`.
//
//     #if ZOLT_VERSION >= 21802                                  // of the headers
//     if (zolt::version_number() < ZOLT_VERSION) ...             // of the library that was loaded
#pragma once

#include <zolt/export.hpp>

/// Raised when old programs would no longer build or run.
#define ZOLT_VERSION_MAJOR 2
#ifndef ZOLT_VERSION_MINOR // given on the command line when the sources are built as another series
/// Raised with each series; part of the names of namespace, library and folders.
#define ZOLT_VERSION_MINOR 18
#endif
/// Raised with each release of a series.
#define ZOLT_VERSION_PATCH 0

/// One number that grows with every release: 21800 is 2.18.0.
#define ZOLT_VERSION (ZOLT_VERSION_MAJOR * 10000 + ZOLT_VERSION_MINOR * 100 + ZOLT_VERSION_PATCH)

namespace ZOLT_2_18 {

/// The version of the library that the program runs with, such as "2.18.0".
ZOLT_API char const* version() noexcept;

/// The same as a number in the form of ZOLT_VERSION. Within a series only its last two digits can differ
/// from those of the headers.
ZOLT_API unsigned int version_number() noexcept;

} // namespace ZOLT_2_18

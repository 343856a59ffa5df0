// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The library's version, in one place; the build reads it from here.
//
// Every public name lives in the namespace ZOLT_2_18, so that two minor versions can be loaded into
// one process. <zolt/zolt.hpp> adds the short alias `zolt`.
#pragma once

/// Raised when old programs would no longer build or run.
#define ZOLT_VERSION_MAJOR 2
/// Raised with each series; part of the names of namespace, library and folders.
#define ZOLT_VERSION_MINOR 18
/// Raised with each release of a series.
#define ZOLT_VERSION_PATCH 0

// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// ZOLT_API marks what the shared library exports; everything else is hidden by default.
#pragma once

/// Exports a class or function from the shared library.
#define ZOLT_API __attribute__((visibility("default")))

#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# Builds and tests everything: native with warnings as errors (including every public header alone
# and the include layers), 32-bit, AddressSanitizer with UndefinedBehaviorSanitizer, and clang++; and what
# may be used from several threads under ThreadSanitizer.
#
#   scripts/test.sh           all of these
#   scripts/test.sh --quick   the native build alone
set -euo pipefail
cd "$(dirname "$0")/.."

presets=(asan m32 clang release)
case "${1-}" in
    '') ;;
    --quick) presets=(release) ;;
    *)
        echo "usage: scripts/test.sh [--quick]" >&2
        exit 2
        ;;
esac

scripts/setup.sh
jobs=$(nproc)
if [ $# -eq 0 ]; then
    echo "== tsan"
    cmake --preset tsan >/dev/null
    cmake --build --preset tsan -j "$jobs" --target robustness_test
    TSAN_OPTIONS=suppressions=$PWD/tests/robustness/tsan.supp \
        ctest --preset tsan -R '^races' --no-tests=error
fi
for preset in "${presets[@]}"; do
    echo "== $preset"
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" -j "$jobs"
    ctest --preset "$preset" -j "$jobs" --no-tests=error
done

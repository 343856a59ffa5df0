#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# Runs the tests of the library and of the zolt program under LC_ALL=C, in a locale with a decimal comma and
# groups of digits that is the global one from the start, and under a locale that does not exist. What a test
# expects of the classic locale it asks for itself; everything else has to be the same everywhere.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh locales
cmake --preset release >/dev/null
cmake --build --preset release -j "$(nproc)"

LOCPATH=$(mktemp -d)
export LOCPATH
trap 'rm -rf "$LOCPATH"' EXIT
localedef -i de_DE -f UTF-8 "$LOCPATH/de_DE.UTF-8"

# Each line: LC_ALL, and the global locale of the test programs (tests/main.cpp), where "-" is that of LC_ALL.
while read -r all global; do
    echo "== LC_ALL=$all, global locale $global"
    LC_ALL=$all ZOLT_TEST_LOCALE=${global#-} \
        ctest --preset release -j "$(nproc)" --no-tests=error --progress -E '^(build|robustness)\.' </dev/null
done <<'END'
C -
C de_DE.UTF-8
de_DE.UTF-8 -
xx_YY.UTF-8 -
END

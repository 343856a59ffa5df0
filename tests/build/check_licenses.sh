#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# check_licenses.sh SOURCE_DIR: every source, script and build file says whose it is and under which licence.
# Texts and data, which cannot or need not, are covered by .reuse/dep5.
set -euo pipefail
cd "$1"
[ -s LICENSE ] && [ -s .reuse/dep5 ] || { echo 'LICENSE or .reuse/dep5 is missing' && exit 1; }

list=$(mktemp)
trap 'rm -f "$list"' EXIT
find CMakeLists.txt zolt tools tests examples benchmarks fuzz docs cmake scripts debian/rules debian/tests \
    -type d \( -name data -o -name corpus -o -name dictionaries \) -prune -o -type f \( -name '*.[ch]pp' \
    -o -name '*.sh' -o -name '*.py' -o -name '*.cmake' -o -name '*.in' -o -name '*.supp' -o -name '*.css' \
    -o -name '*.js' -o -name CMakeLists.txt -o -name rules -o -name build-an-example \) -print0 >"$list"
for line in 'FileCopyrightText: 2026 the zolt authors' 'License-Identifier: BSL-1.0'; do
    if xargs -0 grep -L -m1 -e "SPDX-$line" <"$list" | grep .; then
        echo "the files above lack the line SPDX-$line"
        exit 1
    fi
done
echo "licences: $(tr -cd '\0' <"$list" | wc -c) files"

#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# check_headers.sh COMPILER SOURCE_DIR LIST: each public header compiles alone, twice in a row, as
# C++17, C++20 and C++23, without a warning.
set -euo pipefail
export compiler=$1 source_dir=$2

check() {
    printf '#include <zolt/%s>\n#include <zolt/%s>\n' "$1" "$1" |
        "$compiler" -std="$2" -I"$source_dir" -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror \
            -fsyntax-only -x c++ - || { echo "FAILED: $1 as $2" && false; }
}
export -f check

for standard in c++17 c++20 c++2b; do
    sed "s/\$/ $standard/" "$3"
done | xargs -P "$(nproc)" -L 1 bash -c 'check "$0" "$1"'

#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# check_headers.sh COMPILER SOURCE_DIR LIST: each public header compiles alone, twice in a row, as C++17,
# and all of them together as C++20 and C++23, without a warning.
set -euo pipefail
export compiler=$1 source_dir=$2

check() { # standard, headers
    local standard=$1 && shift
    printf '#include <zolt/%s>\n' "$@" |
        "$compiler" -std="$standard" -I"$source_dir" -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror \
            -fsyntax-only -x c++ - || { echo "FAILED: $* as $standard" && false; }
}
export -f check

xargs -P "$(nproc)" -I '{}' bash -c 'check c++17 "$0" "$0"' '{}' <"$3"
mapfile -t headers <"$3"
for standard in c++20 c++2b; do
    check "$standard" "${headers[@]}"
done

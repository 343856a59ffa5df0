#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# check_exports.sh LIBRARY LIST: the library exports names of ZOLT_2_18 alone, under the version node
# of that name, and among them every function and object in LIST (widths and compilers spell some
# types differently, so the list holds unmangled names without arguments). `--update` rewrites LIST.
set -euo pipefail
library=$1 list=$2

symbols=$(nm -D --defined-only --with-symbol-versions "$library")
foreign=$(awk '$2 != "A" && $3 !~ /^_Z(N|NK|TI[N]|TS[N]|TV[N]|Thn[0-9]+_NK?)K?9ZOLT_2_18.*@@ZOLT_2_18$/ { print $3 }' <<<"$symbols")
if [ -n "$foreign" ]; then
    printf 'exported outside ZOLT_2_18:\n%s\n' "$foreign"
    exit 1
fi

# Names alone: arguments, template arguments, constness and type information left out.
names=$(awk '$2 != "A" { print $3 }' <<<"$symbols" | sed 's/@.*//' | c++filt |
    grep -vE '^(typeinfo|vtable|non-virtual thunk)' |
    sed -E 's/\[abi:[a-z0-9]+\]//g; s/^(bool|unsigned int|[a-z0-9_:]+) (ZOLT_2_18::.*operator)/\2/; s/\(.*//; s/<.*>//' |
    LC_ALL=C sort -u)

if [ "${3-}" = --update ]; then
    printf '%s\n' "$names" >"$list"
elif ! diff <(printf '%s\n' "$names") "$list"; then
    echo 'the exported names (<) differ from the list that is checked in (>); see check_exports.sh --update'
    exit 1
fi
echo "exports: $(wc -l <<<"$names") names"

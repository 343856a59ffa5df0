#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# check_exports.sh LIBRARY LIST [NAMESPACE | --update]: the library exports names of its namespace (ZOLT_2_18
# where nothing else is said) alone, under the version node of that name: every function, object and virtual
# table in LIST and what catch clauses need of classes. Widths and compilers spell some types differently and
# need other templates, so the list holds unmangled names without arguments, and classes that are no templates.
# `--update` rewrites LIST.
set -euo pipefail
library=$1 list=$2 update=
namespace=ZOLT_2_18
case "${3-}" in
    --update) update=yes ;;
    ?*) namespace=$3 ;;
esac

symbols=$(nm -D --defined-only --with-symbol-versions "$library")
forms="_Z(N|NK|TIN|TSN|TVN|Thn[0-9]+_NK?)${#namespace}$namespace.*@@$namespace"
foreign=$(awk '$2 != "A" { print $3 }' <<<"$symbols" | grep -vxE "$forms" || true)
if [ -n "$foreign" ]; then
    printf 'exported outside %s:\n%s\n' "$namespace" "$foreign"
    exit 1
fi

# Names alone: arguments, template arguments and constness left out.
names=$(awk '$2 != "A" { print $3 }' <<<"$symbols" | sed 's/@.*//' | c++filt | sed "s/$namespace/ZOLT_2_18/g" |
    grep -vE '^(typeinfo name|non-virtual thunk|(typeinfo|vtable) for .*<)' |
    sed -E 's/\[abi:[a-z0-9]+\]//g; s/^(bool|unsigned int|[a-z0-9_:]+) (ZOLT_2_18::.*operator)/\2/; s/\(.*//; s/<.*>//' |
    LC_ALL=C sort -u)

if [ -n "$update" ]; then
    printf '%s\n' "$names" >"$list"
elif ! diff <(printf '%s\n' "$names") "$list"; then
    echo 'the exported names (<) differ from the list that is checked in (>); see check_exports.sh --update'
    exit 1
fi
echo "exports: $(wc -l <<<"$names") names"

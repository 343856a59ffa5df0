#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# check_printers.sh BUILD_DIR PROGRAM FULL_PROGRAM: GDB shows the objects of shown.cpp as shown.expected has them,
# whether the program knows the library's classes (FULL_PROGRAM) or has little more than their names and a stripped
# library, with the printers that GDB finds by itself in an installation. A fourth argument `--update` rewrites the
# file.
#
# Where programs may not be traced, as in some containers, there is nothing to test.
set -euo pipefail
build=$1 program=$2 full_program=$3
source=$(cd "$(dirname "$0")" && pwd)
work=$(cd "$(mktemp -d)" && pwd -P)
trap 'rm -rf "$work"' EXIT

# shown PROGRAM OPTION...: what GDB writes, without numbers, addresses and warnings of what has no virtual table
shown() {
    LC_ALL=C.UTF-8 gdb -nx -batch -iex 'set debuginfod enabled off' "${@:2}" -x "$source/commands.gdb" "$1" \
        >"$work/log" 2>&1 || true
    if grep -qE 'ptrace: Operation not permitted|Could not trace' "$work/log"; then
        echo 'GDB may not trace programs here' >&2
        exit 77
    fi
    sed -n '/^+print/,$p' "$work/log" | sed -E 's/^\$[0-9]+ = //; s/0x[0-9a-f]+/ADDRESS/g' |
        sed -z "s/warning: can't find linker symbol[^\n]*\nwarning:   found [^\n]*\n//g"
}

for component in runtime development; do
    cmake --install "$build" --prefix "$work/usr" --component $component --strip >/dev/null
done
library=$(find "$work/usr" -name 'libzolt-*.so.0')
auto_load=$work/usr/share/gdb/auto-load
printers=$source/../../packaging/gdb/zolt_printers.py

shown "$full_program" -ex "source $printers" >"$work/full"
[ "${4-}" != --update ] || cp "$work/full" "$source/shown.expected"
diff "$source/shown.expected" "$work/full" || { echo 'FAILED: with the full types' && exit 1; }

export LD_LIBRARY_PATH=${library%/*}
shown "$program" -iex "add-auto-load-scripts-directory $auto_load" -iex "add-auto-load-safe-path $auto_load" \
    >"$work/names"
diff "$source/shown.expected" "$work/names" || { echo 'FAILED: with names alone, installed' && exit 1; }
echo 'printers: alike with the full types and without them'

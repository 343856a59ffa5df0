#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# check_abi.sh LIBRARY DIR [--update]: compares the binary interface of a library that has debug information with
# the baseline for its width, DIR/zolt-64.abi.gz or -32: no exported function, object or type may go or change, new
# ones may come. A library that was built as another series is read as if it were this one. Ends with 77, which
# means skipped, where the tools or the debug information are missing. `--update` rewrites the baseline.
set -euo pipefail
library=$1 dir=$2

skip() {
    echo "skipped: $1"
    exit 77
}
command -v abidw >/dev/null && command -v abidiff >/dev/null || skip 'no abidw and abidiff (Debian: abigail-tools)'
readelf -SW "$library" | grep -q ' \.debug_info' || skip "$library has no debug information"
width=$(readelf -h "$library" | sed -nE 's/ *Class: *ELF//p')
baseline=$dir/zolt-$width.abi.gz

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
abidw --exported-interfaces-only --no-corpus-path --no-comp-dir-path --no-show-locs --no-elf-needed "$library" |
    sed -E 's/ZOLT_2_[0-9]+/ZOLT_2_18/g; s/libzolt-2\.[0-9]+\./libzolt-2.18./g' >"$work/new.abi"

if [ "${3-}" = --update ]; then
    gzip -9n <"$work/new.abi" >"$baseline"
    echo "abi: $baseline is written"
    exit
fi
gunzip <"$baseline" >"$work/old.abi"
if ! abidiff --no-added-syms --drop-private-types "$work/old.abi" "$work/new.abi"; then
    echo "The interface differs from $baseline. Programs that were linked before may fail: keep what they use, or"
    echo 'begin a new series (zolt/version.hpp) and renew the baseline by scripts/abi.sh --update.'
    exit 1
fi
echo "abi: as in $baseline"

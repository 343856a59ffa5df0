#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# check_consumers.sh BUILD_DIR CONSUMER_DIR: installs the build into an empty prefix and builds a
# user's program from there: by find_package (shared and static), by the flags of the .pc file, and,
# configured only, as a subproject.
set -euo pipefail
build=$1 consumer=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
expected='Number value is to large'

run() {
    [ "$("$@")" = "$expected" ] || { echo "FAILED: $*" && exit 1; }
}

cmake --install "$build" --prefix "$work/usr" >/dev/null
cmake -S "$consumer" -B "$work/package" -G Ninja -DCMAKE_PREFIX_PATH="$work/usr" >/dev/null
cmake --build "$work/package" >/dev/null
run "$work/package/consumer"
run "$work/package/consumer_static"

# The .pc file, after the tree has been moved.
mv "$work/usr" "$work/moved"
pc=$(find "$work/moved" -name 'zolt-2.18.pc')
flags=$(PKG_CONFIG_PATH=$(dirname "$pc") pkg-config --cflags --libs zolt-2.18)
# shellcheck disable=SC2086
c++ -std=c++17 "$consumer/main.cpp" $flags -o "$work/by_flags"
run env LD_LIBRARY_PATH="$(dirname "$(dirname "$pc")")" "$work/by_flags"

if [ -n "$(find "$work/moved/include" -name '*_private.hpp')" ]; then
    echo 'FAILED: private headers are installed'
    exit 1
fi

cmake -S "$consumer" -B "$work/subproject" -G Ninja -DZOLT_SUBPROJECT="$(cd "$consumer/../../.." && pwd)" >/dev/null
echo 'consumers: package, flags and subproject'

#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# check_consumers.sh BUILD_DIR SOURCE_DIR [OTHER_SERIES_DIR]: installs the build below a DESTDIR, moves the tree to
# another place, and builds a user's program from there: by find_package (shared and static, C++17 and C++20)
# and by the flags of the .pc file. With what check_subproject.sh left in OTHER_SERIES_DIR, programs of either
# series load modules of both.
set -euo pipefail
build=$1 source_dir=$2 other=${3-}
examples=$source_dir/examples
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

run() { # versions that take part, command...
    local expected=$1
    shift
    [ "$("$@")" = "$expected" ] || { echo "FAILED: $*" && exit 1; }
}

DESTDIR="$work/stage" cmake --install "$build" --prefix /opt/zolt >/dev/null
mv "$work/stage/opt/zolt" "$work/moved"
if [ -n "$(find "$work/stage" -type f)" ]; then
    echo 'FAILED: files are installed outside the prefix'
    exit 1
fi
if [ -n "$(find "$work/moved/include" -name '*_private.hpp')" ]; then
    echo 'FAILED: private headers are installed'
    exit 1
fi
if grep -rIlF -e "$source_dir" -e "$build" -e "$work" -e /opt/zolt "$work/moved"; then
    echo 'FAILED: installed texts name a directory of this build'
    exit 1
fi

cmake -S "$source_dir/tests/build/consumer" -B "$work/package" -G Ninja -DCMAKE_PREFIX_PATH="$work/moved" >/dev/null
cmake --build "$work/package" >/dev/null
run '2.18.0:' "$work/package/consumer_static" "$examples"
if [ -n "$other" ]; then
    run '2.18.0: 2.18.0 2.17.0' "$work/package/consumer" "$examples" "$work/package/module.so" "$other/module.so"
    run '2.17.0: 2.17.0 2.18.0' "$other/consumer" "$examples" "$other/module.so" "$work/package/module.so"
else
    run '2.18.0: 2.18.0' "$work/package/consumer" "$examples" "$work/package/module.so"
fi

pc=$(find "$work/moved" -name 'zolt-2.18.pc')
flags=$(PKG_CONFIG_PATH=$(dirname "$pc") pkg-config --cflags --libs zolt-2.18)
compiler=$(command -v clang++ || echo c++)
# shellcheck disable=SC2086
"$compiler" ${CXXFLAGS-} -std=c++17 -c $flags "$source_dir/tests/build/consumer/main.cpp" -o "$work/by_flags.o" \
    -Wno-unused-command-line-argument
for library in -lzolt-2.18 -l:libzolt-2.18.a; do
    # shellcheck disable=SC2086
    "$compiler" ${CXXFLAGS-} "$work/by_flags.o" ${flags/-lzolt-2.18/$library} -o "$work/by_flags"
    run '2.18.0:' env LD_LIBRARY_PATH="$(dirname "$(dirname "$pc")")" "$work/by_flags" "$examples"
done
echo 'consumers: package and flags, shared and static'

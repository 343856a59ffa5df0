#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# Builds and installs the library and the program from two copies of the tree, in folders of different length, as a
# distribution does (with debug information, whose paths are mapped), and compares all that is installed.
#
#   scripts/reproducible.sh [CMAKE_OPTION...]
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export CCACHE_DISABLE=1

for tree in "$work/one" "$work/another/folder"; do
    mkdir -p "$tree"
    git ls-files -z | tar --null --files-from=- --create | tar --extract --directory "$tree"
    cmake -S "$tree" -B "$tree/build" -G Ninja -DZOLT_TESTS=OFF -DCMAKE_BUILD_TYPE=None \
        -DCMAKE_CXX_FLAGS="${CXXFLAGS:--O2} -g -ffile-prefix-map=$tree=." "$@" >/dev/null
    cmake --build "$tree/build" >/dev/null
    DESTDIR=$tree/installed cmake --install "$tree/build" --prefix /usr >/dev/null
done
if ! diff --recursive "$work/one/installed" "$work/another/folder/installed"; then
    echo 'FAILED: two builds differ'
    exit 1
fi
echo "reproducible: $(find "$work/one/installed" -type f | wc -l) files are the same"

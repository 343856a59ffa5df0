#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# Compares the binary interface of the 64-bit and the 32-bit library with the baselines in tests/build/abi; the
# tests do so for 64 bits alone, since each width costs a build.
#
#   scripts/abi.sh            fails where an exported function, object or type has gone or changed
#   scripts/abi.sh --update   rewrites the baselines, at the begin of a series or after additions
set -euo pipefail
cd "$(dirname "$0")/.."
case "${1-}" in
    '' | --update) ;;
    *)
        echo "usage: scripts/abi.sh [--update]" >&2
        exit 2
        ;;
esac

scripts/setup.sh abigail-tools
for width in 64 32; do
    flags=
    if [ $width = 32 ]; then flags='-m32 -msse2 -mfpmath=sse'; fi
    CXX=g++ CXXFLAGS=$flags tests/build/check_subproject.sh "$PWD" "$PWD/build/abi/$width"
    tests/build/check_abi.sh "build/abi/$width/zolt/zolt/libzolt-2.17.so" tests/build/abi "$@"
done

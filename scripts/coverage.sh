#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# Runs the tests and the fuzz corpus over a build that counts, and prints the lines and branches that they reach,
# by folder and by reader of foreign bytes. Exit status 1 when a reader has less than 95 % of its branches. Each
# line and branch is shown in build/coverage/html/index.html.
#
# The counts are clang's, of the source and not of what the compiler makes of it: a branch is a condition that
# was true or one that was false. What an exception does on its way, such as one of a failed allocation, is no
# branch; the tests of failing memory look at that.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh llvm
cmake --preset coverage >/dev/null
cmake --build --preset coverage -j "$(nproc)"
build=$PWD/build/coverage
rm -rf "$build/profiles"
# The checks of the build run nothing of the library, those of its growth count the instructions of a usual build.
LLVM_PROFILE_FILE=$build/profiles/%2m.profraw \
    ctest --preset coverage -j "$(nproc)" --no-tests=error --exclude-regex '^(build|robustness)\.'
llvm-profdata merge --sparse -o "$build/profile" "$build"/profiles/*.profraw
# What stands in headers is compiled into the programs.
programs=("$build"/zolt/libzolt-*.*.so)
for program in "$build"/tests/*_test "$build"/fuzz/*_fuzz; do
    programs+=(-object "$program")
done
others="^$PWD/(tests|fuzz|examples|tools)/|^/usr/(include|src/googletest)/"
llvm-cov show "${programs[@]}" -instr-profile "$build/profile" -ignore-filename-regex "$others" \
    -format html -show-branches=count -output-dir "$build/html"
llvm-cov export "${programs[@]}" -instr-profile "$build/profile" -ignore-filename-regex "$others" -summary-only |
    scripts/coverage_table.py

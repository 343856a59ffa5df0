#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# Static analysis: clang-tidy with the checks of .clang-tidy over the library, the zolt program and the headers
# they include, and g++'s -fanalyzer over the library. Exit status 1 when one of them finds something.
#
#   scripts/lint.sh                             everything
#   scripts/lint.sh zolt/system/io.cpp          these sources only, named from the root
#   scripts/lint.sh --tidy|--analyzer [FILE...] one of the two
set -euo pipefail
cd "$(dirname "$0")/.."

run=(tidy analyzer)
case "${1-}" in
    --tidy | --analyzer)
        run=("${1#--}")
        shift
        ;;
    -*)
        echo "usage: scripts/lint.sh [--tidy|--analyzer] [FILE...]" >&2
        exit 2
        ;;
esac
sources=("$@")
if [ $# -eq 0 ]; then
    mapfile -t sources < <(find zolt tools -name '*.cpp' | sort)
fi

scripts/setup.sh clang-tidy
jobs=$(nproc)

# Every finding is an error to clang-tidy, so what it prints matters only when it fails.
tidy_one() {
    local report
    echo "tidy $1"
    report=$(clang-tidy -p build/lint --quiet "$1" 2>&1) || { echo "$report"; return 1; }
}
export -f tidy_one

tidy() {
    cmake --preset clang -B build/lint -DZOLT_TESTS=OFF -DZOLT_TOOLS=ON \
        -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON >/dev/null &&
        printf '%s\0' "${sources[@]}" | xargs -0 -n 1 -P "$jobs" bash -c 'tidy_one "$1"' tidy
}

# The analyzer of g++ 12 was made for C and is at a loss where C++ does things out of its sight:
off=(
    use-of-uninitialized-value # every class that a function returns in its caller's memory
    malloc-leak                # an object whose owner an exception carries away; the tests look for leaks
    possible-null-argument     # the result of `new`, which throws and is never null
    possible-null-dereference  # the same
    null-dereference           # the elements of a std::vector that is being filled, which has memory by then
)

# The objects are there to be built again when something has changed.
analyzer() {
    local targets=()
    for source in "${sources[@]}"; do
        case "$source" in zolt/*) targets+=("zolt/CMakeFiles/zolt_objects.dir/${source#zolt/}.o") ;; esac
    done
    [ ${#targets[@]} -gt 0 ] || return 0
    CXX=g++ cmake --preset release -B build/analyzer -DZOLT_TESTS=OFF -DZOLT_TOOLS=OFF \
        -DCMAKE_CXX_FLAGS="-fanalyzer ${off[*]/#/-Wno-analyzer-}" >/dev/null &&
        cmake --build build/analyzer -j "$jobs" --target "${targets[@]}" -- -k 0
}

status=0
for tool in "${run[@]}"; do
    echo "== $tool"
    "$tool" || status=1
done
exit "$status"

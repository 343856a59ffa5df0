#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# Counts what a benchmark's sides execute, which a busy machine does not change: instructions and mispredicted
# branches per byte, number or message, as callgrind simulates them.
#
#   scripts/profile.sh numbers 'text_to_int32/(decimal|base_36)'   the tasks of a subject that match
#   scripts/profile.sh --cache config get_int                      misses of data in the caches of this machine too
#   scripts/profile.sh --functions dates from_day                  the functions that take most of each side too
#
# Each side runs twice over in one process and the second time counts, so neither preparing the input nor
# first-time work is in the figures. The simulated processor has AVX2 and no AVX-512. Peers are those that
# scripts/bench.sh installed. The profiles stay in build/profile/results for callgrind_annotate.
set -euo pipefail
cd "$(dirname "$0")/.."

usage() { sed -n 's/^#   /usage: /p' "$0" >&2; exit 2; }

simulated=(--branch-sim=yes)
functions=0
while [[ ${1:-} == -* ]]; do
    case "$1" in
        --cache) # callgrind takes the sizes of this machine, but knows two levels: the second is to be the core's own
            level2=$(getconf LEVEL2_CACHE_SIZE),$(getconf LEVEL2_CACHE_ASSOC),$(getconf LEVEL2_CACHE_LINESIZE)
            simulated+=(--cache-sim=yes --LL="$level2") ;;
        --functions) functions=12 ;;
        *) usage ;;
    esac
    shift
done
[ $# -ge 1 ] && [ $# -le 2 ] || usage
subject=$1
tasks=${2:-.}

scripts/setup.sh libbenchmark-dev pkg-config python3 >&2
cmake --preset profile >/dev/null
cmake --build --preset profile -j "$(nproc)" --target "${subject}_bench" >&2

results=build/profile/results
mkdir -p "$results"
rm -f "$results/$subject".*
valgrind --tool=callgrind --instr-atstart=no "${simulated[@]}" --callgrind-out-file="$results/$subject" \
    "build/profile/benchmarks/${subject}_bench" --benchmark_filter="$tasks" --benchmark_repetitions=2 \
    >"$results/$subject.log" 2>&1 || { tail -n 5 "$results/$subject.log" >&2; exit 1; }
profiles=("$results/$subject".[0-9]*)
[ -e "${profiles[0]}" ] || { echo "profile: no task of $subject matches $tasks" >&2; exit 2; }
scripts/profile.py --functions "$functions" "${profiles[@]}"

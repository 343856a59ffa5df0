#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# Builds the benchmarks and prints how zolt stands beside its peers: best peer / zolt, above 1 is ahead.
#
#   scripts/bench.sh                 every subject
#   scripts/bench.sh unicode xml     some of them
#   scripts/bench.sh --svg FILE …    draws the ratios into FILE too
#   scripts/bench.sh --markdown FILE …  writes the table into FILE too
#
# One core is pinned and the repetitions of all sides are interleaved, so that a busy moment of the machine
# hits them alike. Results stay in build/bench/results. Exit status 1 when a goal is missed.
set -euo pipefail
cd "$(dirname "$0")/.."

report=()
subjects=()
while [ $# -gt 0 ]; do
    case "$1" in
        --svg | --markdown)
            [ $# -ge 2 ] || { echo "bench: $1 needs a file" >&2; exit 2; }
            report+=("$1" "$2")
            shift 2
            ;;
        -*)
            sed -n 's/^#   /usage: /p' "$0" >&2
            exit 2
            ;;
        *)
            subjects+=("$1")
            shift
            ;;
    esac
done

# Peers: what is missing is installed, what cannot be is left out of the table.
scripts/setup.sh libbenchmark-dev pkg-config python3 libicu-dev libglib2.0-dev libfast-float-dev libfmt-dev \
    libboost-dev libboost-serialization-dev libexpat1-dev libpugixml-dev librapidxml-dev libxml2-dev gettext \
    locales libinih-dev libtomlplusplus-dev libcereal-dev qt6-base-dev

cmake --preset bench >/dev/null
cmake --build --preset bench -j "$(nproc)"

[ ${#subjects[@]} -gt 0 ] ||
    mapfile -t subjects < <(cd build/bench/benchmarks && ls -- *_bench | sed 's/_bench$//')
results=build/bench/results
mkdir -p "$results"
core=$(($(nproc) - 1))
files=()
for subject in "${subjects[@]}"; do
    program=build/bench/benchmarks/${subject}_bench
    [ -x "$program" ] || { echo "bench: no subject is called $subject" >&2; exit 2; }
    echo "== $subject" >&2
    taskset -c "$core" "$program" --benchmark_repetitions=11 --benchmark_enable_random_interleaving=true \
        --benchmark_min_time=0.02 --benchmark_out="$results/$subject.json" --benchmark_out_format=json \
        >"$results/$subject.txt" 2>&1 || { tail -n 5 "$results/$subject.txt" >&2; exit 1; }
    files+=("$results/$subject.json")
done
benchmarks/report.py "${report[@]}" --goals benchmarks/goals.tsv "${files[@]}"

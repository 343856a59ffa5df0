#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# Builds the fuzz targets with clang++, AddressSanitizer and UndefinedBehaviorSanitizer, and runs them.
#
#   scripts/fuzz.sh                   every target for 10 minutes
#   scripts/fuzz.sh 30 xml catalog    two of them for half an hour each
#   jobs=2 scripts/fuzz.sh            two targets at a time
#   scripts/fuzz.sh --seeds [target…] renews fuzz/corpus from what was found so far
#
# Inputs that reach new code stay in build/fuzz/corpus and are where the next run goes on. What breaks a
# target is minimised, kept in build/fuzz/findings as a file to put into fuzz/corpus, and printed as a C++
# literal for a test row. Exit status 1 when anything was found.
set -euo pipefail
cd "$(dirname "$0")/.."

minutes=10
seeds=no
case "${1:-}" in
    --seeds) seeds=yes; shift ;;
    -*) sed -n 's/^#   /usage: /p' "$0" >&2; exit 2 ;;
    [0-9]*) minutes=$1; shift ;;
esac
jobs=${jobs:-1}

scripts/setup.sh >/dev/null
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j "$(nproc)" | tail -n 1
work=build/fuzz
targets=("$@")
[ ${#targets[@]} -gt 0 ] || mapfile -t targets < <(find $work/fuzz -maxdepth 1 -name '*_fuzz' -printf '%f\n' | sed 's/_fuzz$//' | sort)
for target in "${targets[@]}"; do
    [ -x "$work/fuzz/${target}_fuzz" ] || { echo "fuzz: no target is called $target" >&2; exit 2; }
done
mkdir -p $work/findings $work/logs

# The last count of a target in its log: "#1234 NEW cov: 56 ft: 78 corp: 9/10Kb ..."
executions() { sed -n 's/^#\([0-9]*\).*cov:.*/\1/p' "$1" | tail -n 1; }
covered() { sed -n 's/.*cov: \([0-9]*\).*/\1/p' "$1" | tail -n 1; }
corpus() { sed -n 's/.*corp: \([0-9]*\).*/\1/p' "$1" | tail -n 1; }
findings() { find $work/findings -name "$1-*" ! -name '*.small' | sort; }

# Inputs that reach every edge between them, and up to 60 of those that add most in counts, in place of the old
# seeds. A merge writes its files in that order.
renew_seeds() { # target
    local edges=$work/merged/$1 counts=$work/merged/$1.counts file
    rm -rf "$edges" "$counts"
    mkdir -p "$edges" "$counts" "$work/corpus/$1" "fuzz/corpus/$1"
    for folder in "$edges" "$counts"; do
        "$work/fuzz/$1_fuzz" -merge=1 -set_cover_merge=1 -use_counters=$([ "$folder" = "$edges" ]; echo $?) \
            -max_len=4096 "$folder" "fuzz/corpus/$1" "$work/corpus/$1" >"$work/logs/$1.merge" 2>&1
    done
    while read -r _ file && [ "$(find "$edges" -type f | wc -l)" -lt 60 ]; do
        cp "$file" "$edges/"
    done < <(find "$counts" -type f -printf '%T@ %p\n' | sort -n)
    rm -rf "fuzz/corpus/$1" && cp -r "$edges" "fuzz/corpus/$1"
    printf '%-14s %4s files %8s bytes\n' "$1" "$(find "$edges" -type f | wc -l)" "$(cat "$edges"/* | wc -c)"
}

# To be called in the background, whose process the target then is.
run() { # target
    mkdir -p "$work/corpus/$1" "fuzz/corpus/$1"
    exec "$work/fuzz/$1_fuzz" "$work/corpus/$1" "fuzz/corpus/$1" -dict="fuzz/dictionaries/$1.dict" \
        -max_total_time=$((minutes * 60)) -timeout=10 -rss_limit_mb=3072 -artifact_prefix="$work/findings/$1-" \
        >"$work/logs/$1.log" 2>&1
}

report_finding() { # target, file
    local small=$2.small
    "$work/fuzz/$1_fuzz" -minimize_crash=1 -max_total_time=60 -exact_artifact_path="$small" "$2" >/dev/null 2>&1 || true
    [ -s "$small" ] || cp "$2" "$small"
    grep -aE 'broken:|ERROR:|runtime error:' "$work/logs/$1.log" | head -n 1
    printf 'cp %s fuzz/corpus/%s/\n{"%s"},\n\n' "$small" "$1" "$(od -An -v -tx1 "$small" | tr -d ' \n' | sed 's/../\\x&/g')"
}

if [ $seeds = yes ]; then
    for target in "${targets[@]}"; do renew_seeds "$target"; done
    exit 0
fi

rm -f $work/findings/*
declare -A running=() # process: target
declare -A began=() took=()
waiting=("${targets[@]}")
trap '[ ${#running[@]} -eq 0 ] || kill "${!running[@]}" 2>/dev/null || true' EXIT
while [ ${#waiting[@]} -gt 0 ] || [ ${#running[@]} -gt 0 ]; do
    while [ ${#waiting[@]} -gt 0 ] && [ ${#running[@]} -lt "$jobs" ]; do
        target=${waiting[0]}
        waiting=("${waiting[@]:1}")
        : >"$work/logs/$target.log"
        run "$target" &
        running[$!]=$target
        began[$target]=$SECONDS
    done
    sleep 2
    line=
    for process in "${!running[@]}"; do
        target=${running[$process]}
        log=$work/logs/$target.log
        took[$target]=$((SECONDS - began[$target]))
        line+=$(printf '%s %ss: %s runs, %s edges, corpus %s   ' "$target" "${took[$target]}" "$(executions "$log")" \
            "$(covered "$log")" "$(corpus "$log")")
        kill -0 "$process" 2>/dev/null || unset "running[$process]"
    done
    if [ -t 1 ]; then
        printf '\r\033[K%.150s' "$line"
    elif [ $((SECONDS % 60)) -lt 2 ]; then
        printf '%s\n' "$line"
    fi
done
[ ! -t 1 ] || printf '\r\033[K'

found=0
for target in "${targets[@]}"; do
    for file in $(findings "$target"); do report_finding "$target" "$file"; done
done
printf '%-14s %8s %12s %8s %9s\n' target seconds executions edges findings
for target in "${targets[@]}"; do
    count=$(findings "$target" | wc -l)
    found=$((found + count))
    log=$work/logs/$target.log
    printf '%-14s %8s %12s %8s %9s\n' "$target" "${took[$target]}" "$(executions "$log")" "$(covered "$log")" "$count"
done
[ $found -eq 0 ]

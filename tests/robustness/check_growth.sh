#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# check_growth.sh PROGRAM: the instructions that each task of growth.cpp takes grow by at most 2.3 when its
# input doubles. Counted by callgrind, so the load of the machine does not matter.
set -euo pipefail
directory=$(mktemp -d)
trap 'rm -rf "$directory"' EXIT
valgrind --quiet --tool=callgrind --instr-atstart=no --callgrind-out-file="$directory/out" "$1"
awk '
    /^desc: Trigger: Client Request: / {
        sub(/.*Request: /, "")
        size = $NF
        sub(/ [0-9]+$/, "")
        name = $0
    }
    /^totals: / && name {
        cost[name, size] = $2
        if (size == 1000) order[++count] = name
        name = ""
    }
    END {
        for (i = 1; i <= count; ++i) {
            first = cost[order[i], 2000] / cost[order[i], 1000]
            second = cost[order[i], 4000] / cost[order[i], 2000]
            bad = first > 2.3 || second > 2.3
            failed += bad
            printf "%-20s %10d %5.2f %5.2f%s\n", order[i], cost[order[i], 1000], first, second,
                   bad ? "  more than linear" : ""
        }
        print count " tasks"
        exit failed > 0 || count == 0
    }' "$directory"/out.*

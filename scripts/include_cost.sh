#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# What a public header costs whoever includes it: its lines after preprocessing (g++, C++17), and the processor time
# that compiling them takes.
#
#   scripts/include_cost.sh            writes docs/include_cost.md
#   scripts/include_cost.sh --check    only counts, and fails when a header is above the bound without need
#
# The bound is 30,000 lines. Above it may be the umbrella, and headers whose interface needs standard headers that
# have so many lines: those are named below, and with them alone the header has to be explained.
#
# shellcheck disable=SC2086,SC2016
set -euo pipefail
cd "$(dirname "$0")/.."

bound=30000
own_bound=4000  # what zolt's own headers and small standard ones may add to those named
compiler=${CXX:-g++}
page=docs/include_cost.md

config='string vector list'
declare -A needs=(
    [config/base_config_item.hpp]=$config
    [config/commandline_item.hpp]=$config
    [config/config_dispatch.hpp]=$config
    [config/config_manager.hpp]="$config memory"
    [config/enviroment_item.hpp]=$config
    [config/file_item.hpp]=$config
    [config/user_item.hpp]=$config
    [i18n/_private/xmc_file_loader.hpp]='string vector map'
    [i18n/catalog.hpp]='string vector map set'
    [i18n/message_catalogs.hpp]='string vector map set'
    [serialization/labeled_text_buffer.hpp]='string vector map memory'
)

lines_of() {
    printf '#include <%s>\n' "$@" | "$compiler" -std=c++17 -I. -E -x c++ - | wc -l
}

# The least of three, in milliseconds.
time_of() {
    local TIMEFORMAT=%U
    for _ in 1 2 3; do
        { time printf '#include <%s>\n' "$@" | "$compiler" -std=c++17 -I. -fsyntax-only -x c++ -; } 2>&1
    done | sort -n | awk 'NR == 1 { printf "%.0f", 1000 * $1 }'
}

check() {
    local header=$1 lines=$2 needed=$3
    [ "$lines" -le $bound ] || [ "$header" = zolt.hpp ] || { [ "$needed" -gt 0 ] &&
        [ $((lines - needed)) -le $own_bound ] && [ $((needed + own_bound)) -gt $bound ]; }
}

row() {
    local lines=$2 needed=$3 note=
    [ "$needed" -eq 0 ] || note="$(printf '<%s> ' ${needs[$1]})alone: $needed"
    [ "$1" != zolt.hpp ] || note='the umbrella'
    printf '| `%s` | %d | %s | %s |\n' "$1" "$lines" "$(time_of "zolt/$1")" "${note//</\`<}" | sed 's/>/>`/g'
}

rows=() failed=0
while read -r header; do
    lines=$(lines_of "zolt/$header") needed=0
    [ -z "${needs[$header]-}" ] || needed=$(lines_of ${needs[$header]})
    check "$header" "$lines" "$needed" || { echo "include cost: $header has $lines lines" >&2 && failed=1; }
    [ $# -ne 0 ] || rows+=("$(row "$header" "$lines" "$needed")")
done < <(find zolt -name '*.hpp' ! -name '*_private.hpp' -printf '%P\n' | sort)

if [ $# -eq 0 ]; then
    {
        cat <<END
# Include cost

What including one header costs a program: lines after preprocessing (\`g++ -std=c++17 -E\`, blank lines and line marks
counted), and processor milliseconds to compile them on the machine that wrote this page. \`scripts/include_cost.sh\`
writes it.

No header has more than 30,000 lines, but for the umbrella and those whose interface needs standard headers of that
size; the last column names these and how many lines they have alone. \`zolt/fwd.hpp\` declares all classes for headers
that only name them.

| Header below \`zolt/\` | Lines | Milliseconds | Why above 30,000 |
|---|---|---|---|
END
        printf '%s\n' "${rows[@]}"
        printf '\nFor comparison: an empty file takes %s ms, `<string>` %s ms and %s lines.\n' \
            "$(time_of cstddef)" "$(time_of string)" "$(lines_of string)"
    } >$page
    echo "include cost: $page"
fi
exit $failed

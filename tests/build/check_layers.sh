#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# check_layers.sh SOURCE_DIR: every folder of the library includes only its own headers and those of
# lower floors, the ground floor includes nothing of the library, and includes form no cycle.
set -euo pipefail
cd "$1"

# Floors from the ground up; folders that share a floor include each other as long as no cycle forms.
declare -A floor=(
    [version]=0 [export]=0 [fwd]=0
    [exceptions]=1 [debug]=1 [memory]=1 [functor]=1 [traits]=1
    [strings]=2 [generic/convert]=2
    [types]=3 [generic]=3
    [parser]=4 [system]=4 [system/date_time]=4
    [config]=5 [serialization]=5 [i18n]=5 [i18n/_private]=5
    [zolt]=6
)
ground=' types/nil types/radix generic/abilities generic/clone_interface '
status=0
edges=$(mktemp)
trap 'rm -f "$edges"' EXIT

fail() {
    echo "layers: $1"
    status=1
}

room() { # path below zolt/ without extension -> folder, or the stem of a file at the root
    case "$1" in */*) echo "${1%/*}" ;; *) echo "$1" ;; esac
}

level() {
    case "$ground" in *" $1 "*) echo 0 ;; *) echo "${floor[$(room "$1")]-}" ;; esac
}

while IFS=: read -r file included; do
    from=${file#zolt/} && from=${from%.*}
    to=${included%.*}
    [ -e "zolt/$included" ] || fail "$file includes zolt/$included, which does not exist"
    from_level=$(level "$from") to_level=$(level "$to")
    [ -n "$from_level" ] && [ -n "$to_level" ] || { fail "$file -> $included: folder without a floor" && continue; }
    [ "$to_level" -le "$from_level" ] || fail "$file includes zolt/$included, which stands above it"
    case "$file" in *.hpp) echo "$file zolt/$included" >>"$edges" ;; esac
done < <(grep -rnoE --include='*.hpp' --include='*.cpp' '^ *# *include <zolt/[^>]+>' zolt |
    sed -E 's/:[0-9]+: *# *include <zolt\/([^>]+)>/:\1/')

if grep -rnE --include='*.hpp' --include='*.cpp' '^ *# *include "' zolt; then
    fail "the library includes its own headers as <zolt/...>"
fi
if ! cycles=$(tsort "$edges" 2>&1 >/dev/null); then
    fail "include cycle: $cycles"
fi
[ $status = 0 ] && echo "layers: $(wc -l <"$edges") includes between headers, no cycle"
exit $status

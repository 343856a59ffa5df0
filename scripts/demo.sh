#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# Builds the zolt program and runs the library's main job: catalogs are loaded from disk for a
# locale, and their messages come out rendered with typed arguments. Then settings come from a
# command line and a file, and a stored buffer is shown.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release -j "$(nproc)" --target zolt_tool examples >/dev/null
zolt=build/release/bin/zolt
catalogs=examples/catalogs/tidemark.xmc

run() {
    printf '\n$ %s\n' "$*"
    "$@"
}

render() { # language, message, arguments
    "$zolt" catalog render "$catalogs" tidemark "$2" --lang "$1" "${@:3}"
}

run "$zolt" catalog list examples/catalogs
run "$zolt" catalog check examples/catalogs

for language in en_GB.UTF-8 de_DE.UTF-8 fr_FR.UTF-8 ru_RU.UTF-8 ja_JP.UTF-8; do
    printf '\n%s\n' "-- $language"
    render "$language" run.started source=/home/ann target=/mnt/backup
    render "$language" run.found files:int=1234567 folders:int=321
    render "$language" run.progress percent:double=41.5 left:int=1288490188 rate:double=12500000
    render "$language" run.finished size:int=5368709120 elapsed:double=3725 wait:double=86400
    render "$language" error.unreadable file=notes.txt mode:int=384 reason=EACCES
done

run "$zolt" config show --origin --file examples/config/tidemark.cfg -- -backup.level=3

run build/release/examples/render_message "$catalogs" de_DE.UTF-8
run build/release/examples/size_table

record=$(mktemp)
trap 'rm -f "$record"' EXIT
run build/release/examples/settings_record "$record" 2026 11 21
run "$zolt" inspect "$record"

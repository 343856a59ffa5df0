#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# Installs from Debian's packages what building and testing zolt needs and this machine lacks.
# Asks nothing; works as root or through sudo. Arguments are further packages to install.
set -euo pipefail

fail() {
    printf 'setup: %s\n' "$1" >&2
    exit 1
}

command -v apt-get >/dev/null && command -v dpkg-query >/dev/null ||
    fail "this is not a Debian system: install the packages that scripts/setup.sh lists by your system's own means"

packages=(
    g++ cmake ninja-build pkg-config  # the native build
    libgtest-dev googletest     # tests; the sources serve the 32-bit and sanitizer builds
    clang libclang-rt-dev       # the second compiler and its sanitizer runtime
    libcli11-dev                # command line of the zolt program
    gettext libxml2-utils       # tests that compare with msgfmt and check XML
    valgrind                    # counts instructions for the growth tests
    gdb                         # shows objects in the test of its printers
    abigail-tools               # compares the binary interface with the baseline
)
if [ "$(dpkg --print-architecture)" = amd64 ]; then
    packages+=(g++-multilib)    # the 32-bit build
fi
packages+=("$@")

installed() {
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

missing=()
for package in "${packages[@]}"; do
    installed "$package" || missing+=("$package")
done

if [ ${#missing[@]} -eq 0 ]; then
    echo "setup: everything is installed"
    exit 0
fi

if [ "$(id -u)" = 0 ]; then
    root=()
elif command -v sudo >/dev/null && sudo -n true 2>/dev/null; then
    root=(sudo -n)
else
    fail "root or password-less sudo is needed to install: ${missing[*]}"
fi

echo "setup: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { "${root[@]}" apt-get update && "${root[@]}" apt-get install -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    tail -n 5 "$log" >&2
    fail "apt-get could not install: ${missing[*]}"
fi
echo "setup: done"

#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# Builds the documentation site, build/docs/docs/html/index.html: a warning of Doxygen, a broken link and a name that
# the search does not know are errors.
#
#   scripts/docs.sh                    builds and checks the site
#   scripts/docs.sh --browser          looks at it in headless Chromium as well: a page wider than a phone is an
#                                      error; pictures of some pages are kept in build/docs/screenshots
#   scripts/docs.sh --first-program    follows the page on the first program to the letter, on 64 and 32 bits, with
#                                      what the presets release and m32 install
set -euo pipefail
cd "$(dirname "$0")/.."

mode=${1-}
packages=(doxygen python3)
case "$mode" in
    '' | --first-program) ;;
    --browser) packages+=(chromium fonts-dejavu-core) ;;
    *)
        echo "usage: scripts/docs.sh [--browser | --first-program]" >&2
        exit 2
        ;;
esac

scripts/setup.sh "${packages[@]}"
cmake -S . -B build/docs -G Ninja -DZOLT_DOCS=ON -DZOLT_TESTS=OFF -DZOLT_TOOLS=OFF >/dev/null
cmake --build build/docs --target docs
site=$PWD/build/docs/docs/html
docs/check_site.py "$site"

if [ "$mode" = --browser ]; then
    docs/look_at_site.py "$site" build/docs/screenshots
elif [ "$mode" = --first-program ]; then
    for preset in release m32; do
        cmake --preset $preset >/dev/null
        cmake --build --preset $preset --target zolt zolt_static
        for component in runtime development; do
            cmake --install build/$preset --component $component --prefix build/docs/$preset >/dev/null
        done
    done
    docs/follow_first_program.py "$site" build/docs/release build/docs/m32
fi
echo "docs: $site/index.html"

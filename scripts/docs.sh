#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# Builds the documentation site, build/docs/docs/html/index.html: a warning of Doxygen, a broken link and a name that
# the search does not know are errors.
#
#   scripts/docs.sh             builds and checks the site
#   scripts/docs.sh --browser   looks at it in headless Chromium as well: pages that are wider than a phone are errors,
#                               and pictures of some pages are kept in build/docs/screenshots
set -euo pipefail
cd "$(dirname "$0")/.."

packages=(doxygen python3)
case "${1-}" in
    '') ;;
    --browser) packages+=(chromium fonts-dejavu-core) ;;
    *)
        echo "usage: scripts/docs.sh [--browser]" >&2
        exit 2
        ;;
esac

scripts/setup.sh "${packages[@]}"
cmake -S . -B build/docs -G Ninja -DZOLT_DOCS=ON -DZOLT_TESTS=OFF -DZOLT_TOOLS=OFF >/dev/null
cmake --build build/docs --target docs
site=$PWD/build/docs/docs/html
docs/check_site.py "$site"
[ $# -eq 0 ] || docs/look_at_site.py "$site" build/docs/screenshots
echo "docs: $site/index.html"

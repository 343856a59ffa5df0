#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# Builds the Debian packages from a clean copy of the tree, lets lintian look at them, installs them on this
# machine, uses the program and the library from there, and purges them again.
#
#   scripts/package_test.sh            the build runs the tests, as a distribution's does
#   scripts/package_test.sh --quick    without the tests
set -euo pipefail
cd "$(dirname "$0")/.."
case "${1-}" in
    '') ;;
    --quick) export DEB_BUILD_OPTIONS="nocheck ${DEB_BUILD_OPTIONS-}" ;;
    *)
        echo "usage: scripts/package_test.sh [--quick]" >&2
        exit 2
        ;;
esac

scripts/setup.sh build-essential debhelper doxygen lintian
root=()
if [ "$(id -u)" != 0 ]; then root=(sudo -n); fi
packages=(libzolt-2.18-0 libzolt-2.18-dev zolt-tools libzolt-2.18-doc)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
    echo "FAILED: $1" >&2
    exit 1
}

echo "== build"
mkdir "$work/zolt"
git ls-files -z | tar --null --files-from=- --create | tar --extract --directory "$work/zolt"
(cd "$work/zolt" && dpkg-buildpackage --unsigned-source --unsigned-changes) >"$work/build.log" 2>&1 ||
    { tail -n 40 "$work/build.log" >&2 && fail 'dpkg-buildpackage'; }

echo "== lintian"
lintian --fail-on error,warning "$work"/zolt_*.changes

echo "== install and use"
trap '"${root[@]}" dpkg --purge "${packages[@]}" >/dev/null 2>&1 || true; rm -rf "$work"' EXIT
files=()
for package in "${packages[@]}"; do files+=("$work/$package"_*.deb); done
"${root[@]}" dpkg --install "${files[@]}" >/dev/null
[ "$(zolt --version)" = "zolt $(dpkg-query -W -f '${Version}' zolt-tools)" ] || fail 'zolt --version'
installed=$(dpkg-query -L "${packages[@]}")
for file in man/man1/zolt.1.gz man/man1/zolt-catalog-check.1.gz bash-completion/completions/zolt \
    zsh/vendor-completions/_zolt fish/vendor_completions.d/zolt.fish \
    doc/zolt-2.18/zolt.spdx doc/libzolt-2.18-doc/html/index.html; do
    grep -qx "/usr/share/$file" <<<"$installed" || fail "$file is not installed"
done
mkdir "$work/autopkgtest"
(cd "$work/zolt" && AUTOPKGTEST_TMP=$work/autopkgtest sh debian/tests/build-an-example) || fail 'build-an-example'

echo "== purge"
"${root[@]}" dpkg --purge "${packages[@]}" >/dev/null
left=$(find /usr/bin /usr/include /usr/lib /usr/share /etc /var/lib -name '*zolt*' 2>/dev/null || true)
[ -z "$left" ] || fail "left behind: $left"
echo 'packages: built, installed, used and purged'

#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# check_subproject.sh SOURCE_DIR WORK_DIR: builds a user's program that has zolt as a subproject, the library as
# another series (2.17), without optimisation, in few pieces, and with debug information. WORK_DIR is kept: the
# other checks load this library beside the installed one and compare its interface.
set -euo pipefail
source_dir=$1 work=$2

cmake -S "$source_dir/tests/build/consumer" -B "$work" -G Ninja -DZOLT_SUBPROJECT="$source_dir" \
    -DZOLT_VERSION_MINOR=17 -DCMAKE_INSTALL_LIBDIR=/opt/zolt/lib -DCMAKE_BUILD_TYPE=None \
    -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=24 -DCMAKE_CXX_FLAGS="${CXXFLAGS-} -O0 -g" >/dev/null
cmake --build "$work" >/dev/null

"$source_dir/tests/build/check_exports.sh" "$work/zolt/zolt/libzolt-2.17.so" "$source_dir/tests/build/exports.txt" ZOLT_2_17
took_part=$("$work/consumer" "$source_dir/examples" "$work/module.so")
[ "$took_part" = '2.17.0: 2.17.0' ] || { echo "FAILED: versions $took_part" && exit 1; }
libdir=$(pkg-config --variable=libdir "$work/zolt/zolt-2.17.pc")
[ "$libdir" = /opt/zolt/lib ] || { echo "FAILED: an absolute library directory became $libdir" && exit 1; }

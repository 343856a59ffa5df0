#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# Runs the tests and the fuzz corpus over a build that counts, and prints the lines and branches of each
# subsystem that they reach. Exit status 1 when a reader of foreign bytes has less than 95 % of its branches.
# Details go to build/coverage/index.html.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh gcovr
cmake --preset coverage >/dev/null
cmake --build --preset coverage -j "$(nproc)"
find build/coverage -name '*.gcda' -delete
ctest --preset coverage -j "$(nproc)" --no-tests=error
gcovr --root . --filter zolt/ --exclude-throw-branches --exclude-unreachable-branches \
    --json-summary build/coverage/summary.json --html-details build/coverage/index.html build/coverage
python3 - <<'END'
import json
from collections import defaultdict

READERS = ("strings/unicode", "strings/code_page", "generic/convert/str_to_x", "parser/", "i18n/_private/xmc_file_loader",
           "config/config_token", "config/config_file_reader", "config/commandline_item", "serialization/")
total = defaultdict(lambda: [0, 0, 0, 0])
with open("build/coverage/summary.json") as stream:
    for file in json.load(stream)["files"]:
        name = file["filename"].removeprefix("zolt/")
        groups = [name.rsplit("/", 1)[0], "all"] + ["readers"] * name.startswith(READERS)
        for group in groups:
            for i, key in enumerate(("line_covered", "line_total", "branch_covered", "branch_total")):
                total[group][i] += file[key]
print(f"{'':24}{'lines':>8}{'branches':>10}")
for group in sorted(total):
    lines, of_lines, branches, of_branches = total[group]
    print(f"{group:24}{100 * lines / max(of_lines, 1):7.1f}%{100 * branches / max(of_branches, 1):9.1f}%")
raise SystemExit(total["readers"][2] < 0.95 * total["readers"][3])
END

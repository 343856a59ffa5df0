#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
"""Sums up what llvm-cov exports, by folder and by reader of foreign bytes. Called by scripts/coverage.sh."""
import json
import sys
from collections import defaultdict

READERS = {
    "UTF": ("strings/unicode",),
    "code pages": ("strings/code_page",),
    "integers and doubles": ("generic/convert/str_to_x", "generic/convert/nearest_", "generic/convert/digit_"),
    "XML parser": ("parser/xml_parser", "parser/xml_scan"),
    "token stream": ("parser/xml_token_stream",),
    "catalog loader": ("i18n/_private/xmc_",),
    "message rendering": ("i18n/_private/format", "i18n/format", "i18n/message.", "i18n/message_item"),
    "configuration tokens": ("config/config_token",),
    "configuration files": ("config/config_file_", "config/file_item", "config/config_section"),
    "command line": ("config/commandline_item",),
    "configuration tree": ("config/config_tree", "config/config_children"),
    "text and binary buffers": ("serialization/serialize_", "serialization/text_field"),
    "labeled buffers": ("serialization/labeled_",),
    "dates": ("system/date_time/",),
}
LEAST = 95.0
# What refuses a page that no table can stand for meets none here.
LEAST_OF = {"code pages": 90.0}


def percent(part, whole):
    return 100 * part / whole if whole else 100.0


def main():
    folders, readers = defaultdict(lambda: [0, 0, 0, 0]), {reader: [0, 0, 0, 0] for reader in READERS}
    for file in json.load(sys.stdin)["data"][0]["files"]:
        name = file["filename"].rsplit("/zolt/", 1)[1]
        sums = [folders[name.split("/")[0]], folders["all"]]
        sums += [readers[reader] for reader, prefixes in READERS.items() if name.startswith(prefixes)]
        counts = [file["summary"][what][key] for what in ("lines", "branches") for key in ("covered", "count")]
        for each in sums:
            each[:] = [old + new for old, new in zip(each, counts)]

    short = []
    for title, rows in (("Folder", dict(sorted(folders.items()))), ("Reader", readers)):
        print(f"\n| {title:24}| Lines   | Branches         |\n|{'-' * 25}|---------|------------------|")
        for name, (lines, all_lines, branches, all_branches) in rows.items():
            of_branches = percent(branches, all_branches)
            print(f"| {name:24}| {percent(lines, all_lines):5.1f} % | {of_branches:5.1f} % of {all_branches:5} |")
            if rows is readers and of_branches < LEAST_OF.get(name, LEAST):
                short.append(name)
    if short:
        sys.exit(f"too few branches: {', '.join(short)}")


if __name__ == "__main__":
    main()

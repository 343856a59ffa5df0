#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
"""Makes a page that reads well in the source tree one of the site: page_filter.py PAGE prints it for Doxygen.

Links to other pages and to the examples become links of the site. In code backslashes are no commands and references
such as &amp; are shown as they are written.
"""
import html
import re
import sys
from pathlib import Path


def code(match):
    text = html.escape(match[1]).replace("\\", "\\\\").replace("#", "\\#")
    return f"<code>{text}</code>"


def for_site(text):
    text = re.sub(r"\]\([\w./-]*?examples/([\w]+)\.cpp\)", r"](@ref example_\1)", text)
    text = re.sub(r"\]\([\w./-]*?([\w]+)\.md\)", r"](@ref page_\1)", text)
    return re.sub(r"`([^`\n]*[\\&][^`\n]*)`", code, text)


page = Path(sys.argv[1])
blocks = re.split(r"(^```.*?^```$)", page.read_text(encoding="utf-8"), flags=re.M | re.S)
blocks[0::2] = map(for_site, blocks[0::2])
print(re.sub(r"^# (.*)", rf"# \1 {{#page_{page.stem}}}", "".join(blocks), count=1), end="")

#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
"""Does what the site's page on the first program says: follow_first_program.py HTML_FOLDER PREFIX PREFIX32

In an empty folder the files are copied from the page and its commands are run one block after the other, with PREFIX
as $HOME/zolt and PREFIX32 as $HOME/zolt32; only those that install are left out. Every run of the program has to print
what the page shows.
"""
import html
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

site, prefix, prefix32 = (Path(each).resolve() for each in sys.argv[1:])
page = (site / "page_first_program.html").read_text(encoding="utf-8")
PART = re.compile(r'<h1[^>]*>(?P<title>.*?)</h1>|<p ?>(?P<text>.*?)</p>'
                  r'|<div class="fragment">(?P<lines>.*?)</div><!-- fragment -->'
                  r'|<pre class="fragment">(?P<code>.*?)</pre>', re.S)


def plain(text):
    """The text as a reader would copy it."""
    return html.unescape(re.sub(r"<[^>]*>", "", text)).replace("\xa0", " ")


def code(part):
    lines = re.findall(r'<div class="line">(.*?)</div>', part["lines"] or "")
    return plain("".join(f"{line}\n" for line in lines) or part["code"])


def parts():
    """(section, text before the block, the block)"""
    section = before = ""
    for part in PART.finditer(page):
        if part["title"]:
            section = plain(part["title"]).strip()
        elif part["text"]:
            before = plain(part["text"])
        else:
            yield section, before, code(part)


home = Path(tempfile.mkdtemp())
(home / "zolt").symlink_to(prefix)
(home / "zolt32").symlink_to(prefix32)
folder = home / "empty"
folder.mkdir()
environment = {**os.environ, "HOME": str(home), "LANG": "C"}
# What is installed for everybody is found without a word; here the same is told to the tools.
everybody = {"PKG_CONFIG_PATH": f"{prefix}/lib/pkgconfig", "LD_LIBRARY_PATH": f"{prefix}/lib",
             "CMAKE_PREFIX_PATH": str(prefix)}
printed, shown, runs, exports = "", "", 0, []
for section, before, block in parts():
    if file := re.search(r"this into ([\w.]+)", before):
        if not (folder / file[1]).exists():
            (folder / file[1]).write_text(block, encoding="utf-8")
            continue
    if before.startswith("This prints"):
        assert printed == block, f"the page shows\n{block}but the program prints\n{printed}"
        shown = block.splitlines()[0]
        continue
    commands = [line for line in block.splitlines() if not re.search("--preset|--install", line)]
    if section == "Installing" or not commands:
        continue
    print(f"== {section}\n" + "\n".join(commands), flush=True)
    tools = {**environment, **everybody} if section == "Building and running" else environment
    done = subprocess.run(["sh", "-euc", "\n".join(exports + commands)], cwd=folder, env=tools, text=True, stdout=subprocess.PIPE)
    printed = done.stdout
    count = sum(line.startswith("./") for line in commands)
    assert done.returncode == 0 and printed.count(shown) >= count, f"{done.returncode}: {printed}"
    runs += count
    exports += [line for line in commands if line.startswith("export ")]
print(f"first program: {runs} runs print what the page shows")

#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
"""Checks the built site: check_site.py HTML_FOLDER

Every link within the site leads to a page and, if it names one, a place of that page; no example is empty; the
search's index knows some names. Prints what is wrong, and fails then.
"""
import re
import sys
from html.parser import HTMLParser
from pathlib import Path
from urllib.parse import unquote, urlsplit

SEARCHED = ["message_catalogs", "utf8_to_utf16", "config_manager", "zolt_version_major", "kept behaviour", "a first program"]


class Page(HTMLParser):
    """The links of a page and the places that links can name."""

    def __init__(self, path):
        super().__init__()
        self.links, self.places = set(), set()
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, _, attributes):
        for name, value in attributes:
            if name in ("href", "src") and value:
                self.links.add(value)
            elif name in ("id", "name"):
                self.places.add(value)


def broken_links(site):
    pages = {path.name: Page(path) for path in site.glob("*.html")}
    for name, page in sorted(pages.items()):
        for link in sorted(page.links):
            parts = urlsplit(link)
            if parts.scheme or parts.netloc or link.startswith("javascript:"):
                continue
            target, place = unquote(parts.path) or name, unquote(parts.fragment)
            if not (site / target).is_file():
                yield f"{name}: no file for {link}"
            elif place and target in pages and place not in pages[target].places:
                yield f"{name}: no place for {link}"


def empty_examples(site):
    for path in sorted(site.glob("*.html")):
        if re.search(r'<div class="fragment">\s*</div>', path.read_text(encoding="utf-8")):
            yield f"{path.name}: an empty example"


def missing_names(site):
    index = "".join(path.read_text(encoding="utf-8") for path in site.glob("search/all_*.js")).lower()
    for name in SEARCHED:
        if f"'{name.replace(' ', '_20')}" not in index:
            yield f"search: {name} is not in the index"


site = Path(sys.argv[1])
faults = [*broken_links(site), *empty_examples(site), *missing_names(site)]
print("\n".join(faults) if faults else f"site: {len(list(site.glob('*.html')))} pages, no broken link")
sys.exit(bool(faults))

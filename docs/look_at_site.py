#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
"""Looks at the built site in headless Chromium: look_at_site.py HTML_FOLDER PICTURE_FOLDER

Opens every page as wide as a phone and as a desktop, tells those that need more, asks the site's own search for a name,
and takes pictures of some pages as phones and desktops show them.
"""
import contextlib
import functools
import html
import http.server
import json
import re
import subprocess
import sys
import threading
from pathlib import Path

PHONE, DESKTOP = 390, 1280
PICTURES = ["index", "page_first_program", "page_variant_conversions", "page_catalog",
            "classZOLT__2__18_1_1types_1_1variant", "classZOLT__2__18_1_1i18n_1_1message__catalogs"]

# Runs in a page of the site's own server: each page is shown in a frame, one after the other.
LOOK = """<!doctype html><body><pre id="report"></pre><script>
const pages = %s, widths = [%d, %d], report = {wide: [], found: ""};
const frame = document.body.appendChild(document.createElement("iframe"));
frame.style = "height: 800px; border: 0";
const open_page = (page) => new Promise((done) => { frame.onload = done; frame.src = page; });
const wait = (time) => new Promise((done) => setTimeout(done, time));
(async () => {
    for (const page of pages) {
        await open_page(page);
        for (const width of widths) {
            frame.style.width = width + "px";
            const needed = frame.contentDocument.documentElement.scrollWidth;
            if (needed > width) report.wide.push(page + ": " + needed + " of " + width);
        }
    }
    await open_page("index.html");
    await wait(500);
    const field = frame.contentDocument.getElementById("MSearchField");
    field.value = "config_man";
    field.dispatchEvent(new KeyboardEvent("keyup", {key: "n", bubbles: true}));
    await wait(3000);
    const results = frame.contentWindow.frames.MSearchResults.document.querySelectorAll(".SRResult");
    report.found = [...results].filter((each) => each.style.display == "block").map((each) => each.innerText).join();
    document.getElementById("report").textContent = JSON.stringify(report);
})();
</script>"""


class Server(http.server.SimpleHTTPRequestHandler):
    """The site and the page that looks at it."""
    look = b""

    def do_GET(self):
        if self.path != "/look":
            with contextlib.suppress(ConnectionError):  # a page was left before it had been loaded
                super().do_GET()
            return
        self.send_response(200)
        self.send_header("Content-Type", "text/html")
        self.end_headers()
        self.wfile.write(self.look)

    def log_message(self, *_):
        pass


def chromium(*arguments):
    command = ["chromium", "--headless", "--no-sandbox", "--disable-gpu", "--hide-scrollbars", *arguments]
    return subprocess.run(command, capture_output=True, text=True, check=True, timeout=600).stdout


site, pictures = Path(sys.argv[1]), Path(sys.argv[2])
pages = sorted(path.name for path in site.glob("*.html"))
Server.look = (LOOK % (json.dumps(pages), PHONE, DESKTOP)).encode()
server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), functools.partial(Server, directory=site))
threading.Thread(target=server.serve_forever, daemon=True).start()
address = f"http://127.0.0.1:{server.server_port}"

dom = chromium("--virtual-time-budget=600000", "--dump-dom", f"{address}/look")
report = json.loads(html.unescape(re.search(r'<pre id="report">(.*?)</pre>', dom, re.S)[1]) or '{"wide": ["no report"]}')
faults = [f"too wide: {page}" for page in report["wide"]]
if "config_manager" not in report.get("found", ""):
    faults.append(f"the search does not find config_manager, but: {report.get('found')}")

pictures.mkdir(parents=True, exist_ok=True)
for page in PICTURES:
    for width in (PHONE, DESKTOP):
        picture = pictures.resolve() / f"{page}_{width}.png"
        chromium(f"--window-size={width},1600", f"--screenshot={picture}", f"{address}/{page}.html")

print("\n".join(faults) if faults else f"look: {len(pages)} pages fit phone and desktop, and the search works")
sys.exit(bool(faults))

"""Looks for dead links in a folder of HTML pages: files and anchors that are not there.

usage: links.py FOLDER
"""
import sys
from html.parser import HTMLParser
from pathlib import Path
from urllib.parse import unquote, urlsplit


class Page(HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.anchors, self.links = set(), set()
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name == "id" or (tag == "a" and name == "name"):
                self.anchors.add(value)
            elif name in ("href", "src") and value:
                self.links.add(value)


folder = Path(sys.argv[1])
pages = {path.name: Page(path) for path in folder.glob("*.html")}
dead = []
for name, page in pages.items():
    for link in page.links:
        parts = urlsplit(link)
        # Doxygen's summary of a class names its private classes, which it then leaves out.
        if parts.scheme or parts.netloc or link == "#nested-classes":
            continue
        target = unquote(parts.path) or name
        anchor = unquote(parts.fragment)
        if not (folder / target).exists() or (anchor and target in pages and anchor not in pages[target].anchors):
            dead.append(f"{name}: {link}")
print("\n".join(sorted(dead)) or f"{len(pages)} pages, no dead link")
sys.exit(bool(dead))

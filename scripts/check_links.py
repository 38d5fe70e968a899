#!/usr/bin/env python3
"""Reports dead links in a folder of HTML files: scripts/check_links.py FOLDER.

A link within the folder must lead to a file and, with a fragment, to an element with that id. Links to other sites are
left alone, but no page may load anything from there.
"""

import html.parser
import pathlib
import sys
import urllib.parse

LOADED = {("script", "src"), ("img", "src"), ("link", "href"), ("iframe", "src"), ("source", "src")}
# Doxygen's head of a class links to its nested classes when they are private, too, which it doesn't show.
DOXYGEN = "#nested-classes"
LINKED = {("a", "href"), ("area", "href")}


class Page(html.parser.HTMLParser):
    """The ids of a page, and what it links to and loads."""

    def __init__(self, path):
        super().__init__()
        self.ids = set()
        self.links = set()
        self.feed(path.read_text(encoding="utf-8", errors="replace"))

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if value and (name == "id" or (tag == "a" and name == "name")):
                self.ids.add(value)
            if value and (tag, name) in LOADED | LINKED:
                self.links.add((value, (tag, name) in LOADED))


def fault(root, path, pages, link, loaded):
    """What is wrong with a link of the page `path`; None for nothing."""
    parts = urllib.parse.urlsplit(link)
    if link == DOXYGEN:
        return None
    if parts.scheme or parts.netloc:
        return "is loaded from elsewhere" if loaded and parts.scheme not in ("data", "javascript") else None
    target = path
    if parts.path:
        target = path.parent / urllib.parse.unquote(parts.path)
        if parts.path.startswith("/"):
            target = root / parts.path.lstrip("/")
        target = target.resolve()
        if target.is_dir():
            target /= "index.html"
        if not target.is_file():
            return "leads to no file"
    fragment = urllib.parse.unquote(parts.fragment)
    if fragment and fragment != "__skip" and target in pages and fragment not in pages[target].ids:
        return "leads to no place in its page"
    return None


def main():
    root = pathlib.Path(sys.argv[1]).resolve()
    pages = {path: Page(path) for path in sorted(root.rglob("*.html"))}
    faults = 0
    for path, page in pages.items():
        if path.name == "404.html":
            continue  # its links are those of a server's root
        for link, loaded in sorted(page.links):
            what = fault(root, path, pages, link, loaded)
            if what:
                faults += 1
                print(f"{path.relative_to(root)}: {link} {what}")
    print(f"{len(pages)} pages, {faults} dead links")
    return 1 if faults or not pages else 0


if __name__ == "__main__":
    sys.exit(main())

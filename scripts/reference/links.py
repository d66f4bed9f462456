"""Links of the built site: each leads to a file and an anchor that are there."""

import urllib.parse
from html.parser import HTMLParser


class Links(HTMLParser):
    """The addresses and the anchors of a page."""

    def __init__(self, text):
        super().__init__()
        self.targets = []
        self.anchors = {"", "__drawer", "__search"}
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        for name, text in attributes:
            if name in ("id", "name") and text:
                self.anchors.add(text)
            if name in ("href", "src") and text is not None:
                self.targets.append(text)


def broken(site):
    """What is wrong with the links of all pages below a folder, as texts."""
    pages = {path: Links(path.read_text(encoding="utf-8")) for path in site.rglob("*.html")}
    faults = []
    for path, links in pages.items():
        if path.name == "404.html":  # its links are those of a server
            continue
        for target in links.targets:
            parts = urllib.parse.urlsplit(target)
            where = f"{path.relative_to(site)}: {target}"
            if parts.scheme or parts.netloc:
                if parts.scheme not in ("mailto", "https"):
                    faults.append(f"{where}: leads outside")
                continue
            file = (path.parent / urllib.parse.unquote(parts.path)).resolve() if parts.path else path
            if not file.is_file():
                faults.append(f"{where}: no such file")
            elif parts.fragment and file in pages and \
                    urllib.parse.unquote(parts.fragment) not in pages[file].anchors:
                faults.append(f"{where}: no such anchor")
    return faults

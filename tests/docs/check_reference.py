#!/usr/bin/env python3
"""Builds the reference, follows all its links, and looks for a page of everything exported.

Usage: check_reference.py SOURCE_DIR FOLDER
"""

import html.parser
import pathlib
import re
import subprocess
import sys
import urllib.parse
import xml.etree.ElementTree


class Page(html.parser.HTMLParser):
    """The links and pictures of a page, the places that links can lead to, and what was not read.

    Where Doxygen loses its way in a document, its own commands are left in the text.
    """

    def __init__(self, path):
        super().__init__()
        self.links, self.places, self.pictures = set(), set(), 0
        self.left = []
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name in ("id", "name") and value:
                self.places.add(value)
            if name in ("href", "src") and value:
                self.links.add(value)
                self.pictures += tag == "img"

    def handle_data(self, text):
        self.left += re.findall(r"@(?:ref|image|code|section)\b.*", text)


def broken_links(pages):
    for path, page in pages.items():
        for link in page.links:
            target = urllib.parse.urlsplit(link)
            if target.scheme:
                continue  # elsewhere; this looks at files only
            file = path.parent / urllib.parse.unquote(target.path) if target.path else path
            if not file.is_file():
                yield f"{path.name}: '{link}' leads nowhere"
            elif target.fragment and file in pages and target.fragment not in pages[file].places:
                yield f"{path.name}: there is no place '{link}'"


def documented(tag_file):
    """Where each class and each member of one, or of none, is told of: file and place."""
    found = {}
    for compound in xml.etree.ElementTree.parse(tag_file).getroot():
        scope = ""
        if compound.get("kind") in ("class", "struct"):
            scope = compound.findtext("name") + "::"
            found[compound.findtext("name")] = (compound.findtext("filename"), None)
        for member in compound.iter("member"):
            place = (member.findtext("anchorfile"), member.findtext("anchor"))
            found[scope + member.findtext("name")] = place
    return found


def exported(lists):
    """The names that programs use, without the compiler's own words for parts of them."""
    text = "".join(pathlib.Path(path).read_text(encoding="ascii") for path in lists)
    plain = subprocess.run(["c++filt"], input=text, capture_output=True, text=True, check=True)
    names = set()
    for line in plain.stdout.splitlines():
        name = re.sub(r"^(vtable|VTT|typeinfo name|typeinfo|construction vtable) for ", "", line)
        name = re.sub(r"^(virtual|non-virtual) thunk to ", "", name)
        names.add(re.sub(r"(\(.*|-in-.*)$", "", name))
    return names


def main():
    source, folder = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    subprocess.run([source / "scripts/docs", folder], check=True)
    html_folder = folder / "html"
    pages = {path: Page(path) for path in html_folder.glob("*.html")}
    problems = list(broken_links(pages))
    problems += [f"{path.name}: {left}" for path, page in pages.items() for left in page.left]
    known = documented(folder / "zrdraw.tag")
    names = exported([source / "src/zrdraw.symbols", source / "host/zrhost.symbols"])
    for name in sorted(names):
        file, place = known.get(name, (None, None))
        page = pages.get(html_folder / str(file))
        if page is None or (place is not None and place not in page.places):
            problems.append(f"'{name}' is exported and has no page")
    if pages[html_folder / "index.html"].pictures < 4:
        problems.append("index.html: the pictures are missing")
    links = sum(len(page.links) for page in pages.values())
    print(f"{len(pages)} pages, {links} links, {len(names)} exported names")
    print("\n".join(problems))
    return bool(problems)


if __name__ == "__main__":
    sys.exit(main())

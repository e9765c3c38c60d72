"""Runs every example of docs/script.md as it stands and compares what it draws with the page's
pictures.

Usage: check_script_page.py ROOT ZRDRAW [--update]   (--update writes the pictures)
"""

import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

from PIL import Image, ImageChops

FENCE = re.compile(r"^```(\w+) *(.*)$")
PICTURE = re.compile(r"^!\[.+\]\((pictures/script/(\w+)\.png)\)$")
MOST_COLUMNS = 800  # of a picture on the page


def blocks_of(page):
    """Yields the language, the options behind it and the text of each example."""
    language = None
    for line in page.splitlines():
        fence = FENCE.match(line)
        if language is None and fence:
            language, options, text = fence[1], fence[2].split(), []
        elif line == "```":
            yield language, options, "\n".join(text) + "\n"
            language = None
        elif language is not None:
            text.append(line)


def for_page(path):
    """A picture as the page has it: not too wide."""
    picture = Image.open(path).convert("RGB")
    if picture.width > MOST_COLUMNS:
        size = (MOST_COLUMNS, round(picture.height * MOST_COLUMNS / picture.width))
        picture = picture.resize(size, Image.Resampling.LANCZOS)
    return picture


def are_same(one, other):
    difference = ImageChops.difference(one.convert("RGB"), other.convert("RGB"))
    return one.size == other.size and difference.getbbox() is None


def draw(page, folder, tool, names):
    """Runs the examples in a folder; those without a name of their own take the page's next."""
    environment = {**os.environ, "PATH": f"{tool.parent}:{os.environ['PATH']}"}
    made = 0
    for language, options, text in blocks_of(page):
        if language == "sh":
            subprocess.run(["bash", "-euo", "pipefail", "-c", text], cwd=folder, check=True,
                           env=environment)
            continue
        name = next(n for n in names if not (folder / f"{n}.png").exists())
        script = folder / f"example.{language}"
        script.write_text(text)
        how = {"zrd": "--script", "lua": "--lua"}[language]
        subprocess.run([tool, "draw", "clip.mov", f"{name}.png", how, script.name, *options],
                       cwd=folder, check=True)
        made += 1
    return made


def main():
    root, tool = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
    os.environ["EXAMPLES"] = str(root / "examples")
    page = (root / "docs/script.md").read_text()
    pictures = [match for line in page.splitlines() if (match := PICTURE.match(line))]
    if len(pictures) < 15:
        sys.exit(f"the page shows {len(pictures)} pictures only")
    wrong = []
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        in_turn = [m[2] for m in pictures if f" {m[2]}.png" not in page]
        made = draw(page, folder, tool, in_turn)
        if made != len(in_turn):
            sys.exit(f"{made} examples for {len(in_turn)} pictures")
        for match in pictures:
            kept, drawn = root / "docs" / match[1], for_page(folder / f"{match[2]}.png")
            if "--update" in sys.argv:
                kept.parent.mkdir(exist_ok=True)
                drawn.save(kept, optimize=True)
            elif not kept.exists():
                wrong.append(f"{match[1]} is missing")
            elif not are_same(drawn, Image.open(kept)):
                wrong.append(f"{match[1]} is not what its example draws")
    sys.exit("\n".join(wrong) or None)


if __name__ == "__main__":
    main()

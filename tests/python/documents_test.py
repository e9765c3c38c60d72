"""The Python of the documents runs as it stands."""

import os
import pathlib
import re

import numpy as np
import pytest
from PIL import Image

SOURCES = pathlib.Path(os.environ["ZRDRAW_SOURCES"])


def blocks(document):
    text = (SOURCES / document).read_text()
    return re.findall(r"^```python\n(.*?)^```$", text, re.MULTILINE | re.DOTALL)


def run(code, folder, monkeypatch, names):
    monkeypatch.chdir(folder)
    exec(compile(code, "document", "exec"), names)


def test_the_readme_makes_a_picture(tmp_path, monkeypatch):
    [code] = blocks("README.md")
    run(code, tmp_path, monkeypatch, {})
    picture = np.asarray(Image.open(tmp_path / "frame.png"))
    assert picture.shape == (180, 320, 3)
    assert picture[50, 260].tolist() == [255, 204, 0]
    assert picture[0, 0, 2] < picture[-1, 0, 2]


def test_the_page_runs_from_top_to_bottom(tmp_path, monkeypatch):
    names = {}
    code = blocks("docs/python.md")
    assert len(code) > 8
    for block in code:
        run(block, tmp_path, monkeypatch, names)


@pytest.mark.parametrize("document", ["README.md", "docs/python.md"])
def test_files_that_are_named_exist(document):
    text = (SOURCES / document).read_text()
    for target in re.findall(r"\]\(([^)#:]+)\)", text):
        assert (SOURCES / document).parent.joinpath(target).exists(), target

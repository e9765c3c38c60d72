"""Frames of v210, as FFmpeg decodes them."""

import subprocess

import numpy as np
import pytest
import zrdraw

WIDTH, HEIGHT = 100, 20


def decoded(array, width=WIDTH):
    """The planes of a frame: Y, Cb and Cr."""
    height = array.shape[0]
    raw = subprocess.run(
        ["ffmpeg", "-v", "error", "-f", "v210", "-video_size", f"{width}x{height}", "-i", "-",
         "-f", "rawvideo", "-pix_fmt", "yuv422p10le", "-"],
        input=array.tobytes(), stdout=subprocess.PIPE, check=True).stdout
    samples = np.frombuffer(raw, np.uint16)
    luma, cb, cr = np.split(samples, [width * height, width * height * 3 // 2])
    return (luma.reshape(height, width), cb.reshape(height, width // 2),
            cr.reshape(height, width // 2))


def grey():
    array = zrdraw.frame("v210", WIDTH, HEIGHT)
    draw = zrdraw.Draw(array, "v210", width=WIDTH)
    draw.set_ycbcr10(64, 512, 512)
    draw.erase()
    return draw


def test_samples_stand_where_they_are_drawn():
    draw = grey()
    draw.set_ycbcr10(700, 300, 800)
    draw.fill_rect(10, 4, 21, 9)
    luma, cb, cr = decoded(draw.array)
    expected = np.full((HEIGHT, WIDTH), 64)
    expected[4:9, 10:22] = 700
    assert (luma == expected).all()
    assert (cb[4:9, 5:11] == 300).all() and (np.delete(cb, slice(4, 9), axis=0) == 512).all()
    assert (cr[4:9, 5:11] == 800).all() and (np.delete(cr, slice(5, 11), axis=1) == 512).all()


@pytest.mark.parametrize("matrix, color, sample", [
    ("rec601", (1, 1, 1), (940, 512, 512)),
    ("rec709", (1, 1, 1), (940, 512, 512)),
    ("rec709", (1, 0, 0), (250, 409, 960)),
    ("rec709full", (1, 1, 1), (1023, 512, 512)),
])
def test_colours(matrix, color, sample):
    draw = grey()
    draw.matrix = matrix
    draw.color = color
    draw.erase()
    assert [int(plane[7, 7]) for plane in decoded(draw.array)] == list(sample)
    assert all((plane == plane[0, 0]).all() for plane in decoded(draw.array))


def test_words_are_as_good_as_bytes():
    array = np.zeros((HEIGHT, 96), np.uint32)
    draw = zrdraw.Draw(array, "v210", width=WIDTH)
    draw.set_ycbcr10(940, 512, 512)
    draw.line(0, 0, 19, 19)
    luma, _, _ = decoded(array)
    assert (luma == np.eye(HEIGHT, WIDTH) * 940).all()


def test_a_transition_keeps_ten_bits():
    a, b, out = grey(), grey(), zrdraw.frame("v210", WIDTH, HEIGHT)
    a.set_ycbcr10(101, 502, 503)
    b.set_ycbcr10(701, 302, 803)
    a.erase(), b.erase()
    zrdraw.wipe(a.array, b.array, out, "v210", "horizontal", 0.25, width=WIDTH)
    luma, cb, cr = decoded(out)
    assert (luma[:, :25] == 701).all() and (luma[:, 26:] == 101).all()
    assert (cb[:, :12] == 302).all() and (cr[:, 13:] == 503).all()

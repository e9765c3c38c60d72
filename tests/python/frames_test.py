"""Which arrays are taken as frames, and that nothing beyond them is touched."""

import gc
import itertools
import random
import weakref

import numpy as np
import pytest
import zrdraw
from support import fenced, guards_hold, shape_of, try_all

U8 = np.uint8


def zeros(*shape, dtype=U8):
    return np.zeros(shape, dtype)


@pytest.mark.parametrize("layout, width, array", [
    ("bgra", None, zeros(4, 6, 4)),
    ("rgb24", None, zeros(4, 6, 3)),
    ("uyvy", None, zeros(4, 12)),
    ("uyvy", 5, zeros(4, 12)),  # the half pair at the end has its room
    ("v210", 6, zeros(4, 128)),
    ("v210", 49, zeros(4, 64, dtype=np.uint32)),
    ("rgb30dpx", None, zeros(4, 6, dtype=">u4")),
    ("rgb48", None, zeros(4, 6, 3, dtype=np.uint16)),
    ("argb64", None, zeros(4, 6, 4, dtype=np.uint16)),
    ("rgbhalf48", None, zeros(4, 6, 3, dtype=np.float16)),
    ("rgbahalf", None, zeros(4, 6, 4, dtype=np.float16)),
    ("uv16", None, zeros(4, 6, 2, dtype=np.uint16)),
    ("bgra", None, zeros(8, 12, 4)[2:6, 3:9]),  # a window in a larger picture
    ("bgra", None, zeros(8, 6, 4)[::2]),  # a field
    ("bgra", None, zeros(4, 1, 4)),
    ("bgra", None, zeros(1, 6, 4)[::-1]),  # one line has no direction
])
def test_arrays_that_are_frames(layout, width, array):
    draw = zrdraw.Draw(array, layout, width=width)
    assert (draw.layout, draw.height) == (layout, 4 if array.shape[0] == 4 else 1)
    assert draw.erase() and array.any()


@pytest.mark.parametrize("layout, array, width, error, words", [
    ("bgrx", zeros(4, 6, 4), None, ValueError, "there is no layout 'bgrx'"),
    ("bgra", [[1, 2]], None, TypeError, "array: numpy.ndarray"),
    ("bgra", zeros(4, 6, 4, dtype=np.int8), None, TypeError, "uint8[height, width, 4], got int8"),
    ("rgb48", zeros(4, 6, 3), None, TypeError, "uint16[height, width, 3], got uint8[4, 6, 3]"),
    ("rgb30dpx", zeros(4, 6, dtype=np.uint32), None, TypeError, "big-endian uint32"),
    ("bgra", zeros(4, 6, 3), None, ValueError, "uint8[height, width, 4], got uint8[4, 6, 3]"),
    ("bgra", zeros(4, 24), None, ValueError, "got uint8[4, 24]"),
    ("bgra", zeros(0, 6, 4), None, ValueError, "not 6 x 0"),
    ("bgra", zeros(1, 32768, 4), None, ValueError, "1 to 32767"),
    ("bgra", zeros(4, 6, 4), 5, ValueError, "6 pixels wide, not width=5"),
    ("bgra", zeros(4, 6, 4)[::-1], None, ValueError, "downwards"),
    ("bgra", zeros(4, 6, 4)[:, ::-1], None, ValueError, "axis 1 has a stride of -4"),
    ("bgra", zeros(4, 12, 4)[:, ::2], None, ValueError, "axis 1 has a stride of 8"),
    ("bgra", np.broadcast_to(zeros(1, 6, 4), (4, 6, 4)), None, ValueError, "read-only"),
    ("bgra", np.lib.stride_tricks.as_strided(zeros(9, 6, 4), (4, 6, 4), (20, 4, 1)), None,
     ValueError, "24 bytes or more from one to the next, not 20"),
    ("bgra", np.lib.stride_tricks.as_strided(zeros(200), (4, 6, 4), (25, 4, 1)), None,
     ValueError, "a multiple of 4 bytes apart, not 25"),
    ("v210", zeros(4, 128), None, ValueError, "give width="),
    ("v210", zeros(4, 128), 49, ValueError, "a line of 49 pixels has 256 bytes"),
    ("v210", zeros(4, 128), -1, ValueError, "not -1 x 4"),
    ("uyvy", zeros(4, 10), None, ValueError, "zrdraw.frame(\"uyvy\", 5, 4)"),
    ("uv8", zeros(4, 6, 2), None, ValueError, "zrdraw.frame(\"uv8\", 6, 4)"),
    ("bayerrggb", zeros(4, 9), None, ValueError, "zrdraw.frame(\"bayerrggb\", 6, 4)"),
    ("bayerrggb", zeros(4, 10), None, ValueError, "give width="),
])
def test_arrays_that_are_none(layout, array, width, error, words):
    with pytest.raises(error) as caught:
        zrdraw.Draw(array, layout, width=width)
    assert words in str(caught.value)


def test_a_read_only_array_is_refused_and_stays():
    array = zeros(4, 6, 4)
    array.flags.writeable = False
    with pytest.raises(ValueError, match="read-only"):
        zrdraw.Draw(array, "bgra")


SIZES = [(1, 1), (2, 1), (5, 3), (6, 4), (48, 2), (49, 7)]


@pytest.mark.parametrize("layout, size", itertools.product(zrdraw.layouts(), SIZES))
def test_nothing_behind_an_array_is_touched(layout, size):
    dtype, shape = shape_of(layout, *size)
    array, guards = fenced(dtype, shape)
    try:
        draw = zrdraw.Draw(array, layout, width=size[0])
    except ValueError as error:  # of layouts that touch more
        assert "has no room" in str(error)
        return
    chance = random.Random(1)
    numbers = (chance.randint(-9, 60) for _ in itertools.count())
    for _ in range(40):
        done, calls = try_all(draw, numbers)
        assert done == calls or layout in ("rgb24", "bgr24")
    draw.antialias = True
    draw.line(0, 0, size[0], size[1] * 2)
    assert guards_hold(guards)


@pytest.mark.parametrize("layout, size", itertools.product(zrdraw.layouts(), SIZES))
def test_frames_have_room_for_everything(layout, size):
    frame = zrdraw.frame(layout, *size)
    memory = frame
    while isinstance(memory.base, np.ndarray):
        memory = memory.base
    # The same again, with memory that ends where the module's own would.
    held, guards = fenced(np.uint8, memory.shape)
    array = np.ndarray(frame.shape, frame.dtype, held, strides=frame.strides)
    draw = zrdraw.Draw(array, layout, width=size[0])
    chance = random.Random(2)
    numbers = (chance.randint(-9, 60) for _ in itertools.count())
    for round in range(30):
        draw.transparency = 0.5 if round > 10 else None
        draw.additive = round > 20
        done, calls = try_all(draw, numbers)
        assert done == calls
    assert guards_hold(guards)


@pytest.mark.parametrize("layout, shape, pitch, touched", [
    ("bayerrggb", (4, 9), 20, 4 * 20 + 9 + 2),  # a line more, and two bytes
    ("uv8", (4, 6, 2), 20, 3 * 20 + 12 + 2),
    ("uyvy", (4, 10), 20, 3 * 20 + 12),  # a whole pair
])
def test_room_is_counted_to_the_byte(layout, shape, pitch, touched):
    strides = (pitch, 2, 1) if len(shape) == 3 else (pitch, 1)
    for size in (touched, touched - 1):
        memory, guards = fenced(np.uint8, size)
        array = np.ndarray(shape, np.uint8, memory, strides=strides)
        if size < touched:
            with pytest.raises(ValueError, match="has no room"):
                zrdraw.Draw(array, layout)
            continue
        draw = zrdraw.Draw(array, layout)
        chance = random.Random(3)
        for _ in range(30):
            try_all(draw, (chance.randint(-3, 9) for _ in itertools.count()))
        assert guards_hold(guards)


@pytest.mark.parametrize("act", [
    lambda draw: draw.put_pixel(5, 3, background=True),
    lambda draw: draw.point(5, 3, background=True),
    lambda draw: draw.erase(background=True),
    lambda draw: draw.label(0, 0, "a", opaque=True),
    lambda draw: draw.label(0, 0, "a", inverse=True),
    lambda draw: draw.draw_text(0, 0, 9, 9, "a", opaque=True),
    lambda draw: setattr(draw, "transparency", 0.5),
    lambda draw: setattr(draw, "additive", True),
])
def test_wide_writes_of_24_bit_pixels_need_room(act):
    plain = zeros(4, 6, 3)
    with pytest.raises(ValueError, match=r'draw on zrdraw.frame\("rgb24", 6, 4\)'):
        act(zrdraw.Draw(plain, "rgb24"))
    assert not plain.any()
    act(zrdraw.Draw(zrdraw.frame("rgb24", 6, 4), "rgb24"))


def test_a_window_is_drawn_on_and_nothing_around_it():
    picture = zeros(8, 12, 4)
    draw = zrdraw.Draw(picture[2:6, 3:9], "bgra")
    draw.color, draw.back_color = (0, 0, 1), (0, 1, 0)
    expected = picture.copy()
    for fill, value in [(draw.erase, [255, 0, 0, 255]),
                        (lambda: draw.erase(background=True), [0, 255, 0, 255]),
                        (lambda: draw.fill_rect(0, 0, 6, 4), [255, 0, 0, 255])]:
        fill()
        expected[2:6, 3:9] = value
        assert (picture == expected).all()
    assert draw.color == (0, 0, 1, 1) and draw.back_color == (0, 1, 0, 1)


def test_an_object_keeps_its_array():
    array = zeros(4, 6, 4)
    gone = weakref.ref(array)
    draw = zrdraw.Draw(array, "bgra")
    del array
    gc.collect()
    assert gone() is draw.array
    del draw
    gc.collect()
    assert gone() is None


@pytest.mark.parametrize("layout, width, height, pitch, size", [
    ("bgra", 1920, 1080, 0, 1920 * 1080 * 4),
    ("v210", 1920, 1080, 0, 5120 * 1080),
    ("v210", 720, 486, 0, 1920 * 486),
    ("bayerrggb", 6, 4, 0, 36),
    ("uyvy", 6, 4, 16, 64),
])
def test_sizes(layout, width, height, pitch, size):
    assert zrdraw.frame_size(layout, width, height, pitch) == size
    if pitch == 0:
        assert zrdraw.frame(layout, width, height).nbytes == size


@pytest.mark.parametrize("arguments, words", [
    (("bgra", 0, 4), "width is a number from 1 to 32767, not 0"),
    (("bgra", 4, 40000), "height is a number from 1"),
    (("bgra", 4, 4, 15), "a line of 4 pixels of bgra has 16 bytes, not 15"),
])
def test_sizes_that_are_none(arguments, words):
    with pytest.raises(ValueError) as caught:
        zrdraw.frame_size(*arguments)
    assert words in str(caught.value)


def test_the_catalogue_has_every_layout():
    all = zrdraw.layouts()
    assert len(all) == 26
    assert all["v210"]["code"] == 14 and all["v210"]["group_bytes"] == 128
    assert all["bayergbrg"]["mosaic"] == "GBRG"

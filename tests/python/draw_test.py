"""What operations draw, against numpy slices and Pillow, and what they refuse."""

import math

import numpy as np
import pytest
import zrdraw
from PIL import Image, ImageDraw

RED, GREEN = (1, 0, 0), (0, 1, 0)
W, H = 40, 30


def canvas(layout="rgba", width=W, height=H, color=RED):
    draw = zrdraw.Draw(zrdraw.frame(layout, width, height), layout, width=width)
    draw.color = color
    return draw


def by_slices(*slices):
    expected = np.zeros((H, W, 4), np.uint8)
    for part in slices:
        expected[part] = (255, 0, 0, 255)
    return expected


def by_pillow(paint):
    picture = Image.new("RGBA", (W, H))
    paint(ImageDraw.Draw(picture))
    return np.asarray(picture)


def disc(cx, cy, radius):
    expected = np.zeros((H, W, 4), np.uint8)
    for dy in range(-radius, radius + 1):
        half = math.isqrt(radius * radius - dy * dy)
        expected[cy + dy, cx - half:cx + half + 1] = (255, 0, 0, 255)
    return expected


@pytest.mark.parametrize("paint, expected", [
    (lambda d: d.put_pixel(3, 2), by_slices((2, 3))),
    (lambda d: d.put_pixel(W, H), by_slices((H - 1, W - 1))),  # the edge is the last pixel
    (lambda d: d.line_horiz(3, 5, 9), by_slices((5, slice(3, 10)))),
    (lambda d: d.line_vert(3, 5, 9), by_slices((slice(5, 10), 3))),
    (lambda d: d.fill_rect(3, 5, 9, 8), by_slices((slice(5, 8), slice(3, 10)))),
    (lambda d: d.erase(), by_slices(slice(None))),
    (lambda d: d.dash(2, 4, 11, 4, 3, 2), by_slices((4, [2, 3, 4, 7, 8, 9]))),
    (lambda d: d.fill_circle(15, 14, 9), disc(15, 14, 9)),
    (lambda d: d.line(2, 3, 20, 21), by_pillow(lambda p: p.line((2, 3, 20, 21), "red"))),
    (lambda d: d.line(20, 3, -5, 28), by_pillow(lambda p: p.line((20, 3, -5, 28), "red"))),
    (lambda d: d.rectangle(4, 5, 30, 20), by_pillow(lambda p: p.rectangle((4, 5, 30, 20), outline="red"))),
    (lambda d: d.polyline([(2, 2), (12, 12), (30, 12), (30, 2)]),
     by_pillow(lambda p: p.line([(2, 2), (12, 12), (30, 12), (30, 2)], "red"))),
    (lambda d: d.polyline([[2, 2], (12, 2), np.array([12, 9])]),
     by_slices((2, slice(2, 13)), (slice(2, 10), 12))),
    (lambda d: d.polyline(np.array([[2, 2], [12, 2], [12, 9]], np.int16)),
     by_slices((2, slice(2, 13)), (slice(2, 10), 12))),
    (lambda d: (d.move_to(2, 2), d.line_to(2, 6), d.line_to(8, 6)),
     by_slices((slice(2, 7), 2), (6, slice(2, 9)))),
    (lambda d: (d.rectangle(4, 5, 30, 20), d.fill(10, 10)),
     by_pillow(lambda p: p.rectangle((4, 5, 30, 20), fill="red"))),
])
def test_shapes(paint, expected):
    draw = canvas()
    paint(draw)
    assert (draw.array == expected).all()


@pytest.mark.parametrize("layout, color, pixel", [
    ("bgra", (1, 0.5, 0, 0.25), [0, 127, 255, 63]),
    ("argb", (1, 0.5, 0, 0.25), [63, 255, 127, 0]),
    ("rgb24", (1, 0.5, 0), [255, 127, 0]),
    ("rgb48", (1, 0.5, 0), [65535, 32768, 0]),
    ("argb64", (1, 0.5, 0, 1), [65535, 65535, 32768, 0]),
    ("rgbhalf48", (1, 0.5, 0), [1, 0.5, 0]),
    ("rgbahalf", (1, 0, 0, 1), [1, 0, 0, 1]),
])
def test_colours_are_those_of_the_picture(layout, color, pixel):
    draw = canvas(layout, color=color)
    draw.erase()
    assert (draw.array == np.array(pixel, draw.array.dtype)).all()


@pytest.mark.parametrize("matrix, white, red", [
    ("rec601", (235, 128, 128), (82, 90, 240)),
    ("rec709", (235, 128, 128), (63, 102, 240)),
    ("rec709full", (255, 128, 128), (54, 99, 255)),
])
def test_colours_of_422_follow_the_matrix(matrix, white, red):
    draw = canvas("uyvy")
    draw.matrix = matrix
    for color, (y, cb, cr) in [((1, 1, 1), white), (RED, red)]:
        draw.color = color
        draw.erase()
        assert draw.array[0, :4].tolist() == [cb, y, cr, y]
        assert (draw.array.reshape(-1, 4) == [cb, y, cr, y]).all()


def test_readers_tell_what_is_there():
    draw = canvas()
    draw.array[4, 7] = (51, 102, 204, 255)
    assert draw.get_pixel(7, 4) == pytest.approx((0.2, 0.4, 0.8, 1))
    assert draw.get_pixel_hsv(7, 4) == pytest.approx((220, 0.75, 0.8))
    y, cb, cr = draw.get_pixel_ycbcr(7, 4)
    assert draw.ycbcr_to_rgb(y, cb, cr) == pytest.approx((0.2, 0.4, 0.8), abs=0.01)
    assert canvas("v210").get_pixel_hsv(0, 0) is None
    for x, y in [(-1, 0), (0, -1), (W, 0), (0, H)]:
        with pytest.raises(IndexError, match="not on the 40 x 30 frame"):
            draw.get_pixel(x, y)


def test_transparency_and_additive():
    draw = canvas()
    draw.array[:] = 100
    draw.transparency = 0.5
    assert draw.transparency == 0.5 and draw.put_pixel(1, 1)
    draw.transparency = None
    assert draw.transparency is None
    draw.color, draw.additive = (0.2, 0.4, 0), True
    draw.put_pixel(2, 2)
    draw.additive = False
    draw.put_pixel(3, 3)
    assert abs(int(draw.array[1, 1, 0]) - 177) <= 1
    assert draw.array[2, 2].tolist() == [151, 202, 100, 255]
    assert draw.array[3, 3].tolist() == [51, 102, 0, 255]


def test_a_smooth_line_has_shades():
    draw = canvas(color=(1, 1, 1))
    draw.line_wu(2, 2, 35, 9)
    assert len(np.unique(draw.array[..., 3])) > 4


def test_a_gradient_goes_from_colour_to_colour():
    draw = canvas()
    draw.back_color = GREEN
    draw.gradient_rect(0, 0, W, H, 0)
    red, green = draw.array[..., 0].astype(int), draw.array[..., 1].astype(int)
    assert (np.diff(red, axis=1) < 0).all() and (np.diff(green, axis=1) > 0).all()
    assert red[0, 0] == 255 and green[0, -1] == 255


def test_text_stands_in_its_cells():
    draw = canvas(color=(1, 1, 1))
    draw.back_color = (0, 0, 0)
    assert draw.label(8, 10, "Hi", opaque=True)
    ink = draw.array[..., 0] == 255
    assert ink[10:20, 8:24].any() and not np.delete(ink, slice(8, 24), axis=1).any()
    draw.label(8, 10, "Hi", inverse=True, opaque=True)
    assert ((draw.array[10:20, 8:24, 0] == 255) == ~ink[10:20, 8:24]).all()
    draw.label_scale = 2
    assert draw.label_cell == (16, 20)


def test_text_in_a_rectangle_tells_where_it_is():
    draw = canvas(width=200, height=60)
    left, top, right, bottom = draw.draw_text(0, 0, 200, 20, "text", align="right")
    assert (right - left, bottom - top, right) == (4 * 16, 20, 200)
    columns = np.flatnonzero(draw.array.any(axis=(0, 2)))
    assert left <= columns.min() and columns.max() < right


@pytest.mark.parametrize("act, answer", [
    (lambda d: d.put_pixel(W + 1, 0), False),
    (lambda d: d.put_pixel(W, 0), True),
    (lambda d: d.set_pixel(-1, 0, RED), False),
    (lambda d: d.line_horiz(-1, 0, 5), False),
    (lambda d: d.line_vert(0, 0, H + 1), False),
    (lambda d: d.line(-99, -99, -9, -9), True),  # cut, not refused
    (lambda d: d.polyline([(1, 1)]), False),
    (lambda d: d.polyline([]), False),
    (lambda d: d.polyline_to([]), False),
    (lambda d: d.poly_bezier([(1, 1), (2, 2), (3, 3)]), False),
    (lambda d: d.bezier(1, 1, 5, 5, 9, 9, 1, 1), False),
    (lambda d: d.arc(5, 5, 5, 5, 0, 0, 9, 9), False),
    (lambda d: d.round_rect(0, 0, 9, 9, 20, 20), False),
    (lambda d: d.fill(-1, 0), False),
    (lambda d: d.circle(W + 5, 0, 0), False),
])
def test_refusals_of_the_library_are_answers(act, answer):
    assert act(canvas()) is answer


@pytest.mark.parametrize("act, error, words", [
    (lambda d: d.line(0, 0, 32768, 0), ValueError, "from -32767 to 32767, not 32768"),
    (lambda d: d.line(0, 0, 1 << 80, 0), ValueError, "a coordinate is a number"),
    (lambda d: d.line(0, 0, 1.5, 0), TypeError, "x1: int"),
    (lambda d: d.circle(0, 0, -1), ValueError, "a length is a number from 0 to 32767, not -1"),
    (lambda d: d.circle(32000, 0, 1000), ValueError, "reaches beyond the largest coordinate"),
    (lambda d: d.dash(0, 0, 9, 9, 0, 1), ValueError, "on is a number from 1"),
    (lambda d: d.angle_arc(0, 0, 5, 0, 4000), ValueError, "an angle in degrees"),
    (lambda d: d.angle_arc(0, 0, 5, 0, math.nan), ValueError, "not nan"),
    (lambda d: d.fill(0, 0, 2), ValueError, "a fraction is a number from 0 to 1, not 2"),
    (lambda d: d.polyline([(0, 0), (0, 40000)]), ValueError, "point 1 is (0, 40000)"),
    (lambda d: d.polyline([(0, 0), (0, 10**400)]), ValueError, "point 1 is (0, inf)"),
    (lambda d: d.polyline(np.array([[0, 2**64 - 5]], np.uint64)), ValueError, "point 0 is"),
    (lambda d: d.polyline([(0.5, 0), (1, 1)]), TypeError, "pairs of whole numbers"),
    (lambda d: d.polyline([(0, 0, 0), (1, 1, 1)]), TypeError, "pairs of whole numbers"),
    (lambda d: d.polyline("no points"), TypeError, "pairs of whole numbers"),
    (lambda d: d.label(0, 0, "5 \u20ac"), ValueError, "no '\u20ac', character 2 of the text"),
    (lambda d: d.label(0, 0, "a\0"), ValueError, "no '\\x00', character 1"),
    (lambda d: d.label(0, 0, b"bytes"), TypeError, "text: str"),
    (lambda d: d.draw_text(0, 0, 9, 9, "a", align="middle"), ValueError, "expected left, centre"),
    (lambda d: setattr(d, "color", (1, 2, 0)), ValueError, "component is a number from 0 to 1, not 2"),
    (lambda d: setattr(d, "color", (1, 0)), ValueError, "three components"),
    (lambda d: setattr(d, "color", "red"), TypeError, "incompatible"),
    (lambda d: setattr(d, "matrix", "rec907"), ValueError, "did you mean rec601 or rec709?"),
    (lambda d: setattr(d, "label_scale", 65), ValueError, "label_scale is a number from 1 to 64"),
    (lambda d: d.set_ycbcr10(0, 0, 1024), ValueError, "from 0 to 1023, not 1024"),
])
def test_what_is_wrong_is_told_and_draws_nothing(act, error, words):
    draw = canvas()
    with pytest.raises(error) as caught:
        act(draw)
    assert words in str(caught.value)
    assert not draw.array.any()

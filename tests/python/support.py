"""Arrays whose memory ends at a fence, and what is to be drawn on them."""

import ctypes
import mmap

import numpy as np
import zrdraw

GUARD = 0xA5
_PROT_NONE = 0


def fenced(dtype, shape):
    """An array of zeros whose last byte is the last one that may be touched: to read or write the
    one behind it ends the process. Bytes before it are guards, see guards_hold()."""
    size = int(np.prod(shape)) * np.dtype(dtype).itemsize
    pages = (size + 64) // mmap.PAGESIZE + 1
    memory = mmap.mmap(-1, (pages + 1) * mmap.PAGESIZE)
    begin = ctypes.addressof(ctypes.c_char.from_buffer(memory))
    fence = begin + pages * mmap.PAGESIZE
    assert ctypes.CDLL(None).mprotect(ctypes.c_void_p(fence), mmap.PAGESIZE, _PROT_NONE) == 0
    offset = pages * mmap.PAGESIZE - size
    guards = np.frombuffer(memory, np.uint8, offset)
    guards[:] = GUARD
    array = np.frombuffer(memory, dtype, size // np.dtype(dtype).itemsize, offset).reshape(shape)
    return array, guards


def guards_hold(guards):
    return bool((guards == GUARD).all())


def shape_of(layout, width, height):
    """Type and shape of a frame, as zrdraw.frame() makes it."""
    frame = zrdraw.frame(layout, width, height)
    return frame.dtype, frame.shape


def try_all(draw, numbers):
    """Calls every operation with coordinates of an iterator, on and off the frame. What has no room
    on a plain 24-bit array is refused."""
    n = lambda: next(numbers)
    points = lambda count: [(n(), n()) for _ in range(count)]
    calls = [
        lambda: draw.point(n(), n()),
        lambda: draw.put_pixel(n(), n(), background=True),
        lambda: draw.set_pixel(n(), n(), (0.1, 0.7, 0.3)),
        lambda: draw.line(n(), n(), n(), n()),
        lambda: draw.line_to(n(), n()),
        lambda: draw.line_wu(n(), n(), n(), n()),
        lambda: draw.line_wu_to(n(), n()),
        lambda: draw.line_vert(n(), n(), n()),
        lambda: draw.line_horiz(n(), n(), n()),
        lambda: draw.dash(n(), n(), n(), n(), 3, 2),
        lambda: draw.polyline(points(5)),
        lambda: draw.polyline_to(points(3)),
        lambda: draw.circle(n(), n(), abs(n())),
        lambda: draw.fill_circle(n(), n(), abs(n())),
        lambda: draw.ellipse(n(), n(), abs(n()), abs(n())),
        lambda: draw.arc(n(), n(), n(), n(), n(), n(), n(), n()),
        lambda: draw.arc_to(n(), n(), n(), n(), n(), n(), n(), n()),
        lambda: draw.pie(n(), n(), n(), n(), n(), n(), n(), n()),
        lambda: draw.angle_arc(n(), n(), abs(n()), 10, 300),
        lambda: draw.angle_arc_to(n(), n(), abs(n()), abs(n()), -50, 70),
        lambda: draw.bezier(n(), n(), n(), n(), n(), n(), n(), n()),
        lambda: draw.poly_bezier(points(7)),
        lambda: draw.poly_bezier_to(points(4)),
        lambda: draw.rectangle(n(), n(), n(), n()),
        lambda: draw.fill_rect(n(), n(), n(), n()),
        lambda: draw.fill_rect(0, 0, draw.width, draw.height),
        lambda: draw.round_rect(n(), n(), n(), n(), abs(n()), abs(n())),
        lambda: draw.gradient_rect(n(), n(), n(), n(), n()),
        lambda: draw.fill(n(), n(), 0.2),
        lambda: draw.fill(draw.width, draw.height, 1.0),
        lambda: draw.erase(),
        lambda: draw.erase(background=True),
        lambda: draw.label(n(), n(), "Wq\x7f"),
        lambda: draw.label(n(), n(), "Wq", inverse=True, opaque=True),
        lambda: draw.draw_text(n(), n(), n(), n(), "text", "centre"),
        lambda: draw.draw_text(n(), n(), n(), n(), "text", "right", opaque=True),
        lambda: draw.get_pixel(n() % draw.width, n() % draw.height),
        lambda: draw.get_pixel(draw.width - 1, draw.height - 1),
        lambda: draw.get_pixel_ycbcr(draw.width - 1, draw.height - 1),
        lambda: draw.get_pixel_ycbcr8(draw.width - 1, draw.height - 1),
        lambda: draw.get_pixel_ycbcr10(draw.width - 1, draw.height - 1),
        lambda: draw.get_pixel_hsv(draw.width - 1, draw.height - 1),
        lambda: draw.get_luma(draw.width - 1, draw.height - 1),
    ]
    done = 0
    for call in calls:
        try:
            call()
            done += 1
        except ValueError as error:
            assert "has room" in str(error)
    return done, len(calls)

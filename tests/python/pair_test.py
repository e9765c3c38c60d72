"""Transitions and the mux: pictures, refusals, and that nothing beyond the arrays is touched."""

import itertools

import numpy as np
import pytest
import zrdraw
from support import fenced, guards_hold, shape_of

W, H = 40, 20
RANDOM = np.random.default_rng(1)


def pictures(width=W, height=H, count=2):
    return [RANDOM.integers(0, 256, (height, width, 4), np.uint8) for _ in range(count)]


@pytest.mark.parametrize("code, position, expected", [
    ("horizontal", 0.25, lambda a, b: np.concatenate([b[:, :10], a[:, 10:]], axis=1)),
    ("vertical", 0.5, lambda a, b: np.concatenate([b[:10], a[10:]])),
    ("top-left", 0.5, lambda a, b: np.block([[[b[:10, :20]], [a[:10, 20:]]], [[a[10:, :20]], [a[10:, 20:]]]])),
    (2, 0.25, lambda a, b: np.concatenate([b[:5], a[5:]])),
    ("slide-left", 0.25, lambda a, b: np.concatenate([a[:, 10:], b[:, :10]], axis=1)),
])
def test_pictures_of_transitions(code, position, expected):
    a, b = pictures()
    out = np.zeros_like(a)
    zrdraw.wipe(a, b, out, "bgra", code, position)
    # The column or line at the edge itself may be of either.
    wrong = (out != expected(a, b)).any(axis=2)
    if code == "slide-left":
        assert (out[:, :30] == a[:, 10:]).all()
    else:
        assert wrong.any(axis=0).sum() <= 1 or wrong.any(axis=1).sum() <= 1


def test_a_dissolve_mixes():
    a, b = pictures()
    out = np.zeros_like(a)
    zrdraw.wipe(a, b, out, "bgra", "dissolve", 0.25)
    mixed = (a.astype(float) * 0.75 + b.astype(float) * 0.25).astype(np.uint8)
    assert (np.abs(out.astype(int) - mixed) <= 1).all()
    zrdraw.wipe(a, b, out, "bgra", "dissolve", 0.25, swap=True)
    mixed = (b.astype(float) * 0.75 + a.astype(float) * 0.25).astype(np.uint8)
    assert (np.abs(out.astype(int) - mixed) <= 1).all()


def test_out_may_be_a_source():
    a, b = pictures()
    apart = np.zeros_like(a)
    zrdraw.wipe(a, b, apart, "bgra", "rectangle", 0.5)
    zrdraw.wipe(a, b, a, "bgra", "rectangle", 0.5)
    assert (a == apart).all()


BIG = pictures(W, H + 5, 1)[0]


@pytest.mark.parametrize("change, words", [
    ({"layout": "rgbahalf", "a": np.zeros((H, W, 4), np.float16)}, "no transitions in layout rgbahalf"),
    ({"b": pictures(W, H + 1)[0]}, "of one size, not 40 x 20 and 40 x 21"),
    ({"code": "horizntal"}, "did you mean horizontal? (zrdraw.wipes() has all)"),
    ({"code": -1}, "there is no transition -1"),
    ({"position": 1.5}, "from 0 to 1, not 1.5"),
    ({"a": pictures(W * 2)[0][:, :W]}, "without gaps, 160 bytes from one to the next, not 320"),
    ({"a": BIG[:H], "out": BIG[5:]}, "shares memory"),
    ({"a": BIG[:H], "out": BIG[:H], "code": "slide-up"}, "give another out"),
    ({"code": "slide-up", "swap": True}, "no swapped form"),
    ({"layout": "uyvy", **{name: np.zeros((H, 10), np.uint8) for name in ["a", "b", "out"]}},
     "need an even width, not 5"),
    ({"layout": "rgb24", "code": "slide-up",
      **{name: np.zeros((H, 5, 3), np.uint8) for name in ["a", "b", "out"]}},
     "multiple of 4 bytes, not 15"),
])
def test_refused_transitions(change, words):
    a, b = pictures()
    out = np.zeros_like(a)
    arguments = {"a": a, "b": b, "out": out, "layout": "bgra", "code": 1, "position": 0.5}
    with pytest.raises(ValueError) as caught:
        zrdraw.wipe(**{**arguments, **change})
    assert words in str(caught.value)
    assert not out.any()


LAYOUTS = ["bgra", "rgb24", "uyvy", "yvyu", "v210", "rgb48", "argb64"]
SIZES = [(1, 1), (2, 1), (6, 3), (7, 5), (50, 4)]


@pytest.mark.parametrize("layout, size", itertools.product(LAYOUTS, SIZES))
def test_transitions_touch_nothing_beyond(layout, size):
    arrays, guards = zip(*[fenced(*shape_of(layout, *size)) for _ in range(3)])
    width = size[0] if layout in ("v210", "uyvy", "yvyu") else None
    for wipe in zrdraw.wipes():
        for position in (0, 0.3, 1):
            try:
                zrdraw.wipe(*arrays, layout, wipe, position, width=width)
            except ValueError as error:
                assert "width" in str(error) or "has no room" in str(error) or "gaps" in str(error)
    assert all(guards_hold(guard) for guard in guards)


@pytest.mark.parametrize("mode, more, expected", [
    ("a", {}, lambda a, b: a),
    ("a", {"swap": True}, lambda a, b: b),
    ("a", {"flip_a": "hv"}, lambda a, b: a[::-1, ::-1]),
    ("split", {"split": 10}, lambda a, b: np.concatenate([a[:, :10], b[:, 10:]], axis=1)),
    ("split-lines", {}, lambda a, b: np.concatenate([a[:10], b[10:]])),
    ("lines", {}, lambda a, b: np.where(np.arange(H)[:, None, None] % 2 == 0, a, b)),
    ("columns", {}, lambda a, b: np.where(np.arange(W)[None, :, None] % 2 == 0, a, b)),
    ("byte0", {}, lambda a, b: np.concatenate([b[..., :1], a[..., 1:]], axis=2)),
    ("average", {}, lambda a, b: a // 2 + b // 2),
    ("two-up", {}, lambda a, b: np.concatenate(
        [np.zeros((5, W, 4), np.uint8), np.concatenate([a[::2, ::2], b[::2, ::2]], axis=1),
         np.zeros((5, W, 4), np.uint8)])),
])
def test_pictures_of_the_mux(mode, more, expected):
    a, b = pictures()
    kept = a.copy(), b.copy()
    out = np.zeros_like(a)
    zrdraw.mux(a, b, out, mode, **more)
    assert (out == expected(*kept)).all()
    assert (a == kept[0]).all() and (b == kept[1]).all()


def test_the_divider_and_the_grid_are_drawn():
    a, b = pictures()
    out = np.zeros_like(a)
    zrdraw.mux(a, b, out, "split", split=9, divider=True)
    assert (out[:, 9] == 0x80).all() and (out[:, 10:] == b[:, 10:]).all()
    zrdraw.mux(a, b, out, "a", grid=(8, 5))
    assert (out[::5] == 0xBF).all() and (out[:, ::8] == 0xBF).all()


@pytest.mark.parametrize("mode, more, words", [
    ("spilt", {}, "did you mean split? (zrdraw.mux_modes() has all)"),
    ("split", {"split": W + 1}, "split is a number from 0 to 40, not 41"),
    ("split", {"split": W, "divider": True}, "split is a number from 0 to 39, not 40"),
    ("a", {"grid": 1}, "cannot be cut into 100 parts"),
    ("a", {"grid": (0, 5)}, "grid is a number from 1"),
    ("a", {"flip_a": "x"}, "expected 'h', 'v' or 'hv'"),
    ("channel", {"channel": 4}, "channel is a number from 0 to 3"),
    ("blocks", {"block": 101}, "block is a number from 1 to 100"),
    ("wipe", {"code": "no"}, "there is no transition 'no'"),
])
def test_refused_compositions(mode, more, words):
    a, b = pictures()
    out = np.zeros_like(a)
    with pytest.raises(ValueError) as caught:
        zrdraw.mux(a, b, out, mode, **more)
    assert words in str(caught.value)
    assert not out.any()


def test_the_mux_does_not_draw_over_a_source():
    a, b = pictures()
    with pytest.raises(ValueError, match="shares memory"):
        zrdraw.mux(a, b, a, "a")


@pytest.mark.parametrize("size", [(1, 1), (2, 1), (1, 2), (3, 3), (4, 5), (41, 7)])
def test_the_mux_touches_nothing_beyond(size):
    (a, b, out), guards = zip(*[fenced(np.uint8, (size[1], size[0], 4)) for _ in range(3)])
    for mode, flip in itertools.product(zrdraw.mux_modes(), ["", "h", "v"]):
        if mode == "squeeze" and size[0] % 2:
            continue
        for split in (None, 0, 1):
            zrdraw.mux(a, b, out, mode, split=split, flip_a=flip, flip_b=flip, grid=(2, 2))
    assert all(guards_hold(guard) for guard in guards)

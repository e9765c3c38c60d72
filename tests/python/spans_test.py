"""The kernels on runs, against numpy."""

import numpy as np
import pytest
import zrdraw

RANDOM = np.random.default_rng(2)


def test_blend_over_by_its_rule():
    source, under = RANDOM.integers(0, 256, (2, 33, 37, 4), np.uint8)
    source[0, :17, 3] = np.arange(17)
    alpha = source[..., 3:].astype(int)
    mixed = (under[..., :3] * (255 - alpha) + source[..., :3] * alpha) // 255
    expected = np.where(alpha <= 16, under, np.concatenate([mixed, alpha], axis=2))
    wide = np.zeros((33, 50, 4), np.uint8)
    window = wide[:, 4:41]
    window[:] = under
    zrdraw.blend_over(window, source)
    assert (window == expected).all()
    assert not wide[:, :4].any() and not wide[:, 41:].any()


@pytest.mark.parametrize("pattern", [b"\1", b"\1\2\3", b"\1\2\3\4", b"12345678", b"a" * 24])
def test_fill_pattern(pattern):
    array = np.zeros((6, 4), np.uint16)
    zrdraw.fill_pattern(array, pattern)
    assert array.tobytes() == pattern * (48 // len(pattern))


@pytest.mark.parametrize("call, words", [
    (lambda: zrdraw.fill_pattern(np.zeros(7, np.uint8), b"ab"), "7 bytes are no whole number"),
    (lambda: zrdraw.fill_pattern(np.zeros(7, np.uint8), b""), "patterns of 0 bytes"),
    (lambda: zrdraw.fill_pattern(np.zeros((8, 8), np.uint8)[:, :4], b"a"), "must follow each other"),
    (lambda: zrdraw.fill_pattern(np.frombuffer(b"abcd", np.uint8), b"a"), "read-only"),
    (lambda: zrdraw.blend_over(np.zeros((2, 2, 4), np.uint8), np.zeros((2, 3, 4), np.uint8)),
     "of one size"),
])
def test_refusals(call, words):
    with pytest.raises(ValueError) as caught:
        call()
    assert words in str(caught.value)


def test_an_array_does_not_lie_over_itself():
    array = np.zeros((4, 4, 4), np.uint8)
    with pytest.raises(ValueError, match="share memory"):
        zrdraw.blend_over(array[1:], array[:-1])


def test_half_floats_as_numpy_has_them():
    every = np.arange(65536, dtype=np.uint16).view(np.float16).reshape(256, 256)
    floats = zrdraw.from_half(every)
    number = ~np.isnan(every)
    assert floats.dtype == np.float32 and (floats[number] == every.astype(np.float32)[number]).all()
    with np.errstate(over="ignore"):
        numbers = RANDOM.standard_normal(5000).astype(np.float32) * np.float32(10.0) ** np.arange(
            -8, 12, 0.004, np.float32)[:5000]
        assert (zrdraw.to_half(numbers) == numbers.astype(np.float16)).all()
    with pytest.raises(TypeError, match="expected an array of float16, got float32"):
        zrdraw.from_half(floats)


def test_packed_pixels():
    assert [zrdraw.packed_pixel_bytes(name) for name in ["rgb24", "rgb48", "bgra", "v210"]] == [3, 6, 0, 0]

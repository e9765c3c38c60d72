"""Overlays: layers, settings, commands, time code, meters and the watermark."""

import numpy as np
import pytest
import zrdraw
from PIL import Image
from support import fenced, guards_hold

W, H = 320, 180


def overlay(layout="bgra", width=W, height=H, **more):
    return zrdraw.Overlay(layout, width, height, **more)


def burnt(over, frame=0, **more):
    array = np.zeros((H, W, 4), np.uint8)
    over.burn(array, frame, **more)
    return array


def inked(array):
    """The rectangle of what is not black: left, top, right, bottom."""
    lines, columns = np.nonzero(array[..., :3].any(axis=2))
    return columns.min(), lines.min(), columns.max(), lines.max()


def test_all_layers_are_off_at_first():
    assert not burnt(overlay()).any()


def test_time_code_stands_at_its_place_and_counts():
    over = overlay(start="10:00:00:00")
    over.time_code_ltc_enable, over.time_code_x, over.time_code_y = 1, 40, 60
    over.fill_background = 0
    first = burnt(over)
    left, top, right, bottom = inked(first)
    assert 40 <= left < 56 and 60 <= top < 66 and bottom < 80
    assert (burnt(over, 1) != first).any()
    again = overlay(start="10:00:01:00")
    again.set_time_code(ltc=True, x=40, y=60)
    again.set_master(True, fill_background=False)
    assert (burnt(over, 25) == burnt(again, 0)).all()


def test_drop_frame_leaves_out_two_numbers():
    drop = overlay(rate=(30000, 1001), start="00:00:59;29")
    late = overlay(rate=(30000, 1001), start="00:01:00;02")
    for over in (drop, late):
        over.time_code_ltc_enable, over.time_code_y = 1, 60
    assert (burnt(drop, 1) == burnt(late, 0)).all()


def test_texts_and_their_attributes():
    over = overlay()
    text = over.texts[3]
    text.text, text.enabled, text.x, text.y = "Studio 3", 1, 8, 100
    left, top, _, bottom = inked(burnt(over))
    assert left >= 8 and top >= 100 and bottom < 130
    assert (over.texts[3].text, over.texts[3].x, over.texts[4].text) == ("Studio 3", 8, "")
    assert [slot.y for slot in overlay().texts][:3] == [0, 30, 60]


def test_meters_follow_the_levels():
    over = overlay()
    over.set_audio(True, x=10, y=4, channels=2)
    still, loud = burnt(over), burnt(over, levels=np.array([1.0, 0.0]))
    assert (loud != still).any()
    other = overlay()
    other.set_audio(True, x=10, y=4, channels=2)
    assert (burnt(other, levels=np.array([65535, 0], np.uint16)) == loud).all()
    marked = burnt(over, levels=np.array([0.0, 0.0]))  # the peak stays for a while
    assert (marked != still).any()
    assert (burnt(over, levels=np.zeros(2), peaks=np.zeros(2)) == still).all()


@pytest.mark.parametrize("layout, shape", [("bgra", (H, W, 4)), ("uyvy", (H, W * 2)), ("v210", (H, 896))])
def test_a_watermark_lies_on_the_frame_alone(layout, shape, tmp_path):
    Image.new("RGBA", (32, 16), (255, 0, 0, 255)).save(tmp_path / "logo.png")
    array, guards = fenced(np.uint8, shape)
    over = overlay(layout)
    over.watermark = str(tmp_path / "logo.png")
    over.watermark_x, over.watermark_y = W - 32, H - 16
    over.burn(array, 0)
    changed = np.nonzero(array.any(axis=tuple(range(1, array.ndim))))[0]
    assert (changed.min(), changed.max()) == (H - 16, H - 1)
    assert guards_hold(guards)
    if layout == "bgra":
        assert (array[H - 16:, W - 32:] == (0, 0, 255, 255)).all()
    over.watermark_x = W - 16
    array[:] = 0
    over.burn(array, 1)
    assert guards_hold(guards)
    half = array.shape[1] // 2  # what reaches over the right edge does not go on in the next line
    assert array[H - 16:, half:].any() and not array[:, :half].any()


def test_another_watermark_takes_the_place(tmp_path):
    over = overlay()
    over.watermark_x = over.watermark_y = 0
    for name, color, pixel in [("a", "red", (0, 0, 255)), ("b", "blue", (255, 0, 0))]:
        Image.new("RGBA", (8, 8), color).save(tmp_path / f"{name}.png")
        over.watermark = str(tmp_path / f"{name}.png")
        assert burnt(over)[4, 4, :3].tolist() == list(pixel)
    over.watermark = ""
    assert not burnt(over).any()


def test_settings_begin_as_the_catalogue_says():
    over = overlay()
    assert (over.enabled, over.audio_x, over.time_code_size, over.watermark_opacity) == (1, 20, 2, 50)
    assert over.v_chip_enable == 0 and over.time_code_vitc_frame_enable == 0


@pytest.mark.parametrize("act, error, words", [
    (lambda o: overlay("rgb24"), ValueError, "burnt in one of bgra, uyvy, v210, not in rgb24"),
    (lambda o: overlay("uyvy", 5), ValueError, "an even width, not 5"),
    (lambda o: overlay(rate=(0, 1)), ValueError, "rate: expected two numbers"),
    (lambda o: overlay(start="25:00:00:00"), ValueError, "start: '25:00:00:00' is no time code"),
    (lambda o: overlay(drop=True), ValueError, "no drop-frame time code at 25/1"),
    (lambda o: setattr(o, "audio_x", -1), ValueError, "audio_x is a number from 0 to 32767, not -1"),
    (lambda o: setattr(o, "audio_channels", 33), ValueError, "from 0 to 32, not 33"),
    (lambda o: setattr(o, "enabled", 2), ValueError, "from 0 to 1, not 2"),
    (lambda o: o.set_audio(True, channels=33), ValueError, "channels is a number from 0 to 32"),
    (lambda o: setattr(o.texts[0], "text", "\u00e9"), ValueError, "no '\u00e9'"),
    (lambda o: setattr(o.texts[0], "text", "x" * 129), ValueError, "128 characters, this one has 129"),
    (lambda o: (setattr(o, "watermark", "/no/such.png"), burnt(o)), ValueError, "'/no/such.png' cannot be read"),
    (lambda o: o.burn(np.zeros((H, W + 1, 4), np.uint8), 0), ValueError, "321 pixels wide, not width=320"),
    (lambda o: o.burn(np.zeros((H + 1, W, 4), np.uint8), 0), ValueError, "frames are 320 x 180"),
    (lambda o: o.burn(np.zeros((H, W * 2, 4), np.uint8)[:, :W], 0), ValueError, "without gaps"),
    (lambda o: burnt(o, -1), ValueError, "frame is a number from 0"),
    (lambda o: burnt(o, levels=np.zeros(33)), ValueError, "32 meters at most, not 33"),
    (lambda o: burnt(o, levels=np.zeros(2, np.int32)), TypeError, "levels: expected an array of floats"),
])
def test_refusals(act, error, words):
    with pytest.raises(error) as caught:
        act(overlay())
    assert words in str(caught.value)

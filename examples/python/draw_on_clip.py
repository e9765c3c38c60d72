"""Draws on the frames of a clip in their own layout, v210, burns an overlay into them and wipes
from one to another. The result is a picture of four frames.

The cells run one by one in an editor that knows them, or all at once:

    python3 draw_on_clip.py [CLIP] [--output PICTURE] [--seconds SECONDS] [--no-show]

Without a clip FFmpeg makes one. Needs FFmpeg, numpy and Pillow.
"""

# %% What to read and where the picture goes
import argparse
import os
import subprocess
from typing import Iterator, List, Tuple

import numpy as np
import zrdraw
from PIL import Image

parser = argparse.ArgumentParser(description="Draws on the frames of a clip.")
parser.add_argument("clip", nargs="?", help="what FFmpeg reads; a test picture unless given")
parser.add_argument("--output", default="draw_on_clip.png")
parser.add_argument("--seconds", type=float, default=2.0)
parser.add_argument("--no-show", action="store_true")
options = parser.parse_args()

WIDTH, HEIGHT, RATE = 960, 540, 25
source = ["-i", options.clip] if options.clip else ["-f", "lavfi", "-i", "testsrc2"]

# %% The frames, as FFmpeg's encoder packs v210: lines of whole groups of 48 pixels
LINE = zrdraw.frame_size("v210", WIDTH, 1)


def frames() -> Iterator[np.ndarray]:
    command = ["ffmpeg", "-v", "error", *source, "-t", str(options.seconds), "-r", str(RATE),
               "-vf", f"scale={WIDTH}:{HEIGHT}:out_color_matrix=bt709",
               "-c:v", "v210", "-f", "rawvideo", "-"]
    with subprocess.Popen(command, stdout=subprocess.PIPE) as reader:
        assert reader.stdout is not None
        while len(data := reader.stdout.read(LINE * HEIGHT)) == LINE * HEIGHT:
            # A bytearray can be written: what is drawn goes into the bytes that were read.
            yield np.frombuffer(bytearray(data), np.uint8).reshape(HEIGHT, LINE)


clip = list(frames())
print(f"{len(clip)} frames of {WIDTH} x {HEIGHT}")

# %% Drawing, in place and in ten bits
def mark(frame: np.ndarray, number: int) -> None:
    draw = zrdraw.Draw(frame, "v210", width=WIDTH)
    x = 80 + 6 * number
    draw.color = (1, 0.8, 0)
    draw.fill_circle(x, 150, 40)
    draw.color = (0, 0, 0)
    draw.circle(x, 150, 30)
    draw.polyline(np.array([[x - 60, 220], [x, 260], [x + 60, 220], [x, 300], [x - 60, 220]]))
    draw.label_scale = 3
    draw.color, draw.back_color = (1, 1, 1), (0.1, 0.1, 0.4)
    draw.label(40, 40, f" frame {number:3} ", opaque=True)


for number, frame in enumerate(clip):
    mark(frame, number)

# %% An overlay: time code from ten o'clock on, a text and meters
overlay = zrdraw.Overlay("v210", WIDTH, HEIGHT, rate=(RATE, 1), start="10:00:00:00")
overlay.set_time_code(ltc=True, x=40, y=HEIGHT - 70, size=3)
overlay.set_audio(True, x=WIDTH - 120, y=120, channels=2)
text = overlay.texts[0]
text.text, text.enabled, text.x, text.y = "Studio 3", 1, WIDTH - 300, 40
for number, frame in enumerate(clip):
    loudness = 0.5 + 0.5 * np.sin(number / 5.0 + np.array([0.0, 1.0]))
    overlay.burn(frame, number, levels=loudness)

# %% A wipe from the first frame to the last, which keeps all ten bits
wiped = zrdraw.frame("v210", WIDTH, HEIGHT)
zrdraw.wipe(clip[0], clip[-1], wiped, "v210", "rectangle", 0.6, width=WIDTH)

# %% To a picture that can be seen, by FFmpeg again
def to_rgb(frame: np.ndarray) -> np.ndarray:
    command = ["ffmpeg", "-v", "error", "-f", "v210", "-video_size", f"{WIDTH}x{HEIGHT}", "-i", "-",
               "-vf", "scale=in_color_matrix=bt709", "-pix_fmt", "rgb24", "-f", "rawvideo", "-"]
    raw = subprocess.run(command, input=frame.tobytes(), stdout=subprocess.PIPE, check=True).stdout
    return np.frombuffer(raw, np.uint8).reshape(HEIGHT, WIDTH, 3)


chosen: List[Tuple[str, np.ndarray]] = [("the first frame", clip[0]), ("half way", clip[len(clip) // 2]),
                                        ("the last frame", clip[-1]), ("a wipe", wiped)]
sheet = np.zeros((2 * HEIGHT, 2 * WIDTH, 3), np.uint8)
for place, (name, frame) in enumerate(chosen):
    top, left = place // 2 * HEIGHT, place % 2 * WIDTH
    quarter = sheet[top:top + HEIGHT, left:left + WIDTH]
    quarter[:] = to_rgb(frame)
    # A part of the sheet is a frame as well: its lines are farther apart than they are long.
    draw = zrdraw.Draw(quarter, "rgb24")
    draw.color = (0, 0, 0)
    draw.fill_rect(WIDTH // 2 - 140, 6, WIDTH // 2 + 140, 38)
    draw.color, draw.label_scale = (1, 1, 0), 2
    draw.label(WIDTH // 2 - 8 * len(name), 12, name)
    draw.rectangle(0, 0, WIDTH - 1, HEIGHT - 1)

picture = Image.fromarray(sheet)
picture.save(options.output)
print(f"{options.output} is made")

# %% On a screen, where there is one
if not options.no_show and os.environ.get("DISPLAY"):
    picture.show()

"""Shows two sources in turns, with a wipe of one second every ten.

Usage: wipe_every_ten_seconds.py [SECONDS [SINK]]

A control source drives the property `position` by the stream's time, so every frame has its own
place in the wipe whatever the machine does. SECONDS (30) is how long the pipeline runs, SINK
(autovideosink) where it shows.
"""

import sys

import gi

gi.require_version("Gst", "1.0")
gi.require_version("GstController", "1.0")
from gi.repository import Gst, GstController  # noqa: E402

EVERY = 10 * Gst.SECOND
LONG = 1 * Gst.SECOND


def main(seconds: int = 30, sink: str = "autovideosink") -> None:
    Gst.init(None)
    frames = 25 * seconds
    caps = "video/x-raw,format=v210,width=1280,height=720,framerate=25/1"
    pipeline = Gst.parse_launch(
        f"zrwipe name=wipe code=barn-door-vertical ! videoconvert ! {sink} "
        f"videotestsrc num-buffers={frames} ! {caps} ! wipe.sink_0 "
        f"videotestsrc num-buffers={frames} pattern=pinwheel ! {caps} ! wipe.sink_1"
    )
    wipe = pipeline.get_by_name("wipe")

    curve = GstController.InterpolationControlSource(
        mode=GstController.InterpolationMode.LINEAR
    )
    curve.set(0, 0.0)
    for turn, begin in enumerate(range(EVERY, seconds * Gst.SECOND, EVERY)):
        curve.set(begin, turn % 2)
        curve.set(begin + LONG, 1 - turn % 2)
    wipe.add_control_binding(
        GstController.DirectControlBinding.new(wipe, "position", curve)
    )

    pipeline.set_state(Gst.State.PLAYING)
    message = pipeline.get_bus().timed_pop_filtered(
        Gst.CLOCK_TIME_NONE, Gst.MessageType.EOS | Gst.MessageType.ERROR
    )
    pipeline.set_state(Gst.State.NULL)
    if message.type == Gst.MessageType.ERROR:
        sys.exit(message.parse_error().gerror.message)


if __name__ == "__main__":
    main(int(sys.argv[1]) if len(sys.argv) > 1 else 30, *sys.argv[2:3])

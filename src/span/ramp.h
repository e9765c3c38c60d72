// 32-bit pixels in a blend from one colour to another.
#pragma once

// A channel is a byte, the truncated 255 times `from` + t * `span`; `bit` is where it stands in the
// word. t is (x * step + row - low) / range, kept from 0.0 to 1.0.
struct Ramp {
    struct Channel {
        double from, span;
        int bit;
    };
    Channel channels[4];
    double step, low, range;
};

// The pixels from x on along a line. Channels only grow or only fall there: what is alike at both
// ends is alike throughout.
void writeRamp(char* to, const Ramp& ramp, int x, double row, int count);

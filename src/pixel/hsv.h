// Hue, saturation and value, with the one place where callers differ: what grey has for a hue.
#pragma once

struct Hsv {
    double h, s, v;
    bool grey;
};

inline constexpr double noHue = -1.0;

// `greyHue` is the hue of grey and black, which have none.
Hsv toHsv(double r, double g, double b, double greyHue);

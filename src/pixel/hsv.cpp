#include "pixel/hsv.h"

#include "zrdraw/zrpixel.h"

#include <algorithm>

Hsv toHsv(double r, double g, double b, double greyHue) {
    const double v = std::max({r, g, b});
    const double delta = v - std::min({r, g, b});
    if (v == 0.0 || delta == 0.0)
        return {greyHue, 0.0, v, true};
    double sextant = 0.0;
    if (v == r)
        sextant = (g - b) / delta;
    else if (v == g)
        sextant = (b - r) / delta + 2.0;
    else
        sextant = (r - g) / delta + 4.0;
    const double degrees = sextant * 60.0;
    return {degrees < 0.0 ? degrees + 360.0 : degrees, delta / v, v, false};
}

int ZRPixel::RGBToHSV(double r, double g, double b, double a, double& h, double& s, double& v,
                      double& aOut) {
    const Hsv hsv = toHsv(r, g, b, noHue);
    h = hsv.h;
    s = hsv.s;
    v = hsv.v;
    // By contract: the alpha of grey and black is not passed on.
    if (!hsv.grey)
        aOut = a;
    return 0;
}

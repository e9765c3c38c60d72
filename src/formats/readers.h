// What the format classes share: addresses of byte-wise pixels, and forms that differ in one place.
#pragma once

#include "pixel/canvas.h"
#include "pixel/hsv.h"
#include "zrdraw/formats.h"
#include "zrdraw/layouts.h"

#include <algorithm>

inline unsigned int naturalLine(const ZRPixel& pixel, unsigned int code) {
    return zrLineBytes(zrFindLayout(code)->line, pixel.width);
}

// The address `bytes` bytes into a line; (x, y) is on the canvas.
inline char* byteAddress(const ZRPixel& pixel, int y, int bytes) {
    return pixel.canvas + lineOffset(pixel, y) + static_cast<unsigned long>(bytes);
}

// Through the virtual GetPixelRGBA. Off the canvas all but the hue is 0.0; the answer is 0 even so.
inline int readHsv(ZRPixel& pixel, int x, int y, double& h, double& s, double& v, double& a,
                   double hueOffCanvas) {
    double r = 0.0, g = 0.0, b = 0.0;
    const int status = pixel.GetPixelRGBA(x, y, r, g, b, a);
    const Hsv hsv = toHsv(r, g, b, noHue);
    h = status == 0 ? hsv.h : hueOffCanvas;
    s = hsv.s;
    v = hsv.v;
    return 0;
}

// Sets a colour given in RGB by way of the virtual SetColorYCbCr, in the matrix mode in force.
inline int setColorByMatrix(ZRPixel& pixel, double r, double g, double b, bool selector) {
    double y = 0.0, cb = 0.0, cr = 0.0, a = 0.0;
    pixel.RGBToYCbCr(r, g, b, 0.0, y, cb, cr, a);
    return pixel.SetColorYCbCr(y, cb, cr, a, selector);
}

// The SetCanvas of the 8-bit 4:2:2 and the interleaved component layouts, once the pitch is known.
// By contract: the signs of height and width stay, so that a negative one refuses every pixel; and
// high definition takes BT.709 and the rest BT.601, whatever mode of another standard was set.
inline int setSignedCanvas(ZRPixel& pixel, char* canvas, int height, int width,
                           unsigned int pitch) {
    constexpr int widestStandardDefinition = 720;
    pixel.canvas = canvas;
    pixel.height = static_cast<unsigned int>(height);
    pixel.width = static_cast<unsigned int>(width);
    pixel.flipped = false;
    pixel.pitch = pitch;
    const cmYCbCr mode = pixel.yCbCrMode;
    if (width > widestStandardDefinition)
        pixel.yCbCrMode = mode == cmRec709Full ? mode : cmRec709;
    else
        pixel.yCbCrMode = mode == cmRec601Full ? mode : cmRec601;
    return 0;
}

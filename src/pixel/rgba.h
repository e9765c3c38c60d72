// Colours as the drawing operations hand them about, 0.0 to 1.0 a component.
#pragma once

#include "zrdraw/zrpixel.h"

struct Rgba {
    double r, g, b, a;
};

inline double clampToUnit(double value) {
    return value < 0.0 ? 0.0 : value > 1.0 ? 1.0 : value;
}

// A slot's colour. False where the object refuses.
inline bool readColor(ZRPixel& pixel, Rgba& color, bool selector) {
    return pixel.GetColorRGBA(color.r, color.g, color.b, color.a, selector) == 0;
}

inline bool readPixel(ZRPixel& pixel, int x, int y, Rgba& color) {
    return pixel.GetPixelRGBA(x, y, color.r, color.g, color.b, color.a) == 0;
}

inline void setColor(ZRPixel& pixel, const Rgba& color, bool selector) {
    pixel.SetColorRGBA(color.r, color.g, color.b, color.a, selector);
}

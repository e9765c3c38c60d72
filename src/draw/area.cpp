// Areas made of runs, and outlines made of lines and arcs.
#include "draw/run.h"
#include "zrdraw/zrdraw.h"

int ZRDraw::FillRect(const RECT* rect) {
    // By contract: the position of a rectangle of the canvas' size is not looked at.
    if (isRgb32(pixelType) && rect->right - rect->left == static_cast<int>(width) &&
        rect->bottom - rect->top == static_cast<int>(height)) {
        drawCanvasWords(*this, foreColor);
        return 0;
    }
    // By contract: the right column belongs to the rectangle, the bottom row does not.
    for (int y = rect->top; y < rect->bottom; ++y)
        LineHoriz(rect->left, y, rect->right);
    return 0;
}

int ZRDraw::EraseCanvas(bool useBackground) {
    drawCanvas(*this, !useBackground);
    return 0;
}

int ZRDraw::Rectangle(int left, int top, int right, int bottom) {
    Line(left, top, right, top);
    Line(left, top, left, bottom);
    Line(left, bottom, right, bottom);
    Line(right, top, right, bottom);
    return 0;
}

int ZRDraw::RoundRect(int left, int top, int right, int bottom, int cornerWidth, int cornerHeight) {
    if (right - left < cornerWidth || bottom - top < cornerHeight)
        return -1;
    const int hw = cornerWidth / 2;
    const int hh = cornerHeight / 2;
    Line(left + hw, top, right - hw, top);
    Line(left, top + hh, left, bottom - hh);
    Line(left + hw, bottom, right - hw, bottom);
    Line(right, top + hh, right, bottom - hh);
    AngleArcTo(left + hw, top + hh, hw, hh, 90, 180);
    AngleArcTo(left + hw, bottom - hh, hw, hh, 180, 270);
    AngleArcTo(right - hw, bottom - hh, hw, hh, 270, 360);
    AngleArcTo(right - hw, top + hh, hw, hh, 0, 90);
    return 0;
}

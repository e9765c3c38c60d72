// Drawing objects of the library with an owner.
#pragma once

#include "picture/canvas.h"
#include "zrdraw/zrdraw.h"

#include <memory>

struct DrawRelease {
    void operator()(ZRDraw* draw) const { ReleaseDraw(draw); }
};
using DrawPtr = std::unique_ptr<ZRDraw, DrawRelease>;

// A new object that draws on the frame. It is in the state of every new object, but that on
// canvases in Y, Cb and Cr its matrix mode is that of the picture.
DrawPtr makeDraw(Canvas& frame);

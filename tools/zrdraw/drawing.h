// Drawing objects of the library with an owner.
#pragma once

#include "media/working_frame.h"
#include "zrdraw/layouts.h"
#include "zrdraw/zrdraw.h"

#include <memory>

struct DrawRelease {
    void operator()(ZRDraw* draw) const { ReleaseDraw(draw); }
};
using DrawPtr = std::unique_ptr<ZRDraw, DrawRelease>;

// A new object, in the state of every new object, that draws on the frame.
DrawPtr makeDraw(const zrLayout& layout, WorkingFrame& frame);

// A drawing object that notes every pixel it is asked for, in order, instead of writing it.
#pragma once

#include "zrdraw/formats.h"

#include <utility>
#include <vector>

struct Recorder : CDrawRGBA32 {
    Recorder() : ZRDraw(ptRGBA32), CDrawRGBA32(ptRGBA32) {}
    int PutPixel(int x, int y, bool selector) override {
        pixels.emplace_back(x, y);
        colors.push_back(selector ? foreColor : backColor);
        return 0;
    }
    std::vector<std::pair<int, int>> pixels;
    std::vector<unsigned int> colors;
};

// What commands work on: one frame, and what earlier commands have set on it.
#pragma once

#include "common/picture_view.h"
#include "script/frame_facts.h"
#include "script/language/names.h"
#include "script/place.h"
#include "zrdraw/zrdraw.h"

class PictureShelf;

struct Scene {
    ZRDraw& draw;
    PictureView picture; // what it draws on
    const FrameFacts& frame;
    Place place;
    Values& values;
    PictureShelf& pictures;

    double& value(Constant constant) { return values[static_cast<std::size_t>(constant)]; }

    void setTextWidth(int pixels) { value(Constant::TextWidth) = place.unitsOf(pixels); }

    // The grid is what expressions take for the frame.
    void setUnit(double columns, double rows) {
        place.setUnit(columns, rows);
        value(Constant::Width) = columns;
        value(Constant::Height) = rows;
    }
};

// A picture that is put together from labels, marks and smaller pictures.
#pragma once

#include "draw_object.h"

#include <string>

class Sheet {
public:
    // Begins in one colour; the drawing object has a light foreground.
    Sheet(const zrLayout& layout, int width, int height);

    ZRDraw& draw() { return *m_draw; }

    // Copies a picture of any layout onto a sheet in BGRA; it must fit. `source` is what it was
    // drawn on, or null.
    void paste(const Canvas& picture, const AVFrame* source, int x, int y);

    void writePng(const std::string& path, bool force);

private:
    Canvas m_frame;
    DrawPtr m_draw;
};

// A picture that is put together from labels, marks and smaller pictures.
#pragma once

#include "draw_object.h"

#include <cstdint>

struct WriteOptions;

class Sheet {
public:
    // Begins in one colour; the drawing object has a light foreground.
    Sheet(const zrLayout& layout, int width, int height);

    ZRDraw& draw() { return *m_draw; }

    // That colour, packed as the layout stores it.
    std::uint32_t ground() const { return m_ground; }

    // Copies a picture of any layout onto a sheet in BGRA; it must fit. `source` is what it was
    // drawn on, or null.
    void paste(const Canvas& picture, const AVFrame* source, int x, int y);

    // As a picture of the format that the options ask for.
    void write(const WriteOptions& options);

private:
    Canvas m_frame;
    DrawPtr m_draw;
    std::uint32_t m_ground;
};

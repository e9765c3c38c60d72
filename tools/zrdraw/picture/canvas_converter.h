// Pictures of one kind into canvases of one shape and back: straight, or by way of a picture in the
// middle in a format that stands for the layout.
#pragma once

#include "picture/picture_converter.h"

class CanvasConverter {
public:
    CanvasConverter(const CanvasShape& shape, const PictureKind& picture, const Colors& canvas);

    bool isFor(const PictureKind& picture, const Colors& canvas) const {
        return m_kind == picture && m_middleKind.colors == canvas;
    }

    // Whether samples that were not drawn on come back as they were.
    bool isExact() const { return m_exact; }

    void load(const AVFrame& picture, Canvas& canvas);
    void store(const Canvas& canvas, AVFrame& picture);

    // Fills what a layout that does not hold all of a picture leaves as it is when `picture` is
    // stored into next: from one in the format that stands for the layout, or with mid grey.
    void setGround(const AVFrame* ground, AVFrame& picture);

    // What was loaded last, in the format that stands for the layout.
    const AVFrame& groundOf(const AVFrame& picture) const {
        return m_straight ? picture : *m_middle;
    }

private:
    AVFrame& middleFor(const Canvas& canvas);
    PictureConverter& in();

    CanvasShape m_shape;
    PictureKind m_kind;
    PictureKind m_middleKind;
    bool m_straight = false;
    bool m_exact = false;
    std::unique_ptr<Packer> m_packer; // null: the picture has the memory of the canvas
    FramePtr m_middle;
    std::unique_ptr<PictureConverter> m_in, m_out; // made when first wanted
};

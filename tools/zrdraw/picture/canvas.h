// The canvas: memory in a layout, which is drawn on.
#pragma once

#include "media/av.h"
#include "picture/packing.h"
#include "zrdraw/types.h"

#include <optional>

// How numbers stand for colours.
struct Colors {
    AVColorSpace space = AVCOL_SPC_UNSPECIFIED;
    AVColorRange range = AVCOL_RANGE_JPEG;
    bool operator==(const Colors&) const = default;
};

// What all canvases of a road have in common.
struct CanvasShape {
    // A size that the layout cannot hold is a Failure.
    CanvasShape(const zrLayout& canvasLayout, int canvasWidth, int canvasHeight);

    const zrLayout* layout;
    int width;
    int height;
    int lineBytes; // whole pixel pairs included
    int pitch;
    std::size_t bytes; // that the memory must have
};

// Lines of one canvas, or of a picture in its layout, to another. They may be the same.
void copyLines(const std::uint8_t* from, int fromPitch, std::uint8_t* to, int toPitch,
               const CanvasShape& shape);

class Canvas {
public:
    Canvas(const CanvasShape& shape, BufferPtr memory)
        : m_shape(shape), m_memory(std::move(memory)), m_pixels(m_memory->data) {}

    // With memory of its own, all 0.
    explicit Canvas(const CanvasShape& shape);
    Canvas(const zrLayout& layout, int width, int height)
        : Canvas(CanvasShape(layout, width, height)) {}

    // Another hold of the same memory.
    Canvas share() const;

    const CanvasShape& shape() const { return m_shape; }
    const zrLayout& layout() const { return *m_shape.layout; }
    int width() const { return m_shape.width; }
    int height() const { return m_shape.height; }
    int pitch() const { return m_shape.pitch; }
    char* data() { return reinterpret_cast<char*>(m_pixels); }
    CanvasLines lines() const { return {m_pixels, m_shape.pitch}; }
    PictureView view() const {
        return {m_shape.layout, m_pixels, m_shape.width, m_shape.height, m_shape.pitch};
    }
    const AVBufferRef& memory() const { return *m_memory; }

    // The library's matrix mode for the colours, where the layout is in Y, Cb and Cr.
    std::optional<cmYCbCr> matrixMode() const;

    Colors colors;

private:
    CanvasShape m_shape;
    BufferPtr m_memory;
    std::uint8_t* m_pixels;
};

// Canvases that come again when nobody holds them or their memory any more.
class CanvasPool {
public:
    explicit CanvasPool(const CanvasShape& shape);
    Canvas take() const;

private:
    CanvasShape m_shape;
    BufferPoolPtr m_pool;
};

// How the memory of each layout comes from and goes to the pixel formats of the media libraries.
#pragma once

#include "common/picture_view.h"
#include "media/av.h"
#include "zrdraw/layouts.h"

#include <cstdint>
#include <memory>

// The pixel format of frames that hold a layout's own bytes, line by line in one plane.
inline constexpr AVPixelFormat barePixels = AV_PIX_FMT_NONE;

struct CanvasLines {
    std::uint8_t* data;
    int pitch;
    std::uint8_t* line(int y) const { return data + static_cast<std::ptrdiff_t>(y) * pitch; }
};

// Converts between a canvas in a layout and pictures in the pixel format that stands for it.
class Packer {
public:
    virtual ~Packer() = default;
    virtual void pack(const AVFrame& picture, CanvasLines canvas) = 0;
    // Writes what the layout holds and no more: beside a chroma plane the luma stays as it is.
    virtual void unpack(CanvasLines canvas, AVFrame& picture) = 0;
    // Whether a picture that was packed and unpacked is what it was.
    virtual bool isExact() const { return false; }
};

// The pixel format that stands for a layout: its own, or the nearest one that holds all of it.
AVPixelFormat pixelFormatOf(const zrLayout& layout);

// Whether a picture in the pixel format has the memory of the layout.
bool isMemoryOf(const zrLayout& layout, AVPixelFormat format);

// Null where there is none for the pixel format, or none is needed.
std::unique_ptr<Packer> makePacker(const zrLayout& layout, AVPixelFormat format, int width,
                                   int height);
inline std::unique_ptr<Packer> makePacker(const zrLayout& layout, int width, int height) {
    return makePacker(layout, pixelFormatOf(layout), width, height);
}

// Refuses sizes that the layout cannot hold.
void requireFit(const zrLayout& layout, int width, int height);

bool isYCbCr(const zrLayout& layout);

// Whether the layout holds the chroma of a picture and not its luma.
bool isChromaOnly(const zrLayout& layout);

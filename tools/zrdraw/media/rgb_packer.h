// Pictures in RGB or grey of 1 to 16 bits in the layouts of 8-bit and 16-bit RGB.
#pragma once

#include "media/packing.h"

#include <vector>

class RgbPacker : public Packer {
public:
    // Whether there is one for the layout and the format.
    static bool knows(const zrLayout& layout, AVPixelFormat format);

    RgbPacker(const zrLayout& layout, AVPixelFormat format, int width, int height);
    void pack(const AVFrame& picture, CanvasLines canvas) override;
    void unpack(CanvasLines canvas, AVFrame& picture) override;
    bool isExact() const override;

private:
    std::uint16_t* channel(int index) {
        return m_samples.data() + static_cast<std::ptrdiff_t>(index) * m_width;
    }

    const zrLayout& m_layout;
    AVPixelFormat m_format;
    int m_width;
    int m_height;
    std::vector<std::uint16_t> m_samples; // a line of red, of green, of blue and of alpha
};

// Pictures in 4:2:2 and 4:2:0 of 8 to 16 bits as v210.
#pragma once

#include "media/packing.h"

#include <vector>

class V210Packer : public Packer {
public:
    static bool knows(const zrLayout& layout, AVPixelFormat format);

    V210Packer(AVPixelFormat format, int width, int height);
    void pack(const AVFrame& picture, CanvasLines canvas) override;
    void unpack(CanvasLines canvas, AVFrame& picture) override;
    bool isExact() const override;

private:
    int columns(int component) const { return component == 0 ? m_width : (m_width + 1) / 2; }
    const std::uint16_t* samplesOf(const AVFrame& picture, int component, int y);
    std::uint16_t* placeFor(AVFrame& picture, int component, int y, int buffer);
    void put(std::uint16_t* samples, AVFrame& picture, int component, int y);
    std::uint16_t* buffer(int index) {
        return m_samples.data() + static_cast<std::ptrdiff_t>(index) * m_width;
    }

    AVPixelFormat m_format;
    int m_width;
    int m_height;
    bool m_inPlace; // the samples of the format are those of the layout
    std::vector<std::uint16_t> m_samples;
};

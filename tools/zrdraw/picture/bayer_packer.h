// Mosaics of 12-bit samples, two of them in three bytes.
#pragma once

#include "picture/packing.h"

class BayerPacker : public Packer {
public:
    BayerPacker(const zrLayout& layout, int width, int height);
    void pack(const AVFrame& picture, CanvasLines canvas) override;
    void unpack(CanvasLines canvas, AVFrame& picture) override;

private:
    const char* m_mosaic;
    int m_width;
    int m_height;
    FramePtr m_samples; // the mosaic with a 16-bit word a sample
    SwsPtr m_demosaic;
};

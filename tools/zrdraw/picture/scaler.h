// Pictures in another size, in their own pixel format.
#pragma once

#include "media/av.h"

class Scaler {
public:
    Scaler(int width, int height) : m_width(width), m_height(height) {}

    // The picture itself where it has the size, else one that lasts until the next call.
    const AVFrame& scaled(const AVFrame& picture);

private:
    int m_width, m_height;
    SwsPtr m_scaler;
    FramePtr m_scaled;
};

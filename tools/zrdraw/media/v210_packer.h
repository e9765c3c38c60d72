// v210 by way of the media libraries' own codec.
#pragma once

#include "media/packing.h"

class V210Packer : public Packer {
public:
    V210Packer(int width, int height);
    void pack(const AVFrame& picture, CanvasLines canvas) override;
    void unpack(CanvasLines canvas, AVFrame& picture) override;

private:
    int m_lineBytes;
    int m_height;
    CodecPtr m_encoder;
    CodecPtr m_decoder;
    PacketPtr m_packet;
    FramePtr m_decoded;
};

#include "peers.h"

#include <libyuv.h>

namespace {

Job over(Frame& dst, Frame& src) {
    return repeated([to = dst.bytes(), from = src.bytes()] {
        libyuv::ARGBBlend(from, framePitch, to, framePitch, to, framePitch, frameWidth,
                          frameHeight);
    });
}

Job mix(unsigned char* to, unsigned char* a, unsigned char* b, int width, int height,
        double weight) {
    const int pitch = width * 4;
    return repeated([=] {
        libyuv::ARGBInterpolate(a, pitch, b, pitch, to, pitch, width, height,
                                static_cast<int>(weight * 256));
    });
}

const AddPeer libyuvMix(MixPeer{"libyuv ARGBInterpolate", false, mix});
const AddPeer libyuvPeer(BlendPeer{"libyuv ARGBBlend", over});

} // namespace

#include "peers.h"

#include <libyuv.h>

namespace {

Job over(Frame& dst, Frame& src) {
    return repeated([to = dst.bytes(), from = src.bytes()] {
        libyuv::ARGBBlend(from, framePitch, to, framePitch, to, framePitch, frameWidth,
                          frameHeight);
    });
}

const AddPeer libyuvPeer(BlendPeer{"libyuv ARGBBlend", over});

} // namespace

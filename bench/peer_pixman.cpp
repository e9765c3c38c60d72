#include "peers.h"

#include <pixman.h>

namespace {

using Image = std::shared_ptr<pixman_image_t>;

Image imageOn(Frame& frame) {
    auto* pixels = reinterpret_cast<std::uint32_t*>(frame.bytes());
    return {pixman_image_create_bits(PIXMAN_a8r8g8b8, frameWidth, frameHeight, pixels, framePitch),
            pixman_image_unref};
}

Job over(Frame& dst, Frame& src) {
    return repeated([to = imageOn(dst), from = imageOn(src)] {
        pixman_image_composite32(PIXMAN_OP_OVER, from.get(), nullptr, to.get(), 0, 0, 0, 0, 0, 0,
                                 frameWidth, frameHeight);
    });
}

const AddPeer pixman(BlendPeer{"pixman OVER", over});

} // namespace

// The slide: one frame moves off the other, by block copies.
#include "fx/kernel_args.h"
#include "fx/pixel_groups.h"
#include "zrdraw/platform/memory.h"

#include <algorithm>

namespace {

// By contract: every layout that no other kernel knows has four bytes a pixel.
unsigned int pixelBytes(unsigned int pixelType) {
    constexpr unsigned int otherBytes = 4;
    const PixelGroup group = pixelGroup(pixelType);
    return group.isKnown() ? group.bytes : otherBytes;
}

// Lines are packed, whatever the pitches say.
struct Frames {
    explicit Frames(const KernelArgs& args)
        : moving(args.srcA), still(args.srcB), to(args.dst), bytes(pixelBytes(args.pixelType)),
          line(args.width * bytes), height(args.height), width(args.width),
          lines(std::min(args.height, args.height * args.position / args.scale())),
          columns(std::min(args.width, args.width * args.position / args.scale())) {}

    unsigned char* moving;
    unsigned char* still;
    unsigned char* to;
    unsigned int bytes, line, height, width;
    unsigned int lines, columns; // that the moving frame has gone
};

void moveUp(const Frames& f) {
    const unsigned int kept = f.height - f.lines;
    CopyMemoryFast(f.to + kept * f.line, f.still + kept * f.line, f.lines * f.line);
    CopyMemoryFast(f.to, f.moving + f.lines * f.line, kept * f.line);
}

void moveDown(const Frames& f) {
    CopyMemoryFast(f.to, f.still, f.lines * f.line);
    CopyMemoryFast(f.to + f.lines * f.line, f.moving, (f.height - f.lines) * f.line);
}

// From column `from` of the moving frame to column `to` of the destination.
void moveSideways(const Frames& f, unsigned int from, unsigned int to) {
    CopyMemoryFast(f.to, f.still, f.height * f.line);
    for (unsigned int y = 0; y < f.height; ++y)
        CopyMemoryFast(f.to + y * f.line + to * f.bytes, f.moving + y * f.line + from * f.bytes,
                       (f.width - f.columns) * f.bytes);
}

} // namespace

unsigned int zrfxSLIDE_Basic(ZRFX_PARAMETERS) {
    // By contract: one thread does the whole frame; a code with bit 31 is none of the slide's.
    if (xStart != 0 || yStart != 0 || wipeCode < zrSlideUp || wipeCode > zrSlideDown7)
        return 0;
    const Frames frames(ZRFX_ARGUMENTS);
    switch (wipeCode) {
    case zrSlideUp:
        moveUp(frames);
        break;
    case zrSlideLeft:
        moveSideways(frames, frames.columns, 0);
        break;
    case zrSlideRight:
        moveSideways(frames, 0, frames.columns);
        break;
    default:
        moveDown(frames);
    }
    return 0;
}

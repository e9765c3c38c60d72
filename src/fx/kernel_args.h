// The arguments of a kernel, packed once where they come in.
#pragma once

#include "zrdraw/transitions.h"

// As a thread's record has them; what is behind the band is unused.
struct KernelArgs : zrfxFXArgs {
    unsigned int scale() const { return rangeEnd - rangeStart; }
    bool isSwapped() const { return (wipeCode & zrWipeSwap) != 0; }
};

// Calls what takes the arguments one by one; of the band as many as `band` has.
template <typename Function, typename... Band>
unsigned int callWith(Function* function, const zrfxFXArgs& a, Band... band) {
    return function(a.srcA, a.pitchA, a.srcB, a.pitchB, a.dst, a.pitchDst, a.wipeCode, a.pixelType,
                    a.width, a.height, a.fxReserved0, a.fxReserved1, a.fxReserved2, a.fxReserved3,
                    a.fxReserved4, a.rangeStart, a.rangeEnd, a.position, band...);
}

// The arguments of a kernel's definition, and as one value.
#define ZRFX_FRAME_PARAMETERS                                                                      \
    [[maybe_unused]] unsigned char *srcA, [[maybe_unused]] unsigned int pitchA,                    \
        [[maybe_unused]] unsigned char *srcB, [[maybe_unused]] unsigned int pitchB,                \
        [[maybe_unused]] unsigned char *dst, [[maybe_unused]] unsigned int pitchDst,               \
        [[maybe_unused]] unsigned int wipeCode, [[maybe_unused]] unsigned int pixelType,           \
        [[maybe_unused]] unsigned int width, [[maybe_unused]] unsigned int height,                 \
        [[maybe_unused]] unsigned int fxReserved0, [[maybe_unused]] unsigned int fxReserved1,      \
        [[maybe_unused]] unsigned int fxReserved2, [[maybe_unused]] unsigned int fxReserved3,      \
        [[maybe_unused]] unsigned int fxReserved4, [[maybe_unused]] unsigned int rangeStart,       \
        [[maybe_unused]] unsigned int rangeEnd, [[maybe_unused]] unsigned int position
#define ZRFX_FRAME_VALUES                                                                          \
    srcA, pitchA, srcB, pitchB, dst, pitchDst, wipeCode, pixelType, width, height, fxReserved0,    \
        fxReserved1, fxReserved2, fxReserved3, fxReserved4, rangeStart, rangeEnd, position
#define ZRFX_PARAMETERS                                                                            \
    ZRFX_FRAME_PARAMETERS, [[maybe_unused]] unsigned int xStart,                                   \
        [[maybe_unused]] unsigned int xEnd, [[maybe_unused]] unsigned int yStart,                  \
        [[maybe_unused]] unsigned int yEnd
#define ZRFX_VALUES ZRFX_FRAME_VALUES, xStart, xEnd, yStart, yEnd
#define ZRFX_ARGUMENTS                                                                             \
    KernelArgs {                                                                                   \
        { ZRFX_VALUES, nullptr, nullptr, 0, nullptr }                                              \
    }
#define ZRFX_FRAME_ARGUMENTS                                                                       \
    KernelArgs {                                                                                   \
        { ZRFX_FRAME_VALUES, 0, 0, 0, 0, nullptr, nullptr, 0, nullptr }                            \
    }

// Lines of the three frames. By contract: the destination has the pitch of the second source.
struct FrameLines {
    FrameLines(const KernelArgs& args, unsigned int y)
        : incoming(args.isSwapped() ? args.srcA + y * args.pitchA : args.srcB + y * args.pitchB),
          outgoing(args.isSwapped() ? args.srcB + y * args.pitchB : args.srcA + y * args.pitchA),
          destination(args.dst + y * args.pitchB) {}
    const unsigned char* incoming;
    const unsigned char* outgoing;
    unsigned char* destination;
};

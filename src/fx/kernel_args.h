// The arguments of a kernel, packed once where they come in.
#pragma once

#include "zrdraw/transitions.h"

struct FrameArgs {
    unsigned char* srcA;
    unsigned int pitchA;
    unsigned char* srcB;
    unsigned int pitchB;
    unsigned char* dst;
    unsigned int pitchDst;
    unsigned int wipeCode;
    unsigned int pixelType;
    unsigned int width;
    unsigned int height;
    unsigned int fxReserved0;
    unsigned int fxReserved1;
    unsigned int fxReserved2;
    unsigned int fxReserved3;
    unsigned int fxReserved4;
    unsigned int rangeStart;
    unsigned int rangeEnd;
    unsigned int position;
};

struct KernelArgs : FrameArgs {
    unsigned int xStart;
    unsigned int xEnd;
    unsigned int yStart;
    unsigned int yEnd;

    unsigned int scale() const { return rangeEnd - rangeStart; }
    bool isSwapped() const { return static_cast<int>(wipeCode) < 0; }
};

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
        {ZRFX_FRAME_VALUES}, xStart, xEnd, yStart, yEnd                                            \
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

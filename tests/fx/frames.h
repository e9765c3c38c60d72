// Frames between guard bytes, random ones too, and calls of transitions by one record of their
// arguments.
#pragma once

#include "support/guarded_memory.h"
#include "zrdraw/transitions.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>

// Calls name the arguments that matter; the others of the record are 0.
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"

using Random = std::mt19937;
inline constexpr unsigned int seed = 20240607;

struct Frame : GuardedMemory {
    using GuardedMemory::GuardedMemory;
    Frame(std::size_t bytes, Random& random) : GuardedMemory(bytes) {
        for (unsigned char& byte : *this)
            byte = static_cast<unsigned char>(random());
    }
};

struct Group {
    unsigned int pixelType, samples, bytes;
};

inline constexpr Group groups[] = {{ptRGBA32, 4, 4},      {ptARGB32, 4, 4},     {ptBGRA32, 4, 4},
                                   {ptABGR32, 4, 4},      {zrWipeByte4, 4, 4},  {ptRGB24, 3, 3},
                                   {ptBGR24, 3, 3},       {zrWipeByte3, 3, 3},  {ptRGB48, 3, 6},
                                   {zrWipeWord3, 3, 6},   {ptARGB64, 4, 8},     {zrWipeWord4, 4, 8},
                                   {zrWipeFloat4, 4, 16}, {zrWipeFloat3, 3, 12}};

inline zrfxFXArgs argsOf(Frame& a, Frame& b, Frame& dst, unsigned int pitch, unsigned int code,
                         unsigned int pixelType, unsigned int width, unsigned int height) {
    return {a.data(), pitch, b.data(), pitch, dst.data(), pitch, code, pixelType, width, height};
}

// Only the fields that a caller gives are used: up to `position`, and the band.
template <typename Function, typename... Tail>
unsigned int callWith(Function* function, const zrfxFXArgs& a, Tail... tail) {
    return function(a.srcA, a.pitchA, a.srcB, a.pitchB, a.dst, a.pitchDst, a.wipeCode, a.pixelType,
                    a.width, a.height, a.fxReserved0, a.fxReserved1, a.fxReserved2, a.fxReserved3,
                    a.fxReserved4, a.rangeStart, a.rangeEnd, a.position, tail...);
}

// The kernel on the four bands, one after another. True when every result was 0.
inline bool runBands(zrfxKernel* kernel, const zrfxFXArgs& a) {
    const unsigned int w = a.width / 2, h = a.height / 2;
    return callWith(kernel, a, 0U, w, 0U, h) == 0 && callWith(kernel, a, w, a.width, 0U, h) == 0 &&
           callWith(kernel, a, 0U, w, h, a.height) == 0 &&
           callWith(kernel, a, w, a.width, h, a.height) == 0;
}

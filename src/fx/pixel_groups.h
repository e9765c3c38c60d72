// The layouts that kernels read, by the samples of a pixel.
#pragma once

#include "zrdraw/transitions.h"

enum class SampleType { Byte, Word, Float, None };

struct PixelGroup {
    unsigned int samples;
    SampleType type;
    unsigned int bytes; // of a pixel; 0 for a layout that no kernel reads

    bool isKnown() const { return bytes != 0; }
};

constexpr PixelGroup pixelGroup(unsigned int pixelType) {
    switch (pixelType) {
    case ptRGBA32:
    case ptARGB32:
    case ptBGRA32:
    case ptABGR32:
    case zrWipeByte4:
        return {4, SampleType::Byte, 4};
    case ptRGB24:
    case ptBGR24:
    case zrWipeByte3:
        return {3, SampleType::Byte, 3};
    case ptRGB48:
    case zrWipeWord3:
        return {3, SampleType::Word, 6};
    case ptARGB64:
    case zrWipeWord4:
        return {4, SampleType::Word, 8};
    case zrWipeFloat4:
        return {4, SampleType::Float, 16};
    case zrWipeFloat3:
        return {3, SampleType::Float, 12};
    default:
        return {0, SampleType::None, 0};
    }
}

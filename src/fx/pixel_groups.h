// The layouts that kernels read, by the samples of a pixel. Some exist in transitions only.
#pragma once

#include "zrdraw/layouts.h"

enum class SampleType { Byte, Word, Float, None };

struct PixelGroup {
    unsigned int samples;
    SampleType type;
    unsigned int bytes; // of a pixel; 0 for a layout that no kernel reads

    bool isKnown() const { return bytes != 0; }
};

inline constexpr unsigned int fxFloat4 = 29, fxFloat3 = 30; // 32-bit floats
inline constexpr unsigned int fxByte3 = 33, fxByte4 = 34;
inline constexpr unsigned int fxWord3 = 35, fxWord4 = 36;

constexpr PixelGroup pixelGroup(unsigned int pixelType) {
    switch (pixelType) {
    case ptRGBA32:
    case ptARGB32:
    case ptBGRA32:
    case ptABGR32:
    case fxByte4:
        return {4, SampleType::Byte, 4};
    case ptRGB24:
    case ptBGR24:
    case fxByte3:
        return {3, SampleType::Byte, 3};
    case ptRGB48:
    case fxWord3:
        return {3, SampleType::Word, 6};
    case ptARGB64:
    case fxWord4:
        return {4, SampleType::Word, 8};
    case fxFloat4:
        return {4, SampleType::Float, 16};
    case fxFloat3:
        return {3, SampleType::Float, 12};
    default:
        return {0, SampleType::None, 0};
    }
}

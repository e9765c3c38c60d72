// Layouts that are packed line by line, without a look at other lines.
#pragma once

#include "picture/packing.h"

struct LineFunctions {
    void (*pack)(const std::uint8_t* const planes[], std::uint8_t* line, int width);
    void (*unpack)(const std::uint8_t* line, std::uint8_t* const planes[], int width);
    bool exact;
};

class LinePacker : public Packer {
public:
    LinePacker(LineFunctions functions, int width, int height);
    void pack(const AVFrame& picture, CanvasLines canvas) override;
    void unpack(CanvasLines canvas, AVFrame& picture) override;
    bool isExact() const override { return m_functions.exact; }

private:
    LineFunctions m_functions;
    int m_width;
    int m_height;
};

extern const LineFunctions exchangedChroma; // pixel pairs with Cb and Cr in each other's places
extern const LineFunctions dpxWords;        // 10-bit RGB in big-endian words
extern const LineFunctions alphaFirstWords; // 16-bit RGBA as ARGB
extern const LineFunctions threeHalves;     // 16-bit RGB as half floats from 0 to 1
extern const LineFunctions fourHalves;      // 16-bit RGBA as half floats from 0 to 1
extern const LineFunctions chromaBytes;     // the chroma of a picture without its luma
extern const LineFunctions chromaWords;

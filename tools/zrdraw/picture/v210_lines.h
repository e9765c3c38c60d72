// Lines of v210 from and to lines of 10-bit samples.
#pragma once

#include <cstdint>

// A line of samples, chroma for pairs of pixels. Nothing is read or written behind the last one.
struct V210Samples {
    const std::uint16_t *y, *cb, *cr;
};
struct V210Targets {
    std::uint16_t *y, *cb, *cr;
};

// The samples that fill up the last group are 0. Bits above the tenth are dropped.
void packV210(const V210Samples& samples, std::uint8_t* line, int width);
void unpackV210(const std::uint8_t* line, const V210Targets& targets, int width);

// The same bits without vectors.
void packV210Plain(const V210Samples& samples, std::uint8_t* line, int width);
void unpackV210Plain(const std::uint8_t* line, const V210Targets& targets, int width);

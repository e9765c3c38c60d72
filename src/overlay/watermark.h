// The watermark's caches, as they are made and as they are laid on frames.
#pragma once

// Y0, Cb, Y1, Cr, A of a pixel pair.
inline constexpr unsigned int watermarkPairEntries = 5;
inline constexpr unsigned int watermarkBgraBytes = 4;

class ZRPixel;

// Lines of it laid on a frame: so many pairs from one on, and so many pixels of a v210 canvas from
// (x, y) on.
void blendWatermarkPairs(unsigned char* pairs, const unsigned char* entries, unsigned int count);
void writeWatermarkV210(const ZRPixel& target, int x, int y, const unsigned int* entries,
                        unsigned int count);

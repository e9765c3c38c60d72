// The watermark's caches, as they are made and as they are laid on frames.
#pragma once

// Y0, Cb, Y1, Cr, A of a pixel pair.
inline constexpr unsigned int watermarkPairEntries = 5;
inline constexpr unsigned int watermarkBgraBytes = 4;

class ZRPixel;

// A line of it on a v210 canvas: so many pixels from (x, y) on.
void writeWatermarkV210(const ZRPixel& target, int x, int y, const unsigned int* entries,
                        unsigned int count);

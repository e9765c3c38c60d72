// The watermark's caches, as they are made and as they are laid on frames.
#pragma once

// The layouts that have a cache, by the biCompression of the stream.
enum WatermarkLayout : unsigned int {
    watermarkBgra = 0,
    watermarkYuv2 = 0x32767579, // "yuv2"
    watermarkV210 = 0x76323130  // "012v"
};

// Y0, Cb, Y1, Cr, A of a pixel pair.
inline constexpr unsigned int watermarkPairEntries = 5;
inline constexpr unsigned int watermarkBgraBytes = 4;

// The watermark's caches, as they are made and as they are laid on frames.
#pragma once

// Y0, Cb, Y1, Cr, A of a pixel pair.
inline constexpr unsigned int watermarkPairEntries = 5;
inline constexpr unsigned int watermarkBgraBytes = 4;

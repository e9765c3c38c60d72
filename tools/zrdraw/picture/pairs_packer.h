// Pictures in 4:2:2 and 4:2:0 in the layouts that have chroma for each pair of pixels.
#pragma once

#include "picture/packing.h"

// Null where the layout or the format is another one.
std::unique_ptr<Packer> makePairsPacker(const zrLayout& layout, AVPixelFormat format, int width,
                                        int height);

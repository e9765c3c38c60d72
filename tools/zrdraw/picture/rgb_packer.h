// Pictures in RGB or grey of 1 to 16 bits in the layouts of 8-bit and 16-bit RGB.
#pragma once

#include "picture/packing.h"

// Null where the layout or the format is another one.
std::unique_ptr<Packer> makeRgbPacker(const zrLayout& layout, AVPixelFormat format, int width,
                                      int height);

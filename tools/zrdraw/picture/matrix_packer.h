// Pictures in 8-bit YCbCr in the layouts of 8-bit RGB, in one pass.
#pragma once

#include "picture/picture_kind.h"

#include <memory>

// Null where the layout or the kind is another one.
std::unique_ptr<Packer> makeMatrixPacker(const zrLayout& layout, const PictureKind& kind, int width,
                                         int height);

// Which layout to draw in.
#pragma once

#include "media/av.h"
#include "zrdraw/layouts.h"

#include <span>

// Among the layouts of the codes, one of which is ptBGRA32: the nearest to the pixel format. For
// AV_PIX_FMT_NONE it is bgra.
const zrLayout& nearestLayout(AVPixelFormat source, std::span<const unsigned> codes);

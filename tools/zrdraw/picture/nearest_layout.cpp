#include "picture/nearest_layout.h"

#include "picture/pixel_formats.h"

#include <algorithm>
#include <array>

namespace {

// Best first.
using Preference = std::array<unsigned, 3>;

constexpr Preference rgb8{ptBGRA32, ptBGRA32, ptBGRA32};
constexpr Preference deepRgb{ptRGB48, ptARGB64, ptBGRA32};
constexpr Preference deepAlpha{ptARGB64, ptBGRA32, ptBGRA32};
constexpr Preference pairs{ptUYVY, ptYUYV, ptBGRA32};
constexpr Preference deepPairs{ptV210, ptUYVY, ptBGRA32};

const Preference& preferenceFor(AVPixelFormat source) {
    const AVPixFmtDescriptor* format = av_pix_fmt_desc_get(source);
    if (!format || hasFlag(source, AV_PIX_FMT_FLAG_PAL))
        return rgb8;
    const auto* end = format->comp + format->nb_components;
    const bool deep =
        std::any_of(format->comp, end, [](const AVComponentDescriptor& c) { return c.depth > 8; });
    const bool alpha = hasFlag(source, AV_PIX_FMT_FLAG_ALPHA);
    if (alpha || countsAsRgb(source) || format->log2_chroma_w == 0)
        return !deep ? rgb8 : alpha ? deepAlpha : deepRgb;
    return deep ? deepPairs : pairs;
}

} // namespace

const zrLayout& nearestLayout(AVPixelFormat source, std::span<const unsigned> codes) {
    for (unsigned code : preferenceFor(source))
        if (std::find(codes.begin(), codes.end(), code) != codes.end())
            return *zrFindLayout(code);
    return *zrFindLayout(ptBGRA32);
}

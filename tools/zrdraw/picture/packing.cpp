#include "picture/packing.h"

#include "common/layout_names.h"
#include "common/tool_error.h"
#include "picture/bayer_packer.h"
#include "picture/line_packer.h"
#include "picture/pairs_packer.h"
#include "picture/rgb_packer.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace {

using MakePacker = std::unique_ptr<Packer> (*)(const zrLayout& layout, int width, int height);

template <const LineFunctions& functions>
std::unique_ptr<Packer> byLines(const zrLayout&, int width, int height) {
    return std::make_unique<LinePacker>(functions, width, height);
}

std::unique_ptr<Packer> byCells(const zrLayout& layout, int width, int height) {
    return std::make_unique<BayerPacker>(layout, width, height);
}

std::unique_ptr<Packer> byPairs(const zrLayout& layout, int width, int height) {
    return makePairsPacker(layout, AV_PIX_FMT_YUV422P10LE, width, height);
}

struct Row {
    unsigned code;
    AVPixelFormat pixels;
    MakePacker make;
};

constexpr Row rows[] = {
    {ptRGBA32, AV_PIX_FMT_RGBA, nullptr},
    {ptARGB32, AV_PIX_FMT_ARGB, nullptr},
    {ptBGRA32, AV_PIX_FMT_BGRA, nullptr},
    {ptABGR32, AV_PIX_FMT_ABGR, nullptr},
    {ptRGB24, AV_PIX_FMT_RGB24, nullptr},
    {ptBGR24, AV_PIX_FMT_BGR24, nullptr},
    {ptYUYV, AV_PIX_FMT_YUYV422, nullptr},
    {ptUYVY, AV_PIX_FMT_UYVY422, nullptr},
    {ptYVYU, AV_PIX_FMT_YVYU422, nullptr},
    {ptVYUY, AV_PIX_FMT_UYVY422, byLines<exchangedChroma>},
    {ptV210, AV_PIX_FMT_YUV422P10LE, byPairs},
    {ptRGB30DPX, AV_PIX_FMT_RGB48LE, byLines<dpxWords>},
    {ptRGB48, AV_PIX_FMT_RGB48LE, nullptr},
    {ptARGB64, AV_PIX_FMT_RGBA64LE, byLines<alphaFirstWords>},
    {ptRGBHalf48, AV_PIX_FMT_RGB48LE, byLines<threeHalves>},
    {ptRGBAHalf, AV_PIX_FMT_RGBA64LE, byLines<fourHalves>},
    {ptUV8, AV_PIX_FMT_YUV444P, byLines<chromaBytes>},
    {ptUV16, AV_PIX_FMT_YUV444P16LE, byLines<chromaWords>},
};

// The mosaics, which have no row of their own, are alike.
constexpr Row mosaicRow{0, AV_PIX_FMT_RGB48LE, byCells};

constexpr const Row& rowOf(const zrLayout& layout) {
    for (const Row& row : rows)
        if (row.code == layout.code)
            return row;
    return mosaicRow;
}

static_assert(std::all_of(std::begin(zrLayouts), std::end(zrLayouts), [](const zrLayout& layout) {
    return rowOf(layout).code == layout.code || layout.isMosaic();
}));

bool hasMosaic(const zrLayout& layout) {
    return layout.isMosaic();
}

} // namespace

AVPixelFormat pixelFormatOf(const zrLayout& layout) {
    return rowOf(layout).pixels;
}

bool isMemoryOf(const zrLayout& layout, AVPixelFormat format) {
    return format == pixelFormatOf(layout) && !rowOf(layout).make;
}

std::unique_ptr<Packer> makePacker(const zrLayout& layout, AVPixelFormat format, int width,
                                   int height) {
    const Row& row = rowOf(layout);
    if (row.pixels == format)
        return row.make ? row.make(layout, width, height) : nullptr;
    if (auto packer = makeRgbPacker(layout, format, width, height))
        return packer;
    return makePairsPacker(layout, format, width, height);
}

void requireFit(const zrLayout& layout, int width, int height) {
    if (hasMosaic(layout) && (width % 2 != 0 || height % 2 != 0))
        throw Failure(fmt::format("layout {} needs an even width and height, and the pictures are "
                                  "{}x{}: crop them, or draw in another --layout such as rgb48",
                                  layoutName(layout), width, height));
}

bool isYCbCr(const zrLayout& layout) {
    return (av_pix_fmt_desc_get(pixelFormatOf(layout))->flags & AV_PIX_FMT_FLAG_RGB) == 0;
}

bool isChromaOnly(const zrLayout& layout) {
    return layout.code == ptUV8 || layout.code == ptUV16;
}

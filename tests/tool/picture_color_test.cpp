// Colours and alpha of what is drawn on pictures, in every matrix and range.
#include "common/picture_color.h"
#include "media/av_messages.h"
#include "tool/drawn_pictures.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <array>

namespace {

// By the arithmetic of the standards.
std::array<double, 3> rgbOf(double y, double cb, double cr, double red, double blue) {
    const double green = 1 - red - blue, b = 2 * (1 - blue) * cb, r = 2 * (1 - red) * cr;
    return {y + r, y - (blue * b + red * r) / green, y + b};
}

struct Space {
    AVColorSpace space;
    double red, blue;
};
constexpr Space spaces[] = {{AVCOL_SPC_BT709, 0.2126, 0.0722},
                            {AVCOL_SPC_SMPTE170M, 0.299, 0.114},
                            {AVCOL_SPC_BT2020_NCL, 0.2627, 0.0593}};

// One flat colour of a 4:2:2 or 4:4:4 picture, 0 to 1 and -0.5 to 0.5.
std::array<double, 3> componentsAt(const AVFrame& picture, int x, int y) {
    const auto format = static_cast<AVPixelFormat>(picture.format);
    const AVPixFmtDescriptor& description = *av_pix_fmt_desc_get(format);
    const int depth = description.comp[0].depth;
    const bool full = picture.color_range == AVCOL_RANGE_JPEG;
    const double unit = full ? (1 << depth) - 1 : 1 << (depth - 8);
    std::array<double, 3> result{};
    for (int i = 0; i < 3; ++i) {
        const int column = i == 0 ? x : x >> description.log2_chroma_w;
        const Line line =
            lineOf(picture, i, i == 0 ? y : y >> description.log2_chroma_h,
                   AV_CEIL_RSHIFT(picture.width, i == 0 ? 0 : description.log2_chroma_w));
        const double zero = i > 0 ? 1 << (depth - 1) : full ? 0 : 16 * unit;
        result[static_cast<std::size_t>(i)] = (line[static_cast<std::size_t>(column)] - zero) /
                                              (full ? unit : (i == 0 ? 219 : 224) * unit);
    }
    return result;
}

class PictureColorTest : public testing::Test {
protected:
    void SetUp() override { quietAv(); }
};

// Every colour in every matrix and range, with the range kept.
TEST_F(PictureColorTest, ColoursAreThoseOfThePicture) {
    constexpr std::array<double, 3> colors[] = {{1, 0, 0}, {0, 0, 1}, {1, 1, 1}, {0.2, 0.7, 0.4}};
    for (AVPixelFormat format :
         {AV_PIX_FMT_YUV422P10, AV_PIX_FMT_YUV422P, AV_PIX_FMT_YUV444P, AV_PIX_FMT_YUV444P12})
        for (const Space& space : spaces)
            for (AVColorRange range : {AVCOL_RANGE_MPEG, AVCOL_RANGE_JPEG, AVCOL_RANGE_UNSPECIFIED})
                for (const auto& color : colors) {
                    SCOPED_TRACE(fmt::format("{} {} {}", av_get_pix_fmt_name(format),
                                             av_color_space_name(space.space),
                                             av_color_range_name(range)));
                    const FramePtr source = noise(format, 64, 48, false);
                    source->colorspace = space.space;
                    source->color_range = range;
                    Canvas canvas(nearestLayout(format, taken), 64, 48);
                    Loader(canvas.shape()).load(*source, canvas);
                    const DrawPtr draw = objectOn(canvas);
                    setPictureColor(*draw, color[0], color[1], color[2], 1, true);
                    fillBlock(*draw);
                    const FramePtr target = newFrame(format, 64, 48);
                    target->colorspace = space.space;
                    target->color_range = range;
                    Storer(canvas.shape()).store(canvas, *source, *target);
                    const auto [y, cb, cr] = componentsAt(*target, 30, 20);
                    const auto drawn = rgbOf(y, cb, cr, space.red, space.blue);
                    for (std::size_t i = 0; i < 3; ++i)
                        EXPECT_NEAR(drawn[i], color[i], 2.5 / 255) << "channel " << i;
                }
}

// Both ways between 8-bit YCbCr and RGB, against exact arithmetic.
TEST_F(PictureColorTest, TheMatrixIsWithinOneOfExact) {
    for (const Space& space : spaces)
        for (AVColorRange range : {AVCOL_RANGE_MPEG, AVCOL_RANGE_JPEG}) {
            const FramePtr source = noise(AV_PIX_FMT_YUV444P, 64, 48, false);
            source->colorspace = space.space;
            source->color_range = range;
            Canvas canvas(*zrFindLayout(ptRGBA32), 64, 48);
            Loader(canvas.shape()).load(*source, canvas);
            const FramePtr none = newFrame(), back = newFrame(AV_PIX_FMT_YUV444P, 64, 48);
            back->colorspace = space.space;
            back->color_range = range;
            Storer(canvas.shape()).store(canvas, *none, *back);
            for (int y = 0; y < 48; ++y)
                for (int x = 0; x < 64; x += 7) {
                    const auto [luma, cb, cr] = componentsAt(*source, x, y);
                    const auto exact = rgbOf(luma, cb, cr, space.red, space.blue);
                    bool clipped = false;
                    for (int i = 0; i < 3; ++i) {
                        const double value = exact[static_cast<std::size_t>(i)] * 255;
                        clipped = clipped || value < 0 || value > 255;
                        ASSERT_NEAR(canvas.lines().line(y)[4 * x + i],
                                    std::clamp(value, 0.0, 255.0), 1.0);
                    }
                    const auto [wasY, wasCb, wasCr] = componentsAt(*back, x, y);
                    if (!clipped) {
                        EXPECT_NEAR(wasY, luma, 1.01 / 219);
                        EXPECT_NEAR(wasCb, cb, 1.01 / 224);
                        EXPECT_NEAR(wasCr, cr, 1.01 / 224);
                    }
                }
        }
}

// Boxes over what is transparent, also where they have the very colour that is there.
TEST_F(PictureColorTest, WhatIsDrawnCanBeOpaque) {
    for (AVPixelFormat format : {AV_PIX_FMT_YUVA444P10, AV_PIX_FMT_BGRA, AV_PIX_FMT_RGBA64BE})
        for (AVPixelFormat to : {format, AV_PIX_FMT_RGBA}) {
            SCOPED_TRACE(
                fmt::format("{} {}", av_get_pix_fmt_name(format), av_get_pix_fmt_name(to)));
            const FramePtr source = noise(format, 64, 48, false);
            if (hasFlag(format, AV_PIX_FMT_FLAG_RGB))
                std::fill_n(source->data[0], source->linesize[0] * 48, std::uint8_t{0});
            Canvas canvas(nearestLayout(format, taken), 64, 48);
            Loader(canvas.shape(), Alpha::Opaque).load(*source, canvas);
            const DrawPtr draw = objectOn(canvas);
            setPictureColor(*draw, 0, 0, 0, 0, true);
            fillBlock(*draw);
            const FramePtr target = newFrame(to, 64, 48);
            Storer(canvas.shape(), Alpha::Opaque).store(canvas, *source, *target);
            const unsigned full = (1U << av_pix_fmt_desc_get(to)->comp[3].depth) - 1;
            const int depth = av_pix_fmt_desc_get(format)->comp[3].depth;
            for (int y = 0; y < 48; ++y) {
                const Line was = lineOf(*source, 3, y, 64), is = lineOf(*target, 3, y, 64);
                for (int x = 0; x < 64; ++x) {
                    const std::uint32_t alpha = was[static_cast<std::size_t>(x)];
                    ASSERT_EQ(is[static_cast<std::size_t>(x)], isInBlock(x, y) ? full
                                                               : to == format
                                                                   ? alpha
                                                                   : alpha >> (depth - 8));
                }
            }
        }
}

} // namespace

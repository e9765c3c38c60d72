// Every pixel format of the media libraries, drawn on in the layout nearest to it: what was not
// drawn on comes back bit for bit. The table in docs/exactness.md is made here: with
// ZRDRAW_WRITE_DOCS=1 it is written anew.
#include "common/layout_names.h"
#include "common/picture_color.h"
#include "common/tool_error.h"
#include "draw_object.h"
#include "media/av_messages.h"
#include "picture/canvas_converter.h"
#include "picture/convert.h"
#include "picture/nearest_layout.h"
#include "picture/pixel_formats.h"
#include "support/temp_file.h"
#include "tool/drawn_pictures.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {

// How many samples outside of the block changed, and whether any in it did.
struct Change {
    int outside = 0, inside = 0;
};

Change changeOf(const AVFrame& before, const AVFrame& after) {
    Change change;
    const auto format = static_cast<AVPixelFormat>(before.format);
    for (int i = 0; i < av_pix_fmt_desc_get(format)->nb_components; ++i) {
        const Component component(format, i, before);
        for (int y = 0; y < component.height; ++y) {
            const Line was = lineOf(before, i, y, component.width);
            const Line is = lineOf(after, i, y, component.width);
            if (was == is)
                continue;
            for (int x = 0; x < component.width; ++x)
                if (was[static_cast<std::size_t>(x)] != is[static_cast<std::size_t>(x)])
                    ++(component.touchesBlock(x, y) ? change.inside : change.outside);
        }
    }
    return change;
}

void expectKept(AVPixelFormat format, int width, int height, bool interlaced) {
    SCOPED_TRACE(fmt::format("{} {}x{}{}", av_get_pix_fmt_name(format), width, height,
                             interlaced ? " interlaced" : ""));
    const FramePtr source = noise(format, width, height, interlaced);
    Canvas canvas(nearestLayout(format, taken), width, height);
    Loader(canvas.shape()).load(*source, canvas);
    Storer storer(canvas.shape());
    const FramePtr target = newFrame(format, width, height);
    storer.store(canvas, *source, *target);
    const Change none = changeOf(*source, *target);
    EXPECT_EQ(none.outside + none.inside, 0);
    const DrawPtr draw = objectOn(canvas);
    setPictureColor(*draw, 0.75, 0.5, 0.25, 1, true);
    fillBlock(*draw);
    storer.store(canvas, *source, *target);
    const Change block = changeOf(*source, *target);
    EXPECT_EQ(block.outside, 0);
    EXPECT_GT(block.inside, (right - left) * (bottom - top) / 2);
}

struct Row {
    AVPixelFormat format;
    std::string layout, how;
};

// Grey and palettes are written with colours.
AVPixelFormat colored(AVPixelFormat format) {
    const bool deep = av_pix_fmt_desc_get(format)->comp[0].depth > 8;
    if (hasFlag(format, AV_PIX_FMT_FLAG_ALPHA) && !hasFlag(format, AV_PIX_FMT_FLAG_PAL))
        return deep ? AV_PIX_FMT_RGBA64 : AV_PIX_FMT_RGBA;
    return deep ? AV_PIX_FMT_RGB48 : AV_PIX_FMT_RGB24;
}

// A sample in a depth below twice its own, the high bits repeated.
std::uint32_t widened(std::uint32_t sample, int from, int to) {
    return sample << (to - from) | sample >> (2 * from - to);
}

void expectKeptInColors(AVPixelFormat format, int width, int height) {
    SCOPED_TRACE(av_get_pix_fmt_name(format));
    const AVPixelFormat to = colored(format);
    const FramePtr source = noise(format, width, height, false);
    Canvas canvas(nearestLayout(format, taken), width, height);
    Loader(canvas.shape()).load(*source, canvas);
    const FramePtr target = newFrame(to, width, height);
    Storer(canvas.shape()).store(canvas, *source, *target);
    const AVPixFmtDescriptor& had = *av_pix_fmt_desc_get(format);
    const AVPixFmtDescriptor& has = *av_pix_fmt_desc_get(to);
    for (int y = 0; y < height; ++y) {
        const Line first = lineOf(*source, 0, y, width);
        for (int i = 0; i < has.nb_components; ++i) {
            const Line written = lineOf(*target, i, y, width);
            const Line alpha = lineOf(*source, had.nb_components - 1, y, width);
            for (std::size_t x = 0; x < first.size(); ++x) {
                const bool palette = hasFlag(format, AV_PIX_FMT_FLAG_PAL);
                const std::uint32_t expected =
                    palette ? source->data[1][4 * first[x] + 2 - static_cast<unsigned>(i)]
                            : widened(i == 3 ? alpha[x] : first[x], had.comp[0].depth,
                                      has.comp[i].depth);
                ASSERT_EQ(written[x], expected) << "component " << i << " at " << x << "," << y;
            }
        }
    }
}

// How what is not drawn on comes back, and empty where it does not.
std::string howKept(AVPixelFormat format, const zrLayout& layout) {
    const CanvasShape shape(layout, 64, 48);
    const FramePtr picture = newFrame(format, 64, 48);
    const PictureKind kind = kindOf(*picture, shape);
    if (isMemoryOf(layout, kind.format))
        return "its own bytes";
    if (CanvasConverter(shape, kind, canvasColors(shape, *picture, kind)).isExact())
        return "direct";
    return "compared";
}

Row rowOf(AVPixelFormat format) {
    const zrLayout& layout = nearestLayout(format, taken);
    Row row{format, layoutName(layout), ""};
    if (isGray(format) || hasFlag(format, AV_PIX_FMT_FLAG_PAL)) {
        row.how =
            fmt::format("written as {}, of the same values", av_get_pix_fmt_name(colored(format)));
        if (hasFlag(format, AV_PIX_FMT_FLAG_FLOAT))
            row.how = "written as rgb48, in 16 bits";
    } else {
        row.how = howKept(format, layout);
        if (row.how == "compared" && !sws_isSupportedInput(format))
            row.how = "not at all: the media libraries cannot convert it";
        else if (row.how == "compared" && !sws_isSupportedOutput(format))
            row.how = "read only: the media libraries do not write it";
    }
    return row;
}

std::vector<Row> allRows() {
    std::vector<Row> rows;
    constexpr unsigned others =
        AV_PIX_FMT_FLAG_HWACCEL | AV_PIX_FMT_FLAG_BITSTREAM | AV_PIX_FMT_FLAG_BAYER;
    for (const AVPixFmtDescriptor* d = nullptr; (d = av_pix_fmt_desc_next(d));)
        if ((d->flags & others) == 0 && !std::string_view(d->name).starts_with("xyz"))
            rows.push_back(rowOf(av_pix_fmt_desc_get_id(d)));
    return rows;
}

bool isKept(const Row& row) {
    return row.how == "its own bytes" || row.how == "direct" || row.how == "compared";
}

class ExactnessTest : public testing::Test {
protected:
    void SetUp() override { quietAv(); }
};

TEST_F(ExactnessTest, WhatWasNotDrawnOnComesBack) {
    for (const Row& row : allRows())
        for (const auto& [width, height] : {std::pair(64, 48), {61, 47}, {62, 46}})
            for (bool interlaced : {false, true})
                if (isKept(row))
                    expectKept(row.format, width, height, interlaced);
}

TEST_F(ExactnessTest, GreyAndPalettesKeepTheirValuesInColours) {
    for (const Row& row : allRows())
        if (row.how.ends_with("of the same values"))
            expectKeptInColors(row.format, 61, 47);
}

// Into every format from every kind of layout, to the last line and column of odd sizes.
TEST_F(ExactnessTest, AFlatColourIsFlatUpToTheEdges) {
    const FramePtr source = newFrame(AV_PIX_FMT_BGRA, 61, 47);
    for (int i = 0; i < source->linesize[0] * 47; ++i)
        source->data[0][i] = std::array<std::uint8_t, 4>{40, 90, 200, 255}[i % 4];
    const FramePtr none = newFrame();
    for (unsigned code : taken) {
        Canvas canvas(*zrFindLayout(code), 61, 47);
        Loader(canvas.shape()).load(*source, canvas);
        for (const Row& row : allRows()) {
            if (!isKept(row) || !sws_isSupportedOutput(row.format) ||
                hasFlag(row.format, AV_PIX_FMT_FLAG_RGB))
                continue;
            const FramePtr target = newFrame(row.format, 61, 47);
            none->interlaced_frame = !none->interlaced_frame;
            Storer(canvas.shape()).store(canvas, *none, *target);
            for (int i = 0; i < av_pix_fmt_desc_get(row.format)->nb_components; ++i) {
                const Component component(row.format, i, *target);
                const std::uint32_t first = lineOf(*target, i, 0, 1)[0];
                // Scalers dither to the next number.
                const auto most =
                    std::max(1, 1 << av_pix_fmt_desc_get(row.format)->comp[i].depth >> 8);
                for (int y = 0; y < component.height; ++y)
                    for (std::uint32_t sample : lineOf(*target, i, y, component.width))
                        ASSERT_NEAR(sample, first, most)
                            << av_get_pix_fmt_name(row.format) << " from "
                            << layoutName(canvas.layout()) << ", component " << i << ", line " << y;
            }
        }
    }
}

constexpr char opening[] = R"(# What comes back bit for bit

`zrdraw` draws in the layout nearest to the pixel format of its source. What is not drawn on is then
stored as it came where the output has the pixel format and the colours of the source:

- **its own bytes**: the layout's memory is that of the pixel format, and is copied.
- **direct**: one pass into the layout and one back, each without loss. The chroma of 4:2:0 is
  repeated for both lines, of the same field where the frame is interlaced, and averaged again.
- **compared**: the way into the layout loses something. The canvas is compared with what it was
  before it was drawn on, and each sample that covers no changed pixel is taken from the source.

A sample of chroma covers more than one pixel, so that it changes where any of them was drawn on. The
table holds for even and odd sizes, progressive and interlaced. It is made by the test
`ExactnessTest`, which goes through all of it: `ZRDRAW_WRITE_DOCS=1 tool_test
--gtest_filter='Exactness*'` writes it anew. Not in it are formats of less than a byte a pixel, and
hardware's, mosaics' and XYZ, which are for other uses.

| pixel format | drawn in | what is not drawn on |
|---|---|---|
)";

TEST_F(ExactnessTest, TheTableOfTheDocumentsSaysSo) {
    std::string text = opening;
    for (const Row& row : allRows())
        text +=
            fmt::format("| {} | {} | {} |\n", av_get_pix_fmt_name(row.format), row.layout, row.how);
    const std::string path = ZRDRAW_DOCS "/exactness.md";
    if (std::getenv("ZRDRAW_WRITE_DOCS"))
        std::ofstream(path) << text;
    EXPECT_TRUE(readFile(path) == text) << path << " is not what the tool does";
}

} // namespace

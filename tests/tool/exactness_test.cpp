// Every pixel format of the media libraries, drawn on in the layout nearest to it: what was not
// drawn on comes back bit for bit. The table in docs/exactness.md is made here: with
// ZRDRAW_WRITE_DOCS=1 it is written anew.
#include "draw_object.h"
#include "layout_names.h"
#include "media/av_messages.h"
#include "picture/canvas_converter.h"
#include "picture/convert.h"
#include "picture/nearest_layout.h"
#include "picture/pixel_formats.h"
#include "picture_color.h"
#include "support/temp_file.h"
#include "tool_error.h"

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

constexpr unsigned taken[] = {ptBGRA32, ptUYVY, ptV210, ptRGB48, ptARGB64};

// In the middle, with odd edges.
constexpr int left = 21, right = 38, top = 15, bottom = 30;

bool isInBlock(int x, int y) {
    return x >= left && x < right && y >= top && y < bottom;
}

DrawPtr objectOn(Canvas& canvas) {
    ZRDraw* object = nullptr;
    EXPECT_EQ(GetDraw(canvas.layout().code, canvas.width(), canvas.height(), canvas.pitch(),
                      canvas.data(), object),
              0);
    DrawPtr draw(object);
    if (const auto mode = canvas.matrixMode())
        draw->SetYCbCrMode(*mode);
    return draw;
}

void fillBlock(ZRDraw& draw) {
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x)
            draw.PutPixel(x, y, true);
}

using Line = std::vector<std::uint32_t>;

Line lineOf(const AVFrame& picture, int component, int y, int width) {
    Line line(static_cast<std::size_t>(width));
    const std::uint8_t* data[4] = {picture.data[0], picture.data[1], picture.data[2],
                                   picture.data[3]};
    av_read_image_line2(line.data(), data, picture.linesize,
                        av_pix_fmt_desc_get(static_cast<AVPixelFormat>(picture.format)), 0, y,
                        component, width, 0, sizeof line[0]);
    return line;
}

// One component of a format: how many samples it has, and which pixels each of them covers.
struct Component {
    Component(AVPixelFormat format, int index, const AVFrame& picture)
        : m_index(index), m_description(*av_pix_fmt_desc_get(format)), m_height(picture.height),
          m_fields(hasChromaByFields(picture, format)) {
        const bool chroma = (index == 1 || index == 2) && m_description.nb_components > 2 &&
                            !hasFlag(format, AV_PIX_FMT_FLAG_RGB);
        m_shiftX = chroma ? m_description.log2_chroma_w : 0;
        m_shiftY = chroma ? m_description.log2_chroma_h : 0;
        width = AV_CEIL_RSHIFT(picture.width, m_shiftX);
        height = AV_CEIL_RSHIFT(picture.height, m_shiftY);
    }

    int width, height;

    bool touchesBlock(int x, int y) const {
        const bool fields = m_fields && m_shiftY == 1;
        for (int line = 0; line < m_height; ++line) {
            const int own = fields ? line / 4 * 2 + line % 2 : line >> m_shiftY;
            for (int column = x << m_shiftX; own == y && column < (x + 1) << m_shiftX; ++column)
                if (isInBlock(column, line))
                    return true;
        }
        return false;
    }

private:
    int m_index;
    const AVPixFmtDescriptor& m_description;
    int m_height;
    bool m_fields;
    int m_shiftX, m_shiftY;
};

FramePtr noise(AVPixelFormat format, int width, int height, bool interlaced) {
    FramePtr picture = newFrame(format, width, height);
    picture->interlaced_frame = interlaced;
    for (const AVBufferRef* plane : picture->buf)
        if (plane)
            std::fill_n(plane->data, plane->size, std::uint8_t{0});
    std::mt19937 random(static_cast<unsigned>(format));
    const AVPixFmtDescriptor& description = *av_pix_fmt_desc_get(format);
    if (hasFlag(format, AV_PIX_FMT_FLAG_PAL))
        for (int i = 0; i < AVPALETTE_SIZE; ++i)
            picture->data[1][i] = i % 4 == 3 ? 255 : static_cast<std::uint8_t>(random());
    for (int i = 0; i < (hasFlag(format, AV_PIX_FMT_FLAG_PAL) ? 1 : description.nb_components);
         ++i) {
        const Component component(format, i, *picture);
        for (int y = 0; y < component.height; ++y) {
            Line line(static_cast<std::size_t>(component.width));
            for (std::uint32_t& sample : line) {
                const float value = static_cast<float>(random() % 4096) / 4095;
                if (hasFlag(format, AV_PIX_FMT_FLAG_FLOAT))
                    std::memcpy(&sample, &value, sizeof sample);
                else
                    sample = static_cast<std::uint32_t>(random()) &
                             ((1U << description.comp[i].depth) - 1);
            }
            av_write_image_line2(line.data(), picture->data, picture->linesize, &description, 0, y,
                                 i, component.width, sizeof line[0]);
        }
    }
    return picture;
}

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

// Every colour in every matrix and range, with the range kept.
TEST_F(ExactnessTest, ColoursAreThoseOfThePicture) {
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
TEST_F(ExactnessTest, TheMatrixIsWithinOneOfExact) {
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

// Boxes over what is transparent, also where they have the very colour that is there.
TEST_F(ExactnessTest, WhatIsDrawnCanBeOpaque) {
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

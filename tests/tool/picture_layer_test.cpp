// Pictures on frames: against a plain way of doing the same, pixel by pixel.
#include "common/picture_color.h"
#include "script/pictures/picture_layer.h"
#include "support/guarded_memory.h"
#include "support/script_pictures.h"
#include "zrdraw/v210.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

namespace {

struct Release {
    void operator()(ZRDraw* draw) const { ReleaseDraw(draw); }
};
using ObjectPtr = std::unique_ptr<ZRDraw, Release>;

// A frame of noise between guards, with a gap behind each line.
class TestFrame {
public:
    TestFrame(const zrLayout& layout, int width, int height, unsigned seed = 1, bool opaque = false)
        : m_pitch(wordPitch(layout, width) + 16),
          m_memory(zrFrameRoom(layout, width, height, m_pitch)), m_layout(layout), m_width(width),
          m_height(height) {
        std::mt19937 random(seed);
        for (unsigned char& byte : m_memory)
            byte = static_cast<unsigned char>(random());
        for (std::size_t i = 0; opaque && layout.bytes.a >= 0 && i + 4 <= m_memory.size(); i += 4)
            m_memory.data()[i + static_cast<std::size_t>(layout.bytes.a)] = 255;
    }

    PictureView view() { return {&m_layout, m_memory.data(), m_width, m_height, m_pitch}; }
    GuardedMemory& memory() { return m_memory; }
    bool operator==(const TestFrame& other) const { return m_memory == other.m_memory; }

    // Where two differ, for a failure's text.
    std::string difference(const TestFrame& other) const {
        const std::ptrdiff_t at = m_memory.firstDifference(other.m_memory);
        return fmt::format("line {}, byte {}", at / m_pitch, at % m_pitch);
    }
    ObjectPtr object(cmYCbCr mode = cmRec709) {
        ZRDraw* draw = nullptr;
        EXPECT_EQ(GetDraw(m_layout.code, m_width, m_height, m_pitch, m_memory.chars(), draw), 0);
        draw->SetYCbCrMode(mode);
        return ObjectPtr(draw);
    }

private:
    int m_pitch;
    GuardedMemory m_memory;
    const zrLayout& m_layout;
    int m_width, m_height;
};

// The plain way. A sample of a frame by pixel and component, of RGB in the order r, g, b, a.
class PlainFrame {
public:
    explicit PlainFrame(TestFrame& frame, cmYCbCr mode)
        : m_view(frame.view()), m_one(*m_view.layout, 6, 1), m_pen(m_one.object(mode)) {}

    // What a colour is here, by what a drawing object makes of it.
    std::array<int, 3> samplesOf(const Argb& color) {
        setPictureColor(*m_pen, color.r / 65535.0, color.g / 65535.0, color.b / 65535.0, 1, true);
        m_pen->PutPixel(0, 0, true);
        m_pen->PutPixel(1, 0, true);
        const PictureView view = m_one.view();
        return {get(view, 0, 0, 0), get(view, 0, 0, 1), get(view, 0, 0, 2)};
    }

    void put(const ScriptPicture& picture, int x, int y, double opacity, FrameAlpha alpha) {
        for (int line = 0; line < m_view.height; ++line)
            for (int column = 0; column < m_view.width; ++column)
                if (m_view.layout->bytes.a >= 0)
                    putRgb(picture, column, line, column - x, line - y, opacity, alpha);
                else if (column % 2 == 0)
                    putPair(picture, column, line, column - x, line - y, opacity);
    }

private:
    struct Weighted {
        Argb color{};
        std::int64_t weight = 0;
    };
    static Weighted at(const ScriptPicture& picture, int x, int y) {
        if (x < 0 || y < 0 || x >= picture.width || y >= picture.height)
            return {};
        const Argb color = argbAt(picture, x, y);
        return {color, std::lround(color.a * 16384 / 65535.0)};
    }
    static std::int64_t faded(std::int64_t weight, double opacity) {
        return (weight * std::lround(opacity * 16384) + 8192) / 16384;
    }

    static unsigned char* placeOf(const PictureView& view, int x, int y, int component) {
        const zrLayout& layout = *view.layout;
        unsigned char* line = view.line(y);
        if (layout.bytes.a >= 0) {
            const signed char order[] = {layout.bytes.r, layout.bytes.g, layout.bytes.b,
                                         layout.bytes.a};
            return line + 4 * x + order[component];
        }
        if (layout.isPairs()) {
            const zrPairOrder& pair = layout.pair;
            const signed char order[4] = {x % 2 == 0 ? pair.y0 : pair.y1, pair.cb, pair.cr};
            return line + x / 2 * 4 + order[component];
        }
        return line + x / 6 * 16 +
               4 * zrV210::placeOf(static_cast<unsigned>(x) % 6, static_cast<unsigned>(component))
                       .word;
    }
    static unsigned bitOf(int x, int component) {
        return zrV210::placeOf(static_cast<unsigned>(x) % 6, static_cast<unsigned>(component)).bit;
    }
    static int get(const PictureView& view, int x, int y, int component) {
        const unsigned char* place = placeOf(view, x, y, component);
        if (view.layout->code != ptV210)
            return *place;
        unsigned word = 0;
        std::memcpy(&word, place, 4);
        return static_cast<int>(word >> bitOf(x, component) & 0x3FF);
    }
    static void set(const PictureView& view, int x, int y, int component, std::int64_t sample) {
        unsigned char* place = placeOf(view, x, y, component);
        if (view.layout->code != ptV210) {
            *place = static_cast<unsigned char>(sample);
            return;
        }
        const unsigned bit = bitOf(x, component);
        unsigned word = 0;
        std::memcpy(&word, place, 4);
        word = (word & ~(0x3FFU << bit)) | static_cast<unsigned>(sample) << bit;
        std::memcpy(place, &word, 4);
    }
    void blend(int x, int y, int component, std::int64_t sample, std::int64_t weight) {
        const std::int64_t under = get(m_view, x, y, component);
        set(m_view, x, y, component, (weight * sample + (16384 - weight) * under + 8192) / 16384);
    }

    void putRgb(const ScriptPicture& picture, int x, int y, int px, int py, double opacity,
                FrameAlpha alpha) {
        const auto [color, whole] = at(picture, px, py);
        const std::int64_t weight = faded(whole, opacity);
        const std::int64_t under = alpha == FrameAlpha::Counts ? get(m_view, x, y, 3) : 255;
        const std::uint16_t words[] = {color.r, color.g, color.b};
        const std::int64_t all = weight * 255 + (16384 - weight) * under;
        for (int i = 0; i < 3 && weight != 0; ++i) {
            const std::int64_t sample = std::lround(words[i] * 255 / 65535.0);
            const std::int64_t sum =
                weight * 255 * sample + (16384 - weight) * under * get(m_view, x, y, i);
            set(m_view, x, y, i, (2 * sum + all) / (2 * all));
        }
        blend(x, y, 3, 255, weight);
    }

    // The chroma of the last pixel of an odd width is its own.
    void putPair(const ScriptPicture& picture, int x, int y, int px, int py, double opacity) {
        const Weighted a = at(picture, px, py), b = at(picture, px + 1, py);
        const std::array<int, 3> first = samplesOf(a.color), second = samplesOf(b.color);
        const bool whole = x + 1 < m_view.width;
        blend(x, y, 0, first[0], faded(a.weight, opacity));
        if (whole)
            blend(x + 1, y, 0, second[0], faded(b.weight, opacity));
        const std::int64_t both = a.weight + b.weight;
        for (std::size_t i = 1; i < 3 && both != 0; ++i)
            blend(x, y, static_cast<int>(i),
                  (2 * (first[i] * a.weight + second[i] * b.weight) + both) / (2 * both),
                  faded(whole ? (both + 1) / 2 : a.weight, opacity));
    }

    PictureView m_view;
    TestFrame m_one;
    ObjectPtr m_pen;
};

std::vector<const zrLayout*> layoutsThat(bool blend) {
    std::vector<const zrLayout*> result;
    for (const zrLayout& layout : zrLayouts)
        if (blendsPictures(layout) == blend)
            result.push_back(&layout);
    return result;
}

TEST(PictureLayer, BlendsInRgbOf32BitsAnd422) {
    std::string names;
    for (const zrLayout* layout : layoutsThat(true))
        names += std::string(layout->name) + " ";
    EXPECT_EQ(names, "ptRGBA32 ptARGB32 ptBGRA32 ptABGR32 ptYUYV ptUYVY ptYVYU ptVYUY ptV210 ");
}

constexpr int high = 9;
struct Spot {
    int x, y, width, height; // of the picture
    double opacity;
};
// Over every edge, at every place of a v210 group, odd and even, with runs longer and shorter than
// what is copied at once.
constexpr Spot spots[] = {{0, 0, 131, 5, 1},       {1, 2, 131, 5, 1},        {-1, -2, 131, 5, 0.7},
                          {-6, 7, 131, 5, 1},      {-9, 1, 131, 5, 0.3},     {2, 1, 170, 5, 1},
                          {3, 1, 170, 5, 0.5},     {4, -1, 97, 12, 1},       {5, -1, 97, 12, 1},
                          {-40, -3, 250, 20, 0.9}, {-41, -3, 251, 20, 1},    {140, 8, 60, 3, 1},
                          {149, 0, 1, 1, 1},       {150, 0, 1, 1, 1},        {-130, 0, 131, 5, 1},
                          {0, 0, 151, 9, 1},       {0, 0, 150, 9, 1},        {300, 0, 9, 9, 1},
                          {0, -9, 9, 9, 1},        {2000000000, 0, 9, 9, 1}, {7, 3, 3, 3, 0},
                          {7, 3, 30, 3, 0.0001},   {-2000000000, 0, 9, 9, 1}};

TEST(PictureLayer, EverySampleIsTheBlendedOne) {
    constexpr cmYCbCr modes[] = {cmRec601, cmRec709Full, cmRec2020};
    unsigned seed = 0;
    for (const zrLayout* layout : layoutsThat(true))
        for (const int width : {150, 151, 152, 156}) // of the frame
            for (const Spot& spot : spots) {
                ++seed;
                const cmYCbCr mode = modes[seed % std::size(modes)];
                const FrameAlpha alpha = seed % 4 == 0 ? FrameAlpha::Unused : FrameAlpha::Counts;
                const PicturePtr picture =
                    noisePicture(spot.width, spot.height, seed % 2 == 0 ? 20 : 120, seed);
                const bool opaque = seed % 3 == 0;
                TestFrame frame(*layout, width, high, seed, opaque);
                TestFrame plain(*layout, width, high, seed, opaque);
                PictureLayer().put(*frame.object(mode), frame.view(), picture, spot.x, spot.y, 0, 0,
                                   spot.opacity, alpha);
                PlainFrame(plain, mode).put(*picture, spot.x, spot.y, spot.opacity, alpha);
                ASSERT_TRUE(frame == plain)
                    << layout->name << ", width " << width << ", at " << spot.x << ", " << spot.y
                    << ": " << frame.difference(plain);
            }
}

// A picture in bytes comes back as bytes, and what is transparent leaves every bit.
TEST(PictureLayer, OpaqueIsThePictureAndTransparentTheFrame) {
    const PicturePtr picture = pictureOf(256, 3, [](int x, int y) {
        const auto word = static_cast<std::uint16_t>(x * 257);
        return Argb{static_cast<std::uint16_t>(y == 1 ? 0 : 65535), word, 77 * 257, word};
    });
    TestFrame frame(*zrFindLayout(ptBGRA32), 256, 3), before = frame;
    PictureLayer().put(*frame.object(), frame.view(), picture, 0, 0, 0, 0, 1);
    for (int x = 0; x < 256; ++x) {
        const auto byte = static_cast<unsigned char>(x);
        const unsigned char opaque[] = {byte, 77, byte, 255};
        for (int y = 0; y < 3; ++y)
            ASSERT_EQ(std::memcmp(frame.view().line(y) + 4 * x,
                                  y == 1 ? before.view().line(y) + 4 * x : opaque, 4),
                      0)
                << x << ", " << y;
    }
}

TEST(PictureLayer, TitlesOverTransparentFramesKeepTheirColours) {
    const struct {
        std::uint16_t alpha;
        std::array<int, 4> under, expected; // b, g, r, a
    } cases[] = {
        {32896, {9, 8, 7, 0}, {0, 128, 255, 128}},      // nothing of the colour that is not there
        {65535, {9, 8, 7, 0}, {0, 128, 255, 255}},      // opaque
        {32896, {200, 0, 0, 255}, {100, 64, 128, 255}}, // over what is opaque
        {32896, {200, 0, 0, 128}, {66, 85, 170, 192}},  // each by what it covers: 128 and 64 of 192
        {0, {9, 8, 7, 0}, {9, 8, 7, 0}},
        {0, {9, 8, 7, 3}, {9, 8, 7, 3}},
    };
    for (const auto& c : cases) {
        TestFrame frame(*zrFindLayout(ptBGRA32), 1, 1);
        for (int i = 0; i < 4; ++i)
            frame.memory().data()[i] =
                static_cast<unsigned char>(c.under[static_cast<std::size_t>(i)]);
        PictureLayer().put(*frame.object(), frame.view(),
                           flatPicture(1, 1, {c.alpha, 65535, 128 * 257, 0}), 0, 0, 0, 0, 1);
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_EQ(frame.memory().data()[i], c.expected[i])
                << c.alpha << " over " << c.under[3] << ", byte " << i;
    }
}

// A layer that made one thing ready makes whatever else is asked for as a new one does.
TEST(PictureLayer, WhatIsKeptIsOfTheRightForm) {
    const PicturePtr picture = noisePicture(60, 6, 30, 5), other = noisePicture(60, 6, 30, 6);
    const struct {
        const char* changed;
        unsigned layout;
        cmYCbCr mode;
        PicturePtr picture;
        int x, width;
        double opacity;
    } steps[] = {
        {"nothing yet", ptUYVY, cmRec709, picture, 4, 0, 1},
        {"nothing", ptUYVY, cmRec709, picture, 4, 0, 1},
        {"place by a pair", ptUYVY, cmRec709, picture, 6, 0, 1},
        {"place by a pixel", ptUYVY, cmRec709, picture, 7, 0, 1},
        {"opacity", ptUYVY, cmRec709, picture, 7, 0, 0.5},
        {"picture", ptUYVY, cmRec709, other, 7, 0, 0.5},
        {"matrix", ptUYVY, cmRec601, other, 7, 0, 0.5},
        {"order", ptYVYU, cmRec601, other, 7, 0, 0.5},
        {"layout", ptV210, cmRec601, other, 7, 0, 0.5},
        {"place in a group of v210", ptV210, cmRec601, other, 9, 0, 0.5},
        {"to what is not blended", ptRGB48, cmRec601, other, 9, 0, 0.5},
        {"opacity of that", ptRGB48, cmRec601, other, 9, 0, 0.9},
        {"picture of that", ptRGB48, cmRec601, picture, 9, 0, 0.9},
        {"size", ptBGRA32, cmRec601, picture, 9, 30, 0.9},
        {"size back", ptBGRA32, cmRec601, picture, 9, 0, 0.9},
        {"picture in the same size", ptBGRA32, cmRec601, other, 9, 60, 0.9},
        {"picture scaled", ptBGRA32, cmRec601, picture, 9, 31, 0.9},
        {"picture scaled to the same size", ptBGRA32, cmRec601, other, 9, 31, 0.9},
    };
    PictureLayer layer;
    for (const auto& step : steps) {
        const zrLayout& layout = *zrFindLayout(step.layout);
        TestFrame kept(layout, 90, 8), fresh = kept;
        const auto put = [&](PictureLayer& by, TestFrame& frame) {
            by.put(*frame.object(step.mode), frame.view(), step.picture, step.x, 1, step.width, 0,
                   step.opacity);
        };
        put(layer, kept);
        PictureLayer one;
        put(one, fresh);
        EXPECT_TRUE(kept == fresh) << step.changed << ": " << kept.difference(fresh);
    }
}

// In all other layouts: what PutPixel makes of the colours that are at least half there.
TEST(PictureLayer, ElsewhereMostlyOpaquePixelsAreDrawn) {
    const PicturePtr noise = noisePicture(41, 7, 12, 3);
    const PicturePtr picture = pictureOf(41, 7, [&](int x, int y) {
        const auto inBytes = [](std::uint16_t word) { // which every layout takes as they are
            return static_cast<std::uint16_t>(word / 257 * 257);
        };
        const Argb pixel = argbAt(*noise, x, y);
        return Argb{pixel.a, inBytes(pixel.r), inBytes(pixel.g), inBytes(pixel.b)};
    });
    for (const zrLayout* layout : layoutsThat(false))
        for (const int width : {40, 51})
            for (const Spot& spot : {Spot{0, 0, 0, 0, 1}, Spot{3, -2, 0, 0, 0.8},
                                     Spot{-4, 3, 0, 0, 1}, Spot{-5, 2, 0, 0, 0.6}}) {
                TestFrame frame(*layout, width, high), plain = frame;
                const ObjectPtr draw = frame.object(), pen = plain.object();
                PictureLayer().put(*draw, frame.view(), picture, spot.x, spot.y, 0, 0,
                                   spot.opacity);
                for (int y = 0; y < 7; ++y)
                    for (int x = 0; x < 41; ++x) {
                        const int toX = x + spot.x, toY = y + spot.y;
                        const Argb pixel = argbAt(*picture, x, y);
                        if (pixel.a * spot.opacity < 32767.5 || toX < 0 || toX >= width ||
                            toY < 0 || toY >= high)
                            continue;
                        setPictureColor(*pen, pixel.r / 65535.0, pixel.g / 65535.0,
                                        pixel.b / 65535.0, 1, true);
                        pen->PutPixel(toX, toY, true);
                    }
                ASSERT_TRUE(frame == plain) << layout->name << ", width " << width << ", at "
                                            << spot.x << ": " << frame.difference(plain);
            }
}

TEST(PictureLayer, ColoursOf24BitsAreRounded) {
    TestFrame frame(*zrFindLayout(ptRGB24), 1, 1);
    PictureLayer().put(*frame.object(), frame.view(),
                       flatPicture(1, 1, {65535, 1000, 65535 - 100, 0}), 0, 0, 0, 0, 1);
    EXPECT_EQ(std::vector<int>(frame.memory().begin(), frame.memory().begin() + 3),
              (std::vector<int>{4, 255, 0}));
}

TEST(PictureLayer, TheObjectIsAsBefore) {
    for (const zrLayout& layout : zrLayouts) {
        TestFrame frame(layout, 40, high), expected = frame;
        const ObjectPtr draw = frame.object(), other = expected.object();
        for (ZRDraw* object : {draw.get(), other.get()}) {
            setPictureColor(*object, 0.2, 0.4, 0.6, 1, true);
            setPictureColor(*object, 0.9, 0.1, 0.3, 1, false);
            object->MoveTo(3, 4);
        }
        TestFrame pictures(layout, 40, high);
        PictureLayer().put(*draw, pictures.view(), noisePicture(41, 9, 12, 3), -1, 0, 0, 0, 1);
        for (ZRDraw* object : {draw.get(), other.get()}) {
            object->LineTo(20, 7);
            object->PutPixel(9, 8, false);
        }
        EXPECT_TRUE(frame == expected) << layout.name << ": " << frame.difference(expected);
    }
}

} // namespace

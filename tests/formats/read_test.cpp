// What the readers of the format classes make of given bytes, on and off the canvas, and half
// floats against plain arithmetic.
#include "support/guarded_canvas.h"
#include "zrdraw/half_float.h"

#include <array>
#include <bit>
#include <cmath>
#include <map>

namespace {

constexpr double untouched = 7.25, anything = HUGE_VAL;

struct Reading {
    int result;
    double c[4];
};
using Form = int (ZRPixel::*)(int, int, double&, double&, double&, double&);
constexpr Form rgba = &ZRPixel::GetPixelRGBA, yCbCr = &ZRPixel::GetPixelYCbCr,
               hsv = &ZRPixel::GetPixelHSV;

void expectRead(GuardedCanvas& canvas, Form form, int x, int y, const Reading& expected) {
    double c[4] = {untouched, untouched, untouched, untouched};
    EXPECT_EQ((canvas.as<ZRDraw>().*form)(x, y, c[0], c[1], c[2], c[3]), expected.result);
    for (int i = 0; i < 4; ++i)
        if (expected.c[i] != anything)
            EXPECT_NEAR(c[i], expected.c[i], 1e-12) << i << " at " << x << "," << y;
}

// The 8-bit or the 10-bit form: {y, cb, cr, a}, all 77 before the call.
template <typename Sample>
void expectSamples(GuardedCanvas& canvas,
                   int (ZRPixel::*form)(int, int, Sample&, Sample&, Sample&, Sample&), int x,
                   const std::array<std::type_identity_t<Sample>, 4>& expected) {
    std::array<Sample, 4> c{77, 77, 77, 77};
    EXPECT_EQ((canvas.as<ZRDraw>().*form)(x, 0, c[0], c[1], c[2], c[3]), 0);
    EXPECT_EQ(c, expected) << x;
}
constexpr auto samples8 = &ZRPixel::GetPixelYCbCr8;
constexpr auto samples10 = &ZRPixel::GetPixelYCbCr10;

const Reading noHsv{-1, {untouched, untouched, untouched, untouched}};
const Reading zeros{-1, {0, 0, 0, 0}};

TEST(FormatRead, PairsOf422GiveTheFirstLuma) {
    struct Case {
        unsigned int code;
        unsigned char y, cb, cr;
    };
    for (const Case& c :
         {Case{10, 120, 100, 180}, {11, 100, 120, 140}, {12, 120, 180, 100}, {13, 100, 140, 120}}) {
        GuardedCanvas canvas(make<CDrawYCbCrYUYV>, c.code, 4, 1, 8);
        canvas.store(4, "78 64 8C B4");
        for (const int x : {2, 3, 4}) {
            const unsigned int y = c.y, cb = c.cb, cr = c.cr;
            SCOPED_TRACE(c.code);
            expectSamples(canvas, samples8, x, {c.y, c.cb, c.cr, 255});
            expectSamples(canvas, samples10, x, {y * 4, cb * 4, cr * 4, 255});
            expectRead(canvas, yCbCr, x, 0, {0, {y / 256.0, cb / 256.0, cr / 256.0, 1.0}});
            EXPECT_EQ(canvas->GetLuma(x, 0), y / 256.0);
            expectRead(canvas, hsv, x, 0, noHsv);
        }
        expectSamples(canvas, samples8, 5, {0, 0, 0, 77});
        expectSamples(canvas, samples10, -1, {0, 0, 0, 77});
        expectRead(canvas, yCbCr, 0, 2, {0, {0.0, 0.0, 0.0, untouched}});
        expectRead(canvas, rgba, 0, 2, {0, {0.5, 0.5, 0.5, 0.0}});
    }
}

TEST(FormatRead, PairsOf422AsRgb) {
    struct Case {
        unsigned int code;
        int x, mode;
        const char* pair;
        double r, g, b;
    };
    const char* const pair = "78 64 8C B4";
    const Case cases[] = {
        {11, 0, 2, pair, 0.454890625, 0.36840625, 0.3365},
        {11, 1, 2, pair, 0.767390625, 0.68090625, 0.649}, // the only reader to see the column
        {11, 0, 3, pair, 30538.752 / 65536, 23829.504 / 65536, 20688.896 / 65536},
        {11, 1, 3, pair, 54377.472 / 65536, 47668.224 / 65536, 44527.616 / 65536},
        {11, 0, 1003, pair, 0.4679188125, 0.365168171875, 0.31728540625},
        {13, 1, 2, "8C 64 78 B4", 0.454890625, 0.36840625, 0.3365},
        {10, 1, 2, "64 78 B4 8C", 0.454890625, 0.36840625, 0.3365},
        {12, 1, 2, "64 8C B4 78", 0.454890625, 0.36840625, 0.3365},
        {11, 0, 3, "00 FF FF 00", 1.0, 60868.864 / 65536, 1750.016 / 65536},
        {11, 0, 3, "80 00 00 00", 0.0, 12697.6 / 65536, 0.0},
        {11, 0, 9, pair, untouched, untouched, untouched},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.code << " mode " << c.mode << " x " << c.x);
        GuardedCanvas canvas(make<CDrawYCbCrYUYV>, c.code, 2, 1, 4);
        canvas.store(0, c.pair);
        canvas->SetYCbCrMode(static_cast<cmYCbCr>(c.mode));
        expectRead(canvas, rgba, c.x, 0, {0, {c.r, c.g, c.b, 0.0}});
    }
}

TEST(FormatRead, GroupsOfV210) {
    struct Row {
        unsigned int y, cb, cr;
    };
    constexpr Row rows[] = {{101, 711, 934}, {202, 711, 934}, {303, 722, 944},
                            {404, 722, 944}, {505, 733, 955}, {303, 733, 955}};
    constexpr unsigned int flags = 0xC0000000;
    constexpr unsigned int words[] = {711 | 101 << 10 | 934 << 20, 202 | 722 << 10 | 303 << 20,
                                      944 | 404 << 10 | 733 << 20, 505 | 955 << 10 | 606 << 20};
    GuardedCanvas canvas(make<CDrawYCbCr10>, 14, 12, 1, 128);
    canvas->SetYCbCrMode(cmRec601Full);
    canvas.store(16, Bytes(std::vector{words[0] | flags, words[1] | flags, words[2] | flags,
                                       words[3] | flags}));
    for (int x = 6; x <= 12; ++x) {
        const Row& s = rows[x % 6]; // one past the edge reads by the first row
        const double y = s.y / 1024.0, c = s.cb / 1024.0 - 0.5, d = s.cr / 1024.0 - 0.5;
        const auto clamped = [](double value) { return std::min(1.0, std::max(0.0, value)); };
        SCOPED_TRACE(x);
        expectRead(canvas, yCbCr, x, 0, {0, {y, s.cb / 1024.0, s.cr / 1024.0, 1.0}});
        expectSamples(canvas, samples10, x, {s.y, s.cb, s.cr, 1});
        const unsigned int cr8 = x % 6 == 0 ? 166 : s.cr / 4; // the low eight bits of 934
        expectSamples(canvas, samples8, x,
                      {static_cast<unsigned char>(s.y / 4), static_cast<unsigned char>(s.cb / 4),
                       static_cast<unsigned char>(cr8), 1});
        EXPECT_EQ(canvas->GetLuma(x, 0), y);
        expectRead(canvas, rgba, x, 0,
                   {0,
                    {clamped(y + 1.371 * d), clamped(y - 0.698 * d - 0.336 * c),
                     clamped(y + 1.732 * c), 0.0}});
        expectRead(canvas, hsv, x, 0, noHsv);
    }
    expectRead(canvas, yCbCr, 13, 0, {0, {untouched, untouched, untouched, untouched}});
    expectSamples(canvas, samples10, -1, {77, 77, 77, 77});
    expectSamples(canvas, samples8, 13, {77, 77, 77, 77});
}

TEST(FormatRead, RgbFamilies) {
    struct Case {
        Make make;
        unsigned int code;
        int stride;
        const char* pixel;
        double unit, alpha, luma; // red, green and blue are 4, 2 and 1 units
    };
    const Case cases[] = {
        {make<CDrawRGBA32>, 1, 4, "40 20 10 80", 16 / 255.0, 128 / 255.0, 39.744 / 256},
        {make<CDrawRGBA32>, 2, 4, "80 40 20 10", 16 / 255.0, 128 / 255.0, 39.744 / 256},
        {make<CDrawRGBA32>, 3, 4, "10 20 40 80", 16 / 255.0, 128 / 255.0, 39.744 / 256},
        {make<CDrawRGBA32>, 4, 4, "80 10 20 40", 16 / 255.0, 128 / 255.0, 39.744 / 256},
        {make<CDrawRGB24>, 5, 3, "40 20 10", 16 / 255.0, 1.0, 39.744 / 256},
        // Luma is read in the order of code 5.
        {make<CDrawRGB24>, 6, 3, "10 20 40", 16 / 255.0, 1.0, 30.864 / 256},
        {make<CDrawRGB30DPX>, 20, 4, "80 10 02 03", 128 / 1023.0, 1.0, 317.952 / 1024},
        {make<CDrawRGB48>, 31, 6, "00 80 00 40 00 20", 0.125, untouched, 0.875 / 3},
        {make<CDrawARGB64>, 32, 8, "00 C0 00 80 00 40 00 20", 0.125, 0.75, 0.875 / 3},
        {make<CDrawRGBHalf48>, 37, 6, "00 80 00 40 00 20", 0.125, untouched, 0.875 / 3},
        {make<CDrawRGBAHalf>, 38, 8, "00 38 00 34 00 30 00 C0", 0.125, -2, 0.875 / 3},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.code);
        constexpr int pitch = 32;
        GuardedCanvas canvas(c.make, c.code, 3, 2, pitch);
        canvas.store(pitch + 2 * c.stride, c.pixel);
        EXPECT_NEAR(canvas->GetLuma(2, 1), c.luma, 1e-12);
        canvas->SetYCbCrMode(cmRec601Full);
        const double u = c.unit;
        const bool bytes = c.code <= ptBGR24;
        for (const auto& [x, y] : {std::pair{2, 1}, {3, 1}, {2, 2}, {3, 2}}) {
            expectRead(canvas, rgba, x, y, {0, {4 * u, 2 * u, u, c.alpha}});
            expectRead(canvas, hsv, x, y, {0, {20.0, 0.75, 4 * u, c.alpha}});
            expectRead(
                canvas, yCbCr, x, y,
                {0, {2.484 * u, 0.5 - 0.855 * u, 0.5 + 1.105 * u, bytes ? c.alpha : anything}});
        }
        const double alphaOfZeros = c.code <= 4 ? 0.0 : bytes ? 1.0 : anything;
        expectRead(canvas, hsv, 0, 0, {0, {-1.0, 0.0, 0.0, alphaOfZeros}});
        if (c.code != 20) {
            expectRead(canvas, rgba, 4, 0, zeros);
            expectRead(canvas, hsv, 0, 3, {0, {bytes ? -1.0 : 0.0, 0, 0, bytes ? anything : 0.0}});
        }
    }
}

TEST(FormatRead, FullScaleAndLimits) {
    GuardedCanvas rgb(make<CDrawRGB48>, 31, 1, 1, 6), argb(make<CDrawARGB64>, 32, 1, 1, 8),
        half(make<CDrawRGBAHalf>, 38, 1, 1, 8);
    rgb.store(0, "FF FF FF FF FF FF");
    argb.store(0, "FF FF FF FF FF FF FF FF");
    constexpr double full = 65535 / 65536.0;
    expectRead(rgb, rgba, 0, 0, {0, {full, full, full, untouched}});
    EXPECT_EQ(argb->GetLuma(0, 0), 196605 / 196608.0);
    half.store(0, "FF 7B 01 00 FF FB");
    EXPECT_EQ(half->GetLuma(0, 0), 0.0) << "the sum in single precision loses the smallest";
    EXPECT_EQ(half->GetLuma(2, 0), 0.0);
}

TEST(FormatRead, DpxLumaHasThreeRows) {
    GuardedCanvas canvas(make<CDrawRGB30DPX>, 20, 1, 1, 4);
    canvas.store(0, "80 10 02 00");
    const std::map<int, double> rows = {{2, 273.152}, {3, 301.312}, {4, 258.816}};
    for (const int mode : {0, 1, 2, 3, 4, 5, 8, 1002, 1003, 1004}) {
        const double sum = rows.contains(mode) ? rows.at(mode) : 317.952;
        canvas->SetYCbCrMode(static_cast<cmYCbCr>(mode));
        EXPECT_NEAR(canvas->GetLuma(0, 0), sum / 1024, 1e-12) << mode;
    }
}

TEST(FormatRead, BayerCells) {
    struct Case {
        unsigned int codes[2];
        double r, g, b, below;
    };
    // Of the cell 0x12, 0x45, 0x78, 0xAB; `below` is the byte of the lower line that luma takes.
    for (const Case& c : {Case{{21, 25}, 0xAB, 0x45, 0x12, 0x9A},
                          {{22, 26}, 0x12, 0x45, 0xAB, 0x9A},
                          {{23, 27}, 0x78, 0x12, 0x45, 0x78},
                          {{24, 28}, 0x45, 0x12, 0x78, 0x78},
                          {{99, 20}, 0xAB, 0x45, 0x12, 0x9A}}) {
        for (const unsigned int code : c.codes) {
            SCOPED_TRACE(code);
            GuardedCanvas canvas(make<CDrawBayer>, code, 6, 6, 16);
            canvas.store(2 * 16 + 3, "12 34 56");
            canvas.store(3 * 16 + 3, "78 9A BC");
            for (const auto& [x, y] : {std::pair{2, 2}, {3, 2}, {2, 3}, {3, 3}})
                expectRead(canvas, rgba, x, y, {0, {c.r / 255, c.g / 255, c.b / 255, 1.0}});
            for (const int x : {2, 3}) {
                EXPECT_NEAR(canvas->GetLuma(x, 2), (0x12 + 0x34 + c.below) / 765, 1e-12);
                EXPECT_NEAR(canvas->GetLuma(x, 3), (0x78 + 0x9A) / 765.0, 1e-12);
            }
            if (c.r == 0xAB)
                expectRead(canvas, hsv, 3, 3, {0, {20.0, 153 / 171.0, 171 / 255.0, 1.0}});
            expectRead(canvas, hsv, 0, 0, {0, {-1.0, 0.0, 0.0, anything}});
            canvas->SetYCbCrMode(cmRec601Full);
            expectRead(canvas, yCbCr, 2, 3,
                       {0,
                        {(0.299 * c.r + 0.587 * c.g + 0.114 * c.b) / 255,
                         (-0.172 * c.r - 0.339 * c.g + 0.511 * c.b) / 255 + 0.5,
                         (0.511 * c.r - 0.428 * c.g - 0.083 * c.b) / 255 + 0.5, anything}});
        }
    }
}

TEST(FormatRead, Components) {
    struct Case {
        Make make;
        unsigned int code;
        int stride;
        double y, cb, cr, a, luma;
    };
    const Case cases[] = {
        {make<CDrawYCbCrYCbCr16>, 33, 6, 0.375, 0.5625, 0.625, untouched, 0.375},
        {make<CDrawYCbCrYCbCrA16>, 34, 8, 0.375, 0.5625, 0.625, 0.8125, 0.375},
        {make<CDrawUV8>, 10000, 2, 0.5, 0.375, 0.5625, untouched, 0.5},
        {make<CDrawUV16>, 10001, 4, 0.5, 0.375, 0.5625, untouched, 0.5},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.code);
        GuardedCanvas canvas(c.make, c.code, 3, 2, 32);
        canvas.store(32 + 2 * c.stride, "00 60 00 90 00 A0 00 D0");
        canvas->SetYCbCrMode(cmRec601Full);
        const double u = c.cb - 0.5, v = c.cr - 0.5;
        for (const auto& [x, y] : {std::pair{2, 1}, {3, 2}}) {
            expectRead(canvas, yCbCr, x, y, {0, {c.y, c.cb, c.cr, c.a}});
            expectRead(canvas, rgba, x, y,
                       {0, {c.y + 1.371 * v, c.y - 0.698 * v - 0.336 * u, c.y + 1.732 * u, 0.0}});
            expectRead(canvas, hsv, x, y, noHsv);
            EXPECT_EQ(canvas->GetLuma(x, y), c.luma);
        }
        expectRead(canvas, yCbCr, 4, 0, zeros);
        expectRead(canvas, yCbCr, 0, -1, zeros);
        if (c.luma == 0.5)
            EXPECT_EQ(canvas->GetLuma(9, 9), 0.5);
    }
}

TEST(FormatReadDeathTest, LumaOffTheCanvasStopsTheProgram) {
    for (const Make made : {make<CDrawYCbCrYCbCr16>, make<CDrawYCbCrYCbCrA16>, make<CDrawRGB48>,
                            make<CDrawYCbCr10>}) {
        GuardedCanvas canvas(made, 31, 1, 1, 128);
        EXPECT_DEATH(canvas->GetLuma(2, 0), "");
    }
}

TEST(HalfFloat, EveryHalfIsExactAndReturns) {
    for (unsigned int bits = 0; bits <= 0xFFFF; ++bits) {
        const auto half = static_cast<std::uint16_t>(bits);
        const float value = zrHalfToFloat(half);
        const int exponent = static_cast<int>(bits >> 10 & 31), mantissa = bits & 0x3FF;
        ASSERT_EQ(std::signbit(value), bits > 0x7FFF) << bits;
        if (exponent == 31 && mantissa != 0) {
            const auto word = std::bit_cast<std::uint32_t>(value);
            ASSERT_EQ(word & 0x7FFFFFFF, 0x7F800000U | (bits & 0x3FF) << 13) << bits;
            ASSERT_EQ(zrFloatToHalf(value), (bits & 0x8000) | 0x7E00) << bits;
            continue;
        }
        const double magnitude = exponent == 31  ? HUGE_VAL
                                 : exponent == 0 ? std::ldexp(mantissa, -24)
                                                 : std::ldexp(1024 + mantissa, exponent - 25);
        ASSERT_EQ(std::fabs(double{value}), magnitude) << bits;
        ASSERT_EQ(zrFloatToHalf(value), bits);
    }
}

// Halfway to the next larger half, and a step to each side of that.
TEST(HalfFloat, RoundsToNearestTiesToEven) {
    for (unsigned int half = 0; half < 0x7C00; ++half) {
        const float low = zrHalfToFloat(static_cast<std::uint16_t>(half));
        const float high =
            half == 0x7BFF ? 65536 : zrHalfToFloat(static_cast<std::uint16_t>(half + 1));
        const float tie = low + (high - low) / 2;
        ASSERT_EQ(zrFloatToHalf(tie), half + half % 2);
        ASSERT_EQ(zrFloatToHalf(std::nextafter(tie, low)), half);
        ASSERT_EQ(zrFloatToHalf(-std::nextafter(tie, high)), 0x8000 + half + 1);
    }
    EXPECT_EQ(zrFloatToHalf(1e-30F), 0);
    for (const float value : {65536.0F, 1e30F, HUGE_VALF})
        EXPECT_EQ(zrFloatToHalf(value), 0x7C00) << value;
    for (const unsigned int payload : {0x7F800001U, 0x7FFFFFFFU}) // only the last bit, and all
        EXPECT_EQ(zrFloatToHalf(std::bit_cast<float>(payload)), 0x7E00) << payload;
}

} // namespace

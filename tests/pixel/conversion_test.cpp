// The colour model: matrices in every mode, and hue, saturation and value.
#include <gtest/gtest.h>

#include <cmath>

#include "zrdraw/zrpixel.h"

namespace {

struct Triple {
    double c0, c1, c2;
};

void expectNear(const Triple& actual, double c0, double c1, double c2) {
    constexpr double exact = 1e-15;
    EXPECT_NEAR(actual.c0, c0, exact);
    EXPECT_NEAR(actual.c1, c1, exact);
    EXPECT_NEAR(actual.c2, c2, exact);
}

constexpr double sentinel = -77.0;

struct Converter : ZRPixel {
    explicit Converter(unsigned int mode) { SetYCbCrMode(static_cast<cmYCbCr>(mode)); }
    Triple toYCbCr(double r, double g, double b) {
        Triple out{sentinel, sentinel, sentinel};
        EXPECT_EQ(RGBToYCbCr(r, g, b, 0.3, out.c0, out.c1, out.c2, alpha), 0);
        return out;
    }
    Triple toRgb(double y, double cb, double cr) {
        Triple out{sentinel, sentinel, sentinel};
        EXPECT_EQ(YCbCrToRGB(y, cb, cr, 0.3, out.c0, out.c1, out.c2, alpha), 0);
        return out;
    }
    double alpha = sentinel;
};

} // namespace

TEST(RgbToYCbCr, EveryMatrixByItsCorners) {
    // Red, green and blue alone pick out the columns of a matrix, black its offsets.
    struct Case {
        unsigned int mode;
        Triple red, green, blue, black;
    };
    const Triple studio{0.0625, 0.5, 0.5};
    const Triple full{0.0, 0.5, 0.5};
    const Triple none{0.0, 0.0, 0.0};
    const Triple clRed{0.2627, -0.2627 / 1.9404, (1 - 0.2627) / 0.9936};
    const Triple clGreen{0.678, -0.678 / 1.9404, -0.678 / 1.7184};
    const Triple clBlue{0.0593, (1 - 0.0593) / 1.5816, -0.0593 / 1.7184};
    const Case cases[] = {
        {0, {0.257, -0.148, 0.439}, {0.504, -0.291, -0.368}, {0.098, 0.439, -0.071}, studio},
        {1, {0.257, -0.148, 0.439}, {0.504, -0.291, -0.368}, {0.098, 0.439, -0.071}, studio},
        {2, {0.299, -0.172, 0.511}, {0.587, -0.339, -0.428}, {0.114, 0.511, -0.083}, full},
        {3, {0.183, -0.101, 0.439}, {0.614, -0.338, -0.399}, {0.062, 0.439, -0.04}, studio},
        {4,
         {0.212585, -0.117188, 0.511414},
         {0.71521, -0.394226, -0.464508},
         {0.072205, 0.511414, -0.046906},
         full},
        {5,
         {0.2256, -0.1226, 0.4392},
         {0.5823, -0.3166, -0.4039},
         {0.0509, 0.4392, -0.0353},
         studio},
        {6, {0.2627, -0.1396, 0.5}, {0.678, -0.3604, -0.4598}, {0.0593, 0.5, -0.0402}, none},
        {7, clRed, clGreen, clBlue, none},
        {8, clRed, clGreen, clBlue, none},
    };
    for (const Case& c : cases) {
        for (const unsigned int mode : {c.mode, c.mode + 1000}) {
            SCOPED_TRACE(mode);
            Converter converter(mode);
            const auto offset = [&](const Triple& t) {
                return Triple{t.c0 + c.black.c0, t.c1 + c.black.c1, t.c2 + c.black.c2};
            };
            const Triple red = offset(c.red), green = offset(c.green), blue = offset(c.blue);
            expectNear(converter.toYCbCr(1, 0, 0), red.c0, red.c1, red.c2);
            expectNear(converter.toYCbCr(0, 1, 0), green.c0, green.c1, green.c2);
            expectNear(converter.toYCbCr(0, 0, 1), blue.c0, blue.c1, blue.c2);
            expectNear(converter.toYCbCr(0, 0, 0), c.black.c0, c.black.c1, c.black.c2);
            EXPECT_EQ(converter.alpha, sentinel) << "the alpha is not written";
        }
    }
}

TEST(YCbCrToRgb, EveryMatrix) {
    // One value per matrix: Y = 0.5, Cb = 0.6, Cr = 0.45, so c = 0.1 and d = -0.05.
    struct Case {
        unsigned int mode;
        double r, g, b;
    };
    const double y601 = (0.5 - 0.0625) * 1.164;
    const double y709 = (0.5 - 0.0625) * 1.168932;
    const double r6 = 0.5 - 1.4746 * 0.05, g6 = 0.5 + 0.5714 * 0.05 - 0.1646 * 0.1,
                 b6 = 0.5 + 1.8815 * 0.1;
    const double r8 = 0.5 + 1.4746 * 0.45,
                 g8 = 0.5 - 0.16455312684366 * 0.6 - 0.57135312684366 * 0.45,
                 b8 = 0.5 + 1.8814 * 0.6;
    const Case cases[] = {
        {0, y601 - 1.596 * 0.05, y601 + 0.813 * 0.05 - 0.391 * 0.1, y601 + 2.017 * 0.1},
        {1, y601 - 1.596 * 0.05, y601 + 0.813 * 0.05 - 0.391 * 0.1, y601 + 2.017 * 0.1},
        {2, 0.5 - 1.371 * 0.05, 0.5 + 0.698 * 0.05 - 0.336 * 0.1, 0.5 + 1.732 * 0.1},
        {3, y709 - 1.799744 * 0.05, y709 + 0.534991 * 0.05 - 0.214082 * 0.1, y709 + 2.120653 * 0.1},
        {4, 0.5 - 1.5748 * 0.05, 0.5 + 0.468124 * 0.05 - 0.187324 * 0.1, 0.5 + 1.8556 * 0.1},
        {5, y601 - 1.6786 * 0.05, y601 + 0.6504 * 0.05 - 0.1873 * 0.1, y601 + 2.1417 * 0.1},
        {6, r6, g6, b6},
        {7, r6, g6, b6},
        {8, 1.0, g8, 1.0},
        {1006, r6, g6, b6},
        {1007, r8, g8, b8},
        {1008, r8, g8, b8},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.mode);
        Converter converter(c.mode);
        expectNear(converter.toRgb(0.5, 0.6, 0.45), c.r, c.g, c.b);
        EXPECT_EQ(converter.alpha, 0.0) << "the alpha is always 0";
    }
}

TEST(YCbCrToRgb, OnlyModesBelow1000Clamp) {
    for (unsigned int mode = 0; mode <= 6; ++mode) {
        const Triple clamped = Converter(mode).toRgb(1.5, 0.5, 0.5);
        const Triple raw = Converter(mode + 1000).toRgb(1.5, 0.5, 0.5);
        expectNear(clamped, 1.0, 1.0, 1.0);
        EXPECT_GT(raw.c0, 1.4) << mode;
        EXPECT_LT(Converter(mode + 1000).toRgb(-1.0, 0.5, 0.5).c2, -0.9) << mode;
        expectNear(Converter(mode).toRgb(-1.0, 0.5, 0.5), 0.0, 0.0, 0.0);
    }
}

TEST(ColourModes, UnknownOnesLeaveOutputsAlone) {
    for (const unsigned int mode : {9U, 500U, 999U, 1009U, 2001U, 0xFFFFFFFFU}) {
        Converter converter(mode);
        expectNear(converter.toRgb(0.5, 0.5, 0.5), sentinel, sentinel, sentinel);
        expectNear(converter.toYCbCr(0.5, 0.5, 0.5), sentinel, sentinel, sentinel);
        Triple hsv{sentinel, sentinel, sentinel};
        converter.YCbCrToHSV(0.5, 0.5, 0.5, 1, hsv.c0, hsv.c1, hsv.c2, converter.alpha);
        expectNear(hsv, sentinel, sentinel, sentinel);
        EXPECT_EQ(converter.alpha, sentinel);
        cmYCbCr stored{};
        EXPECT_EQ(converter.GetYCbCrMode(stored), 0);
        EXPECT_EQ(static_cast<unsigned int>(stored), mode);
    }
}

TEST(RgbToYCbCr10, SharesRowsBetweenModes) {
    struct Case {
        unsigned int mode;
        double y, cb, cr; // of R = 100, G = 50, B = 200
    };
    const double y = (11914.0 * 100 + 40095.0 * 50 + 4050.0 * 200) / 16384 + 64;
    const double cb = (-6388.0 * 100 - 21595.0 * 50 + 28073.0 * 200) / 16384 + 512;
    const double cr = (28017.0 * 100 + 25349.0 * 50 + 2566.0 * 200) / 16384 + 512;
    const double y2 = (13954.0 * 100 + 44416.0 * 50 + 3840.0 * 200) / 16384 + 64;
    const double cb2 = (-4584.0 * 100 - 19992.0 * 50 + 24576.0 * 200) / 16384 + 512;
    const double cr2 = (24576.0 * 100 - 30144.0 * 50 - 2624.0 * 200) / 16384 + 512;
    const Case cases[] = {
        {0, y, cb, cr},       {1, y, cb, cr},       {3, y, cb, cr},    {1000, y, cb, cr},
        {1001, y, cb, cr},    {1003, y, cb, cr},    {5, y2, cb2, cr2}, {6, y2, cb2, cr2},
        {1005, y2, cb2, cr2}, {1006, y2, cb2, cr2},
    };
    for (const Case& c : cases) {
        Converter converter(c.mode);
        Triple out{};
        converter.RGBToYCbCr10(100, 50, 200, 255, out.c0, out.c1, out.c2, converter.alpha);
        SCOPED_TRACE(c.mode);
        expectNear(out, c.y, c.cb, c.cr);
        EXPECT_EQ(converter.alpha, sentinel);
    }
    for (const unsigned int mode : {2U, 4U, 7U, 8U, 9U, 1002U}) {
        Converter converter(mode);
        Triple out{sentinel, sentinel, sentinel};
        converter.RGBToYCbCr10(100, 50, 200, 255, out.c0, out.c1, out.c2, converter.alpha);
        expectNear(out, sentinel, sentinel, sentinel);
    }
}

TEST(Hsv, FromRgb) {
    struct Case {
        double r, g, b, h, s, v;
        bool alphaPassed;
    };
    const Case cases[] = {
        {1, 0, 0, 0, 1, 1, true},       {0, 1, 0, 120, 1, 1, true},
        {0, 0, 1, 240, 1, 1, true},     {1, 0, 0.5, 330, 1, 1, true},
        {0.5, 1, 1, 180, 0.5, 1, true}, {0.5, 0.5, 0.5, -1, 0, 0.5, false},
        {0, 0, 0, -1, 0, 0, false},     {0.25, 0.25, 0, 60, 1, 0.25, true},
    };
    for (const Case& c : cases) {
        Converter converter(1);
        Triple out{};
        EXPECT_EQ(converter.RGBToHSV(c.r, c.g, c.b, 0.3, out.c0, out.c1, out.c2, converter.alpha),
                  0);
        SCOPED_TRACE(testing::Message() << c.r << " " << c.g << " " << c.b);
        expectNear(out, c.h, c.s, c.v);
        EXPECT_EQ(converter.alpha, c.alphaPassed ? 0.3 : sentinel);
    }
}

TEST(Hsv, FromYCbCrLosesTheAlpha) {
    Converter converter(2);
    Triple out{};
    converter.YCbCrToHSV(0.5, 0.5, 0.7, 0.9, out.c0, out.c1, out.c2, converter.alpha);
    EXPECT_EQ(converter.alpha, 0.0);
    const Triple rgb = converter.toRgb(0.5, 0.5, 0.7);
    EXPECT_EQ(out.c2, rgb.c0) << "red is the largest";
    EXPECT_EQ(out.c1, (rgb.c0 - rgb.c1) / rgb.c0);
}

TEST(BlendPixel, IsNotClamped) {
    ZRPixel pixel;
    double r = 1.0, g = 0.5, b = 0.0;
    pixel.BlendPixel(r, g, b, 0.0, 0.5, 1.0, 25);
    expectNear({r, g, b}, 0.75, 0.5, 0.25);
    pixel.BlendPixel(r, g, b, 0.0, 0.5, 1.0, 300);
    expectNear({r, g, b}, -1.5, 0.5, 2.5);
}

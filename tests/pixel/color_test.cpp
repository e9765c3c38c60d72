// Colours packed into slots, and pixels read back, on the 8-bit RGB layouts.
#include "support/test_canvas.h"

#include <gtest/gtest.h>

#include <array>

namespace {

using Values = std::array<double, 4>;

Values slotOf(ZRDraw& draw, bool selector) {
    Values v{};
    EXPECT_EQ(draw.GetColorRGBA(v[0], v[1], v[2], v[3], selector), 0);
    return v;
}

TEST(ColorSlots, DefaultsAndIndependence) {
    TestCanvas canvas(3, 1, 1);
    EXPECT_EQ(slotOf(canvas.draw(), true), (Values{1, 1, 1, 1}));
    EXPECT_EQ(slotOf(canvas.draw(), false), (Values{0, 0, 0, 0}));
    canvas->SetColorRGBA(1, 0, 0, 1, false);
    EXPECT_EQ(canvas->foreColor, 0xFFFFFFFFU);
    EXPECT_EQ(canvas->backColor, 0xFFFF0000U);
}

TEST(ColorSlots, ComponentsAreTruncatedAndWrap) {
    for (unsigned int code = 1; code <= 6; ++code) {
        TestCanvas canvas(code, 1, 1);
        canvas->SetColorRGBA(0.5, 1.5, -0.1, 0.999, true);
        EXPECT_EQ(slotOf(canvas.draw(), true),
                  (Values{127 / 255.0, 126 / 255.0, 231 / 255.0, code < 5 ? 254 / 255.0 : 1.0}))
            << code;
    }
    // Out of the range of an integer: the processor's indefinite value, the same everywhere.
    TestCanvas canvas(1, 1, 1);
    canvas->SetColorRGBA(1e300, -1e300, 1e10, 0.0, true);
    EXPECT_EQ(canvas->foreColor, 0U);
}

TEST(ColorSlots, InYCbCr) {
    TestCanvas canvas(1, 1, 1);
    canvas->SetColorRGBA(1, 1, 1, 1, true);
    Values v{};
    EXPECT_EQ(canvas->GetColorYCbCr(v[0], v[1], v[2], v[3], true), 0);
    EXPECT_NEAR(v[0], 0.9215, 1e-15);
    EXPECT_NEAR(v[1], 0.5, 1e-15);
    EXPECT_NEAR(v[2], 0.5, 1e-15);
    EXPECT_EQ(v[3], 1.0) << "the alpha of the colour";

    canvas->SetYCbCrMode(cmRec601Full);
    EXPECT_EQ(canvas->SetColorYCbCr(0.5, 0.5, 0.5, 1, true), 0);
    EXPECT_EQ(canvas->foreColor, 0x007F7F7FU) << "with an alpha of 0";
    EXPECT_EQ(canvas->SetColorYCbCr10(512, 512, 512, 1023, false), 0);
    EXPECT_EQ(canvas->backColor, 0x007F7F7FU) << "on a scale of 1024";
    EXPECT_EQ(canvas->SetColorYCbCr8(128, 128, 128, 255, true), 0);
    EXPECT_EQ(canvas->foreColor, 0x00807F80U) << "chroma 128/255 is a little above its zero";
    canvas->SetYCbCrMode(static_cast<cmYCbCr>(9));
    canvas->SetColorYCbCr(1, 1, 1, 1, true);
    EXPECT_EQ(canvas->foreColor, 0U) << "an unknown mode converts to nothing";
}

TEST(PixelReaders, IntegerScales) {
    TestCanvas canvas(1, 1, 1);
    canvas->SetYCbCrMode(cmRec709Full);
    canvas->PutPixel(0, 0, true);
    unsigned char y8, cb8, cr8, a8;
    EXPECT_EQ(canvas->GetPixelYCbCr8(0, 0, y8, cb8, cr8, a8), 0);
    EXPECT_EQ(y8, 255);
    EXPECT_EQ(cb8, 127);
    EXPECT_EQ(a8, 255);
    unsigned int y10, cb10, cr10, a10;
    EXPECT_EQ(canvas->GetPixelYCbCr10(0, 0, y10, cb10, cr10, a10), 0);
    EXPECT_EQ(y10, 1024U) << "full scale is 1024";
    EXPECT_EQ(a10, 1024U);
}

TEST(PixelReaders, BaseFormsRefuseOffTheCanvas) {
    // The root class tests the address where the format classes do not.
    ZRPixel pixel;
    unsigned int memory[4] = {0xFF808080U, 0, 0, 0};
    pixel.SetCanvas(reinterpret_cast<char*>(memory), 1, 4, 16);
    Values c{7, 7, 7, 7};
    EXPECT_EQ(pixel.GetPixelYCbCr(5, 0, c[0], c[1], c[2], c[3]), -1);
    EXPECT_EQ(c, Values{});
    c = {7, 7, 7, 7};
    EXPECT_EQ(pixel.GetPixelHSV(0, -1, c[0], c[1], c[2], c[3]), -1);
    EXPECT_EQ(c, Values{});
    unsigned char c8[4] = {7, 7, 7, 7};
    EXPECT_EQ(pixel.GetPixelYCbCr8(9, 9, c8[0], c8[1], c8[2], c8[3]), -1);
    EXPECT_EQ(c8[0] + c8[1] + c8[2] + c8[3], 0);
    unsigned int c10[4] = {7, 7, 7, 7};
    EXPECT_EQ(pixel.GetPixelYCbCr10(9, 9, c10[0], c10[1], c10[2], c10[3]), -1);
    EXPECT_EQ(c10[0] + c10[1] + c10[2] + c10[3], 0U);

    EXPECT_EQ(pixel.GetPixelHSV(0, 0, c[0], c[1], c[2], c[3]), 0);
    EXPECT_EQ(c, (Values{0.0, 0.0, 128 / 255.0, 1.0})) << "grey has hue 0.0 in the root class";
}

TEST(GetLuma, WeighsRawBytesOnAScaleOf256) {
    struct Row {
        std::vector<unsigned int> modes;
        double r, g, b;
    };
    const Row rows[] = {
        {{2, 1002}, 0.257, 0.504, 0.098},
        {{3, 1003}, 0.213, 0.715, 0.072},
        {{4, 1004}, 0.183, 0.614, 0.062},
        {{5, 6, 7, 8, 1005, 1006, 1007, 1008}, 0.2627, 0.678, 0.0593},
        {{0, 1, 1000, 1001, 9, 1009, 77777}, 0.299, 0.587, 0.114},
    };
    const unsigned char pixel[] = {10, 20, 30, 40};
    // Its R, G and B; code 6 is read in the order of code 5.
    const int bytes[6][3] = {{10, 20, 30}, {20, 30, 40}, {30, 20, 10},
                             {40, 30, 20}, {10, 20, 30}, {10, 20, 30}};
    for (unsigned int code = 1; code <= 6; ++code) {
        TestCanvas canvas(code, 4, 1);
        std::memcpy(canvas.frame(), pixel, 4);
        const auto& [r, g, b] = bytes[code - 1];
        for (const Row& row : rows) {
            for (const unsigned int mode : row.modes) {
                canvas->SetYCbCrMode(static_cast<cmYCbCr>(mode));
                EXPECT_EQ(canvas->GetLuma(0, 0), (row.r * r + row.g * g + row.b * b) / 256)
                    << "code " << code << " mode " << mode;
            }
        }
    }
}

} // namespace

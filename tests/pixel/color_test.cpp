// Colours packed into slots, and pixels read back, on the 8-bit RGB layouts.
#include <gtest/gtest.h>

#include "support/test_canvas.h"

namespace {

struct Values {
    double c0, c1, c2, a;
    bool operator==(const Values&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Values& v) {
    return out << v.c0 << " " << v.c1 << " " << v.c2 << " " << v.a;
}

Values slotOf(ZRDraw& draw, bool selector) {
    Values v{};
    EXPECT_EQ(draw.GetColorRGBA(v.c0, v.c1, v.c2, v.a, selector), 0);
    return v;
}

// The bytes 10, 20, 30, 40 as the first pixel of a canvas, 4 and 2 pixels of zeros behind it.
TestCanvas countingCanvas(unsigned int code) {
    TestCanvas canvas(code, 4, 1);
    const unsigned char bytes[] = {10, 20, 30, 40};
    std::memcpy(canvas.frame(), bytes, 4);
    return canvas;
}

constexpr Values of(int r, int g, int b, int a) {
    return {r / 255.0, g / 255.0, b / 255.0, a / 255.0};
}

} // namespace

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
    EXPECT_EQ(canvas->GetColorYCbCr(v.c0, v.c1, v.c2, v.a, true), 0);
    EXPECT_NEAR(v.c0, 0.9215, 1e-15);
    EXPECT_NEAR(v.c1, 0.5, 1e-15);
    EXPECT_NEAR(v.c2, 0.5, 1e-15);
    EXPECT_EQ(v.a, 1.0) << "the alpha of the colour";

    canvas->SetYCbCrMode(cmRec601Full);
    struct Case {
        const char* name;
        int (*set)(ZRDraw&);
        unsigned int word;
    };
    const Case cases[] = {
        {"doubles", [](ZRDraw& d) { return d.SetColorYCbCr(0.5, 0.5, 0.5, 1, true); }, 0x007F7F7FU},
        {"10 bits on a scale of 1024",
         [](ZRDraw& d) { return d.SetColorYCbCr10(512, 512, 512, 1023, true); }, 0x007F7F7FU},
        {"8 bits on a scale of 255", // chroma 128/255 is a little above its zero
         [](ZRDraw& d) { return d.SetColorYCbCr8(128, 128, 128, 255, true); }, 0x00807F80U},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.set(canvas.draw()), 0);
        EXPECT_EQ(canvas->foreColor, c.word) << c.name << ", alpha 0";
    }
    canvas->SetYCbCrMode(static_cast<cmYCbCr>(9));
    canvas->SetColorYCbCr(1, 1, 1, 1, true);
    EXPECT_EQ(canvas->foreColor, 0U) << "an unknown mode converts to nothing";
}

TEST(PixelReaders, ByteOrders) {
    const Values expected[] = {of(10, 20, 30, 40), of(20, 30, 40, 10),  of(30, 20, 10, 40),
                               of(40, 30, 20, 10), of(10, 20, 30, 255), of(30, 20, 10, 255)};
    for (unsigned int code = 1; code <= 6; ++code) {
        TestCanvas canvas = countingCanvas(code);
        Values v{};
        EXPECT_EQ(canvas->GetPixelRGBA(0, 0, v.c0, v.c1, v.c2, v.a), 0);
        EXPECT_EQ(v, expected[code - 1]) << code;

        Values fromRgb{}, fromPixel{};
        canvas->RGBToYCbCr(v.c0, v.c1, v.c2, v.a, fromRgb.c0, fromRgb.c1, fromRgb.c2, fromRgb.a);
        fromRgb.a = v.a;
        EXPECT_EQ(
            canvas->GetPixelYCbCr(0, 0, fromPixel.c0, fromPixel.c1, fromPixel.c2, fromPixel.a), 0);
        EXPECT_EQ(fromPixel, fromRgb) << code;
    }
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
    double h = 7, s = 7, v = 7, a = 7;
    EXPECT_EQ(pixel.GetPixelYCbCr(5, 0, h, s, v, a), -1);
    EXPECT_EQ(h + s + v + a, 0.0);
    h = s = v = a = 7;
    EXPECT_EQ(pixel.GetPixelHSV(0, -1, h, s, v, a), -1);
    EXPECT_EQ(h + s + v + a, 0.0);
    unsigned char c8[4] = {7, 7, 7, 7};
    EXPECT_EQ(pixel.GetPixelYCbCr8(9, 9, c8[0], c8[1], c8[2], c8[3]), -1);
    EXPECT_EQ(c8[0] + c8[1] + c8[2] + c8[3], 0);
    unsigned int c10[4] = {7, 7, 7, 7};
    EXPECT_EQ(pixel.GetPixelYCbCr10(9, 9, c10[0], c10[1], c10[2], c10[3]), -1);
    EXPECT_EQ(c10[0] + c10[1] + c10[2] + c10[3], 0U);

    EXPECT_EQ(pixel.GetPixelHSV(0, 0, h, s, v, a), 0);
    EXPECT_EQ(h, 0.0) << "grey has hue 0.0 in the root class";
    EXPECT_EQ(v, 128 / 255.0);
    EXPECT_EQ(a, 1.0);
}

TEST(PixelReaders, HsvOfTheFormatClasses) {
    for (const unsigned int code : {1U, 6U}) {
        TestCanvas canvas(code, 2, 1);
        double h = 7, s = 7, v = 7, a = 7;
        EXPECT_EQ(canvas->GetPixelHSV(0, 0, h, s, v, a), 0);
        EXPECT_EQ(h, -1.0) << "black has no hue";
        EXPECT_EQ(s + v, 0.0);
        EXPECT_EQ(a, code == 1 ? 0.0 : 1.0) << "the stored alpha";
        EXPECT_EQ(canvas->GetPixelHSV(9, 9, h, s, v, a), 0) << "never refuses";
        canvas->SetColorRGBA(0, 1, 0, 1, true);
        canvas->PutPixel(1, 0, true);
        canvas->GetPixelHSV(1, 0, h, s, v, a);
        EXPECT_EQ(h, 120.0);
    }
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
    // R, G and B as bytes of the counting pixel; code 6 is read in the order of code 5.
    const int bytes[6][3] = {{10, 20, 30}, {20, 30, 40}, {30, 20, 10},
                             {40, 30, 20}, {10, 20, 30}, {10, 20, 30}};
    for (unsigned int code = 1; code <= 6; ++code) {
        TestCanvas canvas = countingCanvas(code);
        const auto& [r, g, b] = bytes[code - 1];
        for (const Row& row : rows) {
            for (const unsigned int mode : row.modes) {
                canvas->SetYCbCrMode(static_cast<cmYCbCr>(mode));
                EXPECT_EQ(canvas->GetLuma(0, 0), (row.r * r + row.g * g + row.b * b) / 256)
                    << "code " << code << " mode " << mode;
            }
        }
    }
    TestCanvas white(1, 1, 1);
    white->PutPixel(0, 0, true);
    EXPECT_DOUBLE_EQ(white->GetLuma(0, 0), 0.99609375);
}

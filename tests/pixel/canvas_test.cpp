// Where pixels stand on a canvas, every way in which one is written, and colours packed into slots
// and read back.
#include "support/test_canvas.h"
#include "zrdraw/formats.h"

#include <climits>

#include <array>

namespace {

using Bytes = std::vector<unsigned char>;

TEST(Canvas, AddressesAndTheEdgeRule) {
    struct Case {
        int x, y, column, line; // a column of -1 for a refusal
    };
    const Case cases[] = {{0, 0, 0, 0},   {4, 2, 4, 2},  {5, 0, 4, 0},  {0, 3, 0, 2},
                          {5, 3, 4, 2},   {6, 0, -1, 0}, {0, 4, -1, 0}, {-1, 0, -1, 0},
                          {0, -1, -1, 0}, {5, 4, -1, 0}, {6, 3, -1, 0}};
    for (const unsigned int code : {1U, 5U}) {
        TestCanvas canvas(code, 5, 3);
        const int pixelBytes = code == 1 ? 4 : 3;
        for (const Case& c : cases) {
            SCOPED_TRACE(testing::Message() << code << " at " << c.x << "," << c.y);
            const bool legal = c.column >= 0;
            const int offset = c.line * static_cast<int>(canvas->pitch) + c.column * pixelBytes;
            if (code == 1 || c.line == 0)
                EXPECT_EQ(canvas->GetPixel(c.x, c.y), legal ? canvas.frame() + offset : nullptr);
            EXPECT_EQ(canvas->PutPixel(c.x, c.y, true), legal ? 0 : -1);
        }
        EXPECT_EQ(canvas->PutPixel(INT_MAX, 0, true) + canvas->PutPixel(INT_MIN, INT_MAX, true),
                  -2);
        EXPECT_TRUE(canvas.guardsIntact());
        EXPECT_EQ(canvas.art(), "#...#\n.....\n#...#\n");
    }
    TestCanvas canvas(1, 2, 3);
    canvas->pitch = 10;
    EXPECT_EQ(canvas->GetPixel(0, 1), canvas.frame() + 8) << "lines of words start at one";
    EXPECT_EQ(canvas->GetPixel(1, 2), canvas.frame() + 24);
}

TEST(Canvas, NoCanvasRefusesEverything) {
    char frame[16];
    ZRDraw* draw = nullptr;
    for (const auto& [memory, width, height] :
         {std::tuple{static_cast<char*>(nullptr), 2, 2}, {frame, 0, 2}, {frame, 2, 0}}) {
        GetDraw(1, width, height, 0, memory, draw);
        EXPECT_EQ(draw->GetPixel(0, 0), nullptr);
        EXPECT_EQ(draw->PutPixel(0, 0, false), -1);
        double r = 7, g = 7, b = 7, a = 7;
        EXPECT_EQ(draw->GetPixelRGBA(0, 0, r, g, b, a), -1);
        EXPECT_EQ(r + g + b + a, 0.0);
        EXPECT_EQ(draw->LineHoriz(0, 0, 1) + draw->LineVert(0, 0, 1) + draw->Fill(0, 0, 0.0), -3);
        ReleaseDraw(draw);
    }
}

TEST(PutPixel, OnlyPlainForegroundWritesHaveThreeBytes) {
    struct Case {
        bool selector, additive;
        double transparency;
        Bytes pixels;
        const char* why;
    };
    const Bytes asAWord{0, 0, 0, 0, 255, 255, 255, 255, 0}, plain{0, 0, 0, 255, 255, 255, 0, 0, 0};
    const Case cases[] = {
        {false, false, 0.0, asAWord, "background"},
        {true, true, 0.0, asAWord, "additive"},
        {true, false, 1.0, asAWord, "transparent"},
        {true, false, 0.0, plain, "a transparency of 0.0 is the plain write"},
    };
    for (const Case& c : cases) {
        TestCanvas canvas(5, 4, 1);
        canvas->foreColor = canvas->backColor = 0xFFFFFFFFU;
        canvas->SetAlphaAdditive(c.additive);
        canvas->SetTransparency(true);
        canvas->SetTransparency(c.transparency, true);
        canvas->PutPixel(1, 0, c.selector);
        EXPECT_EQ(canvas.bytesAt(0, 0, 9), c.pixels) << c.why;
    }
}

TEST(PutPixel, TransparencyBlendsTheWordAsOneNumber) {
    struct Case {
        unsigned int under, color;
        double transparency;
        unsigned int result;
    };
    const Case cases[] = {
        {0x00000000U, 0xFF000000U, 0.5, 0x7F800000U}, // the carry runs into the next channel
        {0x12345678U, 0xFFFFFFFFU, 1.0, 0xFFFFFFFFU},
        {0xFFFFFFFFU, 0x00000000U, 0.25, 0xBFFFFFFFU},
        {0x00000003U, 0x00000000U, 0.5, 0x00000001U}, // truncated
    };
    for (const bool selector : {true, false}) {
        for (const Case& c : cases) {
            TestCanvas canvas(1, 1, 1);
            std::memcpy(canvas.frame(), &c.under, 4);
            (selector ? canvas->foreColor : canvas->backColor) = c.color;
            canvas->SetTransparency(c.transparency, selector);
            canvas->SetTransparency(true);
            canvas->PutPixel(0, 0, selector);
            unsigned int word;
            std::memcpy(&word, canvas.frame(), 4);
            EXPECT_EQ(word, c.result);
        }
    }
}

TEST(PutPixel, AdditiveSumsWrapAndWinOverTransparency) {
    TestCanvas canvas(1, 1, 1);
    const auto expectSum = [&](const Bytes& color, bool selector, const Bytes& sum) {
        std::memcpy(&canvas->foreColor, color.data(), 4);
        std::memcpy(canvas.frame(), Bytes{100, 9, 100, 7}.data(), 4);
        canvas->PutPixel(0, 0, selector);
        EXPECT_EQ(canvas.bytesAt(0, 0, 4), sum);
    };
    canvas->SetAlphaAdditive(true);
    canvas->SetTransparency(true);
    canvas->SetTransparency(0.5, true);
    expectSum({200, 0, 100, 255}, true, {44, 9, 200, 255});
    expectSum({200, 0, 100, 51}, true, {140, 9, 120, 255}); // scaled by alpha 0.2
    canvas->SetTransparency(false);
    expectSum({200, 0, 100, 51}, false, {0, 0, 0, 0}); // the background never adds
}

TEST(Canvas, TransparencyIsClampedAndDoesNotSwitchOn) {
    TestCanvas canvas(1, 1, 1);
    EXPECT_EQ(canvas->SetTransparency(2.0, true) + canvas->SetTransparency(-1.0, false), 0);
    EXPECT_EQ(canvas->foreTransparency, 1.0);
    EXPECT_EQ(canvas->backTransparency, 0.0);
    EXPECT_FALSE(canvas->GetTransparency());
}

TEST(Canvas, IsRgbType) {
    ZRPixel pixel;
    for (unsigned int code = 0; code < 10100; ++code) {
        pixel.pixelType = code;
        const bool yCbCr = (code >= 10 && code <= 19) || (code >= 33 && code <= 36) ||
                           code == 10000 || code == 10001;
        ASSERT_EQ(pixel.IsRgbType(), yCbCr ? 0 : 1) << code;
    }
    pixel.pixelType = ptNone;
    EXPECT_EQ(pixel.IsRgbType(), 0);
}

TEST(Canvas, SetPixelTakesTheColourModelOfTheLayout) {
    TestCanvas canvas(1, 1, 1);
    EXPECT_EQ(canvas->SetPixel(0, 0, 1.0, 0.0, 0.0, 1.0, false), 0);
    EXPECT_EQ(canvas.bytesAt(0, 0, 4), (Bytes{255, 0, 0, 255}));
    EXPECT_EQ(canvas->backColor, 0xFF0000FFU) << "the slot keeps the colour";
    canvas->pixelType = 19;
    canvas->SetYCbCrMode(cmRec601Full);
    canvas->SetPixel(0, 0, 1.0, 0.5, 0.5, 1.0, true);
    EXPECT_EQ(canvas.bytesAt(0, 0, 4), (Bytes{255, 255, 255, 0})) << "YCbCr, its alpha lost";
    EXPECT_EQ(canvas->SetPixel(9, 9, 0, 0, 0, 0, true), -1);
}

TEST(Canvas, PercentIsAFractionOfOne) {
    TestCanvas canvas(1, 9, 5);
    EXPECT_EQ(canvas->PercentX(0.5), 4);
    EXPECT_EQ(canvas->PercentY(1.5), 7);
    EXPECT_EQ(canvas->PercentX(-0.5), -4);
}

using Values = std::array<double, 4>;

Values slotOf(ZRDraw& draw, bool selector) {
    Values v{};
    EXPECT_EQ(draw.GetColorRGBA(v[0], v[1], v[2], v[3], selector), 0);
    return v;
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
    std::array<unsigned char, 4> c8{};
    EXPECT_EQ(canvas->GetPixelYCbCr8(0, 0, c8[0], c8[1], c8[2], c8[3]), 0);
    EXPECT_EQ(c8, (std::array<unsigned char, 4>{255, 127, 127, 255}));
    std::array<unsigned int, 4> c10{};
    EXPECT_EQ(canvas->GetPixelYCbCr10(0, 0, c10[0], c10[1], c10[2], c10[3]), 0);
    EXPECT_EQ(c10, (std::array{1024U, 512U, 512U, 1024U})) << "full scale is 1024";
}

TEST(PixelReaders, BaseFormsRefuseOffTheCanvas) {
    // The root class tests the address where the format classes do not.
    ZRPixel pixel;
    unsigned int memory[4] = {0xFF808080U, 0, 0, 0};
    pixel.SetCanvas(reinterpret_cast<char*>(memory), 1, 4, 16);
    const auto expectZeros = [&](auto reader, auto... c) {
        EXPECT_EQ((pixel.*reader)(9, -1, c...), -1);
        EXPECT_EQ((c + ...), 0);
    };
    constexpr unsigned char seven = 7;
    expectZeros(&ZRPixel::GetPixelYCbCr, 7.0, 7.0, 7.0, 7.0);
    expectZeros(&ZRPixel::GetPixelHSV, 7.0, 7.0, 7.0, 7.0);
    expectZeros(&ZRPixel::GetPixelYCbCr8, seven, seven, seven, seven);
    expectZeros(&ZRPixel::GetPixelYCbCr10, 7U, 7U, 7U, 7U);
    Values c;
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

// What the format classes make of a canvas's size, pitch and mode, of the code they are given and
// of colours.
#include "support/guarded_canvas.h"

#include <tuple>

namespace {

constexpr Make signedSizes[] = {make<CDrawYCbCrYUYV>, make<CDrawYCbCrYCbCr16>,
                                make<CDrawYCbCrYCbCrA16>, make<CDrawUV8>, make<CDrawUV16>};

TEST(FormatCanvas, TheWidthForcesTheMatrixMode) {
    char frame[16];
    for (const unsigned int from : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 9U, 1000U, 1001U, 1002U,
                                    1003U, 1004U, 1005U, 1008U, 0xFFFFFFFFU}) {
        const auto modeAt = [&](Make makeDraw, int width) {
            const auto draw = makeDraw(11);
            draw->SetYCbCrMode(static_cast<cmYCbCr>(from));
            EXPECT_EQ(draw->SetCanvas(frame, 1, width, 0), 0);
            return static_cast<unsigned int>(draw->yCbCrMode);
        };
        for (const Make makeDraw : signedSizes) {
            EXPECT_EQ(modeAt(makeDraw, 720), from == 2 ? 2U : 1U) << from;
            EXPECT_EQ(modeAt(makeDraw, 721), from == 4 ? 4U : 3U) << from;
        }
        EXPECT_EQ(modeAt(make<CDrawYCbCr10>, 720), 1U) << from;
        EXPECT_EQ(modeAt(make<CDrawYCbCr10>, 721), 3U) << from;
        EXPECT_EQ(modeAt(make<CDrawRGB48>, 721), from) << "other classes force none";
    }
}

TEST(FormatCanvas, PitchAndNaturalLine) {
    struct Case {
        Make make;
        unsigned int code;
        int width, pitch;
        unsigned int stored, natural;
    };
    const Case cases[] = {{make<CDrawRGBA32>, 1, 2, 4, 8, 8},
                          {make<CDrawRGBA32>, 1, 2, -32, 32, 8},
                          {make<CDrawRGB24>, 6, 5, 14, 15, 15},
                          {make<CDrawYCbCrYUYV>, 11, 6, 11, 12, 12},
                          {make<CDrawYCbCrYUYV>, 12, 6, 13, 13, 12},
                          {make<CDrawYCbCrYUYV>, 13, 6, -100, 0xFFFFFF9C, 12},
                          {make<CDrawYCbCr10>, 14, 1920, 5119, 5120, 5120},
                          {make<CDrawYCbCr10>, 14, 1920, 6000, 6000, 5120},
                          {make<CDrawYCbCr10>, 16, 49, 0, 256, 256},
                          {make<CDrawYCbCr10>, 14, 48, -5, 5, 128},
                          {make<CDrawRGB30DPX>, 20, 3, 5, 5, 12},
                          {make<CDrawRGB48>, 31, 3, 17, 18, 18},
                          {make<CDrawRGBHalf48>, 37, 3, -40, 40, 18},
                          {make<CDrawARGB64>, 32, 3, 23, 24, 24},
                          {make<CDrawRGBAHalf>, 38, 3, 23, 24, 24},
                          {make<CDrawBayer>, 28, 1920, 0, 2880, 2880},
                          {make<CDrawBayer>, 24, 3, 3, 3, 4},
                          {make<CDrawYCbCrYCbCr16>, 33, 3, 17, 18, 6},
                          {make<CDrawYCbCrYCbCr16>, 33, 3, 19, 19, 6},
                          {make<CDrawYCbCrYCbCrA16>, 34, 3, 0, 24, 6},
                          {make<CDrawUV8>, 10000, 3, 5, 6, 6},
                          {make<CDrawUV16>, 10001, 3, 11, 12, 6}};
    char frame[16];
    for (const Case& c : cases) {
        const auto draw = c.make(c.code);
        EXPECT_EQ(draw->SetCanvas(frame, 2, c.width, c.pitch), 0);
        EXPECT_EQ(draw->pitch, c.stored) << c.code << " pitch " << c.pitch;
        EXPECT_EQ(draw->GetPitch(), c.natural) << c.code;
    }
}

TEST(FormatCanvas, NegativeSizesAreKeptOrFolded) {
    char frame[1024] = {};
    for (const Make makeDraw : signedSizes) {
        const auto draw = makeDraw(10000);
        draw->SetCanvas(frame, -4, 6, 0);
        EXPECT_EQ(draw->height, 0xFFFFFFFCU);
        EXPECT_FALSE(draw->flipped);
        EXPECT_EQ(draw->GetPixel(0, 0), nullptr);
        EXPECT_EQ(draw->PutPixel(0, 0, true), -1);
        draw->SetCanvas(frame, 4, -6, 0);
        EXPECT_EQ(draw->width, 0xFFFFFFFAU);
        EXPECT_EQ(draw->PutPixel(0, 0, true), -1);
    }
    for (const Make makeDraw : {make<CDrawYCbCr10>, make<CDrawBayer>, make<CDrawRGB48>,
                                make<CDrawRGBA32>, make<CDrawRGB24>}) {
        const auto draw = makeDraw(14);
        draw->SetCanvas(frame, -4, -6, 0);
        EXPECT_EQ(draw->height, 4U);
        EXPECT_EQ(draw->width, 6U);
        EXPECT_EQ(draw->flipped, makeDraw != Make{make<CDrawYCbCr10>});
        EXPECT_EQ(draw->GetPixel(0, 0), frame);
        EXPECT_EQ(draw->PutPixel(0, 0, true), 0);
        draw->SetCanvas(frame, -2147483647 - 1, 4, 0);
        EXPECT_EQ(draw->GetPixel(0, 0), nullptr) << "negative as a signed number";
        EXPECT_EQ(draw->PutPixel(0, 0, true), -1);
    }
}

TEST(FormatCanvas, ConstructorsReplaceCodesThatAreNotTheirs) {
    EXPECT_EQ(make<CDrawYCbCrYUYV>(13)->pixelType, 13U);
    EXPECT_EQ(make<CDrawYCbCrYUYV>(14)->pixelType, 11U);
    EXPECT_EQ(make<CDrawYCbCrYUYV>(0)->pixelType, 11U);
    EXPECT_EQ(make<CDrawYCbCr10>(16)->pixelType, 16U);
    EXPECT_EQ(make<CDrawYCbCr10>(17)->pixelType, 14U);
    EXPECT_EQ(make<CDrawYCbCrYCbCr16>(33)->pixelType, 1U) << "and so counts as RGB";
    EXPECT_EQ(make<CDrawYCbCrYCbCrA16>(34)->pixelType, 1U);
    for (const Make makeDraw : signedSizes)
        EXPECT_EQ(makeDraw(33)->yCbCrMode, cmRec709);
}

TEST(FormatColor, PackingOf422) {
    struct Case {
        unsigned int code, fractions, samples, overflow;
    };
    // Words of (1.0, 0.5, 0.5), which is 251, 128, 127; of (200, 100, 50); and of (256, 2, 3),
    // whose luma runs into its neighbour.
    const Case cases[] = {{10, 0x7FFB80FB, 0x32C864C8, 0x04000300},
                          {11, 0xFB7FFB80, 0xC832C864, 0x00040002},
                          {12, 0x80FB7FFB, 0x64C832C8, 0x03000400},
                          {13, 0xFB80FB7F, 0xC864C832, 0x00030003}};
    for (const Case& c : cases) {
        for (const bool selector : {true, false}) {
            SCOPED_TRACE(c.code);
            CDrawYCbCrYUYV draw(c.code);
            const unsigned int& word = selector ? draw.foreWord : draw.backWord;
            const unsigned int& other = selector ? draw.backWord : draw.foreWord;
            const unsigned int before = other;
            EXPECT_EQ(draw.SetColorYCbCr(1.0, 0.5, 0.5, 0.3, selector), 0);
            EXPECT_EQ(word, c.fractions);
            draw.SetColorYCbCr8(200, 100, 50, 9, selector);
            EXPECT_EQ(word, c.samples);
            draw.SetColorYCbCr10(0, 0, 0, 0, selector);
            draw.SetColorYCbCr10(803, 403, 203, 9, selector);
            EXPECT_EQ(word, c.samples);
            draw.SetColorYCbCr10(1024, 8, 12, 0, selector);
            EXPECT_EQ(word, c.overflow);
            EXPECT_EQ(other, before);
            EXPECT_EQ(draw.foreColor, 0xFFFFFFFFU) << "the base slots stay out of it";
        }
    }
}

TEST(FormatColor, Of422BlackIsScaledTwiceAndTheMembersAreRead) {
    CDrawYCbCrYUYV draw(11);
    draw.SetColorRGBA(0.0, 0.0, 0.0, 0.0, true);
    EXPECT_EQ(draw.foreWord, 0x1E7F1E80U) << "luma 30";
    draw.yOffset = 1, draw.yScale = 2, draw.cbOffset = 3, draw.cbScale = 4, draw.crOffset = 5,
    draw.crScale = 6;
    draw.SetColorYCbCr(1.0, 1.0, 1.0, 0.0, true);
    EXPECT_EQ(draw.foreWord, 0x030B0307U);
}

TEST(FormatColor, PackingOfV210) {
    CDrawYCbCr10 draw(14);
    draw.SetColorYCbCr(1.0, 0.5, 0.25, 0.7, true);
    EXPECT_EQ(draw.foreWord, 1023U | 511U << 10 | 255U << 20);
    draw.SetColorYCbCr10(1024 + 1, 2, 3, 9, false);
    EXPECT_EQ(draw.backWord, 1U | 3U << 10 | 3U << 20) << "unmasked, and so carried into Cb";
    draw.SetColorYCbCr8(255, 128, 0, 9, true);
    EXPECT_EQ(draw.foreWord & 0x3FFFFFFF, 1023U | 513U << 10) << "by way of the fractions";
    draw.SetYCbCrMode(cmRec709);
    draw.SetColorRGBA(1.0, 1.0, 1.0, 1.0, true);
    EXPECT_EQ(draw.foreWord, 942U | 511U << 10 | 511U << 20);
}

TEST(FormatColor, BayerDoesNotReadBack) {
    CDrawBayer draw(22);
    draw.SetColorRGBA(1.5, -0.1, 0.5, 1.0, true);
    draw.SetColorRGBA(1.0, 0.0, 0.2, 0.4, false);
    EXPECT_EQ(std::vector<int>(draw.bayerForeground, draw.bayerForeground + 4),
              (std::vector{126, 231, 127, 255}));
    EXPECT_EQ(std::vector<int>(draw.bayerBackground, draw.bayerBackground + 4),
              (std::vector{255, 0, 51, 102}));
    double r, g, b, a;
    draw.GetColorRGBA(r, g, b, a, true);
    EXPECT_EQ(std::tuple(r, g, b, a), std::tuple(1.0, 1.0, 1.0, 1.0));
    draw.GetColorRGBA(r, g, b, a, false);
    EXPECT_EQ(std::tuple(r, g, b, a), std::tuple(0.0, 0.0, 0.0, 0.0));
}

TEST(FormatColor, ComponentsOnAScaleOf65536) {
    const auto expectColors = [](auto&& draw) {
        const auto valuesOf = [](const auto& c) { return std::tuple(c.first, c.second, c.third); };
        draw.SetColorYCbCr(1.0, 0.25, 0.75, 0.5, true);
        draw.SetColorYCbCr10(512, 1, 1023, 0, false);
        EXPECT_EQ(valuesOf(draw.yccForeground), std::tuple(65536U, 16384U, 49152U));
        EXPECT_EQ(valuesOf(draw.yccBackground), std::tuple(32768U, 64U, 65472U));
        draw.SetYCbCrMode(cmRec601Full);
        draw.SetColorRGBA(1.0, 0.0, 0.0, 1.0, false);
        EXPECT_EQ(valuesOf(draw.yccForeground), std::tuple(65536U, 16384U, 49152U));
        EXPECT_EQ(valuesOf(draw.yccBackground), std::tuple(19595U, 21495U, 66256U));
    };
    expectColors(CDrawYCbCrYCbCr16(33));
    expectColors(CDrawUV8(10000));
    expectColors(CDrawUV16(10001));
    CDrawYCbCrYCbCrA16 withAlpha(34);
    expectColors(withAlpha);
    EXPECT_EQ(withAlpha.yccForeground.fourth, 49152U) << "Cr once more";
    EXPECT_EQ(withAlpha.yccBackground.fourth, 66256U);
}

} // namespace

// What the format classes make of a canvas's size, pitch and mode, and of the code they are given.
#include "support/guarded_canvas.h"

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
                          {make<CDrawRGBA32>, 1, -2, 0, 8, 8},
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

} // namespace

// What the format classes make of a canvas's size, pitch and mode, and of the code they are given.
#include "support/guarded_canvas.h"

namespace {

constexpr Make signedSizes[] = {make<CDrawYCbCrYUYV>, make<CDrawYCbCrYCbCr16>,
                                make<CDrawYCbCrYCbCrA16>, make<CDrawUV8>, make<CDrawUV16>};

} // namespace

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
    const Case cases[] = {
        {make<CDrawYCbCrYUYV>, 10, 5, 0, 10, 10},
        {make<CDrawYCbCrYUYV>, 11, 6, 11, 12, 12},
        {make<CDrawYCbCrYUYV>, 12, 6, 13, 13, 12},
        {make<CDrawYCbCrYUYV>, 13, 6, -100, 0xFFFFFF9C, 12},
        {make<CDrawYCbCr10>, 14, 1920, 0, 5120, 5120},
        {make<CDrawYCbCr10>, 14, 1920, 5119, 5120, 5120},
        {make<CDrawYCbCr10>, 14, 1920, 6000, 6000, 5120},
        {make<CDrawYCbCr10>, 15, 48, 0, 128, 128},
        {make<CDrawYCbCr10>, 16, 49, 0, 256, 256},
        {make<CDrawYCbCr10>, 14, 48, -5, 5, 128},
        {make<CDrawRGB30DPX>, 20, 3, 0, 12, 12},
        {make<CDrawRGB30DPX>, 20, 3, 5, 5, 12},
        {make<CDrawRGB48>, 31, 3, 17, 18, 18},
        {make<CDrawRGBHalf48>, 37, 3, -40, 40, 18},
        {make<CDrawARGB64>, 32, 3, 23, 24, 24},
        {make<CDrawRGBAHalf>, 38, 3, 23, 24, 24},
        {make<CDrawBayer>, 21, 1920, 0, 2880, 2880},
        {make<CDrawBayer>, 28, 3, 0, 4, 4},
        {make<CDrawBayer>, 24, 3, 3, 3, 4},
        {make<CDrawYCbCrYCbCr16>, 33, 3, 17, 18, 6},
        {make<CDrawYCbCrYCbCr16>, 33, 3, 19, 19, 6},
        {make<CDrawYCbCrYCbCrA16>, 34, 3, 0, 24, 6},
        {make<CDrawUV8>, 10000, 3, 5, 6, 6},
        {make<CDrawUV16>, 10001, 3, 11, 12, 6},
    };
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
    struct Folding {
        Make make;
        bool flips;
    };
    for (const Folding& f :
         {Folding{make<CDrawYCbCr10>, false}, {make<CDrawBayer>, true}, {make<CDrawRGB48>, true}}) {
        const auto draw = f.make(14);
        draw->SetCanvas(frame, -4, -6, 0);
        EXPECT_EQ(draw->height, 4U);
        EXPECT_EQ(draw->width, 6U);
        EXPECT_EQ(draw->flipped, f.flips);
        EXPECT_EQ(draw->GetPixel(0, 0), frame);
        EXPECT_EQ(draw->PutPixel(0, 0, true), 0);
    }
}

TEST(FormatCanvas, ConstructorsKeepOrReplaceTheCode) {
    struct Case {
        Make make;
        unsigned int code, kept;
    };
    const Case cases[] = {
        {make<CDrawYCbCrYUYV>, 10, 10},   {make<CDrawYCbCrYUYV>, 11, 11},
        {make<CDrawYCbCrYUYV>, 12, 12},   {make<CDrawYCbCrYUYV>, 13, 13},
        {make<CDrawYCbCrYUYV>, 14, 11},   {make<CDrawYCbCrYUYV>, 0, 11},
        {make<CDrawYCbCr10>, 14, 14},     {make<CDrawYCbCr10>, 15, 15},
        {make<CDrawYCbCr10>, 16, 16},     {make<CDrawYCbCr10>, 17, 14},
        {make<CDrawYCbCrYCbCr16>, 33, 1}, {make<CDrawYCbCrYCbCrA16>, 34, 1},
        {make<CDrawUV8>, 10000, 10000},   {make<CDrawUV16>, 10001, 10001},
    };
    for (const Case& c : cases)
        EXPECT_EQ(c.make(c.code)->pixelType, c.kept) << c.code;
    for (const Make makeDraw : signedSizes)
        EXPECT_EQ(makeDraw(33)->yCbCrMode, cmRec709);
    EXPECT_EQ(make<CDrawYCbCrYCbCr16>(33)->IsRgbType(), 1);
    EXPECT_EQ(make<CDrawYCbCrYCbCrA16>(34)->IsRgbType(), 1);
}

TEST(FormatCanvas, MemberScales) {
    using Six = std::vector<double>;
    const auto scalesOf = [](const auto& d) {
        return Six{d.yOffset, d.yScale, d.cbOffset, d.cbScale, d.crOffset, d.crScale};
    };
    EXPECT_EQ(scalesOf(CDrawYCbCrYUYV(11)), (Six{16, 235, 19, 219, 18, 219}));
    EXPECT_EQ(scalesOf(CDrawYCbCr10(14)), (Six{64, 940, 64, 876, 64, 876}));
    EXPECT_EQ(scalesOf(CDrawYCbCrYCbCr16(33)), (Six{4096, 60160, 4864, 56064, 4608, 56064}));
    EXPECT_EQ(scalesOf(CDrawYCbCrYCbCrA16(34)), (Six{4096, 62275, 4864, 56064, 4608, 56064}));
    EXPECT_EQ(scalesOf(CDrawUV8(10000)), (Six{16, 235, 19, 219, 18, 219}));
    EXPECT_EQ(scalesOf(CDrawUV16(10001)), (Six{4096, 60160, 4096, 56064, 4096, 56064}));
    EXPECT_EQ(CDrawYCbCr10(14).foreWord, 0x3AC1F63AC1F6U);
    EXPECT_EQ(CDrawYCbCr10(14).backWord, 0x401F60401F6U);
}

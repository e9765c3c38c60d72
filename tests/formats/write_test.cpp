// Every byte that PutPixel of the format classes writes, and every one that it leaves.
#include "support/guarded_canvas.h"
#include "zrdraw/v210.h"

#include <array>

namespace {

constexpr unsigned char fills[] = {0x00, 0xFF, 0xA5};

// Switches that must not matter on the layouts that always write opaquely.
void switchEverythingOn(GuardedCanvas& canvas) {
    for (const bool selector : {true, false})
        canvas->SetTransparency(0.5, selector);
    canvas->SetTransparency(true);
    canvas->SetAlphaAdditive(true);
}

// Beyond the edges, one past which is pulled back.
void expectRefusals(GuardedCanvas& canvas) {
    const int right = static_cast<int>(canvas->width) + 1;
    const int below = static_cast<int>(canvas->height) + 1;
    for (const auto& [x, y] : {std::pair{right, 0}, {0, below}, {-1, 0}, {0, -1}}) {
        EXPECT_EQ(canvas->PutPixel(x, y, true), -1);
        EXPECT_TRUE(canvas.wroteNothing());
    }
}

// Where a pixel asked for on a canvas of 3 x 2 lands; a column of -1 for a refusal.
struct Target {
    int x, y, column, line;
};
constexpr Target targets[] = {{0, 0, 0, 0},   {1, 0, 1, 0},  {2, 1, 2, 1},  {3, 0, 2, 0},
                              {0, 2, 0, 1},   {3, 2, 2, 1},  {4, 0, -1, 0}, {0, 3, -1, 0},
                              {-1, 0, -1, 0}, {0, -1, -1, 0}};

constexpr double per65536 = 1.0 / 65536;

void setYCbCr(ZRDraw& draw) {
    draw.SetColorYCbCr(0xABCD * per65536, 0x1234 * per65536, 0x5678 * per65536, 0.9, true);
    draw.SetColorYCbCr(1.0, 0x0203 * per65536, 0x0405 * per65536, 0.9, false);
}

void setHalfBytes(ZRDraw& draw) {
    draw.foreColor = 0xFF018040U;
    draw.backColor = 0x00FF0001U;
}

// Of which the low 16 bits are stored.
template <typename Format>
void setMembers(ZRDraw& base) {
    auto& draw = dynamic_cast<Format&>(base);
    draw.foreR = 0x11221, draw.foreG = 0x12233, draw.foreB = 0x3344;
    draw.backR = 0x5566, draw.backG = 0x6677, draw.backB = 0xFFFF7788;
    if constexpr (requires { draw.foreA; })
        draw.foreA = 0x199AA, draw.backA = 0xBBCC;
}

void leave(ZRDraw&) {}

TEST(FormatWrite, WholePixels) {
    struct Case {
        Make make;
        unsigned int code;
        void (*setColors)(ZRDraw&);
        int stride;
        const char *foreground, *background;
    };
    const Case cases[] = {
        {make<CDrawRGB48>, 31, setMembers<CDrawRGB48>, 6, "21 12 33 22 44 33", "66 55 77 66 88 77"},
        {make<CDrawARGB64>, 32, setMembers<CDrawARGB64>, 8, "AA 99 21 12 33 22 44 33",
         "CC BB 66 55 77 66 88 77"},
        {make<CDrawRGBHalf48>, 37, setMembers<CDrawRGBHalf48>, 6, "21 12 33 22 44 33",
         "66 55 77 66 88 77"},
        {make<CDrawRGBAHalf>, 38, leave, 8, "00 3C 00 3C 00 3C 00 3C", "00 00 00 00 00 00 00 00"},
        // 64/255, 128/255, 1/255 and 1 as halves.
        {make<CDrawRGBAHalf>, 38, setHalfBytes, 8, "04 34 04 38 04 1C 00 3C",
         "04 1C 00 00 00 3C 00 00"},
        {make<CDrawYCbCrYCbCr16>, 33, leave, 6, "00 EB 00 80 00 80", "00 10 00 80 00 80"},
        {make<CDrawYCbCrYCbCr16>, 33, setYCbCr, 6, "CD AB 34 12 78 56", "00 00 03 02 05 04"},
        // Eight bytes every six.
        {make<CDrawYCbCrYCbCrA16>, 34, leave, 6, "00 EB 00 80 00 80 F6 08",
         "00 10 00 80 00 80 00 00"},
        {make<CDrawYCbCrYCbCrA16>, 34, setYCbCr, 6, "CD AB 34 12 78 56 78 56",
         "00 00 03 02 05 04 05 04"},
        {make<CDrawUV8>, 10000, leave, 2, "80 80", "80 80"},
        {make<CDrawUV8>, 10000, setYCbCr, 2, "34 78", "03 05"},
        {make<CDrawUV16>, 10001, leave, 4, "00 80 00 80", "00 80 00 80"},
        {make<CDrawUV16>, 10001, setYCbCr, 4, "34 12 78 56", "03 02 05 04"},
    };
    constexpr int pitch = 40;
    for (const Case& c : cases) {
        for (const unsigned char fill : fills) {
            GuardedCanvas canvas(c.make, c.code, 3, 2, pitch, fill);
            c.setColors(canvas.as<ZRDraw>());
            switchEverythingOn(canvas);
            for (const Target& t : targets) {
                for (const bool selector : {true, false}) {
                    SCOPED_TRACE(testing::Message() << c.code << " at " << t.x << "," << t.y);
                    EXPECT_EQ(canvas->PutPixel(t.x, t.y, selector), t.column < 0 ? -1 : 0);
                    if (t.column < 0)
                        EXPECT_TRUE(canvas.wroteNothing());
                    else
                        EXPECT_TRUE(canvas.wrote(t.line * pitch + t.column * c.stride,
                                                 selector ? c.foreground : c.background));
                }
            }
        }
    }
}

TEST(FormatWrite, PairsOf422) {
    struct Case {
        unsigned int code;
        const char *even, *odd, *unset, *unsetBack; // the last two before any colour
    };
    const Case cases[] = {
        {10, "-- 64 C8 32", "C8 64 -- 32", "-- EB 80 EB", "-- 10 80 10"},
        {11, "64 C8 32 --", "64 -- 32 C8", "EB 80 EB --", "10 80 10 --"},
        {12, "-- 32 C8 64", "C8 32 -- 64", "-- EB 80 EB", "-- 10 80 10"},
        {13, "32 C8 64 --", "32 -- 64 C8", "EB 80 EB --", "10 80 10 --"},
    };
    struct Place {
        int x, y, offset;
        bool odd;
    };
    // On 5 x 2, so that the edge pulls an odd column back to an even one.
    const Place places[] = {{0, 0, 0, false}, {1, 0, 0, true},   {2, 1, 28, false}, {3, 0, 4, true},
                            {4, 0, 8, false}, {5, 1, 32, false}, {3, 2, 28, true}};
    for (const Case& c : cases) {
        for (const unsigned char fill : fills) {
            SCOPED_TRACE(c.code);
            GuardedCanvas canvas(make<CDrawYCbCrYUYV>, c.code, 5, 2, 24, fill);
            switchEverythingOn(canvas);
            canvas->PutPixel(0, 0, true);
            EXPECT_TRUE(canvas.wrote(0, c.unset));
            canvas->PutPixel(0, 0, false);
            EXPECT_TRUE(canvas.wrote(0, c.unsetBack));
            for (const bool selector : {true, false}) {
                auto& draw = canvas.as<CDrawYCbCrYUYV>();
                draw.SetColorYCbCr8(1, 2, 3, 4, !selector);
                draw.SetColorYCbCr8(200, 100, 50, 0, selector);
                for (const Place& p : places) {
                    EXPECT_EQ(canvas->PutPixel(p.x, p.y, selector), 0);
                    EXPECT_TRUE(canvas.wrote(p.offset, p.odd ? c.odd : c.even))
                        << p.x << "," << p.y;
                }
            }
            expectRefusals(canvas);
        }
    }
}

TEST(FormatWrite, GroupsOfV210) {
    // The samples of a pixel, its own luma and the chroma of its pair, among bits of the fill.
    const auto bytesOf = [](int pixel, std::array<unsigned int, 3> samples, unsigned char fill) {
        std::vector<unsigned int> words(4, 0x01010101U * fill);
        for (unsigned int i = 0; i < 3; ++i) {
            const auto [at, bit] = zrV210::placeOf(static_cast<unsigned int>(pixel), i);
            words[at] = (words[at] & ~(0x3FFU << bit)) | samples[i] << bit;
        }
        return Bytes(words);
    };
    constexpr unsigned int y = 0x123, cb = 0x2AB, cr = 0x3C5;
    for (const unsigned char fill : fills) {
        GuardedCanvas canvas(make<CDrawYCbCr10>, 14, 11, 2, 128, fill);
        switchEverythingOn(canvas);
        canvas->PutPixel(0, 0, true);
        EXPECT_TRUE(canvas.wrote(0, bytesOf(0, {502, 688, 867}, fill)));
        canvas->PutPixel(0, 0, false);
        EXPECT_TRUE(canvas.wrote(0, bytesOf(0, {502, 256, 864}, fill)));
        for (const bool selector : {true, false}) {
            canvas->SetColorYCbCr10(1, 2, 3, 4, !selector);
            canvas->SetColorYCbCr10(y, cb, cr, 0, selector);
            for (int x = 0; x <= 11; ++x) {
                const int landing = std::min(x, 10); // one past the edge is pulled back
                EXPECT_EQ(canvas->PutPixel(x, 1, selector), 0);
                EXPECT_TRUE(
                    canvas.wrote(128 + landing / 6 * 16, bytesOf(landing % 6, {y, cb, cr}, fill)))
                    << x;
            }
            canvas->PutPixel(3, 2, selector);
            EXPECT_TRUE(canvas.wrote(128, bytesOf(3, {y, cb, cr}, fill)));
        }
        expectRefusals(canvas);
    }
}

TEST(FormatWrite, DpxIsWrittenAndMixedAsPlainWords) {
    GuardedCanvas canvas(make<CDrawRGB30DPX>, 20, 2, 1, 8, 0x21);
    const auto colorOf = [&](bool selector) {
        std::array<double, 4> c{};
        canvas->GetColorRGBA(c[0], c[1], c[2], c[3], selector);
        return c;
    };
    canvas->SetColorRGBA(1.0, 0.0, 1.5, 0.5, true); // 1.5 is 1534, of which ten bits stay
    canvas->SetColorRGBA(512.5 / 1023, 256.5 / 1023, 128.5 / 1023, 0.0, false);
    EXPECT_EQ(colorOf(true), (std::array{1.0, 0.0, 510 / 1023.0, 1.0}));
    EXPECT_EQ(colorOf(false), (std::array{512 / 1023.0, 256 / 1023.0, 128 / 1023.0, 1.0}));
    canvas->SetColorRGBA(1.0, 0.0, 0.0, 1.0, true);
    canvas->PutPixel(0, 0, true);
    EXPECT_TRUE(canvas.wrote(0, "FF C0 00 00"));
    canvas->PutPixel(2, 1, false);
    EXPECT_TRUE(canvas.wrote(4, "80 10 02 00"));
    EXPECT_EQ(canvas->PutPixel(3, 0, true), -1);
    canvas->SetAlphaAdditive(true);
    canvas->PutPixel(0, 0, true);
    EXPECT_TRUE(canvas.wrote(0, "-- -- -- FF")) << "byte 3 is taken for an alpha of 0";
    canvas->SetAlphaAdditive(false);
    canvas->SetTransparency(true);
    canvas->SetTransparency(0.5, true);
    canvas.store(0, "00 00 00 00");
    canvas->PutPixel(0, 0, true);
    EXPECT_TRUE(canvas.wrote(0, "7F 60 00 00")) << "half of 0x0000C0FF";
}

} // namespace

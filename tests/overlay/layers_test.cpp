// The watermark and the audio meters as they lie over a frame, pixel by pixel.
#include "overlay/watermark_fixture.h"

namespace {

TEST_F(OverlayWatermark, BlendOfPairsAndPixels) {
    struct Case {
        unsigned int code;
        std::vector<unsigned char> entry; // Y, Cb, Y, Cr, A or B, G, R, A
        std::vector<unsigned char> wanted;
    };
    const Case cases[] = {
        {yuv2, {210, 20, 50, 240, 0}, {100, 100, 100, 100}},
        {yuv2, {210, 20, 50, 240, 8}, {100, 100, 100, 100}},
        {yuv2, {210, 20, 50, 240, 9}, {97, 103, 104, 98}},
        {yuv2, {210, 20, 50, 240, 128}, {59, 155, 170, 74}},
        {yuv2, {210, 20, 50, 240, 255}, {20, 210, 240, 50}},
        {bgra, {200, 0, 255, 16}, {64, 64, 64, 64}},
        {bgra, {200, 0, 255, 17}, {73, 59, 76, 17}},
        {bgra, {200, 0, 255, 255}, {200, 0, 255, 255}},
    };
    place(0, 0);
    for (Case c : cases) {
        const int width = c.code == bgra ? 1 : 2;
        create(width, 1, c.code);
        useCache(c.code, static_cast<unsigned int>(width), 1);
        overlay.wmYuv2 = overlay.wmBgra = c.entry.data();
        const unsigned char start = c.code == bgra ? 64 : 100;
        EXPECT_EQ(apply(std::vector<unsigned char>(4, start)), c.wanted) << int{c.entry.back()};
    }
}

TEST_F(OverlayWatermark, PlacesInPairsAndPixels) {
    struct Case {
        unsigned int code, x, y, width, height;
        const char* art; // a character a pixel, line by line: the entry's letter where it is shown
    };
    const Case cases[] = {
        {yuv2, 2, 1, 2, 1, "...... ..aa.. ......"},
        {yuv2, 3, 1, 2, 1, "...... ...aa. ......"},
        {yuv2, 4, 1, 6, 1, "...... ....aa bb...."}, // pairs are counted as pixels
        {yuv2, 0, 0, 5, 2, "aabb.. ccdd.. ......"},
        {yuv2, 0, 2, 2, 3, "...... ...... aa...."},
        {yuv2, 6, 0, 2, 1, "...... ...... ......"},
        {yuv2, 0xFFFFFFFE, 0, 6, 1, "...... ...... ......"},
        {yuv2, 0, 3, 2, 1, "...... ...... ......"},
        {yuv2, 0, 0xFFFFFFFF, 2, 3, "...... ...... ......"},
        {yuv2, 0, 0, 2, 0, "...... ...... ......"},
        {yuv2, 0, 0, 1, 2, "...... ...... ......"},
        {bgra, 1, 1, 2, 2, "...... .ab... .cd..."},
        {bgra, 4, 0, 3, 2, "....ab ....de ......"},
        {bgra, 5, 2, 1, 2, "...... ...... .....a"},
        {bgra, 6, 0, 2, 2, "...... ...... ......"},
        {bgra, 0xFFFFFFFF, 0, 2, 2, "...... ...... ......"},
        {bgra, 0, 3, 2, 2, "...... ...... ......"},
        {bgra, 0, 0xFFFFFFFF, 2, 2, "...... ...... ......"},
        {bgra, 0, 0, 2, 0, "...... ...... ......"},
    };
    for (const Case& c : cases) {
        std::vector<unsigned char> cache;
        for (unsigned char letter = 'a'; letter < 'a' + 12; ++letter) {
            cache.insert(cache.end(), c.code == bgra ? 3 : 4, letter);
            cache.push_back(255);
        }
        create(6, 3, c.code);
        useCache(c.code, c.width, c.height);
        place(c.x, c.y);
        overlay.wmYuv2 = overlay.wmBgra = cache.data();
        const std::size_t pixelBytes = c.code == bgra ? 4 : 2;
        const auto found = apply(std::vector<unsigned char>(6 * 3 * pixelBytes + 64, '.'));
        std::string art;
        for (std::size_t i = 0; i < found.size(); i += pixelBytes) {
            art += static_cast<char>(found[i]);
            if (art.size() == 6 || art.size() == 13)
                art += ' ';
        }
        EXPECT_EQ(art, c.art + std::string(64 / pixelBytes, '.')) << c.x << " " << c.y;
    }
}

TEST_F(OverlayWatermark, DeepPixelsAreDrawnByTheirAlpha) {
    struct Case {
        int frameWidth, pitch;
        unsigned int x, y, width, height, alpha;
        int columns, rows; // that are shown
    };
    const Case cases[] = {
        {50, 256, 3, 1, 4, 2, 11, 4, 2},           {50, 256, 3, 1, 4, 2, 10, 0, 0},
        {48, 128, 0, 0, 5, 2, 1023, 5, 2},         {96, 256, 93, 0, 8, 1, 1024, 3, 1},
        {50, 256, 46, 2, 8, 3, 500, 4, 1},         {50, 256, 50, 0, 2, 2, 500, 0, 0},
        {50, 256, 0, 3, 2, 2, 500, 0, 0},          {50, 256, 0xFFFFFFFF, 0, 2, 2, 500, 0, 0},
        {50, 256, 0, 0xFFFFFFFE, 2, 4, 500, 0, 0}, {50, 256, 0, 0, 2, 0, 500, 0, 0},
    };
    for (const Case& c : cases) {
        std::vector<unsigned int> cache;
        for (unsigned int i = 0; i < 40; ++i)
            cache.insert(cache.end(), {100 + i, 200 + i, 300 + i, 400 + i, c.alpha});
        create(c.frameWidth, 3, v210);
        useCache(v210, c.width, c.height);
        place(c.x, c.y);
        overlay.wmV210 = cache.data();
        std::vector<char> wanted(static_cast<std::size_t>(c.pitch * 3 + 64), '\x15');
        const auto found = apply(wanted);
        ZRDraw* draw = nullptr;
        GetDraw(ptV210, c.frameWidth, 3, c.pitch, wanted.data(), draw);
        for (int row = 0; row < c.rows; ++row) {
            for (int column = 0; column < c.columns; ++column) {
                const auto at =
                    static_cast<unsigned int>(row * static_cast<int>(c.width / 2) + column / 2);
                draw->SetColorYCbCr10((column % 2 != 0 ? 300 : 100) + at, 200 + at, 400 + at, 0,
                                      true);
                draw->PutPixel(static_cast<int>(c.x) + column, static_cast<int>(c.y) + row, true);
            }
        }
        ReleaseDraw(draw);
        EXPECT_EQ(found, wanted) << c.x << " " << c.y << " " << c.alpha;
    }
}

constexpr int left = 5, top = 8;
// Segments from the top, as their components overflow a byte.
constexpr unsigned int red = 0xFFE4FFFF, yellow = 0xFFE4E4FF, green = 0xFFFFE4FF;

unsigned int segmentColor(int segment) {
    return segment < 3 ? red : segment < 6 ? yellow : green;
}

class OverlayMeters : public OverlayTest {
protected:
    void createMeters(unsigned int channels) {
        create(frameWidth, frameHeight);
        overlay.Enabled = overlay.AudioEnable = 1;
        overlay.AudioX = left;
        overlay.AudioY = top;
        overlay.AudioChannels = channels;
    }
    // The panel of some meters, all dark.
    Picture panel(int channels, bool filled) {
        Picture picture(frameWidth, frameHeight);
        picture.box(left, top, 30 * channels + 41, 200, black);
        const char* const labels[] = {"  0", "-10", "-20", "-30"};
        for (int k = 0; k < 4; ++k)
            picture.text(labels[k], left + 10, top + 10 + 45 * k, 1, filled);
        return picture;
    }
    static void lightFrom(Picture& picture, int channel, int first) {
        for (int s = first; s < 15; ++s)
            picture.box(left + 40 + 30 * channel, top + 10 + 12 * s, 21, 10, segmentColor(s));
    }
    static void mark(Picture& picture, int channel, int y) {
        picture.box(left + 40 + 30 * channel, top + y, 21, 3, white);
    }
    static constexpr int frameWidth = 300, frameHeight = 224;
};

TEST_F(OverlayMeters, LevelsAndPeaks) {
    constexpr int dark = 15, none = -1;
    struct Case {
        unsigned int level;
        int first;  // lit segment
        int marker; // line below AudioY
    };
    const Case cases[] = {
        {0, dark, none}, {1, dark, none}, {630, dark, none}, {631, dark, 209}, {891, dark, 195},
        {892, 14, 195},  {1000, 14, 190}, {11220, 7, 88},    {11221, 6, 88},   {28183, 4, 49},
        {28184, 3, 49},  {56234, 2, 19},  {56235, 1, 19},    {65535, 1, 13},
    };
    for (const Case& c : cases) {
        for (const unsigned int channel : {0U, 1U, 2U}) {
            SCOPED_TRACE(std::to_string(c.level) + " in " + std::to_string(channel));
            createMeters(3);
            unsigned int words[2] = {}, silence[2] = {};
            words[channel / 2] = c.level << (channel % 2 * 16);
            const int i = static_cast<int>(channel);
            for (const bool levels : {true, false}) {
                for (const bool peaks : {true, false}) {
                    Picture found(frameWidth, frameHeight), wanted = panel(3, true);
                    burnIn(found, levels ? words : nullptr, peaks ? words : nullptr);
                    if (levels)
                        lightFrom(wanted, i, c.first);
                    if (peaks && c.marker != none)
                        mark(wanted, i, c.marker);
                    EXPECT_EQ(found.difference(wanted), "") << levels << peaks;
                    EXPECT_EQ(overlay.levelHistory[channel][0], levels ? c.level : 0);
                }
            }
            Picture found(frameWidth, frameHeight);
            burnIn(found, silence, silence);
            EXPECT_EQ(found.difference(panel(3, true)), "");
        }
    }
}

TEST_F(OverlayMeters, NoChannelsBecomeEightAndHalfAWordIsLeftAlone) {
    unsigned int words[4] = {0xFFFF0000};
    for (const bool none : {true, false}) {
        createMeters(none ? 0 : 1);
        overlay.FillBackground = none ? 0 : 1;
        Picture found(frameWidth, frameHeight);
        burnIn(found, none ? nullptr : words, none ? nullptr : words);
        EXPECT_EQ(found.difference(panel(none ? 8 : 1, !none)), "");
        EXPECT_EQ(overlay.AudioChannels, none ? 8U : 1U);
        EXPECT_EQ(overlay.levelHistory[1][0], 0U);
    }
}

TEST_F(OverlayMeters, HistoryMovesBytesNotWords) {
    createMeters(32); // the panel runs past the right edge
    unsigned int words[16] = {};
    words[15] = 0x00110022;
    unsigned int* const history = overlay.levelHistory[31];
    history[0] = 0x01020304;
    history[31] = 0xAABBCCDD;
    history[32] = 0x11223344;
    history[33] = 0x55667788;
    Picture found(frameWidth, frameHeight);
    burnIn(found, words);
    EXPECT_EQ(history[0], 0x11U);
    EXPECT_EQ(overlay.levelHistory[30][0], 0x22U);
    EXPECT_EQ(history[1], 0x01020304U);
    EXPECT_EQ(history[32], 0x11BBCCDDU); // the last byte stays behind
    EXPECT_EQ(history[33], 0x55667788U);
    burnIn(found, nullptr);
    EXPECT_EQ(history[0], 0U);
    EXPECT_EQ(history[1], 0x11U);
    EXPECT_EQ(history[2], 0x01020304U);
}

} // namespace

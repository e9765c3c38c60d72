// Laying the watermark over a frame.
#include "overlay/watermark_fixture.h"

namespace {

TEST_F(OverlayWatermark, NullCaches) {
    create(6, 3);
    place(0, 0);
    for (const unsigned int code : {bgra, yuv2, v210}) {
        useCache(code, 6, 3);
        EXPECT_EQ(apply(std::vector<char>(512, 'x')), std::vector<char>(512, 'x'));
    }
    EXPECT_TRUE(log.empty());
}

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

} // namespace

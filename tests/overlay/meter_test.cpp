// The audio meters: panel, labels, bars and peak markers, pixel by pixel.
#include "overlay/overlay_fixture.h"

namespace {

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

TEST_F(OverlayMeters, TheUnusedHalfOfTheLastWordIsLeftAlone) {
    createMeters(1);
    unsigned int words[1] = {0xFFFF0000};
    Picture found(frameWidth, frameHeight);
    burnIn(found, words, words);
    EXPECT_EQ(found.difference(panel(1, true)), "");
    EXPECT_EQ(overlay.levelHistory[1][0], 0U);
}

TEST_F(OverlayMeters, NoChannelsBecomeEight) {
    createMeters(0);
    overlay.FillBackground = 0;
    Picture found(frameWidth, frameHeight);
    burnIn(found);
    EXPECT_EQ(found.difference(panel(8, false)), "");
    EXPECT_EQ(overlay.AudioChannels, 8U);
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

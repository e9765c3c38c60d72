// How sound becomes the levels of pictures.
#include "gst/level_track.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>

namespace {

using namespace std::chrono_literals;

constexpr GstClockTime frame = 40 * GST_MSECOND;

// A second of silence in two channels at 48 kHz, with one sample of each that is not.
LevelBlock blockWith(GstClockTime begin, std::size_t sample, std::uint16_t level) {
    LevelBlock block{begin, 48000, 2, std::vector<std::uint16_t>(2 * 48000)};
    block.amplitudes[2 * sample] = level;
    block.amplitudes[2 * sample + 1] = static_cast<std::uint16_t>(level / 2);
    return block;
}

TEST(LevelTrack, ASampleBelongsToOnePicture) {
    const struct {
        std::size_t sample;
        GstClockTime picture;
    } cases[] = {{0, 0}, {1919, 0}, {1920, 1}, {3839, 1}, {3840, 2}, {47999, 24}};
    for (const auto& c : cases) {
        LevelTrack track;
        track.feed(blockWith(0, c.sample, 1000));
        for (GstClockTime picture = 0; picture < 25; ++picture) {
            const MeterLevels levels = track.between(picture * frame, (picture + 1) * frame, {});
            EXPECT_EQ(levels[0], picture == c.picture ? 1000U : 0U) << c.sample << ' ' << picture;
            EXPECT_EQ(levels[1], picture == c.picture ? 500U : 0U);
            EXPECT_EQ(levels[2], 0U);
        }
    }
}

TEST(LevelTrack, PicturesMaySpanBlocks) {
    LevelTrack track;
    track.feed(blockWith(0, 47999, 1000));
    track.feed(blockWith(GST_SECOND, 0, 3000));
    EXPECT_EQ(track.between(GST_SECOND - frame / 2, GST_SECOND + frame / 2, {})[0], 3000U);
    EXPECT_EQ(track.channels(), 2U);
}

TEST(LevelTrack, WaitsForSoundAndOnceInVain) {
    LevelTrack track;
    track.begin();
    std::thread other([&] {
        std::this_thread::sleep_for(30ms);
        track.feed(blockWith(0, 100, 700));
    });
    EXPECT_EQ(track.between(0, frame, {10s})[0], 700U);
    other.join();
    for (int i = 0; i < 1000; ++i) // the test's own limit ends it, if each waited
        track.between(2 * GST_SECOND, 2 * GST_SECOND + frame, {1s});
    track.end();
    track.between(3 * GST_SECOND, 3 * GST_SECOND + frame, {1h});
}

TEST(LevelTrack, AWaitEndsWithTheStream) {
    const std::function<void(LevelTrack&)> ends[] = {
        [](LevelTrack& track) { track.end(); },
        [](LevelTrack& track) { track.setImpatient(true); }};
    for (const auto& end : ends) {
        LevelTrack track;
        track.begin();
        std::thread other([&] {
            std::this_thread::sleep_for(20ms);
            end(track);
        });
        track.between(2 * GST_SECOND, 3 * GST_SECOND, {1h});
        other.join();
    }
}

TEST(LevelTrack, OneBringsTheSoundAndTheNextFindsNoneOfIt) {
    LevelTrack track;
    EXPECT_TRUE(track.begin());
    EXPECT_FALSE(track.begin());
    track.feed(blockWith(50 * GST_SECOND, 0, 1000));
    track.leave();
    EXPECT_TRUE(track.begin());
    EXPECT_EQ(track.channels(), 0U);
    std::thread other([&] { track.feed(blockWith(0, 10, 500)); });
    EXPECT_EQ(track.between(0, frame, {10s})[0], 500U) << "it waits again";
    other.join();
}

TEST(LevelTrack, NobodysSoundIsKeptForLong) {
    LevelTrack track;
    for (GstClockTime second = 0; second < 100; ++second)
        track.feed(blockWith(second * GST_SECOND, 0, 1000));
    EXPECT_EQ(track.between(0, GST_SECOND, {})[0], 0U);
    EXPECT_EQ(track.between(95 * GST_SECOND, 96 * GST_SECOND, {})[0], 1000U);
}

} // namespace

// The elements' pictures and clips for scripts: their pixels, alpha and times.
#include "common/tool_error.h"
#include "gst/picture_clip.h"
#include "gst_fixture.h"
#include "support/script_pictures.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>

namespace {

using namespace gstreamer;

constexpr int width = 33, height = 17;

std::string capsOf(const char* format) {
    return fmt::format("video/x-raw,width={},height={},framerate=10/1,format={}", width, height,
                       format);
}

// Frames of one colour.
std::string flat(const char* argb, int frames, const char* format = "RGBA",
                 const char* offset = "0") {
    return fmt::format("videotestsrc num-buffers={} pattern=solid-color foreground-color=0x{} "
                       "timestamp-offset={} ! {} ",
                       frames, argb, offset, capsOf(format));
}

// A folder that goes with the test.
class GstPictureClip : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = testing::TempDir() + "zrdraw-clip-XXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        m_folder = pattern;
    }
    void TearDown() override { std::filesystem::remove_all(m_folder); }

    std::string at(const std::string& name) const { return m_folder / name; }

    // Runs a pipeline without an appsink to its end.
    static void make(const std::string& description) {
        Pipeline pipeline(description);
        pipeline.play();
        ASSERT_NE(pipeline.message(GST_MESSAGE_EOS), "") << description;
    }

    std::filesystem::path m_folder;
};

constexpr Argb red = argbOfBytes(0x80, 255, 0x20, 0x10), blue = argbOfBytes(255, 0, 0x80, 255);

TEST_F(GstPictureClip, APictureHasItsAlphaAtAnyTime) {
    make(flat("80FF2010", 1) + "! pngenc ! filesink location=" + at("a.png"));
    const auto clip = openPictureClip(at("a.png"));
    const PicturePtr picture = clip->at(0);
    EXPECT_EQ(picture->width, width);
    EXPECT_EQ(picture->height, height);
    ASSERT_EQ(picture->words.size(), std::size_t{4 * width * height});
    EXPECT_TRUE(isFlat(*picture, red));
    for (const double seconds : {-3.0, 1e9, 0.0})
        EXPECT_EQ(clip->at(seconds), picture) << seconds;
}

TEST_F(GstPictureClip, EveryPixelStandsAtItsPlace) {
    Pipeline pipeline(std::string("videotestsrc num-buffers=1 pattern=snow ! ") + capsOf("RGBA") +
                      " ! tee name=t ! queue ! pngenc ! filesink location=" + at("a.png") +
                      " t. ! queue ! appsink name=out sync=false");
    const std::vector<Bytes> frames = pipeline.frames();
    ASSERT_EQ(frames.size(), 1U);
    ASSERT_NE(pipeline.message(GST_MESSAGE_EOS), "");
    const PicturePtr picture = openPictureClip(at("a.png"))->at(0);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const unsigned char* pixel = &frames[0][static_cast<std::size_t>(4 * (y * width + x))];
            ASSERT_EQ(argbAt(*picture, x, y), argbOfBytes(pixel[3], pixel[0], pixel[1], pixel[2]))
                << x << ", " << y;
        }
}

TEST_F(GstPictureClip, AClipShowsTheLatestFrameOfATime) {
    const struct {
        const char* name;
        const char* mux;
        const char* offset; // of the first frame, from which the times count
        const char* format;
        unsigned alpha;
    } clips[] = {{"a.mov", "pngenc ! qtmux", "0", "RGBA", 0x80},
                 {"late.mkv", "matroskamux", "7000000000", "RGB", 255}};
    for (const auto& clip : clips) {
        SCOPED_TRACE(clip.name);
        make(fmt::format("concat name=c ! {} ! filesink location={} {} ! c. {} ! c.", clip.mux,
                         at(clip.name), flat("80FF2010", 2, clip.format, clip.offset),
                         flat("FF0080FF", 2, clip.format)));
        const Argb first = argbOfBytes(clip.alpha, 255, 0x20, 0x10);
        const auto opened = openPictureClip(at(clip.name));
        const struct {
            double seconds;
            Argb color;
            const char* why;
        } steps[] = {{-1, first, "before the first"}, {0.15, first, "the second"},
                     {0.199, first, "its end"},       {0.1996, blue, "half a millisecond early"},
                     {9, blue, "past the end"},       {0.15, first, "back from the end"},
                     {0.2, blue, "forward again"},    {0, first, "back without the end"}};
        for (const auto& step : steps)
            EXPECT_TRUE(isFlat(*opened->at(step.seconds), step.color)) << step.why;
        const PicturePtr kept = opened->at(0);
        EXPECT_EQ(opened->at(0.09), kept);
        EXPECT_NE(opened->at(0.1), kept) << "another frame";
        EXPECT_TRUE(isFlat(*openPictureClip(at(clip.name))->at(3), blue)) << "at once";
    }
}

TEST_F(GstPictureClip, SoundAndOddNamesAreNoHindrance) {
    const std::string name = "on air 100%20#1?.mov";
    make("qtmux name=m ! filesink location=\"" + at(name) + "\" " + flat("FF0080FF", 3) +
         "! pngenc ! queue ! m. audiotestsrc num-buffers=30 ! queue ! m.");
    const auto clip = openPictureClip(at(name));
    for (const double seconds : {0.0, 0.2, 5.0, 0.1})
        EXPECT_TRUE(isFlat(*clip->at(seconds), blue)) << seconds;
}

TEST_F(GstPictureClip, WhatCannotBeReadIsNamed) {
    std::ofstream(at("text.png")) << "no picture\n";
    std::ofstream(at("empty.png"));
    make("audiotestsrc num-buffers=3 ! wavenc ! filesink location=" + at("sound.wav"));
    for (const char* name : {"missing.png", "text.png", "empty.png", "sound.wav"}) {
        try {
            openPictureClip(at(name));
            ADD_FAILURE() << name << " was read";
        } catch (const Failure& failure) {
            const std::string message = failure.what();
            EXPECT_EQ(message.rfind("cannot read '" + at(name) + "': ", 0), 0U) << message;
            EXPECT_FALSE(message.ends_with('.')) << message;
        }
    }
}

} // namespace

// The tool's pictures and clips for scripts: their pixels, alpha and times.
#include "media/picture_clip.h"
#include "support/script_pictures.h"
#include "tool/tool_fixture.h"

namespace {

using PictureClipTest = ToolTest;

// What of an opened file is shown when, as one flat colour; pictures of other colours are nullopt.
std::optional<Argb> colorAt(PictureClip& clip, double seconds) {
    const PicturePtr picture = clip.at(seconds);
    const Argb first = argbAt(*picture, 0, 0);
    return isFlat(*picture, first) ? std::optional(first) : std::nullopt;
}

TEST_F(PictureClipTest, APictureHasItsPixelsAndAlphaAtAnyTime) {
    const struct {
        const char* name;
        AVPixelFormat format;
        bool alpha;
    } rows[] = {{"rgba.png", AV_PIX_FMT_RGBA, true},
                {"palette.png", AV_PIX_FMT_PAL8, true},
                {"rgb.png", AV_PIX_FMT_RGB24, false},
                {"bgr.bmp", AV_PIX_FMT_BGR24, false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const StreamInfo info = infoOf(row.format, 61, 47); // of odd sides
        writeNoise(at(row.name), info, 1);
        const Bytes bgraBytes = noiseAsBgra(0, info, row.alpha);
        const auto clip = openPictureClip(at(row.name));
        const PicturePtr picture = clip->at(0);
        for (const double seconds : {-3.0, 1e9, 0.0})
            EXPECT_EQ(clip->at(seconds), picture) << seconds;
        ASSERT_EQ(picture->width, 61);
        ASSERT_EQ(picture->height, 47);
        ASSERT_EQ(picture->words.size(), 61U * 47 * 4);
        for (std::size_t i = 0; i < picture->words.size(); i += 4) {
            const unsigned char* pixel = &bgraBytes[i];
            ASSERT_EQ(argbAt(*picture, static_cast<int>(i / 4), 0),
                      argbOfBytes(pixel[3], pixel[2], pixel[1], pixel[0]))
                << i / 4;
        }
    }
}

TEST_F(PictureClipTest, SixteenBitsStay) {
    run("$F -f lavfi -i color=red:s=8x8,format=rgba64,"
        "geq=r=300+X:g=65000-Y:b=4660:a=33000+7*X -frames:v 1 deep.png");
    const auto clip = openPictureClip(at("deep.png"));
    EXPECT_EQ(argbAt(*clip->at(0), 3, 5), (Argb{33021, 303, 64995, 4660}));
}

constexpr Argb red = argbOfBytes(128, 255, 0, 0), green = argbOfBytes(255, 0, 255, 0),
               blue = argbOfBytes(64, 0, 0, 255);

TEST_F(PictureClipTest, AClipShowsTheLatestFrameOfATime) {
    // Three frames of a tenth of a second, in lossless formats with alpha; the last begins late.
    const std::string frames = "$F -f lavfi -i color=red@0.502:s=18x10:r=10:d=0.1,format=rgba "
                               "-f lavfi -i color=lime:s=18x10:r=10:d=0.1,format=rgba "
                               "-f lavfi -i color=blue@0.251:s=18x10:r=10:d=0.1,format=rgba "
                               "-filter_complex '[0][1][2]concat=n=3,"
                               "setpts=(N*0.1+gte(N\\,2)*0.4+OFFSET)/TB' -fps_mode vfr ";
    const auto make = [&](const std::string& offset, const std::string& output) {
        std::string command = frames;
        command.replace(command.find("OFFSET"), 6, offset);
        run(command + output);
    };
    make("0", "-c:v qtrle a.mov");
    make("0", "-c:v ffv1 -pix_fmt bgra a.mkv");
    make("7", "-c:v png late.mkv"); // counted from the first frame on
    for (const char* name : {"a.mov", "a.mkv", "late.mkv"}) {
        SCOPED_TRACE(name);
        const auto clip = openPictureClip(at(name));
        const struct {
            double seconds;
            Argb color;
            const char* why;
        } steps[] = {{-1, red, "before the first"},
                     {0, red, "the first"},
                     {0.099, red, "its end"},
                     {0.0996, green, "half a millisecond early"},
                     {0.59, green, "until the next begins"},
                     {0.6, blue, "the last"},
                     {5, blue, "past the end"},
                     {0.1, green, "back from the end"},
                     {0, red, "and to the first"},
                     {0.3, green, "forward again"},
                     {0.0, red, "back without the end"}};
        for (const auto& step : steps)
            EXPECT_EQ(colorAt(*clip, step.seconds), step.color) << step.why;
        EXPECT_EQ(clip->at(0.2), clip->at(0.5)) << "the same picture";
        EXPECT_EQ(colorAt(*openPictureClip(at(name)), 3), blue) << "at once";
    }
}

TEST_F(PictureClipTest, AClipWithSoundShowsItsPictures) {
    run("$F -f lavfi -i color=lime:s=18x10:r=10:d=1,format=rgb24 -f lavfi -i sine=d=1 -c:v qtrle "
        "-c:a pcm_s16le sound.mov");
    const auto clip = openPictureClip(at("sound.mov"));
    for (const double seconds : {0.0, 0.5, 2.0, 0.1})
        EXPECT_EQ(colorAt(*clip, seconds), green) << seconds;
}

TEST_F(PictureClipTest, WhatCannotBeReadIsNamed) {
    run("echo no picture >text.png; : >empty.png; $F -f lavfi -i sine=d=1 sound.wav");
    const struct {
        const char* name;
        const char* part;
    } cases[] = {{"missing.png", "missing.png"},
                 {"text.png", "text.png"},
                 {"empty.png", "empty.png' is empty"},
                 {"sound.wav", "sound.wav"}};
    for (const auto& c : cases) {
        const std::string message = errorOf([&] { openPictureClip(at(c.name)); });
        EXPECT_NE(message.find(c.part), std::string::npos) << message;
    }
    EXPECT_NE(errorOf([] { openPictureClip("-"); }).find("standard input"), std::string::npos);
}

} // namespace

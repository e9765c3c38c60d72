// `zrdraw overlay` and `zrdraw config`: time code, sound, levels, and the stored settings.
#include "overlay/burner.h"
#include "tool/tool_fixture.h"

#include <gtest/gtest.h>

namespace {

using OverlayTest = ToolTest;

StreamInfo infoAt(AVRational rate, int width = 320, int height = 200) {
    StreamInfo info = infoOf(AV_PIX_FMT_UYVY422, width, height);
    info.frameRate = rate;
    return info;
}

BurnOptions withSettings(const std::vector<std::string>& settings) {
    BurnOptions options;
    for (const std::string& text : settings)
        options.settings.push_back(parseAssignment(text));
    return options;
}

TEST_F(OverlayTest, FrameNumberNShowsTimeCodeN) {
    const struct {
        AVRational rate;
        const char* start;
        std::optional<bool> drop;
        int frame;
        const char* shown;
    } rows[] = {
        {{25, 1}, "10:00:00:00", {}, 26, "10:00:01:01"},
        {{30000, 1001}, "00:00:59;29", {}, 1, "00:01:00;02"},
        {{30000, 1001}, "00:00:59:29", {}, 1, "00:01:00:00"},
        {{30000, 1001}, "", true, 1800, "00:01:00;02"},
        {{30000, 1001}, "", false, 1800, "00:01:00:00"},
        {{50, 1}, "23:59:59:49", {}, 1, "00:00:00:00"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shown);
        // The same pass, with the expected text where the time code is to stand.
        BurnOptions options = withSettings({"TimeCodeX=4", "TimeCodeY=20", "TimeCodeSize=3"});
        options.startTimeCode = row.start;
        options.dropFrame = row.drop;
        BurnOptions wanted =
            withSettings({"TimeCodeLTCEnable=0", "CustomTextX0=4", "CustomTextY0=20"});
        wanted.texts = {row.shown};
        const StreamInfo info = infoAt(row.rate);
        Canvas canvas(layoutOf(ptUYVY), 320, 200), expected(layoutOf(ptUYVY), 320, 200);
        Burner(options, info, canvas.layout(), 0).burn(canvas, row.frame, {});
        Burner(wanted, info, expected.layout(), 0).burn(expected, 0, {});
        EXPECT_TRUE(bytesOf(canvas) == bytesOf(expected));
        EXPECT_NE(bytesOf(canvas), std::string(bytesOf(canvas).size(), '\0'));
    }
}

TEST_F(OverlayTest, SoundAndTimeCodePassOn) {
    run("$F -f lavfi -i testsrc2=s=64x48:r=25:d=1 -f lavfi -i sine=f=500:r=48000:d=1 "
        "-timecode 01:02:03:04 -c:v png -c:a pcm_s16le in.mov && "
        "$Z overlay in.mov out.mov --codec png --set AudioEnable=1 --quiet && "
        "$F -i in.mov -c:a copy in.wav && $F -i out.mov -c:a copy out.wav");
    EXPECT_TRUE(readFile(at("in.wav")) == readFile(at("out.wav")));
    Reader source(at("out.mov"), {always(bgra)});
    EXPECT_EQ(source.info().timeCode, "01:02:03:04");
    EXPECT_EQ(source.info().frameCount, 25);
}

TEST_F(OverlayTest, LevelsFollowTheSound) {
    // Half a second of silence, then a tone at half of full scale on the second channel only.
    run("$F -f lavfi -i testsrc2=s=64x48:r=25:d=1 -f lavfi -i "
        "'aevalsrc=0|0.5*sin(2*PI*1000*t)*gte(t\\,0.5):s=48000:d=1' "
        "-c:v png -c:a pcm_s16le in.mov");
    Reader reader(at("in.mov"), {always(bgra)});
    AudioLevels levels(reader.input().sound());
    EXPECT_EQ(levels.channels(), 2U);
    reader.measureSound(levels);
    const auto frames = framesOf(reader);
    ASSERT_EQ(frames.size(), 25U);
    for (int n = 0; n < 25; ++n) {
        const MeterLevels& measured = frames[static_cast<std::size_t>(n)]->levels;
        EXPECT_EQ(measured[0], 0U) << n;
        EXPECT_NEAR(measured[1], n < 12 ? 0 : 32767, n == 12 ? 32767 : 20) << n;
    }
}

TEST_F(OverlayTest, SoundThatIsNoNumberIsSilent) {
    run("$F -f lavfi -i testsrc2=s=64x48:r=25:d=0.2 -f lavfi -i 'aevalsrc=0/0|1/0:s=48000:d=0.2' "
        "-c:v png -c:a pcm_f32le in.mov");
    Reader reader(at("in.mov"), {always(bgra)});
    AudioLevels levels(reader.input().sound());
    reader.measureSound(levels);
    for (const auto& frame : framesOf(reader)) {
        EXPECT_EQ(frame->levels[0], 0U);
        EXPECT_EQ(frame->levels[1], 65535U) << "without end is full scale";
    }
}

TEST_F(OverlayTest, PeaksStayAndThenFall) {
    PeakHold hold(10.0);
    MeterLevels loud{}, silent{};
    loud[3] = 50000;
    EXPECT_EQ(hold.next(loud)[3], 50000U);
    for (int i = 0; i < 9; ++i)
        hold.next(silent);
    EXPECT_EQ(hold.next(silent)[3], 50000U) << "for a second";
    for (int i = 0; i < 9; ++i)
        hold.next(silent);
    EXPECT_NEAR(hold.next(silent)[3], 5000, 10) << "by 20 dB in the next";
}

TEST_F(OverlayTest, WhatDoesNotFitIsRefusedWithItsMend) {
    run("$F -f lavfi -i testsrc2=s=64x48:r=25:d=0.2 -c:v png in.mov; echo 'no picture' >text.txt");
    expectRefused({
        {"$Z overlay in.mov o.mov --start-tc 10:00:00:25", 2, "cannot be at 25 frames a second"},
        {"$Z overlay in.mov o.mov --drop", 2, "no drop-frame time code at 25"},
        {"$Z overlay in.mov o.mov --set TimeCodX=1", 2, "did you mean TimeCodeX"},
        {"$Z overlay in.mov o.mov --set TimeCodeX=left", 2, "expected a whole number"},
        {"$Z overlay in.mov o.mov --set AudioChannels=33", 2, "32 meters at most"},
        {"$Z overlay in.mov o.mov --text 10=x", 2, "N from 0 to 9"},
        {"$Z overlay in.mov o.mov --layout rgb48", 2, "bgra, uyvy or v210"},
        {"$Z overlay in.mov o.mov --settings-store none.db", 2, "holds no settings"},
        {"$Z overlay in.mov o.mov --settings-store .", 1, "is not a file"},
        {"$Z overlay in.mov o.mov --settings-store in.mov", 1, "is not a settings store"},
        {"$Z overlay text.txt o.mov", 1, "text.txt"},
        {"$Z overlay in.mov o.mov --watermark missing.png", 1, "'missing.png' cannot be read"},
        {"$Z overlay in.mov o.mov --set WatermarkEnable=1", 2, "use --watermark FILE"},
    });
    const Result result = shell("$Z overlay in.mov o.mov --text 3=far");
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.err.find("CustomTextEnabled3: the layer lies wholly off the 64x48 frame\n"),
              std::string::npos)
        << result.err;
}

using ConfigTest = ToolTest;

TEST_F(ConfigTest, KeepsExportsAndImports) {
    EXPECT_EQ(run("$Z config get TimeCodeX"), "20\n");
    EXPECT_FALSE(fs::exists(at("settings.db"))) << "asking makes no store";
    run("$Z config set TimeCodeX=33 'CustomText3=on air' CustomTextEnabled3=1");
    run("$Z config export all.txt");
    const std::string exported = readFile(at("all.txt"));
    EXPECT_NE(exported.find("\nTimeCodeX = 33\n"), std::string::npos) << exported;
    run("$Z config set TimeCodeX=1");
    writeFile(at("bad.txt"), "[zroverlay]\nTimeCodeX = 5\nTimeCodeY = x\n");
    writeFile(at("text.txt"), "no picture");
    expectRefused({
        {"$Z config import bad.txt", 2, "bad.txt:3"},
        {"$Z config get Nothing", 2, "there is no setting 'Nothing'"},
        {"$Z config import text.txt", 2, "holds no settings"},
    });
    EXPECT_EQ(run("$Z config get TimeCodeX"), "1\n") << "nothing of a bad file is taken";
    EXPECT_EQ(run("$Z config import all.txt && $Z config export -"), exported);
    // What is stored is what is burnt in.
    const StreamInfo info = infoOf(AV_PIX_FMT_UYVY422, 320, 200);
    Canvas stored(layoutOf(ptUYVY), 320, 200), told(layoutOf(ptUYVY), 320, 200);
    Burner({}, info, stored.layout(), 0).burn(stored, 0, {});
    fs::remove(at("settings.db"));
    BurnOptions options;
    options.settings = {parseAssignment("TimeCodeX=33")};
    options.texts = {"", "", "", "on air"};
    Burner(options, info, told.layout(), 0).burn(told, 0, {});
    EXPECT_TRUE(bytesOf(stored) == bytesOf(told));
}

// The library would show the rest of each line at the left of the next one, and behind the frame.
TEST_F(OverlayTest, AWatermarkOverTheRightEdgeOf422IsCut) {
    ASSERT_EQ(shell("$F -f lavfi -i color=gray:s=64x48:r=25:d=0.04 -pix_fmt uyvy422 -c:v rawvideo "
                    "in.mov && $F -f lavfi -i color=white:s=200x60 -frames:v 1 w.png && "
                    "$Z overlay in.mov out.mov --watermark w.png --set WatermarkX=40 "
                    "--set WatermarkY=10 --layout uyvy --codec rawvideo && "
                    "$F -i out.mov -vf format=gray -f rawvideo out.raw")
                  .status,
              0);
    const std::string luma = readFile(at("out.raw"));
    ASSERT_EQ(luma.size(), 64U * 48U);
    for (std::size_t i = 0; i < luma.size(); ++i)
        EXPECT_EQ(static_cast<unsigned char>(luma[i]) > 200, i % 64 >= 40 && i / 64 >= 10)
            << i % 64 << ", " << i / 64;
}

} // namespace

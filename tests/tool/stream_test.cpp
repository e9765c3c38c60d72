// The subcommands that work on streams: overlay, wipe, mux and config, as a user runs them.
#include "overlay/burner.h"
#include "pair/transition.h"
#include "pair/v210_words.h"
#include "tool/media_fixture.h"
#include "tool_error.h"

#include <cstring>

namespace {

// A clip with moving noise and a tone that swells from the third frame on.
class Stream : public Media {
protected:
    void SetUp() override {
        Media::SetUp();
        setenv("ZRDRAW_STORE", at("settings.db").c_str(), 1);
    }
    void TearDown() override {
        unsetenv("ZRDRAW_STORE");
        Media::TearDown();
    }

    int tool(const std::string& arguments) const {
        return std::system(("cd " + m_folder.string() + " && " ZRDRAW_TOOL " " + arguments +
                            " >out.txt 2>err.txt")
                               .c_str()) /
               256;
    }
    std::string errors() const { return readFile(at("err.txt")); }
    std::string output() const { return readFile(at("out.txt")); }

    void makeClip(const std::string& name, const std::string& filters,
                  const std::string& options) const {
        const std::string command = "cd " + m_folder.string() + " && ffmpeg -v error -y " +
                                    filters + " " + options + " " + name;
        ASSERT_EQ(std::system(command.c_str()), 0) << command;
    }
};

std::string bytesOf(WorkingFrame& canvas) {
    return {canvas.data(), static_cast<std::size_t>(canvas.pitch() * canvas.height())};
}

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

TEST_F(Stream, FrameNumberNShowsTimeCodeN) {
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
        WorkingFrame canvas(layoutOf(ptUYVY), 320, 200), expected(layoutOf(ptUYVY), 320, 200);
        Burner(options, info, canvas.layout(), 0).burn(canvas, row.frame, {});
        Burner(wanted, info, expected.layout(), 0).burn(expected, 0, {});
        EXPECT_TRUE(bytesOf(canvas) == bytesOf(expected));
        EXPECT_NE(bytesOf(canvas), std::string(bytesOf(canvas).size(), '\0'));
    }
}

TEST_F(Stream, WhatDoesNotFitIsRefusedWithItsMend) {
    makeClip("in.mov", "-f lavfi -i testsrc2=s=64x48:r=25:d=0.2", "-c:v png");
    writeFile(at("text.txt"), "no picture");
    makeClip("other.mov", "-f lavfi -i testsrc2=s=32x48:r=25:d=0.2", "-c:v png");
    makeClip("fast.mov", "-f lavfi -i testsrc2=s=64x48:r=50:d=0.2", "-c:v png");
    const struct {
        const char* arguments;
        int status;
        const char* told;
    } rows[] = {
        {"overlay in.mov o.mov --start-tc 10:00:00:25", 2, "cannot be at 25 frames a second"},
        {"overlay in.mov o.mov --drop", 2, "no drop-frame time code at 25"},
        {"overlay in.mov o.mov --set TimeCodX=1", 2, "did you mean TimeCodeX"},
        {"overlay in.mov o.mov --set TimeCodeX=left", 2, "expected a whole number"},
        {"overlay in.mov o.mov --set AudioChannels=33", 2, "32 meters at most"},
        {"overlay in.mov o.mov --text 10=x", 2, "N from 0 to 9"},
        {"overlay in.mov o.mov --layout rgb48", 2, "bgra, uyvy or v210"},
        {"overlay in.mov o.mov --settings-store none.db", 2, "holds no settings"},
        {"overlay in.mov o.mov --settings-store .", 1, "is not a file"},
        {"overlay in.mov o.mov --settings-store other.mov", 1, "is not a settings store"},
        {"overlay text.txt o.mov", 1, "text.txt"},
        {"wipe in.mov other.mov o.mov", 1, "use --scale"},
        {"wipe in.mov fast.mov o.mov", 1, "differ in rate: the first is 25"},
        {"wipe in.mov in.mov o.mov --code horizontl", 2, "did you mean horizontal"},
        {"wipe in.mov in.mov o.mov --position 1.5", 2, "from 0 to 1"},
        {"wipe in.mov in.mov o.mov --layout bayerrggb", 2, "no transitions in layout bayerrggb"},
        {"mux in.mov in.mov o.mov --mode spilt", 2, "did you mean split"},
        {"mux in.mov in.mov o.mov --grid 1%", 2, "cannot be cut into 100 parts"},
        {"mux in.mov in.mov o.mov --layout uyvy", 2, "32-bit RGB"},
        {"config get Nothing", 2, "there is no setting 'Nothing'"},
        {"config import text.txt", 2, "holds no settings"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(tool(row.arguments), row.status) << row.arguments << ": " << errors();
        EXPECT_NE(errors().find(row.told), std::string::npos) << row.arguments << ": " << errors();
        const std::string told = errors();
        EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 1) << told;
        EXPECT_FALSE(fs::exists(at("o.mov")));
    }
    EXPECT_EQ(tool("overlay in.mov o.mov --watermark missing.png"), 0) << "frames go without it";
    EXPECT_NE(errors().find("'missing.png' cannot be read"), std::string::npos) << errors();
}

TEST_F(Stream, SoundAndTimeCodePassOn) {
    makeClip("in.mov", "-f lavfi -i testsrc2=s=64x48:r=25:d=1 -f lavfi -i sine=f=500:r=48000:d=1",
             "-timecode 01:02:03:04 -c:v png -c:a pcm_s16le");
    ASSERT_EQ(tool("overlay in.mov out.mov --codec png --set AudioEnable=1"), 0) << errors();
    for (const char* name : {"in", "out"})
        makeClip(std::string(name) + ".wav", std::string("-i ") + name + ".mov", "-c:a copy");
    EXPECT_TRUE(readFile(at("in.wav")) == readFile(at("out.wav")));
    FrameSource source(at("out.mov"), bgra);
    EXPECT_EQ(source.info().timeCode, "01:02:03:04");
    EXPECT_EQ(source.info().frameCount, 25);
}

TEST_F(Stream, LevelsFollowTheSound) {
    // Half a second of silence, then a tone at half of full scale on the second channel only.
    makeClip("in.mov",
             "-f lavfi -i testsrc2=s=64x48:r=25:d=1 -f lavfi -i "
             "'aevalsrc=0|0.5*sin(2*PI*1000*t)*gte(t\\,0.5):s=48000:d=1'",
             "-c:v png -c:a pcm_s16le");
    FrameSource source(at("in.mov"), bgra);
    const std::vector<AVStream*> streams = source.packets().keepAudio();
    AudioLevels levels(streams);
    EXPECT_EQ(levels.channels(), 2U);
    const FramePtr frame(av_frame_alloc());
    for (int n = 0; source.read(*frame); ++n) {
        const double end = (n + 1) / 25.0;
        source.packets().readAudioUntil(end);
        while (const PacketPtr packet = source.packets().takeAudio())
            levels.feed(*packet);
        const AudioLevels::Levels measured = levels.takeUntil(end);
        EXPECT_EQ(measured[0], 0U) << n;
        EXPECT_NEAR(measured[1], n < 12 ? 0 : 32767, n == 12 ? 32767 : 20) << n;
    }
}

TEST_F(Stream, PeaksStayAndThenFall) {
    PeakHold hold(10.0);
    AudioLevels::Levels loud{}, silent{};
    loud[3] = 50000;
    EXPECT_EQ(hold.next(loud)[3], 50000U);
    for (int i = 0; i < 9; ++i)
        hold.next(silent);
    EXPECT_EQ(hold.next(silent)[3], 50000U) << "for a second";
    for (int i = 0; i < 9; ++i)
        hold.next(silent);
    EXPECT_NEAR(hold.next(silent)[3], 5000, 10) << "by 20 dB in the next";
}

TEST_F(Stream, ConfigKeepsExportsAndImports) {
    EXPECT_EQ(tool("config get TimeCodeX"), 0);
    EXPECT_EQ(output(), "20\n");
    EXPECT_FALSE(fs::exists(at("settings.db"))) << "asking makes no store";
    EXPECT_EQ(tool("config set TimeCodeX=33 'CustomText3=on air' CustomTextEnabled3=1"), 0);
    EXPECT_EQ(tool("config export all.txt"), 0);
    const std::string exported = readFile(at("all.txt"));
    EXPECT_NE(exported.find("\nTimeCodeX = 33\n"), std::string::npos) << exported;
    EXPECT_EQ(tool("config set TimeCodeX=1"), 0);
    writeFile(at("bad.txt"), "[zroverlay]\nTimeCodeX = 5\nTimeCodeY = x\n");
    EXPECT_EQ(tool("config import bad.txt"), 2);
    EXPECT_NE(errors().find("bad.txt:3"), std::string::npos) << errors();
    EXPECT_EQ(tool("config get TimeCodeX"), 0);
    EXPECT_EQ(output(), "1\n") << "nothing of a bad file is taken";
    EXPECT_EQ(tool("config import all.txt"), 0) << errors();
    EXPECT_EQ(tool("config export -"), 0);
    EXPECT_EQ(output(), exported);
    // What is stored is what is burnt in.
    const StreamInfo info = infoAt({25, 1});
    WorkingFrame stored(layoutOf(ptUYVY), 320, 200), told(layoutOf(ptUYVY), 320, 200);
    Burner({}, info, stored.layout(), 0).burn(stored, 0, {});
    fs::remove(at("settings.db"));
    BurnOptions options = withSettings({"TimeCodeX=33"});
    options.texts = {"", "", "", "on air"};
    Burner(options, info, told.layout(), 0).burn(told, 0, {});
    EXPECT_TRUE(bytesOf(stored) == bytesOf(told));
}

TEST(V210Words, GoThereAndBack) {
    for (const int width : {1, 5, 6, 7, 48, 50, 95}) {
        const int lineBytes = wholeLineBytes(layoutOf(ptV210), width);
        std::mt19937 random(static_cast<unsigned>(width));
        std::vector<std::uint32_t> line(static_cast<std::size_t>(lineBytes) / 4), back(line.size());
        for (std::uint32_t& word : line)
            word = static_cast<std::uint32_t>(random()) & 0x3FFFFFFF;
        std::vector<std::uint8_t> words(static_cast<std::size_t>(width * 6 + wordOverhang));
        expandV210Line(reinterpret_cast<std::uint8_t*>(line.data()), words.data(), width);
        const auto sample = [&](int pixel, int component) {
            std::uint16_t value;
            std::memcpy(&value, &words[static_cast<std::size_t>(6 * pixel + 2 * component)], 2);
            return value;
        };
        EXPECT_EQ(sample(0, 0), line[0] >> 10 & 0x3FF);
        EXPECT_EQ(sample(0, 1), line[0] & 0x3FF);
        EXPECT_EQ(sample(0, 2), line[0] >> 20);
        if (width > 5) {
            EXPECT_EQ(sample(5, 0), line[3] >> 20);
            EXPECT_EQ(sample(5, 1), line[2] >> 20) << "the chroma of a pair is at both";
            EXPECT_EQ(sample(5, 2), line[3] >> 10 & 0x3FF);
        }
        packV210Line(words.data(), reinterpret_cast<std::uint8_t*>(back.data()), width);
        for (std::size_t i = 0; i < static_cast<std::size_t>((width + 5) / 6 * 4); ++i)
            EXPECT_EQ(back[i], line[i]) << width << ", word " << i;
    }
}

std::uint32_t wordOf(WorkingFrame& frame, int word) {
    std::uint32_t value;
    std::memcpy(&value, frame.data() + 4 * word, 4);
    return value;
}

// Every sample is that of the frame that the rule names, but for the chroma of a pair on the edge.
TEST(Transitions, KeepEverySampleOfV210) {
    constexpr int width = 50, height = 6;
    const zrLayout& layout = layoutOf(ptV210);
    WorkingFrame a(layout, width, height), b(layout, width, height), out(layout, width, height);
    fillNoise(a, 1);
    fillNoise(b, 2);
    Transition transition(layout, width, height, 1, false, false);
    for (const double at : {0.0, 0.36, 1.0}) {
        transition.draw(a, b, out, static_cast<unsigned>(at * Transition::scale));
        const int edge = width * static_cast<int>(at * Transition::scale) / 65536;
        for (int x = 0; x < width / 6 * 6; ++x) {
            const auto lumaOf = [x](WorkingFrame& frame) {
                constexpr int word[] = {0, 1, 1, 2, 3, 3}, bit[] = {10, 0, 20, 10, 0, 20};
                return wordOf(frame, 4 * (x / 6) + word[x % 6]) >> bit[x % 6] & 0x3FF;
            };
            EXPECT_EQ(lumaOf(out), lumaOf(x < edge ? b : a)) << "column " << x;
        }
    }
    Transition slide(layout, width, height, 500, false, false);
    slide.draw(a, b, out, 0);
    for (int i = 0; i < 16 * 8 / 4; ++i)
        EXPECT_EQ(wordOf(out, i), wordOf(a, i) & 0x3FFFFFFF) << i;
}

TEST_F(Stream, AWipeBeginsAndEndsWithItsSources) {
    makeClip("a.mov", "-f lavfi -i testsrc2=s=96x48:r=25:d=1", "-pix_fmt yuv422p10 -c:v v210");
    makeClip("b.png", "-f lavfi -i smptebars=s=96x48", "-frames:v 1");
    makeClip("b.mov", "-loop 1 -i b.png", "-t 1 -pix_fmt yuv422p10 -c:v v210");
    ASSERT_EQ(tool("wipe a.mov b.mov out.mov --code 1 --frames 5 --hold 2 --codec v210"), 0)
        << errors();
    const std::vector<Bytes> out = v210Packets(at("out.mov")), a = v210Packets(at("a.mov")),
                             b = v210Packets(at("b.mov"));
    ASSERT_EQ(out.size(), 9U);
    EXPECT_EQ(out[0], a[0]);
    EXPECT_EQ(out[2], a[2]) << "the transition begins with A";
    EXPECT_EQ(out[6], b[4]) << "and ends with B";
    EXPECT_EQ(out[8], b[6]);
    EXPECT_NE(out[4], a[4]);
    EXPECT_NE(out[4], b[2]);
}

TEST_F(Stream, MuxKnowsEveryModeAndUndoesItsFlips) {
    makeClip("a.png", "-f lavfi -i testsrc2=s=60x40", "-frames:v 1");
    makeClip("b.mov", "-f lavfi -i smptebars=s=60x40:r=25:d=0.2", "-c:v png");
    ASSERT_EQ(tool("mux a.png b.mov out.mov --mode a --flip-a h --codec png"), 0) << errors();
    const std::vector<Bytes> frames = readAll(at("out.mov"));
    ASSERT_EQ(frames.size(), 5U);
    for (const Bytes& frame : frames)
        EXPECT_EQ(frame, frames[0]) << "flipped once, not each time again";
    const Bytes a = readAll(at("a.png")).at(0);
    for (std::size_t x = 0; x < 60; ++x)
        EXPECT_EQ(frames[0][4 * x], a[4 * (59 - x)]);
    ASSERT_EQ(tool("mux --list"), 0);
    const std::string list = output();
    EXPECT_EQ(std::count(list.begin(), list.end(), '\n'), 26);
}

} // namespace

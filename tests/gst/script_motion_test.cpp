// zrscript: what moves with time, sound and programs in Lua, and pictures over alpha.
#include "gst/gst_fixture.h"
#include "support/temp_file.h"

namespace {

using namespace gstreamer;

Bytes greyFrame(const GstVideoInfo& info) {
    return Bytes(GST_VIDEO_INFO_SIZE(&info), 60);
}

std::string labelOf(const std::string& text) {
    return "color 1 1 1; label 2 2 \"" + text + "\"";
}

std::vector<Bytes> scripted(const GstVideoInfo& info, const std::string& script,
                            const std::string& properties, int frames) {
    Harness harness("zrscript " + properties);
    g_object_set(harness.element("zrscript"), "script", script.c_str(), nullptr);
    harness.begin(info);
    std::vector<Bytes> all;
    for (int frame = 0; frame < frames; ++frame)
        all.push_back(harness.pass(greyFrame(info), info, frame));
    return all;
}

TEST(GstScriptMotion, FieldsTellOfEachFrame) {
    const struct {
        const char* text;
        const char* properties;
        std::vector<std::string> labels;
    } cases[] = {
        {"{tc}",
         "start-timecode=\"00:00:59;28\"",
         {"00:00:59;28", "00:00:59;29", "00:01:00;02", "00:01:00;03"}},
        {"{tc}", "", {"00:00:00;00", "00:00:00;01"}},
        {"{n:03} {t}", "", {"000 0.000", "001 0.033", "002 0.067"}},
        {"{expr:w} {expr:h} {expr:fps:.2}", "", {"160 24 29.97"}},
    };
    const GstVideoInfo info = infoOf("UYVY", 160, 24, 30000, 1001);
    for (const auto& [text, properties, labels] : cases) {
        const int count = static_cast<int>(labels.size());
        const std::vector<Bytes> moved = scripted(info, labelOf(text), properties, count);
        for (std::size_t i = 0; i < labels.size(); ++i)
            EXPECT_EQ(difference(moved[i], scripted(info, labelOf(labels[i]), "", 1)[0], info), "")
                << labels[i];
    }
}

// 29.97 is counted with drop-frame unless told, and these frames are not.
TEST(GstScriptMotion, BlocksFollowTheTimeCodeOfFrames) {
    const GstVideoInfo info = infoOf("UYVY", 40, 20, 30000, 1001);
    Harness harness("zrscript");
    g_object_set(harness.element("zrscript"), "script",
                 "from 10:00:00:00 to 10:00:00:02; color 1 1 1; fillrect 0 0 9 9; end", nullptr);
    harness.begin(info);
    const Bytes in = greyFrame(info);
    for (const unsigned frame : {0U, 1U, 2U, 29U}) {
        GstBuffer* buffer = bufferOf(in, frame * GST_SECOND / 30, GST_SECOND / 30);
        gst_buffer_add_video_time_code_meta_full(
            buffer, 30000, 1001, nullptr, GST_VIDEO_TIME_CODE_FLAGS_NONE, 10, 0, 0, frame, 0);
        EXPECT_EQ(difference(harness.pass(buffer), in, info) != "", frame < 2) << frame;
    }
}

TEST(GstScriptMotion, AStopDoesNotWaitForAProgram) {
    const TempFile program("function frame(d) print('begun') while true do end end");
    Pipeline pipeline("videotestsrc ! video/x-raw,format=UYVY,width=96,height=40 ! zrscript "
                      "lua-limit=1000000000000 lua-file=" +
                      std::string(program.path()) + " ! fakesink");
    pipeline.play();
    EXPECT_NE(pipeline.message(GST_MESSAGE_WARNING).find("begun"), std::string::npos);
    EXPECT_EQ(gst_element_set_state(pipeline.get(), GST_STATE_NULL), GST_STATE_CHANGE_SUCCESS);
}

TEST(GstScriptMotion, AProgramDrawsBehindTheList) {
    const TempFile program("function frame(d) d:label(2, 2, d.tc .. ' ' .. d.n) kept = d.n end");
    const GstVideoInfo info = infoOf("v210", 160, 24);
    const std::vector<Bytes> moved =
        scripted(info, "color 1 1 1", "lua-file=" + std::string(program.path()), 3);
    const char* labels[] = {"00:00:00:00 0", "00:00:00:01 1", "00:00:00:02 2"};
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(difference(moved[i], scripted(info, labelOf(labels[i]), "", 1)[0], info), "");
}

TEST(GstScriptMotion, WhatIsWrongInAProgramIsToldOnTheBus) {
    const struct {
        const char* program;
        const char* properties;
        const char* message;
        std::size_t frames;
    } cases[] = {
        {"function frame(d)\nif d.n == 2 then d:point(1) end end", "",
         ":2: point: y is missing; write point X Y [back] (in frame 2).", 2},
        {"function frame(d) while d.n == 1 do end end", "lua-limit=5000",
         ":1: more than 5000 instructions, which is the limit (in frame 1).", 1},
        {"function frame(d", "", ":1: ')' expected near <eof>.", 0},
        {"function setup(d) d.x.y = 1 end function frame() end", "",
         ":1: attempt to index a nil value (field 'x') (in setup).", 0},
    };
    for (const auto& c : cases) {
        const TempFile program(c.program);
        Pipeline pipeline("videotestsrc num-buffers=5 ! video/x-raw,format=UYVY,width=96,height=40,"
                          "framerate=25/1 ! zrscript lua-file=" +
                          std::string(program.path()) + " " + c.properties +
                          " ! appsink name=out sync=false");
        EXPECT_EQ(pipeline.frames().size(), c.frames) << c.program;
        EXPECT_EQ(pipeline.message(GST_MESSAGE_ERROR), program.path() + std::string(c.message));
    }
}

TEST(GstScriptMotion, PeaksAreThoseOfTheSound) {
    constexpr int rate = 48000;
    std::string sound;
    for (int i = 0; i < rate; ++i)
        sound.append({0x00, 0x00, 0x00, i < rate / 25 * 2 ? '\x00' : '\xC0'}); // half, from frame 2
    const TempFile file(sound);
    Pipeline pipeline("filesrc location=" + std::string(file.path()) +
                      " ! rawaudioparse format=pcm pcm-format=s16le sample-rate=48000 "
                      "num-channels=2 ! zrlevels overlay=drawn ! fakesink "
                      "videotestsrc pattern=black num-buffers=4 ! video/x-raw,format=UYVY,"
                      "width=160,height=24,framerate=25/1 ! zrscript name=drawn ! "
                      "appsink name=out sync=false");
    g_object_set(pipeline.element("drawn"), "levels-wait", 5 * GST_SECOND, "script",
                 labelOf("{expr:peak1:.2} {expr:peak2:.2}").c_str(), nullptr);
    const std::vector<Bytes> shown = pipeline.frames();
    const GstVideoInfo info = infoOf("UYVY", 160, 24);
    ASSERT_EQ(shown.size(), 4U);
    for (std::size_t i = 0; i < 4; ++i) {
        Harness harness("zrscript");
        g_object_set(harness.element("zrscript"), "script",
                     labelOf(i < 2 ? "0.00 0.00" : "0.00 0.50").c_str(), nullptr);
        harness.begin(info);
        Bytes black(GST_VIDEO_INFO_SIZE(&info));
        for (std::size_t k = 0; k < black.size(); ++k)
            black[k] = k % 2 == 0 ? 128 : 16;
        EXPECT_EQ(difference(shown[i], harness.pass(black, info, 0), info), "") << i;
    }
}

// A picture of one colour, half transparent.
std::string makePicture() {
    const std::string path = testing::TempDir() + "zrdraw_script_motion.png";
    Pipeline pipeline("videotestsrc pattern=solid-color foreground-color=0x80ff0000 num-buffers=1 "
                      "! video/x-raw,format=RGBA,width=8,height=4 ! pngenc ! filesink location=" +
                      path);
    pipeline.play();
    EXPECT_NE(pipeline.message(GST_MESSAGE_EOS), "");
    return path;
}

TEST(GstScriptMotion, PicturesBlendWithTheAlphaOfTheFrame) {
    const std::string path = makePicture();
    const struct {
        const char* format;
        const char* script; // before the picture
        unsigned char alpha;
        unsigned char red, alphaAfter;
    } cases[] = {
        {"BGRA", "", 255, 128, 255},
        {"BGRA", "", 0, 255, 128},
        {"BGRA", "color 0 0 0; fillrect 0 0 20 10;", 0, 128, 255},
        {"BGRx", "", 0, 128, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.format + std::string(c.script));
        const GstVideoInfo info = infoOf(c.format, 24, 12);
        Bytes frame(GST_VIDEO_INFO_SIZE(&info), 0);
        for (std::size_t i = 3; i < frame.size(); i += 4)
            frame[i] = c.alpha;
        Harness harness("zrscript");
        g_object_set(harness.element("zrscript"), "script",
                     (std::string(c.script) + "image 4 2 " + path).c_str(), nullptr);
        harness.begin(info);
        const Bytes out = harness.pass(frame, info, 0);
        ASSERT_EQ(out.size(), frame.size());
        const auto pixel = [&](int x, int y) {
            return &out[static_cast<std::size_t>(4 * (24 * y + x))];
        };
        EXPECT_NEAR(pixel(5, 3)[2], c.red, 1);
        if (GST_VIDEO_INFO_HAS_ALPHA(&info)) {
            EXPECT_NEAR(pixel(5, 3)[3], c.alphaAfter, 1);
            EXPECT_EQ(pixel(22, 11)[3], c.alpha) << "what nothing was drawn on";
        }
        EXPECT_EQ(pixel(22, 11)[2], 0);
    }
    unlink(path.c_str());
}

} // namespace

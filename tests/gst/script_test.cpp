// zrscript: the library's drawing in every format, and scripts that are wrong.
#include "gst/gst_fixture.h"
#include "script/player.h"
#include "support/temp_file.h"

namespace {

using namespace gstreamer;

constexpr const char* drawing =
    "color 1 0.5 0; fillrect 3 2 40 20; backcolor 0 0 1; color 1 1 1; scale 2; "
    "label 8 4 \"On air\" opaque; line 0 0 80 35; circle 50 20 12";

// What the library draws on a frame whose colours are BT.601.
Bytes drawn(const Bytes& frame, const GstVideoInfo& info, const std::string& script) {
    Bytes canvas = frame;
    const zrLayout& layout = *layoutOf(GST_VIDEO_INFO_FORMAT(&info));
    const int pitch = GST_VIDEO_INFO_PLANE_STRIDE(&info, 0);
    canvas.resize(
        zrFrameRoom(layout, GST_VIDEO_INFO_WIDTH(&info), GST_VIDEO_INFO_HEIGHT(&info), pitch));
    ZRDraw* draw = nullptr;
    EXPECT_EQ(GetDraw(layout.code, GST_VIDEO_INFO_WIDTH(&info), GST_VIDEO_INFO_HEIGHT(&info), pitch,
                      reinterpret_cast<char*>(canvas.data()), draw),
              0U);
    if (GST_VIDEO_INFO_IS_YUV(&info))
        draw->SetYCbCrMode(cmRec601);
    drawOnce(
        parseScript(script, "test"), *draw,
        {&layout, canvas.data(), GST_VIDEO_INFO_WIDTH(&info), GST_VIDEO_INFO_HEIGHT(&info), pitch});
    ReleaseDraw(draw);
    canvas.resize(frame.size());
    return canvas;
}

TEST(GstScript, DrawsInEveryFormatThatALayoutHas) {
    int formats = 0;
    for (int format = GST_VIDEO_FORMAT_ENCODED + 1; format <= GST_VIDEO_FORMAT_RGBA64_BE;
         ++format) {
        if (!layoutOf(static_cast<GstVideoFormat>(format)))
            continue;
        ++formats;
        const char* name = gst_video_format_to_string(static_cast<GstVideoFormat>(format));
        for (const int width : {84, 87}) {
            GstVideoInfo info = infoOf(name, width, 36);
            info.colorimetry.matrix = GST_VIDEO_INFO_IS_YUV(&info) ? GST_VIDEO_COLOR_MATRIX_BT601
                                                                   : GST_VIDEO_COLOR_MATRIX_RGB;
            Harness harness("zrscript");
            g_object_set(harness.element("zrscript"), "script", drawing, nullptr);
            harness.begin(info);
            const Bytes in = noiseFrame(info, 11);
            Bytes out = harness.pass(in, info, 0), expected = drawn(in, info, drawing);
            ASSERT_EQ(out.size(), expected.size()) << name;
            if (GST_VIDEO_INFO_HAS_ALPHA(&info)) { // which is the element's own
                const std::size_t pixel = layoutOf(GST_VIDEO_INFO_FORMAT(&info))->line.groupBytes;
                const int offset = GST_VIDEO_INFO_COMP_POFFSET(&info, GST_VIDEO_COMP_A);
                for (std::size_t i = static_cast<std::size_t>(offset); i < out.size(); i += pixel)
                    for (std::size_t byte = i; byte < i + pixel / 4; ++byte)
                        out[byte] = expected[byte] = 0;
            }
            // The bytes that fill lines up are nobody's.
            const auto stride = static_cast<std::size_t>(GST_VIDEO_INFO_PLANE_STRIDE(&info, 0));
            const auto line = static_cast<std::size_t>(
                wholeLineBytes(*layoutOf(GST_VIDEO_INFO_FORMAT(&info)), width));
            for (std::size_t i = 0; i < out.size(); ++i)
                if (i % stride >= line)
                    out[i] = expected[i] = 0;
            EXPECT_EQ(difference(out, expected, info), "") << name << ", " << width;
        }
    }
    EXPECT_EQ(formats, 17) << "rows of the table";
}

TEST(GstScript, FileAndTextMayChangeWhileItRuns) {
    const TempFile file("color 1 1 1\nfillrect 0 0 9 10\n");
    const GstVideoInfo info = infoOf("BGRx", 40, 20);
    Harness harness("zrscript script-file=" + std::string(file.path()));
    harness.begin(info);
    const Bytes in = noiseFrame(info, 12);
    const std::string first = "color 1 1 1; fillrect 0 0 9 10";
    EXPECT_EQ(difference(harness.pass(in, info, 0), drawn(in, info, first), info), "");
    g_object_set(harness.element("zrscript"), "script", "color 1 0 0; point 20 10", nullptr);
    EXPECT_EQ(difference(harness.pass(in, info, 1),
                         drawn(in, info, first + "; color 1 0 0; point 20 10"), info),
              "");
}

TEST(GstScript, WhatIsWrongIsToldOnTheBus) {
    const struct {
        const char* format;
        const char* properties;
        GstMessageType type;
        const char* message;
        std::size_t frames;
    } cases[] = {
        {"UYVY", "script=\"color 1 0 0; fillrct 1 2 3 4\"", GST_MESSAGE_ERROR,
         "script:1:14: unknown command \"fillrct\"; did you mean fillrect?", 0},
        {"UYVY", "script=\"line 0 0 5\"", GST_MESSAGE_ERROR, "script:1:1: line: y1 is missing", 0},
        {"UYVY", "script-file=missing.zrd", GST_MESSAGE_ERROR, "cannot read script 'missing.zrd'",
         0},
        {"UYVY", "script=\"point 200 200\"", GST_MESSAGE_WARNING, "point was refused", 5},
        {"v210", "script=\"transparency 0.5; point 1 1\"", GST_MESSAGE_WARNING,
         "without transparency", 5},
    };
    for (const auto& c : cases) {
        Pipeline pipeline(std::string("videotestsrc num-buffers=5 ! video/x-raw,width=96,"
                                      "height=40,framerate=25/1,format=") +
                          c.format + " ! zrscript " + c.properties +
                          " ! appsink name=out sync=false");
        EXPECT_EQ(pipeline.frames().size(), c.frames) << c.properties;
        const std::string message = pipeline.message(c.type);
        EXPECT_NE(message.find(c.message), std::string::npos) << c.properties << ": " << message;
    }
}

// A handler of messages runs in the thread that posts them.
TEST(GstScript, WhoIsToldOfAnErrorMayAskForTheScript) {
    Pipeline pipeline("videotestsrc num-buffers=5 ! video/x-raw,format=UYVY ! zrscript name=script "
                      "script=\"line 0\" ! appsink name=out sync=false");
    GstBus* bus = gst_element_get_bus(pipeline.get());
    std::string asked;
    struct Told {
        GstElement* script;
        std::string* asked;
    } told{pipeline.element("script"), &asked};
    gst_bus_set_sync_handler(
        bus,
        [](GstBus*, GstMessage* message, gpointer data) {
            if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) {
                const auto& to = *static_cast<Told*>(data);
                gchar* text = nullptr;
                g_object_get(to.script, "script", &text, nullptr);
                *to.asked = text;
                g_free(text);
            }
            return GST_BUS_PASS;
        },
        &told, nullptr);
    EXPECT_TRUE(pipeline.frames().empty());
    gst_bus_set_sync_handler(bus, nullptr, nullptr, nullptr);
    gst_object_unref(bus);
    EXPECT_EQ(asked, "line 0");
}

} // namespace

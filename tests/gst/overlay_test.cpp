// zroverlay: its frames against those of the library, and what may happen to it while it runs.
#include "common/overlay_stream.h"
#include "gst/gst_fixture.h"
#include "support/temp_file.h"
#include "zrdraw/zrhost.h"

#include <functional>

namespace {

using namespace gstreamer;

// What the library makes of a frame.
Bytes burnt(Bytes frame, const GstVideoInfo& info, const std::function<void(CZrOverlay&)>& set,
            unsigned timeCode, unsigned type, bool interlaced = false) {
    CZrOverlay overlay;
    overlay.Enabled = overlay.TimeCodeLTCEnable = 1;
    set(overlay);
    KPXSYSTEM system{};
    const PictureView picture = gstreamer::viewOf(frame, info);
    overlay.Create(describeStream({picture.layout, picture.width, picture.height, info.fps_n,
                                   info.fps_d, interlaced})
                       .get(),
                   &system);
    overlay.tcType = type;
    const auto record = std::make_unique<DFRAME>();
    record->videoData = reinterpret_cast<char*>(frame.data());
    record->ltc = record->vitc = timeCode;
    overlay.BurnIn(record.get(), nullptr, nullptr, 0);
    return frame;
}

void moveTimeCode(CZrOverlay& overlay) {
    overlay.TimeCodeY = 4;
    overlay.TimeCodeX = 6;
    overlay.TimeCodeSize = 1;
}

constexpr const char* moved = " time-code-x=6 time-code-y=4 time-code-size=1";

TEST(GstOverlay, FramesAreTheLibrarysInEveryFormat) {
    for (const char* format : {"UYVY", "v210", "BGRx"})
        for (const int width : {96, 98}) {
            const GstVideoInfo info = infoOf(format, width, 40);
            Harness harness(std::string("zroverlay text-2=\"Studio 3\" text-2-x=2 text-2-y=18 "
                                        "time-code-vitc-enable=true") +
                            moved);
            harness.begin(info);
            for (int frame = 0; frame < 3; ++frame) {
                const Bytes in = noiseFrame(info, static_cast<unsigned>(frame));
                const auto set = [](CZrOverlay& overlay) {
                    moveTimeCode(overlay);
                    overlay.TimeCodeVITCEnable = 1;
                    setOverlayText(overlay, 2, "Studio 3");
                    overlay.CustomTextEnabled[2] = 1;
                    overlay.CustomTextX[2] = 2;
                    overlay.CustomTextY[2] = 18;
                };
                EXPECT_EQ(
                    difference(harness.pass(in, info, frame),
                               burnt(in, info, set, static_cast<unsigned>(frame), zrTimeCode25),
                               info),
                    "")
                    << format << ", " << width << " columns, frame " << frame;
            }
        }
}

TEST(GstOverlay, LayersAreOpaqueAndAllElseKeepsItsAlpha) {
    const GstVideoInfo info = infoOf("BGRA", 120, 30);
    Harness harness(std::string("zroverlay") + moved);
    harness.begin(info);
    const Bytes in = noiseFrame(info, 1);
    const Bytes out = harness.pass(in, info, 0);
    const Bytes expected = burnt(in, info, moveTimeCode, 0, zrTimeCode25);
    ASSERT_EQ(out.size(), in.size());
    int drawn = 0;
    for (std::size_t i = 0; i < in.size(); i += 4) {
        const bool isDrawn = std::memcmp(&in[i], &expected[i], 3) != 0;
        drawn += isDrawn;
        EXPECT_EQ(std::memcmp(&out[i], &expected[i], 3), 0) << i;
        if (isDrawn) // the other way round does not hold: the colour may have been the same
            EXPECT_EQ(out[i + 3], 255) << i;
        else if (out[i + 3] != 255)
            EXPECT_EQ(out[i + 3], in[i + 3]) << i;
    }
    EXPECT_GT(drawn, 500);
}

// Whatever the width, and where frames are worked on in a copy.
TEST(GstOverlay, NothingChangesWhereNothingIsDrawn) {
    for (const char* format : {"UYVY", "v210", "BGRA"})
        for (const int width : {1, 2, 47, 50, 319}) {
            const GstVideoInfo info = infoOf(format, width, 6);
            Harness harness("zroverlay time-code-ltc-enable=false");
            harness.begin(info);
            const Bytes in = noiseFrame(info, 2);
            EXPECT_EQ(difference(harness.pass(in, info, 0), in, info), "") << format << width;
        }
}

TEST(GstOverlay, ASecondRunKnowsNothingOfTheFirst) {
    const GstVideoInfo info = infoOf("UYVY", 400, 40);
    const auto set = [](CZrOverlay& overlay) {
        overlay.TimeCodeLTCEnable = 0;
        overlay.SourceFormatEnable = 1;
        overlay.SourceFormatX = overlay.SourceFormatY = 2;
    };
    Harness harness("zroverlay time-code-ltc-enable=false source-format-enable=true "
                    "source-format-x=2 source-format-y=2");
    harness.begin(info);
    const Bytes in = noiseFrame(info, 3);
    gst_harness_push_event(
        harness.get(), gst_event_new_tag(gst_tag_list_new(GST_TAG_CONTAINER_FORMAT, "Matroska",
                                                          GST_TAG_VIDEO_CODEC, "H.264", nullptr)));
    const auto tagged = [&](CZrOverlay& overlay) { set(overlay); };
    const Bytes plain = burnt(in, info, tagged, 0, zrTimeCode25);
    EXPECT_NE(difference(harness.pass(in, info, 0), plain, info), "") << "MKV, H.264";
    gst_harness_push_event(harness.get(), gst_event_new_stream_start("another"));
    EXPECT_EQ(difference(harness.pass(in, info, 1), plain, info), "");
}

TEST(GstOverlay, TimeCodeComesFromTheBufferOrFromItsTime) {
    const struct {
        const char* why;
        int rate, scale;
        const char* start;
        GstClockTime time;
        unsigned frames, type;
    } cases[] = {
        {"counted by time", 25, 1, "", 2 * GST_SECOND, 50, zrTimeCode25},
        {"from a start on", 25, 1, "10:00:00:00", GST_SECOND, 36000 * 25 + 25, zrTimeCode25},
        {"drop-frame is usual at 29.97", 30000, 1001, "", GST_SECOND, 30, zrTimeCode30Drop},
        {"a colon asks for none", 30000, 1001, "00:01:00:00", 0, 1800, zrTimeCode30},
        {"the frame nearest to a time", 25, 1, "", 79 * GST_MSECOND, 2, zrTimeCode25},
        {"a rate without time code", 15, 1, "", GST_SECOND, 30, zrTimeCode30},
    };
    for (const auto& c : cases) {
        const GstVideoInfo info = infoOf("UYVY", 120, 20, c.rate, c.scale);
        Harness harness(std::string("zroverlay start-timecode=\"") + c.start + '"' + moved);
        harness.begin(info);
        const Bytes in = noiseFrame(info, 7);
        EXPECT_EQ(difference(harness.pass(bufferOf(in, c.time, GST_CLOCK_TIME_NONE)),
                             burnt(in, info, moveTimeCode, c.frames, c.type), info),
                  "")
            << c.why;
    }
    const GstVideoInfo info = infoOf("UYVY", 120, 20, 30000, 1001);
    Harness harness(std::string("zroverlay start-timecode=10:00:00:00") + moved);
    harness.begin(info);
    const Bytes in = noiseFrame(info, 8);
    GstBuffer* buffer = bufferOf(in, 0, GST_CLOCK_TIME_NONE);
    gst_buffer_add_video_time_code_meta_full(buffer, 30000, 1001, nullptr,
                                             GST_VIDEO_TIME_CODE_FLAGS_DROP_FRAME, 1, 10, 0, 2, 0);
    EXPECT_EQ(
        difference(harness.pass(buffer),
                   burnt(in, info, moveTimeCode, (3600 + 600) * 30 - 2 * 63 + 2, zrTimeCode30Drop),
                   info),
        "")
        << "the buffer's own wins";
}

// Lines with gaps are worked on in a copy; the gaps stay.
TEST(GstOverlay, StridesOfTheBufferAreHonoured) {
    const GstVideoInfo info = infoOf("UYVY", 100, 20);
    const std::size_t stride = 256;
    const Bytes in = noise(stride * 20, 3);
    GstBuffer* buffer = bufferOf(in, 0, 40 * GST_MSECOND);
    gsize offsets[GST_VIDEO_MAX_PLANES] = {};
    gint strides[GST_VIDEO_MAX_PLANES] = {static_cast<gint>(stride)};
    gst_buffer_add_video_meta_full(buffer, GST_VIDEO_FRAME_FLAG_NONE, GST_VIDEO_FORMAT_UYVY, 100,
                                   20, 1, offsets, strides);
    Harness harness(std::string("zroverlay") + moved);
    harness.begin(info);
    const Bytes out = harness.pass(buffer);
    Bytes packed;
    for (std::size_t y = 0; y < 20; ++y)
        packed.insert(packed.end(), in.begin() + static_cast<std::ptrdiff_t>(y * stride),
                      in.begin() + static_cast<std::ptrdiff_t>(y * stride + 200));
    const Bytes expected = burnt(packed, info, moveTimeCode, 0, zrTimeCode25);
    ASSERT_EQ(out.size(), in.size());
    for (std::size_t i = 0; i < out.size(); ++i) {
        const std::size_t x = i % stride;
        EXPECT_EQ(out[i], x < 200 ? expected[i / stride * 200 + x] : in[i]) << i;
    }
}

TEST(GstOverlay, FramesThatOthersHoldAreNotDrawnOn) {
    const GstVideoInfo info = infoOf("UYVY", 100, 20);
    Harness harness(std::string("zroverlay") + moved);
    harness.begin(info);
    const Bytes in = noiseFrame(info, 4);
    const Owned<GstBuffer> held(bufferOf(in, 0, 40 * GST_MSECOND));
    EXPECT_NE(harness.pass(gst_buffer_ref(held.get())), in);
    EXPECT_EQ(bytesOf(held.get()), in);
    g_object_set(harness.element("zroverlay"), "enabled", FALSE, nullptr);
    EXPECT_EQ(harness.pass(gst_buffer_ref(held.get())), in) << "an overlay that is off";
    g_object_set(harness.element("zroverlay"), "enabled", TRUE, nullptr);
    EXPECT_NE(harness.pass(gst_buffer_ref(held.get())), in);
}

TEST(GstOverlay, AControllerMovesALayer) {
    const GstVideoInfo info = infoOf("UYVY", 200, 20);
    Harness harness(std::string("zroverlay") + moved);
    GstObject* element = GST_OBJECT(harness.element("zroverlay"));
    controlOverASecond(element, "time-code-x", 100.0);
    harness.begin(info);
    const Bytes in = noiseFrame(info, 5);
    for (const unsigned frame : {0U, 5U, 20U}) {
        const auto set = [frame](CZrOverlay& overlay) {
            moveTimeCode(overlay);
            overlay.TimeCodeX = frame * 4;
        };
        EXPECT_EQ(difference(harness.pass(in, info, static_cast<int>(frame)),
                             burnt(in, info, set, frame, zrTimeCode25), info),
                  "")
            << frame;
    }
}

TEST(GstOverlay, CapsMayChangeInTheMiddle) {
    Harness harness(std::string("zroverlay") + moved);
    for (const char* format : {"UYVY", "BGRx", "v210", "UYVY"})
        for (const int width : {96, 144}) {
            const GstVideoInfo info = infoOf(format, width, 24, 50);
            harness.begin(info);
            const Bytes in = noiseFrame(info, 6);
            EXPECT_EQ(difference(harness.pass(in, info, 10),
                                 burnt(in, info, moveTimeCode, 10, zrTimeCode50), info),
                      "")
                << format << ' ' << width;
        }
}

TEST(GstOverlay, InterlacedAndFieldBuffersAreServed) {
    GstVideoInfo info = infoOf("UYVY", 120, 40);
    info.interlace_mode = GST_VIDEO_INTERLACE_MODE_INTERLEAVED;
    Harness harness("zroverlay time-code-x=6 time-code-y=5 time-code-size=2");
    harness.begin(info);
    const Bytes in = noiseFrame(info, 9);
    const auto set = [](CZrOverlay& overlay) {
        overlay.TimeCodeX = 6;
        overlay.TimeCodeY = 5;
    };
    EXPECT_EQ(
        difference(harness.pass(in, info, 1), burnt(in, info, set, 1, zrTimeCode25, true), info),
        "");
    Harness fields(std::string("zroverlay") + moved);
    gst_harness_set_src_caps_str(fields.get(),
                                 "video/x-raw(format:Interlaced), format=UYVY, width=120, "
                                 "height=40, framerate=25/1, interlace-mode=alternate");
    const GstVideoInfo half = infoOf("UYVY", 120, 20);
    const Bytes field = noiseFrame(half, 10);
    GstBuffer* buffer = bufferOf(field, 0, GST_CLOCK_TIME_NONE);
    GST_BUFFER_FLAG_SET(buffer, GST_VIDEO_BUFFER_FLAG_TOP_FIELD);
    EXPECT_EQ(
        difference(fields.pass(buffer), burnt(field, half, moveTimeCode, 0, zrTimeCode25), half),
        "");
}

// A picture is laid on and moved over both edges, as in the library's BGRA.
TEST(GstOverlay, AWatermarkMayMoveOverEveryEdge) {
    for (const auto& [format, wide] :
         {std::pair{"UYVY", 64U}, {"UYVY", 200U}, {"v210", 64U}, {"BGRx", 64U}, {"BGRx", 200U}}) {
        const TempFile file("P6\n" + std::to_string(wide) + " 16\n255\n" +
                            std::string(std::size_t{wide} * 16 * 3, '\xFF'));
        const GstVideoInfo info = infoOf(format, 96, 40);
        Harness harness("zroverlay time-code-ltc-enable=false watermark=" +
                        std::string(file.path()));
        harness.begin(info);
        Bytes in(GST_VIDEO_INFO_SIZE(&info), 0);
        for (const guint x : {0U, 10U, 41U, 94U, 95U, 4U, 200U})
            for (const guint y : {0U, 30U, 39U, 40U}) {
                g_object_set(harness.element("zroverlay"), "watermark-x", x, "watermark-y", y,
                             nullptr);
                Bytes out = harness.pass(in, info, 0);
                ASSERT_EQ(out.size(), in.size());
                const PictureView picture = gstreamer::viewOf(out, info);
                ZRDraw* draw = nullptr;
                ASSERT_EQ(GetDraw(picture.layout->code, 96, 40, picture.pitch,
                                  reinterpret_cast<char*>(out.data()), draw),
                          0U);
                const guint left = std::string_view(format) == "BGRx" ? x : x & ~1U;
                for (const guint column : {0U, 2U, 12U, 38U, 50U, 94U})
                    for (const guint line : {0U, 15U, 16U, 29U, 31U, 39U}) {
                        unsigned luma = 0, cb = 0, cr = 0, alpha = 0;
                        draw->GetPixelYCbCr10(static_cast<int>(column), static_cast<int>(line),
                                              luma, cb, cr, alpha);
                        const bool inside =
                            column >= left && column < left + wide && line >= y && line < y + 16;
                        EXPECT_EQ(luma > 500, inside)
                            << format << ' ' << x << ", " << y << ": " << column << ", " << line;
                    }
                ReleaseDraw(draw);
            }
    }
}

TEST(GstOverlay, PlaysPausesSeeksAndFlushes) {
    Pipeline pipeline("videotestsrc num-buffers=100 ! video/x-raw,format=UYVY,width=96,height=40,"
                      "framerate=25/1 ! zroverlay ! appsink name=out sync=false max-buffers=1");
    for (const GstState state : {GST_STATE_PAUSED, GST_STATE_PLAYING, GST_STATE_PAUSED,
                                 GST_STATE_READY, GST_STATE_PLAYING}) {
        gst_element_set_state(pipeline.get(), state);
        EXPECT_EQ(gst_element_get_state(pipeline.get(), nullptr, nullptr, 5 * GST_SECOND),
                  GST_STATE_CHANGE_SUCCESS);
    }
    EXPECT_TRUE(pipeline.pull());
    ASSERT_TRUE(gst_element_seek_simple(pipeline.get(), GST_FORMAT_TIME, GST_SEEK_FLAG_FLUSH,
                                        2 * GST_SECOND));
    const Owned<GstSample> sample = pipeline.pull();
    ASSERT_TRUE(sample);
    EXPECT_EQ(GST_BUFFER_PTS(gst_sample_get_buffer(sample.get())), 2 * GST_SECOND);
}

} // namespace

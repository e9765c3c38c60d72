// zrwipe and zrmux: their frames against the library's, and sources that come and go.
#include "common/mux_modes.h"
#include "common/transition.h"
#include "common/wipe_names.h"
#include "gst/gst_fixture.h"

namespace {

using namespace gstreamer;

constexpr const char* size = ",width=96,height=40,framerate=25/1";

// Both sources as they are, without the element.
std::vector<Bytes> framesOf(const std::string& source, const std::string& format) {
    return Pipeline(source + " ! video/x-raw,format=" + format + size +
                    " ! appsink name=out sync=false")
        .frames();
}

std::string pairOf(const std::string& element, const std::string& a, const std::string& b,
                   const std::string& format) {
    const std::string caps = " ! video/x-raw,format=" + format + size;
    return element + " name=pair ! appsink name=out sync=false " + a + caps + " ! pair.sink_0 " +
           b + caps + " ! pair.sink_1";
}

constexpr const char* bars = "videotestsrc num-buffers=3";
constexpr const char* pinwheel = "videotestsrc pattern=pinwheel num-buffers=3";

TEST(GstWipe, FramesAreTheLibrarysInEveryFormat) {
    for (const std::string format :
         {"v210", "UYVY", "YUY2", "YVYU", "VYUY", "BGRA", "xRGB", "RGB", "BGR", "ARGB64"}) {
        const GstVideoInfo info = infoOf(format.c_str(), 96, 40);
        std::vector<Bytes> a = framesOf(bars, format), b = framesOf(pinwheel, format);
        for (const std::string code : {"dissolve", "rectangle", "slide-left"})
            for (const bool swap : {false, true}) {
                const std::string element =
                    "zrwipe position=0.3 code=" + code + " swap=" + (swap ? "true" : "false");
                const std::vector<Bytes> shown =
                    Pipeline(pairOf(element, bars, pinwheel, format)).frames();
                ASSERT_EQ(shown.size(), 3U) << format;
                Transition transition(*layoutOf(GST_VIDEO_INFO_FORMAT(&info)), 96, 40,
                                      wipeCodeOf(code), swap, false);
                for (std::size_t i = 0; i < shown.size(); ++i) {
                    Bytes expected(a[i].size());
                    transition.draw(gstreamer::viewOf(a[i], info), gstreamer::viewOf(b[i], info),
                                    gstreamer::viewOf(expected, info), 19661);
                    EXPECT_EQ(difference(shown[i], expected, info), "")
                        << format << ' ' << code << ' ' << swap << ' ' << i;
                }
            }
    }
}

TEST(GstWipe, AControllerMovesThePosition) {
    Pipeline pipeline(pairOf("zrwipe code=horizontal", "videotestsrc pattern=white num-buffers=25",
                             "videotestsrc pattern=black num-buffers=25", "BGRx"));
    GstObject* wipe = GST_OBJECT(pipeline.element("pair"));
    controlOverASecond(wipe, "position", 1.0);
    const std::vector<Bytes> shown = pipeline.frames();
    ASSERT_EQ(shown.size(), 25U);
    for (std::size_t i = 0; i < shown.size(); ++i) {
        int dark = 0;
        for (std::size_t x = 0; x < 96; ++x)
            dark += shown[i][4 * x] < 128;
        EXPECT_NEAR(dark, 96.0 * static_cast<double>(i) / 25, 1) << i;
    }
}

// As other mixing elements do: where a source has nothing, there is black.
TEST(GstWipe, SourcesMayBeginLateAndEndEarly) {
    const auto isWhite = [](const Bytes& frame, std::size_t column) {
        return frame[4 * column] > 128;
    };
    const std::string white = "videotestsrc pattern=white num-buffers=";
    const struct {
        const char* why;
        std::string a, b;
        std::size_t frames;
        std::vector<std::pair<std::size_t, std::size_t>> left, right; // [first, end) that are white
    } cases[] = {
        {"both", white + "5", white + "5", 5, {{0, 5}}, {{0, 5}}},
        {"B begins late",
         white + "8",
         white + "3 timestamp-offset=200000000",
         8,
         {{0, 8}},
         {{5, 8}}},
        {"B ends early", white + "8", white + "3", 8, {{0, 8}}, {{0, 3}}},
        {"A ends early", white + "3", white + "8", 8, {{0, 3}}, {{0, 8}}},
    };
    for (const auto& c : cases) {
        // B comes in from the left.
        const std::vector<Bytes> shown =
            Pipeline(pairOf("zrwipe code=horizontal position=0.5", c.b, c.a, "BGRx")).frames();
        ASSERT_EQ(shown.size(), c.frames) << c.why;
        const auto within = [](const auto& ranges, std::size_t i) {
            return std::any_of(ranges.begin(), ranges.end(), [i](const auto& range) {
                return i >= range.first && i < range.second;
            });
        };
        for (std::size_t i = 0; i < shown.size(); ++i) {
            EXPECT_EQ(isWhite(shown[i], 2), within(c.left, i)) << c.why << ", frame " << i;
            EXPECT_EQ(isWhite(shown[i], 90), within(c.right, i)) << c.why << ", frame " << i;
        }
    }
}

TEST(GstWipe, ALiveSourceThatIsLateHoldsNobodyUp) {
    Pipeline pipeline("zrwipe name=pair code=horizontal position=0.5 ! appsink name=out sync=false "
                      "videotestsrc is-live=true pattern=white num-buffers=10 ! "
                      "video/x-raw,format=BGRx,width=96,height=40,framerate=25/1 ! pair.sink_0 "
                      "videotestsrc is-live=true pattern=white num-buffers=10 ! "
                      "video/x-raw,format=BGRx,width=96,height=40,framerate=25/1 ! "
                      "identity sleep-time=90000 ! pair.sink_1");
    const std::vector<Bytes> shown = pipeline.frames();
    EXPECT_GE(shown.size(), 9U);
}

TEST(GstWipe, OtherSizesAndFormatsAreConverted) {
    const std::vector<Bytes> shown =
        Pipeline("zrwipe name=pair code=horizontal position=0.5 ! video/x-raw,format=v210 ! "
                 "appsink name=out sync=false videotestsrc pattern=white num-buffers=2 ! "
                 "video/x-raw,format=v210,width=96,height=40,framerate=25/1 ! pair.sink_0 "
                 "videotestsrc pattern=white num-buffers=2 ! "
                 "video/x-raw,format=BGRA,width=48,height=20,framerate=25/1 ! pair.sink_1")
            .frames();
    ASSERT_EQ(shown.size(), 2U);
    const GstVideoInfo info = infoOf("v210", 96, 40);
    ASSERT_EQ(shown[0].size(), GST_VIDEO_INFO_SIZE(&info));
    for (const std::size_t x : {std::size_t{0}, std::size_t{224}}) { // bytes of a line
        std::uint32_t word = 0;
        std::memcpy(&word, &shown[0][20 * 256 + x], sizeof word);
        EXPECT_GT(word >> 10 & 0x3FF, 900U) << x;
    }
}

TEST(GstMux, EveryModeIsTheLibrarys) {
    for (const std::string format : {"BGRA", "RGBx", "xRGB"}) {
        const GstVideoInfo info = infoOf(format.c_str(), 96, 40);
        std::vector<Bytes> a = framesOf(bars, format), b = framesOf(pinwheel, format);
        for (const MuxModeName& mode : muxModeNames()) {
            const std::vector<Bytes> shown =
                Pipeline(
                    pairOf(std::string("zrmux divider=true flip-b=both gain=3 channel=1 mode=") +
                               mode.name,
                           bars, pinwheel, format))
                    .frames();
            ASSERT_EQ(shown.size(), 3U) << mode.name;
            MuxSettings settings;
            settings.mode = mode.mode;
            settings.gain = 3;
            settings.channels = 0xFF00;
            settings.divider = true;
            settings.flips = zrMuxFlipBHorizontal | zrMuxFlipBVertical;
            Bytes first = a[1], second = b[1], expected(first.size());
            composeMux(parametersOf(settings), gstreamer::viewOf(first, info),
                       gstreamer::viewOf(second, info), gstreamer::viewOf(expected, info));
            EXPECT_EQ(difference(shown[1], expected, info), "") << format << ' ' << mode.name;
        }
    }
}

TEST(GstMux, WhatLiesBeyondThePictureHarmsNothing) {
    const struct {
        const char* properties;
        const char* warning;
    } cases[] = {
        {"divider=true split=96", ""},
        {"divider=true split=32767", ""},
        {"mode=split-lines divider=true split=40", ""},
        {"grid-percent=1", "cannot be cut into 100 parts"},
        {"grid-width=64", ""},
        {"grid-width=32767 grid-height=1", ""},
    };
    for (const auto& c : cases) {
        Pipeline pipeline(pairOf(std::string("zrmux ") + c.properties, bars, pinwheel, "BGRA"));
        EXPECT_EQ(pipeline.frames().size(), 3U) << c.properties;
        if (*c.warning)
            EXPECT_NE(pipeline.message(GST_MESSAGE_WARNING).find(c.warning), std::string::npos);
    }
}

TEST(GstPair, ThereAreTwoSinks) {
    const Owned<GstElement> pair(
        GST_ELEMENT(gst_object_ref_sink(gst_element_factory_make("zrwipe", nullptr))));
    const struct {
        const char* asked;
        const char* given;
    } cases[] = {
        {"sink_1", "sink_1"}, {"sink_%u", "sink_0"}, {"sink_%u", nullptr}, {"sink_2", nullptr}};
    std::vector<GstPad*> pads;
    for (const auto& c : cases) {
        GstPad* pad = gst_element_request_pad_simple(pair.get(), c.asked);
        EXPECT_EQ(pad != nullptr, c.given != nullptr) << c.asked;
        if (!pad)
            continue;
        EXPECT_STREQ(GST_PAD_NAME(pad), c.given);
        pads.push_back(pad);
    }
    gst_element_release_request_pad(pair.get(), pads[1]);
    gst_object_unref(pads[1]);
    pads[1] = gst_element_request_pad_simple(pair.get(), "sink_%u");
    ASSERT_NE(pads[1], nullptr);
    EXPECT_STREQ(GST_PAD_NAME(pads[1]), "sink_0") << "the one that was released";
    for (GstPad* pad : pads)
        gst_object_unref(pad);
}

} // namespace

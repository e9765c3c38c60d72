// zrlevels: the sound passes as it is, and the meters show each frame's own peaks.
#include "common/meter_levels.h"
#include "common/overlay_stream.h"
#include "common/peak_hold.h"
#include "gst/gst_fixture.h"
#include "support/temp_file.h"
#include "zrdraw/zrhost.h"

namespace {

using namespace gstreamer;

constexpr int rate = 48000, frameSamples = rate / 25, frames = 12;

// The amplitude of a channel in a frame: steps up in the left, down in the right channel.
int amplitudeOf(int frame, int channel) {
    return 2500 * (channel == 0 ? frame + 1 : frames - frame);
}

void append(std::string& bytes, std::uint32_t number, int count) {
    for (int i = 0; i < count; ++i)
        bytes += static_cast<char>(number >> (8 * i) & 0xFF);
}

// A file whose peaks are known: one positive or negative sample in each frame and channel.
std::string waveFile() {
    std::vector<std::int16_t> samples(std::size_t{2} * frameSamples * frames);
    for (int frame = 0; frame < frames; ++frame)
        for (const int channel : {0, 1}) {
            const int at = frame * frameSamples + (channel == 0 ? 0 : frameSamples - 1);
            samples[static_cast<std::size_t>(2 * at + channel)] = static_cast<std::int16_t>(
                channel == 0 ? amplitudeOf(frame, channel) : -amplitudeOf(frame, channel));
        }
    const auto bytes = static_cast<std::uint32_t>(samples.size() * sizeof samples[0]);
    std::string file = "RIFF";
    append(file, 36 + bytes, 4);
    file += "WAVEfmt ";
    append(file, 16, 4);
    append(file, 1, 2);
    append(file, 2, 2);
    append(file, rate, 4);
    append(file, rate * 4, 4);
    append(file, 4, 2);
    append(file, 16, 2);
    file += "data";
    append(file, bytes, 4);
    file.append(reinterpret_cast<const char*>(samples.data()), bytes);
    return file;
}

// The frame with the meters of the library at these peaks.
Bytes metered(Bytes frame, const GstVideoInfo& info, const MeterLevels& levels,
              const MeterLevels& peaks) {
    CZrOverlay overlay;
    overlay.Enabled = overlay.AudioEnable = 1;
    overlay.AudioX = overlay.AudioY = 0;
    KPXSYSTEM system{};
    const PictureView picture = gstreamer::viewOf(frame, info);
    overlay.Create(
        describeStream({picture.layout, picture.width, picture.height, 25, 1, false}).get(),
        &system);
    const auto record = std::make_unique<DFRAME>();
    record->videoData = reinterpret_cast<char*>(frame.data());
    MeterWords levelWords = packedLevels(levels), peakWords = packedLevels(peaks);
    overlay.BurnIn(record.get(), levelWords.data(), peakWords.data(), 0);
    return frame;
}

std::string video(const std::string& between = "") {
    return "videotestsrc pattern=black num-buffers=12 ! "
           "video/x-raw,format=UYVY,width=160,height=240,framerate=25/1 ! zroverlay name=meters "
           "time-code-ltc-enable=false audio-enable=true audio-x=0 audio-y=0 ! " +
           between + "appsink name=out sync=false";
}

// With a queue all frames come before the pipeline plays, and the sound behind its first block
// after that.
class GstLevelsBehind : public testing::TestWithParam<const char*> {};

TEST_P(GstLevelsBehind, MetersShowEachFramesOwnPeaks) {
    const TempFile file(waveFile());
    // The blocks of sound do not end where frames do.
    Pipeline pipeline("filesrc blocksize=1111 location=" + std::string(file.path()) +
                      " ! wavparse ! zrlevels overlay=meters ! fakesink sync=true " +
                      video(GetParam()));
    g_object_set(pipeline.element("meters"), "levels-wait", 5 * GST_SECOND, nullptr);
    const std::vector<Bytes> shown = pipeline.frames();
    const GstVideoInfo info = infoOf("UYVY", 160, 240);
    Bytes black(GST_VIDEO_INFO_SIZE(&info));
    for (std::size_t i = 0; i < black.size(); ++i)
        black[i] = i % 2 == 0 ? 128 : 16;
    PeakHold hold(25);
    ASSERT_EQ(shown.size(), std::size_t{frames});
    for (int frame = 0; frame < frames; ++frame) {
        MeterLevels levels{};
        for (const int channel : {0, 1})
            levels[static_cast<std::size_t>(channel)] =
                meterLevel(amplitudeOf(frame, channel) / 32768.0);
        const Bytes expected = metered(black, info, levels, hold.next(levels));
        EXPECT_EQ(difference(shown[static_cast<std::size_t>(frame)], expected, info), "") << frame;
    }
}

INSTANTIATE_TEST_SUITE_P(, GstLevelsBehind, testing::Values("", "queue ! "));

TEST(GstLevels, EveryFormatIsMeasuredAndPassesUntouched) {
    const struct {
        const char* format;
        Bytes samples; // one of each of two channels
        unsigned left, right;
    } cases[] = {
        {"u8", {0x80, 0xC0}, 0, 32767},
        {"s16le", {0x00, 0x40, 0x00, 0xC0}, 32767, 32767},
        {"s24le", {0, 0, 0x40, 0, 0, 0x80}, 32767, 65535},
        {"s32be", {0x20, 0, 0, 0, 0, 0, 0, 0}, 16383, 0},
        {"f32le", {0, 0, 0x80, 0x3F, 0, 0, 0xC0, 0x7F}, 65535, 0}, // not a number
        {"f64le", {0, 0, 0, 0, 0, 0, 0xE0, 0x3F, 0, 0, 0, 0, 0, 0, 0xF0, 0x40}, 32767, 65535}};
    const GstVideoInfo info = infoOf("UYVY", 160, 240);
    for (const auto& c : cases) {
        std::string sound;
        for (int i = 0; i < frameSamples; ++i)
            sound.append(c.samples.begin(), c.samples.end());
        const TempFile file(sound);
        Pipeline pipeline("filesrc location=" + std::string(file.path()) +
                          " ! rawaudioparse format=pcm pcm-format=" + c.format +
                          " sample-rate=48000 num-channels=2 ! zrlevels overlay=meters ! "
                          "appsink name=sound sync=false " +
                          video());
        g_object_set(pipeline.element("meters"), "levels-wait", 5 * GST_SECOND, nullptr);
        const std::vector<Bytes> shown = pipeline.frames();
        ASSERT_FALSE(shown.empty()) << c.format;
        Bytes black(GST_VIDEO_INFO_SIZE(&info));
        for (std::size_t i = 0; i < black.size(); ++i)
            black[i] = i % 2 == 0 ? 128 : 16;
        const MeterLevels levels{c.left, c.right};
        EXPECT_EQ(difference(shown[0], metered(black, info, levels, levels), info), "") << c.format;
        std::string passed;
        while (const Owned<GstSample> sample{
            gst_app_sink_try_pull_sample(GST_APP_SINK(pipeline.element("sound")), GST_SECOND)}) {
            const Bytes bytes = bytesOf(gst_sample_get_buffer(sample.get()));
            passed.append(bytes.begin(), bytes.end());
        }
        EXPECT_EQ(passed, sound) << c.format;
    }
}

} // namespace

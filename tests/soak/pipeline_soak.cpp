// A live pipeline of 1080p50 in v210 for as long as told: two sources, a wipe that goes to and fro,
// an overlay with meters, and settings that change. Ends with 1 when a frame is lost or resident
// memory grows meanwhile. Usage: pipeline_soak MINUTES, with GST_PLUGIN_PATH set.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>

#include <gst/controller/controller.h>
#include <gst/gst.h>
#include <unistd.h>

namespace {

constexpr auto roundTime = std::chrono::seconds(30);
constexpr int warmRounds = 2;        // pools and caches fill in the first ones
constexpr long allowedGrowth = 4096; // kB
constexpr GstClockTime frameTime = 20 * GST_MSECOND;

constexpr const char* description =
    "zrwipe name=wipe code=rectangle ! zroverlay name=overlay audio-enable=true "
    "source-format-enable=true ! fakesink name=out sync=true qos=false "
    "videotestsrc num-buffers=1 ! video/x-raw,format=v210,width=1920,height=1080,framerate=50/1 ! "
    "imagefreeze is-live=true ! video/x-raw,framerate=50/1 ! queue ! wipe.sink_0 "
    "videotestsrc num-buffers=1 pattern=pinwheel ! "
    "video/x-raw,format=v210,width=1920,height=1080,framerate=50/1 ! "
    "imagefreeze is-live=true ! video/x-raw,framerate=50/1 ! queue ! wipe.sink_1 "
    "audiotestsrc is-live=true ! zrlevels overlay=overlay ! fakesink sync=true";

// What comes to the sink.
struct Count {
    std::atomic<long> frames = 0, lost = 0;
    long last = 0; // number of the last one by its time
};

GstPadProbeReturn countFrame(GstPad*, GstPadProbeInfo* info, gpointer data) {
    auto& count = *static_cast<Count*>(data);
    const GstClockTime time = GST_BUFFER_PTS(GST_PAD_PROBE_INFO_BUFFER(info));
    const auto number = static_cast<long>((time + frameTime / 2) / frameTime);
    // In the first second live sources come in one after the other.
    if (count.frames > 50)
        count.lost += std::abs(number - count.last - 1);
    count.last = number;
    ++count.frames;
    return GST_PAD_PROBE_OK;
}

long residentKilobytes() {
    std::ifstream statistics("/proc/self/statm");
    long total = 0, resident = 0;
    statistics >> total >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

// To and fro once every ten seconds.
void moveToAndFro(GstElement* wipe) {
    GstControlSource* source = gst_lfo_control_source_new();
    g_object_set(source, "waveform", GST_LFO_WAVEFORM_TRIANGLE, "frequency", 0.1, "amplitude", 0.5,
                 "offset", 0.5, nullptr);
    gst_object_add_control_binding(
        GST_OBJECT(wipe), gst_direct_control_binding_new(GST_OBJECT(wipe), "position", source));
    gst_object_unref(source);
}

// A second of changes, as an operator makes them.
void operate(GstElement* wipe, GstElement* overlay, unsigned second) {
    constexpr const char* codes[] = {"rectangle", "horizontal", "barn-door-vertical", "top-left"};
    if (second % 10 == 0)
        gst_util_set_object_arg(G_OBJECT(wipe), "code", codes[second / 10 % std::size(codes)]);
    const std::string text = "second " + std::to_string(second);
    g_object_set(overlay, "text-0", text.c_str(), "text-0-x", 100 + second % 500, "audio-enable",
                 static_cast<gboolean>(second % 7 != 0), nullptr);
    std::this_thread::sleep_for(std::chrono::seconds(1));
}

std::string errorOf(GstElement* pipeline) {
    GstBus* bus = gst_element_get_bus(pipeline);
    GstMessage* message = gst_bus_pop_filtered(bus, GST_MESSAGE_ERROR);
    gst_object_unref(bus);
    if (!message)
        return "";
    GError* error = nullptr;
    gst_message_parse_error(message, &error, nullptr);
    const std::string text = error->message;
    g_error_free(error);
    gst_message_unref(message);
    return text;
}

int run(double minutes) {
    GError* problem = nullptr;
    GstElement* pipeline = gst_parse_launch(description, &problem);
    if (problem) {
        std::fprintf(stderr, "pipeline_soak: %s\n", problem->message);
        return 1;
    }
    GstElement* wipe = gst_bin_get_by_name(GST_BIN(pipeline), "wipe");
    GstElement* overlay = gst_bin_get_by_name(GST_BIN(pipeline), "overlay");
    GstElement* out = gst_bin_get_by_name(GST_BIN(pipeline), "out");
    GstPad* pad = gst_element_get_static_pad(out, "sink");
    Count count;
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, countFrame, &count, nullptr);
    moveToAndFro(wipe);
    gst_element_set_state(pipeline, GST_STATE_PLAYING);

    long warm = 0;
    std::string error;
    const auto rounds = static_cast<int>(minutes * 60 / roundTime.count());
    for (int round = 1; round <= rounds && error.empty(); ++round) {
        for (unsigned i = 0; i < roundTime.count(); ++i)
            operate(wipe, overlay, static_cast<unsigned>(round * roundTime.count()) + i);
        error = errorOf(pipeline);
        const long resident = residentKilobytes();
        if (round == warmRounds)
            warm = resident;
        std::printf("%4d s: %ld frames, %ld lost, %.2f MB\n",
                    round * static_cast<int>(roundTime.count()), count.frames.load(),
                    count.lost.load(), static_cast<double>(resident) / 1024);
        std::fflush(stdout);
    }
    const long grown = warm != 0 ? residentKilobytes() - warm : 0;
    gst_element_set_state(pipeline, GST_STATE_NULL);
    for (gpointer object :
         {static_cast<gpointer>(pad), static_cast<gpointer>(out), static_cast<gpointer>(overlay),
          static_cast<gpointer>(wipe), static_cast<gpointer>(pipeline)})
        gst_object_unref(object);
    std::printf("%s%ld frames, %ld lost, memory grown by %ld kB\n",
                error.empty() ? "" : (error + ": ").c_str(), count.frames.load(), count.lost.load(),
                grown);
    const bool arrived = count.frames > static_cast<long>(minutes * 60 * 50 * 0.99);
    return error.empty() && arrived && count.lost == 0 && grown <= allowedGrowth ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    gst_init(&argc, &argv);
    return run(argc > 1 ? std::atof(argv[1]) : 10.0);
}

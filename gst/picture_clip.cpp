#include "picture_clip.h"

#include "common/tool_error.h"
#include "script/pictures/timed_clip.h"

#include <fmt/format.h>

#include <cstring>
#include <utility>

#include <gst/app/gstappsink.h>
#include <gst/video/video.h>

namespace {

struct Release {
    void operator()(GstElement* element) const { gst_object_unref(element); }
    void operator()(GstBus* bus) const { gst_object_unref(bus); }
    void operator()(GstMessage* message) const { gst_message_unref(message); }
    void operator()(GstSample* sample) const { gst_sample_unref(sample); }
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(gchar* text) const { g_free(text); }
};
template <class T>
using Owned = std::unique_ptr<T, Release>;

struct StopAndRelease {
    void operator()(GstElement* pipeline) const {
        gst_element_set_state(pipeline, GST_STATE_NULL);
        gst_object_unref(pipeline);
    }
};

// Frames come as fast as they are asked for.
constexpr const char* description =
    "uridecodebin name=file caps=video/x-raw expose-all-streams=false ! videoconvert ! "
    "video/x-raw,format=ARGB64 ! appsink name=frames sync=false max-buffers=1";

// What waits for the pipeline looks for its errors this often, and gives up at last.
constexpr GstClockTime patience = 100 * GST_MSECOND;
constexpr int mostTries = 300;

std::string withoutFullStop(std::string text) {
    if (text.ends_with('.'))
        text.pop_back();
    return text;
}

class Mapping {
public:
    Mapping(const GstVideoInfo& info, GstBuffer* buffer) {
        if (!gst_video_frame_map(&m_frame, &info, buffer, GST_MAP_READ))
            throw Failure("a picture's memory cannot be read");
    }
    ~Mapping() { gst_video_frame_unmap(&m_frame); }
    Mapping(const Mapping&) = delete;
    Mapping& operator=(const Mapping&) = delete;

    const char* line(int y) const {
        return static_cast<const char*>(GST_VIDEO_FRAME_PLANE_DATA(&m_frame, 0)) +
               std::ptrdiff_t{y} * GST_VIDEO_FRAME_PLANE_STRIDE(&m_frame, 0);
    }

private:
    GstVideoFrame m_frame;
};

// The frames of a file, one by one.
class FrameSource {
public:
    FrameSource(const std::string& path, std::function<bool()> isStopped)
        : m_path(path), m_isStopped(std::move(isStopped)) {
        GError* problem = nullptr;
        const Owned<gchar> uri(gst_filename_to_uri(path.c_str(), &problem));
        if (!uri)
            throw failure(Owned<GError>(problem)->message);
        m_pipeline.reset(gst_parse_launch(description, &problem));
        if (const Owned<GError> error{problem})
            throw failure(error->message);
        m_frames.reset(named("frames"));
        m_bus.reset(gst_element_get_bus(m_pipeline.get()));
        g_object_set(Owned<GstElement>(named("file")).get(), "uri", uri.get(), nullptr);
        gst_element_set_state(m_pipeline.get(), GST_STATE_PLAYING);
    }

    // Null behind the last one.
    Owned<GstSample> next() {
        auto* frames = GST_APP_SINK(m_frames.get());
        for (int i = 0; i < mostTries; ++i) {
            if (Owned<GstSample> sample{gst_app_sink_try_pull_sample(frames, patience)})
                return sample;
            throwError();
            if (m_isStopped && m_isStopped())
                throw failure("the wait for it was ended");
            if (gst_app_sink_is_eos(frames))
                return nullptr;
        }
        throw failure("no picture comes out of it");
    }

    // Those that have no time begin at once.
    static double secondsOf(GstSample& sample) {
        const GstClockTime time =
            gst_segment_to_stream_time(gst_sample_get_segment(&sample), GST_FORMAT_TIME,
                                       GST_BUFFER_PTS(gst_sample_get_buffer(&sample)));
        return GST_CLOCK_TIME_IS_VALID(time) ? static_cast<double>(time) / GST_SECOND : 0;
    }

    static std::shared_ptr<const ScriptPicture> pictureOf(GstSample& sample) {
        GstVideoInfo info;
        if (!gst_video_info_from_caps(&info, gst_sample_get_caps(&sample)))
            throw Failure("a picture has no format");
        const Mapping mapping(info, gst_sample_get_buffer(&sample));
        ScriptPicture picture{GST_VIDEO_INFO_WIDTH(&info), GST_VIDEO_INFO_HEIGHT(&info), {}};
        const auto lineWords = static_cast<std::size_t>(picture.width) * pictureWords;
        picture.words.resize(lineWords * static_cast<std::size_t>(picture.height));
        for (int y = 0; y < picture.height; ++y)
            std::memcpy(picture.words.data() + static_cast<std::size_t>(y) * lineWords,
                        mapping.line(y), lineWords * sizeof picture.words[0]);
        return std::make_shared<const ScriptPicture>(std::move(picture));
    }

private:
    Failure failure(const std::string& reason) const {
        return Failure(fmt::format("cannot read '{}': {}", m_path, withoutFullStop(reason)));
    }

    GstElement* named(const char* name) const {
        return gst_bin_get_by_name(GST_BIN(m_pipeline.get()), name);
    }

    void throwError() const {
        const Owned<GstMessage> message(gst_bus_pop_filtered(m_bus.get(), GST_MESSAGE_ERROR));
        if (!message)
            return;
        GError* problem = nullptr;
        gst_message_parse_error(message.get(), &problem, nullptr);
        throw failure(Owned<GError>(problem)->message);
    }

    std::string m_path;
    std::function<bool()> m_isStopped;
    std::unique_ptr<GstElement, StopAndRelease> m_pipeline;
    Owned<GstElement> m_frames;
    Owned<GstBus> m_bus;
};

} // namespace

std::unique_ptr<PictureClip> openPictureClip(const std::string& path,
                                             const std::function<bool()>& isStopped) {
    return std::make_unique<TimedClip<FrameSource>>(path, isStopped);
}

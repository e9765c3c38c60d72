// Frames of noise, elements in a harness, and pipelines that run to their end.
#pragma once

#include "gst/formats.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gst/app/gstappsink.h>
#include <gst/check/gstharness.h>
#include <gst/controller/controller.h>
#include <gst/video/video.h>

namespace gstreamer {

using Bytes = std::vector<unsigned char>;

struct Unref {
    void operator()(GstBuffer* buffer) const { gst_buffer_unref(buffer); }
    void operator()(GstCaps* caps) const { gst_caps_unref(caps); }
    void operator()(GstMessage* message) const { gst_message_unref(message); }
    void operator()(GstSample* sample) const { gst_sample_unref(sample); }
    void operator()(GstStructure* structure) const { gst_structure_free(structure); }
    void operator()(GstHarness* harness) const { gst_harness_teardown(harness); }
    void operator()(GstElement* element) const {
        gst_element_set_state(element, GST_STATE_NULL);
        gst_object_unref(element);
    }
};
template <class T>
using Owned = std::unique_ptr<T, Unref>;

inline GstVideoInfo infoOf(const char* format, int width, int height, int rate = 25,
                           int scale = 1) {
    GstVideoInfo info;
    gst_video_info_set_format(&info, gst_video_format_from_string(format),
                              static_cast<guint>(width), static_cast<guint>(height));
    info.fps_n = rate;
    info.fps_d = scale;
    return info;
}

inline std::string capsOf(const GstVideoInfo& info) {
    const Owned<GstCaps> caps(gst_video_info_to_caps(const_cast<GstVideoInfo*>(&info)));
    gchar* text = gst_caps_to_string(caps.get());
    std::string result(text);
    g_free(text);
    return result;
}

inline Bytes noise(std::size_t count, unsigned seed) {
    std::mt19937 random(seed);
    Bytes bytes(count);
    for (unsigned char& byte : bytes)
        byte = static_cast<unsigned char>(random());
    return bytes;
}

// Noise that every format may hold: v210 has no sense in the top bits of its words.
inline Bytes noiseFrame(const GstVideoInfo& info, unsigned seed) {
    Bytes bytes = noise(GST_VIDEO_INFO_SIZE(&info), seed);
    if (GST_VIDEO_INFO_FORMAT(&info) == GST_VIDEO_FORMAT_v210)
        for (std::size_t i = 3; i < bytes.size(); i += 4)
            bytes[i] &= 0x3F;
    return bytes;
}

inline GstBuffer* bufferOf(const Bytes& bytes, GstClockTime pts, GstClockTime duration) {
    GstBuffer* buffer = gst_buffer_new_allocate(nullptr, bytes.size(), nullptr);
    gst_buffer_fill(buffer, 0, bytes.data(), bytes.size());
    GST_BUFFER_PTS(buffer) = pts;
    GST_BUFFER_DURATION(buffer) = duration;
    return buffer;
}

inline Bytes bytesOf(GstBuffer* buffer) {
    Bytes bytes(gst_buffer_get_size(buffer));
    gst_buffer_extract(buffer, 0, bytes.data(), bytes.size());
    return bytes;
}

inline PictureView viewOf(Bytes& bytes, const GstVideoInfo& info) {
    return {layoutOf(GST_VIDEO_INFO_FORMAT(&info)), bytes.data(), GST_VIDEO_INFO_WIDTH(&info),
            GST_VIDEO_INFO_HEIGHT(&info), GST_VIDEO_INFO_PLANE_STRIDE(&info, 0)};
}

// Where two frames first differ, for a failure's text; empty where they do not.
inline std::string difference(const Bytes& a, const Bytes& b, const GstVideoInfo& info) {
    if (a.size() != b.size())
        return std::to_string(a.size()) + " bytes and " + std::to_string(b.size());
    const auto stride = static_cast<std::size_t>(GST_VIDEO_INFO_PLANE_STRIDE(&info, 0));
    for (std::size_t i = 0; i < a.size(); ++i)
        if (a[i] != b[i])
            return "line " + std::to_string(i / stride) + ", byte " + std::to_string(i % stride) +
                   ": " + std::to_string(a[i]) + " and " + std::to_string(b[i]);
    return "";
}

// Drives a property from 0 to a value in the stream's first second.
inline void controlOverASecond(GstObject* object, const char* property, double last) {
    GstControlSource* source = gst_interpolation_control_source_new();
    g_object_set(source, "mode", GST_INTERPOLATION_MODE_LINEAR, nullptr);
    auto* values = GST_TIMED_VALUE_CONTROL_SOURCE(source);
    gst_timed_value_control_source_set(values, 0, 0.0);
    gst_timed_value_control_source_set(values, GST_SECOND, last);
    gst_object_add_control_binding(
        object, gst_direct_control_binding_new_absolute(object, property, source));
    gst_object_unref(source);
}

// An element between two pads of the test.
class Harness {
public:
    explicit Harness(const std::string& description)
        : m_harness(gst_harness_new_parse(description.c_str())) {}

    GstHarness* get() const { return m_harness.get(); }
    GstElement* element(const char* type) const {
        GstElement* found = gst_harness_find_element(m_harness.get(), type);
        gst_object_unref(found); // the harness keeps it
        return found;
    }
    void begin(const GstVideoInfo& info) {
        gst_harness_set_src_caps_str(m_harness.get(), capsOf(info).c_str());
    }
    Bytes pass(GstBuffer* buffer) {
        const Owned<GstBuffer> out(gst_harness_push_and_pull(m_harness.get(), buffer));
        return out ? bytesOf(out.get()) : Bytes();
    }
    Bytes pass(const Bytes& bytes, const GstVideoInfo& info, int frame) {
        const GstClockTime duration = gst_util_uint64_scale(
            GST_SECOND, static_cast<guint64>(info.fps_d), static_cast<guint64>(info.fps_n));
        return pass(bufferOf(bytes, static_cast<GstClockTime>(frame) * duration, duration));
    }

private:
    Owned<GstHarness> m_harness;
};

// A pipeline with an appsink named "out", run to its end.
class Pipeline {
public:
    explicit Pipeline(const std::string& description) {
        GError* error = nullptr;
        m_pipeline.reset(gst_parse_launch(description.c_str(), &error));
        EXPECT_EQ(error, nullptr) << (error ? error->message : "");
        g_clear_error(&error);
    }

    GstElement* get() const { return m_pipeline.get(); }
    GstElement* element(const char* name) const {
        GstElement* found = gst_bin_get_by_name(GST_BIN(m_pipeline.get()), name);
        EXPECT_NE(found, nullptr) << name;
        gst_object_unref(found); // the pipeline keeps it
        return found;
    }

    void play() { gst_element_set_state(m_pipeline.get(), GST_STATE_PLAYING); }

    // The next frame; null at the end, behind an error, and where none comes in ten seconds.
    Owned<GstSample> pull() {
        auto* sink = GST_APP_SINK(element("out"));
        for (int tries = 0; tries < 100 && !find(GST_MESSAGE_ERROR); ++tries) {
            if (gst_app_sink_is_eos(sink))
                break;
            if (Owned<GstSample> sample{gst_app_sink_try_pull_sample(sink, 100 * GST_MSECOND)})
                return sample;
            collect(0);
        }
        return nullptr;
    }

    // All frames to come.
    std::vector<Bytes> frames() {
        play();
        std::vector<Bytes> all;
        while (const Owned<GstSample> sample = pull())
            all.push_back(bytesOf(gst_sample_get_buffer(sample.get())));
        return all;
    }

    // The text of the first message of a kind; empty where none comes.
    std::string message(GstMessageType type) {
        for (int tries = 0; tries < 50 && !find(type); ++tries)
            collect(100 * GST_MSECOND);
        GstMessage* message = find(type);
        if (!message)
            return "";
        GError* error = nullptr;
        if (type == GST_MESSAGE_ERROR)
            gst_message_parse_error(message, &error, nullptr);
        else if (type == GST_MESSAGE_WARNING)
            gst_message_parse_warning(message, &error, nullptr);
        const std::string text = error ? error->message : "message";
        g_clear_error(&error);
        return text;
    }

private:
    GstMessage* find(GstMessageType type) const {
        for (const auto& message : m_messages)
            if (GST_MESSAGE_TYPE(message.get()) == type)
                return message.get();
        return nullptr;
    }

    void collect(GstClockTime wait) {
        GstBus* bus = gst_element_get_bus(m_pipeline.get());
        while (GstMessage* message = gst_bus_timed_pop(bus, wait)) {
            m_messages.emplace_back(message);
            wait = 0;
        }
        gst_object_unref(bus);
    }

    Owned<GstElement> m_pipeline;
    std::vector<Owned<GstMessage>> m_messages;
};

} // namespace gstreamer

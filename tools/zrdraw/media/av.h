// Owners for the objects of the FFmpeg libraries, and their error texts.
#pragma once

#include <memory>
#include <new>
#include <string>
#include <utility>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/dict.h>
#include <libavutil/error.h>
#include <libswscale/swscale.h>
}

// Turns one of the libraries' "free and clear the pointer" functions into a deleter.
template <auto freeFunction>
struct AvFree {
    template <class T>
    void operator()(T* object) const {
        freeFunction(&object);
    }
};

struct BufferUnref {
    void operator()(AVBufferRef* buffer) const { av_buffer_unref(&buffer); }
};

struct BufferPoolFree {
    void operator()(AVBufferPool* pool) const { av_buffer_pool_uninit(&pool); }
};

struct SwsFree {
    void operator()(SwsContext* context) const { sws_freeContext(context); }
};

using InputPtr = std::unique_ptr<AVFormatContext, AvFree<avformat_close_input>>;
using CodecPtr = std::unique_ptr<AVCodecContext, AvFree<avcodec_free_context>>;
using FramePtr = std::unique_ptr<AVFrame, AvFree<av_frame_free>>;
using PacketPtr = std::unique_ptr<AVPacket, AvFree<av_packet_free>>;
using BufferPtr = std::unique_ptr<AVBufferRef, BufferUnref>;
using BufferPoolPtr = std::unique_ptr<AVBufferPool, BufferPoolFree>;
using SwsPtr = std::unique_ptr<SwsContext, SwsFree>;

// A dictionary of options, in the one shape that the libraries take.
class AvOptions {
public:
    AvOptions() = default;
    AvOptions(const AvOptions&) = delete;
    AvOptions& operator=(const AvOptions&) = delete;
    ~AvOptions() { av_dict_free(&m_dictionary); }

    void set(const char* key, const std::string& value) {
        av_dict_set(&m_dictionary, key, value.c_str(), 0);
    }
    void remove(const char* key) { av_dict_set(&m_dictionary, key, nullptr, 0); }
    AVDictionary** get() { return &m_dictionary; }

private:
    AVDictionary* m_dictionary = nullptr;
};

inline FramePtr newFrame() {
    FramePtr frame(av_frame_alloc());
    if (!frame)
        throw std::bad_alloc();
    return frame;
}

// With buffers.
inline FramePtr newFrame(AVPixelFormat format, int width, int height) {
    FramePtr frame = newFrame();
    frame->format = format;
    frame->width = width;
    frame->height = height;
    if (av_frame_get_buffer(frame.get(), 0) < 0)
        throw std::bad_alloc();
    return frame;
}

inline PacketPtr newPacket() {
    PacketPtr packet(av_packet_alloc());
    if (!packet)
        throw std::bad_alloc();
    return packet;
}

// The libraries' own name for it is no expression of C++.
inline constexpr AVRational timeBaseUnit{1, AV_TIME_BASE};

// As options of the libraries have it.
inline std::string rateText(AVRational rate) {
    return std::to_string(rate.num) + '/' + std::to_string(rate.den);
}

inline std::string avErrorText(int error) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(error, text, sizeof text);
    return text;
}

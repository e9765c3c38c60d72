// Owners for the objects of the FFmpeg libraries, and their error texts.
#pragma once

#include <memory>
#include <new>
#include <string>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/error.h>
#include <libavutil/log.h>
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

// Every message of the tool is one line of its own; the libraries must not add theirs.
inline void quietAv() {
    av_log_set_level(AV_LOG_QUIET);
}

inline std::string avErrorText(int error) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(error, text, sizeof text);
    return text;
}

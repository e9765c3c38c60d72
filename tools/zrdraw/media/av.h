// Owners for the objects of the FFmpeg libraries, and their error texts.
#pragma once

#include <memory>
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

struct SwsFree {
    void operator()(SwsContext* context) const { sws_freeContext(context); }
};

using InputPtr = std::unique_ptr<AVFormatContext, AvFree<avformat_close_input>>;
using CodecPtr = std::unique_ptr<AVCodecContext, AvFree<avcodec_free_context>>;
using FramePtr = std::unique_ptr<AVFrame, AvFree<av_frame_free>>;
using PacketPtr = std::unique_ptr<AVPacket, AvFree<av_packet_free>>;
using SwsPtr = std::unique_ptr<SwsContext, SwsFree>;

// Every message of the tool is one line of its own; the libraries must not add theirs.
inline void quietAv() {
    av_log_set_level(AV_LOG_QUIET);
}

inline std::string avErrorText(int error) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(error, text, sizeof text);
    return text;
}

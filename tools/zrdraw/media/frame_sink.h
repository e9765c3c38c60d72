// Encodes frames and writes them to a picture, a clip or a pipe.
#pragma once

#include "media/av.h"
#include "media/frame_source.h"
#include "media/output_file.h"
#include "zrdraw/layouts.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct SinkOptions {
    std::string format; // "y4m", "raw" or a muxer's name; empty: from the file's name
    std::string codec;  // an encoder's name; empty: the format's own
    bool force = false; // replace an existing file
    std::vector<AVStream*> audio = {}; // streams of a source, to be passed on as they are
    std::string timeCode = {};         // of the first frame, for the file's own; may be empty
};

class FrameSink {
public:
    // The path "-" is standard output. `layout` is that of the canvas that frames come from, and
    // the one that the format "raw" writes.
    FrameSink(const std::string& path, const SinkOptions& options, const StreamInfo& source,
              const zrLayout& layout);

    bool takesOneFrame() const { return m_picture; }

    // A frame with buffers, ready for WorkingFrame::store() and write(): it has the sink's size,
    // pixel format, colour space and range, or is bare.
    FramePtr makeFrame() const;

    // The frame's pts is its number in the result, counted from 0.
    void write(const AVFrame& frame);

    // Passes on a packet of one of the audio streams, which may be without any if the format takes
    // no sound.
    void writeAudio(AVPacket& packet);
    bool takesAudio() const { return !m_audio.empty(); }

    // Completes the file and gives it its name. Without it nothing is left behind.
    void finish();

private:
    struct MuxerFree {
        void operator()(AVFormatContext* muxer) const { avformat_free_context(muxer); }
    };

    void describeFrames(const AVCodec& codec, const StreamInfo& source, AVPixelFormat working);
    void describeColors(const AVCodec& codec, const StreamInfo& source);
    void openEncoder(const AVCodec& codec);
    void startMuxer(const SinkOptions& options);
    void passAudio(const std::vector<AVStream*>& streams);
    void encode(const AVFrame* frame);
    void writeBare(const AVFrame& frame);
    void writePacket();
    [[noreturn]] void fail(const std::string& action, int error);

    std::string m_name; // as messages call it
    const AVOutputFormat* m_format = nullptr;
    bool m_picture = false;
    int m_bareLine = 0; // bytes of a line of bare frames; 0: frames are encoded
    CodecPtr m_encoder;
    PacketPtr m_packet;
    std::optional<OutputFile> m_file; // opened last, when nothing else can be refused
    std::unique_ptr<AVFormatContext, MuxerFree> m_muxer;
    AVStream* m_stream = nullptr;
    struct Passed {
        const AVStream* from;
        AVStream* to;
    };
    std::vector<Passed> m_audio;
    std::int64_t m_framesWritten = 0;
};

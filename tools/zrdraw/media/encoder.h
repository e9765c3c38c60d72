// Frames of a result into packets: encoded, or bare where the result holds the canvas' own bytes.
#pragma once

#include "media/output_format.h"
#include "picture/canvas.h"

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

// What was wished for; what is empty or 0 is chosen here.
struct EncoderOptions {
    std::string codec; // an encoder's name
    std::string crf;
    std::string bitRate;
    std::string preset;
    std::string profile;
    int threads = 0; // 0: as many as there are processors
    std::vector<std::pair<std::string, std::string>> others = {}; // by the encoder's own names
};

class Encoder {
public:
    // `first` is the source's first picture, whose side data tells of its light.
    Encoder(const OutputFormat& format, const EncoderOptions& options, const StreamInfo& source,
            const AVFrame& first, const CanvasShape& shape, AVRational timeBase);

    const AVCodecContext& context() const { return *m_context; }
    bool isBare() const { return m_bareLine != 0; }

    // Whether captions that stand in the frames go into the stream.
    bool keepsCaptions() const;

    // A frame with buffers of the encoder's size, pixel format, colour space and range, or a bare
    // one, which is the canvas' own memory if its lines are those of the stream.
    FramePtr makeFrame(const Canvas& canvas);

    // A frame with its place and length in the time base, or null at the end. Each packet that
    // comes of it is given to `take`.
    template <class Take>
    void encode(const AVFrame* frame, Take take) {
        send(frame);
        while (receive())
            take(*m_packet);
    }

private:
    bool holdsBytesOf(const zrLayout& layout) const;
    void describeFrames(const OutputFormat& format, const StreamInfo& source,
                        AVPixelFormat working);
    void describeColors(const StreamInfo& source);
    void setQuality(AvOptions& settings, const OutputFormat& format, const StreamInfo& source);
    void setOptions(AvOptions& settings, const EncoderOptions& options) const;
    void set(AvOptions& settings, const char* option, const std::string& key,
             const std::string& value) const;
    [[noreturn]] void refuse(const std::string& cause) const;
    void send(const AVFrame* frame);
    bool receive();

    const AVCodec& m_codec;
    int m_bareLine = 0; // bytes of a line of bare frames; 0: frames are encoded
    CodecPtr m_context;
    BufferPoolPtr m_pool;
    PacketPtr m_packet;
    PacketPtr m_bare;                               // waits to be received
    std::map<std::int64_t, std::int64_t> m_lengths; // of the frames in the encoder, by place
    std::int64_t m_frames = 0;
};

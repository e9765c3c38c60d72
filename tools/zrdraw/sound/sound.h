// Sound as samples: packets of a stream into them, and them into packets.
#pragma once

#include "media/av.h"
#include "media/input.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

extern "C" {
#include <libavutil/audio_fifo.h>
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

struct SwrFree {
    void operator()(SwrContext* context) const { swr_free(&context); }
};
struct AudioFifoFree {
    void operator()(AVAudioFifo* fifo) const { av_audio_fifo_free(fifo); }
};
using SwrPtr = std::unique_ptr<SwrContext, SwrFree>;
using AudioFifoPtr = std::unique_ptr<AVAudioFifo, AudioFifoFree>;

struct SoundShape {
    int rate = 0;
    AVChannelLayout layout{}; // owns nothing: channels in an order of their own are unspecified

    std::size_t channels() const { return static_cast<std::size_t>(layout.nb_channels); }
    AVRational base() const { return {1, rate}; } // of places, which samples are counted by
};

SoundShape shapeOf(const AVCodecParameters& stream);

// A run of samples, those of all channels together. Doubles hold every kind of sample exactly.
struct SoundBlock {
    std::int64_t place = 0; // of the first, counted from time 0
    std::vector<double> samples;
};

// How much earlier than wanted a decoder begins, in milliseconds: sound that is compressed needs
// what stands before it.
constexpr int soundLeadIn = 250;

bool needsLeadIn(const AVCodecParameters& stream);

class SoundDecoder {
public:
    using Take = std::function<void(SoundBlock)>;

    // Samples come in the wanted rate and channels.
    SoundDecoder(const Input& input, const AVStream& stream, const SoundShape& wanted);

    // What is decoded of the packet, or at the end with null, is given to `take`. Runs stand at the
    // times of the file, to the sample; between them there may be gaps.
    void decode(const AVPacket* packet, const Take& take);

private:
    void convert(const AVFrame& frame, const Take& take);
    void start(const AVFrame& frame, std::int64_t place);
    void drain(const Take& take);
    void give(const std::uint8_t** data, int samples, const Take& take);
    bool isAsBefore(const AVFrame& frame) const;

    const Input& m_input;
    AVRational m_base;
    SoundShape m_wanted;
    CodecPtr m_codec;
    FramePtr m_frame;
    SwrPtr m_converter;
    int m_format = AV_SAMPLE_FMT_NONE; // that it converts from
    SoundShape m_from;
    std::int64_t m_expected = 0; // place of the next sample, in the stream's rate
    std::int64_t m_next = 0;     // and of the next that is given, in the wanted one
};

class SoundEncoder {
public:
    using Take = std::function<void(PacketPtr)>;

    // Of a codec and for a format; the shape and the kind of sample come as near to those of the
    // stream as the encoder allows.
    SoundEncoder(const AVCodec& codec, const AVOutputFormat& muxer, const AVCodecParameters& like);

    const AVCodecContext& context() const { return *m_context; }
    const SoundShape& shape() const { return m_shape; }

    // The next run. A gap before it is silent; what overlaps the one before is left out. Packets
    // are in the base of places.
    void encode(const SoundBlock& block, const Take& take);
    void finish(const Take& take);

private:
    int open(const AVCodecParameters& like, const AVOutputFormat& muxer,
             const AVChannelLayout& layout);
    void add(const double* samples, std::int64_t count, const Take& take);
    void encodeFrame(int samples, const Take& take);
    void send(const AVFrame* frame, const Take& take);
    int frameSize() const;

    const AVCodec& m_codec;
    CodecPtr m_context;
    SoundShape m_shape;
    SwrPtr m_converter;
    AudioFifoPtr m_waiting;
    std::vector<double> m_samples; // of one frame
    bool m_begun = false;
    std::int64_t m_place = 0; // of the next sample to be encoded
    std::int64_t m_end = 0;   // behind the last that came
};

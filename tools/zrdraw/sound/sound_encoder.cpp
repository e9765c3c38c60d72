#include "common/tool_error.h"
#include "media/av_messages.h"
#include "sound/sound.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace {

constexpr int usualFrame = 1024;           // of encoders that take any number of samples
constexpr std::int64_t usualRate = 96'000; // bits a second and channel, of lossy codecs
constexpr AVSampleFormat blockFormat = AV_SAMPLE_FMT_DBL;

int depthOf(AVSampleFormat format) {
    const AVSampleFormat packed = av_get_packed_sample_fmt(format);
    return packed == AV_SAMPLE_FMT_FLT   ? 24
           : packed == AV_SAMPLE_FMT_DBL ? 53
                                         : av_get_bytes_per_sample(packed) * 8;
}

// The one that loses least and is no larger than need be.
AVSampleFormat nearestFormat(const AVCodec& codec, AVSampleFormat like) {
    if (!codec.sample_fmts)
        return av_get_packed_sample_fmt(like);
    const int wanted = depthOf(like);
    const auto badness = [&](AVSampleFormat format) {
        const bool same = av_get_packed_sample_fmt(format) == av_get_packed_sample_fmt(like);
        const int depth = depthOf(format);
        return same ? 0 : depth >= wanted ? depth : 1000 - depth;
    };
    AVSampleFormat best = codec.sample_fmts[0];
    for (const AVSampleFormat* format = codec.sample_fmts; *format != AV_SAMPLE_FMT_NONE; ++format)
        if (badness(*format) < badness(best))
            best = *format;
    return best;
}

// The next higher of those there are, else the highest.
int nearestRate(const AVCodec& codec, int wanted) {
    if (!codec.supported_samplerates)
        return wanted;
    int best = codec.supported_samplerates[0];
    for (const int* rate = codec.supported_samplerates; *rate != 0; ++rate)
        if (best < wanted ? *rate > best : *rate >= wanted && *rate < best)
            best = *rate;
    return best;
}

// That of the stream where it is in the same codec.
std::int64_t bitRate(const AVCodec& codec, const AVCodecParameters& like) {
    const AVCodecDescriptor* description = avcodec_descriptor_get(codec.id);
    const bool lossy = description && (description->props & AV_CODEC_PROP_LOSSY) &&
                       av_get_exact_bits_per_sample(codec.id) == 0;
    if (!lossy)
        return 0;
    return like.codec_id == codec.id && like.bit_rate > 0 ? like.bit_rate
                                                          : usualRate * like.ch_layout.nb_channels;
}

std::string layoutName(const AVChannelLayout& layout) {
    char text[128] = {};
    av_channel_layout_describe(&layout, text, sizeof text);
    return text;
}

} // namespace

// An encoder that does not know how the channels stand may know another order of as many.
SoundEncoder::SoundEncoder(const AVCodec& codec, const AVOutputFormat& muxer,
                           const AVCodecParameters& like)
    : m_codec(codec) {
    const SoundShape source = shapeOf(like);
    AVChannelLayout usual{};
    av_channel_layout_default(&usual, source.layout.nb_channels);
    AvMessages messages;
    int opened = open(like, muxer, source.layout);
    if (opened < 0)
        opened = open(like, muxer, usual);
    if (opened < 0)
        throw Failure(fmt::format("the encoder '{}' refuses sound of {} Hz, {}: {}; use another "
                                  "--audio-codec such as aac or flac, or --streams v",
                                  codec.name, source.rate, layoutName(source.layout),
                                  messages.cause(opened)));
    SwrContext* converter = nullptr;
    swr_alloc_set_opts2(&converter, &m_shape.layout, m_context->sample_fmt, m_shape.rate,
                        &m_shape.layout, blockFormat, m_shape.rate, 0, nullptr);
    m_converter.reset(converter);
    m_waiting.reset(av_audio_fifo_alloc(blockFormat, m_shape.layout.nb_channels, frameSize()));
    if (!m_converter || swr_init(converter) < 0 || !m_waiting)
        throw std::bad_alloc();
    m_samples.resize(static_cast<std::size_t>(frameSize()) * m_shape.channels());
}

int SoundEncoder::open(const AVCodecParameters& like, const AVOutputFormat& muxer,
                       const AVChannelLayout& layout) {
    m_shape = {nearestRate(m_codec, like.sample_rate), layout};
    m_context.reset(avcodec_alloc_context3(&m_codec));
    if (!m_context)
        throw std::bad_alloc();
    AVCodecContext& context = *m_context;
    context.sample_rate = m_shape.rate;
    context.time_base = m_shape.base();
    context.ch_layout = layout;
    context.sample_fmt = nearestFormat(m_codec, static_cast<AVSampleFormat>(like.format));
    context.bits_per_raw_sample = like.bits_per_raw_sample;
    if (const std::int64_t rate = bitRate(m_codec, like))
        context.bit_rate = rate;
    if (m_codec.capabilities & AV_CODEC_CAP_EXPERIMENTAL)
        context.strict_std_compliance = FF_COMPLIANCE_EXPERIMENTAL;
    if (muxer.flags & AVFMT_GLOBALHEADER)
        context.flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    return avcodec_open2(&context, &m_codec, nullptr);
}

int SoundEncoder::frameSize() const {
    return m_context->frame_size > 0 ? m_context->frame_size : usualFrame;
}

void SoundEncoder::encode(const SoundBlock& block, const Take& take) {
    const auto count = static_cast<std::int64_t>(block.samples.size() / m_shape.channels());
    if (!std::exchange(m_begun, true))
        m_place = m_end = block.place;
    const std::vector<double> silence(m_samples.size());
    while (m_end < block.place)
        add(silence.data(), std::min<std::int64_t>(block.place - m_end, frameSize()), take);
    const std::int64_t known = std::min(m_end - block.place, count);
    add(block.samples.data() + static_cast<std::size_t>(known) * m_shape.channels(), count - known,
        take);
}

void SoundEncoder::add(const double* samples, std::int64_t count, const Take& take) {
    void* data = const_cast<double*>(samples);
    if (count > 0 && av_audio_fifo_write(m_waiting.get(), &data, static_cast<int>(count)) < 0)
        throw std::bad_alloc();
    m_end += count;
    while (av_audio_fifo_size(m_waiting.get()) >= frameSize())
        encodeFrame(frameSize(), take);
}

void SoundEncoder::finish(const Take& take) {
    if (const int rest = av_audio_fifo_size(m_waiting.get()); rest > 0)
        encodeFrame(rest, take);
    send(nullptr, take);
}

void SoundEncoder::encodeFrame(int samples, const Take& take) {
    void* read = m_samples.data();
    av_audio_fifo_read(m_waiting.get(), &read, samples);
    const FramePtr frame = newFrame();
    frame->nb_samples = samples;
    frame->format = m_context->sample_fmt;
    frame->sample_rate = m_shape.rate;
    frame->ch_layout = m_shape.layout;
    frame->pts = m_place;
    if (av_frame_get_buffer(frame.get(), 0) < 0)
        throw std::bad_alloc();
    const auto* in = reinterpret_cast<const std::uint8_t*>(m_samples.data());
    if (swr_convert(m_converter.get(), frame->extended_data, samples, &in, samples) != samples)
        throw Failure("cannot convert samples of sound");
    m_place += samples;
    send(frame.get(), take);
}

void SoundEncoder::send(const AVFrame* frame, const Take& take) {
    int status = avcodec_send_frame(m_context.get(), frame);
    while (status >= 0) {
        PacketPtr packet = newPacket();
        status = avcodec_receive_packet(m_context.get(), packet.get());
        if (status >= 0)
            take(std::move(packet));
    }
    if (status != AVERROR(EAGAIN) && status != AVERROR_EOF)
        throw Failure(fmt::format("the encoder '{}' fails at sample {} of the sound: {}",
                                  m_codec.name, m_place, avErrorText(status)));
}

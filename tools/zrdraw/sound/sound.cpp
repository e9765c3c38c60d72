#include "sound/sound.h"

#include "common/tool_error.h"

#include <fmt/format.h>

#include <cstdlib>
#include <new>

namespace {

constexpr AVSampleFormat blockFormat = AV_SAMPLE_FMT_DBL;

// Times that a coarse base has rounded do not make a gap.
constexpr int toleratedMilliseconds = 10;

AVChannelLayout plain(const AVChannelLayout& layout) {
    if (layout.order != AV_CHANNEL_ORDER_CUSTOM)
        return layout;
    AVChannelLayout unspecified{};
    unspecified.order = AV_CHANNEL_ORDER_UNSPEC;
    unspecified.nb_channels = layout.nb_channels;
    return unspecified;
}

} // namespace

SoundShape shapeOf(const AVCodecParameters& stream) {
    return {stream.sample_rate, plain(stream.ch_layout)};
}

bool needsLeadIn(const AVCodecParameters& stream) {
    return av_get_exact_bits_per_sample(stream.codec_id) == 0;
}

SoundDecoder::SoundDecoder(const Input& input, const AVStream& stream, const SoundShape& wanted)
    : m_input(input), m_base(stream.time_base), m_wanted(wanted), m_frame(newFrame()) {
    const AVCodec* codec = avcodec_find_decoder(stream.codecpar->codec_id);
    const char* name = avcodec_get_name(stream.codecpar->codec_id);
    if (!codec)
        throw Failure(fmt::format("the sound of {} is {}, for which there is no decoder; use "
                                  "--streams v to leave it out",
                                  input.name(), name));
    m_codec.reset(avcodec_alloc_context3(codec));
    if (!m_codec || avcodec_parameters_to_context(m_codec.get(), stream.codecpar) < 0)
        throw std::bad_alloc();
    m_codec->pkt_timebase = m_base;
    const int opened = avcodec_open2(m_codec.get(), codec, nullptr);
    if (opened < 0)
        throw Failure(fmt::format("cannot decode the sound of {}, which is {}: {}; use --streams v "
                                  "to leave it out",
                                  input.name(), name, avErrorText(opened)));
}

void SoundDecoder::decode(const AVPacket* packet, const Take& take) {
    const auto check = [this](int status) {
        if (status < 0 && status != AVERROR_EOF && m_input.damage() == Damage::Fail)
            throw Failure(fmt::format("cannot decode the sound of {}: {}; --keep-going goes on "
                                      "without what is damaged",
                                      m_input.name(), avErrorText(status)));
    };
    check(avcodec_send_packet(m_codec.get(), packet));
    for (;;) {
        const int received = avcodec_receive_frame(m_codec.get(), m_frame.get());
        if (received == AVERROR(EAGAIN) || received == AVERROR_EOF)
            break;
        check(received);
        if (received >= 0)
            convert(*m_frame, take);
    }
    if (!packet)
        drain(take);
}

void SoundDecoder::convert(const AVFrame& frame, const Take& take) {
    const std::int64_t time = frame.best_effort_timestamp;
    const AVRational sample{1, frame.sample_rate};
    const std::int64_t place =
        time == AV_NOPTS_VALUE ? m_expected : av_rescale_q(time, m_base, sample);
    const std::int64_t tolerated = std::int64_t{frame.sample_rate} * toleratedMilliseconds / 1000;
    if (!m_converter || !isAsBefore(frame) || std::llabs(place - m_expected) > tolerated) {
        drain(take);
        start(frame, place);
        m_next = time == AV_NOPTS_VALUE ? av_rescale_q(place, sample, m_wanted.base())
                                        : av_rescale_q(time, m_base, m_wanted.base());
    }
    m_expected += frame.nb_samples;
    give(const_cast<const std::uint8_t**>(frame.extended_data), frame.nb_samples, take);
}

bool SoundDecoder::isAsBefore(const AVFrame& frame) const {
    const AVChannelLayout layout = plain(frame.ch_layout);
    return frame.format == m_format && frame.sample_rate == m_from.rate &&
           av_channel_layout_compare(&layout, &m_from.layout) == 0;
}

void SoundDecoder::start(const AVFrame& frame, std::int64_t place) {
    m_format = frame.format;
    m_from = {frame.sample_rate, plain(frame.ch_layout)};
    m_expected = place;
    SwrContext* converter = nullptr;
    swr_alloc_set_opts2(&converter, &m_wanted.layout, blockFormat, m_wanted.rate, &m_from.layout,
                        static_cast<AVSampleFormat>(m_format), m_from.rate, 0, nullptr);
    m_converter.reset(converter);
    if (!m_converter)
        throw std::bad_alloc();
    av_opt_set_double(converter, "rematrix_maxval", 1.0, 0); // a mix of channels must not clip
    const int started = swr_init(converter);
    if (started < 0)
        throw Failure(fmt::format("the sound of {} cannot be brought to {} Hz and {} channels: {}",
                                  m_input.name(), m_wanted.rate, m_wanted.channels(),
                                  avErrorText(started)));
}

void SoundDecoder::drain(const Take& take) {
    if (m_converter && m_from.rate != m_wanted.rate)
        give(nullptr, 0, take);
    m_converter.reset();
}

void SoundDecoder::give(const std::uint8_t** data, int samples, const Take& take) {
    const int most = swr_get_out_samples(m_converter.get(), samples);
    if (most <= 0)
        return;
    SoundBlock block{m_next, {}};
    block.samples.resize(static_cast<std::size_t>(most) * m_wanted.channels());
    auto* out = reinterpret_cast<std::uint8_t*>(block.samples.data());
    const int got = swr_convert(m_converter.get(), &out, most, data, samples);
    if (got < 0)
        throw Failure(
            fmt::format("cannot convert the sound of {}: {}", m_input.name(), avErrorText(got)));
    block.samples.resize(static_cast<std::size_t>(got) * m_wanted.channels());
    m_next += got;
    if (got > 0)
        take(std::move(block));
}

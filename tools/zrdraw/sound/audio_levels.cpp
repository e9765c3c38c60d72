#include "sound/audio_levels.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

extern "C" {
#include <libavutil/samplefmt.h>
}

namespace {

template <typename Sample>
float sampleAt(const std::uint8_t* bytes, std::size_t index, double silence, double full) {
    Sample sample;
    std::memcpy(&sample, bytes + sizeof sample * index, sizeof sample);
    return static_cast<float>((static_cast<double>(sample) - silence) / full);
}

// A sample on a scale of -1 to 1.
float amplitude(AVSampleFormat packed, const std::uint8_t* bytes, std::size_t index) {
    switch (packed) {
    case AV_SAMPLE_FMT_U8:
        return sampleAt<std::uint8_t>(bytes, index, 0x80, 0x80);
    case AV_SAMPLE_FMT_S16:
        return sampleAt<std::int16_t>(bytes, index, 0.0, 0x1p15);
    case AV_SAMPLE_FMT_S32:
        return sampleAt<std::int32_t>(bytes, index, 0.0, 0x1p31);
    case AV_SAMPLE_FMT_S64:
        return sampleAt<std::int64_t>(bytes, index, 0.0, 0x1p63);
    case AV_SAMPLE_FMT_FLT:
        return sampleAt<float>(bytes, index, 0.0, 1.0);
    case AV_SAMPLE_FMT_DBL:
        return sampleAt<double>(bytes, index, 0.0, 1.0);
    default:
        return 0.0F;
    }
}

} // namespace

AudioLevels::AudioLevels(const std::vector<AVStream*>& streams) : m_frame(newFrame()) {
    for (const AVStream* from : streams) {
        const AVCodec* codec = avcodec_find_decoder(from->codecpar->codec_id);
        Stream stream;
        stream.channels = static_cast<std::size_t>(from->codecpar->ch_layout.nb_channels);
        stream.firstChannel = m_channels;
        stream.timeBase = from->time_base;
        stream.decoder.reset(avcodec_alloc_context3(codec));
        // Sound that cannot be decoded is passed on all the same, and shows no level.
        const bool opened =
            codec && stream.decoder &&
            avcodec_parameters_to_context(stream.decoder.get(), from->codecpar) >= 0 &&
            avcodec_open2(stream.decoder.get(), codec, nullptr) >= 0;
        if (opened)
            m_streams.emplace(from->index, std::move(stream));
        m_channels = static_cast<unsigned>(
            std::min(m_channels + static_cast<std::size_t>(from->codecpar->ch_layout.nb_channels),
                     mostChannels));
    }
}

std::vector<int> AudioLevels::streams() const {
    std::vector<int> indexes;
    for (const auto& [index, stream] : m_streams)
        indexes.push_back(index);
    return indexes;
}

void AudioLevels::feed(const AVPacket& packet) {
    const auto found = m_streams.find(packet.stream_index);
    if (found == m_streams.end())
        return;
    Stream& stream = found->second;
    if (avcodec_send_packet(stream.decoder.get(), &packet) < 0)
        return;
    while (avcodec_receive_frame(stream.decoder.get(), m_frame.get()) == 0)
        take(stream, *m_frame);
}

void AudioLevels::take(Stream& stream, const AVFrame& frame) {
    const auto format = static_cast<AVSampleFormat>(frame.format);
    const bool planar = av_sample_fmt_is_planar(format) != 0;
    const AVSampleFormat packed = av_get_packed_sample_fmt(format);
    const auto channels = static_cast<std::size_t>(frame.ch_layout.nb_channels);
    if (frame.sample_rate <= 0 || channels != stream.channels)
        return;
    if (stream.waiting.empty() && frame.best_effort_timestamp != AV_NOPTS_VALUE)
        stream.begin = static_cast<double>(frame.best_effort_timestamp) * av_q2d(stream.timeBase);
    for (std::size_t i = 0; i < static_cast<std::size_t>(frame.nb_samples); ++i) {
        for (std::size_t channel = 0; channel < channels; ++channel)
            stream.waiting.push_back(
                planar ? amplitude(packed, frame.extended_data[channel], i)
                       : amplitude(packed, frame.extended_data[0], i * channels + channel));
    }
}

MeterLevels AudioLevels::takeUntil(double seconds) {
    MeterLevels levels{};
    for (auto& [index, stream] : m_streams) {
        const double rate = stream.decoder->sample_rate;
        if (rate <= 0) // damaged
            continue;
        const std::size_t waiting = stream.waiting.size() / stream.channels;
        const auto taken = static_cast<std::size_t>(std::clamp(
            std::ceil((seconds - stream.begin) * rate), 0.0, static_cast<double>(waiting)));
        for (std::size_t i = 0; i < taken * stream.channels; ++i) {
            const std::size_t channel = stream.firstChannel + i % stream.channels;
            if (channel >= mostChannels)
                continue;
            levels[channel] = std::max(levels[channel], meterLevel(stream.waiting[i]));
        }
        stream.waiting.erase(stream.waiting.begin(),
                             stream.waiting.begin() +
                                 static_cast<std::ptrdiff_t>(taken * stream.channels));
        stream.begin += static_cast<double>(taken) / rate;
    }
    return levels;
}

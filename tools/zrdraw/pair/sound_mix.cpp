#include "pair/sound_mix.h"

#include "sound/sound_codec.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr std::int64_t mostAtOnce = 1024; // samples

const AVStream* soundOf(const Reader& reader) {
    const std::vector<AVStream*> sound = reader.input().sound();
    return reader.info().picture || sound.empty() ? nullptr : sound.front();
}

} // namespace

bool ClipSound::decodeUntil(std::int64_t place) {
    const auto take = [this](SoundBlock block) {
        m_known = block.place + static_cast<std::int64_t>(block.samples.size() / m_channels);
        m_blocks.push_back(std::move(block));
    };
    while (m_known < place && !m_packets.empty()) {
        m_decoder.decode(m_packets.front().get(), take);
        m_packets.pop_front();
    }
    if (m_known < place && m_ended && !std::exchange(m_flushed, true))
        m_decoder.decode(nullptr, take);
    return m_known >= place || m_ended;
}

bool ClipSound::read(std::int64_t place, std::int64_t count, std::vector<double>& samples) {
    if (!decodeUntil(place + count))
        return false;
    samples.assign(static_cast<std::size_t>(count) * m_channels, 0.0);
    const auto channels = static_cast<std::int64_t>(m_channels);
    const auto endOf = [&](const SoundBlock& block) {
        return block.place + static_cast<std::int64_t>(block.samples.size()) / channels;
    };
    while (!m_blocks.empty() && endOf(m_blocks.front()) <= place)
        m_blocks.pop_front();
    for (const SoundBlock& block : m_blocks) {
        const std::int64_t first = std::max(place, block.place);
        const std::int64_t end = std::min(place + count, endOf(block));
        if (first < end)
            std::copy_n(block.samples.begin() + (first - block.place) * channels,
                        (end - first) * channels, samples.begin() + (first - place) * channels);
    }
    return true;
}

SoundMix::Source::Source(Reader& from, const AVStream* stream, const SoundShape& shape)
    : reader(from) {
    if (!stream)
        return;
    sound.emplace(from, *stream, shape);
    from.pass({stream->index}, {stream->index});
}

bool SoundMix::Source::read(std::int64_t place, std::int64_t count) {
    return !sound || sound->read(place, count, samples);
}

void SoundMix::Source::end() {
    if (sound)
        sound->end();
}

const AVStream* SoundMix::model(const Reader& first, const Reader& second) {
    const AVStream* a = soundOf(first);
    return a ? a : soundOf(second);
}

std::unique_ptr<SoundMix> SoundMix::make(Reader& first, Reader& second, const OutputFormat& format,
                                         const std::string& codec, const TransitionSpan& span) {
    const AVStream* like = model(first, second);
    const AVCodec* encoder = like ? soundEncoderFor(format, codec, *like->codecpar) : nullptr;
    if (!encoder)
        return nullptr;
    return std::unique_ptr<SoundMix>(new SoundMix(first, second, *like, format, *encoder, span));
}

SoundMix::SoundMix(Reader& first, Reader& second, const AVStream& like, const OutputFormat& format,
                   const AVCodec& codec, const TransitionSpan& span)
    : m_like(like), m_encoder(codec, *format.muxer, *m_like.codecpar), m_span(span),
      m_begin(placeOf(span.begin)), m_end(placeOf(span.end)),
      m_first(first, soundOf(first), m_encoder.shape()),
      m_second(second, soundOf(second), m_encoder.shape()) {}

std::int64_t SoundMix::placeOf(std::int64_t frame) const {
    return av_rescale_q(frame, av_inv_q(m_span.rate), m_encoder.shape().base());
}

void SoundMix::mixUntil(std::int64_t frames, const SoundEncoder::Take& take) {
    const std::int64_t end = placeOf(std::min(frames, m_span.all));
    while (m_place < end) {
        std::int64_t count = std::min(end - m_place, mostAtOnce);
        for (const std::int64_t border : {m_begin, m_end})
            if (m_place < border)
                count = std::min(count, border - m_place);
        if (!mix(count))
            return;
        m_encoder.encode(m_mixed, take);
        m_place += count;
    }
}

void SoundMix::finish(const SoundEncoder::Take& take) {
    endFirst();
    endSecond();
    mixUntil(m_span.all, take);
    m_encoder.finish(take);
}

// The samples of each that are heard here, at the times of the clips' own files. A range begins
// with the first sample that does not stand before its first frame.
bool SoundMix::readSources(std::int64_t count) {
    const auto placeIn = [this](const Source& source) {
        return m_place + av_rescale_q_rnd(source.reader.firstTime(),
                                          source.reader.input().pictures().time_base,
                                          m_encoder.shape().base(), AV_ROUND_UP);
    };
    return (m_place >= m_end || m_first.read(placeIn(m_first), count)) &&
           (m_place < m_begin || m_second.read(placeIn(m_second) - m_begin, count));
}

bool SoundMix::mix(std::int64_t count) {
    if (!readSources(count))
        return false;
    const std::size_t channels = m_encoder.shape().channels();
    m_mixed.place = m_place;
    m_mixed.samples.assign(static_cast<std::size_t>(count) * channels, 0.0);
    const auto add = [&](const Source& source, auto gainAt) {
        for (std::size_t i = 0; i < source.samples.size(); ++i)
            m_mixed.samples[i] += source.samples[i] * gainAt(i / channels);
    };
    const auto angle = [&](std::size_t sample) {
        const double passed =
            static_cast<double>(m_place - m_begin) + static_cast<double>(sample) + 0.5;
        return passed / static_cast<double>(m_end - m_begin) * std::numbers::pi / 2;
    };
    if (m_place < m_begin) {
        add(
            m_first, [](std::size_t) { return 1.0; });
    } else if (m_place >= m_end) {
        add(
            m_second, [](std::size_t) { return 1.0; });
    } else {
        add(
            m_first, [&](std::size_t sample) { return std::cos(angle(sample)); });
        add(m_second, [&](std::size_t sample) { return std::sin(angle(sample)); });
    }
    return true;
}

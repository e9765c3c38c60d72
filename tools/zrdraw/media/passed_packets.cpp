#include "media/passed_packets.h"

#include "sound/sound.h"

#include <algorithm>

void PassedPackets::choose(const std::vector<int>& streams) {
    for (const int stream : streams)
        m_ends[stream] = INT64_MIN;
}

void PassedPackets::add(PacketPtr packet) {
    if (!passes(packet->stream_index))
        return;
    if (packet->pts != AV_NOPTS_VALUE)
        m_ends[packet->stream_index] = packet->pts + packet->duration;
    m_waiting.push_back(std::move(packet));
}

// Below 0 if the packet begins before the time.
int PassedPackets::compare(const AVPacket& packet, std::int64_t time) const {
    if (packet.pts == AV_NOPTS_VALUE)
        return 0;
    return av_compare_ts(packet.pts, m_input.format().streams[packet.stream_index]->time_base, time,
                         m_input.pictures().time_base);
}

// By more than the lead-in, if the packet has one.
bool PassedPackets::endsBefore(const AVPacket& packet, std::int64_t time) const {
    const AVRational base = m_input.format().streams[packet.stream_index]->time_base;
    const std::int64_t lead =
        m_decoded.contains(packet.stream_index)
            ? av_rescale_q(soundLeadIn, {1, 1000}, m_input.pictures().time_base)
            : 0;
    return av_compare_ts(packet.pts + std::max<std::int64_t>(packet.duration, 0), base, time - lead,
                         m_input.pictures().time_base) <= 0;
}

// The range begins later still.
void PassedPackets::frameBefore(std::int64_t time) {
    if (m_whole)
        return;
    m_seen = time;
    std::erase_if(m_waiting, [&](const PacketPtr& packet) {
        return packet->pts != AV_NOPTS_VALUE && endsBefore(*packet, time);
    });
}

void PassedPackets::begin(std::int64_t time) {
    m_from = m_seen = time;
}

void PassedPackets::frameWithin(std::int64_t time) {
    m_seen = time;
}

void PassedPackets::end(std::int64_t time) {
    m_to = time;
}

bool PassedPackets::awaitsMore() const {
    if (m_whole || !m_to)
        return true;
    return std::any_of(m_ends.begin(), m_ends.end(), [&](const auto& end) {
        const AVStream& stream = *m_input.format().streams[end.first];
        return stream.codecpar->codec_type == AVMEDIA_TYPE_AUDIO && end.second != INT64_MIN &&
               av_compare_ts(end.second, stream.time_base, *m_to, m_input.pictures().time_base) < 0;
    });
}

void PassedPackets::release(std::deque<Item>& ready, bool fileEnded) {
    while (!m_waiting.empty()) {
        AVPacket& packet = *m_waiting.front();
        const bool known = m_whole || fileEnded || m_to || (m_from && compare(packet, m_seen) < 0);
        if (!known)
            return;
        if (m_whole || (m_from && cut(packet)))
            ready.emplace_back(std::move(m_waiting.front()));
        m_waiting.pop_front();
    }
}

// False if nothing of the packet lies in the range.
bool PassedPackets::cut(AVPacket& packet) const {
    const AVCodecParameters& codec = *m_input.format().streams[packet.stream_index]->codecpar;
    const int bits = av_get_exact_bits_per_sample(codec.codec_id);
    const std::int64_t frame = std::int64_t{bits} * codec.ch_layout.nb_channels / 8;
    if (codec.codec_type == AVMEDIA_TYPE_AUDIO && frame > 0 && packet.size % frame == 0)
        return cutSamples(packet, frame);
    const bool begun = m_decoded.contains(packet.stream_index) ? !endsBefore(packet, *m_from)
                                                               : compare(packet, *m_from) >= 0;
    return begun && !(m_to && compare(packet, *m_to) >= 0);
}

// Sound that is not compressed is cut to the sample: one that lies between two ranges which join is
// in the second of them.
bool PassedPackets::cutSamples(AVPacket& packet, std::int64_t bytesPerSample) const {
    if (packet.pts == AV_NOPTS_VALUE)
        return true;
    const std::int64_t samples = packet.size / bytesPerSample;
    const std::int64_t first =
        std::clamp<std::int64_t>(firstSampleFrom(packet, *m_from), 0, samples);
    const std::int64_t end =
        m_to ? std::clamp<std::int64_t>(firstSampleFrom(packet, *m_to), 0, samples) : samples;
    if (first >= end)
        return false;
    const AVStream& stream = *m_input.format().streams[packet.stream_index];
    const AVRational sample{1, stream.codecpar->sample_rate};
    packet.data += first * bytesPerSample;
    packet.size = static_cast<int>((end - first) * bytesPerSample);
    packet.pts += av_rescale_q(first, sample, stream.time_base);
    packet.dts = packet.pts;
    packet.duration = av_rescale_q(end - first, sample, stream.time_base);
    return true;
}

// The number of the first sample of the packet that does not stand before the time.
std::int64_t PassedPackets::firstSampleFrom(const AVPacket& packet, std::int64_t time) const {
    const AVStream& stream = *m_input.format().streams[packet.stream_index];
    const AVRational sample{1, stream.codecpar->sample_rate};
    const std::int64_t place =
        av_rescale_q_rnd(time, m_input.pictures().time_base, sample, AV_ROUND_UP);
    return place - av_rescale_q(packet.pts, stream.time_base, sample);
}

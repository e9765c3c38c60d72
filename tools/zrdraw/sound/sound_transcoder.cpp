#include "sound/sound_transcoder.h"

#include <algorithm>

namespace {

// No time there, no place either.
std::int64_t placeOf(std::int64_t time, const SoundWindow& window, const SoundShape& shape) {
    const bool open = time == std::numeric_limits<std::int64_t>::min() ||
                      time == std::numeric_limits<std::int64_t>::max();
    return open ? time : av_rescale_q_rnd(time, window.base, shape.base(), AV_ROUND_UP);
}

} // namespace

void SoundTranscoder::transcode(const AVPacket* packet, const SoundWindow& window,
                                const SoundEncoder::Take& take) {
    const SoundShape& shape = m_encoder.shape();
    m_decoder.decode(packet, [&](SoundBlock block) { m_waiting.push_back(std::move(block)); });
    const std::int64_t to = placeOf(window.to, window, shape);
    while (!m_waiting.empty()) {
        const SoundBlock& block = m_waiting.front();
        const auto count = static_cast<std::int64_t>(block.samples.size() / shape.channels());
        if (packet && block.place + count > to)
            return;
        encode(std::move(m_waiting.front()), window, take);
        m_waiting.pop_front();
    }
    if (!packet)
        m_encoder.finish(take);
}

void SoundTranscoder::encode(SoundBlock block, const SoundWindow& window,
                             const SoundEncoder::Take& take) {
    const SoundShape& shape = m_encoder.shape();
    const auto count = static_cast<std::int64_t>(block.samples.size() / shape.channels());
    const std::int64_t first =
        std::clamp(placeOf(window.from, window, shape), block.place, block.place + count);
    const std::int64_t end =
        std::clamp(placeOf(window.to, window, shape), first, block.place + count);
    if (first == end)
        return;
    const auto at = [&](std::int64_t place) {
        return block.samples.begin() + (place - block.place) * shape.layout.nb_channels;
    };
    block.samples.erase(at(end), block.samples.end());
    block.samples.erase(block.samples.begin(), at(first));
    block.place = first - av_rescale_q(window.origin, window.base, shape.base());
    m_encoder.encode(block, take);
}

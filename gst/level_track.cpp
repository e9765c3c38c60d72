#include "level_track.h"

#include <algorithm>
#include <cmath>

GstClockTime LevelBlock::end() const {
    return begin + static_cast<GstClockTime>(static_cast<double>(samples()) * GST_SECOND / rate);
}

std::size_t LevelBlock::sampleAt(GstClockTime time) const {
    if (time <= begin)
        return 0;
    // Times are whole nanoseconds, and so lie beside the samples.
    const double sample = std::round(static_cast<double>(time - begin) * rate / GST_SECOND);
    return static_cast<std::size_t>(std::min(sample, static_cast<double>(samples())));
}

bool LevelTrack::begin() {
    const std::lock_guard lock(m_mutex);
    if (m_isFed)
        return false;
    m_isFed = true;
    restart();
    return true;
}

void LevelTrack::feed(LevelBlock block) {
    const std::lock_guard lock(m_mutex);
    m_channels = block.channels;
    m_known = std::max(m_known, block.end());
    m_ended = m_vain = false;
    m_blocks.push_back(std::move(block));
    if (m_known > mostKept)
        drop(m_known - mostKept);
    m_more.notify_all();
}

void LevelTrack::skipTo(GstClockTime time) {
    const std::lock_guard lock(m_mutex);
    m_known = std::max(m_known, time);
    m_vain = false;
    m_more.notify_all();
}

void LevelTrack::end() {
    const std::lock_guard lock(m_mutex);
    m_ended = true;
    m_more.notify_all();
}

void LevelTrack::reset() {
    const std::lock_guard lock(m_mutex);
    restart();
    m_more.notify_all();
}

void LevelTrack::leave() {
    const std::lock_guard lock(m_mutex);
    m_isFed = false;
    restart();
    m_more.notify_all();
}

void LevelTrack::restart() {
    m_blocks.clear();
    m_known = 0;
    m_channels = 0;
    m_ended = !m_isFed;
    m_vain = false;
}

unsigned LevelTrack::channels() const {
    const std::lock_guard lock(m_mutex);
    return m_channels;
}

MeterLevels LevelTrack::between(GstClockTime begin, GstClockTime end, const Patience& patience) {
    std::unique_lock lock(m_mutex);
    const auto isKnown = [&] { return m_known >= end || m_ended || m_impatient; };
    if ((!m_vain || patience.everAnew) && patience.most.count() > 0)
        m_vain = !m_more.wait_for(lock, patience.most, isKnown);
    drop(begin);
    MeterLevels levels{};
    for (const LevelBlock& block : m_blocks) {
        const std::size_t first = block.sampleAt(begin) * block.channels;
        const std::size_t last = block.sampleAt(end) * block.channels;
        for (std::size_t i = first; i < last; ++i)
            if (const std::size_t channel = i % block.channels; channel < levels.size())
                levels[channel] = std::max<unsigned>(levels[channel], block.amplitudes[i]);
    }
    return levels;
}

void LevelTrack::setImpatient(bool impatient) {
    const std::lock_guard lock(m_mutex);
    m_impatient = impatient;
    m_more.notify_all();
}

void LevelTrack::drop(GstClockTime before) {
    while (!m_blocks.empty() && m_blocks.front().end() <= before)
        m_blocks.pop_front();
}

bool LevelTrack::isImpatient() const {
    const std::lock_guard lock(m_mutex);
    return m_impatient;
}

// Frames of any times at a constant rate: repeated or left out by time.
#pragma once

#include "media/stream_info.h"

#include <algorithm>

class EvenRate {
public:
    EvenRate(const StreamInfo& source, AVRational rate) : m_source(source), m_rate(rate) {}

    // How the frames that come out are described.
    StreamInfo describe() const;

    // Of a time in the new base, in the source's.
    std::int64_t sourceTime(std::int64_t time) const;

    // Takes the next frame, and gives each frame that is then known to come out to `take`, with its
    // time in the new base.
    template <class Take>
    void add(const AVFrame& frame, Take take) {
        const std::int64_t place = placeOf(frame.best_effort_timestamp);
        giveUntil(place, take);
        hold(frame, place);
    }

    template <class Take>
    void end(Take take) {
        if (!m_last)
            return;
        const std::int64_t end = placeOf(m_last->best_effort_timestamp + m_last->pkt_duration);
        giveUntil(std::max(end, m_next + (m_given ? 0 : 1)), take);
    }

    std::int64_t repeated() const { return m_repeated; }
    std::int64_t leftOut() const { return m_leftOut; }

private:
    std::int64_t placeOf(std::int64_t time) const;
    void hold(const AVFrame& frame, std::int64_t place);
    FramePtr again(std::int64_t place);

    // The held frame, at every place before that one.
    template <class Take>
    void giveUntil(std::int64_t place, Take take) {
        if (!m_last)
            return;
        for (; m_next < place; ++m_next)
            take(again(m_next));
    }

    StreamInfo m_source;
    AVRational m_rate;
    FramePtr m_last;
    std::int64_t m_next = 0;
    bool m_given = false; // the held frame has come out already
    std::int64_t m_repeated = 0;
    std::int64_t m_leftOut = 0;
};

#include "media/even_rate.h"

#include <new>

StreamInfo EvenRate::describe() const {
    StreamInfo info = m_source;
    info.frameRate = m_rate;
    info.timeBase = av_inv_q(m_rate);
    info.start = placeOf(m_source.start);
    info.unevenRate = false;
    if (m_source.frameCount > 1)
        info.frameCount = av_rescale_q(m_source.frameCount, m_rate, m_source.frameRate);
    return info;
}

std::int64_t EvenRate::placeOf(std::int64_t time) const {
    return av_rescale_q_rnd(time, m_source.timeBase, av_inv_q(m_rate), AV_ROUND_NEAR_INF);
}

std::int64_t EvenRate::sourceTime(std::int64_t time) const {
    return av_rescale_q(time, av_inv_q(m_rate), m_source.timeBase);
}

void EvenRate::hold(const AVFrame& frame, std::int64_t place) {
    if (!m_last)
        m_next = place;
    else if (!m_given)
        ++m_leftOut;
    m_last = newFrame();
    if (av_frame_ref(m_last.get(), &frame) < 0)
        throw std::bad_alloc();
    m_given = false;
}

FramePtr EvenRate::again(std::int64_t place) {
    FramePtr frame = newFrame();
    if (av_frame_ref(frame.get(), m_last.get()) < 0)
        throw std::bad_alloc();
    frame->best_effort_timestamp = place;
    frame->pkt_duration = 1;
    if (m_given)
        ++m_repeated;
    m_given = true;
    return frame;
}

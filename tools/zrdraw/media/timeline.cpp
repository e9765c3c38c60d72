#include "media/timeline.h"

#include "common/tool_error.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <numeric>
#include <string_view>

namespace {

// These derive their rate from the base of times, so that it has to be that of the frames.
constexpr AVCodecID rateCodecs[] = {
    AV_CODEC_ID_MPEG1VIDEO, AV_CODEC_ID_MPEG2VIDEO, AV_CODEC_ID_MPEG4, AV_CODEC_ID_MSMPEG4V2,
    AV_CODEC_ID_MSMPEG4V3,  AV_CODEC_ID_WMV1,       AV_CODEC_ID_WMV2,  AV_CODEC_ID_H261,
    AV_CODEC_ID_H263,       AV_CODEC_ID_H263P,      AV_CODEC_ID_FLV1,  AV_CODEC_ID_DVVIDEO,
};

// These have a time beside every frame, though they do not say so by a flag.
constexpr std::string_view timedFormats[] = {"mov",  "mp4", "ipod", "3gp", "3g2",  "psp", "f4v",
                                             "ismv", "asf", "mpeg", "vob", "svcd", "dvd"};

bool holdsAnyTimes(const AVOutputFormat& muxer) {
    return (muxer.flags & AVFMT_VARIABLE_FPS) ||
           std::find(std::begin(timedFormats), std::end(timedFormats), muxer.name) !=
               std::end(timedFormats);
}

constexpr std::int64_t finestBase = 100'000'000; // what the formats' 32 bits surely hold

// Both the source's times and whole frames are whole numbers in it.
AVRational commonBase(AVRational base, AVRational rate) {
    const std::int64_t common = std::lcm(std::int64_t{base.den}, std::int64_t{rate.num});
    return base.num == 1 && common <= finestBase ? AVRational{1, static_cast<int>(common)} : base;
}

} // namespace

Timeline::Timeline(const StreamInfo& source, const OutputFormat& format)
    : m_source(source), m_format(format.muxer->name) {
    const bool numbers = format.picture || format.sequence || !holdsAnyTimes(*format.muxer);
    bool grid = false;
    for (const AVCodecID codec : rateCodecs)
        grid = grid || codec == format.codec->id;
    const bool gaps = grid || format.isNamed("avi"); // which are frames of no size there
    m_kind = gaps ? Kind::Grid : numbers ? Kind::Numbers : Kind::Exact;
    m_base = m_kind == Kind::Exact ? commonBase(source.timeBase, source.frameRate)
                                   : av_inv_q(source.frameRate);
    if (m_kind != Kind::Exact && source.unevenRate && !format.picture)
        throw Failure(fmt::format("the frames are not evenly spaced in time, which {} '{}' cannot "
                                  "hold: use --rate {:.6g} "
                                  "to repeat or leave out frames, or another name such as out.mkv",
                                  m_kind == Kind::Numbers ? "the format" : "the encoder",
                                  m_kind == Kind::Numbers ? m_format : format.codec->name,
                                  av_q2d(source.frameRate)));
}

std::int64_t Timeline::onGrid(const Frame& frame, std::int64_t origin) const {
    return av_rescale_q_rnd(frame.time - origin, m_source.timeBase, av_inv_q(m_source.frameRate),
                            AV_ROUND_NEAR_INF);
}

std::int64_t Timeline::place(const Frame& frame, std::int64_t origin) {
    const std::int64_t grid = onGrid(frame, origin);
    const std::int64_t back = av_rescale_q(grid, av_inv_q(m_source.frameRate), m_source.timeBase);
    if (m_kind == Kind::Exact) {
        // Times that a coarse base has rounded are put back on the frames' places.
        const bool rounded = back == frame.time - origin;
        return rounded ? av_rescale_q(grid, av_inv_q(m_source.frameRate), m_base)
                       : av_rescale_q(frame.time - origin, m_source.timeBase, m_base);
    }
    const std::int64_t length = av_rescale_q(1, av_inv_q(m_source.frameRate), m_source.timeBase);
    const bool near =
        std::llabs(back - (frame.time - origin)) <= std::max<std::int64_t>(1, length / 4);
    const bool follows = m_kind == Kind::Grid ? grid >= m_next : grid == m_next;
    if (!near || !follows)
        refuse(frame);
    m_next = grid + 1;
    return grid;
}

std::int64_t Timeline::lengthOf(const Frame& frame) const {
    if (m_kind != Kind::Exact)
        return 1;
    const std::int64_t usual = av_rescale_q(1, av_inv_q(m_source.frameRate), m_source.timeBase);
    return std::llabs(frame.duration - usual) <= 1
               ? av_rescale_q(1, av_inv_q(m_source.frameRate), m_base)
               : av_rescale_q(frame.duration, m_source.timeBase, m_base);
}

void Timeline::refuse(const Frame& frame) const {
    throw Failure(fmt::format(
        "frame {} stands at {:.3f} s, off the even spacing of {:.6g} frames a second, which the "
        "format '{}' cannot hold: use --rate {:.6g} to repeat or leave out frames, or another name "
        "such as out.mkv",
        frame.number, static_cast<double>(frame.time) * av_q2d(m_source.timeBase),
        av_q2d(m_source.frameRate), m_format, av_q2d(m_source.frameRate)));
}

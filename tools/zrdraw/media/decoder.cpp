#include "media/decoder.h"

#include "common/tool_error.h"
#include "media/reading_rules.h"
#include "picture/packing.h"
#include "picture/pixel_formats.h"

#include <fmt/format.h>

#include <new>

RawLines linesOf(const zrLayout& layout, const RawFormat& raw) {
    if (raw.width <= 0 || raw.height <= 0)
        throw UsageError(fmt::format("raw frames of {}x{} do not exist: use a size from 1x1 on",
                                     raw.width, raw.height));
    requireFit(layout, raw.width, raw.height);
    return {wholeLineBytes(layout, raw.width), raw.height, raw.frameRate};
}

Decoder::Decoder(Input& input, const zrLayout& layout, const std::optional<RawFormat>& raw,
                 const AVPacket& first, Damage damage, bool mayBeBare)
    : m_input(input), m_layout(layout), m_raw(raw), m_damage(damage) {
    if (!m_raw && !(mayBeBare && holdsBareFrames(first)))
        open();
}

bool Decoder::holdsBareFrames(const AVPacket& first) const {
    const AVCodecParameters& header = *m_input.pictures().codecpar;
    return header.codec_id == AV_CODEC_ID_V210 && m_layout.code == ptV210 &&
           first.size == wholeLineBytes(m_layout, header.width) * header.height;
}

void Decoder::open() {
    const AVCodecParameters& parameters = *m_input.pictures().codecpar;
    const AVCodec* codec = avcodec_find_decoder(parameters.codec_id);
    if (!codec)
        throw Failure(fmt::format("{} holds {} video, for which there is no decoder",
                                  m_input.name(), avcodec_get_name(parameters.codec_id)));
    m_codec.reset(avcodec_alloc_context3(codec));
    if (!m_codec || avcodec_parameters_to_context(m_codec.get(), &parameters) < 0)
        throw std::bad_alloc();
    m_codec->pkt_timebase = m_input.pictures().time_base;
    m_codec->thread_count = 0; // as many as there are processors
    m_codec->err_recognition = errorChecks(parameters.codec_id);
    const int opened = avcodec_open2(m_codec.get(), codec, nullptr);
    if (opened < 0)
        throw Failure(fmt::format("cannot decode {}: {}", m_input.name(), avErrorText(opened)));
}

// With Damage::Skip what is wrong is counted where a frame stands in.
void Decoder::complain(const std::string& reason) {
    if (m_damage == Damage::Fail)
        m_input.failAtFrame(reason);
}

void Decoder::send(AVPacket* packet) {
    m_ended = packet == nullptr;
    if (packet && m_damage == Damage::Skip && packet->pts != AV_NOPTS_VALUE)
        m_due[packet->pts] = packet->duration;
    if (!m_codec) {
        if (packet) {
            m_bare = newPacket();
            av_packet_move_ref(m_bare.get(), packet);
        }
        return;
    }
    const int sent = avcodec_send_packet(m_codec.get(), packet);
    if (sent < 0 && sent != AVERROR_EOF)
        complain(avErrorText(sent));
}

void Decoder::flush() {
    if (m_codec)
        avcodec_flush_buffers(m_codec.get());
    m_bare.reset();
    m_due.clear();
    m_waits.reset();
}

bool Decoder::receive(AVFrame& frame) {
    if (m_damage == Damage::Fail)
        return take(frame);
    if (!m_waits) {
        m_waits = newFrame();
        if (!take(*m_waits))
            m_waits.reset();
    }
    if (standIn(frame))
        return true;
    if (!m_waits)
        return false;
    av_frame_move_ref(&frame, m_waits.get());
    m_waits.reset();
    m_due.erase(frame.best_effort_timestamp);
    m_good = newFrame();
    if (av_frame_ref(m_good.get(), &frame) < 0)
        throw std::bad_alloc();
    return true;
}

// The last good frame in the place of one that was to come before the waiting one, or before the
// end, and did not.
bool Decoder::standIn(AVFrame& frame) {
    if (m_due.empty() || !(m_waits || m_ended))
        return false;
    const auto [time, duration] = *m_due.begin();
    if (m_waits && time >= m_waits->best_effort_timestamp)
        return false;
    const AVFrame* good = m_good ? m_good.get() : m_waits.get();
    if (!good)
        return false;
    m_due.erase(m_due.begin());
    if (av_frame_ref(&frame, good) < 0)
        throw std::bad_alloc();
    frame.best_effort_timestamp = time;
    frame.pkt_duration = duration;
    ++m_standIns;
    return true;
}

bool Decoder::take(AVFrame& frame) {
    while (m_codec ? decode(frame) : takeBare(frame)) {
        setTime(frame);
        if (isSound(frame))
            return true;
        av_frame_unref(&frame);
    }
    return false;
}

bool Decoder::takeBare(AVFrame& frame) {
    if (!m_bare)
        return false;
    const PacketPtr packet = std::move(m_bare);
    const AVCodecParameters& header = *m_input.pictures().codecpar;
    frame.format = barePixels;
    frame.width = m_raw ? m_raw->width : header.width;
    frame.height = m_raw ? m_raw->height : header.height;
    frame.linesize[0] = wholeLineBytes(m_layout, frame.width);
    if (packet->size != frame.linesize[0] * frame.height) {
        complain(fmt::format("it has {} bytes and not {}", packet->size,
                             frame.linesize[0] * frame.height));
        return false;
    }
    if (av_packet_make_refcounted(packet.get()) < 0)
        throw std::bad_alloc();
    frame.data[0] = packet->data;
    frame.buf[0] = packet->buf;
    packet->buf = nullptr;
    frame.best_effort_timestamp = packet->pts;
    frame.pkt_duration = packet->duration;
    frame.colorspace = header.color_space;
    frame.color_range = header.color_range;
    frame.sample_aspect_ratio =
        av_guess_sample_aspect_ratio(&m_input.format(), &m_input.pictures(), nullptr);
    frame.interlaced_frame = isInterlaced(header.field_order);
    frame.top_field_first = header.field_order == AV_FIELD_TT || header.field_order == AV_FIELD_TB;
    return true;
}

bool Decoder::decode(AVFrame& frame) {
    for (;;) {
        const int received = avcodec_receive_frame(m_codec.get(), &frame);
        if (received == 0)
            return true;
        if (received == AVERROR_EOF || received == AVERROR(EAGAIN))
            return false;
        complain(avErrorText(received));
    }
}

bool Decoder::isSound(const AVFrame& frame) {
    const char* wrong = frame.width <= 0 || frame.height <= 0 ? "the picture has no size"
                        : (frame.flags & AV_FRAME_FLAG_CORRUPT) || frame.decode_error_flags != 0
                            ? "the picture is damaged"
                            : nullptr;
    if (wrong)
        complain(wrong);
    return !wrong;
}

void Decoder::setTime(AVFrame& frame) {
    const AVStream& stream = m_input.pictures();
    if (frame.best_effort_timestamp == AV_NOPTS_VALUE)
        frame.best_effort_timestamp = m_nextTime;
    if (frame.pkt_duration <= 0) {
        const AVRational rate =
            av_guess_frame_rate(&m_input.format(), &m_input.pictures(), nullptr);
        frame.pkt_duration = rate.num > 0 ? av_rescale_q(1, av_inv_q(rate), stream.time_base) : 1;
    }
    m_nextTime = frame.best_effort_timestamp + frame.pkt_duration;
}

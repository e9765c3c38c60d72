#include "media/frame_source.h"

#include "media/packing.h"
#include "media/pixel_formats.h"
#include "media/reading_rules.h"
#include "tool_error.h"

#include <fmt/format.h>

#include <new>

extern "C" {
#include <libavutil/dict.h>
#include <libavutil/pixdesc.h>
}

namespace {

constexpr int decoderThreads = 2;

std::string describeFormat(int width, int height, int format) {
    const char* name = av_get_pix_fmt_name(static_cast<AVPixelFormat>(format));
    return fmt::format("{}x{} {}", width, height, name ? name : "unknown");
}

template <class T>
T known(T fromFrame, T fromHeader, T unspecified) {
    return fromFrame != unspecified ? fromFrame : fromHeader;
}

std::string timeCodeIn(const AVDictionary* tags) {
    const AVDictionaryEntry* entry = av_dict_get(tags, "timecode", nullptr, 0);
    return entry ? entry->value : "";
}

// The pictures' own, the file's, or that of a stream of time codes.
std::string timeCodeOf(const AVFormatContext& input, const AVStream& pictures) {
    std::string text = timeCodeIn(pictures.metadata);
    if (text.empty())
        text = timeCodeIn(input.metadata);
    for (unsigned i = 0; i < input.nb_streams && text.empty(); ++i)
        text = timeCodeIn(input.streams[i]->metadata);
    return text;
}

// The number of frames for a progress display: from the header, else from the length in time.
std::int64_t frameCountOf(const AVFormatContext& input, const AVStream& stream, AVRational rate) {
    if (stream.nb_frames > 0)
        return stream.nb_frames;
    if (input.duration_estimation_method == AVFMT_DURATION_FROM_BITRATE)
        return 0;
    if (stream.duration > 0)
        return av_rescale_q(stream.duration, stream.time_base, av_inv_q(rate));
    return input.duration > 0 ? av_rescale_q(input.duration, timeBaseUnit, av_inv_q(rate)) : 0;
}

RawLines linesOf(const zrLayout& layout, const RawFormat& raw) {
    if (raw.width <= 0 || raw.height <= 0)
        throw UsageError(fmt::format("raw frames of {}x{} do not exist: use a size from 1x1 on",
                                     raw.width, raw.height));
    requireFit(layout, raw.width, raw.height);
    return {wholeLineBytes(layout, raw.width), raw.height, raw.frameRate};
}

} // namespace

FrameSource::FrameSource(const std::string& path, const LayoutChoice& layout,
                         const std::optional<RawFormat>& raw, const AVIOInterruptCB& interrupt)
    : m_layout(&layout(AV_PIX_FMT_NONE)), m_raw(raw),
      m_packets(path, raw ? std::optional(linesOf(*m_layout, *raw)) : std::nullopt, interrupt),
      m_first(newFrame()) {
    if (!m_raw)
        m_layout = &layout(static_cast<AVPixelFormat>(m_packets.pictures().codecpar->format));
    if (!m_raw && !holdsBareFrames())
        openDecoder();
    if (!next(*m_first))
        throw Failure(fmt::format("{} holds no picture", m_packets.name()));
    describe(*m_first);
}

// Whether the stream's packets are pictures in the layout, byte for byte. Some v210 files have
// lines of another length, which the decoder understands.
bool FrameSource::holdsBareFrames() {
    const AVCodecParameters& header = *m_packets.pictures().codecpar;
    if (header.codec_id != AV_CODEC_ID_V210 || m_layout->code != ptV210)
        return false;
    if (!m_packets.readPicture())
        return false;
    m_packets.readAgain();
    return m_packets.packet().size == wholeLineBytes(*m_layout, header.width) * header.height;
}

void FrameSource::openDecoder() {
    const AVCodecParameters& parameters = *m_packets.pictures().codecpar;
    const AVCodec* codec = avcodec_find_decoder(parameters.codec_id);
    if (!codec)
        throw Failure(fmt::format("{} holds {} video, for which there is no decoder",
                                  m_packets.name(), avcodec_get_name(parameters.codec_id)));
    m_decoder.reset(avcodec_alloc_context3(codec));
    if (!m_decoder || avcodec_parameters_to_context(m_decoder.get(), &parameters) < 0)
        throw std::bad_alloc();
    m_decoder->pkt_timebase = m_packets.pictures().time_base;
    m_decoder->thread_count = decoderThreads;
    m_decoder->err_recognition = errorChecks(parameters.codec_id);
    const int opened = avcodec_open2(m_decoder.get(), codec, nullptr);
    if (opened < 0)
        throw Failure(fmt::format("cannot decode {}: {}", m_packets.name(), avErrorText(opened)));
}

void FrameSource::describe(const AVFrame& first) {
    const AVCodecParameters& header = *m_packets.pictures().codecpar;
    const AVRational rate = av_guess_frame_rate(&m_packets.input(), &m_packets.pictures(), nullptr);
    if (rate.num > 0 && rate.den > 0)
        m_info.frameRate = rate;
    m_info.width = first.width;
    m_info.height = first.height;
    m_info.timeBase = m_packets.pictures().time_base;
    m_info.sampleAspect =
        av_guess_sample_aspect_ratio(&m_packets.input(), &m_packets.pictures(), m_first.get());
    m_info.pixelFormat = first.format == barePixels ? pixelFormatOf(*m_layout)
                                                    : static_cast<AVPixelFormat>(first.format);
    m_info.colorSpace = known(first.colorspace, header.color_space, AVCOL_SPC_UNSPECIFIED);
    m_info.colorRange = known(first.color_range, header.color_range, AVCOL_RANGE_UNSPECIFIED);
    m_info.colorPrimaries =
        known(first.color_primaries, header.color_primaries, AVCOL_PRI_UNSPECIFIED);
    m_info.colorTransfer = known(first.color_trc, header.color_trc, AVCOL_TRC_UNSPECIFIED);
    m_info.chromaLocation =
        known(first.chroma_location, header.chroma_location, AVCHROMA_LOC_UNSPECIFIED);
    m_info.fieldOrder = header.field_order;
    if (m_info.fieldOrder == AV_FIELD_UNKNOWN && first.interlaced_frame)
        m_info.fieldOrder = first.top_field_first ? AV_FIELD_TT : AV_FIELD_BB;
    m_info.formatName = m_packets.input().iformat->name;
    m_info.timeCode = timeCodeOf(m_packets.input(), m_packets.pictures());
    const std::int64_t start = first.best_effort_timestamp;
    if (start != AV_NOPTS_VALUE)
        m_packets.setStartTime(av_rescale_q(start, m_packets.pictures().time_base, timeBaseUnit));
    m_info.picture = m_packets.isPicture();
    m_info.frameCount =
        m_info.picture ? 1
                       : frameCountOf(m_packets.input(), m_packets.pictures(), m_info.frameRate);
}

bool FrameSource::read(AVFrame& frame) {
    av_frame_unref(&frame);
    if (m_first) {
        av_frame_move_ref(&frame, m_first.get());
        m_first.reset();
        return true;
    }
    if (!next(frame))
        return false;
    requireSameFormat(frame);
    return true;
}

bool FrameSource::next(AVFrame& frame) {
    return m_decoder ? decode(frame) : takeBare(frame);
}

bool FrameSource::takeBare(AVFrame& frame) {
    if (!m_packets.readPicture())
        return false;
    const AVCodecParameters& header = *m_packets.pictures().codecpar;
    frame.format = barePixels;
    frame.width = m_raw ? m_raw->width : header.width;
    frame.height = m_raw ? m_raw->height : header.height;
    frame.linesize[0] = wholeLineBytes(*m_layout, frame.width);
    if (m_packets.packet().size != frame.linesize[0] * frame.height)
        m_packets.failAtFrame(fmt::format("it has {} bytes and not {}", m_packets.packet().size,
                                          frame.linesize[0] * frame.height));
    frame.buf[0] = av_buffer_ref(m_packets.packet().buf);
    if (!frame.buf[0])
        throw std::bad_alloc();
    frame.data[0] = m_packets.packet().data;
    frame.colorspace = header.color_space;
    frame.color_range = header.color_range;
    frame.sample_aspect_ratio =
        av_guess_sample_aspect_ratio(&m_packets.input(), &m_packets.pictures(), nullptr);
    frame.interlaced_frame = isInterlaced(header.field_order);
    frame.top_field_first = header.field_order == AV_FIELD_TT || header.field_order == AV_FIELD_TB;
    m_packets.countFrame();
    return true;
}

bool FrameSource::decode(AVFrame& frame) {
    for (;;) {
        const int received = avcodec_receive_frame(m_decoder.get(), &frame);
        if (received == AVERROR_EOF)
            return false;
        if (received == 0) {
            requireSound(frame);
            m_packets.countFrame();
            return true;
        }
        if (received != AVERROR(EAGAIN))
            m_packets.failAtFrame(avErrorText(received));
        feedDecoder();
    }
}

void FrameSource::feedDecoder() {
    if (!m_packets.readPicture())
        av_packet_unref(
            &m_packets.packet()); // without data it asks the decoder for what it holds back
    const int sent = avcodec_send_packet(m_decoder.get(), &m_packets.packet());
    if (sent < 0)
        m_packets.failAtFrame(avErrorText(sent));
}

void FrameSource::requireSound(const AVFrame& frame) const {
    if (frame.width <= 0 || frame.height <= 0)
        m_packets.failAtFrame("the picture has no size");
    if ((frame.flags & AV_FRAME_FLAG_CORRUPT) || frame.decode_error_flags != 0)
        m_packets.failAtFrame("the picture is damaged");
}

void FrameSource::requireSameFormat(const AVFrame& frame) const {
    if (frame.width != m_info.width || frame.height != m_info.height ||
        (m_decoder && frame.format != m_info.pixelFormat))
        throw Failure(fmt::format("{} changes from {} to {} at frame {}", m_packets.name(),
                                  describeFormat(m_info.width, m_info.height, m_info.pixelFormat),
                                  describeFormat(frame.width, frame.height, frame.format),
                                  m_packets.frames() - 1));
}

#include "media/output.h"

#include "common/tool_error.h"

#include <fmt/format.h>

#include <cstring>
#include <new>
#include <numeric>

extern "C" {
#include <libavutil/mem.h>
#include <libavutil/opt.h>
}

namespace {

// Of what stands beside a stream in its container, what stays true when its pictures are drawn on.
constexpr AVPacketSideDataType keptSideData[] = {
    AV_PKT_DATA_DISPLAYMATRIX,       AV_PKT_DATA_STEREO3D,
    AV_PKT_DATA_SPHERICAL,           AV_PKT_DATA_MASTERING_DISPLAY_METADATA,
    AV_PKT_DATA_CONTENT_LIGHT_LEVEL, AV_PKT_DATA_REPLAYGAIN,
    AV_PKT_DATA_AUDIO_SERVICE_TYPE,
};

// What a container may hold back so that streams stand beside each other, where frames come out as
// they go in: a second of them is much memory.
constexpr std::int64_t shortInterleave = AV_TIME_BASE / 2;

// Where streams begin is told by these formats in units of the whole file, of a millisecond unless
// told: too coarse for samples of sound.
void setMovieTimescale(const AVFormatContext& muxer, AvOptions& options) {
    constexpr std::int64_t finest = 100'000'000;
    bool sound = false;
    std::int64_t scale = 1;
    for (unsigned i = 0; i < muxer.nb_streams; ++i) {
        const AVStream& stream = *muxer.streams[i];
        sound = sound || stream.codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
        const std::int64_t common = std::lcm(scale, std::int64_t{stream.time_base.den});
        scale = common <= finest ? common : scale;
    }
    if (sound && av_opt_find(muxer.priv_data, "movie_timescale", nullptr, 0, 0))
        options.set("movie_timescale", std::to_string(scale));
}

// Readers of this format take the delay of this codec off its times; the muxer does not add it.
std::int64_t delayToAdd(const OutputFormat& format, const AVCodecParameters& stream,
                        AVRational base) {
    const bool taken = stream.codec_id == AV_CODEC_ID_OPUS &&
                       (format.isNamed("matroska") || format.isNamed("webm"));
    return taken ? av_rescale_q(stream.initial_padding, {1, stream.sample_rate}, base) : 0;
}

} // namespace

void copySideData(const AVStream& from, AVStream& to) {
    for (const AVPacketSideDataType type : keptSideData) {
        std::size_t size = 0;
        const std::uint8_t* data = av_stream_get_side_data(&from, type, &size);
        if (!data)
            continue;
        std::uint8_t* copy = av_stream_new_side_data(&to, type, size);
        if (!copy)
            throw std::bad_alloc();
        std::memcpy(copy, data, size);
    }
}

Output::Output(const std::string& path, const OutputFormat& format)
    : m_path(path), m_name(path == "-" ? "standard output" : fmt::format("'{}'", path)),
      m_format(format) {
    AVFormatContext* muxer = nullptr;
    avformat_alloc_output_context2(&muxer, m_format.muxer, nullptr, nullptr);
    if (!muxer)
        throw std::bad_alloc();
    m_muxer.reset(muxer);
    m_muxer->strict_std_compliance = FF_COMPLIANCE_UNOFFICIAL; // y4m of more than 8 bits
}

AVStream& Output::newStream() {
    AVStream* stream = avformat_new_stream(m_muxer.get(), nullptr);
    if (!stream)
        throw std::bad_alloc();
    return *stream;
}

AVStream& Output::addStream(const AVCodecContext& encoder) {
    AVStream& stream = newStream();
    if (avcodec_parameters_from_context(stream.codecpar, &encoder) < 0)
        throw std::bad_alloc();
    stream.time_base = encoder.time_base;
    return stream;
}

AVStream& Output::addFrames(const Encoder& encoder) {
    AVStream& stream = addStream(encoder.context());
    stream.avg_frame_rate = encoder.context().framerate;
    stream.sample_aspect_ratio = encoder.context().sample_aspect_ratio;
    return stream;
}

AVStream& Output::addCopy(const AVStream& from) {
    AVStream& to = newStream();
    if (avcodec_parameters_copy(to.codecpar, from.codecpar) < 0)
        throw std::bad_alloc();
    to.codecpar->codec_tag = 0; // each format has its own
    to.time_base = from.time_base;
    to.avg_frame_rate = from.avg_frame_rate;
    to.sample_aspect_ratio = from.sample_aspect_ratio;
    to.disposition = from.disposition;
    av_dict_copy(&to.metadata, from.metadata, 0);
    copySideData(from, to);
    return to;
}

// A picture among them comes as a stream of one packet.
void Output::addAttachment(const AVStream& from) {
    AVStream& to = newStream();
    if (avcodec_parameters_copy(to.codecpar, from.codecpar) < 0)
        throw std::bad_alloc();
    to.codecpar->codec_type = AVMEDIA_TYPE_ATTACHMENT;
    to.codecpar->codec_tag = 0;
    av_dict_copy(&to.metadata, from.metadata, 0);
    const AVPacket& picture = from.attached_pic;
    if (picture.size == 0)
        return;
    av_freep(&to.codecpar->extradata);
    to.codecpar->extradata = static_cast<std::uint8_t*>(
        av_mallocz(static_cast<std::size_t>(picture.size) + AV_INPUT_BUFFER_PADDING_SIZE));
    if (!to.codecpar->extradata)
        throw std::bad_alloc();
    std::memcpy(to.codecpar->extradata, picture.data, static_cast<std::size_t>(picture.size));
    to.codecpar->extradata_size = picture.size;
}

void Output::begin(bool force, int firstNumber, bool lowDelay) {
    if (m_format.sequence) {
        m_pictures.emplace(m_path, firstNumber, force);
        return;
    }
    m_file.emplace(m_path, force);
    m_muxer->pb = m_file->io();
    m_muxer->flags |= AVFMT_FLAG_CUSTOM_IO;
    if (lowDelay)
        m_muxer->max_interleave_delta = shortInterleave;
    m_messages = {};
    AvOptions options;
    setMovieTimescale(*m_muxer, options);
    const int started = avformat_write_header(m_muxer.get(), options.get());
    if (started < 0)
        fail("begin", started);
}

void Output::write(AVPacket& packet, AVRational base, const AVStream& stream) {
    if (m_pictures) {
        m_pictures->write(packet);
        av_packet_unref(&packet);
        return;
    }
    packet.stream_index = stream.index;
    packet.pos = -1;
    if (const std::int64_t delay = delayToAdd(m_format, *stream.codecpar, base)) {
        packet.pts += packet.pts == AV_NOPTS_VALUE ? 0 : delay;
        packet.dts += packet.dts == AV_NOPTS_VALUE ? 0 : delay;
    }
    av_packet_rescale_ts(&packet, base, stream.time_base);
    m_messages = {};
    const int written = av_interleaved_write_frame(m_muxer.get(), &packet);
    if (written < 0)
        fail("write", written);
    m_file->endPacket();
}

void Output::finish() {
    if (m_pictures)
        return m_pictures->commit();
    m_messages = {};
    const int ended = av_write_trailer(m_muxer.get());
    if (ended < 0)
        fail("complete", ended);
    m_file->commit();
}

// A full disk or a closed pipe is the better reason, when there is one.
void Output::fail(const std::string& action, int error) {
    m_file->check();
    throw Failure(fmt::format("cannot {} {}: {}", action, m_name, m_messages.cause(error)));
}

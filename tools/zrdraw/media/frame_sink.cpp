#include "media/frame_sink.h"

#include "media/output_format.h"
#include "media/packing.h"
#include "media/pixel_formats.h"
#include "tool_error.h"

#include <fmt/format.h>

#include <new>
#include <string_view>

extern "C" {
#include <libavutil/dict.h>
}

namespace {

constexpr int encoderThreads = 2;

struct EncoderSetting {
    std::string_view encoder;
    const char* key;
    const char* value;
};

// Left alone, these encoders aim at a low bit rate that would blur thin lines.
// clang-format off
constexpr EncoderSetting qualitySettings[] = {
    {"libx264", "crf", "16"}, {"libx264", "preset", "veryfast"},
    {"libvpx", "crf", "10"}, {"libvpx", "b", "20M"},
    {"libvpx-vp9", "crf", "20"}, {"libvpx-vp9", "b", "0"}, {"libvpx-vp9", "cpu-used", "4"},
    {"mpeg4", "flags", "+qscale"}, {"mpeg4", "global_quality", "236"},
    {"mjpeg", "flags", "+qscale"}, {"mjpeg", "global_quality", "236"},
    {"mpeg1video", "flags", "+qscale"}, {"mpeg1video", "global_quality", "236"},
    {"mpeg2video", "flags", "+qscale"}, {"mpeg2video", "global_quality", "236"},
};
// clang-format on

// "needs an even width" and the like, for the sizes that chroma samples shared by pixels rule out.
std::string sizeRemark(AVPixelFormat format, int width, int height) {
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    const int across = 1 << description->log2_chroma_w;
    const int down = 1 << description->log2_chroma_h;
    if (width % across == 0 && height % down == 0)
        return "";
    return fmt::format(" (it needs a width that {} divides and a height that {} divides)", across,
                       down);
}

} // namespace

FrameSink::FrameSink(const std::string& path, const SinkOptions& options, const StreamInfo& source,
                     const zrLayout& layout)
    : m_name(path == "-" ? "standard output" : fmt::format("'{}'", path)), m_packet(newPacket()) {
    OutputFile::checkPath(path, options.force);
    const OutputFormat format = chooseOutputFormat(path, options.format, options.codec);
    const AVCodec& codec = *format.codec;
    m_format = format.muxer;
    m_picture = format.picture;
    m_encoder.reset(avcodec_alloc_context3(&codec));
    if (!m_encoder)
        throw std::bad_alloc();
    describeFrames(codec, source, pixelFormatOf(layout));
    openEncoder(codec);
    // Bare frames, and streams that hold the layout's own bytes, are written without the encoder.
    const bool rawFrames =
        std::string_view(m_format->name) == "rawvideo" && codec.id == AV_CODEC_ID_RAWVIDEO;
    if (rawFrames || (codec.id == AV_CODEC_ID_V210 && layout.code == ptV210))
        m_bareLine = wholeLineBytes(layout, source.width);
    m_file.emplace(path, options.force);
    startMuxer(options);
}

void FrameSink::describeFrames(const AVCodec& codec, const StreamInfo& source,
                               AVPixelFormat working) {
    AVCodecContext& encoder = *m_encoder;
    encoder.width = source.width;
    encoder.height = source.height;
    encoder.time_base = av_inv_q(source.frameRate);
    encoder.framerate = source.frameRate;
    encoder.sample_aspect_ratio = source.sampleAspect;
    encoder.field_order = source.fieldOrder;
    encoder.color_primaries = source.colorPrimaries;
    encoder.color_trc = source.colorTransfer;
    encoder.chroma_sample_location = source.chromaLocation;
    encoder.pix_fmt = chooseFramePixels(codec, source.pixelFormat, working);
    if (encoder.pix_fmt == AV_PIX_FMT_NONE)
        throw Failure(fmt::format("the encoder '{}' takes no kind of frame that can be made here; "
                                  "use another --codec",
                                  codec.name));
    describeColors(codec, source);
}

void FrameSink::describeColors(const AVCodec& codec, const StreamInfo& source) {
    AVCodecContext& encoder = *m_encoder;
    if (countsAsRgb(encoder.pix_fmt)) {
        encoder.colorspace = AVCOL_SPC_RGB;
        encoder.color_range = AVCOL_RANGE_JPEG;
        return;
    }
    encoder.colorspace = source.colorSpace;
    encoder.color_range = source.colorRange;
    if (countsAsRgb(source.pixelFormat)) {
        encoder.colorspace = usualSpace(source.height);
        encoder.color_range = AVCOL_RANGE_MPEG;
    }
    // JPEG files cannot say how their numbers stand for colours: every reader takes them like this.
    if (codec.id == AV_CODEC_ID_MJPEG) {
        encoder.colorspace = AVCOL_SPC_BT470BG;
        encoder.color_range = AVCOL_RANGE_JPEG;
    }
}

void FrameSink::openEncoder(const AVCodec& codec) {
    AVCodecContext& encoder = *m_encoder;
    encoder.thread_count = encoderThreads;
    if (m_format->flags & AVFMT_GLOBALHEADER)
        encoder.flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    if (isInterlaced(encoder.field_order))
        encoder.flags |= AV_CODEC_FLAG_INTERLACED_DCT;
    AVDictionary* settings = nullptr;
    for (const EncoderSetting& row : qualitySettings)
        if (row.encoder == codec.name)
            av_dict_set(&settings, row.key, row.value, 0);
    const int opened = avcodec_open2(&encoder, &codec, &settings);
    av_dict_free(&settings);
    if (opened < 0)
        throw Failure(fmt::format(
            "the encoder '{}' refuses {}x{} {} at {}/{} frames a second{}: {}; use another --codec",
            codec.name, encoder.width, encoder.height, av_get_pix_fmt_name(encoder.pix_fmt),
            encoder.framerate.num, encoder.framerate.den,
            sizeRemark(encoder.pix_fmt, encoder.width, encoder.height), avErrorText(opened)));
}

void FrameSink::startMuxer(const SinkOptions& options) {
    AVFormatContext* muxer = nullptr;
    avformat_alloc_output_context2(&muxer, m_format, nullptr, nullptr);
    if (!muxer)
        throw std::bad_alloc();
    m_muxer.reset(muxer);
    m_muxer->pb = m_file->io();
    m_muxer->flags |= AVFMT_FLAG_CUSTOM_IO;
    m_muxer->strict_std_compliance = FF_COMPLIANCE_UNOFFICIAL; // y4m of more than 8 bits
    m_stream = avformat_new_stream(m_muxer.get(), nullptr);
    if (!m_stream || avcodec_parameters_from_context(m_stream->codecpar, m_encoder.get()) < 0)
        throw std::bad_alloc();
    m_stream->time_base = m_encoder->time_base;
    m_stream->avg_frame_rate = m_encoder->framerate;
    m_stream->sample_aspect_ratio = m_encoder->sample_aspect_ratio;
    if (!options.timeCode.empty())
        av_dict_set(&m_stream->metadata, "timecode", options.timeCode.c_str(), 0);
    passAudio(options.audio);
    const int started = avformat_write_header(m_muxer.get(), nullptr);
    if (started < 0)
        fail("begin", started);
}

void FrameSink::passAudio(const std::vector<AVStream*>& streams) {
    if (m_format->audio_codec == AV_CODEC_ID_NONE)
        return;
    for (const AVStream* from : streams) {
        const AVCodecID codec = from->codecpar->codec_id;
        if (avformat_query_codec(m_format, codec, FF_COMPLIANCE_UNOFFICIAL) == 0)
            throw Failure(fmt::format("the format '{}' cannot hold the sound, which is {}: use "
                                      "another name such as out.mov or out.mkv",
                                      m_format->name, avcodec_get_name(codec)));
        AVStream* to = avformat_new_stream(m_muxer.get(), nullptr);
        if (!to || avcodec_parameters_copy(to->codecpar, from->codecpar) < 0)
            throw std::bad_alloc();
        to->codecpar->codec_tag = 0; // each format has its own
        to->time_base = from->time_base;
        to->disposition = from->disposition;
        av_dict_copy(&to->metadata, from->metadata, 0);
        m_audio.push_back({from, to});
    }
}

FramePtr FrameSink::makeFrame() const {
    FramePtr frame = newFrame();
    frame->width = m_encoder->width;
    frame->height = m_encoder->height;
    frame->format = m_encoder->pix_fmt;
    frame->colorspace = m_encoder->colorspace;
    frame->color_range = m_encoder->color_range;
    frame->color_primaries = m_encoder->color_primaries;
    frame->color_trc = m_encoder->color_trc;
    if (m_bareLine != 0) {
        frame->format = barePixels;
        frame->linesize[0] = m_bareLine;
        frame->buf[0] = av_buffer_alloc(static_cast<std::size_t>(m_bareLine) *
                                        static_cast<std::size_t>(frame->height));
        if (!frame->buf[0])
            throw std::bad_alloc();
        frame->data[0] = frame->buf[0]->data;
        return frame;
    }
    if (av_frame_get_buffer(frame.get(), 0) < 0)
        throw std::bad_alloc();
    return frame;
}

void FrameSink::write(const AVFrame& frame) {
    if (m_picture && m_framesWritten > 0)
        throw Failure(fmt::format("{} takes one picture only", m_name));
    if (frame.format == barePixels)
        writeBare(frame);
    else
        encode(&frame);
    ++m_framesWritten;
}

void FrameSink::writeAudio(AVPacket& packet) {
    for (const Passed& stream : m_audio) {
        if (stream.from->index != packet.stream_index)
            continue;
        packet.stream_index = stream.to->index;
        av_packet_rescale_ts(&packet, stream.from->time_base, stream.to->time_base);
        packet.pos = -1;
        const int written = av_interleaved_write_frame(m_muxer.get(), &packet);
        if (written < 0)
            fail("write the sound of", written);
        return;
    }
}

void FrameSink::finish() {
    if (m_framesWritten == 0)
        throw Failure(fmt::format("no frame was given to write to {}", m_name));
    encode(nullptr);
    const int ended = av_write_trailer(m_muxer.get());
    if (ended < 0)
        fail("complete", ended);
    m_file->commit();
}

void FrameSink::writeBare(const AVFrame& frame) {
    av_packet_unref(m_packet.get());
    m_packet->buf = av_buffer_ref(frame.buf[0]);
    if (!m_packet->buf)
        throw std::bad_alloc();
    m_packet->data = frame.data[0];
    m_packet->size = frame.linesize[0] * frame.height;
    m_packet->pts = m_packet->dts = frame.pts;
    m_packet->flags |= AV_PKT_FLAG_KEY;
    writePacket();
}

void FrameSink::encode(const AVFrame* frame) {
    const int sent = avcodec_send_frame(m_encoder.get(), frame);
    if (sent < 0)
        fail(fmt::format("encode frame {} of", m_framesWritten), sent);
    for (;;) {
        const int received = avcodec_receive_packet(m_encoder.get(), m_packet.get());
        if (received == AVERROR(EAGAIN) || received == AVERROR_EOF)
            return;
        if (received < 0)
            fail(fmt::format("encode frame {} of", m_framesWritten), received);
        writePacket();
    }
}

void FrameSink::writePacket() {
    m_packet->stream_index = m_stream->index;
    m_packet->duration = 1;
    av_packet_rescale_ts(m_packet.get(), m_encoder->time_base, m_stream->time_base);
    const int written = av_interleaved_write_frame(m_muxer.get(), m_packet.get());
    if (written < 0)
        fail("write", written);
}

// A full disk or a closed pipe is the better reason, when there is one.
void FrameSink::fail(const std::string& action, int error) {
    m_file->check();
    throw Failure(fmt::format("cannot {} {}: {}", action, m_name, avErrorText(error)));
}

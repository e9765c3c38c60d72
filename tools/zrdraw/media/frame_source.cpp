#include "media/frame_source.h"

#include "error.h"
#include "media/completeness.h"
#include "media/packing.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <new>
#include <string_view>
#include <system_error>
#include <utility>

#include <unistd.h>

extern "C" {
#include <libavutil/dict.h>
#include <libavutil/pixdesc.h>
}

namespace fs = std::filesystem;

namespace {

constexpr int decoderThreads = 2;

// A file whose sound stands far behind its pictures, or ends early, is not read into memory whole.
constexpr std::size_t mostBytesAhead = std::size_t{256} << 20;

// A dictionary of options, in the one shape that the libraries take.
class Options {
public:
    ~Options() { av_dict_free(&m_dictionary); }
    void set(const char* key, const std::string& value) {
        av_dict_set(&m_dictionary, key, value.c_str(), 0);
    }
    AVDictionary** get() { return &m_dictionary; }

private:
    AVDictionary* m_dictionary = nullptr;
};

// Named by the system's reason, because the libraries' reasons are vaguer. Named pipes must not be
// opened to find out: their writer would see that as its reader going away.
void requireReadable(const std::string& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (fs::is_directory(status))
        throw Failure(fmt::format("'{}' is a folder, not a media file", path));
    if (::access(path.c_str(), R_OK) != 0)
        throw Failure(fmt::format("cannot read '{}': {}", path, std::strerror(errno)));
    if (fs::is_regular_file(status) && fs::file_size(path, error) == 0)
        throw Failure(fmt::format("'{}' is empty", path));
}

bool isDemuxer(const AVFormatContext& input, std::string_view name) {
    return input.iformat->name == name;
}

bool isMatroska(const AVFormatContext& input) {
    return isDemuxer(input, "matroska,webm");
}

bool isAsLongAsItSays(const AVFormatContext& input, const std::string& path) {
    if (isMatroska(input))
        return matroskaReachesItsEnd(path);
    return !isDemuxer(input, "avi") || aviReachesItsEnd(path);
}

bool readsPictures(const AVFormatContext& input) {
    const std::string_view name = input.iformat->name;
    return name == "image2" || name.ends_with("_pipe");
}

std::string describeFormat(int width, int height, int format) {
    const char* name = av_get_pix_fmt_name(static_cast<AVPixelFormat>(format));
    return fmt::format("{}x{} {}", width, height, name ? name : "unknown");
}

template <class T>
T known(T fromFrame, T fromHeader, T unspecified) {
    return fromFrame != unspecified ? fromFrame : fromHeader;
}

// What a decoder refuses, rather than hand out a picture with a damaged part. The strictest check
// finds a JPEG that is cut off, but makes other decoders refuse sound files for small oddities.
int errorChecks(AVCodecID codec) {
    const bool strictest = codec == AV_CODEC_ID_MJPEG || codec == AV_CODEC_ID_PNG;
    return AV_EF_CRCCHECK | AV_EF_BITSTREAM | AV_EF_BUFFER | (strictest ? AV_EF_EXPLODE : 0);
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
    return input.duration > 0 ? av_rescale_q(input.duration, AV_TIME_BASE_Q, av_inv_q(rate)) : 0;
}

} // namespace

FrameSource::FrameSource(const std::string& path, const LayoutChoice& layout,
                         const std::optional<RawFormat>& raw, const AVIOInterruptCB& interrupt)
    : m_path(path), m_name(path == "-" ? "standard input" : fmt::format("'{}'", path)),
      m_layout(&layout(AV_PIX_FMT_NONE)), m_raw(raw), m_packet(av_packet_alloc()),
      m_first(av_frame_alloc()) {
    if (!m_packet || !m_first)
        throw std::bad_alloc();
    if (m_path != "-")
        requireReadable(m_path);
    open(interrupt);
    findStream();
    if (!m_raw)
        m_layout = &layout(static_cast<AVPixelFormat>(m_stream->codecpar->format));
    if (!m_raw && !holdsBareFrames())
        openDecoder();
    if (!next(*m_first))
        throw Failure(fmt::format("{} holds no picture", m_name));
    describe(*m_first);
}

void FrameSource::open(const AVIOInterruptCB& interrupt) {
    Options options;
    options.set("protocol_whitelist", "file,pipe"); // a playlist must not reach for the network
    const AVInputFormat* format = nullptr;
    if (m_raw) {
        if (m_raw->width <= 0 || m_raw->height <= 0)
            throw UsageError(fmt::format("raw frames of {}x{} do not exist: use a size from 1x1 on",
                                         m_raw->width, m_raw->height));
        requireFit(*m_layout, m_raw->width, m_raw->height);
        // The library knows few of the layouts, so it reads lines of bytes.
        format = av_find_input_format("rawvideo");
        options.set("pixel_format", "gray");
        options.set("video_size",
                    fmt::format("{}x{}", wholeLineBytes(*m_layout, m_raw->width), m_raw->height));
        options.set("framerate", fmt::format("{}/{}", m_raw->frameRate.num, m_raw->frameRate.den));
    }
    const std::string url = m_path == "-" ? "pipe:0" : "file:" + m_path;
    AVFormatContext* input = avformat_alloc_context();
    if (!input)
        throw std::bad_alloc();
    input->interrupt_callback = interrupt;
    const int opened = avformat_open_input(&input, url.c_str(), format, options.get());
    m_input.reset(input);
    // Any text passes for "tty" media, a picture of a terminal, which nobody means.
    if (opened == AVERROR_INVALIDDATA || opened == AVERROR_EOF ||
        (opened >= 0 && isDemuxer(*m_input, "tty")))
        throw Failure(
            fmt::format("{} is not a media file that can be read, or is cut off", m_name));
    if (opened < 0)
        throw Failure(fmt::format("cannot read {}: {}", m_name, avErrorText(opened)));
    if (m_path != "-" && !isAsLongAsItSays(*m_input, m_path))
        throw Failure(fmt::format("{} is cut off: it is shorter than it says", m_name));
    const int probed = avformat_find_stream_info(input, nullptr);
    if (probed < 0)
        throw Failure(fmt::format("cannot read {}: {}", m_name, avErrorText(probed)));
}

void FrameSource::findStream() {
    const int index = av_find_best_stream(m_input.get(), AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (index >= 0)
        m_stream = m_input->streams[index];
    if (!m_stream || (m_stream->disposition & AV_DISPOSITION_ATTACHED_PIC))
        throw Failure(fmt::format("{} holds no video stream and no picture", m_name));
}

// Whether the stream's packets are pictures in the layout, byte for byte. Some v210 files have
// lines of another length, which the decoder understands.
bool FrameSource::holdsBareFrames() {
    const AVCodecParameters& header = *m_stream->codecpar;
    if (header.codec_id != AV_CODEC_ID_V210 || m_layout->code != ptV210)
        return false;
    m_packetWaits = readPacket();
    return m_packetWaits &&
           m_packet->size == wholeLineBytes(*m_layout, header.width) * header.height;
}

void FrameSource::openDecoder() {
    const AVCodecParameters& parameters = *m_stream->codecpar;
    const AVCodec* codec = avcodec_find_decoder(parameters.codec_id);
    if (!codec)
        throw Failure(fmt::format("{} holds {} video, for which there is no decoder", m_name,
                                  avcodec_get_name(parameters.codec_id)));
    m_decoder.reset(avcodec_alloc_context3(codec));
    if (!m_decoder || avcodec_parameters_to_context(m_decoder.get(), &parameters) < 0)
        throw std::bad_alloc();
    m_decoder->pkt_timebase = m_stream->time_base;
    m_decoder->thread_count = decoderThreads;
    m_decoder->err_recognition = errorChecks(parameters.codec_id);
    const int opened = avcodec_open2(m_decoder.get(), codec, nullptr);
    if (opened < 0)
        throw Failure(fmt::format("cannot decode {}: {}", m_name, avErrorText(opened)));
}

void FrameSource::describe(const AVFrame& first) {
    const AVCodecParameters& header = *m_stream->codecpar;
    const AVRational rate = av_guess_frame_rate(m_input.get(), m_stream, nullptr);
    if (rate.num > 0 && rate.den > 0)
        m_info.frameRate = rate;
    m_info.width = first.width;
    m_info.height = first.height;
    m_info.timeBase = m_stream->time_base;
    m_info.sampleAspect = av_guess_sample_aspect_ratio(m_input.get(), m_stream, m_first.get());
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
    m_info.formatName = m_input->iformat->name;
    m_info.timeCode = timeCodeOf(*m_input, *m_stream);
    const std::int64_t start = first.best_effort_timestamp;
    if (start != AV_NOPTS_VALUE)
        m_startTime = av_rescale_q(start, m_stream->time_base, AV_TIME_BASE_Q);
    m_info.picture = readsPictures(*m_input);
    m_info.frameCount = m_info.picture ? 1 : frameCountOf(*m_input, *m_stream, m_info.frameRate);
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
    if (!readPacket())
        return false;
    const AVCodecParameters& header = *m_stream->codecpar;
    frame.format = barePixels;
    frame.width = m_raw ? m_raw->width : header.width;
    frame.height = m_raw ? m_raw->height : header.height;
    frame.linesize[0] = wholeLineBytes(*m_layout, frame.width);
    if (m_packet->size != frame.linesize[0] * frame.height)
        failAtFrame(fmt::format("it has {} bytes and not {}", m_packet->size,
                                frame.linesize[0] * frame.height));
    frame.buf[0] = av_buffer_ref(m_packet->buf);
    if (!frame.buf[0])
        throw std::bad_alloc();
    frame.data[0] = m_packet->data;
    frame.colorspace = header.color_space;
    frame.color_range = header.color_range;
    frame.sample_aspect_ratio = av_guess_sample_aspect_ratio(m_input.get(), m_stream, nullptr);
    frame.interlaced_frame =
        header.field_order != AV_FIELD_UNKNOWN && header.field_order != AV_FIELD_PROGRESSIVE;
    frame.top_field_first = header.field_order == AV_FIELD_TT || header.field_order == AV_FIELD_TB;
    ++m_framesRead;
    return true;
}

bool FrameSource::decode(AVFrame& frame) {
    for (;;) {
        const int received = avcodec_receive_frame(m_decoder.get(), &frame);
        if (received == AVERROR_EOF)
            return false;
        if (received == 0) {
            requireSound(frame);
            ++m_framesRead;
            return true;
        }
        if (received != AVERROR(EAGAIN))
            failAtFrame(avErrorText(received));
        feedDecoder();
    }
}

void FrameSource::feedDecoder() {
    if (!readPacket())
        av_packet_unref(m_packet.get()); // without data it asks the decoder for what it holds back
    const int sent = avcodec_send_packet(m_decoder.get(), m_packet.get());
    if (sent < 0)
        failAtFrame(avErrorText(sent));
}

// The next packet of the pictures; false at the end.
bool FrameSource::readPacket() {
    if (std::exchange(m_packetWaits, false))
        return true;
    if (!m_picturesAhead.empty()) {
        m_packet = std::move(m_picturesAhead.front());
        m_picturesAhead.pop_front();
        m_bytesAhead -= static_cast<std::size_t>(m_packet->size);
        return true;
    }
    while (readAny()) {
        if (m_packet->stream_index == m_stream->index)
            return true;
        if (isAudio(*m_packet))
            keepAudioPacket();
    }
    return false;
}

// The next packet of any stream; false at the end.
bool FrameSource::readAny() {
    if (m_ended)
        return false;
    av_packet_unref(m_packet.get());
    const int status = av_read_frame(m_input.get(), m_packet.get());
    if (status == AVERROR_EOF) {
        m_ended = true;
        requireWholeFile();
        return false;
    }
    if (status < 0)
        failAtFrame(avErrorText(status));
    notePacket();
    if (m_packet->stream_index != m_stream->index)
        return true;
    if (m_packet->flags & AV_PKT_FLAG_CORRUPT)
        failAtFrame("the file is cut off or damaged");
    if (m_stream->codecpar->codec_id == AV_CODEC_ID_MJPEG && readsPictures(*m_input) &&
        !jpegReachesItsEnd({m_packet->data, static_cast<std::size_t>(m_packet->size)}))
        failAtFrame("the file is cut off");
    return true;
}

bool FrameSource::isAudio(const AVPacket& packet) const {
    return m_input->streams[packet.stream_index]->codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
}

void FrameSource::keepAudioPacket() {
    if (!m_audioKept)
        return;
    m_audio.push_back(std::exchange(m_packet, PacketPtr(av_packet_alloc())));
    if (!m_packet)
        throw std::bad_alloc();
}

std::vector<AVStream*> FrameSource::keepAudio() {
    std::vector<AVStream*> streams;
    for (unsigned i = 0; i < m_input->nb_streams; ++i) {
        AVStream* stream = m_input->streams[i];
        if (stream->codecpar->codec_type != AVMEDIA_TYPE_AUDIO)
            continue;
        streams.push_back(stream);
        m_audioEnds[stream->index] = 0.0;
    }
    m_audioKept = !streams.empty();
    for (const PacketPtr& packet : m_audio)
        noteAudioEnd(*packet);
    return streams;
}

void FrameSource::dropAudio() {
    m_audioKept = false;
    m_audio.clear();
}

PacketPtr FrameSource::takeAudio() {
    if (m_audio.empty())
        return nullptr;
    PacketPtr packet = std::move(m_audio.front());
    m_audio.pop_front();
    const AVRational timeBase = m_input->streams[packet->stream_index]->time_base;
    const std::int64_t start = av_rescale_q(m_startTime, AV_TIME_BASE_Q, timeBase);
    if (packet->pts != AV_NOPTS_VALUE)
        packet->pts -= start;
    if (packet->dts != AV_NOPTS_VALUE)
        packet->dts -= start;
    return packet;
}

void FrameSource::readAudioUntil(double seconds) {
    const auto lacksAudio = [&] {
        return std::any_of(m_audioEnds.begin(), m_audioEnds.end(),
                           [=](const auto& end) { return end.second < seconds; });
    };
    while (m_bytesAhead < mostBytesAhead && lacksAudio() && readAny()) {
        if (isAudio(*m_packet)) {
            keepAudioPacket();
        } else if (m_packet->stream_index == m_stream->index) {
            m_bytesAhead += static_cast<std::size_t>(m_packet->size);
            m_picturesAhead.push_back(std::exchange(m_packet, PacketPtr(av_packet_alloc())));
            if (!m_packet)
                throw std::bad_alloc();
        }
    }
}

void FrameSource::notePacket() {
    const AVPacket& packet = *m_packet;
    m_bytesEnd = packet.pos + packet.size;
    if (packet.pts == AV_NOPTS_VALUE)
        return;
    const AVRational timeBase = m_input->streams[packet.stream_index]->time_base;
    m_timeEnd =
        std::max(m_timeEnd, av_rescale_q(packet.pts + packet.duration, timeBase, AV_TIME_BASE_Q));
    noteAudioEnd(packet);
}

void FrameSource::noteAudioEnd(const AVPacket& packet) {
    const auto audio = m_audioEnds.find(packet.stream_index);
    if (audio == m_audioEnds.end() || packet.pts == AV_NOPTS_VALUE)
        return;
    const AVRational timeBase = m_input->streams[packet.stream_index]->time_base;
    const std::int64_t end = av_rescale_q(packet.pts + packet.duration, timeBase, AV_TIME_BASE_Q);
    audio->second = static_cast<double>(end - m_startTime) / AV_TIME_BASE;
}

// These demuxers take a stream that is cut off for one that ends, so its end is compared with what
// it says of itself. A pipe has no length to compare.
void FrameSource::requireWholeFile() {
    if (isDemuxer(*m_input, "yuv4mpegpipe") && avio_tell(m_input->pb) != m_bytesEnd)
        failAtFrame("the file is cut off");
    if (!isMatroska(*m_input) || m_input->duration_estimation_method != AVFMT_DURATION_FROM_STREAM)
        return;
    const AVRational rate = av_guess_frame_rate(m_input.get(), m_stream, nullptr);
    const std::int64_t frameTime =
        rate.num > 0 ? av_rescale_q(1, av_inv_q(rate), AV_TIME_BASE_Q) : AV_TIME_BASE;
    if (m_timeEnd + frameTime < m_input->duration)
        failAtFrame("the file is cut off");
}

void FrameSource::requireSound(const AVFrame& frame) const {
    if (frame.width <= 0 || frame.height <= 0)
        failAtFrame("the picture has no size");
    if ((frame.flags & AV_FRAME_FLAG_CORRUPT) || frame.decode_error_flags != 0)
        failAtFrame("the picture is damaged");
}

void FrameSource::requireSameFormat(const AVFrame& frame) const {
    if (frame.width != m_info.width || frame.height != m_info.height ||
        (m_decoder && frame.format != m_info.pixelFormat))
        throw Failure(fmt::format("{} changes from {} to {} at frame {}", m_name,
                                  describeFormat(m_info.width, m_info.height, m_info.pixelFormat),
                                  describeFormat(frame.width, frame.height, frame.format),
                                  m_framesRead - 1));
}

void FrameSource::failAtFrame(const std::string& reason) const {
    throw Failure(fmt::format("cannot read frame {} of {}: {}", m_framesRead, m_name, reason));
}

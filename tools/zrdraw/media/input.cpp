#include "media/input.h"

#include "common/tool_error.h"
#include "interrupt.h"
#include "media/reading_rules.h"
#include "media/sequence.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <unistd.h>

namespace fs = std::filesystem;

namespace {

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

} // namespace

Input::Input(const std::string& path, const InputOptions& options)
    : m_name(path == "-" ? "standard input" : fmt::format("'{}'", path)), m_options(options) {
    open(path);
    findPictures();
}

void Input::open(const std::string& path) {
    AvOptions options;
    options.set("protocol_whitelist", allowedProtocols);
    const AVInputFormat* demuxer = nullptr;
    const bool sequence = !m_options.raw && isSequenceToRead(path);
    if (sequence) {
        const int first = firstOfSequence(path, m_options.startNumber);
        demuxer = av_find_input_format("image2");
        options.set("pattern_type", "sequence");
        options.set("start_number", std::to_string(first));
        options.set("start_number_range", "1");
        options.set("framerate", rateText(m_options.sequenceRate.value_or(AVRational{25, 1})));
    } else {
        options.set("pattern_type", "none"); // a name with % is that of one picture
        if (path != "-")
            requireReadable(path);
    }
    if (m_options.raw) {
        demuxer = av_find_input_format("rawvideo");
        useRaw(options);
    }
    const std::string url = path == "-" ? "pipe:0" : sequence ? path : "file:" + path;
    AVFormatContext* format = avformat_alloc_context();
    if (!format)
        throw std::bad_alloc();
    format->interrupt_callback = {[](void* self) -> int {
                                      const Input& input = *static_cast<Input*>(self);
                                      return input.m_stopped || isInterrupted();
                                  },
                                  this};
    const int opened = avformat_open_input(&format, url.c_str(), demuxer, options.get());
    m_format.reset(format);
    if (opened == AVERROR_INVALIDDATA || opened == AVERROR_EOF ||
        (opened >= 0 && isPlainText(*m_format)))
        throw Failure(
            fmt::format("{} is not a media file that can be read, or is cut off", m_name));
    if (opened < 0)
        throw Failure(fmt::format("cannot read {}: {}", m_name, avErrorText(opened)));
    if (path != "-" && m_options.damage == Damage::Fail && !isAsLongAsItSays(*m_format, path))
        throw Failure(fmt::format("{} is cut off: it is shorter than it says; --keep-going takes "
                                  "what there is",
                                  m_name));
    const int probed = avformat_find_stream_info(format, nullptr);
    if (probed < 0)
        throw Failure(fmt::format("cannot read {}: {}", m_name, avErrorText(probed)));
}

// The library knows few of the layouts, so it reads lines of bytes.
void Input::useRaw(AvOptions& options) {
    const RawLines& raw = *m_options.raw;
    options.set("pixel_format", "gray");
    options.set("video_size", fmt::format("{}x{}", raw.bytesPerLine, raw.lines));
    options.set("framerate", rateText(raw.frameRate));
}

void Input::findPictures() {
    const int index = av_find_best_stream(m_format.get(), AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (index >= 0)
        m_pictures = m_format->streams[index];
    if (!m_pictures || (m_pictures->disposition & AV_DISPOSITION_ATTACHED_PIC))
        throw Failure(fmt::format("{} holds no video stream and no picture", m_name));
}

bool Input::isPicture() const {
    return holdsOnePicture(*m_format);
}

std::vector<AVStream*> Input::sound() const {
    std::vector<AVStream*> streams;
    for (unsigned i = 0; i < m_format->nb_streams; ++i)
        if (m_format->streams[i]->codecpar->codec_type == AVMEDIA_TYPE_AUDIO)
            streams.push_back(m_format->streams[i]);
    return streams;
}

PacketPtr Input::next() {
    PacketPtr packet = newPacket();
    while (read(*packet)) {
        const char* damage = damageOf(*packet);
        if (!damage)
            return packet;
        if (m_options.damage == Damage::Fail)
            failAtFrame(damage);
        ++m_skipped;
        av_packet_unref(packet.get());
    }
    return nullptr;
}

// False at the end, which with Damage::Skip is also where nothing more can be read.
bool Input::read(AVPacket& packet) {
    if (m_ended)
        return false;
    const int status = av_read_frame(m_format.get(), &packet);
    if (status >= 0) {
        notePacket(packet);
        return true;
    }
    m_ended = true;
    if (m_options.damage == Damage::Skip && status != AVERROR_EXIT)
        return false;
    if (status != AVERROR_EOF)
        failAtFrame(avErrorText(status));
    if (endedEarly(*m_format, *m_pictures, m_bytesEnd, m_timeEnd))
        failAtFrame("the file is cut off");
    return false;
}

// Null if there is none. Only pictures are looked at: other streams pass as they are.
const char* Input::damageOf(const AVPacket& packet) const {
    if (packet.stream_index != m_pictures->index)
        return nullptr;
    if (packet.flags & AV_PKT_FLAG_CORRUPT)
        return "the file is cut off or damaged";
    return isWhole(*m_format, packet) ? nullptr : "the file is cut off";
}

void Input::notePacket(const AVPacket& packet) {
    m_bytesEnd = packet.pos + packet.size;
    if (packet.stream_index == m_pictures->index)
        ++m_frames;
    if (packet.pts == AV_NOPTS_VALUE)
        return;
    const AVRational timeBase = m_format->streams[packet.stream_index]->time_base;
    m_timeEnd =
        std::max(m_timeEnd, av_rescale_q(packet.pts + packet.duration, timeBase, timeBaseUnit));
}

bool Input::seekToFrame(std::int64_t index) {
    const AVCodecDescriptor* codec = avcodec_descriptor_get(m_pictures->codecpar->codec_id);
    const bool framesStandAlone = codec && (codec->props & AV_CODEC_PROP_INTRA_ONLY);
    const int entries = avformat_index_get_entries_count(m_pictures);
    if (!framesStandAlone || entries != m_pictures->nb_frames || index >= entries)
        return false;
    const AVIndexEntry* entry = avformat_index_get_entry(m_pictures, static_cast<int>(index));
    if (av_seek_frame(m_format.get(), m_pictures->index, entry->timestamp, AVSEEK_FLAG_BACKWARD) <
        0)
        return false;
    m_frames = index;
    return true;
}

void Input::failAtFrame(const std::string& reason) const {
    const std::int64_t frame = std::max<std::int64_t>(m_frames - 1, 0);
    throw Failure(fmt::format("cannot read frame {} of {}: {}", frame, m_name, reason));
}

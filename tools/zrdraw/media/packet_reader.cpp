#include "media/packet_reader.h"

#include "media/reading_rules.h"
#include "tool_error.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include <unistd.h>

extern "C" {
#include <libavutil/dict.h>
}

namespace fs = std::filesystem;

namespace {

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

} // namespace

PacketReader::PacketReader(const std::string& path, const std::optional<RawLines>& raw,
                           const AVIOInterruptCB& interrupt)
    : m_name(path == "-" ? "standard input" : fmt::format("'{}'", path)), m_packet(newPacket()) {
    if (path != "-")
        requireReadable(path);
    open(path, raw, interrupt);
    findPictures();
}

void PacketReader::open(const std::string& path, const std::optional<RawLines>& raw,
                        const AVIOInterruptCB& interrupt) {
    Options options;
    options.set("protocol_whitelist", allowedProtocols);
    options.set("pattern_type", "none"); // a name with % is that of one picture
    const AVInputFormat* format = nullptr;
    if (raw) {
        // The library knows few of the layouts, so it reads lines of bytes.
        format = av_find_input_format("rawvideo");
        options.set("pixel_format", "gray");
        options.set("video_size", fmt::format("{}x{}", raw->bytesPerLine, raw->lines));
        options.set("framerate", fmt::format("{}/{}", raw->frameRate.num, raw->frameRate.den));
    }
    const std::string url = path == "-" ? "pipe:0" : "file:" + path;
    AVFormatContext* input = avformat_alloc_context();
    if (!input)
        throw std::bad_alloc();
    input->interrupt_callback = interrupt;
    const int opened = avformat_open_input(&input, url.c_str(), format, options.get());
    m_input.reset(input);
    if (opened == AVERROR_INVALIDDATA || opened == AVERROR_EOF ||
        (opened >= 0 && isPlainText(*m_input)))
        throw Failure(
            fmt::format("{} is not a media file that can be read, or is cut off", m_name));
    if (opened < 0)
        throw Failure(fmt::format("cannot read {}: {}", m_name, avErrorText(opened)));
    if (path != "-" && !isAsLongAsItSays(*m_input, path))
        throw Failure(fmt::format("{} is cut off: it is shorter than it says", m_name));
    const int probed = avformat_find_stream_info(input, nullptr);
    if (probed < 0)
        throw Failure(fmt::format("cannot read {}: {}", m_name, avErrorText(probed)));
}

void PacketReader::findPictures() {
    const int index = av_find_best_stream(m_input.get(), AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (index >= 0)
        m_stream = m_input->streams[index];
    if (!m_stream || (m_stream->disposition & AV_DISPOSITION_ATTACHED_PIC))
        throw Failure(fmt::format("{} holds no video stream and no picture", m_name));
}

bool PacketReader::isPicture() const {
    return holdsOnePicture(*m_input);
}

bool PacketReader::readPicture() {
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
bool PacketReader::readAny() {
    if (m_ended)
        return false;
    av_packet_unref(m_packet.get());
    const int status = av_read_frame(m_input.get(), m_packet.get());
    if (status == AVERROR_EOF) {
        m_ended = true;
        if (endedEarly(*m_input, *m_stream, m_bytesEnd, m_timeEnd))
            failAtFrame("the file is cut off");
        return false;
    }
    if (status < 0)
        failAtFrame(avErrorText(status));
    notePacket();
    if (m_packet->stream_index != m_stream->index)
        return true;
    if (m_packet->flags & AV_PKT_FLAG_CORRUPT)
        failAtFrame("the file is cut off or damaged");
    if (!isWhole(*m_input, *m_packet))
        failAtFrame("the file is cut off");
    return true;
}

bool PacketReader::isAudio(const AVPacket& packet) const {
    return m_input->streams[packet.stream_index]->codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
}

// The present packet, for a queue.
PacketPtr PacketReader::moveOut() {
    return std::exchange(m_packet, newPacket());
}

void PacketReader::keepAudioPacket() {
    if (!m_audioKept)
        return;
    m_audio.push_back(moveOut());
}

std::vector<AVStream*> PacketReader::keepAudio() {
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

void PacketReader::dropAudio() {
    m_audioKept = false;
    m_audio.clear();
}

PacketPtr PacketReader::takeAudio() {
    if (m_audio.empty())
        return nullptr;
    PacketPtr packet = std::move(m_audio.front());
    m_audio.pop_front();
    const AVRational timeBase = m_input->streams[packet->stream_index]->time_base;
    const std::int64_t start = av_rescale_q(m_startTime, timeBaseUnit, timeBase);
    if (packet->pts != AV_NOPTS_VALUE)
        packet->pts -= start;
    if (packet->dts != AV_NOPTS_VALUE)
        packet->dts -= start;
    return packet;
}

void PacketReader::readAudioUntil(double seconds) {
    const auto lacksAudio = [&] {
        return std::any_of(m_audioEnds.begin(), m_audioEnds.end(),
                           [=](const auto& end) { return end.second < seconds; });
    };
    while (m_bytesAhead < mostBytesAhead && lacksAudio() && readAny()) {
        if (isAudio(*m_packet)) {
            keepAudioPacket();
        } else if (m_packet->stream_index == m_stream->index) {
            m_bytesAhead += static_cast<std::size_t>(m_packet->size);
            m_picturesAhead.push_back(moveOut());
        }
    }
}

void PacketReader::notePacket() {
    const AVPacket& packet = *m_packet;
    m_bytesEnd = packet.pos + packet.size;
    if (packet.pts == AV_NOPTS_VALUE)
        return;
    const AVRational timeBase = m_input->streams[packet.stream_index]->time_base;
    m_timeEnd =
        std::max(m_timeEnd, av_rescale_q(packet.pts + packet.duration, timeBase, timeBaseUnit));
    noteAudioEnd(packet);
}

void PacketReader::noteAudioEnd(const AVPacket& packet) {
    const auto audio = m_audioEnds.find(packet.stream_index);
    if (audio == m_audioEnds.end() || packet.pts == AV_NOPTS_VALUE)
        return;
    const AVRational timeBase = m_input->streams[packet.stream_index]->time_base;
    const std::int64_t end = av_rescale_q(packet.pts + packet.duration, timeBase, timeBaseUnit);
    audio->second = static_cast<double>(end - m_startTime) / AV_TIME_BASE;
}

void PacketReader::failAtFrame(const std::string& reason) const {
    throw Failure(fmt::format("cannot read frame {} of {}: {}", m_frames, m_name, reason));
}

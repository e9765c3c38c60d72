#include "media/reader.h"

#include "common/tool_error.h"
#include "media/dpx_time_code.h"
#include "media/time_code.h"
#include "picture/pixel_formats.h"
#include "sound/sound.h"

#include <fmt/format.h>

#include <algorithm>
#include <new>

namespace {

// A file whose sound stands far behind its pictures, or ends early, is not read into memory whole.
constexpr std::size_t mostBytesHeld = std::size_t{256} << 20;

std::string describeFormat(int width, int height, int format) {
    const char* name = av_get_pix_fmt_name(static_cast<AVPixelFormat>(format));
    return fmt::format("{}x{} {}", width, height, name ? name : "unknown");
}

InputOptions inputOptions(const ReadOptions& options) {
    InputOptions result;
    if (options.raw)
        result.raw = linesOf(options.layout(AV_PIX_FMT_NONE, options.raw->width), *options.raw);
    result.damage = options.damage;
    result.startNumber = options.startNumber;
    result.sequenceRate = options.rate;
    return result;
}

} // namespace

Reader::Reader(const std::string& path, const ReadOptions& options)
    : m_options(options), m_input(path, inputOptions(options)), m_first(newFrame()),
      m_passed(m_input) {
    start();
    findOrigin();
    FramePtr picture(av_frame_clone(m_first.get()));
    if (!picture)
        throw std::bad_alloc();
    m_frames.push_back(std::move(picture));
}

// Decodes the first frame early, because it says more than the file's header.
void Reader::start() {
    const AVStream& pictures = m_input.pictures();
    const AVCodecParameters& header = *pictures.codecpar;
    const zrLayout& layout =
        m_options.raw ? m_options.layout(AV_PIX_FMT_NONE, m_options.raw->width)
                      : m_options.layout(static_cast<AVPixelFormat>(header.format), header.width);
    std::string timeCode; // of the first picture
    bool found = false;
    while (!found) {
        PacketPtr packet = m_input.next();
        if (!packet) {
            if (m_decoder)
                m_decoder->send(nullptr);
            found = m_decoder && m_decoder->receive(*m_first);
            m_ended = true;
            break;
        }
        if (packet->stream_index != pictures.index) {
            m_unread.push_back(std::move(packet));
            continue;
        }
        if (!m_decoder)
            m_decoder.emplace(m_input, layout, m_options.raw, *packet, m_options.damage,
                              mayBeBare(layout));
        if (pictures.codecpar->codec_id == AV_CODEC_ID_DPX && timeCode.empty())
            timeCode = dpxTimeCode(*packet);
        m_decoder->send(packet.get());
        found = m_decoder->receive(*m_first);
    }
    if (!found)
        throw Failure(fmt::format("{} holds no picture", m_input.name()));
    const auto pixels = m_first->format == barePixels ? pixelFormatOf(layout)
                                                      : static_cast<AVPixelFormat>(m_first->format);
    m_info = describeStream(m_input, *m_first, pixels);
    if (m_info.timeCode.empty())
        m_info.timeCode = timeCode;
    m_shape.emplace(layout, m_info.width, m_info.height);
    if (m_options.rate && !m_info.picture) {
        m_even.emplace(m_info, *m_options.rate);
        m_info = m_even->describe();
    }
    m_firstTime = m_even ? m_even->sourceTime(m_info.start) : m_first->best_effort_timestamp;
}

// Frames that are to have other colours are decoded and converted.
bool Reader::mayBeBare(const zrLayout& layout) const {
    if (!m_options.colors || m_options.raw)
        return true;
    const AVCodecParameters& header = *m_input.pictures().codecpar;
    const FramePtr like = newFrame();
    like->format = barePixels;
    like->colorspace = header.color_space;
    like->color_range = header.color_range;
    const CanvasShape shape(layout, header.width, header.height);
    return areAlike(kindOf(*like, shape).colors, *m_options.colors);
}

// Clocks of broadcast streams run from any time on.
void Reader::findOrigin() {
    if (!(m_input.format().iformat->flags & AVFMT_TS_DISCONT))
        return;
    m_origin = m_first->best_effort_timestamp;
    for (unsigned i = 0; i < m_input.format().nb_streams; ++i) {
        const AVStream& stream = *m_input.format().streams[i];
        if (stream.start_time != AV_NOPTS_VALUE)
            m_origin = std::min(m_origin, av_rescale_q(stream.start_time, stream.time_base,
                                                       m_input.pictures().time_base));
    }
}

// Frames before the range need not be decoded where the file says where each of them stands.
void Reader::take(const FrameRange& range) {
    m_range = range;
    m_passed.takeRange();
    const std::int64_t first = std::max<std::int64_t>(range.first - framesOfLeadIn(), 0);
    if (first == 0 || m_even || m_ended || !m_input.seekToFrame(first))
        return;
    m_frames.clear();
    m_unread.clear();
    m_decoder->flush();
    m_number = first;
}

// That sound needs which is compressed.
std::int64_t Reader::framesOfLeadIn() const {
    for (const AVStream* stream : m_input.sound())
        if (needsLeadIn(*stream->codecpar))
            return av_rescale_q_rnd(soundLeadIn, {1, 1000}, av_inv_q(m_info.frameRate),
                                    AV_ROUND_UP);
    return 0;
}

std::int64_t Reader::expectedOrigin() const {
    if (m_range.first == 0)
        return m_origin;
    const AVRational base = m_input.pictures().time_base;
    return av_rescale_q(m_info.start, m_info.timeBase, base) +
           av_rescale_q(m_range.first, av_inv_q(m_info.frameRate), base);
}

std::string Reader::timeCode() const {
    const std::optional<TimeCode> code = timeCodeIn(m_info.timeCode, m_info.frameRate);
    return code && m_range.first > 0 ? code->at(m_range.first) : m_info.timeCode;
}

void Reader::pass(const std::vector<int>& streams, const std::vector<int>& decoded) {
    m_passed.choose(streams);
    m_passed.leadIn(decoded);
}

void Reader::measureSound(AudioLevels& levels) {
    m_levels = &levels;
    for (const int stream : levels.streams())
        m_soundEnds[stream] = -1.0;
}

void Reader::scaleTo(int width, int height) {
    if (width == m_info.width && height == m_info.height)
        return;
    if (m_decoder->isBare())
        throw Failure("frames that are read as they are cannot be scaled: use another --layout");
    m_shape.emplace(*m_shape->layout, width, height);
}

std::optional<Item> Reader::next() {
    if (!m_canvases)
        m_canvases.emplace(*m_shape, m_options.alpha, m_options.colors);
    while (m_ready.empty() && readOn()) {
    }
    if (m_ready.empty())
        return std::nullopt;
    Item item = std::move(m_ready.front());
    m_ready.pop_front();
    return item;
}

// A step; false when there is nothing more to do.
bool Reader::readOn() {
    if (!m_frames.empty() && (hasSoundOf(*m_frames.front()) || m_ended)) {
        FramePtr picture = std::move(m_frames.front());
        m_frames.pop_front();
        place(std::move(picture));
    } else if (m_frames.empty() && !m_held.empty()) {
        const PacketPtr packet = std::move(m_held.front());
        m_held.pop_front();
        m_heldBytes -= static_cast<std::size_t>(packet->size);
        decode(packet.get());
    } else if (!m_unread.empty()) {
        takePacket(std::move(m_unread.front()));
        m_unread.pop_front();
    } else if (!m_ended) {
        PacketPtr packet = wantsMore() ? m_input.next() : nullptr;
        m_ended = !packet;
        if (packet)
            takePacket(std::move(packet));
    } else if (!std::exchange(m_flushed, true)) {
        decode(nullptr);
    } else if (!std::exchange(m_finished, true)) {
        if (m_even)
            m_even->end([&](FramePtr even) { load(std::move(even), m_number++); });
        giveLast(std::nullopt);
        m_passed.release(m_ready, true);
    } else {
        return false;
    }
    return true;
}

bool Reader::wantsMore() const {
    return m_number <= m_range.end || m_passed.awaitsMore();
}

void Reader::takePacket(PacketPtr packet) {
    if (packet->stream_index == m_input.pictures().index) {
        if (m_number > m_range.end)
            return;
        m_heldBytes += static_cast<std::size_t>(packet->size);
        m_held.push_back(std::move(packet));
        return;
    }
    const auto sound = m_soundEnds.find(packet->stream_index);
    if (sound != m_soundEnds.end()) {
        m_levels->feed(*packet);
        const AVRational base = m_input.format().streams[packet->stream_index]->time_base;
        if (packet->pts != AV_NOPTS_VALUE)
            sound->second = static_cast<double>(packet->pts + packet->duration) * av_q2d(base);
    }
    m_passed.add(std::move(packet));
    m_passed.release(m_ready, false);
}

// Whether the sound beside a picture has been read, or is too far behind it.
bool Reader::hasSoundOf(const AVFrame& picture) const {
    if (m_heldBytes >= mostBytesHeld)
        return true;
    const double end = static_cast<double>(picture.best_effort_timestamp + picture.pkt_duration) *
                       av_q2d(m_input.pictures().time_base);
    return std::none_of(m_soundEnds.begin(), m_soundEnds.end(),
                        [=](const auto& sound) { return sound.second < end; });
}

void Reader::decode(AVPacket* packet) {
    m_decoder->send(packet);
    for (FramePtr picture = newFrame(); m_decoder->receive(*picture); picture = newFrame())
        m_frames.push_back(std::move(picture));
}

void Reader::place(FramePtr picture) {
    requireSameFormat(*picture);
    if (m_even)
        m_even->add(*picture, [&](FramePtr even) { load(std::move(even), m_number++); });
    else
        load(std::move(picture), m_number++);
}

// Frames outside the range only tell where it lies in time.
void Reader::load(FramePtr picture, std::int64_t number) {
    const std::int64_t time = picture->best_effort_timestamp;
    const std::int64_t fileTime =
        m_even ? m_even->sourceTime(time) : time; // that the other streams are in
    if (number < m_range.first) {
        m_passed.frameBefore(fileTime);
        return;
    }
    if (number >= m_range.end) {
        giveLast(time);
        if (number == m_range.end)
            m_passed.end(fileTime);
        return;
    }
    if (!std::exchange(m_begun, true)) {
        if (m_range.first > 0)
            m_origin = m_firstTime = fileTime;
        m_passed.begin(fileTime);
        if (m_levels)
            m_levels->takeUntil(static_cast<double>(time) * av_q2d(m_info.timeBase));
    }
    giveLast(time);
    m_passed.frameWithin(fileTime);
    auto frame = std::make_unique<Frame>(m_canvases->canvasOf(*picture));
    frame->number = number;
    frame->clock = framesSinceStart(m_info, time);
    frame->time = time;
    frame->duration = picture->pkt_duration;
    if (m_levels)
        frame->levels = m_levels->takeUntil(static_cast<double>(time + frame->duration) *
                                            av_q2d(m_info.timeBase));
    frame->picture = std::move(picture);
    m_last = std::move(frame);
}

// A frame lasts until the next one, whatever the file says of its length.
void Reader::giveLast(std::optional<std::int64_t> nextTime) {
    if (!m_last)
        return;
    if (nextTime && *nextTime > m_last->time)
        m_last->duration = *nextTime - m_last->time;
    m_ready.emplace_back(std::move(m_last));
}

void Reader::requireSameFormat(const AVFrame& frame) const {
    if (frame.width != m_info.width || frame.height != m_info.height ||
        (!m_decoder->isBare() && frame.format != m_info.pixelFormat))
        throw Failure(fmt::format("{} changes from {} to {} at frame {}", m_input.name(),
                                  describeFormat(m_info.width, m_info.height, m_info.pixelFormat),
                                  describeFormat(frame.width, frame.height, frame.format),
                                  m_number));
}

std::string Reader::report() const {
    std::vector<std::string> parts;
    const std::int64_t damaged = m_input.skipped() + m_decoder->standIns();
    if (damaged > 0)
        parts.push_back(fmt::format("{} holds {} damaged {}; the last good frame stands in",
                                    m_input.name(), damaged, damaged == 1 ? "packet" : "packets"));
    if (m_even && m_even->repeated() + m_even->leftOut() > 0)
        parts.push_back(fmt::format("{} frames were repeated and {} left out to keep the rate",
                                    m_even->repeated(), m_even->leftOut()));
    return fmt::format("{}", fmt::join(parts, "; "));
}

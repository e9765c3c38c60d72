#include "media/writer.h"

#include "media/dpx_time_code.h"

#include <fmt/format.h>

#include <algorithm>

namespace {

const AVFrame& noPicture() {
    static const FramePtr none = newFrame();
    return *none;
}

// These have a place for the time code of the first frame.
bool holdsTimeCode(const OutputFormat& format) {
    constexpr std::string_view names[] = {"mov", "mp4", "mxf", "mxf_opatom", "gxf", "matroska"};
    return std::find(std::begin(names), std::end(names), format.muxer->name) != std::end(names);
}

// Encoders that know how put them into the stream.
void copyCaptions(const AVFrame& from, AVFrame& to) {
    const AVFrameSideData* captions = av_frame_get_side_data(&from, AV_FRAME_DATA_A53_CC);
    if (!captions)
        return;
    BufferPtr shared(av_buffer_ref(captions->buf));
    if (!shared || !av_frame_new_side_data_from_buf(&to, AV_FRAME_DATA_A53_CC, shared.get()))
        throw std::bad_alloc();
    static_cast<void>(shared.release()); // the frame's now
}

// What can be known to fail is refused before any work is done.
OutputFormat chooseFormat(const WriteOptions& options, const StreamInfo& info) {
    if (!isSequenceName(options.path))
        OutputFile::checkPath(options.path, options.force);
    return chooseOutputFormat(options.path, options.format, options.encoder.codec, info);
}

bool hasCaptions(const AVFrame& picture) {
    return av_frame_get_side_data(&picture, AV_FRAME_DATA_A53_CC) != nullptr;
}

} // namespace

Writer::Writer(const WriteOptions& options, Reader& source, const StreamInfo& info)
    : m_info(info), m_format(chooseFormat(options, info)),
      m_name(options.path == "-" ? "standard output" : fmt::format("'{}'", options.path)),
      m_timeline(info, m_format), m_encoder(m_format, options.encoder, info, source.firstPicture(),
                                            source.shape(), m_timeline.base()),
      m_storer(source.shape(), options.alpha), m_output(options.path, m_format),
      m_pictures(&m_output.addFrames(m_encoder)), m_source(&source),
      m_timesFromZero(options.timesFromZero) {
    passOn(options, source);
    m_output.begin(options.force, options.firstNumber, m_encoder.context().delay == 0);
}

Writer::Writer(const WriteOptions& options, const CanvasShape& shape, const StreamInfo& info)
    : m_info(info), m_format(chooseFormat(options, info)),
      m_name(options.path == "-" ? "standard output" : fmt::format("'{}'", options.path)),
      m_timeline(info, m_format),
      m_encoder(m_format, options.encoder, info, noPicture(), shape, m_timeline.base()),
      m_storer(shape, options.alpha), m_output(options.path, m_format),
      m_pictures(&m_output.addFrames(m_encoder)), m_timesFromZero(true) {
    m_output.begin(options.force, options.firstNumber, m_encoder.context().delay == 0);
}

void Writer::passOn(const WriteOptions& options, Reader& source) {
    m_passed = passStreams(source.input(), m_output,
                           {options.streams, options.sourceSound, options.audioCodec});
    choose(source, 0);
    if (options.soundBeside && options.streams != Streams::Video) {
        m_beside = options.soundBeside;
        passSound(m_beside->input(), m_output, options.audioCodec, firstIndexBeside(), m_passed);
        choose(*options.soundBeside, firstIndexBeside());
    }
    addMadeSound(options);
    std::vector<std::string> lost = m_passed.lost;
    const std::vector<std::string> more = copyDescription(
        source.input(), source.firstPicture(), source.expectedOrigin(), m_output, *m_pictures);
    lost.insert(lost.end(), more.begin(), more.end());
    if (hasCaptions(source.firstPicture()) && !m_encoder.keepsCaptions())
        lost.emplace_back("closed captions");
    if (av_frame_get_side_data(&source.firstPicture(), AV_FRAME_DATA_AFD))
        lost.emplace_back("the active format description");
    setTimeCode(options, lost);
    noteLost(lost);
}

// The source then passes those of its streams that were found to have a place.
void Writer::choose(Reader& source, int firstIndex) const {
    const auto count = static_cast<int>(source.input().format().nb_streams);
    std::vector<int> chosen, decoded;
    for (const PassedStreams::Stream& stream : m_passed.streams) {
        const int index = stream.from - firstIndex;
        if (index < 0 || index >= count)
            continue;
        chosen.push_back(index);
        if (stream.transcoder)
            decoded.push_back(index);
    }
    source.pass(chosen, decoded);
}

int Writer::firstIndexBeside() const {
    return static_cast<int>(m_source->input().format().nb_streams);
}

void Writer::addMadeSound(const WriteOptions& options) {
    const MadeSound made = options.makeSound ? options.makeSound(m_format) : MadeSound{};
    if (made.like && !made.encoder)
        m_passed.lost.emplace_back("sound");
    if (!made.encoder)
        return;
    AVStream& stream = m_output.addStream(*made.encoder);
    copyStreamDescription(*made.like, stream);
    m_madeSound = &stream;
    m_madeSoundBase = made.encoder->time_base;
}

void Writer::setTimeCode(const WriteOptions& options, std::vector<std::string>& lost) {
    const std::string text = options.timeCode.value_or(m_source->timeCode());
    if (m_format.codec->id == AV_CODEC_ID_DPX)
        m_timeCode = timeCodeIn(text, m_info.frameRate);
    else if (!text.empty() && holdsTimeCode(m_format))
        av_dict_set(&m_pictures->metadata, "timecode", text.c_str(), 0);
    else if (!m_info.timeCode.empty())
        lost.emplace_back("the time code");
}

// A still picture is not expected to hold more than it shows.
void Writer::noteLost(const std::vector<std::string>& lost) {
    if (!m_format.note.empty())
        m_notes.push_back(m_format.note);
    if (!lost.empty() && !m_format.picture)
        m_notes.push_back(fmt::format(
            "the format '{}' cannot hold what the source has besides: {}",
            m_format.sequence ? m_format.codec->name : m_format.muxer->name, listLost(lost)));
}

void Writer::write(Item& item) {
    if (const auto* frame = std::get_if<std::unique_ptr<Frame>>(&item))
        writeFrame(**frame);
    else
        writePacket(*std::get<PacketPtr>(item));
}

// What the result's times are counted from, in the base of the source's pictures.
std::int64_t Writer::fileOrigin() const {
    const AVRational base = m_source->input().pictures().time_base;
    const StreamInfo& info = m_source->info();
    return m_timeline.countsFromFirst() && m_source->range().first == 0
               ? av_rescale_q(info.start, info.timeBase, base)
               : m_source->origin();
}

void Writer::writeFrame(Frame& frame) {
    if (m_format.picture && m_frames > 0)
        throw Failure(fmt::format("{} takes one picture only", m_name));
    const std::int64_t origin =
        m_timesFromZero
            ? 0
            : av_rescale_q(fileOrigin(), m_source->input().pictures().time_base, m_info.timeBase);
    const FramePtr target = m_encoder.makeFrame(frame.canvas);
    m_storer.store(frame.canvas, *frame.picture, *target);
    copyCaptions(*frame.picture, *target);
    target->pts = m_timeline.place(frame, origin);
    target->pkt_duration = m_timeline.lengthOf(frame);
    encode(target.get());
    ++m_frames;
    m_framesEnd = frame.time + frame.duration;
}

void Writer::encode(const AVFrame* frame) {
    m_encoder.encode(
        frame,
        [&](AVPacket& packet) {
            if (m_timeCode)
                putDpxTimeCode(packet, m_timeCode->at(packet.pts));
            m_output.write(packet, m_timeline.base(), *m_pictures);
        });
}

void Writer::writePacket(AVPacket& packet) {
    if (packet.stream_index == madeSoundStream)
        return m_output.write(packet, m_madeSoundBase, *m_madeSound);
    for (const PassedStreams::Stream& stream : m_passed.streams) {
        if (stream.from != packet.stream_index)
            continue;
        if (stream.transcoder)
            return transcode(stream, &packet);
        const std::int64_t origin = originOf(stream);
        if (packet.pts != AV_NOPTS_VALUE)
            packet.pts -= origin;
        if (packet.dts != AV_NOPTS_VALUE)
            packet.dts -= origin;
        m_output.write(packet, stream.base, *stream.to);
        return;
    }
}

// What times of the stream are counted from, in its base: the first frames of two sources come at
// one time.
std::int64_t Writer::originOf(const PassedStreams::Stream& stream) const {
    const AVRational base = m_source->input().pictures().time_base;
    if (!m_beside || stream.from < firstIndexBeside())
        return av_rescale_q(fileOrigin(), base, stream.base);
    return av_rescale_q(m_beside->firstTime(), m_beside->input().pictures().time_base,
                        stream.base) -
           av_rescale_q(m_source->firstTime() - fileOrigin(), base, stream.base);
}

// A null packet ends it.
void Writer::transcode(const PassedStreams::Stream& stream, const AVPacket* packet) {
    SoundWindow window{originOf(stream), stream.base};
    const FrameRange& range = m_source->range();
    const AVRational pictures = m_source->input().pictures().time_base;
    if (range.first > 0 || range.end != FrameRange::open)
        window.from = av_rescale_q(m_source->firstTime(), pictures, stream.base);
    if (range.end != FrameRange::open)
        window.to =
            m_frames == 0 ? window.from : av_rescale_q(m_framesEnd, m_info.timeBase, stream.base);
    stream.transcoder->transcode(packet, window, [&](PacketPtr encoded) {
        m_output.write(*encoded, stream.transcoder->context().time_base, *stream.to);
    });
}

void Writer::finish() {
    if (m_frames == 0)
        throw NoFrames(fmt::format("no frame was given to write to {}", m_name));
    encode(nullptr);
    for (const PassedStreams::Stream& stream : m_passed.streams)
        if (stream.transcoder)
            transcode(stream, nullptr);
    m_output.finish();
}

#include "media/description.h"

#include "common/tool_error.h"
#include "media/light.h"
#include "sound/sound_codec.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

extern "C" {
#include <libavutil/mem.h>
}

namespace {

// These say how the source's file is made, not what it shows; time code has a way of its own.
constexpr std::string_view ownTags[] = {
    "major_brand", "minor_version", "compatible_brands", "encoder",
    "timecode",    "duration",      "DURATION",          "_STATISTICS_WRITING_APP"};

bool isOwnTag(std::string_view key) {
    return std::find(std::begin(ownTags), std::end(ownTags), key) != std::end(ownTags) ||
           key.starts_with("_STATISTICS") || key.starts_with("BPS") ||
           key.starts_with("NUMBER_OF_");
}

void copyTags(const AVDictionary* from, AVDictionary*& to) {
    const AVDictionaryEntry* entry = nullptr;
    while ((entry = av_dict_get(from, "", entry, AV_DICT_IGNORE_SUFFIX)))
        if (!isOwnTag(entry->key))
            av_dict_set(&to, entry->key, entry->value, 0);
}

bool holdsChapters(const OutputFormat& format) {
    constexpr std::string_view names[] = {"mov", "mp4",      "ipod", "3gp", "3g2", "psp",
                                          "f4v", "matroska", "webm", "nut", "asf", "ogg"};
    return std::find(std::begin(names), std::end(names), format.muxer->name) != std::end(names);
}

bool holdsRotation(const OutputFormat& format) {
    constexpr std::string_view names[] = {"mov", "mp4", "ipod", "3gp", "3g2", "psp", "f4v"};
    return std::find(std::begin(names), std::end(names), format.muxer->name) != std::end(names);
}

void copyChapters(const AVFormatContext& from, AVRational base, std::int64_t origin,
                  AVFormatContext& to) {
    to.chapters = static_cast<AVChapter**>(av_calloc(from.nb_chapters, sizeof(void*)));
    if (!to.chapters)
        throw std::bad_alloc();
    for (unsigned i = 0; i < from.nb_chapters; ++i) {
        const AVChapter& chapter = *from.chapters[i];
        const std::int64_t start = av_rescale_q(origin, base, chapter.time_base);
        if (chapter.end <= start)
            continue;
        auto* copy = static_cast<AVChapter*>(av_mallocz(sizeof(AVChapter)));
        if (!copy)
            throw std::bad_alloc();
        copy->id = chapter.id;
        copy->time_base = chapter.time_base;
        copy->start = std::max<std::int64_t>(chapter.start - start, 0);
        copy->end = chapter.end - start;
        av_dict_copy(&copy->metadata, chapter.metadata, 0);
        to.chapters[to.nb_chapters++] = copy;
    }
}

std::string kindOf(const AVStream& stream) {
    const char* codec = avcodec_get_name(stream.codecpar->codec_id);
    if (stream.disposition & AV_DISPOSITION_ATTACHED_PIC)
        return fmt::format("a cover picture ({})", codec);
    switch (stream.codecpar->codec_type) {
    case AVMEDIA_TYPE_AUDIO:
        return fmt::format("sound ({})", codec);
    case AVMEDIA_TYPE_SUBTITLE:
        return fmt::format("subtitles ({})", codec);
    case AVMEDIA_TYPE_VIDEO:
        return fmt::format("a second video stream ({})", codec);
    case AVMEDIA_TYPE_ATTACHMENT:
        return "attachments";
    default:
        return "a data stream";
    }
}

// A track of time codes is made anew from the first one.
bool isTimeCodeTrack(const AVStream& stream) {
    return stream.codecpar->codec_tag == MKTAG('t', 'm', 'c', 'd') ||
           (stream.codecpar->codec_type == AVMEDIA_TYPE_DATA &&
            av_dict_get(stream.metadata, "timecode", nullptr, 0));
}

bool isWanted(const AVStream& stream, const PassOptions& options) {
    const AVMediaType type = stream.codecpar->codec_type;
    const Streams wanted = options.wanted;
    if (type == AVMEDIA_TYPE_AUDIO && !options.sound)
        return false;
    return wanted == Streams::All ||
           (wanted == Streams::AudioAndVideo &&
            (type == AVMEDIA_TYPE_AUDIO ||
             (type == AVMEDIA_TYPE_VIDEO && !(stream.disposition & AV_DISPOSITION_ATTACHED_PIC))));
}

bool isFileBeside(const AVStream& stream, const OutputFormat& format) {
    return stream.codecpar->codec_type == AVMEDIA_TYPE_ATTACHMENT ||
           ((stream.disposition & AV_DISPOSITION_ATTACHED_PIC) && format.isNamed("matroska") &&
            av_dict_get(stream.metadata, "filename", nullptr, 0));
}

[[noreturn]] void refuseSound(const OutputFormat& format, const AVStream& stream) {
    const AVCodec* codec = soundEncoderFor(format, "", *stream.codecpar);
    throw Failure(fmt::format("the format '{}' cannot hold the sound, which is {}: use "
                              "--audio-codec {}, another name such as out.mov or out.mkv, or "
                              "--streams v",
                              format.muxer->name, avcodec_get_name(stream.codecpar->codec_id),
                              codec->name));
}

void transcode(const Input& from, const AVStream& stream, Output& to, const std::string& codec,
               int index, PassedStreams& passed) {
    const AVCodec& encoder = *soundEncoderFor(to.format(), codec, *stream.codecpar);
    auto transcoder = std::make_shared<SoundTranscoder>(from, stream, encoder, *to.format().muxer);
    AVStream& added = to.addStream(transcoder->context());
    copyStreamDescription(stream, added);
    passed.streams.push_back({index, stream.time_base, &added, std::move(transcoder)});
}

void passStream(const Input& from, const AVStream& stream, Output& to,
                const std::string& audioCodec, int index, PassedStreams& passed) {
    const OutputFormat& format = to.format();
    const bool sound = stream.codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
    if (sound && takesSound(format) && !audioCodec.empty())
        transcode(from, stream, to, audioCodec, index, passed);
    else if (canHold(format, *stream.codecpar))
        passed.streams.push_back({index, stream.time_base, &to.addCopy(stream), nullptr});
    else if (sound && takesSound(format))
        refuseSound(format, stream);
    else
        passed.lost.push_back(kindOf(stream));
}

} // namespace

PassedStreams passStreams(const Input& from, Output& to, const PassOptions& options) {
    PassedStreams passed;
    for (unsigned i = 0; i < from.format().nb_streams; ++i) {
        const AVStream& stream = *from.format().streams[i];
        const bool ours = stream.index == from.pictures().index;
        if (ours || isTimeCodeTrack(stream) || !isWanted(stream, options))
            continue;
        if (isFileBeside(stream, to.format()) && to.format().isNamed("matroska"))
            to.addAttachment(stream);
        else
            passStream(from, stream, to, options.audioCodec, stream.index, passed);
    }
    return passed;
}

void passSound(const Input& from, Output& to, const std::string& audioCodec, int firstIndex,
               PassedStreams& passed) {
    for (const AVStream* stream : from.sound())
        passStream(from, *stream, to, audioCodec, firstIndex + stream->index, passed);
}

void copyStreamDescription(const AVStream& from, AVStream& to) {
    copyTags(from.metadata, to.metadata);
    to.disposition = from.disposition;
    copySideData(from, to);
}

std::vector<std::string> copyDescription(const Input& from, const AVFrame& first,
                                         std::int64_t origin, Output& to, AVStream& pictures) {
    std::vector<std::string> lost;
    const AVFormatContext& source = from.format();
    const OutputFormat& format = to.format();
    copyTags(source.metadata, to.muxer().metadata);
    copyStreamDescription(from.pictures(), pictures);
    copyLight(first, pictures);
    if (source.nb_chapters > 0 && holdsChapters(format))
        copyChapters(source, from.pictures().time_base, origin, to.muxer());
    else if (source.nb_chapters > 0)
        lost.emplace_back("chapters");
    const bool rotated =
        av_stream_get_side_data(&from.pictures(), AV_PKT_DATA_DISPLAYMATRIX, nullptr) != nullptr;
    if (rotated && !holdsRotation(format))
        lost.emplace_back("the rotation");
    return lost;
}

// Each once.
std::string listLost(const std::vector<std::string>& lost) {
    std::vector<std::string> names;
    for (const std::string& name : lost)
        if (std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(name);
    return fmt::format("{}", fmt::join(names, ", "));
}

#include "media/stream_info.h"

#include "picture/pixel_formats.h"

#include <cstdlib>

namespace {

template <class T>
T known(T fromFrame, T fromHeader, T unspecified) {
    return fromFrame != unspecified ? fromFrame : fromHeader;
}

std::string timeCodeIn(const AVDictionary* tags) {
    const AVDictionaryEntry* entry = av_dict_get(tags, "timecode", nullptr, 0);
    return entry ? entry->value : "";
}

// The picture's own, its stream's, the file's, or that of a stream of time codes.
std::string timeCodeOf(const AVFormatContext& format, const AVStream& pictures,
                       const AVFrame& first) {
    std::string text = timeCodeIn(first.metadata);
    if (text.empty())
        text = timeCodeIn(pictures.metadata);
    if (text.empty())
        text = timeCodeIn(format.metadata);
    for (unsigned i = 0; i < format.nb_streams && text.empty(); ++i)
        text = timeCodeIn(format.streams[i]->metadata);
    return text;
}

// The number of frames for a progress display: from the header, else from the length in time.
std::int64_t frameCountOf(const AVFormatContext& format, const AVStream& stream, AVRational rate) {
    if (stream.nb_frames > 0)
        return stream.nb_frames;
    if (format.duration_estimation_method == AVFMT_DURATION_FROM_BITRATE)
        return 0;
    if (stream.duration > 0)
        return av_rescale_q(stream.duration, stream.time_base, av_inv_q(rate));
    return format.duration > 0 ? av_rescale_q(format.duration, timeBaseUnit, av_inv_q(rate)) : 0;
}

// The stream's own, or what the file has beside its other streams. Of a codec with frames of one
// size, which no header tells, any frame says it.
std::int64_t bitRateOf(const AVFormatContext& format, const AVStream& pictures,
                       const AVFrame& first, AVRational rate) {
    if (pictures.codecpar->codec_id == AV_CODEC_ID_DNXHD && first.pkt_size > 0)
        return av_rescale(8 * first.pkt_size, rate.num, rate.den);
    if (pictures.codecpar->bit_rate > 0)
        return pictures.codecpar->bit_rate;
    std::int64_t rest = format.bit_rate;
    for (unsigned i = 0; i < format.nb_streams; ++i)
        rest -= format.streams[i]->codecpar->bit_rate;
    return rest > 0 ? rest : 0;
}

// Whether the index in the file's header has frames by more than a quarter off the places of the
// rate: less is a clock's trembling.
bool indexIsUneven(const AVStream& pictures, AVRational rate) {
    const int entries = avformat_index_get_entries_count(&pictures);
    if (entries < 2 || entries != pictures.nb_frames)
        return false;
    auto* stream = const_cast<AVStream*>(&pictures); // the library's oversight
    const std::int64_t most = av_rescale_q(1, av_inv_q(rate), pictures.time_base) / 4 + 1;
    const std::int64_t first = avformat_index_get_entry(stream, 0)->timestamp;
    for (int i = 1; i < entries; ++i) {
        const std::int64_t even = av_rescale_q(i, av_inv_q(rate), pictures.time_base);
        if (std::llabs(avformat_index_get_entry(stream, i)->timestamp - first - even) > most)
            return true;
    }
    return false;
}

} // namespace

StreamInfo describeStream(const Input& input, const AVFrame& first, AVPixelFormat pixelFormat) {
    AVFormatContext& format = input.format();
    AVStream& pictures = input.pictures();
    const AVCodecParameters& header = *pictures.codecpar;
    StreamInfo info;
    const AVRational rate = av_guess_frame_rate(&format, &pictures, nullptr);
    if (rate.num > 0 && rate.den > 0)
        info.frameRate = rate;
    info.width = first.width;
    info.height = first.height;
    info.timeBase = pictures.time_base;
    info.start = first.best_effort_timestamp == AV_NOPTS_VALUE ? 0 : first.best_effort_timestamp;
    info.sampleAspect =
        av_guess_sample_aspect_ratio(&format, &pictures, const_cast<AVFrame*>(&first));
    info.pixelFormat = pixelFormat;
    info.colorSpace = known(first.colorspace, header.color_space, AVCOL_SPC_UNSPECIFIED);
    info.colorRange = known(first.color_range, header.color_range, AVCOL_RANGE_UNSPECIFIED);
    if (isFullRangeByName(pixelFormat))
        info.colorRange = AVCOL_RANGE_JPEG;
    info.colorPrimaries =
        known(first.color_primaries, header.color_primaries, AVCOL_PRI_UNSPECIFIED);
    info.colorTransfer = known(first.color_trc, header.color_trc, AVCOL_TRC_UNSPECIFIED);
    info.chromaLocation =
        known(first.chroma_location, header.chroma_location, AVCHROMA_LOC_UNSPECIFIED);
    info.fieldOrder = header.field_order;
    if (info.fieldOrder == AV_FIELD_UNKNOWN && first.interlaced_frame)
        info.fieldOrder = first.top_field_first ? AV_FIELD_TT : AV_FIELD_BB;
    info.codec = header.codec_id;
    info.codecTag = header.codec_tag;
    info.codecProfile = header.profile;
    info.bitRate = bitRateOf(format, pictures, first, info.frameRate);
    info.formatName = format.iformat->name;
    info.timeCode = timeCodeOf(format, pictures, first);
    info.picture = input.isPicture();
    info.unevenRate = indexIsUneven(pictures, info.frameRate);
    info.frameCount = info.picture ? 1 : frameCountOf(format, pictures, info.frameRate);
    return info;
}

std::int64_t framesSinceStart(const StreamInfo& info, std::int64_t time) {
    return av_rescale_q_rnd(time - info.start, info.timeBase, av_inv_q(info.frameRate),
                            AV_ROUND_NEAR_INF);
}

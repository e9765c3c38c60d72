#include "media/reading_rules.h"

#include "media/completeness.h"

#include <string_view>

namespace {

bool isDemuxer(const AVFormatContext& input, std::string_view name) {
    return input.iformat->name == name;
}

bool isMatroska(const AVFormatContext& input) {
    return isDemuxer(input, "matroska,webm");
}

} // namespace

bool isPlainText(const AVFormatContext& input) {
    return isDemuxer(input, "tty");
}

bool holdsOnePicture(const AVFormatContext& input) {
    const std::string_view name = input.iformat->name;
    return name == "image2" || name.ends_with("_pipe");
}

bool isAsLongAsItSays(const AVFormatContext& input, const std::string& path) {
    if (isMatroska(input))
        return matroskaReachesItsEnd(path);
    return !isDemuxer(input, "avi") || aviReachesItsEnd(path);
}

// The end is compared with what the stream says of itself. A pipe has no length to compare.
bool endedEarly(AVFormatContext& input, AVStream& pictures, std::int64_t bytesEnd,
                std::int64_t timeEnd) {
    if (isDemuxer(input, "yuv4mpegpipe") && avio_tell(input.pb) != bytesEnd)
        return true;
    if (!isMatroska(input) || input.duration_estimation_method != AVFMT_DURATION_FROM_STREAM)
        return false;
    const AVRational rate = av_guess_frame_rate(&input, &pictures, nullptr);
    const std::int64_t frameTime =
        rate.num > 0 ? av_rescale_q(1, av_inv_q(rate), timeBaseUnit) : AV_TIME_BASE;
    return timeEnd + frameTime < input.duration;
}

bool isWhole(const AVFormatContext& input, const AVPacket& packet) {
    const AVCodecID codec = input.streams[packet.stream_index]->codecpar->codec_id;
    return codec != AV_CODEC_ID_MJPEG || !holdsOnePicture(input) ||
           jpegReachesItsEnd({packet.data, static_cast<std::size_t>(packet.size)});
}

// The strictest check finds a JPEG that is cut off, but makes other decoders refuse sound files for
// small oddities.
int errorChecks(AVCodecID codec) {
    const bool strictest = codec == AV_CODEC_ID_MJPEG || codec == AV_CODEC_ID_PNG;
    return AV_EF_CRCCHECK | AV_EF_BITSTREAM | AV_EF_BUFFER | (strictest ? AV_EF_EXPLODE : 0);
}

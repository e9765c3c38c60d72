#include "media/output_format.h"

#include "common/tool_error.h"
#include "media/sequence.h"
#include "picture/pixel_formats.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <span>
#include <string_view>
#include <vector>

namespace {

struct FormatAlias {
    std::string_view name; // also as the end of a file's name
    const char* muxer;
};

constexpr FormatAlias aliases[] = {{"y4m", "yuv4mpegpipe"}, {"raw", "rawvideo"}};

// What a y4m header can name. The encoder behind it passes any frame on and names no formats.
// clang-format off
constexpr AVPixelFormat y4mFormats[] = {
    AV_PIX_FMT_YUV411P, AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUV422P, AV_PIX_FMT_YUV444P,
    AV_PIX_FMT_YUV420P9, AV_PIX_FMT_YUV422P9, AV_PIX_FMT_YUV444P9,
    AV_PIX_FMT_YUV420P10, AV_PIX_FMT_YUV422P10, AV_PIX_FMT_YUV444P10,
    AV_PIX_FMT_YUV420P12, AV_PIX_FMT_YUV422P12, AV_PIX_FMT_YUV444P12,
    AV_PIX_FMT_YUV420P14, AV_PIX_FMT_YUV422P14, AV_PIX_FMT_YUV444P14,
    AV_PIX_FMT_YUV420P16, AV_PIX_FMT_YUV422P16, AV_PIX_FMT_YUV444P16, AV_PIX_FMT_NONE,
};
// clang-format on

// Marks are drawn in colour, so a source in grey or with a palette is written like one in RGB.
AVPixelFormat withColors(AVPixelFormat format) {
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    if (!hasFlag(format, AV_PIX_FMT_FLAG_PAL) && !isGray(format))
        return format;
    const bool deep = description->comp[0].depth > 8;
    if (hasFlag(format, AV_PIX_FMT_FLAG_ALPHA))
        return deep ? AV_PIX_FMT_RGBA64 : AV_PIX_FMT_RGBA;
    return deep ? AV_PIX_FMT_RGB48 : AV_PIX_FMT_RGB24;
}

AVPixelFormat bestFormat(const AVPixelFormat* offered, AVPixelFormat source) {
    const AVPixelFormat wanted = withColors(source);
    std::vector<AVPixelFormat> possible;
    for (; *offered != AV_PIX_FMT_NONE; ++offered)
        if (sws_isSupportedOutput(*offered))
            possible.push_back(*offered);
    possible.push_back(AV_PIX_FMT_NONE);
    return avcodec_find_best_pix_fmt_of_list(possible.data(), wanted,
                                             hasFlag(wanted, AV_PIX_FMT_FLAG_ALPHA), nullptr);
}

std::string extensionOf(const std::string& path) {
    return std::filesystem::path(path).extension().string();
}

const AVOutputFormat* muxerNamed(const std::string& name) {
    for (const FormatAlias& alias : aliases)
        if (alias.name == name)
            return av_guess_format(alias.muxer, nullptr, nullptr);
    return av_guess_format(name.c_str(), nullptr, nullptr);
}

const AVOutputFormat* muxerForFile(const std::string& path) {
    const std::string extension = extensionOf(path);
    for (const FormatAlias& alias : aliases)
        if (extension == fmt::format(".{}", alias.name))
            return muxerNamed(alias.muxer);
    // The bare extension, because digits in the rest of the name would mean a numbered sequence.
    return av_guess_format(nullptr, ("x" + extension).c_str(), nullptr);
}

const AVOutputFormat* findMuxer(const std::string& path, const std::string& format) {
    const AVOutputFormat* muxer = !format.empty() ? muxerNamed(format)
                                  : path == "-"   ? muxerNamed("y4m")
                                                  : muxerForFile(path);
    if (!muxer) {
        const std::string extension = extensionOf(path);
        const std::string unknown = !format.empty() ? format : extension.empty() ? path : extension;
        throw UsageError(fmt::format("unknown output format '{}': use a name such as out.png, "
                                     "out.mov, out.mkv, or --format",
                                     unknown));
    }
    return muxer;
}

const AVCodec* defaultCodec(const AVOutputFormat& muxer, const std::string& path) {
    // The muxer's own choice, or for pictures the one that the end of the name asks for.
    const AVCodecID id = av_guess_codec(&muxer, nullptr, path.c_str(), nullptr, AVMEDIA_TYPE_VIDEO);
    const AVCodec* codec = avcodec_find_encoder(id);
    if (!codec)
        throw UsageError(fmt::format("the format '{}' has no video encoder of its own here: use "
                                     "another name such as out.mov, or --codec",
                                     muxer.name));
    return codec;
}

const AVCodec* codecNamed(const std::string& name) {
    const AVCodec* codec = avcodec_find_encoder_by_name(name.c_str());
    const AVCodecDescriptor* family = avcodec_descriptor_get_by_name(name.c_str());
    if (!codec && family)
        codec = avcodec_find_encoder(family->id);
    if (!codec || codec->type != AVMEDIA_TYPE_VIDEO)
        throw UsageError(fmt::format("unknown video encoder '{}': use one such as libx264, ffv1 or "
                                     "prores, or leave out --codec",
                                     name));
    return codec;
}

// Formats that do not tell which codecs they can hold. One of them writes any as private data,
// which nobody finds again.
constexpr AVCodecID inTransportStream[] = {
    AV_CODEC_ID_H264,         AV_CODEC_ID_HEVC,     AV_CODEC_ID_MPEG2VIDEO,
    AV_CODEC_ID_MP2,          AV_CODEC_ID_MP3,      AV_CODEC_ID_AAC,
    AV_CODEC_ID_AC3,          AV_CODEC_ID_EAC3,     AV_CODEC_ID_DTS,
    AV_CODEC_ID_OPUS,         AV_CODEC_ID_S302M,    AV_CODEC_ID_DVB_SUBTITLE,
    AV_CODEC_ID_DVB_TELETEXT, AV_CODEC_ID_SMPTE_KLV};
constexpr AVCodecID inMxf[] = {AV_CODEC_ID_MPEG2VIDEO, AV_CODEC_ID_DNXHD,    AV_CODEC_ID_DVVIDEO,
                               AV_CODEC_ID_H264,       AV_CODEC_ID_JPEG2000, AV_CODEC_ID_PCM_S16LE,
                               AV_CODEC_ID_PCM_S24LE};

struct HeldCodecs {
    std::string_view muxer;
    std::span<const AVCodecID> codecs;
};
constexpr HeldCodecs heldCodecs[] = {{"mpegts", inTransportStream}, {"mxf", inMxf}};

// These formats list what they then refuse.
bool isListedInVain(std::string_view muxer, AVCodecID codec) {
    constexpr struct {
        std::string_view muxer;
        AVCodecID codec;
    } rows[] = {{"mov", AV_CODEC_ID_FLAC},   {"mov", AV_CODEC_ID_OPUS}, {"mov", AV_CODEC_ID_TRUEHD},
                {"mov", AV_CODEC_ID_VP8},    {"mov", AV_CODEC_ID_VP9},  {"mov", AV_CODEC_ID_AV1},
                {"mp4", AV_CODEC_ID_TRUEHD}, {"mp4", AV_CODEC_ID_VP8}};
    return std::any_of(std::begin(rows), std::end(rows),
                       [&](const auto& row) { return row.muxer == muxer && row.codec == codec; });
}

bool holdsCodec(const AVOutputFormat& muxer, AVCodecID codec) {
    if (isListedInVain(muxer.name, codec))
        return false;
    for (const HeldCodecs& row : heldCodecs)
        if (row.muxer == muxer.name)
            return std::find(row.codecs.begin(), row.codecs.end(), codec) != row.codecs.end();
    return avformat_query_codec(&muxer, codec, FF_COMPLIANCE_UNOFFICIAL) == 1;
}

// Where there are several for a codec, the one that keeps its profiles.
const AVCodec* encoderOf(AVCodecID codec) {
    constexpr struct {
        AVCodecID codec;
        const char* encoder;
    } preferred[] = {{AV_CODEC_ID_H264, "libx264"}, {AV_CODEC_ID_PRORES, "prores_ks"}};
    for (const auto& row : preferred)
        if (row.codec == codec)
            if (const AVCodec* encoder = avcodec_find_encoder_by_name(row.encoder))
                return encoder;
    return avcodec_find_encoder(codec);
}

// Frames that are not compressed go into containers that have a code for how they lie in memory.
bool holdsUncompressed(const AVOutputFormat& muxer, AVPixelFormat pixels) {
    constexpr AVPixelFormat inMov[] = {AV_PIX_FMT_UYVY422, AV_PIX_FMT_YUYV422, AV_PIX_FMT_RGB24,
                                       AV_PIX_FMT_ARGB};
    const std::string_view name = muxer.name;
    if (name == "mov")
        return std::find(std::begin(inMov), std::end(inMov), pixels) != std::end(inMov);
    return (name == "matroska" || name == "avi" || name == "nut") &&
           avcodec_pix_fmt_to_codec_tag(pixels) != 0;
}

// The source's own, or null with a reason in the note where there is one to tell.
const AVCodec* codecOfSource(const OutputFormat& format, const StreamInfo& source,
                             std::string& note) {
    const std::string_view name = format.muxer->name;
    const bool choosesByName = format.picture || name == "rawvideo" || name == "yuv4mpegpipe" ||
                               source.codec == AV_CODEC_ID_NONE;
    if (choosesByName)
        return nullptr;
    const char* codec = avcodec_get_name(source.codec);
    const AVCodec* encoder = encoderOf(source.codec);
    const bool held = holdsCodec(*format.muxer, source.codec) &&
                      (source.codec != AV_CODEC_ID_RAWVIDEO ||
                       holdsUncompressed(*format.muxer, source.pixelFormat));
    if (encoder && held)
        return encoder;
    note = encoder ? fmt::format("the format '{}' cannot hold {} as it is in the source", name,
                                 source.codec == AV_CODEC_ID_RAWVIDEO ? "the frames" : codec)
                   : fmt::format("there is no encoder for {}, which the source is in", codec);
    return nullptr;
}

} // namespace

OutputFormat chooseOutputFormat(const std::string& path, const std::string& format,
                                const std::string& codec, const StreamInfo& source) {
    OutputFormat result;
    result.muxer = findMuxer(path, format);
    const std::string_view name = result.muxer->name;
    result.picture = name == "image2" || name == "image2pipe";
    if (!codec.empty()) {
        result.codec = codecNamed(codec);
    } else if (const AVCodec* own = codecOfSource(result, source, result.note)) {
        result.codec = own;
        result.sourcesCodec = true;
    } else {
        result.codec = defaultCodec(*result.muxer, path);
        if (!result.note.empty())
            result.note += fmt::format("; {} is written", result.codec->name);
    }
    if (avformat_query_codec(result.muxer, result.codec->id, FF_COMPLIANCE_UNOFFICIAL) == 0)
        throw UsageError(fmt::format("the format '{}' cannot hold '{}': use another --codec, or "
                                     "another name such as out.mkv",
                                     name, result.codec->name));
    result.sequence = result.picture && isSequenceName(path);
    if (result.picture) // the sibling that leaves opening the file to us
        result.muxer = muxerNamed("image2pipe");
    if (result.muxer->flags & AVFMT_NOFILE)
        throw UsageError(fmt::format("the format '{}' does not make one file: use a name such as "
                                     "out.png, out.mov or out.mkv",
                                     name));
    if (result.sequence)
        result.picture = false;
    return result;
}

bool canHold(const OutputFormat& format, const AVCodecParameters& stream) {
    if (format.picture || format.sequence || stream.codec_id == AV_CODEC_ID_NONE)
        return false;
    if (stream.codec_type == AVMEDIA_TYPE_AUDIO)
        return holdsSound(format, stream.codec_id);
    if (stream.codec_type == AVMEDIA_TYPE_ATTACHMENT)
        return format.isNamed("matroska");
    return holdsCodec(*format.muxer, stream.codec_id);
}

bool takesSound(const OutputFormat& format) {
    return !format.picture && !format.sequence && format.muxer->audio_codec != AV_CODEC_ID_NONE;
}

bool holdsSound(const OutputFormat& format, AVCodecID codec) {
    return takesSound(format) && holdsCodec(*format.muxer, codec);
}

AVPixelFormat chooseFramePixels(const OutputFormat& format, AVPixelFormat source,
                                AVPixelFormat working) {
    const AVCodec& codec = *format.codec;
    if (codec.id == AV_CODEC_ID_WRAPPED_AVFRAME)
        return bestFormat(y4mFormats, source);
    if (codec.id == AV_CODEC_ID_RAWVIDEO && format.sourcesCodec)
        return source;
    return codec.pix_fmts ? bestFormat(codec.pix_fmts, source) : working;
}

#include "media/output_format.h"

#include "media/pixel_formats.h"
#include "tool_error.h"

#include <fmt/format.h>

#include <filesystem>
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

} // namespace

OutputFormat chooseOutputFormat(const std::string& path, const std::string& format,
                                const std::string& codec) {
    OutputFormat result;
    result.muxer = findMuxer(path, format);
    const std::string_view name = result.muxer->name;
    result.picture = name == "image2" || name == "image2pipe";
    result.codec = codec.empty() ? defaultCodec(*result.muxer, path) : codecNamed(codec);
    if (avformat_query_codec(result.muxer, result.codec->id, FF_COMPLIANCE_UNOFFICIAL) == 0)
        throw UsageError(fmt::format("the format '{}' cannot hold '{}': use another --codec, or "
                                     "another name such as out.mkv",
                                     name, result.codec->name));
    if (result.picture) // the sibling that leaves opening the file to us
        result.muxer = muxerNamed("image2pipe");
    if (result.muxer->flags & AVFMT_NOFILE)
        throw UsageError(fmt::format("the format '{}' does not make one file: use a name such as "
                                     "out.png, out.mov or out.mkv",
                                     name));
    return result;
}

AVPixelFormat chooseFramePixels(const AVCodec& codec, AVPixelFormat source, AVPixelFormat working) {
    if (codec.id == AV_CODEC_ID_WRAPPED_AVFRAME)
        return bestFormat(y4mFormats, source);
    return codec.pix_fmts ? bestFormat(codec.pix_fmts, source) : working;
}

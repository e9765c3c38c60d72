// The reader of media files, a library of its own: the first picture of any file that FFmpeg reads,
// as B, G, R, A, a byte each. Alpha is kept; a picture without is opaque.
#include "zrdraw/platform/media.h"
#include "zrdraw/types.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/imgutils.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

namespace {

template <auto freeFunction>
struct AvFree {
    template <class T>
    void operator()(T* object) const {
        freeFunction(&object);
    }
};

struct SwsFree {
    void operator()(SwsContext* context) const { sws_freeContext(context); }
};

using Input = std::unique_ptr<AVFormatContext, AvFree<avformat_close_input>>;
using Codec = std::unique_ptr<AVCodecContext, AvFree<avcodec_free_context>>;
using Frame = std::unique_ptr<AVFrame, AvFree<av_frame_free>>;
using Packet = std::unique_ptr<AVPacket, AvFree<av_packet_free>>;

constexpr int pixelBytes = 4;

Frame makeFrame() {
    Frame frame(av_frame_alloc());
    if (!frame)
        throw std::bad_alloc();
    return frame;
}

// What a handle stands for.
struct Clip {
    Frame picture = makeFrame();
    AVRational rate{25, 1};
};

Input openInput(const char* path) {
    AVDictionary* options = nullptr;
    av_dict_set(&options, "protocol_whitelist", "file,pipe", 0); // a playlist stays on this machine
    av_dict_set(&options, "pattern_type", "none", 0);            // a % in a name is a %
    AVFormatContext* input = nullptr;
    const int opened =
        avformat_open_input(&input, (std::string("file:") + path).c_str(), nullptr, &options);
    av_dict_free(&options);
    Input result(opened >= 0 ? input : nullptr);
    // Any text passes for "tty" media, a picture of a terminal, which nobody means.
    const bool isMedia = result && std::string_view(result->iformat->name) != "tty";
    return isMedia && avformat_find_stream_info(result.get(), nullptr) >= 0 ? std::move(result)
                                                                            : nullptr;
}

// What a decoder refuses, rather than hand out a picture with a damaged part. The strictest check
// finds pictures that are cut off, but makes other decoders refuse sound files for small oddities.
int errorChecks(AVCodecID codec) {
    const bool strictest = codec == AV_CODEC_ID_MJPEG || codec == AV_CODEC_ID_PNG;
    return AV_EF_CRCCHECK | AV_EF_BITSTREAM | AV_EF_BUFFER | (strictest ? AV_EF_EXPLODE : 0);
}

Codec openDecoder(const AVStream& stream) {
    const AVCodec* codec = avcodec_find_decoder(stream.codecpar->codec_id);
    Codec decoder(codec != nullptr ? avcodec_alloc_context3(codec) : nullptr);
    if (!decoder || avcodec_parameters_to_context(decoder.get(), stream.codecpar) < 0)
        return nullptr;
    decoder->thread_count = 1; // the first picture comes out at once
    decoder->err_recognition = errorChecks(stream.codecpar->codec_id);
    decoder->log_level_offset = AV_LOG_TRACE; // its messages are not for the terminal
    return avcodec_open2(decoder.get(), codec, nullptr) >= 0 ? std::move(decoder) : nullptr;
}

// A JPEG without its end, which the decoder would make up. Within a scan the bytes of the end
// marker cannot occur, so one behind the start of the last scan is the picture's own.
bool isCutJpeg(const AVFormatContext& input, const AVPacket& packet) {
    const std::string_view demuxer = input.iformat->name;
    const bool isPicture = demuxer == "image2" || demuxer.ends_with("_pipe");
    const AVCodecParameters& codec = *input.streams[packet.stream_index]->codecpar;
    if (!isPicture || codec.codec_id != AV_CODEC_ID_MJPEG)
        return false;
    const std::string_view bytes(reinterpret_cast<const char*>(packet.data),
                                 static_cast<std::size_t>(packet.size));
    const std::size_t scan = bytes.rfind("\xFF\xDA");
    return scan == bytes.npos || bytes.find("\xFF\xD9", scan) == bytes.npos;
}

// False when the file ends or fails before a picture is whole.
bool decodeFirst(AVFormatContext& input, AVCodecContext& decoder, int stream, AVFrame& picture) {
    const Packet packet(av_packet_alloc());
    if (!packet)
        return false;
    bool draining = false;
    for (;;) {
        const int received = avcodec_receive_frame(&decoder, &picture);
        if (received >= 0)
            return (picture.flags & AV_FRAME_FLAG_CORRUPT) == 0 && picture.decode_error_flags == 0;
        if (received != AVERROR(EAGAIN) || draining)
            return false;
        int read = 0;
        do {
            av_packet_unref(packet.get());
            read = av_read_frame(&input, packet.get());
        } while (read >= 0 && packet->stream_index != stream);
        draining = read < 0;
        if (draining)
            av_packet_unref(packet.get());
        else if (isCutJpeg(input, *packet))
            return false;
        if (avcodec_send_packet(&decoder, draining ? nullptr : packet.get()) < 0)
            return false;
    }
}

std::unique_ptr<Clip> openClip(const char* path) {
    const Input input = openInput(path);
    const int index =
        input ? av_find_best_stream(input.get(), AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0) : -1;
    if (index < 0)
        return nullptr;
    AVStream* stream = input->streams[index];
    const Codec decoder = openDecoder(*stream);
    auto clip = std::make_unique<Clip>();
    if (!decoder || !decodeFirst(*input, *decoder, index, *clip->picture))
        return nullptr;
    const AVRational rate = av_guess_frame_rate(input.get(), stream, nullptr);
    if (rate.num > 0 && rate.den > 0)
        clip->rate = rate;
    return clip;
}

// Large pictures are BT.709 where nobody says.
const int* coefficientsOf(const AVFrame& picture) {
    constexpr int highDefinition = 720;
    if (picture.colorspace != AVCOL_SPC_UNSPECIFIED && picture.colorspace != AVCOL_SPC_RGB)
        return sws_getCoefficients(picture.colorspace);
    return sws_getCoefficients(picture.height >= highDefinition ? SWS_CS_ITU709 : SWS_CS_ITU601);
}

// A format and its range. The scaler takes a format that implies full range under protest.
struct Samples {
    AVPixelFormat format;
    bool fullRange;
};

Samples samplesOf(const AVFrame& picture) {
    constexpr struct {
        AVPixelFormat fullRange, plain;
    } twins[] = {
        {AV_PIX_FMT_YUVJ420P, AV_PIX_FMT_YUV420P}, {AV_PIX_FMT_YUVJ422P, AV_PIX_FMT_YUV422P},
        {AV_PIX_FMT_YUVJ444P, AV_PIX_FMT_YUV444P}, {AV_PIX_FMT_YUVJ440P, AV_PIX_FMT_YUV440P},
        {AV_PIX_FMT_YUVJ411P, AV_PIX_FMT_YUV411P},
    };
    const auto format = static_cast<AVPixelFormat>(picture.format);
    for (const auto& twin : twins)
        if (format == twin.fullRange)
            return {twin.plain, true};
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    const bool grey = description != nullptr && description->nb_components <= 2;
    return {format, picture.color_range == AVCOL_RANGE_JPEG ||
                        (grey && picture.color_range == AVCOL_RANGE_UNSPECIFIED)};
}

// Into a buffer of its own first, because the scaler writes behind a line's end.
bool convert(const AVFrame& picture, std::uint8_t* pixels) {
    const Samples samples = samplesOf(picture);
    const std::unique_ptr<SwsContext, SwsFree> context(
        sws_getContext(picture.width, picture.height, samples.format, picture.width, picture.height,
                       AV_PIX_FMT_BGRA, SWS_BILINEAR | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT,
                       nullptr, nullptr, nullptr));
    if (!context)
        return false;
    const Frame converted = makeFrame();
    converted->format = AV_PIX_FMT_BGRA;
    converted->width = picture.width;
    converted->height = picture.height;
    if (av_frame_get_buffer(converted.get(), 0) < 0)
        return false;
    const int* coefficients = coefficientsOf(picture);
    sws_setColorspaceDetails(context.get(), coefficients, samples.fullRange ? 1 : 0, coefficients,
                             1, 0, 1 << 16, 1 << 16);
    if (sws_scale(context.get(), picture.data, picture.linesize, 0, picture.height, converted->data,
                  converted->linesize) != picture.height)
        return false;
    av_image_copy_plane(pixels, picture.width * pixelBytes, converted->data[0],
                        converted->linesize[0], picture.width * pixelBytes, picture.height);
    return true;
}

Clip* clipOf(void** handle) {
    return static_cast<Clip*>(*handle);
}

} // namespace

// Found by their names at run time, so that no header declares them.
extern "C" {

ZRDRAW_API void* cfOpen(const char* path, unsigned int, unsigned int, void*, unsigned int,
                        unsigned int, unsigned int) {
    try {
        return openClip(path).release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

ZRDRAW_API int cfGetFileInfo(void** handle, int, int, KPXVIDEO* record, void*, void*) {
    const Clip* clip = clipOf(handle);
    const AVFrame& picture = *clip->picture;
    tagBITMAPINFO header{};
    header.biSize = record->header.biSize;
    header.biWidth = picture.width;
    header.biHeight = picture.height;
    header.biPlanes = 1;
    header.biBitCount = 8 * pixelBytes;
    header.biSizeImage = static_cast<unsigned int>(picture.width * picture.height * pixelBytes);
    record->header = header;
    record->rate = static_cast<unsigned int>(clip->rate.num);
    record->scale = static_cast<unsigned int>(clip->rate.den);
    return 0;
}

ZRDRAW_API unsigned int cfReadFrameUnc(void** handle, unsigned int, int, int, int, DFRAME* frame,
                                       void*, void*) {
    const AVFrame& picture = *clipOf(handle)->picture;
    const auto bytes = static_cast<unsigned int>(picture.width * picture.height * pixelBytes);
    if (frame == nullptr)
        return bytes;
    try {
        return convert(picture, reinterpret_cast<std::uint8_t*>(frame->videoData)) ? bytes : 0;
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

ZRDRAW_API int cfClose(void** handle) {
    const std::unique_ptr<Clip> closed(clipOf(handle));
    *handle = nullptr;
    return 0;
}

} // extern "C"

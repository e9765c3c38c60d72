#include "media/encoder.h"

#include "common/near_names.h"
#include "common/tool_error.h"
#include "media/av_messages.h"
#include "media/light.h"
#include "picture/packing.h"
#include "picture/pixel_formats.h"

#include <fmt/format.h>

#include <algorithm>
#include <new>
#include <string_view>

extern "C" {
#include <libavutil/imgutils.h>
#include <libavutil/opt.h>
}

namespace {

constexpr int frameAlignment = 64;

struct EncoderSetting {
    std::string_view encoder;
    const char* key;
    const char* value;
};

// Left alone, these encoders aim at a low bit rate that would blur thin lines.
// clang-format off
constexpr EncoderSetting qualitySettings[] = {
    {"libx264", "crf", "16"}, {"libx264", "preset", "veryfast"},
    {"libx265", "crf", "18"}, {"libx265", "preset", "veryfast"},
    {"libvpx", "crf", "10"}, {"libvpx", "b", "20M"},
    {"libvpx-vp9", "crf", "20"}, {"libvpx-vp9", "b", "0"}, {"libvpx-vp9", "cpu-used", "4"},
    {"mpeg4", "flags", "+qscale"}, {"mpeg4", "global_quality", "236"},
    {"mjpeg", "flags", "+qscale"}, {"mjpeg", "global_quality", "236"},
    {"mpeg1video", "flags", "+qscale"}, {"mpeg1video", "global_quality", "236"},
    {"mpeg2video", "flags", "+qscale"}, {"mpeg2video", "global_quality", "236"},
};

// Chosen for being the source's, these aim at its rate in the place of a quality.
constexpr EncoderSetting rateSettings[] = {
    {"libx264", "preset", "veryfast"}, {"libx265", "preset", "veryfast"},
    {"libvpx-vp9", "cpu-used", "4"},
};

// The rates that there are, in megabits a second, for whole pictures of any kind.
constexpr int dnxhdRates[] = {36,  42,  45,  60,  63,  75,  80,  84,  85,  90,  100, 110, 115,
                              120, 145, 146, 175, 180, 185, 190, 220, 240, 260, 290, 295, 300,
                              350, 365, 390, 440, 730, 880};
// clang-format on

bool isOneOf(AVCodecID codec, std::initializer_list<AVCodecID> codecs) {
    return std::find(codecs.begin(), codecs.end(), codec) != codecs.end();
}

// YUY2 with the chroma's highest bit the other way round, as one kind of QuickTime file has it.
constexpr unsigned signedChroma = MKTAG('y', 'u', 'v', '2');

// The source's own code for its kind of frames, where the format knows it too: some players take
// one of a codec's only, as hvc1.
unsigned tagOf(const OutputFormat& format, unsigned tag) {
    const AVCodecTag* const* known = format.muxer->codec_tag;
    const bool kept =
        format.sourcesCodec && known && tag != 0 && av_codec_get_id(known, tag) == format.codec->id;
    return kept ? tag : 0;
}

// "needs an even width" and the like, for the sizes that chroma samples shared by pixels rule out.
std::string sizeRemark(AVPixelFormat format, int width, int height) {
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    const int across = 1 << description->log2_chroma_w;
    const int down = 1 << description->log2_chroma_h;
    if (width % across == 0 && height % down == 0)
        return "";
    return fmt::format(" (it needs a width that {} divides and a height that {} divides)", across,
                       down);
}

// The source's profile as the encoder calls it; empty where its kind of frame alone decides.
std::string profileOf(const AVCodec& codec, int profile) {
    if (isOneOf(codec.id, {AV_CODEC_ID_PRORES, AV_CODEC_ID_DNXHD}) && profile >= 0)
        return std::to_string(profile);
    if (codec.id == AV_CODEC_ID_H264 && profile == FF_PROFILE_H264_MAIN)
        return "main";
    const bool baseline =
        profile == FF_PROFILE_H264_BASELINE || profile == FF_PROFILE_H264_CONSTRAINED_BASELINE;
    return codec.id == AV_CODEC_ID_H264 && baseline ? "baseline" : "";
}

// Whether an encoder that was chosen for being the source's aims at its rate.
bool keepsRate(const OutputFormat& format, const StreamInfo& source) {
    return format.sourcesCodec && source.bitRate > 0 &&
           isOneOf(format.codec->id,
                   {AV_CODEC_ID_H264, AV_CODEC_ID_HEVC, AV_CODEC_ID_VP9, AV_CODEC_ID_MPEG2VIDEO,
                    AV_CODEC_ID_MPEG1VIDEO, AV_CODEC_ID_MPEG4});
}

// Of one codec only some rates exist for each kind of picture: the nearest one that opens is taken,
// where none was wished for. 0 is the encoder's own.
std::vector<std::int64_t> ratesToTry(const OutputFormat& format, const EncoderOptions& options,
                                     const StreamInfo& source) {
    constexpr std::int64_t mega = 1'000'000;
    if (format.codec->id != AV_CODEC_ID_DNXHD || !options.bitRate.empty())
        return {keepsRate(format, source) ? source.bitRate : 0};
    std::vector<std::int64_t> rates;
    for (const int rate : dnxhdRates)
        rates.push_back(rate * mega);
    std::stable_sort(rates.begin(), rates.end(), [&](std::int64_t a, std::int64_t b) {
        return std::abs(a - source.bitRate) < std::abs(b - source.bitRate);
    });
    return rates;
}

std::vector<std::string> optionsOf(const AVCodecContext& context) {
    std::vector<std::string> names;
    const void* const objects[] = {&context, context.priv_data};
    for (const void* object : objects)
        for (const AVOption* option = nullptr; object &&
                                               *static_cast<const AVClass* const*>(object) &&
                                               (option = av_opt_next(object, option));)
            if (option->type != AV_OPT_TYPE_CONST && (option->flags & AV_OPT_FLAG_ENCODING_PARAM))
                names.emplace_back(option->name);
    return names;
}

} // namespace

Encoder::Encoder(const OutputFormat& format, const EncoderOptions& options,
                 const StreamInfo& source, const AVFrame& first, const CanvasShape& shape,
                 AVRational timeBase)
    : m_codec(*format.codec), m_packet(newPacket()) {
    int opened = -1;
    AvMessages messages;
    for (const std::int64_t rate : ratesToTry(format, options, source)) {
        m_context.reset(avcodec_alloc_context3(format.codec));
        if (!m_context)
            throw std::bad_alloc();
        m_context->time_base = timeBase;
        m_context->bit_rate = rate;
        m_context->thread_count = options.threads; // 0: as many as there are processors
        describeFrames(format, source, pixelFormatOf(*shape.layout));
        AvOptions settings;
        setQuality(settings, format, source);
        setOptions(settings, options);
        addLight(settings, m_codec, first);
        messages = {};
        const SilentStderr silence;
        opened = avcodec_open2(m_context.get(), &m_codec, settings.get());
        if (opened >= 0)
            break;
    }
    if (opened < 0)
        refuse(messages.cause(opened));
    const bool bareFile = format.isNamed("rawvideo") && m_codec.id == AV_CODEC_ID_RAWVIDEO;
    if (bareFile || holdsBytesOf(*shape.layout))
        m_bareLine = shape.lineBytes;
}

// Such streams are written without the encoder. Where the layout has alpha and the source may have
// none, frames are not what is stored.
bool Encoder::holdsBytesOf(const zrLayout& layout) const {
    if (m_codec.id == AV_CODEC_ID_V210)
        return layout.code == ptV210;
    return m_codec.id == AV_CODEC_ID_RAWVIDEO && m_context->codec_tag != signedChroma &&
           isMemoryOf(layout, m_context->pix_fmt) &&
           !hasFlag(m_context->pix_fmt, AV_PIX_FMT_FLAG_ALPHA);
}

void Encoder::refuse(const std::string& cause) const {
    const AVCodecContext& context = *m_context;
    throw Failure(fmt::format(
        "the encoder '{}' refuses {}x{} {} at {}/{} frames a second{}: {}; use another --codec",
        m_codec.name, context.width, context.height, av_get_pix_fmt_name(context.pix_fmt),
        context.framerate.num, context.framerate.den,
        sizeRemark(context.pix_fmt, context.width, context.height), cause));
}

void Encoder::describeFrames(const OutputFormat& format, const StreamInfo& source,
                             AVPixelFormat working) {
    AVCodecContext& context = *m_context;
    context.width = source.width;
    context.height = source.height;
    context.framerate = source.frameRate;
    context.sample_aspect_ratio = source.sampleAspect;
    context.field_order = source.fieldOrder;
    context.codec_tag = tagOf(format, source.codecTag);
    context.color_primaries = source.colorPrimaries;
    context.color_trc = source.colorTransfer;
    context.chroma_sample_location = source.chromaLocation;
    context.pix_fmt = chooseFramePixels(format, source.pixelFormat, working);
    if (context.pix_fmt == AV_PIX_FMT_NONE)
        throw Failure(fmt::format("the encoder '{}' takes no kind of frame that can be made here; "
                                  "use another --codec",
                                  m_codec.name));
    describeColors(source);
    if (format.muxer->flags & AVFMT_GLOBALHEADER)
        context.flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    if (isInterlaced(context.field_order))
        context.flags |= AV_CODEC_FLAG_INTERLACED_DCT | AV_CODEC_FLAG_INTERLACED_ME;
}

void Encoder::describeColors(const StreamInfo& source) {
    AVCodecContext& context = *m_context;
    if (countsAsRgb(context.pix_fmt)) {
        context.colorspace = AVCOL_SPC_RGB;
        context.color_range = AVCOL_RANGE_JPEG;
        return;
    }
    context.colorspace = source.colorSpace;
    context.color_range = source.colorRange;
    if (countsAsRgb(source.pixelFormat)) {
        context.colorspace = usualSpace(source.height);
        context.color_range = AVCOL_RANGE_MPEG;
    }
    // JPEG files cannot say how their numbers stand for colours: every reader takes them like this.
    if (m_codec.id == AV_CODEC_ID_MJPEG) {
        context.colorspace = AVCOL_SPC_BT470BG;
        context.color_range = AVCOL_RANGE_JPEG;
    }
}

void Encoder::setQuality(AvOptions& settings, const OutputFormat& format,
                         const StreamInfo& source) {
    const bool aimsAtRate = keepsRate(format, source);
    if (aimsAtRate) {
        for (const EncoderSetting& row : rateSettings)
            if (row.encoder == m_codec.name)
                settings.set(row.key, row.value);
    } else {
        for (const EncoderSetting& row : qualitySettings)
            if (row.encoder == m_codec.name)
                settings.set(row.key, row.value);
    }
    if (format.sourcesCodec)
        if (const std::string profile = profileOf(m_codec, source.codecProfile); !profile.empty())
            settings.set("profile", profile);
}

void Encoder::setOptions(AvOptions& settings, const EncoderOptions& options) const {
    set(settings, "--crf", "crf", options.crf);
    set(settings, "--bitrate", "b", options.bitRate);
    set(settings, "--preset", "preset", options.preset);
    set(settings, "--profile", "profile", options.profile);
    for (const auto& [key, value] : options.others)
        set(settings, "--encoder-option", key, value);
    // A rate and a quality exclude each other.
    if (!options.bitRate.empty() && options.crf.empty())
        settings.remove("crf");
    if (!options.crf.empty())
        m_context->bit_rate = 0;
}

void Encoder::set(AvOptions& settings, const char* option, const std::string& key,
                  const std::string& value) const {
    if (value.empty())
        return;
    if (!av_opt_find(m_context.get(), key.c_str(), nullptr, 0, AV_OPT_SEARCH_CHILDREN))
        throw UsageError(fmt::format("{}: the encoder '{}' has no option '{}'{}", option,
                                     m_codec.name, key, nearNames(key, optionsOf(*m_context))));
    settings.set(key.c_str(), value);
}

bool Encoder::keepsCaptions() const {
    return av_opt_find(m_context.get(), "a53cc", nullptr, 0, AV_OPT_SEARCH_CHILDREN) != nullptr;
}

FramePtr Encoder::makeFrame(const Canvas& canvas) {
    FramePtr frame = newFrame();
    frame->width = m_context->width;
    frame->height = m_context->height;
    frame->format = isBare() ? barePixels : m_context->pix_fmt;
    frame->colorspace = m_context->colorspace;
    frame->color_range = m_context->color_range;
    frame->color_primaries = m_context->color_primaries;
    frame->color_trc = m_context->color_trc;
    frame->chroma_location = m_context->chroma_sample_location;
    const int bytes = isBare() ? m_bareLine * frame->height
                               : av_image_get_buffer_size(m_context->pix_fmt, frame->width,
                                                          frame->height, frameAlignment);
    if (bytes < 0)
        throw std::bad_alloc();
    if (isBare() && m_bareLine == canvas.pitch()) {
        frame->buf[0] = av_buffer_ref(&canvas.memory());
    } else {
        // Encoders and scalers read and write behind the last pixel, up to a vector or two.
        if (!m_pool)
            m_pool.reset(av_buffer_pool_init(static_cast<std::size_t>(bytes) + 1024, nullptr));
        frame->buf[0] = m_pool ? av_buffer_pool_get(m_pool.get()) : nullptr;
    }
    if (!frame->buf[0])
        throw std::bad_alloc();
    if (isBare()) {
        frame->data[0] = frame->buf[0]->data;
        frame->linesize[0] = m_bareLine;
    } else if (av_image_fill_arrays(frame->data, frame->linesize, frame->buf[0]->data,
                                    m_context->pix_fmt, frame->width, frame->height,
                                    frameAlignment) < 0) {
        throw std::bad_alloc();
    }
    return frame;
}

void Encoder::send(const AVFrame* frame) {
    if (frame) {
        m_lengths[frame->pts] = frame->pkt_duration;
        ++m_frames;
    }
    if (isBare()) {
        if (!frame)
            return;
        m_bare = newPacket();
        m_bare->buf = av_buffer_ref(frame->buf[0]);
        if (!m_bare->buf)
            throw std::bad_alloc();
        m_bare->data = frame->data[0];
        m_bare->size = frame->linesize[0] * frame->height;
        m_bare->pts = m_bare->dts = frame->pts;
        m_bare->flags |= AV_PKT_FLAG_KEY;
        return;
    }
    const int sent = avcodec_send_frame(m_context.get(), frame);
    if (sent < 0)
        throw Failure(fmt::format("the encoder '{}' refuses frame {}: {}", m_codec.name,
                                  m_frames - 1, avErrorText(sent)));
}

bool Encoder::receive() {
    if (isBare()) {
        if (!m_bare)
            return false;
        m_packet = std::move(m_bare);
    } else {
        const int received = avcodec_receive_packet(m_context.get(), m_packet.get());
        if (received == AVERROR(EAGAIN) || received == AVERROR_EOF)
            return false;
        if (received < 0)
            throw Failure(fmt::format("the encoder '{}' fails near frame {}: {}", m_codec.name,
                                      m_frames - 1, avErrorText(received)));
    }
    if (const auto length = m_lengths.find(m_packet->pts); length != m_lengths.end()) {
        m_packet->duration = length->second;
        m_lengths.erase(length);
    }
    return true;
}

#include "sound/sound_codec.h"

#include "common/near_names.h"
#include "common/tool_error.h"

#include <fmt/format.h>

#include <string_view>
#include <vector>

namespace {

const AVCodec* maturedEncoder(AVCodecID codec) {
    const AVCodec* encoder = avcodec_find_encoder(codec);
    return encoder && !(encoder->capabilities & AV_CODEC_CAP_EXPERIMENTAL) ? encoder : nullptr;
}

// Samples that are not compressed, with their bytes in the other order.
AVCodecID swapped(AVCodecID codec) {
    std::string name = avcodec_get_name(codec);
    if (!name.starts_with("pcm_") || name.size() < 2)
        return AV_CODEC_ID_NONE;
    char& order = name[name.size() - 2];
    order = order == 'l' ? 'b' : 'l';
    const AVCodecDescriptor* other = avcodec_descriptor_get_by_name(name.c_str());
    return other ? other->id : AV_CODEC_ID_NONE;
}

std::vector<std::string> soundEncoders() {
    std::vector<std::string> names;
    void* state = nullptr;
    while (const AVCodec* codec = av_codec_iterate(&state))
        if (av_codec_is_encoder(codec) && codec->type == AVMEDIA_TYPE_AUDIO)
            names.emplace_back(codec->name);
    return names;
}

} // namespace

const AVCodec& soundEncoderNamed(const std::string& name) {
    const AVCodec* codec = avcodec_find_encoder_by_name(name.c_str());
    const AVCodecDescriptor* family = avcodec_descriptor_get_by_name(name.c_str());
    if (!codec && family)
        codec = avcodec_find_encoder(family->id);
    if (codec && codec->type == AVMEDIA_TYPE_AUDIO)
        return *codec;
    const std::string near = nearNames(name, soundEncoders());
    throw UsageError(fmt::format("--audio-codec: unknown sound encoder '{}'{}", name,
                                 near.empty() ? ": use one such as aac, flac or pcm_s16le" : near));
}

const AVCodec* soundEncoderFor(const OutputFormat& format, const std::string& name,
                               const AVCodecParameters& stream) {
    if (!takesSound(format))
        return nullptr;
    if (name.empty()) {
        for (const AVCodecID codec : {stream.codec_id, swapped(stream.codec_id)})
            if (const AVCodec* encoder = maturedEncoder(codec);
                encoder && holdsSound(format, codec))
                return encoder;
        if (const AVCodec* encoder = maturedEncoder(format.muxer->audio_codec))
            return encoder;
    }
    const AVCodec& codec = soundEncoderNamed(name.empty() ? "aac" : name);
    if (!holdsSound(format, codec.id))
        throw UsageError(fmt::format("the format '{}' cannot hold the sound codec '{}': use "
                                     "another --audio-codec, or another name such as out.mkv",
                                     format.muxer->name, codec.name));
    return &codec;
}

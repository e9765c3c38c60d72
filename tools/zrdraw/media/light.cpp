#include "media/light.h"

#include <fmt/format.h>

#include <cmath>
#include <cstring>
#include <string_view>

extern "C" {
#include <libavutil/mastering_display_metadata.h>
}

namespace {

// In the steps of SEI messages: of 1/50000 for chromaticity, of 1/10000 cd for light.
long steps(AVRational value, double perUnit) {
    return std::lround(av_q2d(value) * perUnit);
}

std::string masteringText(const AVMasteringDisplayMetadata& display) {
    constexpr double chromaticity = 50000.0, candela = 10000.0;
    const auto point = [&](const AVRational(&xy)[2]) {
        return fmt::format("({},{})", steps(xy[0], chromaticity), steps(xy[1], chromaticity));
    };
    return fmt::format("G{}B{}R{}WP{}L({},{})", point(display.display_primaries[1]),
                       point(display.display_primaries[2]), point(display.display_primaries[0]),
                       point(display.white_point), steps(display.max_luminance, candela),
                       steps(display.min_luminance, candela));
}

template <class Data>
const Data* dataOf(const AVFrame& frame, AVFrameSideDataType type) {
    const AVFrameSideData* side = av_frame_get_side_data(&frame, type);
    return side ? reinterpret_cast<const Data*>(side->data) : nullptr;
}

} // namespace

void addLight(AvOptions& settings, const AVCodec& codec, const AVFrame& first) {
    if (std::string_view(codec.name) != "libx265")
        return;
    std::string parameters = "log-level=none";
    const auto* display =
        dataOf<AVMasteringDisplayMetadata>(first, AV_FRAME_DATA_MASTERING_DISPLAY_METADATA);
    if (display && display->has_primaries && display->has_luminance)
        parameters += ":hdr10=1:master-display=" + masteringText(*display);
    if (const auto* level =
            dataOf<AVContentLightMetadata>(first, AV_FRAME_DATA_CONTENT_LIGHT_LEVEL))
        parameters += fmt::format(":max-cll={},{}", level->MaxCLL, level->MaxFALL);
    const AVDictionaryEntry* given = av_dict_get(*settings.get(), "x265-params", nullptr, 0);
    if (given)
        parameters += std::string(":") + given->value;
    settings.set("x265-params", parameters);
}

void copyLight(const AVFrame& first, AVStream& to) {
    constexpr struct {
        AVFrameSideDataType from;
        AVPacketSideDataType to;
    } rows[] = {{AV_FRAME_DATA_MASTERING_DISPLAY_METADATA, AV_PKT_DATA_MASTERING_DISPLAY_METADATA},
                {AV_FRAME_DATA_CONTENT_LIGHT_LEVEL, AV_PKT_DATA_CONTENT_LIGHT_LEVEL}};
    for (const auto& row : rows) {
        const AVFrameSideData* side = av_frame_get_side_data(&first, row.from);
        if (!side || av_stream_get_side_data(&to, row.to, nullptr))
            continue;
        std::uint8_t* copy = av_stream_new_side_data(&to, row.to, side->size);
        if (!copy)
            throw std::bad_alloc();
        std::memcpy(copy, side->data, side->size);
    }
}

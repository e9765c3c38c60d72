#include "formats.h"

namespace {

struct Row {
    GstVideoFormat format;
    unsigned layout;
};

constexpr Row rows[] = {
    {GST_VIDEO_FORMAT_BGRA, ptBGRA32},   {GST_VIDEO_FORMAT_BGRx, ptBGRA32},
    {GST_VIDEO_FORMAT_RGBA, ptRGBA32},   {GST_VIDEO_FORMAT_RGBx, ptRGBA32},
    {GST_VIDEO_FORMAT_ARGB, ptARGB32},   {GST_VIDEO_FORMAT_xRGB, ptARGB32},
    {GST_VIDEO_FORMAT_ABGR, ptABGR32},   {GST_VIDEO_FORMAT_xBGR, ptABGR32},
    {GST_VIDEO_FORMAT_UYVY, ptUYVY},     {GST_VIDEO_FORMAT_YUY2, ptYUYV},
    {GST_VIDEO_FORMAT_YVYU, ptYVYU},     {GST_VIDEO_FORMAT_VYUY, ptVYUY},
    {GST_VIDEO_FORMAT_v210, ptV210},     {GST_VIDEO_FORMAT_RGB, ptRGB24},
    {GST_VIDEO_FORMAT_BGR, ptBGR24},     {GST_VIDEO_FORMAT_ARGB64_LE, ptARGB64},
    {GST_VIDEO_FORMAT_ARGB64, ptARGB64}, // the same on this processor
};
static_assert(G_BYTE_ORDER == G_LITTLE_ENDIAN);

} // namespace

const zrLayout* layoutOf(GstVideoFormat format) {
    for (const Row& row : rows)
        if (row.format == format)
            return zrFindLayout(row.layout);
    return nullptr;
}

std::string formatList(bool (*isWanted)(const zrLayout& layout)) {
    std::string list;
    for (const Row& row : rows)
        if (isWanted(*zrFindLayout(row.layout)))
            list +=
                (list.empty() ? "{ " : ", ") + std::string(gst_video_format_to_string(row.format));
    return list + " }";
}

GstCaps* videoCaps(const std::string& formats) {
    const std::string sizeAndRate = "format = (string) " + formats +
                                    ", width = " GST_VIDEO_SIZE_RANGE
                                    ", height = " GST_VIDEO_SIZE_RANGE
                                    ", framerate = " GST_VIDEO_FPS_RANGE;
    return gst_caps_from_string(("video/x-raw, " + sizeAndRate +
                                 "; video/x-raw(" GST_CAPS_FEATURE_FORMAT_INTERLACED "), " +
                                 sizeAndRate + ", interlace-mode = (string) alternate")
                                    .c_str());
}

std::optional<cmYCbCr> matrixModeOf(const GstVideoInfo& info) {
    if (!GST_VIDEO_INFO_IS_YUV(&info))
        return std::nullopt;
    const bool full = info.colorimetry.range == GST_VIDEO_COLOR_RANGE_0_255;
    switch (info.colorimetry.matrix) {
    case GST_VIDEO_COLOR_MATRIX_BT601:
        return full ? cmRec601Full : cmRec601;
    case GST_VIDEO_COLOR_MATRIX_BT709:
        return full ? cmRec709Full : cmRec709;
    case GST_VIDEO_COLOR_MATRIX_BT2020:
        return full ? cmRec2020Full : cmRec2020;
    default:
        return std::nullopt;
    }
}

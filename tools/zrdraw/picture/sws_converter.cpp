#include "picture/sws_converter.h"

#include "common/tool_error.h"
#include "picture/pixel_formats.h"

#include <fmt/format.h>

namespace {

SwsPtr makeScaler(const PictureKind& from, const PictureKind& to, int width, int height) {
    // Between formats in Y, Cb and Cr chroma is repeated and picked, not filtered.
    const bool kept = !countsAsRgb(from.format) && !countsAsRgb(to.format);
    // The scaler halves RGB by whole pairs, and would read one behind an odd line.
    const int pairs = width % 2 == 0 ? 0 : SWS_FULL_CHR_H_INP;
    const int flags =
        (kept ? SWS_POINT : SWS_BILINEAR) | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | pairs;
    SwsPtr scaler(sws_getContext(width, height, from.format, width, height, to.format, flags,
                                 nullptr, nullptr, nullptr));
    if (!scaler)
        throw Failure(fmt::format("pictures in {} cannot be converted to {}",
                                  av_get_pix_fmt_name(from.format),
                                  av_get_pix_fmt_name(to.format)));
    sws_setColorspaceDetails(scaler.get(), sws_getCoefficients(from.colors.space),
                             from.colors.range == AVCOL_RANGE_JPEG,
                             sws_getCoefficients(to.colors.space),
                             to.colors.range == AVCOL_RANGE_JPEG, 0, 1 << 16, 1 << 16);
    return scaler;
}

} // namespace

SwsConverter::SwsConverter(const PictureKind& from, const PictureKind& to, int width, int height)
    : m_fields(from.fields || to.fields) {
    m_scalers[0] = makeScaler(from, to, width, m_fields ? (height + 1) / 2 : height);
    if (m_fields)
        m_scalers[1] = makeScaler(from, to, width, height / 2);
}

void SwsConverter::convert(const AVFrame& from, AVFrame& to) {
    byFields(
        m_fields, from, to,
        [&](const Planes& in, const Planes& out, int field) {
            sws_scale(m_scalers[field].get(), in.data, in.pitch, 0, in.height, out.data, out.pitch);
        });
}

#include "common/watermark_picture.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t pairBytes = 5; // Y, Cb, Y, Cr and alpha

} // namespace

WatermarkPicture::WatermarkPicture(const CZrOverlay& reader)
    : m_width(reader.wmWidth), m_height(reader.wmHeight), m_layout(reader.wmLayout),
      m_v210(reader.wmV210), m_pairs(reader.wmYuv2), m_bgra(reader.wmBgra) {
    if (m_pairs)
        m_whole.assign(m_pairs.get(), m_pairs.get() + pairBytes * (m_width / 2) * m_height);
}

void WatermarkPicture::lend(CZrOverlay& overlay) {
    overlay.wmWidth = m_width;
    overlay.wmHeight = m_height;
    overlay.wmLayout = m_layout;
    overlay.wmV210 = m_v210.get();
    overlay.wmYuv2 = m_pairs.get();
    overlay.wmBgra = m_bgra.get();
    std::copy(m_whole.begin(), m_whole.end(), overlay.wmYuv2);
    m_fittedX.reset();
}

void WatermarkPicture::takeBack(CZrOverlay& overlay) {
    overlay.wmV210 = nullptr;
    overlay.wmYuv2 = nullptr;
    overlay.wmBgra = nullptr;
}

void WatermarkPicture::fit(CZrOverlay& overlay) {
    if (!m_pairs && !m_v210)
        return;
    overlay.WatermarkX &= ~1U;
    if (!m_pairs || overlay.WatermarkX == m_fittedX)
        return;
    lend(overlay);
    m_fittedX = overlay.WatermarkX;
    cutWatermark(overlay);
}

void cutWatermark(CZrOverlay& overlay) {
    const auto width = static_cast<unsigned>(overlay.video.header.biWidth);
    const std::size_t pairs = overlay.wmWidth / 2, fit = (width - overlay.WatermarkX) / 2;
    if (!overlay.wmYuv2 || overlay.WatermarkX >= width || fit >= pairs)
        return;
    for (std::size_t row = 0; row < overlay.wmHeight; ++row)
        std::memmove(overlay.wmYuv2 + row * fit * pairBytes,
                     overlay.wmYuv2 + row * pairs * pairBytes, fit * pairBytes);
    overlay.wmWidth = static_cast<unsigned>(2 * fit);
}

#include "drawn_alpha.h"

namespace {

// Drawing makes 0, or more than this.
constexpr unsigned untouched = 1;

template <class Pixel, class Alpha>
void markLine(Pixel* pixels, Alpha* alphas, int width, unsigned shift) {
    constexpr Pixel full = static_cast<Alpha>(-1);
    for (int x = 0; x < width; ++x) {
        alphas[x] = static_cast<Alpha>(pixels[x] >> shift);
        pixels[x] = (pixels[x] & ~(full << shift)) | Pixel{untouched} << shift;
    }
}

template <class Pixel, class Alpha>
void settleLine(Pixel* pixels, const Alpha* alphas, int width, unsigned shift) {
    constexpr Pixel full = static_cast<Alpha>(-1);
    for (int x = 0; x < width; ++x) {
        const bool drawn = static_cast<Alpha>(pixels[x] >> shift) != untouched;
        const Pixel alpha = drawn ? full : Pixel{alphas[x]};
        pixels[x] = (pixels[x] & ~(full << shift)) | alpha << shift;
    }
}

// Calls with each line, the pixels' alphas of it, and where alpha stands in a pixel.
template <class Pixel, class Alpha, class Work>
void forLines(const PictureView& picture, std::vector<Alpha>& alphas, unsigned shift, Work work) {
    const auto width = static_cast<std::size_t>(picture.width);
    alphas.resize(width * static_cast<std::size_t>(picture.height));
    for (int y = 0; y < picture.height; ++y)
        work(reinterpret_cast<Pixel*>(picture.line(y)),
             alphas.data() + static_cast<std::size_t>(y) * width, picture.width, shift);
}

unsigned shiftOf(const zrLayout& layout) {
    return layout.code == ptARGB64 ? 0 : static_cast<unsigned>(layout.bytes.a) * 8;
}

} // namespace

void DrawnAlpha::mark(const PictureView& picture, GstVideoFormat format) {
    m_active = GST_VIDEO_FORMAT_INFO_HAS_ALPHA(gst_video_format_get_info(format));
    if (!m_active)
        return;
    const unsigned shift = shiftOf(*picture.layout);
    if (picture.layout->code == ptARGB64)
        forLines<std::uint64_t>(picture, m_words, shift, markLine<std::uint64_t, std::uint16_t>);
    else
        forLines<std::uint32_t>(picture, m_bytes, shift, markLine<std::uint32_t, std::uint8_t>);
}

void DrawnAlpha::settle(const PictureView& picture) {
    if (!m_active)
        return;
    const unsigned shift = shiftOf(*picture.layout);
    if (picture.layout->code == ptARGB64)
        forLines<std::uint64_t>(picture, m_words, shift, settleLine<std::uint64_t, std::uint16_t>);
    else
        forLines<std::uint32_t>(picture, m_bytes, shift, settleLine<std::uint32_t, std::uint8_t>);
}

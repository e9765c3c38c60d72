#include "picture/bayer_packer.h"

#include <cstring>
#include <new>
#include <string_view>

namespace {

constexpr unsigned full16 = 65535;
constexpr unsigned full12 = 4095;

AVPixelFormat samplesFormat(std::string_view mosaic) {
    return mosaic == "BGGR"   ? AV_PIX_FMT_BAYER_BGGR16LE
           : mosaic == "RGGB" ? AV_PIX_FMT_BAYER_RGGB16LE
           : mosaic == "GBRG" ? AV_PIX_FMT_BAYER_GBRG16LE
                              : AV_PIX_FMT_BAYER_GRBG16LE;
}

int channelOf(char letter) {
    return letter == 'R' ? 0 : letter == 'G' ? 1 : 2;
}

// The sample of an RGB pixel in 16-bit words that a mosaic keeps, in 12 bits.
unsigned keptSample(const std::uint8_t* line, int x, char letter) {
    std::uint16_t word;
    std::memcpy(&word, line + 2 * (3 * x + channelOf(letter)), sizeof word);
    return (word * full12 + full16 / 2) / full16;
}

void putSample(std::uint8_t* line, int x, unsigned sample) {
    const auto word = static_cast<std::uint16_t>(sample << 4 | sample >> 8);
    std::memcpy(line + 2 * x, &word, sizeof word);
}

} // namespace

BayerPacker::BayerPacker(const zrLayout& layout, int width, int height)
    : m_mosaic(layout.mosaic), m_width(width), m_height(height),
      m_samples(newFrame(samplesFormat(m_mosaic), width, height)) {
    m_demosaic.reset(sws_getContext(width, height, samplesFormat(m_mosaic), width, height,
                                    AV_PIX_FMT_RGB48LE, SWS_BILINEAR | SWS_ACCURATE_RND, nullptr,
                                    nullptr, nullptr));
    if (!m_demosaic)
        throw std::bad_alloc();
}

void BayerPacker::pack(const AVFrame& picture, CanvasLines canvas) {
    for (int y = 0; y < m_height; ++y) {
        const std::uint8_t* from = picture.data[0] + std::ptrdiff_t{picture.linesize[0]} * y;
        const char* letters = m_mosaic + 2 * (y % 2);
        std::uint8_t* to = canvas.line(y);
        for (int x = 0; x < m_width; x += 2, to += 3) {
            const unsigned even = keptSample(from, x, letters[0]);
            const unsigned odd = keptSample(from, x + 1, letters[1]);
            to[0] = static_cast<std::uint8_t>(even >> 4);
            to[1] = static_cast<std::uint8_t>(even << 4 | odd >> 8);
            to[2] = static_cast<std::uint8_t>(odd);
        }
    }
}

void BayerPacker::unpack(CanvasLines canvas, AVFrame& picture) {
    for (int y = 0; y < m_height; ++y) {
        const std::uint8_t* from = canvas.line(y);
        std::uint8_t* to = m_samples->data[0] + std::ptrdiff_t{m_samples->linesize[0]} * y;
        for (int x = 0; x < m_width; x += 2, from += 3) {
            putSample(to, x, static_cast<unsigned>(from[0]) << 4 | from[1] >> 4);
            putSample(to, x + 1, (from[1] & 0xFU) << 8 | from[2]);
        }
    }
    sws_scale(m_demosaic.get(), m_samples->data, m_samples->linesize, 0, m_height, picture.data,
              picture.linesize);
}

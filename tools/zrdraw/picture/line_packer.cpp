#include "picture/line_packer.h"

#include "zrdraw/half_float.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr unsigned full16 = 65535;
constexpr unsigned full10 = 1023;

// The words of a line, which may stand at any address.
template <typename Word>
Word wordAt(const std::uint8_t* bytes, int index) {
    Word word;
    std::memcpy(&word, bytes + static_cast<std::ptrdiff_t>(sizeof word) * index, sizeof word);
    return word;
}

template <typename Word>
void putWord(std::uint8_t* bytes, int index, Word word) {
    std::memcpy(bytes + static_cast<std::ptrdiff_t>(sizeof word) * index, &word, sizeof word);
}

void exchangeChroma(const std::uint8_t* from, std::uint8_t* to, int width) {
    for (int i = 0; i < (width + 1) / 2; ++i) {
        const auto pair = wordAt<std::uint32_t>(from, i);
        constexpr std::uint32_t luma = 0xFF00FF00;
        putWord(to, i, (pair & luma) | (pair & ~luma) << 16 | (pair & ~luma) >> 16);
    }
}

void packExchanged(const std::uint8_t* const planes[], std::uint8_t* line, int width) {
    exchangeChroma(planes[0], line, width);
}

void unpackExchanged(const std::uint8_t* line, std::uint8_t* const planes[], int width) {
    exchangeChroma(line, planes[0], width);
}

// Rounded to nearest; a channel of 8 or 10 bits that was widened comes back as it was.
std::uint32_t narrowTo10(unsigned value) {
    return (value * full10 + full16 / 2) / full16;
}

std::uint16_t widenFrom10(std::uint32_t value) {
    return static_cast<std::uint16_t>(value << 6 | value >> 4);
}

void packDpx(const std::uint8_t* const planes[], std::uint8_t* line, int width) {
    for (int x = 0; x < width; ++x) {
        const auto channel = [&](int i) {
            return narrowTo10(wordAt<std::uint16_t>(planes[0], 3 * x + i));
        };
        putWord(line, x, __builtin_bswap32(channel(0) << 22 | channel(1) << 12 | channel(2) << 2));
    }
}

void unpackDpx(const std::uint8_t* line, std::uint8_t* const planes[], int width) {
    for (int x = 0; x < width; ++x) {
        const std::uint32_t word = __builtin_bswap32(wordAt<std::uint32_t>(line, x));
        for (int i = 0; i < 3; ++i)
            putWord(planes[0], 3 * x + i, widenFrom10(word >> (22 - 10 * i) & full10));
    }
}

void packAlphaFirst(const std::uint8_t* const planes[], std::uint8_t* line, int width) {
    for (int x = 0; x < width; ++x) {
        const auto pixel = wordAt<std::uint64_t>(planes[0], x);
        putWord(line, x, pixel << 16 | pixel >> 48);
    }
}

void unpackAlphaFirst(const std::uint8_t* line, std::uint8_t* const planes[], int width) {
    for (int x = 0; x < width; ++x) {
        const auto pixel = wordAt<std::uint64_t>(line, x);
        putWord(planes[0], x, pixel >> 16 | pixel << 48);
    }
}

std::uint16_t halfOf(std::uint16_t value) {
    return zrFloatToHalf(static_cast<float>(value) / full16);
}

// What lies outside 0 to 1 is cut, and what is no number is black.
std::uint16_t wordOf(std::uint16_t half) {
    const float value = zrHalfToFloat(half);
    if (!(value > 0.0F))
        return 0;
    return static_cast<std::uint16_t>(std::lround(std::min(value, 1.0F) * full16));
}

template <int channels>
void packHalves(const std::uint8_t* const planes[], std::uint8_t* line, int width) {
    for (int i = 0; i < channels * width; ++i)
        putWord(line, i, halfOf(wordAt<std::uint16_t>(planes[0], i)));
}

template <int channels>
void unpackHalves(const std::uint8_t* line, std::uint8_t* const planes[], int width) {
    for (int i = 0; i < channels * width; ++i)
        putWord(planes[0], i, wordOf(wordAt<std::uint16_t>(line, i)));
}

template <typename Word>
void packChroma(const std::uint8_t* const planes[], std::uint8_t* line, int width) {
    for (int x = 0; x < width; ++x) {
        putWord(line, 2 * x, wordAt<Word>(planes[1], x));
        putWord(line, 2 * x + 1, wordAt<Word>(planes[2], x));
    }
}

template <typename Word>
void unpackChroma(const std::uint8_t* line, std::uint8_t* const planes[], int width) {
    for (int x = 0; x < width; ++x) {
        putWord(planes[1], x, wordAt<Word>(line, 2 * x));
        putWord(planes[2], x, wordAt<Word>(line, 2 * x + 1));
    }
}

struct Planes {
    std::uint8_t* data[4];
};

Planes planesAt(const AVFrame& picture, int y) {
    Planes planes{};
    for (int i = 0; i < 4; ++i)
        planes.data[i] =
            picture.data[i] ? picture.data[i] + std::ptrdiff_t{picture.linesize[i]} * y : nullptr;
    return planes;
}

} // namespace

const LineFunctions exchangedChroma{packExchanged, unpackExchanged, true};
const LineFunctions dpxWords{packDpx, unpackDpx, false};
const LineFunctions alphaFirstWords{packAlphaFirst, unpackAlphaFirst, true};
const LineFunctions threeHalves{packHalves<3>, unpackHalves<3>, false};
const LineFunctions fourHalves{packHalves<4>, unpackHalves<4>, false};
const LineFunctions chromaBytes{packChroma<std::uint8_t>, unpackChroma<std::uint8_t>, true};
const LineFunctions chromaWords{packChroma<std::uint16_t>, unpackChroma<std::uint16_t>, true};

LinePacker::LinePacker(LineFunctions functions, int width, int height)
    : m_functions(functions), m_width(width), m_height(height) {}

void LinePacker::pack(const AVFrame& picture, CanvasLines canvas) {
    for (int y = 0; y < m_height; ++y)
        m_functions.pack(planesAt(picture, y).data, canvas.line(y), m_width);
}

void LinePacker::unpack(CanvasLines canvas, AVFrame& picture) {
    for (int y = 0; y < m_height; ++y)
        m_functions.unpack(canvas.line(y), planesAt(picture, y).data, m_width);
}

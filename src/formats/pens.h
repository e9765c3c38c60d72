// How each kind of memory is written: single pixels and runs of them, in a colour that was packed
// once. A pen writes on the canvas only and tests nothing; what it writes is what PutPixel of its
// class does, bit for bit. Its copy takes over from another line what writes of those pixels
// touch; there is none where lines differ.
#pragma once

#include "formats/readers.h"
#include "span/runs.h"
#include "zrdraw/v210.h"

#include <array>
#include <type_traits>

// 32-bit words, one a pixel.
struct WordPen {
    static constexpr bool pixelIsItsOwn = true; // shares no byte, read or written, with another

    const ZRPixel& pixel;
    unsigned int color;

    void put(int x, int y) const { storeWord(wordAddress(pixel, x, y), color); }
    void run(int x, int y, int count) const {
        fillRun<4>(wordAddress(pixel, x, y), color, static_cast<unsigned int>(count));
    }
    void copy(int x, int from, int to, int count) const {
        std::memcpy(wordAddress(pixel, x, to), wordAddress(pixel, x, from),
                    4 * static_cast<std::size_t>(count));
    }
};

// Whole bytes, the first one lowest in `color`.
template <int pixelBytes>
struct BytesPen {
    static constexpr bool pixelIsItsOwn =
        pixelBytes != 2; // 8-bit chroma is read with its neighbour

    const ZRPixel& pixel;
    unsigned long color;

    char* address(int x, int y) const { return byteAddress(pixel, y, pixelBytes * x); }
    void put(int x, int y) const { storeBytes<pixelBytes>(address(x, y), color); }
    void run(int x, int y, int count) const {
        fillRun<pixelBytes>(address(x, y), color, static_cast<unsigned int>(count));
    }
    void copy(int x, int from, int to, int count) const {
        std::memcpy(address(x, to), address(x, from), pixelBytes * static_cast<std::size_t>(count));
    }
};

// A run of pixels that stand in pairs: single ones at an odd begin and an even end, and between
// them whole pairs.
template <typename One, typename Pairs>
void byPairs(int x, int count, One one, Pairs pairs) {
    if (x % 2 != 0) {
        one(x++);
        --count;
    }
    if (count > 1)
        pairs(x, static_cast<unsigned int>(count / 2));
    if (count % 2 != 0)
        one(x + count - 1);
}

// 8-bit 4:2:2: the last writer of a pair decides its chroma.
struct PairPen {
    static constexpr bool pixelIsItsOwn = false;

    // The bits of a pair that a pixel leaves alone: one luma byte, at an even column and at an odd
    // one.
    struct Kept {
        unsigned int even, odd;
    };

    const ZRPixel& pixel;
    unsigned int color; // of a whole pair
    Kept kept;

    static char* address(const ZRPixel& pixel, int x, int y) {
        return byteAddress(pixel, y, 4 * (x / 2));
    }
    void put(int x, int y) const { write(x, y, color); }
    void run(int x, int y, int count) const {
        byPairs(
            x, count, [=, this](int at) { put(at, y); },
            [=, this](int at, unsigned int pairs) {
                fillRun<4>(address(pixel, at, y), color, pairs);
            });
    }
    void copy(int x, int from, int to, int count) const {
        byPairs(
            x, count, [=, this](int at) { write(at, to, loadWord(address(pixel, at, from))); },
            [=, this](int at, unsigned int pairs) {
                std::memcpy(address(pixel, at, to), address(pixel, at, from), 4UL * pairs);
            });
    }

private:
    void write(int x, int y, unsigned int pairColor) const {
        char* const pair = address(pixel, x, y);
        const unsigned int old = x % 2 != 0 ? kept.odd : kept.even;
        storeWord(pair, (loadWord(pair) & old) | (pairColor & ~old));
    }
};

// Four words of six pixels, in which bits 30 and 31 stay as they are.
struct V210Pen {
    static constexpr bool pixelIsItsOwn = false;
    using Group = std::array<unsigned long, 2>;

    const ZRPixel& pixel;
    unsigned long color; // Y in bits 0 to 9, Cb in 10 to 19, Cr in 20 to 29

    static char* address(const ZRPixel& pixel, int x, int y) {
        return byteAddress(pixel, y,
                           static_cast<int>(zrV210::groupBytes) *
                               (x / static_cast<int>(zrV210::groupPixels)));
    }
    // The bits of a group that are written.
    static void write(char* group, const Group& color, const Group& bits) {
        for (unsigned int i = 0; i < bits.size(); ++i) {
            char* const at = group + sizeof bits[i] * i;
            storeAs(at, (loadAs<unsigned long>(at) & ~bits[i]) | (color[i] & bits[i]));
        }
    }

    void put(int x, int y) const;
    void run(int x, int y, int count) const;
    void copy(int x, int from, int to, int count) const;
};

// A 12-bit mosaic, three bytes for two pixels. By contract: the low nibble of an odd column comes
// from the channel of the even one, whose own low bits are cleared.
struct MosaicPen {
    static constexpr bool pixelIsItsOwn = false;

    const ZRPixel& pixel;
    unsigned int lines[2]; // the bytes of a pair of pixels on even and odd lines, the first lowest

    static char* address(const ZRPixel& pixel, int x, int y) {
        return byteAddress(pixel, y, x * 3 >> 1);
    }
    static void write(char* at, int x, unsigned int pair) {
        if (x % 2 == 0)
            storeBytes<1>(at, pair);
        else
            storeBytes<2>(at, pair >> 8);
    }
    void put(int x, int y) const { write(address(pixel, x, y), x, lines[y % 2]); }
    void run(int x, int y, int count) const {
        byPairs(
            x, count, [=, this](int at) { put(at, y); },
            [=, this](int at, unsigned int pairs) {
                fillRun<3>(address(pixel, at, y), lines[y % 2], pairs);
            });
    }
};

// The words of a pixel, the first one lowest.
template <typename... Words>
unsigned long packWords(Words... words) {
    unsigned long packed = 0;
    int bit = 0;
    ((packed |= static_cast<unsigned long>(words & 0xFFFF) << bit, bit += 16), ...);
    return packed;
}

// The pens of a class' colour slots, where they are plain.
inline WordPen penOf(const CDrawRGBA32& draw, bool selector) {
    return {draw, selector ? draw.foreColor : draw.backColor};
}

inline WordPen penOf(const CDrawRGB30DPX& draw, bool selector) {
    return {draw, selector ? draw.foreColor : draw.backColor};
}

// Of the foreground.
inline BytesPen<3> penOf(const CDrawRGB24& draw, bool) {
    return {draw, draw.foreColor};
}

template <typename Class>
requires std::is_same_v<Class, CDrawRGB48> || std::is_same_v<Class, CDrawRGBHalf48> BytesPen<6>
penOf(const Class& draw, bool selector) {
    return {draw, selector ? packWords(draw.foreR, draw.foreG, draw.foreB)
                           : packWords(draw.backR, draw.backG, draw.backB)};
}

inline BytesPen<8> penOf(const CDrawARGB64& draw, bool selector) {
    return {draw, selector ? packWords(draw.foreA, draw.foreR, draw.foreG, draw.foreB)
                           : packWords(draw.backA, draw.backR, draw.backG, draw.backB)};
}

BytesPen<8> penOf(const CDrawRGBAHalf& draw, bool selector);

// By contract: the low eight bits of a colour on the scale of 65536, not the high ones.
inline BytesPen<2> penOf(const CDrawUV8& draw, bool selector) {
    const zrYcc& color = selector ? draw.yccForeground : draw.yccBackground;
    return {draw, (color.second & 0xFF) | (color.third & 0xFF) << 8};
}

inline BytesPen<4> penOf(const CDrawUV16& draw, bool selector) {
    const zrYcc& color = selector ? draw.yccForeground : draw.yccBackground;
    return {draw, packWords(color.second, color.third)};
}

// By contract: where luma comes first, a pixel writes the luma of its neighbour and not its own.
inline PairPen penOf(const CDrawYCbCrYUYV& draw, bool selector) {
    const bool lumaFirst = draw.pixelType == ptYUYV || draw.pixelType == ptYVYU;
    return {draw, selector ? draw.foreWord : draw.backWord,
            lumaFirst ? PairPen::Kept{0x000000FFU, 0x00FF0000U}
                      : PairPen::Kept{0xFF000000U, 0x0000FF00U}};
}

inline V210Pen penOf(const CDrawYCbCr10& draw, bool selector) {
    return {draw, selector ? draw.foreWord : draw.backWord};
}

MosaicPen penOf(const CDrawBayer& draw, bool selector);

// Whether PutPixel writes a slot without a look at what is there, and at the pixel's own place.
inline bool isPlainWord(const ZRPixel& pixel, bool selector) {
    if (!selector)
        return !pixel.transparency || pixel.backTransparency <= 0.0;
    return !pixel.alphaAdditive && (!pixel.transparency || pixel.foreTransparency <= 0.0);
}

template <typename Class>
bool isDirect(const Class& draw, bool selector) {
    if constexpr (std::is_same_v<Class, CDrawRGB24>)
        return selector && isPlainWord(draw, selector);
    return !std::is_same_v<decltype(penOf(draw, selector)), WordPen> || isPlainWord(draw, selector);
}

// A PutPixel of such a class.
template <typename Class>
int putBy(const Class& draw, int x, int y, bool selector) {
    if (!pullOntoCanvas(draw, x, y))
        return -1;
    penOf(draw, selector).put(x, y);
    return 0;
}

// Where pixels and runs of pixels are written, for all primitives alike.
#pragma once

#include "pixel/canvas.h"
#include "zrdraw/formats.h"

#include <cstring>
#include <typeinfo>

// Whether an object is exactly of a class of ours: calls of it may then be skipped for what they
// would do. A class that a caller derives from one is none, and gets every call.
//
// The type information is taken from the object's table of virtual operations, where it stands one
// word before the first operation (Itanium C++ ABI, 2.5.2), and only its address is compared: a
// program built without type information has null there, which the typeid operator would follow.
template <typename Class>
bool isExactly(const ZRPixel& pixel) {
    const std::type_info* const* operations;
    std::memcpy(&operations, static_cast<const void*>(&pixel), sizeof operations);
    return operations[-1] == &typeid(Class);
}

// Pixels of these are read and written by ZRPixel alone.
inline bool isPlainRgba32(const ZRPixel& pixel) {
    return isRgb32(pixel.pixelType) && isExactly<CDrawRGBA32>(pixel);
}

// Readers of DPX words and of mosaics take the address of a pixel untested.
inline bool readsUntested(const ZRPixel& pixel) {
    return pixel.pixelType >= ptRGB30DPX && pixel.pixelType <= ptBayerGRBGc;
}

// Puts pixels in the foreground colour. Where PutPixel would store a word and no more, that is done
// without the call, at a third of the time. Holds for as long as the object's state stays.
class Plotter {
public:
    explicit Plotter(ZRPixel& pixel) : m_pixel(pixel), m_storesWords(storesWords(pixel)) {}

    void put(int x, int y) const {
        if (!m_storesWords)
            m_pixel.PutPixel(x, y, true);
        else if (pullOntoCanvas(m_pixel, x, y))
            storeWord(wordAddress(m_pixel, x, y), m_pixel.foreColor);
    }

    // `count` pixels from (x, y) on, each refused by itself where it is off the canvas.
    void putRun(int x, int y, int count) const {
        if (m_storesWords && isInside(x, y, count)) {
            char* const first = wordAddress(m_pixel, x, y);
            for (int i = 0; i < count; ++i)
                storeWord(first + 4 * i, m_pixel.foreColor);
            return;
        }
        for (int i = 0; i < count; ++i)
            put(x + i, y);
    }

private:
    static bool storesWords(const ZRPixel& pixel) {
        return !pixel.transparency && !pixel.alphaAdditive && isPlainRgba32(pixel);
    }

    bool isInside(int x, int y, int count) const {
        const int columns = static_cast<int>(m_pixel.width);
        return m_pixel.canvas != nullptr && (x | y) >= 0 && columns >= count &&
               x <= columns - count && y < static_cast<int>(m_pixel.height);
    }

    ZRPixel& m_pixel;
    bool m_storesWords;
};

// Columns `left` to `right` of a line, both on the canvas, in the foreground colour.
void drawRun(ZRPixel& pixel, int left, int right, int y);

// The whole canvas in the colour of a slot.
void drawCanvas(ZRPixel& pixel, bool selector);

// The whole canvas of a 32-bit layout as one run of words.
void drawCanvasWords(const ZRPixel& pixel, unsigned int color);

// Shortcuts past PutPixel and GetPixelRGBA, where an object has nothing to say of its own.
#pragma once

#include "pixel/canvas.h"
#include "zrdraw/formats.h"

#include <typeinfo>

// Whether an object is exactly a CDrawRGBA32, whose pixels are read and written by ZRPixel: calls
// may then be skipped for what they would do. A class that a caller derived is none.
inline bool isPlainRgba32(const ZRPixel& pixel) {
    return isRgb32(pixel.pixelType) && typeid(pixel) == typeid(CDrawRGBA32);
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

    void putRun(int x, int y, int count) const {
        const int columns = static_cast<int>(m_pixel.width);
        const bool inside = m_pixel.canvas != nullptr && (x | y) >= 0 && columns >= count &&
                            x <= columns - count && y < static_cast<int>(m_pixel.height);
        if (m_storesWords && inside) {
            const unsigned int color = m_pixel.foreColor;
            char* const first = wordAddress(m_pixel, x, y);
            for (int i = 0; i < count; ++i)
                storeWord(first + 4 * i, color);
            return;
        }
        for (int i = 0; i < count; ++i)
            put(x + i, y);
    }

private:
    static bool storesWords(const ZRPixel& pixel) {
        return !pixel.transparency && !pixel.alphaAdditive && isPlainRgba32(pixel);
    }

    ZRPixel& m_pixel;
    bool m_storesWords;
};

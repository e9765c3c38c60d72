// Where pixels and runs of pixels are written, for all primitives alike. A primitive asks for a
// plotter once a call and does not know the layout.
#pragma once

#include "formats/pens.h"

#include <algorithm>
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

// The object itself, if it is exactly of the class: its operations then do what is known of them.
template <typename Class>
const Class* exactly(const ZRPixel& pixel) {
    // By way of the complete object, as ZRPixel is a virtual base.
    return isExactly<Class>(pixel) ? static_cast<const Class*>(dynamic_cast<const void*>(&pixel))
                                   : nullptr;
}

// Pixels of these are read and written by ZRPixel alone.
inline bool isPlainRgba32(const ZRPixel& pixel) {
    return isRgb32(pixel.pixelType) && isExactly<CDrawRGBA32>(pixel);
}

// Readers of DPX words and of mosaics take the address of a pixel untested.
inline bool readsUntested(const ZRPixel& pixel) {
    return pixel.pixelType >= ptRGB30DPX && pixel.pixelType <= ptBayerGRBGc;
}

// Writes pixels of one slot by a pen, each refused by itself where it is off the canvas. Holds for
// as long as the object's state stays.
template <typename Pen>
class Plotter {
public:
    static constexpr bool isDirect = true; // the order of writes in one colour does not matter
    // What a pixel reads then depends on that pixel alone.
    static constexpr bool readsAlone = Pen::pixelIsItsOwn;

    Plotter(const ZRPixel& pixel, const Pen& pen) : m_pixel(pixel), m_pen(pen) {}

    const Pen& pen() const { return m_pen; }

    // Whether all pixels between two are on the canvas, where the pen itself may write.
    bool covers(int x0, int y0, int x1, int y1) const {
        return m_pixel.canvas != nullptr && (x0 | y0 | x1 | y1) >= 0 &&
               std::max(x0, x1) < static_cast<int>(m_pixel.width) &&
               std::max(y0, y1) < static_cast<int>(m_pixel.height);
    }

    void put(int x, int y) const {
        if (pullOntoCanvas(m_pixel, x, y))
            m_pen.put(x, y);
    }

    // `count` pixels from (x, y) on.
    void run(int x, int y, int count) const {
        if (count > 0 && covers(x, y, x, y) && count <= static_cast<int>(m_pixel.width) - x)
            m_pen.run(x, y, count);
        else
            runClipped(x, y, count);
    }

    // The same on so many lines from y down.
    void block(int x, int y, int count, int lines) const {
        const bool inside = count > 0 && covers(x, y, x, y + lines - 1) &&
                            count <= static_cast<int>(m_pixel.width) - x;
        for (int line = 0; line < lines; ++line)
            if (inside)
                m_pen.run(x, y + line, count);
            else
                runClipped(x, y + line, count);
    }

    // What writes of `count` pixels touch, from one line to another. False, and nothing done, where
    // both are not on the canvas in full.
    bool copy(int x, int from, int to, int count) const {
        const int first = std::max(x, 0);
        const int end = std::min(x + count, static_cast<int>(m_pixel.width));
        if constexpr (requires { m_pen.copy(first, from, to, end); }) {
            if (first < end && x + count > x && covers(first, from, end - 1, to)) {
                m_pen.copy(first, from, to, end - first);
                return true;
            }
        }
        return false;
    }

private:
    [[gnu::noinline]] void runClipped(int x, int y, int count) const {
        const long columns = static_cast<int>(m_pixel.width);
        int first = std::max(x, 0);
        const long last = std::min(static_cast<long>(x) + count - 1, columns);
        if (last < first || !pullOntoCanvas(m_pixel, first, y))
            return;
        m_pen.run(first, y, static_cast<int>(std::min(last, columns - 1)) - first + 1);
    }

    const ZRPixel& m_pixel;
    Pen m_pen;
};

// The same by the object's own PutPixel.
class CallingPlotter {
public:
    static constexpr bool isDirect = false, readsAlone = false;

    CallingPlotter(ZRPixel& pixel, bool selector) : m_pixel(pixel), m_selector(selector) {}

    void put(int x, int y) const { m_pixel.PutPixel(x, y, m_selector); }

    void run(int x, int y, int count) const {
        for (int i = 0; i < count; ++i)
            put(x + i, y);
    }

private:
    ZRPixel& m_pixel;
    bool m_selector;
};

// Whether no byte belongs to two lines, so that it does not matter which is written first. By
// contract: the half pair at the end of an odd width reaches into the next line of a tight canvas.
bool linesAreApart(const ZRPixel& pixel);

enum class Slots { Foreground, Background, Both };

// Calls `use` with the plotters of the slots by their pens. False, and nothing done, where the
// object is not exactly of the class, or looks at what is there.
template <typename Class, typename Use>
bool useDirect(const ZRPixel& pixel, Slots slots, Use& use) {
    const Class* const draw = exactly<Class>(pixel);
    if (draw == nullptr || (slots != Slots::Background && !isDirect(*draw, true)) ||
        (slots != Slots::Foreground && !isDirect(*draw, false)))
        return false;
    const Plotter first(pixel, penOf(*draw, slots != Slots::Background));
    use(first, slots == Slots::Both ? Plotter(pixel, penOf(*draw, false)) : first);
    return true;
}

// The classes by the codes that they serve.
template <typename Use>
bool useDirect(const ZRPixel& pixel, Slots slots, Use& use) {
    const unsigned int code = pixel.pixelType;
    if (isRgb32(code))
        return useDirect<CDrawRGBA32>(pixel, slots, use);
    if (isRgb24(code))
        return useDirect<CDrawRGB24>(pixel, slots, use);
    if (code >= ptYUYV && code <= ptVYUY)
        return useDirect<CDrawYCbCrYUYV>(pixel, slots, use);
    if (code == ptV210)
        return useDirect<CDrawYCbCr10>(pixel, slots, use);
    if (code >= ptBayerBGGR && code <= ptBayerGRBGc)
        return useDirect<CDrawBayer>(pixel, slots, use);
    return useDirect<CDrawRGB30DPX>(pixel, slots, use) ||
           useDirect<CDrawRGB48>(pixel, slots, use) || useDirect<CDrawARGB64>(pixel, slots, use) ||
           useDirect<CDrawRGBHalf48>(pixel, slots, use) ||
           useDirect<CDrawRGBAHalf>(pixel, slots, use) || useDirect<CDrawUV8>(pixel, slots, use) ||
           useDirect<CDrawUV16>(pixel, slots, use);
}

// Calls `use` with the plotters of the foreground and the background, or twice that of the one
// slot.
template <typename Use>
void withPlotters(ZRPixel& pixel, Slots slots, Use use) {
    if (!useDirect(pixel, slots, use))
        use(CallingPlotter(pixel, slots != Slots::Background),
            CallingPlotter(pixel, slots == Slots::Foreground));
}

template <typename Use>
void withPlotter(ZRPixel& pixel, Use use) {
    withPlotters(
        pixel, Slots::Foreground, [&](const auto& plotter, const auto&) { use(plotter); });
}

// Columns `left` to `right` of a line, both on the canvas, in the foreground colour.
void drawRun(ZRPixel& pixel, int left, int right, int y);

// The whole canvas in the colour of a slot.
void drawCanvas(ZRPixel& pixel, bool selector);

// The whole canvas of a 32-bit layout as one run of words.
void drawCanvasWords(const ZRPixel& pixel, unsigned int color);

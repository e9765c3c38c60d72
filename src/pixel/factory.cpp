// From a layout code to a drawing object, and the object's end.
#include "zrdraw/formats.h"

#include <algorithm>

namespace {

constexpr unsigned int refused = 0xFFFFFFFFU;
constexpr unsigned int unserved = 0xFFFFFFFEU;
constexpr unsigned int waitForever = 0xFFFFFFFFU;

// The object that serves a code, or null for a code that no class serves.
ZRDraw* makeDraw(unsigned int code) {
    switch (code) {
    case ptRGBA32:
    case ptARGB32:
    case ptBGRA32:
    case ptABGR32:
        return new CDrawRGBA32(code);
    case ptRGB24:
    case ptBGR24:
        return new CDrawRGB24(code);
    case ptYUYV:
    case ptUYVY:
    case ptYVYU:
    case ptVYUY:
        return new CDrawYCbCrYUYV(code);
    case ptV210:
        return new CDrawYCbCr10(code);
    case ptRGB30DPX:
        return new CDrawRGB30DPX(code);
    case ptBayerBGGR:
    case ptBayerRGGB:
    case ptBayerGBRG:
    case ptBayerGRBG:
    case ptBayerBGGRc:
    case ptBayerRGGBc:
    case ptBayerGBRGc:
    case ptBayerGRBGc:
        return new CDrawBayer(code);
    case ptRGB48:
        return new CDrawRGB48(code);
    case ptARGB64:
        return new CDrawARGB64(code);
    case ptRGBHalf48:
        return new CDrawRGBHalf48(code);
    case ptRGBAHalf:
        return new CDrawRGBAHalf(code);
    case ptUV8:
        return new CDrawUV8(code);
    case ptUV16:
        return new CDrawUV16(code);
    default:
        return nullptr;
    }
}

} // namespace

unsigned int GetDraw(unsigned int pixelType, int width, int height, int pitch, char* canvas,
                     ZRDraw*& draw) {
    if (pixelType == ptNone)
        return refused;
    // By contract: a served code replaces what `draw` held without a look at it; any other code
    // moves the object that it holds.
    if (ZRDraw* made = makeDraw(pixelType); made != nullptr)
        draw = made;
    else if (draw == nullptr)
        return unserved;
    draw->SetCanvas(canvas, height, width, pitch);
    UseDefaultFont(draw, false);
    return 0;
}

unsigned int GetDraw(tagBITMAPINFO* info, char* canvas, ZRDraw*& draw) {
    unsigned int code = ptNone;
    const unsigned int size = GetDrawSize(info, &code);
    if (code == ptNone || size == 0 || size == 0xFFFFFFFFU) {
        draw = nullptr;
        return refused;
    }
    // By contract: the sign of biHeight is dropped, so a bottom-up picture is drawn on top-down.
    const int lines = info->biHeight < 0 ? -info->biHeight : info->biHeight;
    return GetDraw(code, info->biWidth, lines, 0, canvas, draw);
}

int AddRefDraw(ZRDraw*& draw) {
    draw->Lock(waitForever);
    ++draw->refCount;
    draw->Unlock();
    return 0;
}

int ReleaseDraw(ZRDraw*& draw) {
    ZRDraw* const held = draw;
    draw = nullptr;
    // The outer lock holds the object across the whole step, the inner one guards the count.
    held->Lock(waitForever);
    held->Lock(waitForever);
    held->refCount = std::max(held->refCount, 1L) - 1;
    const bool last = held->refCount == 0;
    held->Unlock();
    if (!last)
        draw = held;
    held->Unlock();
    if (last)
        delete held;
    return 0;
}

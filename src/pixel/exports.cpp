#include "zrdraw/exports.h"

#include "zrdraw/zrdraw.h"

ZRDraw* qtGetDraw(unsigned int pixelType, int width, int height, int pitch, char* canvas) {
    ZRDraw* draw = nullptr;
    return GetDraw(pixelType, width, height, pitch, canvas, draw) == 0 ? draw : nullptr;
}

ZRDraw* qtGetDrawBMI(tagBITMAPINFO* info, char* canvas) {
    ZRDraw* draw = nullptr;
    return GetDraw(info, canvas, draw) == 0 ? draw : nullptr;
}

unsigned int qtGetDrawSize(unsigned int pixelType, int width, int height, int pitch) {
    return GetDrawSize(pixelType, width, height, pitch);
}

unsigned int qtGetDrawSizeBMI(tagBITMAPINFO* info) {
    return GetDrawSize(info);
}

int qtAddRefDraw(ZRDraw* draw) {
    return AddRefDraw(draw);
}

int qtReleaseDraw(ZRDraw* draw) {
    return ReleaseDraw(draw);
}

int qtSetFont(ZRDraw* draw, char* name) {
    return SetFont(draw, name);
}

int qtUseDefaultFont(ZRDraw* draw, bool builtIn) {
    return UseDefaultFont(draw, builtIn);
}

int qtZRPixelLock(ZRDraw* draw, unsigned int timeout) {
    return draw != nullptr ? draw->Lock(timeout) : -1;
}

int qtZRPixelTryLock(ZRDraw* draw) {
    return draw != nullptr ? draw->TryLock() : -1;
}

int qtZRPixelUnlock(ZRDraw* draw) {
    return draw != nullptr ? draw->Unlock() : -1;
}

int qtZRPixelWaitForChangeEvent(ZRDraw* draw, unsigned int timeout) {
    return draw != nullptr ? draw->WaitForChangeEvent(timeout) : -1;
}

void qtZRPixelSetChangeEvent(ZRDraw* draw) {
    if (draw != nullptr)
        draw->SetChangeEvent();
}

int qtZRPixelLastChange(ZRDraw* draw, int value) {
    if (draw == nullptr)
        return -1;
    if (value != -1)
        draw->lastChange = static_cast<unsigned int>(value);
    return static_cast<int>(draw->lastChange);
}

int qtZRPixelSetCanvas(ZRDraw* draw, char* canvas, int height, int width, int pitch) {
    return draw != nullptr ? draw->SetCanvas(canvas, height, width, pitch) : -1;
}

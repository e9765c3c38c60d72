// The canvas: where pixels are, and how they are written.
#include "pixel/canvas.h"
#include "pixel/truncate.h"
#include "zrdraw/layouts.h"
#include "zrdraw/platform/events.h"
#include "zrdraw/zrpixel.h"

#include <cstddef>
#include <cstring>

namespace {

// By contract: the blend treats the word as one number, so carries run from one channel into the
// next.
void blendWord(char* address, unsigned int color, double weight) {
    storeWord(address, truncateToWord(loadWord(address) * (1 - weight) + color * weight));
}

// By contract: sums wrap at 8 bits, and the alpha byte becomes 255.
void addWord(char* address, unsigned int color) {
    unsigned char bytes[4];
    std::memcpy(bytes, &color, sizeof bytes);
    const double alpha = bytes[3] / 255.0;
    for (int i = 0; i < 3; ++i) {
        const unsigned char old = static_cast<unsigned char>(address[i]);
        address[i] = static_cast<char>(truncateToByte(alpha * bytes[i] + old));
    }
    address[3] = static_cast<char>(0xFF);
}

inline void putPlain(const ZRPixel& pixel, int x, int y) {
    if (isRgb24(pixel.pixelType)) [[unlikely]]
        std::memcpy(rgb24Address(pixel, x, y), &pixel.foreColor, 3);
    else
        storeWord(wordAddress(pixel, x, y), pixel.foreColor);
}

} // namespace

ZRPixel::ZRPixel()
    : pixelType(ptRGBA32), yCbCrMode(cmRec601), width(0), height(0), pitch(0), flipped(false),
      foreColor(0xFFFFFFFFU), foreTransparency(0.0), backColor(0), backTransparency(0.0),
      transparency(false), alphaAdditive(false), lastChange(0), antiAlias(false),
      reservedFlag(false), refCount(1), changeEvent(zrOSCreateEvent(nullptr, 0, 0, nullptr)),
      lock(), canvas(nullptr) {
    zrOSInitializeCriticalSection(&lock);
}

ZRPixel::~ZRPixel() {
    if (changeEvent != nullptr)
        zrOSCloseEvent(changeEvent);
    zrOSDeleteCriticalSection(&lock);
}

int ZRPixel::SetCanvas(char* newCanvas, int newHeight, int newWidth, int newPitch) {
    canvas = newCanvas;
    flipped = newHeight < 0;
    height = magnitude(newHeight);
    width = magnitude(newWidth);
    pitch = magnitude(newPitch == 0 ? static_cast<int>(GetPitch()) : newPitch);
    const zrLayout* layout = zrFindLayout(pixelType);
    if (layout != nullptr && layout->has(zrPitchRaised)) {
        const unsigned int naturalLine = zrLineBytes(layout->line, width);
        if (pitch < naturalLine)
            pitch = naturalLine;
    }
    return 0;
}

unsigned int ZRPixel::GetPitch() {
    return pitch;
}

char* ZRPixel::GetPixel(int x, int y) {
    if (!pullOntoCanvas(*this, x, y))
        return nullptr;
    return isRgb24(pixelType) ? rgb24Address(*this, x, y) : wordAddress(*this, x, y);
}

bool pullEdgeOntoCanvas(const ZRPixel& pixel, int& x, int& y) {
    const int columns = static_cast<int>(pixel.width);
    const int lines = static_cast<int>(pixel.height);
    if (pixel.canvas == nullptr || columns == 0 || lines == 0 || (x | y) < 0 || x > columns ||
        y > lines)
        return false;
    x = pullEdge(x, pixel.width);
    y = pullEdge(y, pixel.height);
    return true;
}

int ZRPixel::PutPixel(int x, int y, bool selector) {
    if (!pullOntoCanvas(*this, x, y))
        return -1;
    // By contract: only the plain foreground write knows 24-bit pixels; all others address the
    // canvas as if its pixels had four bytes.
    if (selector) [[likely]] {
        const bool blends = transparency && foreTransparency > 0.0;
        if (!alphaAdditive && !blends) [[likely]]
            putPlain(*this, x, y);
        else if (alphaAdditive)
            addWord(wordAddress(*this, x, y), foreColor);
        else
            blendWord(wordAddress(*this, x, y), foreColor, foreTransparency);
    } else if (transparency && backTransparency > 0.0) {
        blendWord(wordAddress(*this, x, y), backColor, backTransparency);
    } else {
        storeWord(wordAddress(*this, x, y), backColor);
    }
    return 0;
}

int ZRPixel::SetPixel(int x, int y, double c0, double c1, double c2, double c3, bool selector) {
    if (IsRgbType() == 1)
        SetColorRGBA(c0, c1, c2, c3, selector);
    else
        SetColorYCbCr(c0, c1, c2, c3, selector);
    return PutPixel(x, y, selector);
}

// Codes 15 to 19 and 33 to 36 are set aside for YCbCr layouts.
int ZRPixel::IsRgbType() {
    const bool yCbCr = (pixelType >= 10 && pixelType <= 19) ||
                       (pixelType >= 33 && pixelType <= 36) || pixelType == ptUV8 ||
                       pixelType == ptUV16 || pixelType == ptNone;
    return yCbCr ? 0 : 1;
}

void ZRPixel::SetTransparency(bool on) {
    transparency = on;
}

bool ZRPixel::GetTransparency() {
    return transparency;
}

void ZRPixel::SetAlphaAdditive(bool on) {
    alphaAdditive = on;
}

bool ZRPixel::GetAlphaAdditive() {
    return alphaAdditive;
}

int ZRPixel::SetTransparency(double value, bool selector) {
    const double clamped = value > 1.0 ? 1.0 : value < 0.0 ? 0.0 : value;
    (selector ? foreTransparency : backTransparency) = clamped;
    return 0;
}

int ZRPixel::PercentX(double fraction) {
    return truncateToInt(width * fraction);
}

int ZRPixel::PercentY(double fraction) {
    return truncateToInt(height * fraction);
}

// Hosts reach these members by their places.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(offsetof(ZRPixel, pixelType) == 8 && offsetof(ZRPixel, pitch) == 24);
static_assert(offsetof(ZRPixel, foreColor) == 32 && offsetof(ZRPixel, backTransparency) == 56);
static_assert(offsetof(ZRPixel, lastChange) == 68 && offsetof(ZRPixel, refCount) == 80);
static_assert(offsetof(ZRPixel, changeEvent) == 88 && offsetof(ZRPixel, canvas) == 160);
#pragma GCC diagnostic pop

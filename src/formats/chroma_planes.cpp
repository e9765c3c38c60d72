// Interleaved chroma planes of 8 and 16 bits.
#include "formats/components.h"
#include "formats/pens.h"

using namespace components;

namespace {

constexpr int uv8Bytes = 2, uv16Bytes = 4; // of a pixel

// A form of the two chroma planes. By contract: 8-bit samples are read as 16-bit ones too, so that
// a pixel is read together with its right neighbour.
int readChroma(ZRPixel& pixel, int x, int y, double& cy, double& cb, double& cr, double& a) {
    const char* address = pixel.GetPixel(x, y);
    if (address == nullptr) {
        cy = cb = cr = a = 0.0;
        return -1;
    }
    cy = 0.5;
    cb = wordAt(address, 0);
    cr = wordAt(address, 1);
    return 0;
}

} // namespace

CDrawUV8::CDrawUV8(unsigned int code)
    : ZRDraw(code), yOffset(16.0), yScale(235.0), cbOffset(19.0), cbScale(219.0), crOffset(18.0),
      crScale(219.0), yccForeground{0xEB, 0x80, 0x80}, yccBackground{0x10, 0x80, 0x80} {
    pixelType = code;
    yCbCrMode = cmRec709;
}

CDrawUV8::~CDrawUV8() = default;

int CDrawUV8::SetCanvas(char* newCanvas, int newHeight, int newWidth, int newPitch) {
    return setCanvas(*this, newCanvas, newHeight, newWidth, newPitch, uv8Bytes);
}

unsigned int CDrawUV8::GetPitch() {
    return naturalLine(*this, ptUYVY);
}

char* CDrawUV8::GetPixel(int x, int y) {
    return addressOf(*this, x, y, uv8Bytes);
}

int CDrawUV8::PutPixel(int x, int y, bool selector) {
    return putBy(*this, x, y, selector);
}

int CDrawUV8::GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) {
    return readRgba(*this, x, y, r, g, b, a);
}

int CDrawUV8::GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) {
    return readChroma(*this, x, y, cy, cb, cr, a);
}

int CDrawUV8::GetPixelHSV(int, int, double&, double&, double&, double&) {
    return -1;
}

double CDrawUV8::GetLuma(int, int) {
    return 0.5;
}

int CDrawUV8::SetColorYCbCr(double y, double cb, double cr, double, bool selector) {
    (selector ? yccForeground : yccBackground) = packed(y, cb, cr);
    return 0;
}

int CDrawUV8::SetColorRGBA(double r, double g, double b, double, bool selector) {
    return setColorByMatrix(*this, r, g, b, selector);
}

CDrawUV16::CDrawUV16(unsigned int code)
    : ZRDraw(code), yOffset(4096.0), yScale(60160.0), cbOffset(4096.0), cbScale(56064.0),
      crOffset(4096.0), crScale(56064.0), yccForeground(foreground16), yccBackground(background16) {
    pixelType = code;
    yCbCrMode = cmRec709;
}

CDrawUV16::~CDrawUV16() = default;

int CDrawUV16::SetCanvas(char* newCanvas, int newHeight, int newWidth, int newPitch) {
    return setCanvas(*this, newCanvas, newHeight, newWidth, newPitch, uv16Bytes);
}

unsigned int CDrawUV16::GetPitch() {
    return naturalLine(*this, ptUYVY);
}

char* CDrawUV16::GetPixel(int x, int y) {
    return addressOf(*this, x, y, uv16Bytes);
}

int CDrawUV16::PutPixel(int x, int y, bool selector) {
    return putBy(*this, x, y, selector);
}

int CDrawUV16::GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) {
    return readRgba(*this, x, y, r, g, b, a);
}

int CDrawUV16::GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) {
    return readChroma(*this, x, y, cy, cb, cr, a);
}

int CDrawUV16::GetPixelHSV(int, int, double&, double&, double&, double&) {
    return -1;
}

double CDrawUV16::GetLuma(int, int) {
    return 0.5;
}

int CDrawUV16::SetColorYCbCr(double y, double cb, double cr, double, bool selector) {
    (selector ? yccForeground : yccBackground) = packed(y, cb, cr);
    return 0;
}

int CDrawUV16::SetColorRGBA(double r, double g, double b, double, bool selector) {
    return setColorByMatrix(*this, r, g, b, selector);
}

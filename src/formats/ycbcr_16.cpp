// Interleaved 16-bit Y, Cb, Cr, with and without a fourth word.
#include "formats/components.h"

using namespace components;

namespace {

constexpr int yCbCrBytes = 6, yCbCrABytes = 8; // of a pixel

// The first `count` words of a pixel into outputs; the others are not written.
int readWords(ZRPixel& pixel, int x, int y, int count, double& cy, double& cb, double& cr,
              double& a) {
    const char* address = pixel.GetPixel(x, y);
    if (address == nullptr) {
        cy = cb = cr = a = 0.0;
        return -1;
    }
    cy = wordAt(address, 0);
    cb = wordAt(address, 1);
    cr = wordAt(address, 2);
    if (count > 3)
        a = wordAt(address, 3);
    return 0;
}

// By contract: off the canvas the program stops.
double readLuma(ZRPixel& pixel, int x, int y) {
    const char* address = pixel.GetPixel(x, y);
    if (address == nullptr)
        __builtin_trap();
    return wordAt(address, 0);
}

} // namespace

CDrawYCbCrYCbCr16::CDrawYCbCrYCbCr16(unsigned int code)
    : ZRDraw(code), yOffset(4096.0), yScale(60160.0), cbOffset(4864.0), cbScale(56064.0),
      crOffset(4608.0), crScale(56064.0), yccForeground(foreground16), yccBackground(background16) {
    yCbCrMode = cmRec709; // by contract, the code is not kept
}

CDrawYCbCrYCbCr16::~CDrawYCbCrYCbCr16() = default;

int CDrawYCbCrYCbCr16::SetCanvas(char* newCanvas, int newHeight, int newWidth, int newPitch) {
    return setCanvas(*this, newCanvas, newHeight, newWidth, newPitch, yCbCrBytes);
}

// By contract: the line of the 8-bit 4:2:2 layouts, here and in the three classes below.
unsigned int CDrawYCbCrYCbCr16::GetPitch() {
    return naturalLine(*this, ptUYVY);
}

char* CDrawYCbCrYCbCr16::GetPixel(int x, int y) {
    return addressOf(*this, x, y, yCbCrBytes);
}

int CDrawYCbCrYCbCr16::PutPixel(int x, int y, bool selector) {
    const zrYcc& color = selector ? yccForeground : yccBackground;
    return put(*this, x, y, yCbCrBytes, color.first, color.second, color.third);
}

int CDrawYCbCrYCbCr16::GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) {
    return readRgba(*this, x, y, r, g, b, a);
}

int CDrawYCbCrYCbCr16::GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) {
    return readWords(*this, x, y, 3, cy, cb, cr, a);
}

int CDrawYCbCrYCbCr16::GetPixelHSV(int, int, double&, double&, double&, double&) {
    return -1;
}

double CDrawYCbCrYCbCr16::GetLuma(int x, int y) {
    return readLuma(*this, x, y);
}

int CDrawYCbCrYCbCr16::SetColorYCbCr(double y, double cb, double cr, double, bool selector) {
    (selector ? yccForeground : yccBackground) = packed(y, cb, cr);
    return 0;
}

int CDrawYCbCrYCbCr16::SetColorRGBA(double r, double g, double b, double, bool selector) {
    return setColorByMatrix(*this, r, g, b, selector);
}

CDrawYCbCrYCbCrA16::CDrawYCbCrYCbCrA16(unsigned int code)
    : ZRDraw(code), yOffset(4096.0), yScale(62275.0), cbOffset(4864.0), cbScale(56064.0),
      crOffset(4608.0),
      crScale(56064.0), yccForeground{0xEB00, 0x8000, 0x8000, 67830}, yccBackground{0x1000, 0x8000,
                                                                                    0x8000, 0} {
    yCbCrMode = cmRec709; // by contract, the code is not kept
}

CDrawYCbCrYCbCrA16::~CDrawYCbCrYCbCrA16() = default;

int CDrawYCbCrYCbCrA16::SetCanvas(char* newCanvas, int newHeight, int newWidth, int newPitch) {
    return setCanvas(*this, newCanvas, newHeight, newWidth, newPitch, yCbCrABytes);
}

unsigned int CDrawYCbCrYCbCrA16::GetPitch() {
    return naturalLine(*this, ptUYVY);
}

char* CDrawYCbCrYCbCrA16::GetPixel(int x, int y) {
    return addressOf(*this, x, y, yCbCrABytes);
}

// By contract: eight bytes at column 6x, where GetPixel says 8x.
int CDrawYCbCrYCbCrA16::PutPixel(int x, int y, bool selector) {
    const zrYccA& color = selector ? yccForeground : yccBackground;
    return put(*this, x, y, yCbCrBytes, color.first, color.second, color.third, color.fourth);
}

int CDrawYCbCrYCbCrA16::GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) {
    return readRgba(*this, x, y, r, g, b, a);
}

int CDrawYCbCrYCbCrA16::GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) {
    return readWords(*this, x, y, 4, cy, cb, cr, a);
}

int CDrawYCbCrYCbCrA16::GetPixelHSV(int, int, double&, double&, double&, double&) {
    return -1;
}

double CDrawYCbCrYCbCrA16::GetLuma(int x, int y) {
    return readLuma(*this, x, y);
}

// By contract: the fourth value is Cr once more; no alpha reaches it.
int CDrawYCbCrYCbCrA16::SetColorYCbCr(double y, double cb, double cr, double, bool selector) {
    const zrYcc color = packed(y, cb, cr);
    (selector ? yccForeground : yccBackground) = {color.first, color.third, color.second,
                                                  color.third};
    return 0;
}

int CDrawYCbCrYCbCrA16::SetColorRGBA(double r, double g, double b, double, bool selector) {
    return setColorByMatrix(*this, r, g, b, selector);
}

// RGB in 16-bit words. By contract: the colours written are members that no colour operation
// changes, and half floats without alpha are handled as the integers that their bits make.
#include "formats/pens.h"
#include "formats/readers.h"

namespace {

constexpr double per65536 = 1.0 / 65536;
constexpr unsigned int foreground = 255;
constexpr unsigned int background = 0;

// Where the channels of a pixel stand, in words; -1 where there is no alpha.
struct WordOrder {
    int a, r, g, b;
    int words;
};
constexpr WordOrder rgb{-1, 0, 1, 2, 3};
constexpr WordOrder argb{0, 1, 2, 3, 4};

char* addressOf(const ZRPixel& pixel, int x, int y, const WordOrder& order) {
    return pullOntoCanvas(pixel, x, y) ? byteAddress(pixel, y, 2 * order.words * x) : nullptr;
}

unsigned int wordAt(const char* pixel, int at) {
    return loadAs<unsigned short>(pixel + 2 * at);
}

int readRgba(ZRPixel& pixel, int x, int y, const WordOrder& order, double& r, double& g, double& b,
             double& a) {
    const char* words = pixel.GetPixel(x, y);
    if (words == nullptr) {
        r = g = b = a = 0.0;
        return -1;
    }
    r = wordAt(words, order.r) * per65536;
    g = wordAt(words, order.g) * per65536;
    b = wordAt(words, order.b) * per65536;
    if (order.a >= 0)
        a = wordAt(words, order.a) * per65536;
    return 0;
}

// By contract: a plain average, without weights and without a test of the address.
double average(ZRPixel& pixel, int x, int y, const WordOrder& order) {
    const char* words = pixel.GetPixel(x, y);
    return (wordAt(words, order.r) + wordAt(words, order.g) + wordAt(words, order.b)) / 196608.0;
}

} // namespace

CDrawRGB48::CDrawRGB48(unsigned int code)
    : ZRDraw(code), foreR(foreground), foreG(foreground), foreB(foreground), backR(background),
      backG(background), backB(background) {
    pixelType = code;
}

CDrawRGB48::~CDrawRGB48() = default;

unsigned int CDrawRGB48::GetPitch() {
    return naturalLine(*this, ptRGB48);
}

char* CDrawRGB48::GetPixel(int x, int y) {
    return addressOf(*this, x, y, rgb);
}

int CDrawRGB48::PutPixel(int x, int y, bool selector) {
    return putBy(*this, x, y, selector);
}

int CDrawRGB48::GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) {
    return readRgba(*this, x, y, rgb, r, g, b, a);
}

int CDrawRGB48::GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) {
    return ZRPixel::GetPixelYCbCr(x, y, cy, cb, cr, a);
}

int CDrawRGB48::GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) {
    return readHsv(*this, x, y, h, s, v, a, 0.0);
}

double CDrawRGB48::GetLuma(int x, int y) {
    return average(*this, x, y, rgb);
}

CDrawARGB64::CDrawARGB64(unsigned int code)
    : ZRDraw(code), foreA(foreground), foreR(foreground), foreG(foreground), foreB(foreground),
      backA(background), backR(background), backG(background), backB(background) {
    pixelType = code;
}

CDrawARGB64::~CDrawARGB64() = default;

unsigned int CDrawARGB64::GetPitch() {
    return naturalLine(*this, ptARGB64);
}

char* CDrawARGB64::GetPixel(int x, int y) {
    return addressOf(*this, x, y, argb);
}

int CDrawARGB64::PutPixel(int x, int y, bool selector) {
    return putBy(*this, x, y, selector);
}

int CDrawARGB64::GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) {
    return readRgba(*this, x, y, argb, r, g, b, a);
}

int CDrawARGB64::GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) {
    return ZRPixel::GetPixelYCbCr(x, y, cy, cb, cr, a);
}

int CDrawARGB64::GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) {
    return readHsv(*this, x, y, h, s, v, a, 0.0);
}

double CDrawARGB64::GetLuma(int x, int y) {
    return average(*this, x, y, argb);
}

CDrawRGBHalf48::CDrawRGBHalf48(unsigned int code)
    : ZRDraw(code), foreR(foreground), foreG(foreground), foreB(foreground), backR(background),
      backG(background), backB(background) {
    pixelType = code;
}

CDrawRGBHalf48::~CDrawRGBHalf48() = default;

unsigned int CDrawRGBHalf48::GetPitch() {
    return naturalLine(*this, ptRGBHalf48);
}

char* CDrawRGBHalf48::GetPixel(int x, int y) {
    return addressOf(*this, x, y, rgb);
}

int CDrawRGBHalf48::PutPixel(int x, int y, bool selector) {
    return putBy(*this, x, y, selector);
}

int CDrawRGBHalf48::GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) {
    return readRgba(*this, x, y, rgb, r, g, b, a);
}

int CDrawRGBHalf48::GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) {
    return ZRPixel::GetPixelYCbCr(x, y, cy, cb, cr, a);
}

int CDrawRGBHalf48::GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) {
    return readHsv(*this, x, y, h, s, v, a, 0.0);
}

double CDrawRGBHalf48::GetLuma(int x, int y) {
    return average(*this, x, y, rgb);
}

// The 8-bit 4:2:2 layouts. They differ in where the samples of a pixel pair stand.
#include "formats/pens.h"
#include "formats/readers.h"
#include "pixel/rgba.h"
#include "pixel/truncate.h"

namespace {

constexpr double per256 = 1.0 / 256;

bool isLumaFirst(unsigned int pixelType) {
    return pixelType == ptYUYV || pixelType == ptYVYU;
}

// Every code but the other three counts as ptUYVY.
const zrPairOrder& orderOf(unsigned int pixelType) {
    const bool isKnown = pixelType - ptYUYV <= ptVYUY - ptYUYV;
    return zrFindLayout(isKnown ? pixelType : ptUYVY)->pair;
}

// By contract: added without masks, so that a sample above 255 runs into the next byte.
unsigned int pairWord(unsigned int pixelType, unsigned int y, unsigned int cb, unsigned int cr) {
    const zrPairOrder& order = orderOf(pixelType);
    return (y << 8 * order.y0) + (y << 8 * order.y1) + (cb << 8 * order.cb) + (cr << 8 * order.cr);
}

struct Samples {
    unsigned char y, cb, cr;
};

// By contract: the luma is the first of the pair, whatever the column; and luma asked for off the
// canvas, where there is no pair, stops the program.
Samples readPair(const char* pair, const zrPairOrder& order) {
    // NOLINTNEXTLINE(clang-analyzer-core.NullDereference)
    const auto sample = [pair](signed char at) { return static_cast<unsigned char>(pair[at]); };
    return {sample(order.y0), sample(order.cb), sample(order.cr)};
}

// By contract: BT.709 in studio range is read by a row of its own, in units of 1/256.
void readRec709(const Samples& samples, double& r, double& g, double& b) {
    constexpr double unit = 65536;
    const double luma = 297.984 * (samples.y - 16);
    const int cb = samples.cb - 128;
    const int cr = samples.cr - 128;
    r = clampToUnit((luma + 459.008 * cr) / unit);
    g = clampToUnit((luma - 136.448 * cr - 54.528 * cb) / unit);
    b = clampToUnit((luma + 542.72 * cb) / unit);
}

} // namespace

CDrawYCbCrYUYV::CDrawYCbCrYUYV(unsigned int code)
    : ZRDraw(code), yOffset(16.0), yScale(235.0), cbOffset(19.0), cbScale(219.0), crOffset(18.0),
      crScale(219.0), reservedWord(0) {
    pixelType = code == ptYUYV || code == ptYVYU || code == ptVYUY ? code : ptUYVY;
    yCbCrMode = cmRec709;
    // By contract: until a colour is set, luma and chroma stand in each other's places.
    foreWord = isLumaFirst(pixelType) ? 0xEB80EB80U : 0x80EB80EBU;
    backWord = isLumaFirst(pixelType) ? 0x10801080U : 0x80108010U;
}

CDrawYCbCrYUYV::~CDrawYCbCrYUYV() = default;

int CDrawYCbCrYUYV::SetCanvas(char* newCanvas, int newHeight, int newWidth, int newPitch) {
    ZRPixel::SetCanvas(newCanvas, newHeight, newWidth, newPitch);
    // By contract: compared as unsigned numbers, so a negative pitch stays what it is.
    const unsigned int natural = 2 * static_cast<unsigned int>(newWidth);
    return setSignedCanvas(*this, newCanvas, newHeight, newWidth,
                           std::max(natural, static_cast<unsigned int>(newPitch)));
}

unsigned int CDrawYCbCrYUYV::GetPitch() {
    return naturalLine(*this, ptUYVY);
}

char* CDrawYCbCrYUYV::GetPixel(int x, int y) {
    return pullOntoCanvas(*this, x, y) ? PairPen::address(*this, x, y) : nullptr;
}

int CDrawYCbCrYUYV::PutPixel(int x, int y, bool selector) {
    return putBy(*this, x, y, selector);
}

int CDrawYCbCrYUYV::GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) {
    const char* pair = GetPixel(x, y);
    a = 0.0;
    if (pair == nullptr) {
        r = g = b = 0.5;
        return 0;
    }
    const zrPairOrder& order = orderOf(pixelType);
    Samples samples = readPair(pair, order);
    // By contract: this form on this code is the only reader that looks at the column.
    if (pixelType == ptUYVY && x % 2 != 0)
        samples.y = static_cast<unsigned char>(pair[order.y1]);
    if (yCbCrMode == cmRec709)
        readRec709(samples, r, g, b);
    else
        YCbCrToRGB(samples.y * per256, samples.cb * per256, samples.cr * per256, 0.0, r, g, b, a);
    return 0;
}

int CDrawYCbCrYUYV::GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) {
    const char* pair = GetPixel(x, y);
    if (pair == nullptr) {
        cy = cb = cr = 0.0;
        return 0;
    }
    const Samples samples = readPair(pair, orderOf(pixelType));
    cy = samples.y * per256;
    cb = samples.cb * per256;
    cr = samples.cr * per256;
    a = 1.0;
    return 0;
}

int CDrawYCbCrYUYV::GetPixelYCbCr8(int x, int y, unsigned char& cy, unsigned char& cb,
                                   unsigned char& cr, unsigned char& a) {
    const char* pair = GetPixel(x, y);
    if (pair == nullptr) {
        cy = cb = cr = 0;
        return 0;
    }
    const Samples samples = readPair(pair, orderOf(pixelType));
    cy = samples.y;
    cb = samples.cb;
    cr = samples.cr;
    a = 255;
    return 0;
}

int CDrawYCbCrYUYV::GetPixelYCbCr10(int x, int y, unsigned int& cy, unsigned int& cb,
                                    unsigned int& cr, unsigned int& a) {
    const char* pair = GetPixel(x, y);
    if (pair == nullptr) {
        cy = cb = cr = 0;
        return 0;
    }
    const Samples samples = readPair(pair, orderOf(pixelType));
    cy = samples.y * 4U;
    cb = samples.cb * 4U;
    cr = samples.cr * 4U;
    a = 255;
    return 0;
}

int CDrawYCbCrYUYV::GetPixelHSV(int, int, double&, double&, double&, double&) {
    return -1;
}

double CDrawYCbCrYUYV::GetLuma(int x, int y) {
    return readPair(GetPixel(x, y), orderOf(pixelType)).y * per256;
}

int CDrawYCbCrYUYV::SetColorYCbCr(double y, double cb, double cr, double, bool selector) {
    (selector ? foreWord : backWord) =
        pairWord(pixelType, truncateToWord(y * yScale + yOffset),
                 truncateToWord(cb * cbScale + cbOffset), truncateToWord(cr * crScale + crOffset));
    return 0;
}

// By contract: the scale and the offsets come on top of the studio range of the matrix.
int CDrawYCbCrYUYV::SetColorRGBA(double r, double g, double b, double, bool selector) {
    return setColorByMatrix(*this, r, g, b, selector);
}

int CDrawYCbCrYUYV::SetColorYCbCr10(unsigned int y, unsigned int cb, unsigned int cr, unsigned int,
                                    bool selector) {
    (selector ? foreWord : backWord) = pairWord(pixelType, y >> 2, cb >> 2, cr >> 2);
    return 0;
}

int CDrawYCbCrYUYV::SetColorYCbCr8(unsigned char y, unsigned char cb, unsigned char cr,
                                   unsigned char, bool selector) {
    (selector ? foreWord : backWord) = pairWord(pixelType, y, cb, cr);
    return 0;
}

// Big-endian words of 10-bit RGB. Writing is that of ZRPixel; colours and readers are their own.
#include "formats/readers.h"
#include "pixel/truncate.h"

namespace {

constexpr double full = 1023.0;
constexpr unsigned int channelBits = 0x3FF;
constexpr unsigned int rBit = 22, gBit = 12, bBit = 2;

unsigned int swapBytes(unsigned int word) {
    return __builtin_bswap32(word);
}

struct Channels {
    unsigned int r, g, b;
};

Channels unpack(unsigned int stored) {
    const unsigned int word = swapBytes(stored);
    return {word >> rBit & channelBits, word >> gBit & channelBits, word >> bBit & channelBits};
}

void toUnit(const Channels& channels, double& r, double& g, double& b, double& a) {
    r = channels.r / full;
    g = channels.g / full;
    b = channels.b / full;
    a = 1.0;
}

// By contract: fewer rows than other layouts have; all modes but three take that of BT.601.
double weigh(const Channels& c, cmYCbCr mode) {
    switch (mode) {
    case cmRec601Full:
        return 0.257 * c.r + 0.504 * c.g + 0.098 * c.b;
    case cmRec709:
        return 0.213 * c.r + 0.715 * c.g + 0.072 * c.b;
    case cmRec709Full:
        return 0.183 * c.r + 0.614 * c.g + 0.062 * c.b;
    default:
        return 0.299 * c.r + 0.587 * c.g + 0.114 * c.b;
    }
}

} // namespace

CDrawRGB30DPX::CDrawRGB30DPX(unsigned int code) : ZRDraw(code) {
    pixelType = code;
}

CDrawRGB30DPX::~CDrawRGB30DPX() = default;

unsigned int CDrawRGB30DPX::GetPitch() {
    return naturalLine(*this, ptRGB30DPX);
}

// By contract: no reader of this class tests the address.
int CDrawRGB30DPX::GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) {
    toUnit(unpack(loadWord(GetPixel(x, y))), r, g, b, a);
    return 0;
}

int CDrawRGB30DPX::GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) {
    return ZRPixel::GetPixelYCbCr(x, y, cy, cb, cr, a);
}

int CDrawRGB30DPX::GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) {
    return readHsv(*this, x, y, h, s, v, a, noHue);
}

double CDrawRGB30DPX::GetLuma(int x, int y) {
    return weigh(unpack(loadWord(GetPixel(x, y))), yCbCrMode) * (1.0 / 1024);
}

int CDrawRGB30DPX::GetColorRGBA(double& r, double& g, double& b, double& a, bool selector) {
    toUnit(unpack(selector ? foreColor : backColor), r, g, b, a);
    return 0;
}

int CDrawRGB30DPX::SetColorRGBA(double r, double g, double b, double, bool selector) {
    const unsigned int word = truncateToWord(r * full) << rBit |
                              (truncateToWord(g * full) & channelBits) << gBit |
                              (truncateToWord(b * full) & channelBits) << bBit;
    (selector ? foreColor : backColor) = swapBytes(word);
    return 0;
}

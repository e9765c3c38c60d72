// Four half floats a pixel, from and to the 8-bit colour slots.
#include "formats/pens.h"
#include "formats/readers.h"
#include "zrdraw/half_float.h"

#include <array>

namespace {

constexpr int pixelBytes = 8;

// Every colour byte as the half that is stored for it.
constexpr auto halfOfByte = [] {
    std::array<std::uint16_t, 256> halves{};
    for (unsigned int byte = 0; byte < halves.size(); ++byte)
        halves[byte] = zrFloatToHalf(static_cast<float>(byte) / 255.0F);
    return halves;
}();

struct Floats {
    float r, g, b, a;
};

Floats readPixel(const char* address) {
    std::uint16_t halves[4];
    std::memcpy(halves, address, sizeof halves);
    return {zrHalfToFloat(halves[0]), zrHalfToFloat(halves[1]), zrHalfToFloat(halves[2]),
            zrHalfToFloat(halves[3])};
}

} // namespace

CDrawRGBAHalf::CDrawRGBAHalf(unsigned int code) : ZRDraw(code) {
    pixelType = code;
}

CDrawRGBAHalf::~CDrawRGBAHalf() = default;

unsigned int CDrawRGBAHalf::GetPitch() {
    return naturalLine(*this, ptRGBAHalf);
}

char* CDrawRGBAHalf::GetPixel(int x, int y) {
    return pullOntoCanvas(*this, x, y) ? byteAddress(*this, y, pixelBytes * x) : nullptr;
}

BytesPen<8> penOf(const CDrawRGBAHalf& draw, bool selector) {
    const unsigned int bytes = selector ? draw.foreColor : draw.backColor;
    const auto half = [bytes](int at) { return halfOfByte[bytes >> 8 * at & 0xFF]; };
    return {draw, packWords(half(0), half(1), half(2), half(3))};
}

int CDrawRGBAHalf::PutPixel(int x, int y, bool selector) {
    return putBy(*this, x, y, selector);
}

int CDrawRGBAHalf::GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) {
    const char* address = GetPixel(x, y);
    if (address == nullptr) {
        r = g = b = a = 0.0;
        return -1;
    }
    const Floats pixel = readPixel(address);
    r = pixel.r;
    g = pixel.g;
    b = pixel.b;
    a = pixel.a;
    return 0;
}

int CDrawRGBAHalf::GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) {
    return ZRPixel::GetPixelYCbCr(x, y, cy, cb, cr, a);
}

int CDrawRGBAHalf::GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) {
    return readHsv(*this, x, y, h, s, v, a, 0.0);
}

// By contract: summed in single precision, divided in double precision.
double CDrawRGBAHalf::GetLuma(int x, int y) {
    const char* address = GetPixel(x, y);
    if (address == nullptr)
        return 0.0;
    const Floats pixel = readPixel(address);
    const float sum = pixel.r + pixel.g + pixel.b;
    return sum / 3.0;
}

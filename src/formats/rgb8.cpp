// The 8-bit RGB layouts. Almost everything of theirs is what ZRPixel does; the byte orders differ
// by code in the table of layouts.
#include "formats/readers.h"
#include "pixel/byte_order.h"

namespace {

// By contract: no test of the address, unlike ZRPixel's own form.
int readYCbCr(ZRPixel& pixel, unsigned int code, int x, int y, double& cy, double& cb, double& cr,
              double& a) {
    const auto* address = reinterpret_cast<const unsigned char*>(pixel.GetPixel(x, y));
    const Rgba rgba = unpackRgba(address, byteOrderOf(code));
    a = rgba.a;
    pixel.RGBToYCbCr(rgba.r, rgba.g, rgba.b, a, cy, cb, cr, a);
    return 0;
}

} // namespace

CDrawRGBA32::CDrawRGBA32(unsigned int code) : ZRDraw(code) {
    pixelType = code;
}

CDrawRGBA32::~CDrawRGBA32() = default;

unsigned int CDrawRGBA32::GetPitch() {
    return naturalLine(*this, ptRGBA32);
}

int CDrawRGBA32::GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) {
    return readYCbCr(*this, pixelType, x, y, cy, cb, cr, a);
}

int CDrawRGBA32::GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) {
    // By contract: black off the canvas too, with an answer of 0.
    return readHsv(*this, x, y, h, s, v, a, noHue);
}

CDrawRGB24::CDrawRGB24(unsigned int code) : ZRDraw(code) {
    pixelType = code;
}

CDrawRGB24::~CDrawRGB24() = default;

unsigned int CDrawRGB24::GetPitch() {
    return naturalLine(*this, ptRGB24);
}

int CDrawRGB24::GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) {
    return readYCbCr(*this, pixelType == ptBGR24 ? ptBGR24 : ptRGB24, x, y, cy, cb, cr, a);
}

int CDrawRGB24::GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) {
    return readHsv(*this, x, y, h, s, v, a, noHue);
}

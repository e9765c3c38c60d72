// Colours in slots and colours of pixels, in the layouts of 8-bit RGB.
#include "pixel/byte_order.h"
#include "pixel/hsv.h"
#include "pixel/truncate.h"
#include "zrdraw/zrpixel.h"

#include <cstring>

namespace {

// The luma weights of GetLuma.
struct LumaRow {
    double r, g, b;
};

// By contract: these rows differ from the conversion matrices, and a raw mode shares the row of
// the mode 1000 lower.
LumaRow lumaRow(cmYCbCr mode) {
    switch (mode) {
    case cmRec601Full:
    case cmRec601FullRaw:
        return {0.257, 0.504, 0.098};
    case cmRec709:
    case cmRec709Raw:
        return {0.213, 0.715, 0.072};
    case cmRec709Full:
    case cmRec709FullRaw:
        return {0.183, 0.614, 0.062};
    case cmRec2020:
    case cmRec2020Full:
    case cmRec2020CL:
    case cmRec2020CLUncentred:
    case cmRec2020Raw:
    case cmRec2020FullRaw:
    case cmRec2020CLRaw:
    case cmRec2020CLUncentredRaw:
        return {0.2627, 0.678, 0.0593};
    default:
        return {0.299, 0.587, 0.114};
    }
}

} // namespace

void ZRPixel::BlendPixel(double& r, double& g, double& b, double r2, double g2, double b2,
                         int percent) {
    const double weight = percent / 100.0;
    r = (1 - weight) * r + weight * r2;
    g = (1 - weight) * g + weight * g2;
    b = (1 - weight) * b + weight * b2;
}

int ZRPixel::SetColorRGBA(double r, double g, double b, double a, bool selector) {
    const zrByteOrder& order = byteOrderOf(pixelType);
    unsigned char bytes[4] = {};
    bytes[order.r] = truncateToByte(r * 255.0);
    bytes[order.g] = truncateToByte(g * 255.0);
    bytes[order.b] = truncateToByte(b * 255.0);
    if (order.a >= 0)
        bytes[order.a] = truncateToByte(a * 255.0);
    std::memcpy(selector ? &foreColor : &backColor, bytes, sizeof bytes);
    return 0;
}

int ZRPixel::GetColorRGBA(double& r, double& g, double& b, double& a, bool selector) {
    unsigned char bytes[4];
    std::memcpy(bytes, selector ? &foreColor : &backColor, sizeof bytes);
    const Rgba rgba = unpackRgba(bytes, byteOrderOf(pixelType));
    r = rgba.r;
    g = rgba.g;
    b = rgba.b;
    a = rgba.a;
    return 0;
}

int ZRPixel::SetColorYCbCr(double y, double cb, double cr, double a, bool selector) {
    // By contract: the alpha that arrives is that of YCbCrToRGB, which is 0.0.
    double r = 0.0, g = 0.0, b = 0.0, alpha = 0.0;
    YCbCrToRGB(y, cb, cr, a, r, g, b, alpha);
    return SetColorRGBA(r, g, b, alpha, selector);
}

// By contract: 10-bit values are on a scale of 1024, 8-bit ones on a scale of 255.
int ZRPixel::SetColorYCbCr10(unsigned int y, unsigned int cb, unsigned int cr, unsigned int a,
                             bool selector) {
    constexpr double unit = 1.0 / 1024;
    return SetColorYCbCr(y * unit, cb * unit, cr * unit, a * unit, selector);
}

int ZRPixel::SetColorYCbCr8(unsigned char y, unsigned char cb, unsigned char cr, unsigned char a,
                            bool selector) {
    return SetColorYCbCr(y / 255.0, cb / 255.0, cr / 255.0, a / 255.0, selector);
}

int ZRPixel::GetColorYCbCr(double& y, double& cb, double& cr, double& a, bool selector) {
    double r = 0.0, g = 0.0, b = 0.0;
    GetColorRGBA(r, g, b, a, selector);
    RGBToYCbCr(r, g, b, a, y, cb, cr, a);
    return 0;
}

int ZRPixel::GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) {
    const char* address = GetPixel(x, y);
    if (address == nullptr) {
        r = g = b = a = 0.0;
        return -1;
    }
    const Rgba rgba =
        unpackRgba(reinterpret_cast<const unsigned char*>(address), byteOrderOf(pixelType));
    r = rgba.r;
    g = rgba.g;
    b = rgba.b;
    a = rgba.a;
    return 0;
}

int ZRPixel::GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) {
    double r = 0.0, g = 0.0, b = 0.0;
    if (GetPixelRGBA(x, y, r, g, b, a) != 0) {
        cy = cb = cr = a = 0.0;
        return -1;
    }
    return RGBToYCbCr(r, g, b, a, cy, cb, cr, a);
}

int ZRPixel::GetPixelYCbCr8(int x, int y, unsigned char& cy, unsigned char& cb, unsigned char& cr,
                            unsigned char& a) {
    double values[4] = {};
    const int status = GetPixelYCbCr(x, y, values[0], values[1], values[2], values[3]);
    cy = truncateToByte(values[0] * 255.0);
    cb = truncateToByte(values[1] * 255.0);
    cr = truncateToByte(values[2] * 255.0);
    a = truncateToByte(values[3] * 255.0);
    return status;
}

int ZRPixel::GetPixelYCbCr10(int x, int y, unsigned int& cy, unsigned int& cb, unsigned int& cr,
                             unsigned int& a) {
    double values[4] = {};
    const int status = GetPixelYCbCr(x, y, values[0], values[1], values[2], values[3]);
    cy = truncateToWord(values[0] * 1024.0);
    cb = truncateToWord(values[1] * 1024.0);
    cr = truncateToWord(values[2] * 1024.0);
    a = truncateToWord(values[3] * 1024.0);
    return status;
}

int ZRPixel::GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) {
    double r = 0.0, g = 0.0, b = 0.0;
    if (GetPixelRGBA(x, y, r, g, b, a) != 0) {
        h = s = v = a = 0.0;
        return -1;
    }
    const Hsv hsv = toHsv(r, g, b, 0.0);
    h = hsv.h;
    s = hsv.s;
    v = hsv.v;
    return 0;
}

double ZRPixel::GetLuma(int x, int y) {
    const char* address = GetPixel(x, y);
    // By contract: code 6 is read in the byte order of code 5.
    const zrByteOrder& order = byteOrderOf(pixelType == ptBGR24 ? ptRGB24 : pixelType);
    const auto channel = [address](signed char at) {
        return static_cast<double>(static_cast<unsigned char>(address[at]));
    };
    const LumaRow row = lumaRow(yCbCrMode);
    return (row.r * channel(order.r) + row.g * channel(order.g) + row.b * channel(order.b)) / 256;
}

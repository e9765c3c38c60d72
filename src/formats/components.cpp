// Interleaved components: 16-bit Y, Cb, Cr with and without a fourth word, and the chroma planes.
// The classes are alike but for the bytes of a pixel and what stands in them.
#include "formats/readers.h"
#include "pixel/truncate.h"

#include <array>

namespace {

constexpr double scale = 65536.0;
constexpr double per65536 = 1.0 / 65536;

// Bytes of a pixel.
constexpr int yCbCrBytes = 6, yCbCrABytes = 8, uv8Bytes = 2, uv16Bytes = 4;

constexpr zrYcc foreground16{0xEB00, 0x8000, 0x8000};
constexpr zrYcc background16{0x1000, 0x8000, 0x8000};

int setCanvas(ZRPixel& pixel, char* canvas, int height, int width, int pitch, int bytes) {
    pixel.ZRPixel::SetCanvas(canvas, height, width, pitch);
    return setSignedCanvas(pixel, canvas, height, width,
                           static_cast<unsigned int>(std::max(width * bytes, pitch)));
}

char* addressOf(const ZRPixel& pixel, int x, int y, int bytes) {
    return pullOntoCanvas(pixel, x, y) ? byteAddress(pixel, y, bytes * x) : nullptr;
}

// Writes a pixel at column `stride` * x. Samples are cut, so 1.0 is stored as 0.
template <typename Sample, typename... Values>
int put(const ZRPixel& pixel, int x, int y, int stride, Values... values) {
    if (!pullOntoCanvas(pixel, x, y))
        return -1;
    const Sample samples[] = {static_cast<Sample>(values)...};
    std::memcpy(byteAddress(pixel, y, stride * x), samples, sizeof samples);
    return 0;
}

double wordAt(const char* address, int at) {
    return loadAs<unsigned short>(address + 2 * at) * per65536;
}

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

// Through the virtual GetPixelYCbCr.
int readRgba(ZRPixel& pixel, int x, int y, double& r, double& g, double& b, double& a) {
    double cy = 0.0, cb = 0.0, cr = 0.0, alpha = 0.0;
    if (pixel.GetPixelYCbCr(x, y, cy, cb, cr, alpha) != 0) {
        r = g = b = a = 0.0;
        return -1;
    }
    return pixel.YCbCrToRGB(cy, cb, cr, alpha, r, g, b, a);
}

// By contract: off the canvas the program stops.
double readLuma(ZRPixel& pixel, int x, int y) {
    const char* address = pixel.GetPixel(x, y);
    if (address == nullptr)
        __builtin_trap();
    return wordAt(address, 0);
}

zrYcc packed(double y, double cb, double cr) {
    return {truncateToWord(y * scale), truncateToWord(cr * scale), truncateToWord(cb * scale)};
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
    return put<unsigned short>(*this, x, y, yCbCrBytes, color.first, color.second, color.third);
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
    return put<unsigned short>(*this, x, y, yCbCrBytes, color.first, color.second, color.third,
                               color.fourth);
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

// By contract: the low eight bits of a colour on the scale of 65536, not the high ones.
int CDrawUV8::PutPixel(int x, int y, bool selector) {
    const zrYcc& color = selector ? yccForeground : yccBackground;
    return put<unsigned char>(*this, x, y, uv8Bytes, color.second, color.third);
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
    const zrYcc& color = selector ? yccForeground : yccBackground;
    return put<unsigned short>(*this, x, y, uv16Bytes, color.second, color.third);
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

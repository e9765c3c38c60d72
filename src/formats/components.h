// What the 16-bit Y, Cb, Cr layouts and the chroma planes share. They differ in the bytes of a
// pixel and in what stands in them.
#pragma once

#include "formats/readers.h"
#include "pixel/truncate.h"

namespace components {

inline constexpr double scale = 65536.0;
inline constexpr double per65536 = 1.0 / 65536;

inline constexpr zrYcc foreground16{0xEB00, 0x8000, 0x8000};
inline constexpr zrYcc background16{0x1000, 0x8000, 0x8000};

inline int setCanvas(ZRPixel& pixel, char* canvas, int height, int width, int pitch, int bytes) {
    pixel.ZRPixel::SetCanvas(canvas, height, width, pitch);
    return setSignedCanvas(pixel, canvas, height, width,
                           static_cast<unsigned int>(std::max(width * bytes, pitch)));
}

inline char* addressOf(const ZRPixel& pixel, int x, int y, int bytes) {
    return pullOntoCanvas(pixel, x, y) ? byteAddress(pixel, y, bytes * x) : nullptr;
}

// Writes a pixel at column `stride` * x. Samples are cut, so 1.0 is stored as 0.
template <typename... Values>
int put(const ZRPixel& pixel, int x, int y, int stride, Values... values) {
    if (!pullOntoCanvas(pixel, x, y))
        return -1;
    const unsigned short samples[] = {static_cast<unsigned short>(values)...};
    std::memcpy(byteAddress(pixel, y, stride * x), samples, sizeof samples);
    return 0;
}

inline double wordAt(const char* address, int at) {
    return loadAs<unsigned short>(address + 2 * at) * per65536;
}

// Through the virtual GetPixelYCbCr.
inline int readRgba(ZRPixel& pixel, int x, int y, double& r, double& g, double& b, double& a) {
    double cy = 0.0, cb = 0.0, cr = 0.0, alpha = 0.0;
    if (pixel.GetPixelYCbCr(x, y, cy, cb, cr, alpha) != 0) {
        r = g = b = a = 0.0;
        return -1;
    }
    return pixel.YCbCrToRGB(cy, cb, cr, alpha, r, g, b, a);
}

inline zrYcc packed(double y, double cb, double cr) {
    return {truncateToWord(y * scale), truncateToWord(cr * scale), truncateToWord(cb * scale)};
}

} // namespace components

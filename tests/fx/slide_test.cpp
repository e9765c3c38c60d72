#include "fx/frames.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace {

constexpr unsigned int lastSlide = 515; // those behind zrSlideDown7 draw nothing

// What a pixel of the destination shows: of the moving frame where it still is, else of the other.
void reference(const zrfxFXArgs& a, unsigned int b, unsigned char* dst) {
    const unsigned int scale = a.rangeEnd - a.rangeStart;
    const int n = static_cast<int>(std::min(a.height, a.height * a.position / scale));
    const int m = static_cast<int>(std::min(a.width, a.width * a.position / scale));
    const int width = static_cast<int>(a.width), height = static_cast<int>(a.height);
    const bool sideways = a.wipeCode == zrSlideLeft || a.wipeCode == zrSlideRight;
    const int dx = sideways ? (a.wipeCode == zrSlideLeft ? m : -m) : 0;
    const int dy = sideways ? 0 : (a.wipeCode == zrSlideUp ? n : -n);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const int fromX = x + dx, fromY = y + dy;
            const bool moving = fromX >= 0 && fromX < width && fromY >= 0 && fromY < height;
            const int from = moving ? fromY * width + fromX : y * width + x;
            std::memcpy(dst + static_cast<unsigned int>(y * width + x) * b,
                        (moving ? a.srcA : a.srcB) + static_cast<unsigned int>(from) * b, b);
        }
}

TEST(Slide, MovesTheFirstFrameOffTheSecond) {
    Random random(seed);
    unsigned int number = 0;
    for (unsigned int code = zrSlideUp; code <= lastSlide; ++code)
        for (const unsigned int width : {1U, 2U, 7U, 16U})
            for (const unsigned int height : {1U, 2U, 5U, 12U})
                for (const unsigned int scale : {16U, 25U})
                    for (const unsigned int position :
                         {0U, 1U, 8U, 15U, scale, scale + 1, 200U, 0x20000001U, 0xFFFFFFFFU}) {
                        // The last two are no layouts.
                        const unsigned int at = number++ % (std::size(groups) + 2);
                        const Group layout =
                            at < std::size(groups) ? groups[at] : Group{at % 2 * 89 + 10, 4, 4};
                        const std::size_t bytes = width * height * layout.bytes;
                        Frame a(bytes, random), b(bytes, random), dst(bytes), expected(bytes);
                        zrfxFXArgs args =
                            argsOf(a, b, dst, 5, code, layout.pixelType, width, height);
                        args.rangeStart = 7;
                        args.rangeEnd = scale + 7;
                        args.position = position;
                        if (code <= zrSlideDown7)
                            reference(args, layout.bytes, expected.data());
                        EXPECT_TRUE(runBands(zrfxSLIDE_Basic, args));
                        ASSERT_EQ(dst, expected)
                            << code << ' ' << width << 'x' << height << " at " << position << " of "
                            << scale << ", type " << layout.pixelType << ", seed " << seed;
                    }
}

TEST(Slide, SwappedCodesAndOtherBandsWriteNothing) {
    Frame a(64, 1), b(64, 2), dst(64);
    zrfxFXArgs args{a.data(), 16, b.data(), 16, dst.data(), 16, 0, ptRGBA32, 4, 4};
    args.rangeEnd = 4;
    args.position = 2;
    std::vector<unsigned int> codes{0, 1, zrSlideUp - 1, lastSlide + 1};
    for (unsigned int code = zrSlideUp; code <= lastSlide; ++code)
        codes.push_back(code | zrWipeSwap);
    for (const unsigned int code : codes) {
        args.wipeCode = code;
        EXPECT_TRUE(runBands(zrfxSLIDE_Basic, args));
    }
    args.wipeCode = zrSlideUp;
    EXPECT_EQ(callWith(zrfxSLIDE_Basic, args, 1U, 4U, 0U, 4U), 0U);
    EXPECT_EQ(callWith(zrfxSLIDE_Basic, args, 0U, 4U, 1U, 4U), 0U);
    EXPECT_EQ(dst, Frame(64));
}

} // namespace

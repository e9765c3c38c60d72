// Wipes and slides against a rule for one pixel.
#include "fx/frames.h"

namespace {

// A pixel and the edges; everything wraps at 2 to the 32.
struct At {
    unsigned int x, y, width, height, ew, eh, hw, hh;

    unsigned int cx() const { return width >> 1; }
    unsigned int cy() const { return height >> 1; }
    bool midX() const { return hw < x && x < width - hw; }
    bool midY() const { return hh < y && y < height - hh; }
};

struct Wipe {
    const char* name;
    zrfxKernel* kernel;
    bool (*incoming)(const At&);
};

const Wipe wipes[] = {
    {"Horizontal", zrfxSMPTE_Horizontal, [](const At& p) { return p.x < p.ew; }},
    {"Vertical", zrfxSMPTE_Vertical, [](const At& p) { return p.y < p.eh; }},
    {"TopLeft", zrfxSMPTE_TopLeft, [](const At& p) { return p.x < p.ew && p.y < p.eh; }},
    {"TopRight", zrfxSMPTE_TopRight,
     [](const At& p) { return p.width - p.x <= p.ew && p.y < p.eh; }},
    {"BottomRight", zrfxSMPTE_BottomRight,
     [](const At& p) { return p.x > p.width - p.ew && p.y > p.height - p.eh; }},
    {"BottomLeft", zrfxSMPTE_BottomLeft,
     [](const At& p) { return p.x < p.ew && p.height - p.y < p.eh; }},
    {"FourCorners", zrfxSMPTE_FourCorners, [](const At& p) { return !p.midX() && !p.midY(); }},
    {"FourSquare", zrfxSMPTE_FourSquare, [](const At& p) { return !(p.midX() && p.midY()); }},
    {"BarnDoorVertical", zrfxSMPTE_BarnDoorVertical, [](const At& p) { return !p.midX(); }},
    {"BarnDoorHorizontal", zrfxSMPTE_BarnDoorHorizontal, [](const At& p) { return !p.midY(); }},
    {"TopCenter", zrfxSMPTE_TopCenter,
     [](const At& p) { return !(p.y < p.height - p.eh && p.midX()); }},
    {"RightCenter", zrfxSMPTE_RightCenter, [](const At& p) { return !(p.midY() && p.x > p.ew); }},
    {"BottomCenter", zrfxSMPTE_BottomCenter, [](const At& p) { return !(p.y > p.eh && p.midX()); }},
    {"LeftCenter", zrfxSMPTE_LeftCenter,
     [](const At& p) { return !(p.midY() && p.x < p.width - p.ew); }},
    {"Rectangle", zrfxSMPTE_Rectangle,
     [](const At& p) {
         return p.y > p.cy() - p.hh && p.y < p.hh + p.height - p.cy() && p.x >= p.cx() - p.hw &&
                p.x <= p.hw + p.width - p.cx();
     }},
};

// Pixel by pixel; the vertical wipe takes whole lines, of the other frame's length.
void reference(const Wipe& wipe, const zrfxFXArgs& a, unsigned int bytes, unsigned char* dst) {
    const bool swapped = (a.wipeCode & zrWipeSwap) != 0;
    const auto edgeOf = [&](unsigned int size) {
        return size * a.position / (a.rangeEnd - a.rangeStart);
    };
    At at{0,
          0,
          a.width,
          a.height,
          edgeOf(a.width),
          edgeOf(a.height),
          edgeOf(a.width / 2),
          edgeOf(a.height / 2)};
    for (at.y = 0; at.y < a.height; ++at.y) {
        const unsigned char* lineA = a.srcA + at.y * a.pitchA;
        const unsigned char* lineB = a.srcB + at.y * a.pitchB;
        unsigned char* to = dst + at.y * a.pitchB;
        if (wipe.kernel == zrfxSMPTE_Vertical) {
            const bool incoming = wipe.incoming(at);
            std::memcpy(to, incoming == swapped ? lineA : lineB, incoming ? a.pitchA : a.pitchB);
            continue;
        }
        for (at.x = 0; at.x < a.width; ++at.x) {
            const unsigned char* from = wipe.incoming(at) == swapped ? lineA : lineB;
            std::memcpy(to + at.x * bytes, from + at.x * bytes, bytes);
        }
    }
}

// Runs a wipe on frames of their own pitches and compares; `number` varies what need not be
// crossed.
void compare(const Wipe& wipe, unsigned int width, unsigned int height, unsigned int scale,
             unsigned int position, unsigned int number) {
    const Group& group = groups[number % std::size(groups)];
    const unsigned int line = width * group.bytes;
    const std::size_t bytes = height * (line + std::size_t{32}) + 32;
    Random random(seed + number);
    Frame frameA(bytes, random), frameB(bytes, random), dst(bytes), expected(bytes);
    zrfxFXArgs a = argsOf(frameA, frameB, dst, 3, 77, group.pixelType, width, height);
    a.pitchA = line + 16 * (number / 2 % 3);
    a.pitchB = line + 16 * (number / 3 % 3);
    // Of the positions each comes with and without it.
    if (number % 2 != 0)
        a.wipeCode |= zrWipeSwap;
    a.rangeStart = number % 5;
    a.rangeEnd = scale + a.rangeStart;
    a.position = position;
    reference(wipe, a, group.bytes, expected.data());
    EXPECT_TRUE(runBands(wipe.kernel, a));
    ASSERT_EQ(dst, expected) << wipe.name << ' ' << width << 'x' << height << " at " << position
                             << " of " << scale << ", type " << group.pixelType << ", number "
                             << number << ", seed " << seed;
}

TEST(Wipe, PicksEveryPixelByItsPlace) {
    constexpr unsigned int sizes[] = {1, 2, 3, 4, 7, 8, 16, 27, 40};
    unsigned int number = 0;
    for (const Wipe& wipe : wipes) {
        for (const unsigned int width : sizes)
            for (const unsigned int height : sizes)
                for (const unsigned int scale : {16U, 25U, 65536U})
                    for (const unsigned int position :
                         {0U, 1U, scale / 3, scale / 2, scale / 2 + 1, scale - 1, scale, scale + 1,
                          scale * 2 + 3, scale * 90, 0x08000001U, 0xFFFFFFFFU,
                          0x20000000U + scale / 3}) { // which wraps to a third
                        compare(wipe, width, height, scale, position, number++);
                        if (HasFatalFailure())
                            return;
                    }
    }
}

constexpr unsigned int lastSlide = 515; // those behind zrSlideDown7 draw nothing

// What a pixel of the destination shows: of the moving frame where it still is, else of the other.
void referenceSlide(const zrfxFXArgs& a, unsigned int b, unsigned char* dst) {
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
    for (unsigned int code = zrSlideUp - 1; code <= lastSlide + 1; ++code)
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
                        if (number % 5 == 0)
                            args.wipeCode |= zrWipeSwap; // draws nothing
                        if (args.wipeCode >= zrSlideUp && args.wipeCode <= zrSlideDown7)
                            referenceSlide(args, layout.bytes, expected.data());
                        EXPECT_TRUE(runBands(zrfxSLIDE_Basic, args));
                        ASSERT_EQ(dst, expected)
                            << code << ' ' << width << 'x' << height << " at " << position << " of "
                            << scale << ", type " << layout.pixelType << ", seed " << seed;
                    }
}

TEST(Slide, OtherBandsWriteNothing) {
    Frame a(64, 1), b(64, 2), dst(64);
    zrfxFXArgs args = argsOf(a, b, dst, 16, zrSlideUp, ptRGBA32, 4, 4);
    args.rangeEnd = 4;
    args.position = 2;
    for (const unsigned int x : {0U, 1U})
        EXPECT_EQ(callWith(zrfxSLIDE_Basic, args, x, 4U, 1 - x, 4U), 0U);
    EXPECT_EQ(dst, Frame(64));
}

} // namespace

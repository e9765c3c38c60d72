#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "fx/frames.h"

namespace {

constexpr unsigned int swapBit = 0x80000000U;

// A pixel and the edges; everything wraps at 2 to the 32.
struct At {
    unsigned int x, y, width, height, ew, eh, hw, hh;

    unsigned int cx() const { return width >> 1; }
    unsigned int cy() const { return height >> 1; }
    bool midX() const { return hw < x && x < width - hw; }
    bool midY() const { return hh < y && y < height - hh; }
};

enum Part : unsigned int { None = 0, Corner = 1, Line0 = 2, Column0 = 4 };

struct Wipe {
    const char* name;
    zrfxKernel* kernel;
    bool (*incoming)(const At&);
    unsigned int incomingAtStart, outgoingAtEnd; // parts
};

const Wipe wipes[] = {
    {"Horizontal", zrfxSMPTE_Horizontal, [](const At& p) { return p.x < p.ew; }, None, None},
    {"Vertical", zrfxSMPTE_Vertical, [](const At& p) { return p.y < p.eh; }, None, None},
    {"TopLeft", zrfxSMPTE_TopLeft, [](const At& p) { return p.x < p.ew && p.y < p.eh; }, None,
     None},
    {"TopRight", zrfxSMPTE_TopRight,
     [](const At& p) { return p.width - p.x <= p.ew && p.y < p.eh; }, None, None},
    {"BottomRight", zrfxSMPTE_BottomRight,
     [](const At& p) { return p.x > p.width - p.ew && p.y > p.height - p.eh; }, None,
     Line0 | Column0},
    {"BottomLeft", zrfxSMPTE_BottomLeft,
     [](const At& p) { return p.x < p.ew && p.height - p.y < p.eh; }, None, Line0},
    {"FourCorners", zrfxSMPTE_FourCorners, [](const At& p) { return !p.midX() && !p.midY(); },
     Corner, None},
    {"FourSquare", zrfxSMPTE_FourSquare, [](const At& p) { return !(p.midX() && p.midY()); },
     Line0 | Column0, None},
    {"BarnDoorVertical", zrfxSMPTE_BarnDoorVertical, [](const At& p) { return !p.midX(); }, Column0,
     None},
    {"BarnDoorHorizontal", zrfxSMPTE_BarnDoorHorizontal, [](const At& p) { return !p.midY(); },
     Line0, None},
    {"TopCenter", zrfxSMPTE_TopCenter,
     [](const At& p) { return !(p.y < p.height - p.eh && p.midX()); }, Column0, None},
    {"RightCenter", zrfxSMPTE_RightCenter, [](const At& p) { return !(p.midY() && p.x > p.ew); },
     Line0 | Column0, None},
    {"BottomCenter", zrfxSMPTE_BottomCenter, [](const At& p) { return !(p.y > p.eh && p.midX()); },
     Line0 | Column0, None},
    {"LeftCenter", zrfxSMPTE_LeftCenter,
     [](const At& p) { return !(p.midY() && p.x < p.width - p.ew); }, Line0, None},
    {"Rectangle", zrfxSMPTE_Rectangle,
     [](const At& p) {
         return p.y > p.cy() - p.hh && p.y < p.hh + p.height - p.cy() && p.x >= p.cx() - p.hw &&
                p.x <= p.hw + p.width - p.cx();
     },
     None, Line0},
};

At edges(const zrfxFXArgs& a) {
    const unsigned int scale = a.rangeEnd - a.rangeStart, p = a.position;
    return {0,
            0,
            a.width,
            a.height,
            a.width * p / scale,
            a.height * p / scale,
            (a.width >> 1) * p / scale,
            (a.height >> 1) * p / scale};
}

// Pixel by pixel; the vertical wipe takes whole lines, of the other frame's length.
void reference(const Wipe& wipe, const zrfxFXArgs& a, unsigned int bytes, unsigned char* dst) {
    const bool swapped = (a.wipeCode & swapBit) != 0;
    At at = edges(a);
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
    zrfxFXArgs a{};
    a.wipeCode = 77 | (number % 2 == 0 ? 0 : swapBit);
    a.pixelType = group.pixelType;
    a.width = width;
    a.height = height;
    a.pitchA = width * group.bytes + 16 * (number / 2 % 3);
    a.pitchB = width * group.bytes + 16 * (number / 3 % 3);
    a.pitchDst = 3;
    a.rangeStart = number % 5;
    a.rangeEnd = scale + a.rangeStart;
    a.position = position;
    const std::size_t bytes = height * (width * group.bytes + std::size_t{32}) + 32;
    Random random(seed + number);
    Frame frameA(bytes, random), frameB(bytes, random), dst(bytes), expected(bytes);
    a.srcA = frameA.data();
    a.srcB = frameB.data();
    a.dst = dst.data();
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
                          scale * 2 + 3, scale * 90, 0x08000001U, 0xFFFFFFFFU}) {
                        compare(wipe, width, height, scale, position, number++);
                        if (HasFatalFailure())
                            return;
                    }
    }
}

// '#' for the incoming and '.' for the outgoing frame.
std::string picture(zrfxKernel* kernel, unsigned int width, unsigned int height, unsigned int scale,
                    unsigned int position, bool swapped = false) {
    const unsigned int pitch = width * 4;
    Frame outgoing(pitch * height, '.'), incoming(pitch * height, '#'), dst(pitch * height, '?');
    zrfxFXArgs a{};
    a.srcA = (swapped ? incoming : outgoing).data();
    a.srcB = (swapped ? outgoing : incoming).data();
    a.dst = dst.data();
    a.pitchA = a.pitchB = pitch;
    a.wipeCode = swapped ? swapBit : 0;
    a.pixelType = 1;
    a.width = width;
    a.height = height;
    a.rangeEnd = scale;
    a.position = position;
    EXPECT_TRUE(runBands(kernel, a));
    std::string rows;
    for (unsigned int y = 0; y < height; ++y, rows += '\n')
        for (unsigned int x = 0; x < width; ++x)
            rows += static_cast<char>(dst.data()[y * pitch + x * 4]);
    return rows;
}

std::string withParts(unsigned int parts, char inside, char outside, unsigned int width,
                      unsigned int height) {
    std::string rows;
    for (unsigned int y = 0; y < height; ++y, rows += '\n')
        for (unsigned int x = 0; x < width; ++x) {
            const bool in = ((parts & Corner) != 0 && x == 0 && y == 0) ||
                            ((parts & Line0) != 0 && y == 0) || ((parts & Column0) != 0 && x == 0);
            rows += in ? inside : outside;
        }
    return rows;
}

TEST(Wipe, ShowsFewPixelsOfTheOtherFrameAtItsEnds) {
    constexpr std::pair<unsigned int, unsigned int> sizes[] = {{16, 12}, {15, 11}, {5, 8}, {8, 5}};
    for (const Wipe& wipe : wipes) {
        for (const auto& [width, height] : sizes) {
            for (const bool swapped : {false, true}) {
                SCOPED_TRACE(std::string(wipe.name) + (swapped ? " swapped" : ""));
                EXPECT_EQ(picture(wipe.kernel, width, height, 16, 0, swapped),
                          withParts(wipe.incomingAtStart, '#', '.', width, height));
                EXPECT_EQ(picture(wipe.kernel, width, height, 16, 16, swapped),
                          withParts(wipe.outgoingAtEnd, '.', '#', width, height));
            }
        }
    }
}

std::string repeated(const char* row, int count) {
    std::string rows;
    for (int i = 0; i < count; ++i)
        rows += std::string(row) + '\n';
    return rows;
}

TEST(Wipe, HalfWay) {
    EXPECT_EQ(picture(zrfxSMPTE_Horizontal, 16, 12, 16, 8), repeated("########........", 12));
    EXPECT_EQ(picture(zrfxSMPTE_Rectangle, 16, 12, 16, 8), repeated("................", 4) +
                                                               repeated("....#########...", 5) +
                                                               repeated("................", 3));
    EXPECT_EQ(picture(zrfxSMPTE_FourCorners, 16, 12, 16, 8), repeated("#####.......####", 4) +
                                                                 repeated("................", 5) +
                                                                 repeated("#####.......####", 3));
}

TEST(Wipe, OfUnknownLayoutsWritesNothing) {
    for (const Wipe& wipe : wipes) {
        for (const unsigned int type : {0U, 7U, 10U, 14U, 28U, 37U, 38U, 0xFFFFFFFFU}) {
            Frame a(64, 1), b(64, 2), dst(64);
            zrfxFXArgs args{a.data(), 8, b.data(), 8, dst.data(), 8, 1, type, 2, 2};
            args.rangeEnd = 4;
            args.position = 2;
            EXPECT_TRUE(runBands(wipe.kernel, args));
            EXPECT_EQ(dst, Frame(64)) << wipe.name << ' ' << type;
        }
    }
}

} // namespace

// What the modes of the mux do to whole lines and behind them, its guards and its grid.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "fx/frames.h"
#include "platform/injection.h"
#include "zrdraw/mux.h"

namespace {

constexpr unsigned int second = zrMuxSecondForm, divider = zrMuxDivider;

struct Call {
    unsigned int flags, width, height, pitch;
    unsigned int position = 0, param = 0, splitX = 0, splitY = 0;
    unsigned int gridMode = 0, gridX = 0, gridY = 0;
};

unsigned int run(const Call& c, Frame& a, Frame& b, Frame& dst) {
    return ZRDraw_DisplayMuxRGBA(a.data(), 0, b.data(), 0, dst.data(), 0, c.flags, 0, c.position,
                                 c.param, c.splitX, c.splitY, c.gridMode, c.gridX, c.gridY, c.width,
                                 c.height, c.pitch);
}

unsigned int pixelAt(Frame& frame, unsigned int pixel) {
    unsigned int value;
    std::memcpy(&value, frame.data() + 4 * std::size_t{pixel}, sizeof value);
    return value;
}

void put(Frame& frame, unsigned int pixel, unsigned int value) {
    std::memcpy(frame.data() + 4 * std::size_t{pixel}, &value, sizeof value);
}

// Lines of one byte each: 'A' and 'B' of the sources and the line's number, "##" grey, "--" kept.
std::string linesOf(Frame& dst, unsigned int height, unsigned int pitch) {
    std::string text;
    for (unsigned int y = 0; y < height; ++y) {
        const unsigned char* line = dst.data() + y * pitch;
        const unsigned char byte = *line;
        const bool uniform = std::count(line, line + pitch, byte) == pitch;
        text += !uniform ? "??" : byte == 0x80 ? "##" : byte == 0x5A ? "--" : "";
        if (uniform && byte != 0x80 && byte != 0x5A)
            text += (byte < 0x80 ? "A" : "B") + std::to_string(byte & 0xF);
        text += ' ';
    }
    return text;
}

TEST(MuxLines, AreCopiedWithAllTheirBytes) {
    struct Row {
        unsigned int flags, height, splitY;
        const char* lines;
    };
    const Row rows[] = {
        {0x40, 5, 0, "A0 B1 A2 B3 A4 "},
        {0x200, 5, 0, "A0 A2 B0 B2 -- "},
        {0x200, 1, 0, "-- "},
        {0x800 | second, 5, 2, "A0 A1 B2 B3 B4 "},
        {0x800 | second, 5, 5, "A0 A1 A2 A3 A4 "},
        {0x800 | second, 5, 6, "A0 A1 B2 B3 B4 "},
        {0x800 | second | divider, 5, 3, "A0 A1 A2 ## B4 "},
        {0x800 | second | divider, 3, 0, "## B1 B2 "},
        {0x800 | second | divider, 3, 3, "A0 A1 A2 "},
        {0x1000 | second, 5, 0, "A0 A1 B2 B1 B0 "},
        {0x2000 | second, 6, 0, "A0 A1 A2 B3 B2 B1 "},
        {0x1000 | second, 1, 0, "B0 "},
    };
    for (const Row& row : rows) {
        Call c{row.flags, 3, row.height, 20};
        c.splitY = row.splitY;
        Frame a(20 * 6), b(20 * 6), dst(20 * 6);
        for (unsigned int y = 0; y < 6; ++y) {
            std::memset(a.data() + 20 * y, static_cast<int>(0x10 + y), 20);
            std::memset(b.data() + 20 * y, static_cast<int>(0xC0 + y), 20);
        }
        run(c, a, b, dst);
        EXPECT_EQ(linesOf(dst, row.height, 20), row.lines) << std::hex << row.flags;
        std::memset(dst.data(), 0x5A, 20 * row.height);
        EXPECT_EQ(dst, Frame(20 * 6)) << "behind, " << std::hex << row.flags;
    }
}

constexpr unsigned int pixelModes[] = {
    4,      8,      0x10,   0x20,   0x40 | second, 0x80,    0x100,   0x800,   0x800 | divider,
    0x1000, 0x2000, 0x4000, 0x8000, 0x10000,       0x40000, 0x80000, 0x800000};

TEST(MuxLines, OfPixelModesKeepWhatIsBehindThem) {
    Random random(seed);
    for (const unsigned int flags : pixelModes)
        for (const unsigned int width : {1U, 6U, 9U, 33U}) {
            constexpr unsigned int height = 4;
            const unsigned int pitch = width * 4 + 12;
            Frame a(pitch * height, random), b(pitch * height, random), dst(pitch * height);
            Call c{flags, width, height, pitch};
            c.splitX = width / 2;
            run(c, a, b, dst);
            for (unsigned int y = 0; y < height; ++y)
                std::memset(dst.data() + y * pitch, 0x5A, width * 4);
            EXPECT_EQ(dst, Frame(pitch * height)) << std::hex << flags << ", width " << width;
        }
}

TEST(MuxLines, HaveTheirDividerAlsoBehindTheLastPixel) {
    Frame a(24, 1), b(24, 2), dst(24), expected(24);
    Call c{0x800 | divider, 4, 1, 24};
    c.splitX = 4;
    run(c, a, b, dst);
    std::memset(expected.data(), 1, 16);
    put(expected, 4, 0x80808080);
    EXPECT_EQ(dst, expected);
}

TEST(MuxBlocks, AreAtMostAHundredPixels) {
    constexpr unsigned int size = 205, pitch = size * 4;
    Frame a(pitch * size, 0xA), b(pitch * size, 0xB), dst(pitch * size);
    Call c{0x80000, size, size, pitch};
    c.position = 0xFFFF;
    run(c, a, b, dst);
    for (unsigned int y = 0; y < size; ++y)
        for (unsigned int x = 0; x < size; ++x)
            ASSERT_EQ(pixelAt(dst, y * size + x),
                      (x / 100 + y / 100) % 2 == 0 ? 0x0A0A0A0AU : 0x0B0B0B0BU)
                << x << ' ' << y;
}

TEST(MuxDifference, IsGreyAndWraps) {
    struct Row {
        unsigned int a, b, param, out;
    };
    const Row rows[] = {{0x12345678, 0x12345678, 0, 0x808080},
                        {0x10, 0x11, 0, 0xFFFFFF},
                        {0x1100, 0x1200, 0, 0xFFFFFF},
                        {0x110000, 0x120000, 0, 0xFFFFFF},
                        {0x20, 0, 1, 0x909090},
                        {0x20, 0, 256, 0x909090},
                        {0x20, 0, 2, 0xA0A0A0},
                        {0x20, 0, 255, 0xFFFFFF},
                        {0x2000, 0x20, 3, 0xFFFFFF},
                        {0x200000, 0, 3, 0xB0B0B0}};
    for (const Row& row : rows) {
        Frame a(4), b(4), dst(4);
        put(a, 0, row.a);
        put(b, 0, row.b);
        Call c{0x100, 1, 1, 4};
        c.param = row.param;
        run(c, a, b, dst);
        EXPECT_EQ(pixelAt(dst, 0), row.out)
            << std::hex << row.a << ' ' << row.b << ' ' << row.param;
    }
}

TEST(MuxSqueeze, WithoutABufferDrawsTheSecondOnly) {
    Random random(seed);
    for (const unsigned int width : {1U, 2U, 7U, 10U})
        for (const bool fails : {false, true}) {
            const InjectionGuard guard;
            if (fails)
                injection().alloc = [](unsigned int) -> void* { return nullptr; };
            const std::size_t bytes = width * 4 * 3 + 4;
            Frame a(bytes, random), b(bytes, random), dst(bytes), expected(bytes);
            for (unsigned int y = 0; y < 3; ++y)
                for (unsigned int x = 0; 2 * x < width && !fails; ++x)
                    put(expected, y * width + x, pixelAt(a, y * width + 2 * x));
            for (unsigned int y = 0; y < 3; ++y)
                for (unsigned int x = 0; 2 * x < width; ++x)
                    std::memcpy(expected.data() + 4 * (y * width + x) + 2 * width,
                                b.data() + 4 * (y * width + 2 * x), 4);
            run({0x400, width, 3, width * 4 + 8}, a, b, dst);
            EXPECT_EQ(dst, expected) << width << (fails ? " fails" : "") << ", seed " << seed;
        }
}

// Pixel for pixel in turns, so that on an odd width the last of A comes after the first of B.
TEST(MuxTwoUp, PutsThePicturesSideBySide) {
    Random random(seed);
    for (const unsigned int width : {1U, 2U, 5U, 8U})
        for (const unsigned int height : {1U, 2U, 3U, 6U, 7U}) {
            const unsigned int bytes = width * height * 4;
            Frame a(bytes, random), b(bytes, random), dst(bytes), expected(bytes);
            std::memset(expected.data(), 0, bytes);
            for (unsigned int r = 0; r < height; r += 2)
                for (unsigned int x = 0; x < width; x += 2) {
                    const unsigned int line = (r / 2 + height / 4) * width;
                    put(expected, line + x / 2, pixelAt(a, r * width + x));
                    put(expected, line + width / 2 + x / 2, pixelAt(b, r * width + x));
                }
            run({0x100000, width, height, 999}, a, b, dst);
            EXPECT_EQ(dst, expected) << width << 'x' << height << ", seed " << seed;
        }
}

// '#' for grid bytes all over, '.' for kept ones, a character for each four bytes of a line.
std::string gridOf(Frame& dst, unsigned int words, unsigned int height) {
    std::string rows;
    for (unsigned int y = 0; y < height; ++y, rows += '\n')
        for (unsigned int x = 0; x < words; ++x) {
            const unsigned int pixel = pixelAt(dst, y * words + x);
            rows += pixel == 0xBFBFBFBF ? '#' : pixel == 0x5A5A5A5A ? '.' : '?';
        }
    return rows;
}

TEST(MuxGrid, IsByPercentOrPixels) {
    struct Row {
        unsigned int flags, mode, x, y;
        const char* grid; // of 7 pixels, and two more behind each line
    };
    const Row rows[] = {
        {0, 2, 3, 2, "#########\n#..#..#..\n#########\n#..#..#..\n"},
        {0, 99, 1, 3, "#########\n#######..\n#######..\n#########\n"},
        {0, 1, 30, 9, "#########\n#########\n#########\n#########\n"},
        {0, 1, 50, 0, "#########\n#..#..#..\n#########\n#..#..#..\n"},
        {0, 1, 100, 0, "#########\n#........\n#........\n#........\n"},
        {zrMuxGrid, 0, 60, 0, "#########\n#........\n#........\n#........\n"},
        {zrMuxGrid, 2, 4, 4, "#########\n#...#....\n#...#....\n#...#....\n"},
        {0, 0, 3, 2, ".........\n.........\n.........\n.........\n"},
    };
    for (const Row& row : rows) {
        Frame a(36 * 4), b(36 * 4), dst(36 * 4);
        Call c{row.flags, 7, 4, 36};
        c.gridMode = row.mode;
        c.gridX = row.x;
        c.gridY = row.y;
        run(c, a, b, dst);
        EXPECT_EQ(gridOf(dst, 9, 4), row.grid) << row.mode << ' ' << row.x << ' ' << row.y;
        std::memset(dst.data(), 0x5A, 36 * 4);
        EXPECT_EQ(dst, Frame(36 * 4));
    }
}

TEST(MuxGrid, ComesAfterEveryModeAlsoWithoutWidthButNotWithoutHeight) {
    for (const unsigned int flags : pixelModes) {
        Frame a(32, 1), b(32, 2), dst(32);
        Call c{flags & ~divider, 0, 2, 16};
        c.gridMode = 2;
        c.gridX = c.gridY = 2;
        EXPECT_EQ(run(c, a, b, dst), 0U);
        EXPECT_EQ(gridOf(dst, 4, 2), "####\n....\n") << std::hex << flags;
    }
    for (const unsigned int flags :
         {0U, 2U, 4U, 0x40U, 0x40 | second, 0x200U, 0x400U, 0x800U, 0x800 | second, 0x1000U,
          0x1000 | second, 0x10000U, 0x40000U, 0x80000U, 0x100000U, 0x200000U, 0x200000 | second}) {
        Frame a(32, 1), b(32, 2), dst(32);
        Call c{flags, 2, 0, 16};
        c.gridMode = 2;
        c.gridX = c.gridY = 2;
        EXPECT_EQ(run(c, a, b, dst), 0U);
        EXPECT_EQ(dst, Frame(32)) << std::hex << flags;
    }
}

} // namespace

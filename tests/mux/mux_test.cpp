// Every mode of the mux against a rule for one pixel, on random pictures; its guards and its grid.
#include "fx/frames.h"
#include "platform/injection.h"
#include "zrdraw/mux.h"

#include <optional>
#include <string>

namespace {

using Pixel = std::uint32_t;

constexpr unsigned int second = zrMuxSecondForm, divider = zrMuxDivider;

struct Call {
    unsigned int flags, width, height, pitch;
    unsigned int position = 0, param = 0, splitX = 0, splitY = 0;
    unsigned int gridMode = 0, gridX = 0, gridY = 0, code = 0;
    unsigned int size1 = 0, size2 = 0;
};

unsigned int run(const Call& c, Frame& one, Frame& two, Frame& out) {
    return ZRDraw_DisplayMuxRGBA(one.data(), c.size1, two.data(), c.size2, out.data(), ~0UL,
                                 c.flags, c.code, c.position, c.param, c.splitX, c.splitY,
                                 c.gridMode, c.gridX, c.gridY, c.width, c.height, c.pitch);
}

Pixel word(Frame& frame, std::size_t index) {
    Pixel value;
    std::memcpy(&value, frame.data() + 4 * index, sizeof value);
    return value;
}

void put(Frame& frame, std::size_t index, Pixel value) {
    std::memcpy(frame.data() + 4 * index, &value, sizeof value);
}

unsigned int byteOf(Pixel pixel, int index) {
    return pixel >> 8 * index & 0xFF;
}

Pixel difference(Pixel a, Pixel b, unsigned int gain) {
    const Pixel values[] = {((a & 0xFF0000) - (b & 0xFF0000)) >> 17,
                            ((a & 0xFF00) - (b & 0xFF00)) >> 9, ((a & 0xFF) - (b & 0xFF)) >> 1};
    std::uint64_t v = std::max(values[0], std::max(values[1], values[2]));
    if (gain >= 2 && gain <= 255)
        v *= gain;
    const Pixel shade = static_cast<Pixel>(std::min<std::uint64_t>(v, 127)) + 128;
    return shade << 16 | shade << 8 | shade;
}

// What stands at a place of the picture; nothing where it stays as it was.
std::optional<Pixel> pixelAt(const Call& c, Frame& one, Frame& two, unsigned int x,
                             unsigned int y) {
    const bool isSecond = (c.flags & second) != 0, divides = (c.flags & divider) != 0;
    const bool swap = (c.flags & zrMuxSwap) != 0;
    Frame& a = swap ? two : one;
    Frame& b = swap ? one : two;
    const auto at = [&](Frame& frame, unsigned int column, unsigned int line) {
        return word(frame, line * c.pitch / 4 + column);
    };
    const Pixel p = at(a, x, y), q = at(b, x, y);
    const unsigned int halfW = c.width / 2, halfH = c.height / 2;
    switch (c.flags & 0xFFFFFF) {
    case zrMuxAnaglyph:
        return (p & 0x00FF0000) | (q & 0xFF);
    case zrMuxHalves:
        return (p & 0xFFFF0000) | (q & 0xFFFF);
    case zrMuxByte0B:
        return (p & 0xFFFFFF00) | (q & 0xFF);
    case zrMuxBytes02B:
        return (p & 0xFF00FF00) | (q & 0x00FF00FF);
    case zrMuxInterleave:
        if (!isSecond)
            return y % 2 == 0 ? p : q;
        return x < halfW * 2 ? std::optional(x % 2 == 0 ? p : q) : std::nullopt;
    case zrMuxAverage:
        return (p >> 1 & 0x7F7F7F7F) + (q >> 1 & 0x7F7F7F7F);
    case zrMuxDifference:
        return difference(p, q, c.param);
    case zrMuxFields:
        return y < halfH       ? std::optional(at(a, x, 2 * y))
               : y < 2 * halfH ? std::optional(at(b, x, 2 * (y - halfH)))
                               : std::nullopt;
    case zrMuxSplit: {
        const unsigned int place = isSecond ? y : x, size = isSecond ? c.height : c.width;
        const unsigned int asked = isSecond ? c.splitY : c.splitX;
        const unsigned int border = asked <= size ? asked : size / 2;
        return divides && place == border ? 0x80808080U : place < border ? p : q;
    }
    case zrMuxMirror:
    case zrMuxMirror2:
        if (isSecond)
            return y < halfH ? p : at(b, x, halfH - (y - halfH));
        return x < halfW ? p : at(b, halfW - (x - halfW), y);
    case zrMuxKey:
        for (int i = 0; i < 4; ++i) {
            const auto u = static_cast<int>(byteOf(p, i)), v = static_cast<int>(byteOf(q, i));
            if (static_cast<unsigned int>(std::abs(u - v)) > c.param)
                return swap ? 0xFFFFFFFFU : 0U;
        }
        return q;
    case zrMuxMix: {
        const unsigned int w = c.position >> 8;
        Pixel out = 0;
        for (int i = 0; i < 4; ++i)
            out |= ((byteOf(p, i) * w + byteOf(q, i) * (256 - w)) >> 8 & 0xFF) << 8 * i;
        return out;
    }
    case zrMuxChecker:
        if (x >= halfW * 2 || y >= halfH * 2)
            return std::nullopt;
        return (x + y) % 2 == 0 ? p : q;
    case zrMuxBlocks: {
        const unsigned int n = std::clamp(c.position >> 8, 1U, 100U);
        return (x / n + y / n) % 2 == 0 ? p : q;
    }
    case zrMuxChannel: {
        const unsigned int mean = (byteOf(p, 0) + byteOf(p, 1) + byteOf(p, 2)) / 3;
        const unsigned int v = c.param == 0xFF         ? byteOf(p, 0)
                               : c.param == 0xFF00     ? byteOf(p, 1)
                               : c.param == 0xFF0000   ? byteOf(p, 2)
                               : c.param == 0xFF000000 ? byteOf(p, 3)
                                                       : mean;
        return v * 0x01010101U;
    }
    default:
        return p;
    }
}

// How many pixels of a line a mode writes: some copy or fill lines with all that is behind them,
// and the divider may stand behind the last pixel.
unsigned int writtenOf(const Call& c) {
    const unsigned int mode = c.flags & 0xFFFFFF;
    const bool isSecond = (c.flags & second) != 0;
    const bool hasLines =
        mode == zrMuxFields || (mode == zrMuxInterleave && !isSecond) ||
        ((mode == zrMuxSplit || mode == zrMuxMirror || mode == zrMuxMirror2) && isSecond);
    if (hasLines)
        return c.pitch / 4;
    return c.width + (mode == zrMuxSplit && (c.flags & divider) != 0 && c.splitX == c.width);
}

void compare(const Call& c, Random& random) {
    const std::size_t bytes = c.pitch * c.height;
    Frame one(bytes, random), two(bytes, random), out(bytes, random), wanted = out;
    // Pixels that are nearly the same.
    for (std::size_t i = 0; i < bytes / 4; i += 3)
        put(two, i, word(one, i) ^ (static_cast<Pixel>(random()) & 0x03070F1FU));
    for (unsigned int y = 0; y < c.height; ++y)
        for (unsigned int x = 0; x < writtenOf(c); ++x)
            if (const auto pixel = pixelAt(c, one, two, x, y))
                put(wanted, y * c.pitch / 4 + x, *pixel);
    EXPECT_EQ(run(c, one, two, out), 0U);
    ASSERT_EQ(out, wanted) << std::hex << c.flags << std::dec << ", " << c.width << 'x' << c.height
                           << ", split " << c.splitX << ' ' << c.splitY << ", param " << c.param
                           << ", position " << c.position << ", seed " << seed;
}

TEST(Mux, EveryPixelModeByItsRule) {
    constexpr unsigned int modes[] = {zrMuxAnaglyph,   zrMuxHalves,  zrMuxByte0B,     zrMuxBytes02B,
                                      zrMuxInterleave, zrMuxAverage, zrMuxDifference, zrMuxFields,
                                      zrMuxSplit,      zrMuxMirror,  zrMuxMirror2,    zrMuxKey,
                                      zrMuxMix,        zrMuxChecker, zrMuxBlocks,     zrMuxChannel};
    constexpr unsigned int switches[] = {0, second, zrMuxSwap, second | divider, divider};
    // The long ones show that blocks are of at most 100 pixels.
    constexpr std::pair<unsigned int, unsigned int> sizes[] = {
        {1, 1}, {2, 3}, {7, 4}, {6, 5}, {33, 9}, {40, 6}, {205, 3}, {3, 205}};
    constexpr unsigned int params[] = {0, 1, 2, 3, 60, 256, 0xFF, 0xFF00, 0xFF0000, 0xFF000000};
    Random random(seed);
    for (const unsigned int mode : modes)
        for (const unsigned int bits : switches)
            for (const auto& [width, height] : sizes)
                for (unsigned int i = 0; i < 5; ++i) {
                    Call c{mode | bits, width, height, width * 4 + 8};
                    c.position = static_cast<unsigned int>(random() % 65537);
                    c.splitX = i < 2 ? i : width + i - 3;
                    c.splitY = i < 2 ? i : height + i - 3;
                    c.param = params[random() % std::size(params)];
                    if (mode == zrMuxKey && i % 2 == 0)
                        c.param = 200 + static_cast<unsigned int>(random()) % 60;
                    compare(c, random);
                    if (HasFatalFailure())
                        return;
                }
}

TEST(Mux, CopiesTakeTheirOwnSizes) {
    Random random(seed);
    constexpr unsigned int modes[] = {zrMuxA,  1,        zrMuxB,
                                      0x20000, 0x400000, zrMuxSplit | zrMuxMirror};
    for (const unsigned int mode : modes)
        for (const unsigned int swap : {0U, zrMuxSwap}) {
            Frame one(64, random), two(64, random), out(64, random), wanted = out;
            Call c{mode | swap, 4, 4, 16};
            c.size1 = 20;
            c.size2 = 36;
            EXPECT_EQ(run(c, one, two, out), 0U);
            Frame& source = (mode == zrMuxB) != (swap != 0) ? two : one;
            std::memcpy(wanted.data(), source.data(), mode == zrMuxB ? 36 : 20);
            EXPECT_EQ(out, wanted) << mode;
        }
}

TEST(Mux, FlipsChangeTheSourcesInOrder) {
    Random random(seed);
    for (unsigned int bits = 0; bits < 16; ++bits) {
        Call c{(bits & 3) << 25 | (bits & 12) << 27, 5, 3, 24};
        c.size1 = 72;
        const auto from = [&](unsigned int x, unsigned int y, unsigned int horizontal,
                              unsigned int vertical) {
            return ((c.flags & vertical) != 0 ? 2 - y : y) * 6 +
                   ((c.flags & horizontal) != 0 ? 4 - x : x);
        };
        Frame one(72, random), two(72, random), out(72), a = one, b = two;
        run(c, one, two, out);
        for (unsigned int y = 0; y < 3; ++y)
            for (unsigned int x = 0; x < 5; ++x) {
                const unsigned int i = y * 6 + x;
                EXPECT_EQ(word(one, i),
                          word(a, from(x, y, zrMuxFlipAHorizontal, zrMuxFlipAVertical)));
                EXPECT_EQ(word(two, i),
                          word(b, from(x, y, zrMuxFlipBHorizontal, zrMuxFlipBVertical)));
            }
        EXPECT_EQ(std::memcmp(out.data(), one.data(), 72), 0) << "copied before it was flipped";
    }
}

TEST(Mux, WipesByTheTransition) {
    Random random(seed);
    Frame one(160, random), two(160, random), out(160, random), wanted = out;
    Call c{zrMuxWipe, 8, 4, 40};
    c.code = zrWipeFourCorners;
    c.position = 30000;
    EXPECT_EQ(run(c, one, two, out), 0U);
    ZRDraw_DisplayWipe(one.data(), 40, two.data(), 40, wanted.data(), 40, zrWipeFourCorners,
                       ptRGBA32, 8, 4, 1, 1, 0, 0, 0, 0, 65536, 30000);
    EXPECT_EQ(out, wanted);
}

TEST(Mux, WindowsAreHalvesAndLookAtNoPitch) {
    Random random(seed);
    for (const auto& [width, height] : {std::pair{8U, 6U}, {7U, 5U}, {12U, 9U}})
        for (const unsigned int form : {0U, second}) {
            Call c{zrMuxWindows | form, width, height, width * 4 + 4};
            c.splitX = c.splitY = 2;
            const std::size_t bytes = c.pitch * height;
            Frame one(bytes, random), two(bytes, random), out(bytes, random), wanted = out;
            run(c, one, two, out);
            std::memset(wanted.data(), 0, width * height * 4);
            const unsigned int skipped = form == 0 ? 2 : 2 * width;
            const unsigned int half = form == 0 ? width / 2 : width * height / 2;
            for (unsigned int y = 0; y < (form == 0 ? height : height / 2); ++y)
                for (unsigned int x = 0; x < (form == 0 ? width / 2 : width); ++x) {
                    const unsigned int i = y * width + x;
                    put(wanted, i, word(one, i + skipped));
                    put(wanted, i + half, word(two, i + skipped));
                }
            EXPECT_EQ(out, wanted) << std::hex << form << ' ' << width;
        }
}

TEST(Mux, SqueezeWithoutABufferDrawsTheSecondOnly) {
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
                    put(expected, y * width + x, word(a, y * width + 2 * x));
            for (unsigned int y = 0; y < 3; ++y)
                for (unsigned int x = 0; 2 * x < width; ++x)
                    std::memcpy(expected.data() + 4 * (y * width + x) + 2 * width,
                                b.data() + 4 * (y * width + 2 * x), 4);
            run({zrMuxSqueeze, width, 3, width * 4 + 8}, a, b, dst);
            EXPECT_EQ(dst, expected) << width << (fails ? " fails" : "") << ", seed " << seed;
        }
}

// Pixel for pixel in turns, so that on an odd width the last of A comes after the first of B.
TEST(Mux, TwoUpPutsThePicturesSideBySide) {
    Random random(seed);
    for (const unsigned int width : {1U, 2U, 5U, 8U})
        for (const unsigned int height : {1U, 2U, 3U, 6U, 7U}) {
            const unsigned int bytes = width * height * 4;
            Frame a(bytes, random), b(bytes, random), dst(bytes), expected(bytes);
            std::memset(expected.data(), 0, bytes);
            for (unsigned int r = 0; r < height; r += 2)
                for (unsigned int x = 0; x < width; x += 2) {
                    const unsigned int line = (r / 2 + height / 4) * width;
                    put(expected, line + x / 2, word(a, r * width + x));
                    put(expected, line + width / 2 + x / 2, word(b, r * width + x));
                }
            run({zrMuxTwoUp, width, height, 999}, a, b, dst);
            EXPECT_EQ(dst, expected) << width << 'x' << height << ", seed " << seed;
        }
}

// A letter for each four bytes of a line: '#' of the grid, '|' of a divider, '.' as it was.
std::string lettersOf(Frame& dst, unsigned int words, unsigned int height) {
    constexpr std::pair<Pixel, char> letters[] = {{0xAAAAAAAA, 'A'},
                                                  {0xBBBBBBBB, 'B'},
                                                  {0xBFBFBFBF, '#'},
                                                  {0x80808080, '|'},
                                                  {0x5A5A5A5A, '.'}};
    std::string rows;
    for (unsigned int y = 0; y < height; ++y, rows += '\n')
        for (unsigned int x = 0; x < words; ++x) {
            const auto* const letter =
                std::find_if(std::begin(letters), std::end(letters), [&](const auto& row) {
                    return row.first == word(dst, y * words + x);
                });
            rows += letter != std::end(letters) ? letter->second : '?';
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
        EXPECT_EQ(lettersOf(dst, 9, 4), row.grid) << row.mode << ' ' << row.x << ' ' << row.y;
        EXPECT_TRUE(dst.guardsIntact());
    }
}

TEST(Mux, WithoutWidthOrHeightDrawsWholeLinesAndTheGridOnly) {
    struct Row {
        unsigned int flags;
        const char *first, *second; // lines of a picture of two without width
    };
    constexpr const char* kept = "....\n";
    std::vector<Row> rows = {
        {zrMuxInterleave, "AAAA\n", "BBBB\n"},
        {zrMuxFields, "AAAA\n", "BBBB\n"},
        {zrMuxSplit | divider, "|...\n", "|...\n"},
        {zrMuxSplit | second, "BBBB\n", "BBBB\n"},
        {zrMuxSplit | second | divider, "||||\n", "BBBB\n"},
        {zrMuxMirror | second, "AAAA\n", "BBBB\n"},
        {zrMuxMirror2 | second, "AAAA\n", "BBBB\n"},
        {zrMuxInterleave | second, kept, kept},
        {zrMuxWindows | second, kept, kept},
    };
    for (const unsigned int mode :
         {zrMuxA,        zrMuxB,       zrMuxAnaglyph,   zrMuxHalves,  zrMuxByte0B,
          zrMuxBytes02B, zrMuxAverage, zrMuxDifference, zrMuxSqueeze, zrMuxSplit,
          zrMuxMirror,   zrMuxMirror2, zrMuxKey,        zrMuxMix,     zrMuxWipe,
          zrMuxChecker,  zrMuxBlocks,  zrMuxTwoUp,      zrMuxWindows, zrMuxChannel})
        rows.push_back({mode, kept, kept});
    const auto drawn = [](unsigned int flags, unsigned int width, unsigned int height,
                          unsigned int grid) {
        Frame a(32, 0xAA), b(32, 0xBB), dst(32);
        Call c{flags, width, height, 16};
        c.gridMode = c.gridX = c.gridY = grid;
        EXPECT_EQ(run(c, a, b, dst), 0U);
        return lettersOf(dst, 4, 2);
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << "flags 0x" << std::hex << row.flags);
        EXPECT_EQ(drawn(row.flags, 0, 2, 0), std::string(row.first) + row.second);
        EXPECT_EQ(drawn(row.flags, 0, 2, 2), std::string("####\n") + row.second);
        for (const unsigned int grid : {0U, 2U})
            EXPECT_EQ(drawn(row.flags, 2, 0, grid), std::string(kept) + kept);
    }
}

} // namespace

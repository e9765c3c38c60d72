// Every mode of the mux against a rule for one pixel, on random pictures.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "platform/injection.h"
#include "zrdraw/mux.h"
#include "zrdraw/transitions.h"

namespace {

using Pixel = std::uint32_t;

// Guard bytes about a picture whose lines have `pitch` bytes.
class Picture {
public:
    Picture(unsigned int pitch, unsigned int height, std::mt19937& random)
        : m_pitch(pitch), m_memory(guard + pitch * height + guard) {
        for (unsigned char& byte : m_memory)
            byte = static_cast<unsigned char>(random());
    }
    unsigned char* data() { return m_memory.data() + guard; }
    Pixel at(unsigned int x, unsigned int y) const { return word(y * m_pitch + 4 * x); }
    void put(unsigned int x, unsigned int y, Pixel pixel) { put(y * m_pitch + 4 * x, pixel); }
    Pixel word(std::size_t offset) const {
        Pixel pixel;
        std::memcpy(&pixel, m_memory.data() + guard + offset, 4);
        return pixel;
    }
    void put(std::size_t offset, Pixel pixel) {
        std::memcpy(m_memory.data() + guard + offset, &pixel, 4);
    }
    bool operator==(const Picture&) const = default;

private:
    static constexpr std::size_t guard = 64;
    unsigned int m_pitch;
    std::vector<unsigned char> m_memory;
};

struct Call {
    unsigned int flags, width, height, pitch;
    unsigned int position = 0, param = 0, splitX = 0, splitY = 0;
    unsigned int gridMode = 0, gridX = 0, gridY = 0, code = 0;
    unsigned int size1 = 0, size2 = 0;
};

unsigned int run(const Call& c, Picture& one, Picture& two, Picture& out) {
    return ZRDraw_DisplayMuxRGBA(one.data(), c.size1, two.data(), c.size2, out.data(), ~0UL,
                                 c.flags, c.code, c.position, c.param, c.splitX, c.splitY,
                                 c.gridMode, c.gridX, c.gridY, c.width, c.height, c.pitch);
}

unsigned int byteOf(Pixel pixel, int index) {
    return pixel >> 8 * index & 0xFF;
}

Pixel eachByte(Pixel a, Pixel b, unsigned int (*combine)(unsigned int, unsigned int)) {
    Pixel out = 0;
    for (int i = 0; i < 4; ++i)
        out |= (combine(byteOf(a, i), byteOf(b, i)) & 0xFF) << 8 * i;
    return out;
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
std::optional<Pixel> pixelAt(const Call& c, const Picture& a, const Picture& b, unsigned int x,
                             unsigned int y) {
    const Pixel p = a.at(x, y), q = b.at(x, y);
    const bool second = (c.flags & zrMuxSecondForm) != 0, swap = (c.flags & zrMuxSwap) != 0;
    const bool divider = (c.flags & zrMuxDivider) != 0;
    const unsigned int halfW = c.width / 2, halfH = c.height / 2;
    switch (c.flags & 0xFFFFFF) {
    case 4:
        return (p & 0x00FF0000) | (q & 0xFF);
    case 8:
        return (p & 0xFFFF0000) | (q & 0xFFFF);
    case 0x10:
        return (p & 0xFFFFFF00) | (q & 0xFF);
    case 0x20:
        return (p & 0xFF00FF00) | (q & 0x00FF00FF);
    case 0x40:
        if (!second)
            return y % 2 == 0 ? p : q;
        return x < halfW * 2 ? std::optional(x % 2 == 0 ? p : q) : std::nullopt;
    case 0x80:
        return eachByte(p, q, [](unsigned int u, unsigned int v) { return u / 2 + v / 2; });
    case 0x100:
        return difference(p, q, c.param);
    case 0x200:
        return y < halfH       ? std::optional(a.at(x, 2 * y))
               : y < 2 * halfH ? std::optional(b.at(x, 2 * (y - halfH)))
                               : std::nullopt;
    case 0x800:
        if (second) {
            const unsigned int s = c.splitY <= c.height ? c.splitY : halfH;
            return divider && y == s ? 0x80808080U : y < s ? p : q;
        } else {
            const unsigned int d = c.splitX <= c.width ? c.splitX : halfW;
            return divider && x == d ? 0x80808080U : x < d ? p : q;
        }
    case 0x1000:
    case 0x2000:
        if (second)
            return y < halfH ? p : b.at(x, halfH - (y - halfH));
        return x < halfW ? p : b.at(halfW - (x - halfW), y);
    case 0x4000:
        for (int i = 0; i < 4; ++i) {
            const auto u = static_cast<int>(byteOf(p, i)), v = static_cast<int>(byteOf(q, i));
            if (static_cast<unsigned int>(std::abs(u - v)) > c.param)
                return swap ? 0xFFFFFFFFU : 0U;
        }
        return q;
    case 0x8000: {
        const unsigned int w = c.position >> 8;
        Pixel out = 0;
        for (int i = 0; i < 4; ++i)
            out |= ((byteOf(p, i) * w + byteOf(q, i) * (256 - w)) >> 8 & 0xFF) << 8 * i;
        return out;
    }
    case 0x40000:
        if (x >= halfW * 2 || y >= halfH * 2)
            return std::nullopt;
        return (x + y) % 2 == 0 ? p : q;
    case 0x80000: {
        const unsigned int n = std::clamp(c.position >> 8, 1U, 100U);
        return (x / n + y / n) % 2 == 0 ? p : q;
    }
    case 0x800000: {
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

TEST(Mux, EveryPixelModeByItsRule) {
    const unsigned int modes[] = {4,      8,       0x10,    0x20,    0x40,   0x80,
                                  0x100,  0x200,   0x800,   0x1000,  0x2000, 0x4000,
                                  0x8000, 0x40000, 0x80000, 0x800000};
    const unsigned int switches[] = {0, zrMuxSecondForm, zrMuxSwap,
                                     unsigned{zrMuxSecondForm} | zrMuxDivider, zrMuxDivider};
    std::mt19937 random(7);
    for (const unsigned int mode : modes) {
        for (const unsigned int bits : switches) {
            for (const auto& [width, height] :
                 {std::pair{1U, 1U}, {2U, 3U}, {7U, 4U}, {33U, 9U}, {40U, 6U}}) {
                Call c{mode | bits, width, height, width * 4 + 8};
                c.position = static_cast<unsigned int>(random() % 65537);
                c.splitX = static_cast<unsigned int>(random()) % (width + 3);
                c.splitY = static_cast<unsigned int>(random()) % (height + 3);
                const unsigned int params[] = {0,    1,      3,        60,        256,
                                               0xFF, 0xFF00, 0xFF0000, 0xFF000000};
                c.param = params[random() % 9];
                if (mode == 0x4000)
                    c.param = 200 + static_cast<unsigned int>(random()) % 60;
                Picture one(c.pitch, height, random), two(c.pitch, height, random);
                Picture out(c.pitch, height, random), before = out;
                EXPECT_EQ(run(c, one, two, out), 0U);
                const bool swapped = (bits & zrMuxSwap) != 0;
                const Picture& a = swapped ? two : one;
                const Picture& b = swapped ? one : two;
                for (unsigned int y = 0; y < height; ++y) {
                    for (unsigned int x = 0; x < width; ++x)
                        ASSERT_EQ(out.at(x, y), pixelAt(c, a, b, x, y).value_or(before.at(x, y)))
                            << std::hex << c.flags << std::dec << " " << width << "x" << height
                            << " at " << x << "," << y;
                }
            }
        }
    }
}

TEST(Mux, CopiesTakeTheirOwnSizes) {
    std::mt19937 random(7);
    for (const unsigned int mode : {0U, 1U, 2U, 0x20000U, 0x400000U, 0x1800U}) {
        for (const unsigned int swap : {0U, zrMuxSwap}) {
            Picture one(16, 4, random), two(16, 4, random), out(16, 4, random), wanted = out;
            Call c{mode | swap, 4, 4, 16};
            c.size1 = 20;
            c.size2 = 36;
            EXPECT_EQ(run(c, one, two, out), 0U);
            Picture& source = (mode == 2) != (swap != 0) ? two : one;
            std::memcpy(wanted.data(), source.data(), mode == 2 ? 36 : 20);
            EXPECT_EQ(out, wanted) << mode;
        }
    }
}

TEST(Mux, PackedModesLookAtNoPitch) {
    std::mt19937 random(7);
    for (const auto& [width, height] : {std::pair{8U, 6U}, {7U, 5U}, {12U, 9U}}) {
        const std::size_t bytes = width * height * 4;
        const auto packed = [&](const Picture& picture, unsigned int x, unsigned int y) {
            return picture.word((y * width + x) * 4);
        };
        for (const unsigned int flags : {0x100000U, 0x200000U, 0x200000U | zrMuxSecondForm}) {
            Call c{flags, width, height, width * 4 + 4};
            c.splitX = c.splitY = 2;
            Picture one(c.pitch, height, random), two(c.pitch, height, random);
            Picture out(c.pitch, height, random), wanted = out;
            run(c, one, two, out);
            std::memset(wanted.data(), 0, bytes);
            const auto put = [&](std::size_t pixel, Pixel value) { wanted.put(pixel * 4, value); };
            for (unsigned int y = 0; y < height; ++y) {
                for (unsigned int x = 0; x < width; ++x) {
                    const bool two_up = flags == 0x100000 && x % 2 == 0 && y % 2 == 0;
                    if (two_up) {
                        const std::size_t line = (y / 2 + height / 4) * width;
                        put(line + x / 2, packed(one, x, y));
                    } else if (flags == 0x200000 && x < width / 2) {
                        put(y * width + x, packed(one, x + 2, y));
                        put(y * width + x + width / 2, packed(two, x + 2, y));
                    } else if (flags > 0x200000 && y < height / 2) {
                        put(y * width + x, packed(one, x, y + 2));
                        put(width * height / 2 + y * width + x, packed(two, x, y + 2));
                    }
                }
            }
            for (unsigned int y = 0; flags == 0x100000 && y < height; y += 2)
                for (unsigned int x = 0; x < width; x += 2)
                    put((y / 2 + height / 4) * width + width / 2 + x / 2, packed(two, x, y));
            if (flags != 0x100000 || width % 2 == 0) {
                EXPECT_EQ(out, wanted) << std::hex << flags << " " << width;
            }
        }
    }
}

TEST(Mux, GuardsAndTheGrid) {
    std::mt19937 random(7);
    const auto drawn = [&](Call c, unsigned int width, unsigned int height) {
        Picture one(width * 4, height, random), two = one, out(width * 4, height, random);
        std::memset(out.data(), 0, width * height * 4);
        run(c, one, two, out);
        std::string art;
        for (unsigned int y = 0; y < height; ++y, art += '\n')
            for (unsigned int x = 0; x < width; ++x)
                art += out.at(x, y) == 0xBFBFBFBF ? '#' : out.at(x, y) == 0 ? '.' : 'o';
        return art;
    };
    Call c{4, 0, 5, 28};
    c.gridMode = 2;
    c.gridX = 3;
    c.gridY = 2;
    EXPECT_EQ(drawn(c, 7, 5), "#######\n.......\n#######\n.......\n#######\n") << "no width";
    c.width = 7;
    c.height = 0;
    EXPECT_EQ(drawn(c, 7, 5), ".......\n.......\n.......\n.......\n.......\n") << "no height";
    c.flags = 0;
    c.height = 5;
    EXPECT_EQ(drawn(c, 7, 5), "#######\n#..#..#\n#######\n#..#..#\n#######\n");
    c.gridX = 1;
    EXPECT_EQ(drawn(c, 7, 5), "#######\n#######\n#######\n#######\n#######\n");
    c.gridMode = 0;
    c.gridX = 50;
    EXPECT_EQ(drawn(c, 7, 5), ".......\n.......\n.......\n.......\n.......\n") << "off";
    c.flags = zrMuxGrid;
    EXPECT_EQ(drawn(c, 7, 5), "#######\n#..#..#\n#######\n#..#..#\n#######\n") << "per cent";
    c.gridMode = 1;
    c.gridX = 100;
    EXPECT_EQ(drawn(c, 7, 5), "#######\n#......\n#......\n#......\n#......\n");
}

TEST(Mux, FlipsChangeTheSourcesInOrder) {
    std::mt19937 random(7);
    for (unsigned int bits = 0; bits < 16; ++bits) {
        const bool bv = (bits & 1) != 0, av = (bits & 2) != 0, bh = (bits & 4) != 0,
                   ah = (bits & 8) != 0;
        Call c{(bv ? unsigned{zrMuxFlipBVertical} : 0) | (av ? unsigned{zrMuxFlipAVertical} : 0) |
                   (bh ? unsigned{zrMuxFlipBHorizontal} : 0) |
                   (ah ? unsigned{zrMuxFlipAHorizontal} : 0),
               5, 3, 24};
        Picture one(24, 3, random), two(24, 3, random), out(24, 3, random);
        const Picture a = one, b = two;
        run(c, one, two, out);
        for (unsigned int y = 0; y < 3; ++y) {
            for (unsigned int x = 0; x < 5; ++x) {
                EXPECT_EQ(one.at(x, y), a.at(ah ? 4 - x : x, av ? 2 - y : y));
                EXPECT_EQ(two.at(x, y), b.at(bh ? 4 - x : x, bv ? 2 - y : y));
            }
        }
    }
}

TEST(Mux, WipesAndSqueezes) {
    std::mt19937 random(7);
    Picture one(32, 4, random), two(32, 4, random), out(32, 4, random), wanted = out;
    Call c{0x10000, 8, 4, 32};
    c.code = 7;
    c.position = 30000;
    EXPECT_EQ(run(c, one, two, out), 0U);
    ZRDraw_DisplayWipe(one.data(), 32, two.data(), 32, wanted.data(), 32, 7, 1, 8, 4, 1, 1, 0, 0, 0,
                       0, 65536, 30000);
    EXPECT_EQ(out, wanted);
    c.flags = 0x400;
    run(c, one, two, out);
    for (unsigned int y = 0; y < 4; ++y) {
        for (unsigned int x = 0; x < 4; ++x) {
            EXPECT_EQ(out.at(x, y), one.at(2 * x, y));
            EXPECT_EQ(out.at(x + 4, y), two.at(2 * x, y));
        }
    }
}

} // namespace

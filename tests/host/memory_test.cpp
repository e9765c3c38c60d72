// Fills, allocation, flips and the resize of the default platform layer.
#include "support/guarded_memory.h"
#include "zrdraw/platform/memory.h"
#include "zrdraw/platform/resize.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

constexpr std::size_t alignment = 64;

// Fills a run at an offset to the alignment; compares all with bytes written by its definition.
void checkFill(std::size_t offset, std::size_t bytes) {
    constexpr unsigned char pattern[4] = {0x11, 0x22, 0x33, 0x44};
    GuardedMemory memory(3 * alignment + bytes + 3 * alignment), expected = memory;
    const auto address = reinterpret_cast<std::uintptr_t>(memory.data());
    const std::size_t start = alignment - address % alignment + alignment + offset;
    for (std::size_t i = 0; i < bytes; ++i)
        expected.data()[start + i] = pattern[i % 4];
    unsigned char* const run = memory.data() + start;
    EXPECT_EQ(run, SetMemoryFast(run, 0x44332211, bytes));
    EXPECT_EQ(memory, expected) << bytes << " bytes at offset " << offset << " go wrong at byte "
                                << memory.firstDifference(expected);
}

TEST(SetMemoryFast, RepeatsTheWordAtAnyAlignmentAndLength) {
    for (std::size_t offset = 0; offset < 36 && !HasFailure(); ++offset)
        for (std::size_t bytes = 0; bytes <= 300; ++bytes)
            checkFill(offset, bytes);
}

TEST(SetMemoryFast, KeepsThePatternUpToAndPastTheCaches) {
    for (std::size_t bytes = 524288 - 9; bytes <= 524288 + 9; ++bytes)
        checkFill(5, bytes);
    for (const std::size_t offset : {0U, 1U, 31U, 46U, 63U})
        for (std::size_t shorter = 0; shorter < 12; ++shorter)
            checkFill(offset, (std::size_t{1} << 20) - shorter);
}

TEST(ZRAlloc, KeepsLargeBlocksForTheNextOfTheirSize) {
    constexpr unsigned int large = 5U << 20;
    void* const first = ZRAlloc(large);
    ASSERT_NE(first, nullptr);
    ZRFree(first);
    void* const muchSmaller = ZRAlloc(large / 4);
    EXPECT_NE(muchSmaller, first);
    void* const again = ZRAlloc(large - 4096);
    EXPECT_EQ(again, first);
    ZRFree(again);
    ZRFree(muchSmaller);
}

TEST(ZRAlloc, GivesEachCallerAnAlignedBlockOfItsOwn) {
    constexpr unsigned int sizes[] = {
        0, 1, 63, 64, 65, 100'000, (3U << 20), (3U << 20) + 1, (3U << 20) + 2};
    for (int round = 0; round < 2; ++round) {
        std::vector<unsigned char*> blocks;
        for (const unsigned int bytes : sizes) {
            blocks.push_back(static_cast<unsigned char*>(ZRAlloc(bytes)));
            ASSERT_NE(blocks.back(), nullptr);
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(blocks.back()) % alignment, 0U) << bytes;
            std::memset(blocks.back(), static_cast<int>(blocks.size()), bytes);
        }
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            EXPECT_EQ(std::count(blocks[i], blocks[i] + sizes[i], i + 1), sizes[i]);
            ZRFree(blocks[i]);
        }
    }
    ZRFree(nullptr);
}

using Pixels = std::vector<std::uint32_t>;

// Each pixel another; `padding` of them stand behind each line.
constexpr unsigned int padding = 2;

Pixels numbered(unsigned int width, unsigned int height, std::uint32_t from) {
    Pixels pixels((width + padding) * height + padding);
    for (std::uint32_t& pixel : pixels)
        pixel = from++;
    return pixels;
}

unsigned char* bytesOf(Pixels& pixels) {
    return reinterpret_cast<unsigned char*>(pixels.data());
}

TEST(Flip, MovesPixelsInPlaceAndToAnotherPicture) {
    for (unsigned int width = 0; width <= 9; ++width)
        for (unsigned int height = 0; height <= 5; ++height)
            for (const bool vertical : {false, true})
                for (const bool inPlace : {false, true}) {
                    const unsigned int line = width + padding;
                    Pixels source = numbered(width, height, 1000);
                    Pixels other = numbered(width, height, 5000);
                    const Pixels before = source;
                    Pixels& dst = inPlace ? source : other;
                    Pixels expected = dst;
                    for (unsigned int y = 0; y < height; ++y)
                        for (unsigned int x = 0; x < width; ++x)
                            expected[y * line + x] = before[(vertical ? height - 1 - y : y) * line +
                                                            (vertical ? x : width - 1 - x)];
                    const int result =
                        vertical
                            ? pxsw_flip_vert(bytesOf(dst), bytesOf(source), width, height, line * 4)
                            : pxsw_flip_horz(bytesOf(dst), bytesOf(source), width, height, line * 4,
                                             0xFFFFFFFF);
                    EXPECT_EQ(result, 0);
                    EXPECT_EQ(dst, expected)
                        << width << 'x' << height << (vertical ? " vertical" : "")
                        << (inPlace ? " in place" : "");
                }
}

TEST(Resize, TakesTheNearestPixelWithAndWithoutABuffer) {
    struct Factors {
        double x, y, xShift, yShift;
    };
    constexpr Factors factors[] = {
        {0.5, 1, 0, 0}, {1, 1, 0, 0}, {2, 3, 0, 0}, {0.5, 0.5, 1, -1}, {0.3, 1, 2, 1}};
    for (const Factors& f : factors)
        for (const int width : {1, 2, 7, 10})
            for (const bool buffered : {false, true}) {
                constexpr int height = 4;
                const int line = width + static_cast<int>(padding);
                Pixels source = numbered(static_cast<unsigned int>(width), height, 1000);
                Pixels dst = numbered(static_cast<unsigned int>(width), height, 5000);
                Pixels expected = dst;
                for (int y = 0; y < height; ++y)
                    for (int x = 0; x < width; ++x) {
                        const auto fromX = static_cast<int>(std::floor((x - f.xShift) / f.x));
                        const auto fromY = static_cast<int>(std::floor((y - f.yShift) / f.y));
                        if (fromX >= 0 && fromX < width && fromY >= 0 && fromY < height)
                            expected[static_cast<std::size_t>(y * line + x)] =
                                source[static_cast<std::size_t>(fromY * line + fromX)];
                    }
                const IppiRect whole{0, 0, width, height};
                int bytes = 0;
                EXPECT_EQ(ippiResizeGetBufSize(whole, whole, 1, zrResizeNearest, &bytes), 0);
                unsigned char* const buffer = buffered ? ippsMalloc_8u(bytes) : nullptr;
                EXPECT_EQ(buffered, buffer != nullptr);
                EXPECT_EQ(ippiResizeSqrPixel_8u_C4R(bytesOf(source), {width, height}, line * 4,
                                                    whole, bytesOf(dst), line * 4, whole, f.x, f.y,
                                                    f.xShift, f.yShift, zrResizeNearest, buffer),
                          0);
                ippsFree(buffer);
                EXPECT_EQ(dst, expected) << width << ", factor " << f.x;
            }
}

} // namespace

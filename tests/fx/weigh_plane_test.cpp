#include "fx/frames.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

struct Weights {
    int second, first;
};

constexpr Weights weightTable[] = {
    {0, 65536},       {65536, 0}, {32768, 32768}, {20000, 45536},      {65536, 65536},
    {-65536, 131072}, {-1, 3},    {40000, -7000}, {0x7FFFFFFF, 12345}, {-0x7FFFFFFF, 1}};

void reference(unsigned char* first, const unsigned char* second, int pitchFirst, int pitchSecond,
               int width, int lines, const Weights& w) {
    for (int y = 0; y < lines; ++y)
        for (int x = 0; x < width; ++x) {
            unsigned char& to = first[y * pitchFirst + x];
            const std::uint32_t sum =
                second[y * pitchSecond + x] * static_cast<std::uint32_t>(w.second) +
                to * static_cast<std::uint32_t>(w.first) + 32768U;
            to = static_cast<unsigned char>(sum >> 16);
        }
}

// `shift`: where the first plane starts behind the second one, in the same memory.
void compare(int shift, int width, int lines, int pitchFirst, int pitchSecond, const Weights& w) {
    Random random(seed);
    Frame memory(4096, random), expected = memory;
    unsigned char* const first = memory.data() + 1024 + shift;
    reference(expected.data() + 1024 + shift, expected.data() + 1024, pitchFirst, pitchSecond,
              width, lines, w);
    EXPECT_EQ(weigh_plane(first, memory.data() + 1024, pitchFirst, pitchSecond, width, lines,
                          w.second, w.first),
              first + lines * pitchFirst);
    ASSERT_EQ(memory, expected) << "shift " << shift << ", width " << width << ", weights "
                                << w.second << ' ' << w.first << ", seed " << seed;
}

TEST(WeighPlane, EveryWidth) {
    for (const Weights& weights : weightTable)
        for (int width = 1; width <= 70; ++width)
            compare(2000, width, 3, 77, 70, weights);
}

TEST(WeighPlane, OverlappingPlanesGoByteByByte) {
    for (const Weights& weights : weightTable)
        for (int shift = -40; shift <= 40; ++shift)
            for (const int width : {15, 16, 17, 33, 64}) {
                compare(shift, width, 1, 64, 64, weights);
                compare(shift, width, 3, 64, 64, weights);
                compare(shift, width, 4, -50, -50, weights);
                compare(shift, width, 4, 64, 61, weights);
            }
}

TEST(WeighPlane, WithoutWidthOrLinesDoesNothing) {
    for (const auto& [width, lines] : {std::pair{0, 5}, {5, 0}, {-3, 5}, {5, -1}}) {
        unsigned char first[8] = {9, 9, 9}, second[8] = {};
        EXPECT_EQ(weigh_plane(first, second, 4, 4, width, lines, 65536, 0), first);
        EXPECT_EQ(first[0], 9);
    }
}

} // namespace

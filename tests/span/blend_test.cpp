// The "over" blend: the rule itself, and that both bodies follow it.
#include "span/bodies.h"
#include "zrdraw/span.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

namespace {

using Pixels = std::vector<unsigned char>;
using Blend = void (*)(unsigned char*, const unsigned char*, unsigned long);

constexpr Blend blends[] = {zrdraw_blend_bgra_over, zrdraw_blend_bgra_over_c};

TEST(Blend, ExactQuotientsForEveryCombination) {
    // For each pair of source byte and alpha, 256 pixels that hold every destination byte.
    constexpr unsigned long pixels = 256;
    Pixels src(pixels * 4), before(pixels * 4);
    for (unsigned int d = 0; d < 256; ++d)
        std::memset(before.data() + 4 * d, static_cast<int>(d), 4);
    for (unsigned int s = 0; s < 256; ++s) {
        for (unsigned int alpha = 0; alpha < 256; ++alpha) {
            const unsigned int word = s * 0x010101U | alpha << 24;
            Pixels expected = before;
            for (unsigned int d = 0; d < 256; ++d) {
                std::memcpy(src.data() + 4 * d, &word, 4);
                const unsigned int quotient = (d * (255 - alpha) + s * alpha) / 255;
                const unsigned int blended = quotient * 0x010101U | alpha << 24;
                if (alpha > 16) // above the cut-off
                    std::memcpy(expected.data() + 4 * d, &blended, 4);
            }
            for (const Blend blend : blends) {
                Pixels dst = before;
                blend(dst.data(), src.data(), pixels);
                ASSERT_EQ(dst, expected) << "source " << s << " alpha " << alpha;
            }
        }
    }
}

TEST(Blend, ChannelsKeepApart) {
    for (const Blend blend : blends) {
        Pixels dst{10, 20, 30, 40};
        blend(nullptr, Pixels{1, 1, 1, 255}.data(), 1);
        blend(dst.data(), nullptr, 1);
        blend(dst.data(), Pixels{1, 1, 1, 255}.data(), 0);
        blend(dst.data(), Pixels{200, 100, 50, 16}.data(), 1);
        EXPECT_EQ(dst, (Pixels{10, 20, 30, 40})) << "nor does alpha 16 do anything";
        blend(dst.data(), Pixels{200, 100, 50, 17}.data(), 1);
        EXPECT_EQ(dst, (Pixels{22, 25, 31, 17})) << "alpha 17 blends in full";
        blend(dst.data(), Pixels{1, 2, 3, 255}.data(), 1);
        EXPECT_EQ(dst, (Pixels{1, 2, 3, 255}));
    }
}

TEST(Blend, EveryLengthWithMixedAlphaAndGuards) {
    constexpr unsigned int seed = 20261124;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const auto byte = [&] { return static_cast<unsigned char>(random() & 0xFF); };
    for (unsigned long pixels = 1; pixels <= 70; ++pixels) {
        for (const std::size_t offset : {0U, 1U, 4U, 31U}) {
            // Alphas around the cut-off in runs, so that whole blocks fall under it.
            std::vector<unsigned char> src(offset + pixels * 4);
            for (unsigned char& b : src)
                b = byte();
            const bool mostlyEmpty = random() % 2 == 0;
            for (unsigned long i = 0; i < pixels; ++i)
                if (mostlyEmpty && (i / 8) % 3 != 2)
                    src[offset + 4 * i + 3] = static_cast<unsigned char>(random() % 18);
            std::vector<unsigned char> vector(offset + pixels * 4 + 32);
            for (unsigned char& b : vector)
                b = byte();
            std::vector<unsigned char> plain = vector;
            zrdraw_blend_bgra_over(vector.data() + offset, src.data() + offset, pixels);
            span::blendPlain(plain.data() + offset, src.data() + offset, pixels);
            ASSERT_EQ(vector, plain) << pixels << " pixels at offset " << offset;
        }
    }
}

TEST(Processor, TestIsConsistent) {
    EXPECT_EQ(zrdraw_avx2_compiled(), 1);
    EXPECT_EQ(zrdraw_avx2_available(), __builtin_cpu_supports("avx2") ? 1 : 0);
}

} // namespace

// Blends and runs of a pattern: the rules, and that every body follows them.
#include "span/bodies.h"
#include "support/guarded_memory.h"
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
    const auto randomBytes = [&](std::size_t count) {
        Pixels bytes(count);
        for (unsigned char& byte : bytes)
            byte = static_cast<unsigned char>(random());
        return bytes;
    };
    for (unsigned long pixels = 1; pixels <= 70; ++pixels) {
        for (const std::size_t offset : {0U, 1U, 4U, 31U}) {
            // Alphas around the cut-off in runs, so that whole blocks fall under it.
            Pixels src = randomBytes(offset + pixels * 4);
            const bool mostlyEmpty = random() % 2 == 0;
            for (unsigned long i = 0; i < pixels; ++i)
                if (mostlyEmpty && (i / 8) % 3 != 2)
                    src[offset + 4 * i + 3] = static_cast<unsigned char>(random() % 18);
            Pixels vector = randomBytes(offset + pixels * 4 + 32), plain = vector;
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

constexpr unsigned char guard = GuardedMemory::guardByte;
const unsigned char pattern[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

using Fill = void (*)(void*, const void*, unsigned int, unsigned long);

struct Body {
    const char* name;
    Fill fill;
    std::vector<unsigned int> sizes; // of patterns
};

template <auto internal>
void call(void* dst, const void* source, unsigned int bytes, unsigned long count) {
    internal(static_cast<unsigned char*>(dst), static_cast<const unsigned char*>(source), bytes,
             count);
}

std::vector<Body> bodies() {
    const std::vector<unsigned int> any = {1, 2, 3, 4, 5, 6, 8, 12, 16};
    std::vector<Body> all = {{"dispatched", zrdraw_fill_pattern, any},
                             {"portable", zrdraw_fill_pattern_c, any},
                             {"avx", call<span::fillAvx>, {4, 8}}};
    if (zrdraw_avx2_available() != 0)
        all.push_back({"avx2", call<span::fillAvx2>, {4, 8}});
    return all;
}

void expectRun(const Body& body, unsigned int bytes, unsigned long count, std::size_t offset) {
    const std::size_t length = bytes * count;
    GuardedMemory memory(offset + length), expected = memory;
    for (std::size_t i = 0; i < length; ++i)
        expected.data()[offset + i] = pattern[i % bytes];
    if (count != 0)
        body.fill(memory.data() + offset, pattern, bytes, count);
    ASSERT_EQ(memory, expected) << body.name << ": " << count << " patterns of " << bytes
                                << " bytes at offset " << offset;
}

TEST(FillPattern, EveryCountAtEveryAlignment) {
    for (const Body& body : bodies()) {
        for (const unsigned int bytes : body.sizes) {
            for (unsigned long count = 0; count <= 200; ++count)
                for (std::size_t offset = 0; offset < 32; ++offset)
                    expectRun(body, bytes, count, offset);
            expectRun(body, bytes, 5000, 1);
        }
    }
}

TEST(FillPattern, APatternMayTouchOrOverlapItsRun) {
    for (const Body& body : bodies()) {
        for (const unsigned int bytes : body.sizes) {
            // Directly before the run.
            std::vector<unsigned char> memory(bytes * 101 + 1, guard);
            std::memcpy(memory.data(), pattern, bytes);
            body.fill(memory.data() + bytes, memory.data(), bytes, 100);
            for (std::size_t i = 0; i < bytes * 101; ++i)
                ASSERT_EQ(memory[i], pattern[i % bytes])
                    << body.name << " " << bytes << " at " << i;
            EXPECT_EQ(memory.back(), guard);
        }
    }
    // One byte into the run: each element is read anew, so every element copies the one before,
    // which the portable body does element by element.
    std::vector<unsigned char> memory(64, 0);
    std::memcpy(memory.data(), pattern, 4);
    std::vector<unsigned char> expected = memory;
    for (std::size_t i = 0; i < 10; ++i)
        std::memmove(expected.data() + 1 + i * 3, expected.data(), 3);
    zrdraw_fill_pattern(memory.data() + 1, memory.data(), 3, 10);
    EXPECT_EQ(memory, expected);
}

TEST(FillPattern, NothingToDoAndNothingDone) {
    unsigned char byte = guard;
    for (const Fill fill : {Fill{zrdraw_fill_pattern}, Fill{zrdraw_fill_pattern_c}}) {
        fill(nullptr, pattern, 4, 1);
        fill(&byte, nullptr, 4, 1);
        fill(&byte, pattern, 0, 1);
        fill(&byte, pattern, 4, 0);
    }
    if (zrdraw_avx2_available() != 0)
        span::fillAvx2(&byte, pattern, 3, 1);
    EXPECT_EQ(byte, guard);
}

} // namespace

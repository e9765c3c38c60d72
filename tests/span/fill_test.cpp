// Runs of a pattern: every body writes the same bytes, and none beyond the run.
#include "span/bodies.h"
#include "support/guarded_memory.h"
#include "zrdraw/span.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace {

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

} // namespace

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

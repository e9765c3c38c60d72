// Copies, fills and allocation of the default platform layer.
#include "support/guarded_memory.h"
#include "zrdraw/platform/memory.h"

#include <gtest/gtest.h>

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

TEST(ZRAlloc, GivesAlignedMemoryThatMayBeWritten) {
    for (const unsigned int bytes : {0U, 1U, 63U, 64U, 65U, 100'000U}) {
        void* const block = ZRAlloc(bytes);
        ASSERT_NE(nullptr, block) << bytes;
        EXPECT_EQ(0U, reinterpret_cast<std::uintptr_t>(block) % alignment) << bytes;
        std::memset(block, 1, bytes);
        ZRFree(block);
    }
    ZRFree(nullptr);
}

TEST(ZRAlloc, KeepsLargeBlocksForTheNextOfTheirSize) {
    constexpr unsigned int large = 5U << 20;
    void* const first = ZRAlloc(large);
    ASSERT_NE(first, nullptr);
    std::memset(first, 1, large);
    ZRFree(first);
    void* const muchSmaller = ZRAlloc(large / 4);
    EXPECT_NE(muchSmaller, first);
    void* const again = ZRAlloc(large - 4096);
    EXPECT_EQ(again, first);
    std::memset(again, 2, large - 4096);
    ZRFree(again);
    ZRFree(muchSmaller);
}

TEST(ZRAlloc, GivesEachCallerItsOwnBlock) {
    constexpr unsigned int large = 3U << 20;
    for (int round = 0; round < 2; ++round) {
        std::vector<unsigned char*> blocks;
        for (unsigned char i = 0; i < 7; ++i) {
            blocks.push_back(static_cast<unsigned char*>(ZRAlloc(large + i)));
            ASSERT_NE(blocks.back(), nullptr);
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(blocks.back()) % alignment, 0U);
            std::memset(blocks.back(), i, large + i);
        }
        for (unsigned char i = 0; i < 7; ++i) {
            EXPECT_EQ(blocks[i][0], i);
            EXPECT_EQ(blocks[i][large + i - 1], i);
            ZRFree(blocks[i]);
        }
    }
}

} // namespace

// Allocation. Large blocks that are given back are kept for the next call: touching the pages of a
// fresh frame costs more than most of what is done with it.
#include "zrdraw/platform/memory.h"
#include "zrdraw/types.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <mutex>
#include <new>

#include <sys/mman.h>

namespace {

constexpr std::size_t cacheLine = 64;
constexpr std::size_t hugePage = std::size_t{2} << 20;
constexpr std::size_t leastKept = std::size_t{1} << 20;
constexpr std::size_t mostKept = std::size_t{256} << 20; // bytes of all kept blocks

// Stands in the cache line before the memory that callers get.
struct Header {
    std::size_t bytes; // of the block, header included
};

static_assert(sizeof(Header) <= cacheLine);

Header* headerOf(void* memory) {
    return reinterpret_cast<Header*>(static_cast<unsigned char*>(memory) - cacheLine);
}

void* memoryOf(Header* block) {
    return reinterpret_cast<unsigned char*>(block) + cacheLine;
}

Header* allocate(std::size_t bytes) {
    const bool large = bytes >= leastKept;
    const std::size_t unit = large ? hugePage : cacheLine;
    const std::size_t rounded = (bytes + unit - 1) / unit * unit;
    void* const block = std::aligned_alloc(unit, rounded);
    if (block == nullptr)
        return nullptr;
    if (large)
        madvise(block, rounded, MADV_HUGEPAGE);
    return new (block) Header{rounded};
}

// The blocks that wait for the next call, of any thread.
class Kept {
public:
    // A block of at least this size and not much more, or null.
    Header* take(std::size_t bytes) {
        const std::lock_guard lock(m_mutex);
        for (Header*& block : m_blocks) {
            if (block != nullptr && block->bytes >= bytes && block->bytes / 2 <= bytes) {
                Header* const taken = block;
                block = nullptr;
                m_bytes -= taken->bytes;
                return taken;
            }
        }
        return nullptr;
    }

    // Whether the block was kept.
    bool keep(Header* block) {
        const std::lock_guard lock(m_mutex);
        const auto place = std::find(m_blocks.begin(), m_blocks.end(), nullptr);
        if (place == m_blocks.end() || block->bytes > mostKept - m_bytes)
            return false;
        *place = block;
        m_bytes += block->bytes;
        return true;
    }

private:
    std::mutex m_mutex;
    std::array<Header*, 4> m_blocks{};
    std::size_t m_bytes = 0;
};

Kept& kept() {
    static Kept blocks;
    return blocks;
}

} // namespace

ZRDRAW_API void* ZRAlloc(unsigned int bytes) {
    const std::size_t wanted = bytes + cacheLine + 1; // 0 bytes give a pointer too
    Header* block = wanted >= leastKept ? kept().take(wanted) : nullptr;
    if (block == nullptr)
        block = allocate(wanted);
    return block != nullptr ? memoryOf(block) : nullptr;
}

ZRDRAW_API void ZRFree(void* memory) {
    if (memory == nullptr)
        return;
    Header* const block = headerOf(memory);
    if (block->bytes < leastKept || !kept().keep(block))
        std::free(block);
}

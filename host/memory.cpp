// Copies and fills. A fill repeats a 4-byte word. A store may start anywhere in the run: with the
// word rotated by its distance from the start it continues the pattern, so that head, body and tail
// may overlap.
#include "zrdraw/platform/memory.h"

#include "zrdraw/types.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include <immintrin.h>

namespace {

using Word = std::uint32_t;
using Byte = unsigned char;

constexpr std::size_t cacheLine = 64;
constexpr std::size_t bodyStep = 128; // bytes that each round of a long fill's loop stores

// From this many bytes on `rep stosq` is faster: it takes over cache lines without reading them.
constexpr std::size_t stringStoreFrom = 512 * 1024;

// The processor may write a `rep stosq` much longer than its caches past them, at half the speed,
// so a long fill is several of these.
constexpr std::size_t pieceWords = 32 * 1024;

// The word as it reads for a store that starts this many bytes into the run.
Word wordAt(Word value, std::size_t distance) {
    return std::rotr(value, static_cast<int>(8 * (distance % sizeof(Word))));
}

template <class Chunk>
Chunk repeat(Word word) {
    if constexpr (sizeof(Chunk) == sizeof(Word)) {
        return word;
    } else if constexpr (sizeof(Chunk) == sizeof(std::uint64_t)) {
        return word * std::uint64_t{0x1'0000'0001};
    } else if constexpr (sizeof(Chunk) == sizeof(__m128i)) {
        return _mm_shuffle_epi32(_mm_cvtsi32_si128(static_cast<int>(word)), 0);
    } else { // from registers; the compiler's own broadcast would go through memory
        const auto half = repeat<__m128i>(word);
        return _mm256_insertf128_si256(_mm256_castsi128_si256(half), half, 1);
    }
}

// The chunk of `value` as it reads this many bytes into the run; whole words need no new one.
template <class Chunk>
Chunk chunkAt(Chunk chunk, Word value, std::size_t distance) {
    return distance % sizeof(Word) == 0 ? chunk : repeat<Chunk>(wordAt(value, distance));
}

// Stores Count chunks side by side, at any alignment.
template <class Chunk, std::size_t Count>
void store(Byte* at, Chunk chunk) {
    for (std::size_t i = 0; i < Count; ++i)
        std::memcpy(at + i * sizeof(Chunk), &chunk, sizeof(Chunk));
}

// Fills a run of Count to 2 * Count chunks by two stores that may overlap.
template <class Chunk, std::size_t Count = 1>
void fillEnds(Byte* run, Word value, std::size_t bytes) {
    const std::size_t tail = bytes - Count * sizeof(Chunk);
    const auto chunk = repeat<Chunk>(value);
    store<Chunk, Count>(run, chunk);
    store<Chunk, Count>(run + tail, chunkAt(chunk, value, tail));
}

// Fills whole 8-byte words up to `end` and at most 7 bytes beyond.
void fillByStringStore(Byte* at, const Byte* end, Word word) {
    auto left = (static_cast<std::size_t>(end - at) + 7) / 8;
    const auto pattern = repeat<std::uint64_t>(word);
    while (left != 0) {
        auto count = std::min(left, pieceWords);
        left -= count;
        asm volatile("rep stosq" : "+D"(at), "+c"(count) : "a"(pattern) : "memory");
    }
}

// Fills 128 bytes or more; the body is stored by whole cache lines.
void fillLong(Byte* run, Word value, std::size_t bytes) {
    const auto chunk = repeat<__m256i>(value);
    store<__m256i, 2>(run, chunk);
    const std::size_t head = cacheLine - reinterpret_cast<std::uintptr_t>(run) % cacheLine;
    const std::size_t tail = bytes - bodyStep;
    const Byte* const end = run + tail;
    if (bytes >= stringStoreFrom) {
        fillByStringStore(run + head, end, wordAt(value, head));
    } else {
        const auto body = chunkAt(chunk, value, head);
        for (Byte* at = run + head; at < end; at += bodyStep)
            store<__m256i, 4>(at, body);
    }
    store<__m256i, 4>(run + tail, chunkAt(chunk, value, tail));
}

// Fills 32 to 127 bytes.
void fillMiddle(Byte* run, Word value, std::size_t bytes) {
    if (bytes >= 64)
        fillEnds<__m256i, 2>(run, value, bytes);
    else
        fillEnds<__m256i>(run, value, bytes);
}

// Fills up to 31 bytes.
void fillShort(Byte* run, Word value, std::size_t bytes) {
    if (bytes >= 16)
        fillEnds<__m128i>(run, value, bytes);
    else if (bytes >= 8)
        fillEnds<std::uint64_t>(run, value, bytes);
    else if (bytes >= 4)
        fillEnds<Word>(run, value, bytes);
    else
        for (std::size_t i = 0; i < bytes; ++i)
            run[i] = static_cast<Byte>(wordAt(value, i));
}

} // namespace

ZRDRAW_API void* CopyMemoryFast(void* dst, const void* src, unsigned long bytes) {
    return std::memcpy(dst, src, bytes);
}

ZRDRAW_API void* zrOSCopyMemory(void* dst, const void* src, unsigned long bytes) {
    return std::memcpy(dst, src, bytes);
}

ZRDRAW_API void* SetMemoryFast(void* dst, unsigned int value, unsigned long bytes) {
    auto* const run = static_cast<Byte*>(dst);
    if (bytes >= bodyStep)
        fillLong(run, value, bytes);
    else if (bytes >= 32)
        fillMiddle(run, value, bytes);
    else
        fillShort(run, value, bytes);
    return dst;
}

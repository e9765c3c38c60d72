// Runs of one pattern. A pattern of 4 or 8 bytes is read once, so that it may lie directly before
// the run; other widths are read anew for each element where pattern and run overlap.
#include "span/bodies.h"
#include "span/words.h"

#include <cstdint>
#include <cstring>

#include <immintrin.h>

namespace {

template <typename Word>
void fillWords(unsigned char* dst, const unsigned char* pattern, unsigned long count) {
    const auto word = loadAs<Word>(pattern);
#pragma GCC unroll 8
    for (unsigned long i = 0; i < count; ++i)
        storeAs(dst + i * sizeof word, word);
}

void fillElements(unsigned char* dst, const unsigned char* pattern, unsigned int patternBytes,
                  unsigned long count) {
#pragma GCC unroll 8
    for (unsigned long i = 0; i < count; ++i)
        std::memmove(dst + i * patternBytes, pattern, patternBytes);
}

bool overlaps(const unsigned char* dst, const unsigned char* pattern, unsigned int patternBytes,
              unsigned long count) {
    const auto run = reinterpret_cast<std::uintptr_t>(dst);
    const auto unit = reinterpret_cast<std::uintptr_t>(pattern);
    return unit < run + patternBytes * count && run < unit + patternBytes;
}

// A whole number of 3-byte and of 6-byte patterns, and of vectors.
constexpr unsigned long blockBytes = 96;
constexpr unsigned long vectorBytes = sizeof(__m256i);

// Repeats a pattern over a block. Copies of a width known here are plain stores, which matters for
// short runs.
template <unsigned int width>
void repeatPattern(unsigned char* block, const unsigned char* pattern) {
    for (unsigned long at = 0; at < blockBytes; at += width)
        std::memcpy(block + at, pattern, width);
}

void makeBlock(unsigned char* block, const unsigned char* pattern, unsigned int patternBytes) {
    if (patternBytes == 3)
        return repeatPattern<3>(block, pattern);
    if (patternBytes == 6)
        return repeatPattern<6>(block, pattern);
    for (unsigned long at = 0; at < blockBytes; at += patternBytes)
        std::memcpy(block + at, pattern, patternBytes);
}

// Fills by 96-byte blocks held in three registers. The run is a whole number of patterns and so is
// a block, so a last block that ends with the run has the same phase and may overlap the one
// before.
void fillBlocks(unsigned char* dst, const unsigned char* pattern, unsigned int patternBytes,
                unsigned long count) {
    alignas(vectorBytes) unsigned char block[blockBytes];
    makeBlock(block, pattern, patternBytes);
    const unsigned long bytes = patternBytes * count;
    if (bytes < blockBytes) {
        std::memcpy(dst, block, bytes);
        return;
    }
    const auto* vectors = reinterpret_cast<const __m256i*>(block);
    const __m256i v0 = _mm256_load_si256(vectors);
    const __m256i v1 = _mm256_load_si256(vectors + 1);
    const __m256i v2 = _mm256_load_si256(vectors + 2);
    const auto storeBlock = [&](unsigned char* at) {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(at), v0);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(at + vectorBytes), v1);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(at + 2 * vectorBytes), v2);
    };
    const unsigned long last = bytes - blockBytes;
    for (unsigned long at = 0; at < last; at += blockBytes)
        storeBlock(dst + at);
    storeBlock(dst + last);
}

} // namespace

void span::fillPlain(unsigned char* dst, const unsigned char* pattern, unsigned int patternBytes,
                     unsigned long count) {
    if (patternBytes == 8)
        fillWords<std::uint64_t>(dst, pattern, count);
    else if (patternBytes == 4)
        fillWords<std::uint32_t>(dst, pattern, count);
    else if (blockBytes % patternBytes == 0 && !overlaps(dst, pattern, patternBytes, count))
        fillBlocks(dst, pattern, patternBytes, count);
    else
        fillElements(dst, pattern, patternBytes, count);
}

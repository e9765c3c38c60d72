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

// A whole number of patterns of many widths, in three registers.
struct Block {
    __m256i first, second, third;

    void store(unsigned char* at) const {
        auto* const vectors = reinterpret_cast<__m256i*>(at);
        _mm256_storeu_si256(vectors, first);
        _mm256_storeu_si256(vectors + 1, second);
        _mm256_storeu_si256(vectors + 2, third);
    }
};
constexpr unsigned long blockBytes = sizeof(Block);

Block repeatPattern(const unsigned char* pattern, unsigned int patternBytes) {
    unsigned char bytes[blockBytes];
    for (unsigned long at = 0; at < blockBytes; at += patternBytes)
        std::memcpy(bytes + at, pattern, patternBytes);
    return loadAs<Block>(bytes);
}

// Patterns of 3 and 6 bytes by a quarter of a block, which is a whole number of either.
struct Period {
    std::uint64_t first, second, third;

    void store(unsigned char* at) const {
        storeAs(at, first);
        storeAs(at + sizeof first, second);
        storeAs(at + 2 * sizeof first, third);
    }
    Block block() const {
        const auto vector = [](std::uint64_t a, std::uint64_t b, std::uint64_t c) {
            return _mm256_set_epi64x(static_cast<long long>(a), static_cast<long long>(c),
                                     static_cast<long long>(b), static_cast<long long>(a));
        };
        return {vector(first, second, third), vector(second, third, first),
                vector(third, first, second)};
    }
};

Period periodOf(const unsigned char* pattern, unsigned int patternBytes) {
    std::uint64_t six = loadAs<std::uint16_t>(pattern) | std::uint64_t{pattern[2]} << 16;
    if (patternBytes == 3)
        six |= six << 24;
    else
        six |= std::uint64_t{pattern[3]} << 24 | std::uint64_t{loadAs<std::uint16_t>(pattern + 4)}
                                                     << 32;
    return {six | six << 48, six >> 16 | six << 32, six >> 32 | six << 16};
}

// The run is a whole number of patterns and so is a unit, so a last unit that ends with the run has
// the same phase and may overlap the one before.
template <typename Unit>
void repeatUnit(unsigned char* dst, const Unit& unit, unsigned long bytes) {
    const unsigned long last = bytes - sizeof unit;
    for (unsigned long at = 0; at < last; at += sizeof unit)
        unit.store(dst + at);
    unit.store(dst + last);
}

// From here on it is worth while to make vectors.
constexpr unsigned long longRun = 2 * blockBytes;

void fillPeriods(unsigned char* dst, const Period& period, unsigned long bytes) {
    if (bytes >= longRun)
        return repeatUnit(dst, period.block(), bytes);
    if (bytes >= sizeof period)
        return repeatUnit(dst, period, bytes);
    // Six bytes, or twice three, at a time.
    for (unsigned long at = 0; at < bytes; at += 3)
        std::memcpy(dst + at, reinterpret_cast<const char*>(&period.first) + at % 6, 3);
}

void fillBlocks(unsigned char* dst, const Block& block, unsigned long bytes) {
    if (bytes >= blockBytes)
        repeatUnit(dst, block, bytes);
    else
        std::memcpy(dst, &block, bytes);
}

} // namespace

void span::fillPlain(unsigned char* dst, const unsigned char* pattern, unsigned int patternBytes,
                     unsigned long count) {
    const bool hasPeriod = patternBytes == 3 || patternBytes == 6;
    if (patternBytes == 8)
        fillWords<std::uint64_t>(dst, pattern, count);
    else if (patternBytes == 4)
        fillWords<std::uint32_t>(dst, pattern, count);
    else if (overlaps(dst, pattern, patternBytes, count) ||
             (!hasPeriod && blockBytes % patternBytes != 0))
        fillElements(dst, pattern, patternBytes, count);
    else if (hasPeriod)
        fillPeriods(dst, periodOf(pattern, patternBytes), patternBytes * count);
    else
        fillBlocks(dst, repeatPattern(pattern, patternBytes), patternBytes * count);
}

// Runs of 4- and 8-byte patterns in unaligned 32-byte stores. The pattern is loaded once and stays
// in a register; there is no aligning prologue, so runs may be very short.
#include "span/bodies.h"
#include "span/target.h"
#include "span/word_run.h"

#include <cstring>

#include <immintrin.h>

namespace {

constexpr unsigned long vectorBytes = sizeof(__m256i);
constexpr unsigned long wideBytes = 4 * vectorBytes;

// From here on the string store wins: it takes cache lines over without reading them first. In
// pieces, as a string much longer than the caches may be written past them, at half the speed.
constexpr unsigned long stringStoreFrom = 512 * 1024;
constexpr unsigned long pieceBytes = 256 * 1024;

void store32(unsigned char* at, __m256i vector) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(at), vector);
}

// A pattern of 4 or 8 bytes.
__m256i broadcast(const unsigned char* pattern, unsigned int patternBytes) {
    return patternBytes == 4 ? _mm256_set1_epi32(loadAs<int>(pattern))
                             : _mm256_set1_epi64x(loadAs<long long>(pattern));
}

// Fills whole pieces. @return the bytes filled
unsigned long fillPieces(unsigned char* dst, __m256i vector, unsigned long bytes) {
    const long long word = _mm_cvtsi128_si64(_mm256_castsi256_si128(vector));
    unsigned long filled = 0;
    for (; bytes - filled >= pieceBytes; filled += pieceBytes) {
        unsigned char* at = dst + filled;
        unsigned long words = pieceBytes / sizeof word;
        asm volatile("rep stosq" : "+D"(at), "+c"(words) : "a"(word) : "memory");
    }
    return filled;
}

// What is left after the wide stage: whole vectors, then at most 28 bytes. A remainder is a whole
// number of patterns, so its stores may be of either size for either pattern.
void fillRest(unsigned char* dst, __m256i vector, unsigned long bytes) {
    for (; bytes >= vectorBytes; bytes -= vectorBytes, dst += vectorBytes)
        store32(dst, vector);
    const __m128i half = _mm256_castsi256_si128(vector);
    if (bytes >= sizeof half) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), half);
        dst += sizeof half;
        bytes -= sizeof half;
    }
    const long long eight = _mm_cvtsi128_si64(half);
    if (bytes >= sizeof eight) {
        std::memcpy(dst, &eight, sizeof eight);
        dst += sizeof eight;
        bytes -= sizeof eight;
    }
    const int four = _mm_cvtsi128_si32(half);
    if (bytes != 0)
        std::memcpy(dst, &four, sizeof four);
}

} // namespace

void span::fillAvx(unsigned char* dst, const unsigned char* pattern, unsigned int patternBytes,
                   unsigned long count) {
    fillRest(dst, broadcast(pattern, patternBytes), patternBytes * count);
}

void span::fillShort(unsigned char* dst, const unsigned char* pattern, unsigned int patternBytes,
                     unsigned long count) {
    fillWordRun(reinterpret_cast<char*>(dst), broadcast(pattern, patternBytes),
                patternBytes * count);
}

ZRDRAW_AVX2 void span::fillAvx2(unsigned char* dst, const unsigned char* pattern,
                                unsigned int patternBytes, unsigned long count) {
    if (patternBytes != 4 && patternBytes != 8)
        return;
    const __m256i vector = broadcast(pattern, patternBytes);
    unsigned long bytes = patternBytes * count;
    if (bytes >= stringStoreFrom) {
        const unsigned long filled = fillPieces(dst, vector, bytes);
        dst += filled;
        bytes -= filled;
    }
#pragma GCC unroll 8
    for (; bytes >= wideBytes; bytes -= wideBytes, dst += wideBytes)
        for (unsigned long at = 0; at < wideBytes; at += vectorBytes)
            store32(dst + at, vector);
    fillRest(dst, vector, bytes);
}

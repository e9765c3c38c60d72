// 8-bit 4:2:2. Only the positions of the bytes count, not what they mean.
#include "fx/planes.h"

#include <immintrin.h>

namespace {

// Of the eight bytes of four pixels, those that become the twelve in the plane; and of the six
// bytes of a pair in the plane, those that become the four of the frame. The chroma of an odd pixel
// is dropped.
constexpr unsigned char expanded[] = {1, 0, 3, 2, 0, 3, 5, 4, 7, 6, 4, 7};
constexpr unsigned char packed[] = {1, 0, 3, 2};

constexpr unsigned int quadFrameBytes = 8, quadPlaneBytes = 12;
constexpr unsigned int pairFrameBytes = 4, pairPlaneBytes = 6;

constexpr unsigned int vectorBytes = 16;

constexpr unsigned int expandedFrom(unsigned int planeByte) {
    return planeByte / quadPlaneBytes * quadFrameBytes + expanded[planeByte % quadPlaneBytes];
}
constexpr unsigned int packedFrom(unsigned int frameByte) {
    return frameByte / pairFrameBytes * pairPlaneBytes + packed[frameByte % pairFrameBytes];
}

// Where sixteen bytes, from byte `first` of a line on, stand in a vector that begins at byte `base`
// of the other line. What lies outside of it becomes 0.
struct Places {
    alignas(vectorBytes) unsigned char at[vectorBytes];

    __m128i of(__m128i bytes) const {
        return _mm_shuffle_epi8(bytes, _mm_load_si128(reinterpret_cast<const __m128i*>(at)));
    }
};
template <typename Rule>
constexpr Places placesOf(Rule rule, unsigned int first, unsigned int base) {
    constexpr unsigned char nowhere = 0x80;
    Places places{};
    for (unsigned int i = 0; i < vectorBytes; ++i) {
        const unsigned int place = rule(first + i) - base;
        places.at[i] = place < vectorBytes ? static_cast<unsigned char>(place) : nowhere;
    }
    return places;
}

__m128i load(const unsigned char* from) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}
void store(unsigned char* to, __m128i bytes) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), bytes);
}

// 32 bytes become 48.
void expandSixteen(const unsigned char* from, unsigned char* to) {
    constexpr unsigned int half = vectorBytes / 2;
    static constexpr Places begin = placesOf(expandedFrom, 0, 0);
    static constexpr Places middle = placesOf(expandedFrom, vectorBytes, half);
    static constexpr Places end = placesOf(expandedFrom, 2 * vectorBytes, vectorBytes);
    store(to, begin.of(load(from)));
    store(to + vectorBytes, middle.of(load(from + half)));
    store(to + 2 * vectorBytes, end.of(load(from + vectorBytes)));
}

void expandLine(const unsigned char* from, unsigned char* to, unsigned int width) {
    constexpr unsigned int vectorPixels = 16;
    unsigned int x = 0;
    for (; x + vectorPixels <= width; x += vectorPixels) {
        expandSixteen(from, to);
        from += 2 * vectorBytes;
        to += 3 * vectorBytes;
    }
    for (; x < width; x += 4) {
        for (unsigned int i = 0; i < quadPlaneBytes; ++i)
            to[i] = from[expanded[i]];
        from += quadFrameBytes;
        to += quadPlaneBytes;
    }
}

// 24 bytes become 16. Bytes that stand in both vectors are the same.
void packEight(const unsigned char* from, unsigned char* to) {
    constexpr unsigned int half = vectorBytes / 2;
    static constexpr Places begin = placesOf(packedFrom, 0, 0);
    static constexpr Places end = placesOf(packedFrom, 0, half);
    store(to, _mm_or_si128(begin.of(load(from)), end.of(load(from + half))));
}

void packLine(const unsigned char* from, unsigned char* to, unsigned int width) {
    constexpr unsigned int vectorPixels = 8;
    unsigned int x = 0;
    for (; x + vectorPixels <= width; x += vectorPixels) {
        packEight(from, to);
        from += vectorBytes + vectorBytes / 2;
        to += vectorBytes;
    }
    for (; x < width; x += 2) {
        for (unsigned int i = 0; i < pairFrameBytes; ++i)
            to[i] = from[packed[i]];
        from += pairPlaneBytes;
        to += pairFrameBytes;
    }
}

} // namespace

void expandPairs(const PlaneCopy& copy) {
    for (unsigned int y = 0; y < copy.height; ++y)
        expandLine(copy.frameLine(y), copy.planeLine(y), copy.width);
}

void packPairs(const PlaneCopy& copy) {
    for (unsigned int y = 0; y < copy.height; ++y)
        packLine(copy.planeLine(y), copy.frameLine(y), copy.width);
}

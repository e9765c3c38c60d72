// v210: words of three 10-bit samples, of which the top eight bits are kept.
#include "fx/planes.h"
#include "fx/planes_groups_avx2.h"
#include "fx/v210_group.h"
#include "zrdraw/span.h"

#include <immintrin.h>

namespace {

__m128i shuffled(__m128i bytes, const Shuffle& shuffle) {
    return _mm_shuffle_epi8(bytes, _mm_load_si128(reinterpret_cast<const __m128i*>(&shuffle)));
}

void expandGroup(const unsigned char* from, unsigned char* to) {
    const __m128i words = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    const auto samples = reinterpret_cast<__m128i>(samplesOf(reinterpret_cast<Words4>(words)));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), shuffled(samples, firstPlaneBytes));
    _mm_storeu_si16(to + sizeof samples, shuffled(samples, lastPlaneBytes));
}

void packGroup(const unsigned char* from, unsigned char* to) {
    const __m128i pixels = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    const auto samples = reinterpret_cast<Words4>(shuffled(pixels, samplesOfPlane));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), reinterpret_cast<__m128i>(wordsOf(samples)));
}

unsigned int groupsOf(unsigned int width) {
    return width / zrV210::groupPixels + (width % zrV210::groupPixels != 0 ? 1 : 0);
}

} // namespace

void expandGroups(const PlaneCopy& copy) {
    const bool wide = zrdraw_avx2_available() != 0;
    const unsigned int groups = groupsOf(copy.width);
    for (unsigned int y = 0; y < copy.height; ++y) {
        const unsigned char* const from = copy.frameLine(y);
        unsigned char* const to = copy.planeLine(y);
        for (unsigned int i = wide ? expandTwoByTwo(from, to, groups) : 0; i < groups; ++i)
            expandGroup(from + i * zrV210::groupBytes, to + i * groupPlaneBytes);
    }
}

void packGroups(const PlaneCopy& copy) {
    const bool wide = zrdraw_avx2_available() != 0;
    const unsigned int groups = groupsOf(copy.width);
    for (unsigned int y = 0; y < copy.height; ++y) {
        const unsigned char* const from = copy.planeLine(y);
        unsigned char* const to = copy.frameLine(y);
        for (unsigned int i = wide ? packTwoByTwo(from, to, groups) : 0; i < groups; ++i)
            packGroup(from + i * groupPlaneBytes, to + i * zrV210::groupBytes);
    }
}

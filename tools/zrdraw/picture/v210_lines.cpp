#include "picture/v210_lines.h"

#include "picture/vectors.h"
#include "zrdraw/v210.h"

#include <cstring>

#include <immintrin.h>

#define TARGET [[gnu::target("avx2")]]

namespace {

constexpr int groupPixels = zrV210::groupPixels;
constexpr int groupBytes = zrV210::groupBytes;
constexpr int pairs = groupPixels / 2;
constexpr int lumaWords = 8;   // of a vector of luma, two more than a group has
constexpr int chromaWords = 4; // of half a vector, one more

// Which sample of a group: the luma of a vector first, or Cb in the low half of another vector and
// Cr in its high half.
struct Source {
    bool chroma;
    int index;
};

constexpr Source sources[] = {{false, 0}, {false, 1}, {false, 2}, {false, 3},
                              {false, 4}, {false, 5}, {true, 0},  {true, 1},
                              {true, 2},  {true, 4},  {true, 5},  {true, 6}};

constexpr zrV210::Place placeOf(const Source& source) {
    if (!source.chroma)
        return zrV210::luma[source.index];
    return source.index < chromaWords ? zrV210::cb[source.index]
                                      : zrV210::cr[source.index - chromaWords];
}

// A byte shuffle of both halves of a vector that moves 16-bit samples; a negative number makes 0.
struct alignas(32) Shuffle {
    signed char from[32];

    constexpr Shuffle() : from{} {
        for (signed char& byte : from)
            byte = -1;
    }
    constexpr void move(int sample, int to) {
        for (int half = 0; half < 32; half += 16) {
            from[half + 2 * to] = static_cast<signed char>(2 * sample);
            from[half + 2 * to + 1] = static_cast<signed char>(2 * sample + 1);
        }
    }
    TARGET __m256i operator()(__m256i samples) const {
        return _mm256_shuffle_epi8(samples,
                                   _mm256_load_si256(reinterpret_cast<const __m256i*>(from)));
    }
};

// Words of samples: the low and the middle fields in turns, or the high ones with a zero behind.
enum class Way { IntoFields, FromFields };

constexpr Shuffle fieldShuffle(Way way, bool chroma, bool high) {
    Shuffle shuffle;
    for (const Source& source : sources) {
        const zrV210::Place place = placeOf(source);
        const int word = static_cast<int>(place.word), field = static_cast<int>(place.field());
        const int fieldIndex = 2 * word + (high ? 0 : field);
        if (source.chroma != chroma || (field == 2) != high)
            continue;
        if (way == Way::IntoFields)
            shuffle.move(source.index, fieldIndex);
        else
            shuffle.move(fieldIndex, source.index);
    }
    return shuffle;
}

TARGET __m128i load(const std::uint16_t* samples) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(samples));
}

TARGET __m128i loadHalf(const std::uint16_t* samples) {
    return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(samples));
}

TARGET __m256i both(__m128i low, __m128i high) {
    return _mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1);
}

// Two groups at a time. Returns how many pixels that were.
TARGET int packGroups(const V210Samples& samples, std::uint8_t* line, int width) {
    static constexpr Shuffle luma = fieldShuffle(Way::IntoFields, false, false),
                             lumaHigh = fieldShuffle(Way::IntoFields, false, true),
                             chroma = fieldShuffle(Way::IntoFields, true, false),
                             chromaHigh = fieldShuffle(Way::IntoFields, true, true);
    const __m256i mask = _mm256_set1_epi16(zrV210::sampleMask);
    const __m256i places = _mm256_set1_epi32(1 << (zrV210::sampleBits + 16) | 1);
    int x = 0;
    for (; x + groupPixels + lumaWords <= width; x += 2 * groupPixels) {
        const int c = x / 2;
        const __m256i y =
            _mm256_and_si256(mask, both(load(samples.y + x), load(samples.y + x + groupPixels)));
        const __m256i cbCr = _mm256_and_si256(
            mask, both(_mm_unpacklo_epi64(loadHalf(samples.cb + c), loadHalf(samples.cr + c)),
                       _mm_unpacklo_epi64(loadHalf(samples.cb + c + pairs),
                                          loadHalf(samples.cr + c + pairs))));
        const __m256i lowMiddle = _mm256_or_si256(luma(y), chroma(cbCr));
        const __m256i high = _mm256_or_si256(lumaHigh(y), chromaHigh(cbCr));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(line),
                            _mm256_or_si256(_mm256_madd_epi16(lowMiddle, places),
                                            _mm256_slli_epi32(high, 2 * zrV210::sampleBits)));
        line += 2 * groupBytes;
    }
    return x;
}

TARGET void store(std::uint16_t* samples, __m128i words) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(samples), words);
}

TARGET void storeHalf(std::uint16_t* samples, __m128i words) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(samples), words);
}

TARGET int unpackGroups(const std::uint8_t* line, const V210Targets& targets, int width) {
    static constexpr Shuffle luma = fieldShuffle(Way::FromFields, false, false),
                             lumaHigh = fieldShuffle(Way::FromFields, false, true),
                             chroma = fieldShuffle(Way::FromFields, true, false),
                             chromaHigh = fieldShuffle(Way::FromFields, true, true);
    const __m256i sample = _mm256_set1_epi32(zrV210::sampleMask);
    int x = 0;
    for (; x + groupPixels + lumaWords <= width; x += 2 * groupPixels) {
        const int c = x / 2;
        const __m256i words = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(line));
        const __m256i low = _mm256_and_si256(words, sample);
        const __m256i middle =
            _mm256_and_si256(_mm256_srli_epi32(words, zrV210::sampleBits), sample);
        const __m256i high =
            _mm256_and_si256(_mm256_srli_epi32(words, 2 * zrV210::sampleBits), sample);
        const __m256i lowMiddle = _mm256_or_si256(low, _mm256_slli_epi32(middle, 16));
        const __m256i y = _mm256_or_si256(luma(lowMiddle), lumaHigh(high));
        const __m256i cbCr = _mm256_or_si256(chroma(lowMiddle), chromaHigh(high));
        // Each of these writes over what the one before wrote behind its group.
        store(targets.y + x, _mm256_castsi256_si128(y));
        store(targets.y + x + groupPixels, _mm256_extracti128_si256(y, 1));
        const __m128i first = _mm256_castsi256_si128(cbCr);
        const __m128i second = _mm256_extracti128_si256(cbCr, 1);
        storeHalf(targets.cb + c, first);
        storeHalf(targets.cb + c + pairs, second);
        storeHalf(targets.cr + c, _mm_unpackhi_epi64(first, first));
        storeHalf(targets.cr + c + pairs, _mm_unpackhi_epi64(second, second));
        line += 2 * groupBytes;
    }
    return x;
}

V210Samples behind(const V210Samples& samples, int x) {
    return {samples.y + x, samples.cb + x / 2, samples.cr + x / 2};
}

V210Targets behind(const V210Targets& targets, int x) {
    return {targets.y + x, targets.cb + x / 2, targets.cr + x / 2};
}

} // namespace

void packV210Plain(const V210Samples& samples, std::uint8_t* line, int width) {
    for (int x = 0; x < width; x += groupPixels, line += groupBytes) {
        std::uint32_t words[groupBytes / zrV210::wordBytes] = {};
        const auto put = [&words](const zrV210::Place& place, std::uint16_t sample) {
            words[place.word] |= (sample & zrV210::sampleMask) << place.bit;
        };
        for (int i = 0; i < groupPixels && x + i < width; ++i) {
            put(zrV210::luma[i], samples.y[x + i]);
            if (i % 2 != 0)
                continue;
            put(zrV210::cb[i / 2], samples.cb[(x + i) / 2]);
            put(zrV210::cr[i / 2], samples.cr[(x + i) / 2]);
        }
        std::memcpy(line, words, sizeof words);
    }
}

void unpackV210Plain(const std::uint8_t* line, const V210Targets& targets, int width) {
    for (int x = 0; x < width; x += groupPixels, line += groupBytes) {
        std::uint32_t words[groupBytes / zrV210::wordBytes];
        std::memcpy(words, line, sizeof words);
        const auto at = [&words](const zrV210::Place& place) {
            return static_cast<std::uint16_t>(words[place.word] >> place.bit & zrV210::sampleMask);
        };
        for (int i = 0; i < groupPixels && x + i < width; ++i) {
            targets.y[x + i] = at(zrV210::luma[i]);
            if (i % 2 != 0)
                continue;
            targets.cb[(x + i) / 2] = at(zrV210::cb[i / 2]);
            targets.cr[(x + i) / 2] = at(zrV210::cr[i / 2]);
        }
    }
}

void packV210(const V210Samples& samples, std::uint8_t* line, int width) {
    const int done = hasVectors() ? packGroups(samples, line, width) : 0;
    packV210Plain(behind(samples, done), line + done / groupPixels * groupBytes, width - done);
}

void unpackV210(const std::uint8_t* line, const V210Targets& targets, int width) {
    const int done = hasVectors() ? unpackGroups(line, targets, width) : 0;
    unpackV210Plain(line + done / groupPixels * groupBytes, behind(targets, done), width - done);
}

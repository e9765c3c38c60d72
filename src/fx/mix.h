// Mixing runs of samples of two frames, as the dissolve does it: first * t + second * u in double
// precision, truncated, and cut to the width of a sample.
#pragma once

#include "pixel/truncate.h"

#include <cstddef>

struct MixWeights {
    double t; // of the first
    double u; // of the second, 1.0 - t
};

// The weight of the first run in units of 1/65536.
using MixStep = unsigned int;

// Where the next runs are. They are fetched on the way: a band's lines end before the processor has
// seen where they lead, and to wait for memory would take as long again as the mix. Nothing is
// read, so that they may lie outside the frame.
struct MixNext {
    const unsigned char* to;
    const unsigned char* first;
    const unsigned char* second;

    // One line of the cache of each.
    void fetch(std::size_t byte) const {
        __builtin_prefetch(to + byte, 1);
        __builtin_prefetch(first + byte);
        __builtin_prefetch(second + byte);
    }
};

inline constexpr std::size_t cacheLineBytes = 64;

template <typename Sample>
inline Sample mixSample(Sample first, Sample second, const MixWeights& weights) {
    return static_cast<Sample>(truncateToInt(first * weights.t + second * weights.u));
}

// These bodies give the same bytes wherever more than one may be used.

// Any weights. Values that no integer holds are the processor's "integer indefinite".
void mixBytes(unsigned char* to, const unsigned char* first, const unsigned char* second,
              std::size_t count, const MixWeights& weights);
void mixWords(unsigned short* to, const unsigned short* first, const unsigned short* second,
              std::size_t count, const MixWeights& weights);

// Where t is a whole number of 65536ths from 0 to 1, every product and sum above is exact in double
// precision, so that integers give the same result.
bool isWholeStep(const MixWeights& weights, MixStep& step);
void mixBytesByStep(unsigned char* to, const unsigned char* first, const unsigned char* second,
                    std::size_t count, MixStep step, const MixNext& next);
void mixWordsByStep(unsigned short* to, const unsigned short* first, const unsigned short* second,
                    std::size_t count, MixStep step, const MixNext& next);

// By contract: the first is truncated before it is weighed, the second is not.
void mixFloats(float* to, const float* first, const float* second, std::size_t count,
               const MixWeights& weights);

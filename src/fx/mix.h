// Mixing runs of samples of two frames, as the dissolve does it: first * weight + second * (1 -
// weight) in double precision, truncated, and cut to the width of a sample.
#pragma once

#include "fx/pixel_groups.h"
#include "pixel/truncate.h"

#include <cstddef>

struct Mix;

// The runs of a band's next line. They are fetched while this line is mixed: the lines of a band do
// not follow each other in memory, so the processor does not see the next one coming, and waiting
// for it takes as long as the mix itself. A fetch of what is no memory does nothing, so the line
// behind the last needs no care.
struct NextRuns {
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

using MixBody = void(unsigned char* to, const unsigned char* first, const unsigned char* second,
                     std::size_t bytes, const Mix& mix, const NextRuns& next);

// How samples are mixed: the body, and the weights as the bodies need them.
struct Mix {
    MixBody* body;
    double ofFirst, ofSecond;             // their sum is 1, but for rounding
    unsigned int firstUnits, secondUnits; // in 65536ths, rounded up; 0 off the scale

    // For `mixRoundedBytesAvx2`: whether a mix of a byte with itself is one less, in bit
    // (byte / 16) % 8 of element byte % 16; for the bytes up to 127 and for those above.
    alignas(16) unsigned char lessBelow[16];
    alignas(16) unsigned char lessAbove[16];

    void operator()(unsigned char* to, const unsigned char* first, const unsigned char* second,
                    std::size_t bytes, const NextRuns& next) const {
        body(to, first, second, bytes, *this, next);
    }
};

// The fastest body for samples of a type by a weight of the first run, on this processor. All that
// can mix by a weight give the same bytes. Any weight will do: a sum that no integer holds is the
// processor's "integer indefinite".
Mix chooseMix(SampleType type, double weight);

// In double precision, by any weight.
MixBody mixBytes, mixWords, mixFloats;

// By a weight that is a whole number of 65536ths, from 0 to 1. Every product and sum is exact in
// double precision then, so integers give the same.
MixBody copyFirst, copySecond; // where it is 1 and 0
MixBody mixWholeBytes, mixWholeWords, mixWholeBytesAvx2, mixWholeWordsAvx2;

// By a weight that leaves at least a 65536th to either run, in integers as far as these can tell.
MixBody mixRoundedBytesAvx2;

// Fills in what the last body needs.
void tabulateEqualBytes(Mix& mix);

template <typename Sample>
inline Sample mixSample(Sample first, Sample second, const Mix& mix) {
    return static_cast<Sample>(truncateToInt(first * mix.ofFirst + second * mix.ofSecond));
}

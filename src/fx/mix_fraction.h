// Mixing bytes by weights that are no whole steps, in integers as far as these can tell.
#pragma once

#include "fx/mix.h"

#include <cstddef>

// The result lies d * weight above the lesser of two bytes, d being their difference and the weight
// that of the greater. With the weight rounded up to 65536ths the product is too large by less than
// 255/65536, so that its whole part is right unless what is left over is less than 256/65536. Then
// d * weight is a whole number or nearly one, and what double precision makes of it stands: for
// equal bytes, which are frequent, it is looked up, for the others it is worked out.
struct MixFraction {
    MixWeights weights;
    MixStep stepOfFirst, stepOfSecond;

    // Whether a mix of a byte with itself is one less: bit (byte / 16) % 8 of element byte % 16,
    // for the bytes up to 127 and for those above.
    alignas(16) unsigned char lessBelow[16];
    alignas(16) unsigned char lessAbove[16];
};

// Whether this processor can, with these weights.
bool hasFraction(const MixWeights& weights, MixFraction& fraction);

// The same bytes as `mixBytes`.
void mixBytesByFraction(unsigned char* to, const unsigned char* first, const unsigned char* second,
                        std::size_t count, const MixFraction& fraction, const MixNext& next);

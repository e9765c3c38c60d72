// Conversions of doubles to integers by the processor's truncating conversion. A value that the
// integer cannot hold, which C++ leaves undefined, gives the processor's "integer indefinite".
#pragma once

#include <immintrin.h>

inline int truncateToInt(double value) {
    return _mm_cvttsd_si32(_mm_set_sd(value));
}

// The low 32 bits of the truncated value.
inline unsigned int truncateToWord(double value) {
    return static_cast<unsigned int>(_mm_cvttsd_si64(_mm_set_sd(value)));
}

// The low 8 bits of the truncated value.
inline unsigned char truncateToByte(double value) {
    return static_cast<unsigned char>(truncateToInt(value));
}

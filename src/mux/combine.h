// Loops over pixels, which the compiler makes vectors of. Nothing in them may look at an object: a
// store through a byte pointer could have changed it.
#pragma once

#include "mux/mux_args.h"
#include "span/target.h"
#include "zrdraw/span.h"

// out = combine(a, b) for each pixel of a line.
template <typename Combine>
[[gnu::always_inline]] inline void combineLine(unsigned char* to, const unsigned char* a,
                                               const unsigned char* b, std::size_t pixels,
                                               Combine combine) {
    for (std::size_t x = 0; x < pixels; ++x)
        storePixel(to + x * MuxArgs::pixelBytes, combine(loadPixel(a + x * MuxArgs::pixelBytes),
                                                         loadPixel(b + x * MuxArgs::pixelBytes)));
}

template <typename Combine>
ZRDRAW_AVX2 void combineLineAvx2(unsigned char* to, const unsigned char* a, const unsigned char* b,
                                 std::size_t pixels, Combine combine) {
    combineLine(to, a, b, pixels, combine);
}

// The same for every line of the pictures.
template <typename Combine>
void combineAll(const MuxArgs& m, Combine combine) {
    if (m.isEmpty())
        return;
    const bool wide = zrdraw_avx2_available() != 0;
    for (unsigned int y = 0; y < m.height; ++y) {
        const std::size_t line = m.line(y);
        if (wide)
            combineLineAvx2(m.dst + line, m.a + line, m.b + line, m.width, combine);
        else
            combineLine(m.dst + line, m.a + line, m.b + line, m.width, combine);
    }
}

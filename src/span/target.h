// What marks a body that is compiled for AVX2, above the AVX that the library is built for. Such a
// body is only called where zrdraw_avx2_available() answers 1.
#pragma once

#define ZRDRAW_AVX2 [[gnu::target("avx2")]]

// For the parts of such a body: they take on its vectors only where they are inlined into it.
#define ZRDRAW_AVX2_INLINE [[gnu::target("avx2"), gnu::always_inline]] inline

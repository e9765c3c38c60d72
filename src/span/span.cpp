// The exported span kernels: guards, and the choice of a body per call.
#include "zrdraw/span.h"

#include "span/bodies.h"

void zrdraw_fill_pattern_c(void* dst, const void* pattern, unsigned int patternBytes,
                           unsigned long count) {
    if (dst == nullptr || pattern == nullptr || patternBytes == 0 || count == 0)
        return;
    span::fillPlain(static_cast<unsigned char*>(dst), static_cast<const unsigned char*>(pattern),
                    patternBytes, count);
}

void zrdraw_fill_pattern(void* dst, const void* pattern, unsigned int patternBytes,
                         unsigned long count) {
    if (dst == nullptr || pattern == nullptr || patternBytes == 0 || count == 0)
        return;
    auto* const to = static_cast<unsigned char*>(dst);
    const auto* const from = static_cast<const unsigned char*>(pattern);
    if (patternBytes != 4 && patternBytes != 8)
        span::fillPlain(to, from, patternBytes, count);
    else if (count <= span::shortRun)
        span::fillShort(to, from, patternBytes, count);
    else if (zrdraw_avx2_available() != 0)
        span::fillAvx2(to, from, patternBytes, count);
    else
        span::fillAvx(to, from, patternBytes, count);
}

void zrdraw_blend_bgra_over_c(unsigned char* dst, const unsigned char* src, unsigned long pixels) {
    if (src == nullptr || pixels == 0 || dst == nullptr)
        return;
    span::blendPlain(dst, src, pixels);
}

void zrdraw_blend_bgra_over(unsigned char* dst, const unsigned char* src, unsigned long pixels) {
    if (src == nullptr || pixels == 0 || dst == nullptr)
        return;
    auto* body = zrdraw_avx2_available() != 0 ? &span::blendAvx2 : &span::blendPlain;
    body(dst, src, pixels);
}

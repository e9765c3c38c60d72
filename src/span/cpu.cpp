// The processor test: AVX2 needs the processor's word and the operating system's, which keeps the
// vector registers over a switch of threads.
#include "zrdraw/span.h"

#include <cpuid.h>
#include <immintrin.h>

namespace {

// Bits of the CPUID and XGETBV results, from the processor manuals.
constexpr unsigned int leaf1EcxOsxsave = 1U << 27;
constexpr unsigned int leaf1EcxAvx = 1U << 28;
constexpr unsigned long long xcr0XmmAndYmm = 0x6;
constexpr unsigned int leaf7EbxAvx2 = 1U << 5;

[[gnu::target("xsave")]] unsigned long long readXcr0() {
    return _xgetbv(0);
}

unsigned char testAvx2() {
    unsigned int eax = 0, ebx = 0, ecx = 0, edx = 0;
    if (__get_cpuid_max(0, nullptr) < 7)
        return 0;
    __cpuid_count(1, 0, eax, ebx, ecx, edx);
    constexpr unsigned int wanted = leaf1EcxOsxsave | leaf1EcxAvx;
    if ((ecx & wanted) != wanted || (readXcr0() & xcr0XmmAndYmm) != xcr0XmmAndYmm)
        return 0;
    __cpuid_count(7, 0, eax, ebx, ecx, edx);
    return (ebx & leaf7EbxAvx2) != 0 ? 1 : 0;
}

} // namespace

int zrdraw_avx2_compiled() {
    return 1;
}

int zrdraw_avx2_available() {
    static const unsigned char available = testAvx2();
    return available;
}

#include "fx/mix_step_avx2.h"

#include "fx/mix_step_loops.h"

__attribute__((target("avx2"))) void mixBytesByStepAvx2(unsigned char* to,
                                                        const unsigned char* first,
                                                        const unsigned char* second,
                                                        std::size_t count, MixStep step) {
    mixBytesLoop(to, first, second, count, step);
}

__attribute__((target("avx2"))) void mixWordsByStepAvx2(unsigned short* to,
                                                        const unsigned short* first,
                                                        const unsigned short* second,
                                                        std::size_t count, MixStep step) {
    mixWordsLoop(to, first, second, count, step);
}

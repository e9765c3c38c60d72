// The integer mix for processors with AVX2.
#pragma once

#include "fx/mix.h"

void mixBytesByStepAvx2(unsigned char* to, const unsigned char* first, const unsigned char* second,
                        std::size_t count, MixStep step, const MixNext& next);
void mixWordsByStepAvx2(unsigned short* to, const unsigned short* first,
                        const unsigned short* second, std::size_t count, MixStep step,
                        const MixNext& next);

// Lines of a wipe in layouts whose pixels share samples, by copies of what they do not share. The
// chroma of a pair is that of its even pixel, as in the library's own front ends.
#pragma once

#include "common/wipe_mask.h"

void wipePairs(const std::vector<WipeMask::Run>& runs, const unsigned char* first,
               const unsigned char* second, unsigned char* to);

void wipeV210(const std::vector<WipeMask::Run>& runs, const unsigned char* first,
              const unsigned char* second, unsigned char* to);

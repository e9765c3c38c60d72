// Which 32-bit words lie in a range in each of their bytes.
#pragma once

#include <cstdint>

struct ByteRanges {
    unsigned char least[4];
    unsigned char span[4]; // up to the greatest
};

// So many words, at most 64, the first in the lowest bit.
std::uint64_t matchWords(const char* at, int count, const ByteRanges& ranges);

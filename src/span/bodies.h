// The bodies of the span kernels behind the exported entries. Arguments are never null or empty
// here; what each body writes is the same.
#pragma once

namespace span {

// Any pattern, in words for 4 and 8 bytes.
void fillPlain(unsigned char* dst, const unsigned char* pattern, unsigned int patternBytes,
               unsigned long count);

// Patterns of 4 or 8 bytes in 32-byte stores; AVX is the baseline of the library.
void fillAvx(unsigned char* dst, const unsigned char* pattern, unsigned int patternBytes,
             unsigned long count);

// The same for short runs, of which a last store may overlap the one before.
inline constexpr unsigned long shortRun = 64; // patterns at most
void fillShort(unsigned char* dst, const unsigned char* pattern, unsigned int patternBytes,
               unsigned long count);

// The same with a stage of 128-byte blocks in front. Any other pattern width writes nothing.
void fillAvx2(unsigned char* dst, const unsigned char* pattern, unsigned int patternBytes,
              unsigned long count);

void blendPlain(unsigned char* dst, const unsigned char* src, unsigned long pixels);
void blendAvx2(unsigned char* dst, const unsigned char* src, unsigned long pixels);

// A line of a picture over 8-bit 4:2:2 in bytes Cb, Y0, Cr, Y1. The picture's pairs have five bytes
// Y, Cb, Y, Cr, A; quotients round down, and up to an alpha of 8 a pair is left alone.
void blendPairs(unsigned char* pairs, const unsigned char* entries, unsigned int count);

} // namespace span

// Two v210 groups at a time, for processors with AVX2.
#pragma once

// Of `count` groups as many as go two by two; answers how many those are.
unsigned int expandTwoByTwo(const unsigned char* from, unsigned char* to, unsigned int count);
unsigned int packTwoByTwo(const unsigned char* from, unsigned char* to, unsigned int count);

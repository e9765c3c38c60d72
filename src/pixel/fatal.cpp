#include "pixel/fatal.h"

#include <cstdio>
#include <cstdlib>

void fatalBounds(const char* what) {
    std::fprintf(stderr, "zrdraw: %s does not fit its buffer\n", what);
    std::abort();
}

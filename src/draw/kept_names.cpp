// Exported names that hosts still link against. Nothing reads or writes them.
#include "zrdraw/font.h"

void* mpEdgeBuffer = nullptr;
unsigned int fp[3] = {};

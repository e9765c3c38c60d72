// Colours of drawing objects as the pictures that they draw on have them.
#pragma once

#include "zrdraw/zrdraw.h"

// Sets a slot's colour, numbers 0 to 1, to that colour on the picture. ZRDraw::SetColorRGBA falls
// short of it on some layouts: on 8-bit 4:2:2 it has studio range whatever the mode says, and that
// twice; on v210 the chroma of a full-range red runs into its neighbour; and on words and half
// floats it sets nothing.
int setPictureColor(ZRDraw& draw, double red, double green, double blue, double alpha,
                    bool foreground);

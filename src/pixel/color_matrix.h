#pragma once

#include "zrdraw/zrpixel.h"

// Whether a mode selects a matrix. In any other, conversions leave their outputs alone.
bool isKnownMatrix(cmYCbCr mode);

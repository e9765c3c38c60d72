// Two pictures to show the library's work on, of the size of a cell, in BGRA.
#pragma once

#include "media/av.h"

// Bars in 75 % of full colour above a ramp of grey.
FramePtr makeBars();

// A sky over hills, in soft colours.
FramePtr makeLandscape();

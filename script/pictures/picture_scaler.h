// Pictures in other sizes.
#pragma once

#include "script/pictures/pictures.h"

// Pixels weigh by their alpha, so that the colours of transparent ones do not show at edges. A size
// that cannot be is a Failure of common/tool_error.h.
ScriptPicture scaled(const ScriptPicture& picture, int width, int height);

// The names by which the command line calls the layouts of the catalogue.
#pragma once

#include "zrdraw/layouts.h"

#include <string>

// The library's name in lower case without "pt", and without the depth of the 32-bit layouts:
// bgra, rgb24, v210, rgbahalf.
std::string layoutName(const zrLayout& layout);

// The layout of a name. Any other name is refused with the names to use.
const zrLayout& layoutNamed(const std::string& name);

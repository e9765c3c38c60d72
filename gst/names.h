// Enumerations of properties, from the library's tables of names.
#pragma once

#include <glib-object.h>

GType wipeCodeType();
GType muxModeType();
GType muxFlipType();

// The element zrwipe.
#pragma once

#include "pair_element.h"

G_BEGIN_DECLS

#define ZR_TYPE_WIPE (zr_wipe_get_type())
G_DECLARE_FINAL_TYPE(ZrWipe, zr_wipe, ZR, WIPE, ZrPair)

G_END_DECLS

// The element zrmux.
#pragma once

#include "pair_element.h"

G_BEGIN_DECLS

#define ZR_TYPE_MUX (zr_mux_get_type())
G_DECLARE_FINAL_TYPE(ZrMux, zr_mux, ZR, MUX, ZrPair)

G_END_DECLS

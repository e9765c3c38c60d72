// From a transition's code to its kernel.
#include "fx/kernel_args.h"
#include "zrdraw/wipes.h"

#include <algorithm>
#include <iterator>

static_assert(std::adjacent_find(std::begin(zrWipes), std::end(zrWipes),
                                 [](const zrWipe& a, const zrWipe& b) {
                                     return a.last < a.first || b.first <= a.last;
                                 }) == std::end(zrWipes));

unsigned int ZRDraw_DisplayWipe(ZRFX_FRAME_PARAMETERS) {
    return ZRDraw_FXMultiThread(ZRFX_FRAME_VALUES, 0, width, 0, height, zrWipeOf(wipeCode).kernel);
}

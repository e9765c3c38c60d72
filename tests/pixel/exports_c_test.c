/* The flat interface from C: counts the answers that are not as they should be. */
#include "zrdraw/exports.h"
#include "zrdraw/font.h"
#include "zrdraw/span.h"

int flatInterfaceWorksInC(void);

int flatInterfaceWorksInC(void) {
    char frame[16] = {0};
    const unsigned int word = 0x01020304U;
    int wrong = 0;
    ZRDraw* draw = qtGetDraw(ptBGRA32, 2, 2, 0, frame);
    wrong += draw == 0;
    wrong += qtZRPixelLock(draw, 0) != 0;
    wrong += qtZRPixelTryLock(draw) != 0;
    wrong += qtZRPixelUnlock(draw) != 0;
    wrong += qtZRPixelUnlock(draw) != 0;
    qtZRPixelSetChangeEvent(draw);
    wrong += qtZRPixelWaitForChangeEvent(draw, 0) != 0;
    wrong += qtReleaseDraw(draw) != 0;
    zrdraw_fill_pattern(frame, &word, 4, 2);
    wrong += frame[4] != 4 || frame[8] != 0;
    wrong += gFont8x10[65 * 10 + 9] != 0x10;
    wrong += qtGetDrawSize(ptV210, 1920, 1080, 0) != 5529600;
    return wrong;
}

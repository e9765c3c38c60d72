/* Makes a drawing object by the flat interface and fills a line of its frame by a span kernel. */
#include <zrdraw/exports.h>
#include <zrdraw/span.h>

#include <stdio.h>

int main(void) {
    static char frame[64 * 64 * 4];
    const unsigned char orange[4] = {0, 128, 255, 255};
    ZRDraw* draw = qtGetDraw(ptBGRA32, 64, 64, 0, frame);
    if (draw == NULL)
        return 1;
    qtZRPixelLock(draw, 0);
    zrdraw_fill_pattern(frame + 32 * 64 * 4, orange, 4, 64);
    qtZRPixelUnlock(draw);
    qtReleaseDraw(draw);
    printf("a frame of %u bytes\n", qtGetDrawSize(ptBGRA32, 64, 64, 0));
    return frame[32 * 64 * 4 + 2] == (char)255 ? 0 : 1;
}

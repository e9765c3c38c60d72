/**
 * @file
 * @ingroup transitions
 *
 * The codes of the transitions as one table. ZRDraw_DisplayWipe looks up its kernels here, the
 * command line tool and the documents their names.
 */
#ifndef ZRDRAW_WIPES_H
#define ZRDRAW_WIPES_H

#include "zrdraw/transitions.h"

/** @addtogroup transitions
 * @{ */

/** A run of codes that all give the same picture. */
struct zrWipe {
    unsigned int first, last;
    zrfxKernel* kernel;
    const char* name; /**< null for codes that show what a named row shows, or nothing */
    const char* help; /**< null where the name is */
};

/** In order of the codes. The gaps dissolve, as the first row does. */
// clang-format off
inline constexpr zrWipe zrWipes[] = {
    {zrWipeDissolve, zrWipeDissolve, zrfxDISSOLVE, "dissolve", "mixes the two; so does every code without a wipe"},
    {zrWipeHorizontal, zrWipeHorizontal, zrfxSMPTE_Horizontal, "horizontal", "an edge from left to right; so do the codes of clocks and the like"},
    {zrWipeVertical, zrWipeVertical, zrfxSMPTE_Vertical, "vertical", "an edge from the top down"},
    {zrWipeTopLeft, zrWipeTopLeft, zrfxSMPTE_TopLeft, "top-left", "a box grows from the top left corner"},
    {zrWipeTopRight, zrWipeTopRight, zrfxSMPTE_TopRight, "top-right", "a box grows from the top right corner"},
    {zrWipeBottomRight, zrWipeBottomRight, zrfxSMPTE_BottomRight, "bottom-right", "a box grows from the bottom right corner"},
    {zrWipeBottomLeft, zrWipeBottomLeft, zrfxSMPTE_BottomLeft, "bottom-left", "a box grows from the bottom left corner"},
    {zrWipeFourCorners, zrWipeFourCorners, zrfxSMPTE_FourCorners, "four-corners", "boxes grow from the four corners"},
    {zrWipeFourSquare, zrWipeFourSquare, zrfxSMPTE_FourSquare, "four-square", "the first shrinks to its centre"},
    {zrWipeBarnDoorVertical, zrWipeBarnDoorVertical, zrfxSMPTE_BarnDoorVertical, "barn-door-vertical", "two upright edges close from the sides"},
    {zrWipeBarnDoorHorizontal, zrWipeBarnDoorHorizontal, zrfxSMPTE_BarnDoorHorizontal, "barn-door-horizontal", "two level edges close from top and bottom"},
    {zrWipeTopCenter, zrWipeTopCenter, zrfxSMPTE_TopCenter, "top-center", "the first shrinks to the centre of the top edge"},
    {zrWipeRightCenter, zrWipeRightCenter, zrfxSMPTE_RightCenter, "right-center", "the first shrinks to the centre of the right edge"},
    {zrWipeBottomCenter, zrWipeBottomCenter, zrfxSMPTE_BottomCenter, "bottom-center", "the first shrinks to the centre of the bottom edge"},
    {zrWipeLeftCenter, zrWipeLeftCenter, zrfxSMPTE_LeftCenter, "left-center", "the first shrinks to the centre of the left edge"},
    {41, 48, zrfxSMPTE_Rectangle, nullptr, nullptr},
    {61, 68, zrfxSMPTE_Rectangle, nullptr, nullptr},
    {71, 74, zrfxSMPTE_Rectangle, nullptr, nullptr},
    {zrWipeRectangle, zrWipeRectangle, zrfxSMPTE_Rectangle, "rectangle", "a box grows from the centre; so do the codes of other closed shapes"},
    {102, 114, zrfxSMPTE_Horizontal, nullptr, nullptr},
    {119, 125, zrfxSMPTE_Horizontal, nullptr, nullptr},
    {127, 131, zrfxSMPTE_Horizontal, nullptr, nullptr},
    {201, 207, zrfxSMPTE_Horizontal, nullptr, nullptr},
    {211, 214, zrfxSMPTE_Horizontal, nullptr, nullptr},
    {221, 228, zrfxSMPTE_Horizontal, nullptr, nullptr},
    {231, 236, zrfxSMPTE_Horizontal, nullptr, nullptr},
    {241, 246, zrfxSMPTE_Horizontal, nullptr, nullptr},
    {251, 254, zrfxSMPTE_Horizontal, nullptr, nullptr},
    {261, 264, zrfxSMPTE_Horizontal, nullptr, nullptr},
    {301, 306, zrfxSMPTE_Horizontal, nullptr, nullptr},
    {310, 317, zrfxSMPTE_Horizontal, nullptr, nullptr},
    {320, 329, zrfxSMPTE_Horizontal, nullptr, nullptr},
    {340, 345, zrfxSMPTE_Horizontal, nullptr, nullptr},
    {350, 353, zrfxSMPTE_Horizontal, nullptr, nullptr},
    {409, 409, zrfxSMPTE_Horizontal, nullptr, nullptr},
    {zrSlideUp, zrSlideUp, zrfxSLIDE_Basic, "slide-up", "the first moves off upwards"},
    {zrSlideLeft, zrSlideLeft, zrfxSLIDE_Basic, "slide-left", "the first moves off to the left"},
    {zrSlideDown, zrSlideDown, zrfxSLIDE_Basic, "slide-down", "the first moves off downwards; so it does with 504 to 507"},
    {zrSlideRight, zrSlideRight, zrfxSLIDE_Basic, "slide-right", "the first moves off to the right"},
    {zrSlideDown4, zrSlideDown7, zrfxSLIDE_Basic, nullptr, nullptr},
    {508, 515, zrfxSLIDE_Basic, nullptr, nullptr}, // draw nothing
};
// clang-format on

/** The row of a code, zrWipeSwap in it or not; that of the dissolve for a code without one. */
constexpr const zrWipe& zrWipeOf(unsigned int code) {
    code &= ~zrWipeSwap;
    for (const zrWipe& wipe : zrWipes)
        if (code >= wipe.first && code <= wipe.last)
            return wipe;
    return zrWipes[0];
}

/** @} */

#endif

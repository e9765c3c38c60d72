#include "common/picture_color.h"

#include "common/luma_weights.h"
#include "zrdraw/formats.h"
#include "zrdraw/half_float.h"
#include "zrdraw/layouts.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace {

struct Mode {
    cmYCbCr mode;
    LumaWeights weights;
    bool full;
};

constexpr Mode modes[] = {
    {cmRec601Default, bt601Weights, false}, {cmRec601, bt601Weights, false},
    {cmRec601Full, bt601Weights, true},     {cmRec709, bt709Weights, false},
    {cmRec709Full, bt709Weights, true},     {cmRec2020, bt2020Weights, false},
    {cmRec2020Full, bt2020Weights, true},
};

constexpr int full10 = 1023;

// Studio range has four times the numbers of eight bits, and full range all numbers.
unsigned sampleOf(double value, double zero, double scale) {
    return static_cast<unsigned>(
        std::clamp(static_cast<int>(std::lround(zero + value * scale)), 0, full10));
}

unsigned wordOf(double value) {
    return static_cast<unsigned>(std::lround(value * 65535));
}

unsigned halfOf(double value) {
    return zrFloatToHalf(static_cast<float>(value));
}

// The members of the layouts of words, which no colour operation changes.
template <class Draw>
bool setWords(ZRDraw& draw, unsigned red, unsigned green, unsigned blue, bool foreground) {
    auto* object = dynamic_cast<Draw*>(&draw);
    if (!object)
        return false;
    (foreground ? object->foreR : object->backR) = red;
    (foreground ? object->foreG : object->backG) = green;
    (foreground ? object->foreB : object->backB) = blue;
    return true;
}

bool setPairs(ZRDraw& draw, double red, double green, double blue, bool foreground) {
    const zrLayout* layout = zrFindLayout(draw.pixelType);
    const auto* mode = std::find_if(std::begin(modes), std::end(modes),
                                    [&](const Mode& row) { return row.mode == draw.yCbCrMode; });
    if (!layout || !(layout->isPairs() || layout->code == ptV210) || mode == std::end(modes))
        return false;
    const LumaWeights& weights = mode->weights;
    const double y = weights.red * red + weights.green() * green + weights.blue * blue;
    const double cb = (blue - y) / (2 * (1 - weights.blue));
    const double cr = (red - y) / (2 * (1 - weights.red));
    const bool bytes = layout->isPairs(); // of which the two low bits are dropped
    const double whole = bytes ? 4 * 255 : full10;
    const double luma = mode->full ? whole : 4 * 219, chroma = mode->full ? whole : 4 * 224;
    const double up = bytes ? 2 : 0; // so that they are rounded
    draw.SetColorYCbCr10(sampleOf(y, (mode->full ? 0 : 64) + up, luma),
                         sampleOf(cb, 512 + up, chroma), sampleOf(cr, 512 + up, chroma), 0,
                         foreground);
    return true;
}

} // namespace

int setPictureColor(ZRDraw& draw, double red, double green, double blue, double alpha,
                    bool foreground) {
    const int set = draw.SetColorRGBA(red, green, blue, alpha, foreground);
    const unsigned r = wordOf(red), g = wordOf(green), b = wordOf(blue);
    if (setWords<CDrawARGB64>(draw, r, g, b, foreground)) {
        auto& object = dynamic_cast<CDrawARGB64&>(draw);
        (foreground ? object.foreA : object.backA) = wordOf(alpha);
    } else if (!setWords<CDrawRGB48>(draw, r, g, b, foreground) &&
               !setWords<CDrawRGBHalf48>(draw, halfOf(red), halfOf(green), halfOf(blue),
                                         foreground)) {
        setPairs(draw, red, green, blue, foreground);
    }
    return set;
}

#include "common/picture_color.h"

#include "common/sample_rules.h"
#include "zrdraw/formats.h"
#include "zrdraw/half_float.h"
#include "zrdraw/layouts.h"

#include <cmath>

namespace {

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
    const MatrixRule* rule = findMatrixRule(draw.yCbCrMode);
    if (!layout || !(layout->isPairs() || layout->code == ptV210) || !rule)
        return false;
    constexpr int depthOfColors = 10; // 4:2:2 in bytes drops the two low bits
    const int depth = layout->isPairs() ? 8 : depthOfColors;
    const YCbCrSamples samples = SampleConversion(*rule, depth)(red, green, blue);
    const auto colorOf = [&](int sample) {
        return static_cast<unsigned>(sample) << (depthOfColors - depth);
    };
    draw.SetColorYCbCr10(colorOf(samples.y), colorOf(samples.cb), colorOf(samples.cr), 0,
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

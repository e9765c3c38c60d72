// Commands for text.
#include "script/operations/operation_rows.h"

#include <algorithm>

using namespace rows;

namespace {

// Coarse grids make a dot of one.
constexpr double leastScale = 0.01;

int setScale(Scene& scene, const Arguments& a) {
    return scene.draw.LabelFont(0U, std::max(a.whole(0), 1));
}

int textWidth(ZRDraw& draw, const std::string& text) {
    constexpr double widest = 1 << 30; // far off any frame
    return static_cast<int>(
        std::min(static_cast<double>(text.size()) * draw.LabelGetFontWidth(), widest));
}

int label(Scene& scene, const Arguments& a) {
    const std::string& text = a.text(2);
    const int width = textWidth(scene.draw, text);
    scene.setTextWidth(width);
    const int x = a.whole(0) - anchorOffset(a, 6, width);
    const int y = a.whole(1) - anchorOffset(a, 7, scene.draw.LabelGetFontHeight());
    return scene.draw.Label(x, y, text.c_str(), a.given(3), a.given(4));
}

int measure(Scene& scene, const Arguments& a) {
    scene.setTextWidth(textWidth(scene.draw, a.text(0)));
    return 0;
}

int drawText(Scene& scene, const Arguments& a) {
    RECT rect{a.whole(0), a.whole(1), a.whole(2), a.whole(3)};
    const std::string& text = a.text(4);
    const unsigned int format = (a.given(5) ? zrTextCentre : 0U) | (a.given(6) ? zrTextRight : 0U) |
                                (a.given(7) ? zrTextKeepBottom : 0U) | zrTextReport;
    ZRDraw& draw = scene.draw;
    const bool before = std::exchange(draw.textTransparent, !a.given(8));
    const int status = draw.DrawText(text.c_str(), static_cast<int>(text.size()), &rect, format);
    draw.textTransparent = before;
    scene.setTextWidth(rect.right - rect.left);
    return status;
}

} // namespace

std::vector<Operation> textOperations() {
    return {
        {"scale",
         {{Kind::Number, "n", leastScale, 64, {}, false, Role::Length}},
         "size of labels, in whole pixels a dot",
         setScale},
        {"label", with(with(onePoint(), {text(), flag("inverse"), flag("opaque")}), anchor()),
         "text whose top left corner, or anchor, is at X Y", label},
        {"text",
         with(box(), {text(), flag("centre"), flag("right"), flag("bottom"), flag("opaque")}),
         "text in a rectangle, sized by its height", drawText},
        {"measure", {text()}, "set dw to the width of a label without drawing it", measure},
    };
}

// Commands for text.
#include "script/operation_rows.h"

using namespace rows;

namespace {

int setScale(ZRDraw& draw, const Arguments& a) {
    return draw.LabelFont(0U, a.whole(0));
}

int label(ZRDraw& draw, const Arguments& a) {
    return draw.Label(a.whole(0), a.whole(1), a.text(2).c_str(), a.given(3), a.given(4));
}

int drawText(ZRDraw& draw, const Arguments& a) {
    RECT rect{a.whole(0), a.whole(1), a.whole(2), a.whole(3)};
    const std::string& text = a.text(4);
    const unsigned int format = (a.given(5) ? zrTextCentre : 0U) | (a.given(6) ? zrTextRight : 0U) |
                                (a.given(7) ? zrTextKeepBottom : 0U);
    const bool before = std::exchange(draw.textTransparent, !a.given(8));
    const int status = draw.DrawText(text.c_str(), static_cast<int>(text.size()), &rect, format);
    draw.textTransparent = before;
    return status;
}

} // namespace

std::vector<Operation> textOperations() {
    return {
        {"scale", {whole("n", 1, 64)}, "size of labels", setScale},
        {"label", with(onePoint(), {text(), flag("inverse"), flag("opaque")}),
         "text from its top left corner on", label},
        {"text",
         with(box(), {text(), flag("centre"), flag("right"), flag("bottom"), flag("opaque")}),
         "text in a rectangle, sized by its height", drawText},
    };
}

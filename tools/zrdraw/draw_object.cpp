#include "draw_object.h"

#include "common/layout_names.h"
#include "common/tool_error.h"

#include <fmt/format.h>

DrawPtr makeDraw(Canvas& frame) {
    const zrLayout& layout = frame.layout();
    ZRDraw* draw = nullptr;
    if (GetDraw(layout.code, frame.width(), frame.height(), frame.pitch(), frame.data(), draw) != 0)
        throw Failure(fmt::format("no drawing object for layout {}", layoutName(layout)));
    if (const std::optional<cmYCbCr> mode = frame.matrixMode())
        draw->SetYCbCrMode(*mode);
    return DrawPtr(draw);
}

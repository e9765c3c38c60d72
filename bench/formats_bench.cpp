// Single pixels in each layout, beside those in the 32-bit one. The objects are called as callers
// call them, through a pointer that could hold any class.
#include "comparison.h"
#include "fixtures.h"
#include "subsystems.h"
#include "zrdraw/layouts.h"

#include <string_view>

namespace {

constexpr int columns = 480;
constexpr int lines = 64;
constexpr Unit perPixel{"ns/pixel", columns* lines};

std::shared_ptr<ZRDraw> drawIn(unsigned int code) {
    ZRDraw* draw = nullptr;
    GetDraw(code, columns, lines, 0, reinterpret_cast<char*>(target().bytes()), draw);
    draw->SetColorRGBA(0.2, 0.4, 0.6, 1.0, true);
    return {draw, [](ZRDraw* last) { ReleaseDraw(last); }};
}

Job writing(unsigned int code) {
    return repeated([draw = drawIn(code)] {
        for (int y = 0; y < lines; ++y)
            for (int x = 0; x < columns; ++x)
                draw->PutPixel(x, y, true);
    });
}

Job reading(unsigned int code) {
    return repeated([draw = drawIn(code)] {
        double sum = 0.0;
        for (int y = 0; y < lines; ++y) {
            for (int x = 0; x < columns; ++x) {
                double r = 0.0, g = 0.0, b = 0.0, a = 0.0;
                draw->GetPixelRGBA(x, y, r, g, b, a);
                sum += r;
            }
        }
        benchmark::DoNotOptimize(sum);
    });
}

} // namespace

void addFormatComparisons() {
    constexpr double atMostThrice = 1.0 / 3;
    constexpr double nearly = 0.6; // of those in words of 16 bits
    std::string_view last = zrFindLayout(ptRGBA32)->drawClass;
    for (const zrLayout& layout : zrLayouts) {
        if (layout.drawClass == last)
            continue;
        last = layout.drawClass;
        const std::string name = layout.drawClass;
        addComparison({"PutPixel/" + name,
                       perPixel,
                       writing(layout.code),
                       {{"CDrawRGBA32", writing(ptRGBA32),
                         layout.has(zrPackedRuns) ? nearly : atMostThrice}}});
        addComparison({"GetPixelRGBA/" + name,
                       perPixel,
                       reading(layout.code),
                       {{"CDrawRGBA32", reading(ptRGBA32), atMostThrice}}});
    }
}

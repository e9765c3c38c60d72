// A host without run-time type information that derives a layout of its own from ours: it gets
// every call. Prints how many pixels it was asked to put.
#include <zrdraw/formats.h>

#include <cstdio>

namespace {

class Counting : public CDrawRGBA32 {
public:
    Counting() : ZRDraw(ptBGRA32), CDrawRGBA32(ptBGRA32) {}
    int PutPixel(int x, int y, bool selector) override {
        ++puts;
        return CDrawRGBA32::PutPixel(x, y, selector);
    }
    int puts = 0;
};

} // namespace

int main() {
    static char frame[64 * 64 * 4];
    Counting draw;
    draw.SetCanvas(frame, 64, 64, 0);
    draw.Line(0, 0, 9, 3);
    draw.Circle(32, 32, 1);
    draw.LineVert(5, 0, 9);
    RECT rect{0, 20, 60, 30};
    draw.DrawText("!", 1, &rect, 0);
    draw.Fill(63, 63, 2.0);
    std::printf("%d\n", draw.puts);
}

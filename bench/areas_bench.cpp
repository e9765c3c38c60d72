// Curves, areas and text in rectangles through a drawing object, as callers draw them.
#include "peers.h"
#include "subsystems.h"

namespace {

constexpr Unit milliseconds{"ms", 1e6};
constexpr _POINT centre{frameWidth / 2, frameHeight / 2};

template <typename Draw>
Job drawing(Draw draw) {
    return repeated([draw, object = drawOn(target(), ptBGRA32)] { draw(*object); });
}

void addCurves() {
    static constexpr int radius = 400;
    static constexpr int flatRadius = 200;
    Comparison circle{"Circle/radius 400",
                      microseconds,
                      drawing([](ZRDraw& draw) { draw.Circle(centre.x, centre.y, radius); }),
                      {}};
    Comparison ellipse{
        "Ellipse/400 by 200",
        microseconds,
        drawing([](ZRDraw& draw) { draw.Ellipse(centre.x, centre.y, radius, flatRadius); }),
        {}};
    for (const AreaPeer& peer : peers<AreaPeer>()) {
        circle.rivals.push_back(
            {peer.circle, peer.drawCircle(target(), centre, radius, Ink::Outline), 1.0});
        ellipse.rivals.push_back(
            {peer.ellipse, peer.drawEllipse(target(), centre, radius, flatRadius), 1.0});
    }
    addComparison(circle);
    addComparison(ellipse);
    addComparison(
        {"Bezier",
         microseconds,
         drawing([](ZRDraw& draw) { draw.Bezier(100, 900, 500, 50, 1400, 1050, 1800, 100); }),
         {}});
}

// The canvas is contiguous, so one call of the C library does the work of an erasure.
Job setFrame() {
    return repeated([at = target().bytes()] { std::memset(at, 0x5A, frameBytes); });
}

void addAreas() {
    static constexpr int radius = 400;
    static constexpr RECT half{0, 0, frameWidth - 1, frameHeight / 2};
    static constexpr RECT frame{0, 0, frameWidth - 1, frameHeight - 1};
    Comparison disc{"FillCircle/radius 400",
                    microseconds,
                    drawing([](ZRDraw& draw) { draw.FillCircle(centre.x, centre.y, radius); }),
                    {}};
    Comparison rectangle{"FillRect/half a frame",
                         microseconds,
                         drawing([](ZRDraw& draw) { draw.FillRect(&half); }),
                         {}};
    Comparison erasure{"EraseCanvas/32 bits",
                       microseconds,
                       drawing([](ZRDraw& draw) { draw.EraseCanvas(false); }),
                       {{"memset", setFrame(), 0.9}}};
    for (const AreaPeer& peer : peers<AreaPeer>()) {
        disc.rivals.push_back(
            {peer.circle, peer.drawCircle(target(), centre, radius, Ink::Filled)});
        // Our bottom row does not belong to the rectangle.
        const RECT same{half.left, half.top, half.right, half.bottom - 1};
        rectangle.rivals.push_back({peer.rectangle, peer.fillRectangle(target(), same)});
        erasure.rivals.push_back({peer.rectangle, peer.fillRectangle(target(), frame)});
    }
    for (const Comparison& comparison : {disc, rectangle, erasure})
        addComparison(comparison);
}

// Beside one pixel after the other in one colour.
void addGradient(int angle, double wanted) {
    static constexpr int from = 100, to = 500;
    const Job pixels = drawing([](ZRDraw& draw) {
        for (int y = from; y <= to; ++y)
            for (int x = from; x <= to; ++x)
                draw.PutPixel(x, y, true);
    });
    addComparison({"GradientRect/" + std::to_string(angle) + " degrees",
                   {"ns/pixel", (to - from + 1.0) * (to - from + 1.0)},
                   drawing([angle](ZRDraw& draw) {
                       draw.SetColorRGBA(0.2, 0.4, 0.6, 1.0, true);
                       draw.GradientRect(from, from, to, to, angle);
                   }),
                   {{"PutPixel", pixels, wanted}}});
}

// Over a frame of one colour, in another each time. Each side works on a frame of its own, as the
// other would leave it in the colour that is to be filled with.
void addFlood() {
    const auto ours = [] {
        static Frame frame;
        return repeated([draw = drawOn(frame, ptBGRA32), red = 0.0]() mutable {
            draw->SetColorRGBA(red, 0.4, 0.6, 1.0, true);
            draw->Fill(centre.x, centre.y, 0.0);
            red = 1.0 - red;
        });
    };
    Comparison flood{"Fill/one colour, a frame", milliseconds, ours(), {}};
    for (const AreaPeer& peer : peers<AreaPeer>()) {
        static Frame frame;
        flood.rivals.push_back({peer.flood, peer.floodFrame(frame, centre), 1.0});
    }
    addComparison(flood);
}

// In rectangles that give the scale. The peer's digits are as tall as ours, within a pixel; its
// strokes are one pixel wide and so, in a second row, as wide as ours.
void addText(int scale) {
    static constexpr const char* text = "01:02:03:04";
    const RECT rect{100, 100, 100 + 88 * scale, 100 + 10 * scale};
    const _POINT bottomLeft{rect.left, rect.bottom};
    Comparison comparison{"DrawText of 11/scale " + std::to_string(scale),
                          microseconds,
                          drawing([rect](ZRDraw& draw) {
                              RECT placed = rect;
                              draw.DrawText(text, 11, &placed, 0);
                          }),
                          {}};
    for (const DrawPeer& peer : peers<DrawPeer>()) {
        comparison.rivals.push_back(
            {peer.label, peer.drawLabel(target(), bottomLeft, text, scale, 1), 1.0});
        if (scale > 1)
            comparison.rivals.push_back({std::string(peer.label) + " bold",
                                         peer.drawLabel(target(), bottomLeft, text, scale, scale)});
    }
    addComparison(comparison);
}

} // namespace

void addAreaComparisons() {
    addCurves();
    addAreas();
    for (const int angle : {0, 90, 180, 270})
        addGradient(angle, 3.0);
    addGradient(30, 1.5);
    addFlood();
    for (const int scale : {1, 2, 4})
        addText(scale);
}

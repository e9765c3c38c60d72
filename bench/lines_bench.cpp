// Lines and labels through a drawing object, as callers draw them.
#include "peers.h"
#include "subsystems.h"

namespace {

constexpr int linePixels = 1000;
constexpr Unit perPixel{"ns/pixel", linePixels};

struct Slope {
    const char* name;
    _POINT from, to;
};
constexpr Slope slopes[] = {{"gentle", {100, 100}, {1099, 350}},
                            {"steep", {100, 50}, {350, 1049}},
                            {"near diagonal", {100, 20}, {1099, 999}},
                            {"leftwards", {1099, 100}, {100, 700}},
                            {"vertical", {100, 50}, {100, 1049}}};

template <typename Draw>
Job drawing(Draw draw) {
    return repeated([draw, object = drawOn(target(), ptBGRA32)] { draw(*object); });
}

void addSlope(const Slope& slope) {
    const auto [name, from, to] = slope;
    Comparison line{"Line/" + std::string(name),
                    perPixel,
                    drawing([=](ZRDraw& draw) { draw.Line(from.x, from.y, to.x, to.y); }),
                    {}};
    Comparison smooth{"LineWu/" + std::string(name),
                      perPixel,
                      drawing([=](ZRDraw& draw) { draw.LineWu(from.x, from.y, to.x, to.y); }),
                      {}};
    Comparison dash{"Dash 5 on, 3 off/" + std::string(name),
                    perPixel,
                    drawing([=](ZRDraw& draw) { draw.Dash(from.x, from.y, to.x, to.y, 5, 3); }),
                    {}};
    for (const DrawPeer& peer : peers<DrawPeer>()) {
        const bool sloped = from.x != to.x;
        line.rivals.push_back(
            {peer.line, peer.drawLine(target(), from, to, false), sloped ? 3.5 : 0.0});
        smooth.rivals.push_back({peer.smoothLine, peer.drawLine(target(), from, to, true), 3.0});
    }
    dash.rivals.push_back({"Line", line.ours});
    for (const Comparison& comparison : {line, smooth, dash})
        addComparison(comparison);
}

void addVertical() {
    const _POINT from{100, 50}, to{100, 1049};
    Comparison line{"LineVert",
                    perPixel,
                    drawing([=](ZRDraw& draw) { draw.LineVert(from.x, from.y, to.y); }),
                    {}};
    for (const DrawPeer& peer : peers<DrawPeer>())
        line.rivals.push_back({peer.line, peer.drawLine(target(), from, to, false)});
    addComparison(line);
}

// Runs on `lines` neighbouring lines: on one that stays in the nearest cache, or all over a frame.
void addRuns(unsigned int pixelType, int pixelBytes, double wanted, int lines) {
    const std::string where = lines == 1 ? "one line" : "down a frame";
    const Job ours = repeated([lines, draw = drawOn(target(), pixelType)] {
        for (int y = 0; y < lines; ++y)
            draw->LineHoriz(0, y, linePixels - 1);
    });
    const std::size_t bytes = static_cast<std::size_t>(linePixels * pixelBytes);
    const Job limit = repeated([lines, bytes, pitch = frameWidth * pixelBytes] {
        for (int y = 0; y < lines; ++y)
            std::memset(target().bytes() + y * pitch, 0x5A, bytes);
    });
    addComparison({"LineHoriz/" + std::to_string(pixelBytes * 8) + " bits/" + where,
                   {"ns/run", static_cast<double>(lines)},
                   ours,
                   {{"memset", limit, wanted}}});
}

void addLabel(int scale) {
    static constexpr const char* text = "Frame 01234";
    const _POINT topLeft{100, 100};
    const auto draw = drawOn(target(), ptBGRA32);
    draw->LabelFont(0U, scale);
    Comparison label{"Label of 11/scale " + std::to_string(scale),
                     microseconds,
                     repeated([=] { draw->Label(topLeft.x, topLeft.y, text, false, false); }),
                     {}};
    const _POINT bottomLeft{topLeft.x, topLeft.y + draw->LabelGetFontHeight()};
    for (const DrawPeer& peer : peers<DrawPeer>())
        label.rivals.push_back(
            {peer.label, peer.drawLabel(target(), bottomLeft, text, scale, 1), 1.0});
    addComparison(label);
}

} // namespace

void addLineComparisons() {
    for (const Slope& slope : slopes)
        addSlope(slope);
    addVertical();
    for (const int lines : {1, frameHeight}) {
        addRuns(ptBGRA32, 4, 0.8, lines);
        addRuns(ptBGR24, 3, 0.85, lines);
    }
    for (const int scale : {1, 2, 4})
        addLabel(scale);
}

// One drawing with every primitive, of 48 by 32 pixels.
#pragma once

#include "zrdraw/zrdraw.h"

inline constexpr int sceneWidth = 48;
inline constexpr int sceneHeight = 32;

inline void drawSceneLines(ZRDraw& draw) {
    draw.Line(0, 31, 20, 12);
    draw.LineHoriz(22, 13, 46);
    draw.LineVert(47, 0, 31);
    draw.Dash(22, 15, 46, 21, 3, 2);
    draw.LineWu(1, 13, 12, 17);
    draw.MoveTo(13, 0);
    draw.LineTo(16, 3);
    draw.LineWuTo(25, 11);
    const _POINT corners[] = {{0, 11}, {12, 12}, {20, 11}, {24, 12}};
    draw.PolylineTo(corners, 3);
    draw.antiAlias = true; // the weighted path, partly off the canvas
    draw.Line(-3, 9, 22, 2);
    draw.antiAlias = false;
}

inline void drawSceneCurves(ZRDraw& draw) {
    draw.SetColorRGBA(0.1, 0.9, 0.3, 1.0, true);
    draw.Circle(8, 23, 6);
    draw.FillCircle(8, 23, 2);
    draw.Ellipse(38, 24, 8, 4);
    draw.Arc(16, 18, 30, 30, 30, 18, 16, 30);
    draw.ArcTo(1, 14, 10, 20, 19, 2, 3, 14);
    draw.Pie(30, 1, 46, 12, 44, 11, 31, 3);
    draw.AngleArc(24, 6, 4, 20, 140);
    draw.Bezier(14, 31, 20, 16, 26, 36, 33, 20);
    const _POINT curve[] = {{2, 2}, {6, 12}, {10, 0}, {14, 8}};
    draw.PolyBezierTo(curve, 4);
}

inline void drawSceneAreas(ZRDraw& draw) {
    const auto color = [&](double r, double g, double b) { draw.SetColorRGBA(r, g, b, 1.0, true); };
    color(0.2, 0.4, 1.0);
    const RECT filled{17, 22, 22, 26};
    draw.FillRect(&filled);
    draw.Rectangle(15, 20, 24, 28);
    draw.RoundRect(27, 17, 46, 30, 6, 6);
    color(1.0, 0.9, 0.2);
    draw.GradientRect(1, 29, 12, 30, 0);
    color(0.9, 0.5, 0.9);
    draw.Fill(38, 24, 0.001);
    draw.SetTransparency(true);
    draw.SetTransparency(0.5, true);
    const RECT mixed{30, 8, 44, 11};
    draw.FillRect(&mixed);
    draw.SetTransparency(false);
}

inline void drawScene(ZRDraw& draw) {
    draw.SetColorRGBA(0.2, 0.3, 0.4, 1.0, false);
    draw.EraseCanvas(true);
    draw.SetColorRGBA(1.0, 1.0, 1.0, 1.0, true);
    draw.Label(1, 1, "A0", false, false);
    draw.Label(18, 1, "!", true, true);
    RECT text{26, 1, 47, 11};
    draw.ZRDrawText("aA", 2, &text, 0);
    draw.SetColorRGBA(1.0, 0.2, 0.1, 1.0, true);
    drawSceneLines(draw);
    drawSceneCurves(draw);
    drawSceneAreas(draw);
}

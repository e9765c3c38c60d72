// One drawing with every primitive in each layout. The pictures were looked at once; what changes a
// byte of one since shows here, with the picture.
#include "zrdraw/exports.h"
#include "zrdraw/layouts.h"
#include "zrdraw/zrdraw.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace {

constexpr int width = 48;
constexpr int height = 32;

void drawScene(ZRDraw& draw) {
    draw.SetColorRGBA(0.2, 0.3, 0.4, 1.0, false);
    draw.EraseCanvas(true);
    const auto color = [&](double r, double g, double b) { draw.SetColorRGBA(r, g, b, 1.0, true); };
    color(1.0, 1.0, 1.0);
    draw.Label(1, 1, "A7", false, false);
    draw.Label(18, 1, "b", true, true);
    RECT text{26, 1, 47, 11};
    draw.ZRDrawText("ok", 2, &text, 0);
    color(1.0, 0.2, 0.1);
    draw.Line(0, 31, 20, 12);
    draw.LineHoriz(22, 13, 46);
    draw.LineVert(47, 0, 31);
    draw.Dash(22, 15, 46, 21, 3, 2);
    draw.LineWu(1, 13, 12, 17);
    color(0.1, 0.9, 0.3);
    draw.Circle(8, 23, 6);
    draw.FillCircle(8, 23, 2);
    draw.Ellipse(38, 24, 8, 4);
    draw.Arc(16, 18, 30, 30, 30, 18, 16, 30);
    draw.Bezier(14, 31, 20, 16, 26, 36, 33, 20);
    const _POINT corners[] = {{0, 11}, {12, 12}, {20, 11}};
    draw.Polyline(corners, 3);
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
}

// A character a pixel, darker to lighter, as far as the luma tells.
std::string artOf(ZRDraw& draw) {
    constexpr const char* shades = " .:-=+*#%@";
    std::string rows;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            rows += shades[static_cast<int>(std::min(1.0, draw.GetLuma(x, y)) * 9.99)];
        rows += '\n';
    }
    return rows;
}

struct Scene {
    unsigned int code;
    std::uint32_t checksum; // FNV-1a over the frame
};
constexpr Scene scenes[] = {
    {ptRGBA32, 0xC3E38FAA},     {ptARGB32, 0xFD73F7E8},     {ptBGRA32, 0xE3263326},
    {ptABGR32, 0x4E02B854},     {ptRGB24, 0xFDBC571C},      {ptBGR24, 0x40C831AB},
    {ptYUYV, 0x8C8D5085},       {ptUYVY, 0x42CFB7DD},       {ptYVYU, 0x22D70C41},
    {ptVYUY, 0xF274ED39},       {ptV210, 0x3CE55B6E},       {ptRGB30DPX, 0x638601DE},
    {ptBayerBGGR, 0xB454907E},  {ptBayerRGGB, 0x484DFDA2},  {ptBayerGBRG, 0xA687E325},
    {ptBayerGRBG, 0xA86DF9A5},  {ptBayerBGGRc, 0xB454907E}, {ptBayerRGGBc, 0x484DFDA2},
    {ptBayerGBRGc, 0xA687E325}, {ptBayerGRBGc, 0xA86DF9A5}, {ptRGB48, 0x1CCEC1D2},
    {ptARGB64, 0x369B8FB5},     {ptRGBHalf48, 0x1CCEC1D2},  {ptRGBAHalf, 0x72C57376},
    {ptUV8, 0x5691FE96},        {ptUV16, 0x633F4314},
};

} // namespace

TEST(Scene, InEveryLayout) {
    for (const Scene& scene : scenes) {
        const zrLayout& layout = *zrFindLayout(scene.code);
        const int pitch = static_cast<int>(zrLineBytes(layout.line, width));
        // With room for what the contract lets writes and reads reach behind the last line.
        std::vector<char> frame(static_cast<std::size_t>(pitch * (height + 1) + width * 4));
        ZRDraw* draw = qtGetDraw(scene.code, width, height, pitch, frame.data());
        drawScene(*draw);
        std::uint32_t checksum = 0x811C9DC5;
        for (int i = 0; i < pitch * height; ++i)
            checksum = (checksum ^ static_cast<unsigned char>(frame[static_cast<std::size_t>(i)])) *
                       0x01000193;
        EXPECT_EQ(checksum, scene.checksum) << layout.name << '\n' << artOf(*draw);
        ReleaseDraw(draw);
    }
}

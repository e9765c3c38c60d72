// One drawing with every primitive in each layout. The pictures were looked at once; what changes a
// byte of one since shows here, with the lines it is on and the picture.
#include "platform/injection.h"
#include "support/guarded_memory.h"
#include "zrdraw/exports.h"
#include "zrdraw/formats.h"
#include "zrdraw/layouts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int sceneWidth = 48;
constexpr int sceneHeight = 32;

void drawSceneLines(ZRDraw& draw) {
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

void drawSceneCurves(ZRDraw& draw) {
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

void drawSceneAreas(ZRDraw& draw) {
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

void drawScene(ZRDraw& draw) {
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

constexpr int bandLines = 8;
using Bands = std::array<std::uint32_t, sceneHeight / bandLines>;

// An object of a layout on a frame with just the room that the contract reaches.
struct SceneFrame {
    explicit SceneFrame(const zrLayout& layout)
        : pitch(zrLineBytes(layout.line, sceneWidth)),
          bytes(zrFrameRoom(layout, sceneWidth, sceneHeight, 0)),
          draw(qtGetDraw(layout.code, sceneWidth, sceneHeight, 0, bytes.data())) {}
    ~SceneFrame() { ReleaseDraw(draw); }
    SceneFrame(const SceneFrame&) = delete;
    SceneFrame& operator=(const SceneFrame&) = delete;

    // FNV-1a over each band of lines.
    Bands checksums() const {
        Bands sums{};
        const char* byte = bytes.data();
        for (std::uint32_t& sum : sums) {
            sum = 0x811C9DC5;
            for (const char* end = byte + pitch * bandLines; byte != end; ++byte)
                sum = (sum ^ static_cast<unsigned char>(*byte)) * 0x01000193;
        }
        return sums;
    }

    // A character a pixel, darker to lighter, as far as the luma tells.
    std::string art() const {
        constexpr const char* shades = " .:-=+*#%@";
        std::string rows;
        for (int y = 0; y < sceneHeight; ++y) {
            for (int x = 0; x < sceneWidth; ++x)
                rows += shades[static_cast<int>(std::min(1.0, draw->GetLuma(x, y)) * 9.99)];
            rows += '\n';
        }
        return rows;
    }

    unsigned int pitch;
    std::vector<char> bytes;
    ZRDraw* draw;
};

// By layout, in order of the codes.
// clang-format off
constexpr Bands scenes[] = {
    {{0x0BCBD64D, 0x9CB8A08D, 0xD4AA5ECD, 0x21837470}}, // ptRGBA32
    {{0x7B4DF339, 0x563FC1B1, 0x3A913365, 0x6DF1BFAA}}, // ptARGB32
    {{0x8AF269D1, 0x2BBBEC69, 0xE9A2166D, 0x620AC718}}, // ptBGRA32
    {{0xEA6D4C2D, 0x4DD99235, 0x1DF52E65, 0x2B68E1FA}}, // ptABGR32
    {{0x7A370D0D, 0x565EAEA0, 0xD18FD828, 0xA0571646}}, // ptRGB24
    {{0x3D11E040, 0xDC9F285D, 0x29BA2650, 0x38C87696}}, // ptBGR24
    {{0xBB6A16B9, 0xC1B55E16, 0x464171E5, 0x1656D13A}}, // ptYUYV
    {{0x0B0912F1, 0x8AE8A9B3, 0xB91B9699, 0x1E7FC4E4}}, // ptUYVY
    {{0x9C1F68C9, 0x04757B5A, 0x53CAA6D5, 0xA768784E}}, // ptYVYU
    {{0xCDCACA41, 0x2FED991F, 0xB1354A31, 0xABDFAF58}}, // ptVYUY
    {{0xB4D98A90, 0xBC25DAD8, 0x99B66574, 0xAC930B73}}, // ptV210
    {{0x562B9076, 0xFE07244C, 0x68231ECA, 0x9F1CD0B5}}, // ptRGB30DPX
    {{0xD80A5143, 0x6F1058DA, 0xAD7C71F7, 0xD3D5C3B2}}, // ptBayerBGGR
    {{0x938ACE54, 0x3F36DE00, 0x2D9EB8F2, 0xFECDE138}}, // ptBayerRGGB
    {{0x51571572, 0x84314075, 0xDDA14EAD, 0xFB0D8F27}}, // ptBayerGBRG
    {{0x503AAB47, 0x82AE5E17, 0x3976EF54, 0x45E3AEA1}}, // ptBayerGRBG
    {{0xD80A5143, 0x6F1058DA, 0xAD7C71F7, 0xD3D5C3B2}}, // ptBayerBGGRc
    {{0x938ACE54, 0x3F36DE00, 0x2D9EB8F2, 0xFECDE138}}, // ptBayerRGGBc
    {{0x51571572, 0x84314075, 0xDDA14EAD, 0xFB0D8F27}}, // ptBayerGBRGc
    {{0x503AAB47, 0x82AE5E17, 0x3976EF54, 0x45E3AEA1}}, // ptBayerGRBGc
    {{0xEB7105CD, 0xD6DBD215, 0x5B22A31A, 0x38C0076D}}, // ptRGB48
    {{0x59EA26A5, 0x51732E85, 0x170A6A15, 0x8822ACE5}}, // ptARGB64
    {{0xEB7105CD, 0xD6DBD215, 0x5B22A31A, 0x38C0076D}}, // ptRGBHalf48
    {{0xF0B8CF3D, 0xBC4AA313, 0xE14E4332, 0x10BE858A}}, // ptRGBAHalf
    {{0x20F17C62, 0xA4B2F06D, 0x41CC2469, 0x8AABF238}}, // ptUV8
    {{0x2DD15322, 0x89FD8985, 0x090F472A, 0xBA4709EC}}, // ptUV16
};
// clang-format on

TEST(Scene, InEveryLayout) {
    ASSERT_EQ(std::size(scenes), std::size(zrLayouts));
    const Bands* expected = scenes;
    for (const zrLayout& layout : zrLayouts) {
        const SceneFrame frame(layout);
        drawScene(*frame.draw);
        const Bands sums = frame.checksums();
        for (std::size_t band = 0; band < sums.size(); ++band)
            EXPECT_EQ(sums[band], (*expected)[band])
                << layout.name << " from line " << band * bandLines << " on\n"
                << frame.art();
        ++expected;
    }
}

// Objects share nothing that a picture depends on; the thread sanitizer sees what they share.
TEST(Scene, OnTwoObjectsAtOnce) {
    for (const zrLayout& layout : zrLayouts) {
        const SceneFrame alone(layout);
        drawScene(*alone.draw);
        const auto drawAgain = [&](bool& same) {
            same = true;
            for (int round = 0; round < 10; ++round) {
                const SceneFrame frame(layout);
                drawScene(*frame.draw);
                same = same && frame.bytes == alone.bytes;
            }
        };
        bool first = false, second = false;
        std::thread other([&] { drawAgain(first); });
        drawAgain(second);
        other.join();
        EXPECT_TRUE(first && second) << layout.name;
    }
}

// A size without a frame: nothing is read or written, and the answers are those of a refusal.
TEST(Scene, WithoutACanvas) {
    const InjectionGuard guard;
    injection().watchSetMemory = [](void* at, unsigned int, unsigned long) {
        ADD_FAILURE() << "filled at " << at;
    };
    for (const zrLayout& layout : zrLayouts) {
        SCOPED_TRACE(layout.name);
        ZRDraw* draw = qtGetDraw(layout.code, sceneWidth, sceneHeight, 0, nullptr);
        drawScene(*draw);
        const RECT whole{0, 0, sceneWidth, sceneHeight};
        EXPECT_EQ(draw->EraseCanvas(true) + draw->EraseCanvas(false) + draw->FillRect(&whole), 0);
        EXPECT_EQ(draw->LineHoriz(0, 0, 3), -1);
        EXPECT_EQ(draw->GradientRect(0, 0, 9, 9, 45), 0);
        // Where readers answer 0 off the canvas, a fill visits every pixel and finds it refused.
        const bool readersNeverRefuse = layout.isPairs() || layout.code == ptV210;
        EXPECT_EQ(draw->Fill(4, 4, 0.1), readersNeverRefuse ? 0 : -1);
        draw->antiAlias = true;
        EXPECT_EQ(draw->Line(1, 1, 9, 4), 0);
        ReleaseDraw(draw);
    }
}

} // namespace

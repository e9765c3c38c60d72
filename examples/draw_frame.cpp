#include <zrdraw/zrdraw.h>

#include <fstream>
#include <vector>

int main() {
    constexpr int width = 320, height = 180;
    std::vector<char> frame(GetDrawSize(ptRGB24, width, height, 0));

    ZRDraw* draw = nullptr;
    if (GetDraw(ptRGB24, width, height, 0, frame.data(), draw) != 0)
        return 1;
    draw->SetColorRGBA(1.0, 0.8, 0.0, 1.0, true);
    draw->Line(10, 160, 309, 60);
    draw->LabelFont(0U, 3);
    draw->Label(20, 20, "REC 01:02", false, false);
    ReleaseDraw(draw);

    std::ofstream file("frame.ppm", std::ios::binary);
    file << "P6 320 180 255\n";
    file.write(frame.data(), static_cast<std::streamsize>(frame.size()));
}

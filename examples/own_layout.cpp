// A layout of the host's own: a byte of grey a pixel, drawn on by the primitives of the library.
#include <zrdraw/zrdraw.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>

namespace {

class GreyDraw : public virtual ZRDraw {
public:
    // No code of zrdraw/layouts.h: by those the primitives choose shortcuts for known layouts.
    static constexpr unsigned int code = 20000;

    GreyDraw() : ZRDraw(code) { pixelType = code; }

    // The natural line, for SetCanvas with a pitch of 0.
    unsigned int GetPitch() override { return width; }

    char* GetPixel(int x, int y) override {
        // Negative ones are off the canvas as very large ones are.
        const auto column = static_cast<unsigned int>(x);
        const auto line = static_cast<unsigned int>(y);
        if (canvas == nullptr || width == 0 || height == 0 || column > width || line > height)
            return nullptr;
        return canvas + std::size_t{pitch} * std::min(line, height - 1) +
               std::min(column, width - 1);
    }

    int PutPixel(int x, int y, bool selector) override {
        char* const pixel = GetPixel(x, y);
        if (pixel == nullptr)
            return -1;
        *pixel = static_cast<char>(selector ? foreColor : backColor);
        return 0;
    }

    int GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override {
        const char* const pixel = GetPixel(x, y);
        r = g = b = pixel != nullptr ? static_cast<unsigned char>(*pixel) / 255.0 : 0.0;
        a = pixel != nullptr ? 1.0 : 0.0;
        return pixel != nullptr ? 0 : -1;
    }

    double GetLuma(int x, int y) override {
        double r = 0.0, g = 0.0, b = 0.0, a = 0.0;
        GetPixelRGBA(x, y, r, g, b, a);
        return r;
    }

    // A slot keeps the byte that PutPixel stores.
    int SetColorRGBA(double r, double g, double b, double, bool selector) override {
        const double luma = std::clamp(0.2126 * r + 0.7152 * g + 0.0722 * b, 0.0, 1.0);
        (selector ? foreColor : backColor) = static_cast<unsigned int>(std::lround(luma * 255.0));
        return 0;
    }

    int GetColorRGBA(double& r, double& g, double& b, double& a, bool selector) override {
        r = g = b = static_cast<unsigned char>(selector ? foreColor : backColor) / 255.0;
        a = 1.0;
        return 0;
    }
};

} // namespace

int main() {
    constexpr int width = 8, height = 5;
    char frame[width * height] = {};
    ZRDraw* draw = new GreyDraw;
    draw->SetCanvas(frame, height, width, 0);
    draw->Rectangle(0, 0, 7, 4);
    draw->SetColorRGBA(0.5, 0.5, 0.5, 1.0, true);
    const RECT middle{2, 2, 5, 3};
    draw->FillRect(&middle);
    ReleaseDraw(draw);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            std::printf(" %02x", static_cast<unsigned char>(frame[y * width + x]));
        std::printf("\n");
    }
}

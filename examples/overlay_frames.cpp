// Overlays frames that it makes itself: grey frames of UYVY with time code, a text and meters that
// follow a swelling tone. Writes the last one as luma, overlay.pgm.
#include <zrdraw/zroverlay.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>
#include <memory>
#include <vector>

namespace {

constexpr int width = 720, height = 576, framesPerSecond = 25;

std::unique_ptr<KPXVIDEO> describeStream() {
    auto video = std::make_unique<KPXVIDEO>();
    video->header.biWidth = width;
    video->header.biHeight = height;
    video->header.biCompression = zrWatermarkYuv2; // UYVY
    video->header.biSizeImage = GetDrawSize(ptUYVY, width, height, 0);
    video->rate = framesPerSecond;
    video->scale = 1;
    return video;
}

void setText(CZrOverlay& overlay, int slot, const char* text) {
    overlay.CustomText[slot] = new char[std::strlen(text) + 1]; // the overlay frees it
    std::strcpy(overlay.CustomText[slot], text);
    overlay.CustomTextEnabled[slot] = 1;
    overlay.CustomTextX[slot] = 200;
    overlay.CustomTextY[slot] = 40;
}

} // namespace

int main() {
    CZrOverlay overlay;
    overlay.Enabled = 1;
    overlay.TimeCodeLTCEnable = 1;
    overlay.AudioEnable = 1;
    setText(overlay, 0, "REHEARSAL");
    KPXSYSTEM system{};
    overlay.Create(describeStream().get(), &system);

    std::vector<char> pixels(GetDrawSize(ptUYVY, width, height, 0));
    auto frame = std::make_unique<DFRAME>();
    frame->videoData = pixels.data();
    for (unsigned int number = 0; number < 2 * framesPerSecond; ++number) {
        std::fill(pixels.begin(), pixels.end(), '\x80');
        frame->ltc = 10 * 3600 * framesPerSecond + number; // from 10:00:00:00 on
        const auto loud = static_cast<unsigned int>(65535 * std::sin(number * 0.03));
        unsigned int levels = loud << 16 | loud; // two channels
        overlay.BurnIn(frame.get(), &levels, &levels, 0);
    }

    std::ofstream file("overlay.pgm", std::ios::binary);
    file << "P5 720 576 255\n";
    for (std::size_t i = 1; i < pixels.size(); i += 2)
        file.put(pixels[i]);
    return file.flush() ? 0 : 1;
}

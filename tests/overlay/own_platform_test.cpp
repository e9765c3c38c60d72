// A watermark on a host that brings its own platform layer and no reader of media files: that of
// the example.
#include "zrdraw/zroverlay.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

TEST(OwnPlatform, AWatermarkWithoutAReaderIsOneLine) {
    constexpr int width = 16, height = 8;
    char path[] = "logo.mov";
    KPXVIDEO video{};
    video.header.biWidth = width;
    video.header.biHeight = height;
    video.header.biBitCount = 32;
    video.header.biSizeImage = width * height * 4;
    video.rate = video.scale = 1;
    KPXSYSTEM system{};
    CZrOverlay overlay;
    overlay.Enabled = overlay.WatermarkEnable = 1;
    overlay.WatermarkX = overlay.WatermarkY = 0;
    overlay.Watermark = path;
    std::vector<char> pixels(video.header.biSizeImage, 'x');
    DFRAME frame{};
    frame.videoData = pixels.data();
    testing::internal::CaptureStderr();
    overlay.Create(&video, &system);
    overlay.BurnIn(&frame, nullptr, nullptr, 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Error: Unable to load watermark reader <clipFile.so> ");
    EXPECT_EQ(std::count(pixels.begin(), pixels.end(), 'x'),
              static_cast<long>(video.header.biSizeImage));
}

} // namespace

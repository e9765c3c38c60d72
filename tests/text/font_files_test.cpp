// The readers of font bitmaps, and which default font file is looked for.
#include "platform/injection.h"
#include "support/recorder.h"
#include "support/temp_file.h"
#include "support/test_canvas.h"
#include "zrdraw/font_files.h"

namespace {

void put(std::string& bytes, std::size_t offset, unsigned int number) {
    std::memcpy(bytes.data() + offset, &number, sizeof number);
}

std::string bitmap(unsigned int width, unsigned int height, unsigned int bits,
                   unsigned int imageSize, const std::string& pixels) {
    std::string file = "BM" + std::string(52, '\0');
    for (const auto& [offset, number] :
         {std::pair{10U, 54U}, {14, 40}, {18, width}, {22, height}, {28, bits}, {34, imageSize}})
        put(file, offset, number);
    return file + pixels;
}

std::string chunk(const std::string& type, const std::string& content) {
    std::string bytes{0, 0, static_cast<char>(content.size() >> 8),
                      static_cast<char>(content.size())};
    return bytes + type + content + "crc.";
}

const std::string pngHead = "\x89PNG\r\n\x1A\n" + chunk("IHDR", std::string(13, 'h'));

int readBitmap(const std::string& content) {
    return Recorder().ExtractBMPData(TempFile(content).path());
}

int readPng(const std::string& content) {
    return Recorder().ExtractPNGData(TempFile(content).path());
}

TEST(BitmapFile, PixelsAndHeaderAreKept) {
    EXPECT_EQ(readBitmap(bitmap(2, 1, 24, 0, "abcdef")), 0);
    EXPECT_EQ(std::memcmp(data, "abcdef", 6), 0);
    EXPECT_EQ(pImgHdr.width, 2);
    EXPECT_EQ(pImgHdr.bitsPerPixel, 24);
    EXPECT_EQ(pImgHdr.imageSize, 6U) << "worked out and stored";
    EXPECT_EQ(readBitmap(bitmap(9, 9, 24, 3, "xyz")), 0);
    EXPECT_EQ(std::memcmp(data, "xyzdef", 6), 0) << "the size field wins";
    std::string farPixels = bitmap(1, 1, 24, 3, "\1\2\3");
    put(farPixels, 10, 256 + 54);
    EXPECT_EQ(readBitmap(farPixels), 0);
    EXPECT_EQ(std::memcmp(data, "\1\2\3", 3), 0) << "only the low byte of the offset counts";
}

TEST(BitmapFile, OtherKindsAreRefused) {
    EXPECT_EQ(readBitmap(bitmap(2, 1, 24, 0, "abcdef")), 0);
    const auto with = [](std::string file, std::size_t offset, char byte) {
        file[offset] = byte;
        return file;
    };
    EXPECT_EQ(readBitmap(with(bitmap(5, 5, 24, 0, ""), 1, 'N')), -1);
    EXPECT_EQ(readBitmap(with(bitmap(5, 5, 24, 0, ""), 14, 12)), -1);
    EXPECT_EQ(readBitmap(""), -1);
    EXPECT_EQ(pImgHdr.width, 2) << "the header of the last file that was a bitmap";
    EXPECT_EQ(readBitmap(with(bitmap(6, 5, 24, 0, ""), 30, 1)), -1);
    EXPECT_EQ(pImgHdr.width, 6) << "the header is kept before the rest is judged";
    EXPECT_EQ(readBitmap(bitmap(7, 5, 32, 0, "ABCDEF")), -1);
    EXPECT_EQ(pImgHdr.width, 7);
    EXPECT_EQ(std::memcmp(data, "abcdef", 6), 0) << "the pixels stay";
    EXPECT_EQ(Recorder().ExtractBMPData("/no/such/file"), -1);
}

TEST(BitmapFileDeathTest, MorePixelsThanTheBufferEndTheProcess) {
    EXPECT_DEATH(readBitmap(bitmap(1, 1, 24, 1048577, "")), "does not fit its buffer");
    EXPECT_DEATH(readBitmap(bitmap(1, 0xFFFFFFFF, 24, 0, "")), "does not fit its buffer");
    EXPECT_EQ(readBitmap(bitmap(1, 1, 24, 1048576, "")), 0) << "the last size that fits";
}

TEST(PngFile, IsWalkedToItsEnd) {
    const std::string end = chunk("IEND", "");
    EXPECT_EQ(readPng(pngHead + end), 0);
    EXPECT_EQ(readPng(pngHead + chunk("tEXt", "words") + chunk("IDAT", "data") + end), 0);
    EXPECT_EQ(readPng(pngHead + chunk("IDAT", std::string(65535, 'd')) + end), 0);
    EXPECT_EQ(readPng("\x89PNG\r\n\x1A\r" + pngHead.substr(8) + end), -1) << "the signature";
    EXPECT_EQ(readPng(pngHead.substr(0, 8) + chunk("IHDR", std::string(12, 'h')) + end), -1);
    EXPECT_EQ(readPng(pngHead.substr(0, 8) + chunk("IDAT", std::string(13, 'h')) + end), -1);
    EXPECT_EQ(readPng(""), -1);
    EXPECT_EQ(Recorder().ExtractPNGData("/no/such/file"), -1);
}

TEST(PngFileDeathTest, MoreDataThanTheBufferEndsTheProcess) {
    const std::string most = chunk("IDAT", std::string(65535, 'd'));
    EXPECT_DEATH(readPng(pngHead + most + chunk("IDAT", "d") + chunk("IEND", "")),
                 "does not fit its buffer");
}

// Looked for in three places; a file found ends the search, is noted, but never active.
TEST(DefaultFont, TheFileGoesByTheWidthOfTheCanvas) {
    const std::pair<unsigned int, std::string> cases[] = {{720, "deffont_sd.bmp"},
                                                          {721, "deffont_720.bmp"},
                                                          {1280, "deffont_720.bmp"},
                                                          {1281, "deffont_1080.bmp"}};
    for (const auto& [width, name] : cases)
        for (const std::size_t foundAt : {2U, 9U}) {
            InjectionGuard guard;
            std::vector<std::string> asked;
            injection().fileExists = [&](const char* path) {
                asked.emplace_back(path);
                return asked.size() == foundAt ? 1 : 0;
            };
            TestCanvas canvas(1, 1, 1);
            canvas->width = width;
            canvas->useDefaultFont = foundAt == 2;
            EXPECT_EQ(canvas->UseDefaultFont(false), foundAt == 2 ? 0 : 1);
            EXPECT_EQ(canvas->useDefaultFont, foundAt != 2);
            EXPECT_EQ(canvas->HaveFont(), 0);
            ASSERT_EQ(asked.size(), foundAt == 2 ? 2U : 3U);
            EXPECT_EQ(asked[0].front(), '/') << "the application's folder first";
            EXPECT_TRUE(asked[0].ends_with("/" + name)) << asked[0];
            EXPECT_EQ(asked[1], "E:\\zorvane\\bin\\" + name);
            EXPECT_EQ(asked.back(),
                      foundAt == 2 ? asked[1] : "C:\\Program Files (x86)\\Zorvane\\" + name);
            EXPECT_EQ(canvas->UseDefaultFont(true), 1);
            EXPECT_EQ(asked.size(), foundAt == 2 ? 2U : 3U) << "the built-in font needs no file";
        }
}

} // namespace

// Frame sizes by layout code and by bitmap header, and what the catalogue holds of each layout.
#include "zrdraw/exports.h"
#include "zrdraw/layouts.h"
#include "zrdraw/zrdraw.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <tuple>

namespace {

TEST(FrameSize, ByCode) {
    struct Case {
        unsigned int code;
        int width, height, pitch;
        unsigned int bytes;
        const char* why;
    };
    const Case cases[] = {
        {1, 100, 10, 0, 4000, "four bytes a pixel"},
        {4, 100, -10, 0, 4000, "a negative height counts as positive"},
        {5, 100, 10, 0, 3000, "three bytes a pixel"},
        {5, 100, 10, 7, 70, "a pitch too small is taken at its word"},
        {6, 100, 10, -7, 3000, "a negative pitch gives the natural line"},
        {10, 101, 2, 0, 404, "packed 4:2:2 of odd width"},
        {14, 1920, 1080, 0, 5529600, "v210, a multiple of 48"},
        {14, 1280, 720, 0, 2488320, "v210, the last block begun"},
        {14, 1, 1, 0, 128, "v210, one block at least"},
        {15, 1000, 7, 0, 7 * 2688, "a v210 relative"},
        {20, 10, 10, 0, 400, "DPX words"},
        {37, 10, 10, 0, 600, ""},
        {38, 10, 10, 64, 640, ""},
        {1, 65536, 16385, 0, 65536U * 4, "the product wraps at 32 bits"},
        {1, 0, 10, 0, 0, "no width"},
        {1, -5, 10, 0, 0, "negative width"},
        {1, 10, 0, 0, 0, "no height"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(GetDrawSize(c.code, c.width, c.height, c.pitch), c.bytes)
            << c.code << " " << c.width << "x" << c.height << " pitch " << c.pitch << ": " << c.why;
        EXPECT_EQ(qtGetDrawSize(c.code, c.width, c.height, c.pitch), c.bytes);
    }
    for (const unsigned int code :
         {0U, 7U, 9U, 17U, 19U, 21U, 25U, 28U, 29U, 30U, 33U, 36U, 39U, 10000U, 10001U, ptNone}) {
        EXPECT_EQ(GetDrawSize(code, 1920, 1080, 0), 0U) << code;
        EXPECT_EQ(GetDrawSize(code, 1920, 1080, 64), 0U) << code << " with a pitch";
    }
}

TEST(Catalogue, RoomOfAFrame) {
    struct Case {
        unsigned int code;
        int width, height, pitch;
        unsigned long bytes;
        const char* why;
    };
    const Case cases[] = {
        {ptBGRA32, 5, 3, 0, 60, "all of it"},
        {ptBGRA32, 5, -3, -32, 96, "signs do not count; the padding does"},
        {ptBGRA32, 5, 3, 8, 60, "a small pitch is raised"},
        {ptRGB24, 5, 3, 0, 15 * 2 + 20, "some writes to the last line have four bytes a pixel"},
        {ptUYVY, 5, 3, 0, 10 * 2 + 12, "half a pair is written as a whole one"},
        {ptUYVY, 5, 3, 16, 48, "where the pitch has room for it"},
        {ptV210, 50, 2, 0, 512, "started blocks of 48 pixels"},
        {ptRGB30DPX, 4, 3, 8, 8 * 2 + 16, "a small pitch stays"},
        {ptBayerRGGB, 5, 3, 0, 7 * 3 + 9, "mosaics are read a line and two bytes beyond"},
        {ptUV8, 5, 3, 0, 10 * 2 + 12, "read with the right neighbour"},
        {ptUV16, 5, 3, 0, 60, ""},
        {ptRGB48, 0, 3, 0, 0, "no frame"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(zrFrameRoom(*zrFindLayout(c.code), c.width, c.height, c.pitch), c.bytes)
            << c.code << ": " << c.why;
}

constexpr unsigned int untouched = 12345;

tagBITMAPINFO header(const std::string& compression, int width, int height, unsigned short bitCount,
                     unsigned int sizeImage = 0) {
    tagBITMAPINFO info{};
    info.biSize = 40;
    info.biWidth = width;
    info.biHeight = height;
    info.biPlanes = 1;
    info.biBitCount = bitCount;
    info.biSizeImage = sizeImage;
    std::memcpy(&info.biCompression, compression.data(), 4);
    return info;
}

const std::string plain(4, '\0');
const std::string masked("\3\0\0\0", 4);

struct Bitmap {
    std::string compression;
    unsigned short bitCount;
    unsigned int sizeImage;
    unsigned int code, bytes;
    unsigned short bitCountAfter;
    unsigned int sizeImageAfter;
    const char* why;
};

void check(const Bitmap& c, int width, int height) {
    SCOPED_TRACE("'" + c.compression + "' depth " + std::to_string(c.bitCount) + ": " + c.why);
    tagBITMAPINFO info = header(c.compression, width, height, c.bitCount, c.sizeImage);
    unsigned int code = untouched;
    EXPECT_EQ(GetDrawSize(&info, &code), c.bytes);
    EXPECT_EQ(code, c.code);
    EXPECT_EQ(info.biBitCount, c.bitCountAfter);
    EXPECT_EQ(info.biSizeImage, c.sizeImageAfter);
    tagBITMAPINFO again = header(c.compression, width, height, c.bitCount, c.sizeImage);
    EXPECT_EQ(qtGetDrawSizeBMI(&again), c.bytes) << "without a place for the code";
}

TEST(BitmapSize, FormatsOfOneLayout) {
    // 1000 x 7 pixels.
    const Bitmap cases[] = {
        {"23d3", 24, 0, 3, 28000, 32, 28000, "32-bit"},
        {"2vuy", 8, 99, 11, 14000, 16, 99, "a smaller biSizeImage stays in the field"},
        {" cvd", 8, 99000, 11, 99000, 16, 99000, "a larger biSizeImage wins"},
        {"UYVY", 0, 0xFFFFFFF0U, 11, 0xFFFFFFF0U, 16, 0xFFFFFFF0U, "sizes compare as unsigned"},
        {"v210", 0, 0, 14, 18666, 16, 18666, "the whole-frame ratio, not the line rule"},
        {"03d3", 8, 0, 20, 0, 30, 0, "not sized"},
        {"L4FR", 8, 77, 20, 77, 30, 77, "not sized"},
        {"bggr", 8, 99000, 21, 10500, 12, 10500, "biSizeImage is replaced"},
        {"RYBP", 8, 0, 22, 9333, 10, 9333, "ten bits"},
        {"61lf", 32, 99000, 38, 8000, 32, 8000, "the size of one line"},
        {"1SCA", 48, 0, 37, 6000, 48, 6000, "the size of one line"},
        {"I420", 12, 55, ptNone, 55, 12, 55, "known, but not drawn on"},
        {"4vuy", 12, 0, ptNone, 0, 12, 0, "known, but not drawn on"},
        {"abcd", 12, 55, untouched, 55, 12, 55, "unknown"},
        {"YUY ", 12, 0, untouched, 0, 12, 0, "no match by the first letters alone"},
        {"UY2 ", 12, 0, untouched, 0, 12, 0, "no match across two names"},
    };
    for (const Bitmap& c : cases) {
        check(c, 1000, 7);
        check(c, 1000, -7);
    }
    // The product wraps at 32 bits before it is divided.
    const auto wrapped = static_cast<unsigned int>(static_cast<int>(16LL * 40000 * 40000) / 6);
    check({"v210", 16, 0, 14, wrapped, 16, wrapped, ""}, 40000, 40000);
    using Depth = unsigned short;
    const std::tuple<const char*, Depth, unsigned int, unsigned int, Depth> plainCases[] = {
        {"YUY2", 0, 10, 14000, 16}, {"YVYU", 0, 12, 14000, 16},  {"q5ia", 0, 14, 14000, 16},
        {"hcpa", 8, 11, 18666, 16}, {"ncpa", 10, 14, 18666, 16}, {"ocpa", 10, 14, 14000, 16},
        {"scpa", 8, 11, 14000, 16}, {"si2k", 8, 21, 10500, 12},  {"PBYR", 8, 22, 10500, 12},
        {"gbrg", 8, 23, 10500, 12}, {"Vcva", 8, 24, 10500, 12},  {"BGGc", 8, 25, 10500, 12},
        {"RGGB", 8, 26, 10500, 12}, {"GBRc", 8, 27, 10500, 12},  {"GRBG", 8, 28, 10500, 12}};
    for (const auto& [compression, before, code, bytes, after] : plainCases)
        check({compression, before, 0, code, bytes, after, bytes, ""}, 1000, 7);
}

TEST(BitmapSize, ByDepth) {
    // 100 x 10 pixels.
    const std::string h4pa = "h4pa";
    const Bitmap cases[] = {
        {plain, 8, 3, ptNone, 3, 8, 3, "palettes are not drawn on"},
        {plain, 15, 0, 1, 2000, 15, 2000, ""},
        {plain, 16, 0, 1, 2000, 16, 2000, "a 32-bit code at two bytes a pixel"},
        {plain, 24, 0, 6, 3000, 24, 3000, ""},
        {plain, 32, 0, 3, 4000, 32, 4000, ""},
        {plain, 10, 0, 3, 4000, 10, 4000, "anything else is 32-bit"},
        {plain, 48, 0, 32, 6000, 48, 6000, "the 64-bit code at six bytes a pixel"},
        {plain, 64, 0, 32, 8000, 64, 8000, ""},
        {"VDTZ", 24, 0, 6, 3000, 24, 3000, ""},
        {"BW10", 48, 0, 32, 6000, 48, 6000, ""},
        {h4pa, 48, 0, 31, 6000, 48, 6000, "here 48 bits have their own code"},
        {h4pa, 64, 0, 32, 8000, 64, 8000, ""},
        {h4pa, 8, 3, ptNone, 3, 8, 3, ""},
    };
    for (const Bitmap& c : cases)
        check(c, 100, 10);
}

TEST(BitmapSize, ByRedMask) {
    struct MaskCase {
        unsigned short bitCount;
        unsigned char mask[4];
        unsigned int code, bytes;
    };
    const MaskCase cases[] = {
        {24, {1, 0, 0, 0}, 5, 3000},       {24, {0, 1, 0, 0}, 5, 3000},
        {24, {0, 0, 1, 0}, 6, 3000},       {16, {0xFF, 0, 0, 0}, 1, 2000},
        {15, {0, 0x7C, 0, 0}, 2, 2000},    {16, {0, 0, 1, 0}, 3, 2000},
        {16, {0, 0, 0, 1}, 4, 2000},       {16, {0, 0, 0, 0}, ptNone, 2000},
        {32, {0xFF, 0xFF, 0, 0}, 1, 4000}, {32, {0, 0xFF, 0, 0}, 2, 4000},
        {32, {0, 0, 0xFF, 0}, 3, 4000},    {32, {0, 0, 0, 0xFF}, 4, 4000},
        {32, {0, 0, 0, 0}, 2, 4000},       {8, {0, 0, 0xFF, 0}, 3, 4000},
    };
    for (const MaskCase& c : cases) {
        tagBITMAPINFO info = header(masked, 100, 10, c.bitCount);
        std::memcpy(info.biMask, c.mask, 4);
        unsigned int code = untouched;
        EXPECT_EQ(GetDrawSize(&info, &code), c.bytes) << c.bitCount;
        EXPECT_EQ(code, c.code) << c.bitCount << " mask " << int{c.mask[0]} << "," << int{c.mask[1]}
                                << "," << int{c.mask[2]} << "," << int{c.mask[3]};
    }
}

} // namespace

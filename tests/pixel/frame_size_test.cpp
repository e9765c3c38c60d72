// Frame sizes by layout code, and what the catalogue holds of each layout.
#include "zrdraw/exports.h"
#include "zrdraw/layouts.h"
#include "zrdraw/span.h"
#include "zrdraw/zrdraw.h"

#include <gtest/gtest.h>

#include <iterator>
#include <map>

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
        {14, 1000, 7, 0, 7 * 2688, "v210"},
        {14, 1, 1, 0, 128, "v210, one block at least"},
        {15, 720, 1, 0, 1920, "a v210 relative"},
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

TEST(Catalogue, RowsAreWhole) {
    unsigned int last = 0;
    for (const zrLayout& layout : zrLayouts) {
        EXPECT_GT(layout.code, last) << "in order of codes: " << layout.name;
        last = layout.code;
        EXPECT_EQ(zrFindLayout(layout.code), &layout);
    }
    EXPECT_EQ(std::size(zrLayouts), 26U);
    EXPECT_EQ(zrFindLayout(0), nullptr);
    EXPECT_EQ(zrLineBytes(zrFindLayout(ptBayerRGGB)->line, 1920), 2880U);
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

TEST(Catalogue, PackedPixelBytes) {
    const std::map<unsigned int, unsigned int> packed = {{5, 3},  {6, 3},  {20, 4}, {31, 6},
                                                         {32, 8}, {37, 6}, {38, 8}};
    for (unsigned int code = 0; code <= 10002; ++code) {
        const auto row = packed.find(code);
        EXPECT_EQ(zrdraw_packed_pixel_bytes(code), row == packed.end() ? 0 : row->second) << code;
    }
    EXPECT_EQ(zrdraw_packed_pixel_bytes(ptNone), 0U);
}

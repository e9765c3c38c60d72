// The metafile header reader.
#include "support/temp_file.h"
#include "zrdraw/formats.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <utility>

#include <fcntl.h>

namespace {

// The buffer lies behind the member that points to it, as the checksum's range asks.
struct MetafileOwner : CDrawRGBA32 {
    MetafileOwner() : ZRDraw(1), CDrawRGBA32(1) { metaHeader = meta; }
    ~MetafileOwner() override { EMFClose(); }
    unsigned char meta[18] = {};
};

bool isOpen(int file) {
    return fcntl(file, F_GETFD) != -1;
}

// What a file holds behind the placeable header, if it has one.
const std::string content = "0123456789abcdefgh";

TEST(Metafile, WithoutAPlaceableHeader) {
    MetafileOwner draw;
    EXPECT_EQ(draw.EMFClose(), 0);
    ASSERT_EQ(draw.EMFOpen(TempFile(content + "ijkl").path()), 0);
    EXPECT_EQ(std::memcmp(draw.meta, content.data(), 18), 0);
    const int file = draw.metaFile;
    EXPECT_TRUE(isOpen(file));
    int width = 7, height = 7;
    EXPECT_EQ(draw.EMFGetSize(width, height), -1) << "no buffer for a placeable header";
    EXPECT_EQ(width, 7);
    EXPECT_EQ(draw.EMFClose(), 0);
    EXPECT_EQ(draw.metaFile, 0);
    EXPECT_FALSE(isOpen(file));
    EXPECT_EQ(draw.EMFOpen("/no/such/file"), -1);
    EXPECT_EQ(draw.metaFile, -1);
    EXPECT_EQ(draw.EMFOpen(TempFile("\xD7 and more than twenty-two bytes").path()), -1);
    EXPECT_TRUE(isOpen(draw.metaFile)) << "stays open until the next open or close";
    EXPECT_EQ(draw.EMFOpen(TempFile("").path()), 0) << "a short read is not looked at";
    draw.metaHeader = nullptr;
    EXPECT_EQ(draw.EMFOpen(TempFile("0123").path()), 0) << "nothing to read into is harmless";
}

TEST(Metafile, PlaceableHeader) {
    // A buffer that lies before the object makes an empty range, the sum of which is 0.
    struct {
        unsigned char placeable[22] = {};
        MetafileOwner draw;
    } owner;
    owner.draw.placeableHeader = owner.placeable;
    std::string header(22, '\0');
    header[0] = '\xD7';
    const std::int16_t right = 640, bottom = -480;
    std::memcpy(header.data() + 10, &right, 2);
    std::memcpy(header.data() + 12, &bottom, 2);
    ASSERT_EQ(owner.draw.EMFOpen(TempFile(header + content).path()), 0);
    EXPECT_EQ(std::memcmp(owner.draw.meta, content.data(), 18), 0);
    int width = 0, height = 0;
    EXPECT_EQ(owner.draw.EMFGetSize(width, height), 0);
    EXPECT_EQ(std::pair(width, height), std::pair(640, -480));
    header[20] = 1;
    EXPECT_EQ(owner.draw.EMFOpen(TempFile(header + content).path()), -1) << "a wrong checksum";
}

} // namespace

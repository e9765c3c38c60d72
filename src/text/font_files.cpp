// Readers of font bitmaps. What they read is kept for callers and never drawn with.
#include "zrdraw/font_files.h"

#include "pixel/fatal.h"
#include "zrdraw/zrdraw.h"

#include <array>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

unsigned char data[1048576] = {};
zrBitmapHeader pImgHdr = {};

namespace {

// Reads up to `bytes`, fewer at the end of the file. False on an error.
bool readUpTo(int file, void* buffer, std::size_t bytes) {
    auto* at = static_cast<unsigned char*>(buffer);
    while (bytes > 0) {
        const ssize_t got = read(file, at, bytes);
        if (got <= 0)
            return got == 0;
        at += got;
        bytes -= static_cast<std::size_t>(got);
    }
    return true;
}

unsigned int bigEndian(const unsigned char* bytes) {
    return static_cast<unsigned int>(bytes[0]) << 24 | static_cast<unsigned int>(bytes[1]) << 16 |
           static_cast<unsigned int>(bytes[2]) << 8 | bytes[3];
}

// Offsets in a bitmap file.
constexpr std::size_t bitmapBytesRead = 50;
constexpr std::size_t pixelOffsetAt = 10;
constexpr std::size_t headerSizeAt = 14;
constexpr std::size_t headerAt = 18;
constexpr std::size_t bitsPerPixelAt = 28;
constexpr unsigned char headerSize = 0x28;
constexpr unsigned char servedBits = 24;

// A PNG file: its signature, the length and type of its first chunk, and the end of that chunk.
constexpr unsigned char pngStart[16] = {137, 'P', 'N', 'G', 13,  10,  26,  10,
                                        0,   0,   0,   13,  'I', 'H', 'D', 'R'};
constexpr off_t firstChunkEnd = 33;
constexpr std::size_t pngBytesRead = 4196;
constexpr std::size_t collectedBytes = 65535;
constexpr off_t crcBytes = 4;

bool isChunk(const unsigned char* type, const char* name) {
    return std::memcmp(type, name, 4) == 0;
}

} // namespace

// By contract: a file that is turned down stays open.
int ZRDraw::ExtractBMPData(const char* path) {
    const int file = open(path, O_RDWR | O_CLOEXEC);
    if (file < 0)
        return -1;
    // The last four bytes of the header lie behind what is read.
    std::array<unsigned char, headerAt + sizeof pImgHdr> start{};
    bool sound = readUpTo(file, start.data(), bitmapBytesRead);
    if (start[0] != 'B' || start[1] != 'M' || start[headerSizeAt] != headerSize)
        return -1;
    std::memcpy(&pImgHdr, start.data() + headerAt, sizeof pImgHdr);
    if (pImgHdr.compression != 0)
        return -1;
    // By contract: only the low bytes of the pixels' offset and of the depth are looked at.
    lseek(file, start[pixelOffsetAt], SEEK_SET);
    if (start[bitsPerPixelAt] != servedBits)
        return -1;
    if (pImgHdr.imageSize == 0)
        pImgHdr.imageSize = static_cast<unsigned int>(pImgHdr.width * pImgHdr.height * 3);
    if (pImgHdr.imageSize > sizeof data)
        fatalBounds("the pixels of a font bitmap");
    sound = readUpTo(file, data, pImgHdr.imageSize) && sound;
    return close(file) == 0 && sound ? 0 : -1;
}

// By contract: a file that is turned down stays open, one without an end chunk is read for ever,
// and what is collected is dropped.
int ZRDraw::ExtractPNGData(const char* path) {
    std::vector<unsigned char> collected(collectedBytes);
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return -1;
    std::array<unsigned char, pngBytesRead> start{};
    readUpTo(file, start.data(), start.size());
    if (std::memcmp(start.data(), pngStart, sizeof pngStart) != 0)
        return -1;
    lseek(file, firstChunkEnd, SEEK_SET);
    std::size_t used = 0;
    for (;;) {
        unsigned char chunk[8] = {};
        readUpTo(file, chunk, sizeof chunk);
        const unsigned int length = bigEndian(chunk);
        const unsigned char* type = chunk + 4;
        if (isChunk(type, "IEND"))
            break;
        if (isChunk(type, "IDAT")) {
            if (length > collected.size() - used)
                fatalBounds("the picture data of a font file");
            readUpTo(file, collected.data() + used, length);
            used += length;
            lseek(file, crcBytes, SEEK_CUR);
        } else {
            lseek(file, static_cast<off_t>(length) + crcBytes, SEEK_CUR);
        }
    }
    return close(file) == 0 ? 0 : -1;
}

// Reading the watermark's file into a cache in the stream's layout.
#include "overlay/watermark.h"
#include "zrdraw/platform/files.h"
#include "zrdraw/platform/media.h"
#include "zrdraw/platform/memory.h"
#include "zrdraw/zroverlay.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <new>

namespace {

constexpr const char* readerName = "clipFile.so";

struct FreeLibrary {
    void operator()(void* library) const { zrOSFreeLibrary(library); }
};
using Library = std::unique_ptr<void, FreeLibrary>;

// The reader of media files, a library of the host's that is held while a file is read.
struct Reader {
    cfOpenFunction* open;
    cfGetFileInfoFunction* getFileInfo;
    cfReadFrameUncFunction* readFrame;
    cfCloseFunction* close;

    bool isWhole() const { return open && getFileInfo && readFrame && close; }
};

Library loadLibrary() {
    constexpr int loadNow = 2;
    return Library(zrOSLoadLibrary(readerName, loadNow));
}

Reader findEntries(void* library) {
    if (library == nullptr)
        return {};
    const auto entry = [library](const char* name) { return zrOSGetProcAddress(library, name); };
    return {reinterpret_cast<cfOpenFunction*>(entry("cfOpen")),
            reinterpret_cast<cfGetFileInfoFunction*>(entry("cfGetFileInfo")),
            reinterpret_cast<cfReadFrameUncFunction*>(entry("cfReadFrameUnc")),
            reinterpret_cast<cfCloseFunction*>(entry("cfClose"))};
}

void* openFile(const Reader& reader, const char* path) {
    constexpr unsigned int readAccess = 0x80000000U, sharedReading = 1, openExisting = 3;
    constexpr unsigned int openFlags = 0x20000;
    return reader.open(path, readAccess, sharedReading, nullptr, openExisting, 0, openFlags);
}

unsigned int readFrame(const Reader& reader, void*& file, DFRAME* frame) {
    return reader.readFrame(&file, 0, 1, 1, 1, frame, nullptr, nullptr);
}

struct FreeFrame {
    void operator()(DFRAME* frame) const {
        constexpr int operation = 11;
        DFrameMemTrace(operation, 0, 0, &frame, "gen", 302);
    }
};
using Frame = std::unique_ptr<DFRAME, FreeFrame>;

Frame makeFrame(unsigned int bytes) {
    constexpr int operation = 10;
    DFRAME* frame = nullptr;
    const int status = DFrameMemTrace(operation, bytes, sizeof(DFRAME), &frame, "gen", 251);
    return Frame(status == 0 ? frame : nullptr);
}

struct Release {
    void operator()(ZRDraw* draw) const { ReleaseDraw(draw); }
};
using Image = std::unique_ptr<ZRDraw, Release>;

Image makeImage(const CZrOverlay& overlay, char* pixels) {
    ZRDraw* image = nullptr;
    const int width = static_cast<int>(overlay.wmWidth);
    GetDraw(ptBGRA32, width, static_cast<int>(overlay.wmHeight),
            width * static_cast<int>(watermarkBgraBytes), pixels, image);
    return Image(image);
}

// Room for so many bytes to a pixel. A size that no call can ask for has no memory either.
void* allocateCache(const CZrOverlay& overlay, std::size_t pixelBytes) {
    const std::size_t pixels = std::size_t{overlay.wmWidth} * overlay.wmHeight;
    if (pixels > std::numeric_limits<unsigned int>::max() / pixelBytes)
        throw std::bad_alloc();
    const auto bytes = static_cast<unsigned int>(pixels * pixelBytes);
    void* memory = nullptr;
    try {
        memory = ZRAlloc(bytes);
    } catch (...) { // a host's own may throw what it likes
        throw std::bad_alloc();
    }
    if (memory == nullptr && bytes != 0)
        throw std::bad_alloc();
    return memory;
}

// By contract: only the even pixel of a pair is read, and its luma stands twice.
void cachePairs(CZrOverlay& overlay, ZRDraw& image) {
    overlay.wmYuv2 = static_cast<unsigned char*>(allocateCache(overlay, watermarkPairEntries));
    const unsigned int pairs = overlay.wmWidth / 2;
    unsigned char* entry = overlay.wmYuv2;
    for (unsigned int row = 0; row < overlay.wmHeight; ++row) {
        for (unsigned int pair = 0; pair < pairs; ++pair, entry += watermarkPairEntries) {
            image.GetPixelYCbCr8(static_cast<int>(2 * pair), static_cast<int>(row), entry[0],
                                 entry[1], entry[3], entry[4]);
            entry[2] = entry[0];
        }
    }
}

// By contract: chroma and alpha of a pair are those of its odd pixel. On an odd width a row's last
// entry is the next row's first one, which then overwrites it.
void cacheDeepPairs(CZrOverlay& overlay, ZRDraw& image) {
    overlay.wmV210 = static_cast<unsigned int*>(
        allocateCache(overlay, watermarkPairEntries * sizeof(unsigned int)));
    const unsigned int pairs = overlay.wmWidth / 2;
    for (unsigned int row = 0; row < overlay.wmHeight; ++row) {
        const int y = static_cast<int>(row);
        for (unsigned int x = 0; x < overlay.wmWidth; x += 2) {
            unsigned int* const entry =
                overlay.wmV210 + watermarkPairEntries * (pairs * row + x / 2);
            image.GetPixelYCbCr10(static_cast<int>(x), y, entry[0], entry[1], entry[3], entry[4]);
            image.GetPixelYCbCr10(static_cast<int>(x + 1), y, entry[2], entry[1], entry[3],
                                  entry[4]);
        }
    }
}

void cachePixels(CZrOverlay& overlay, const char* pixels) {
    overlay.wmBgra = static_cast<unsigned char*>(allocateCache(overlay, watermarkBgraBytes));
    std::copy_n(pixels, overlay.wmWidth * overlay.wmHeight * watermarkBgraBytes, overlay.wmBgra);
}

// In any other layout there is no cache.
void makeCache(CZrOverlay& overlay, ZRDraw& image, const char* pixels) {
    switch (overlay.wmLayout) {
    case zrWatermarkYuv2:
        cachePairs(overlay, image);
        overlay.WatermarkX &= ~1U; // by contract, for good
        break;
    case zrWatermarkV210:
        cacheDeepPairs(overlay, image);
        overlay.WatermarkX &= ~1U;
        break;
    case zrWatermarkBgra:
        cachePixels(overlay, pixels);
        break;
    default:
        break;
    }
}

// A cache of an earlier load has that one's size. By contract: it is not freed.
void forgetCache(CZrOverlay& overlay) {
    if (overlay.wmLayout == zrWatermarkYuv2)
        overlay.wmYuv2 = nullptr;
    else if (overlay.wmLayout == zrWatermarkV210)
        overlay.wmV210 = nullptr;
    else if (overlay.wmLayout == zrWatermarkBgra)
        overlay.wmBgra = nullptr;
}

// Throws where there is no memory. By contract: a host that makes no frame is not told of.
void readPicture(CZrOverlay& overlay, const Reader& reader, void*& file) {
    Image image; // by contract, given back after the frame
    const Frame frame = makeFrame(readFrame(reader, file, nullptr));
    if (frame == nullptr)
        return;
    forgetCache(overlay);
    readFrame(reader, file, frame.get()); // by contract, whatever it answers
    image = makeImage(overlay, frame->videoData);
    makeCache(overlay, *image, frame->videoData);
}

} // namespace

int CZrOverlay::LoadWatermark() {
    if (Watermark == nullptr || Watermark[0] == '\0')
        return 0;
    Library library = loadLibrary();
    const Reader reader = findEntries(library.get());
    if (!reader.isWhole()) {
        ErrOut("Error: Unable to load watermark reader <%s> ", readerName);
        return 0;
    }
    void* file = openFile(reader, Watermark);
    if (file == nullptr) {
        // By contract: the number is that of the pointer, and the reader stays loaded.
        ErrOut("Error: Unable to load watermark file <%d> ", Watermark);
        (void)library.release();
        return 0;
    }
    KPXVIDEO record{};
    record.header.biSize = sizeof record;
    reader.getFileInfo(&file, 1, 0, &record, nullptr, nullptr);
    wmWidth = static_cast<unsigned int>(record.header.biWidth);
    wmHeight = static_cast<unsigned int>(record.header.biHeight);
    wmLayout = pixelCode;
    try {
        readPicture(*this, reader, file);
    } catch (const std::bad_alloc&) {
        ErrOut("Error: No memory for watermark <%s> ", Watermark);
    }
    reader.close(&file);
    return 0;
}

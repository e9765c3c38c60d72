// Reading the watermark's file into a cache in the stream's layout.
#include "overlay/watermark.h"
#include "zrdraw/platform/files.h"
#include "zrdraw/platform/media.h"
#include "zrdraw/platform/memory.h"
#include "zrdraw/zroverlay.h"

#include <cstring>
#include <memory>

namespace {

// The reader of media files, a library of the host's that is held while a file is read.
struct Reader {
    void* library;
    cfOpenFunction* open;
    cfGetFileInfoFunction* getFileInfo;
    cfReadFrameUncFunction* readFrame;
    cfCloseFunction* close;
};

// By contract: neither the library nor an entry is tested.
Reader loadReader() {
    constexpr int loadNow = 2;
    void* const library = zrOSLoadLibrary("clipFile.so", loadNow);
    const auto entry = [library](const char* name) { return zrOSGetProcAddress(library, name); };
    return {library, reinterpret_cast<cfOpenFunction*>(entry("cfOpen")),
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

int makeFrame(unsigned int bytes, DFRAME*& frame) {
    constexpr int operation = 10;
    return DFrameMemTrace(operation, bytes, sizeof(DFRAME), &frame, "gen", 251);
}

void freeFrame(DFRAME*& frame) {
    constexpr int operation = 11;
    DFrameMemTrace(operation, 0, 0, &frame, "gen", 302);
}

// By contract: only the even pixel of a pair is read, and its luma stands twice.
void cachePairs(CZrOverlay& overlay, ZRDraw& image) {
    overlay.wmYuv2 = static_cast<unsigned char*>(
        ZRAlloc(overlay.wmWidth * overlay.wmHeight * watermarkPairEntries));
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
        ZRAlloc(overlay.wmWidth * overlay.wmHeight * watermarkPairEntries *
                static_cast<unsigned int>(sizeof(unsigned int))));
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
    const unsigned int bytes = overlay.wmWidth * overlay.wmHeight * watermarkBgraBytes;
    overlay.wmBgra = static_cast<unsigned char*>(ZRAlloc(bytes));
    std::memcpy(overlay.wmBgra, pixels, bytes);
}

// In any other layout there is no cache.
void makeCache(CZrOverlay& overlay, ZRDraw& image, const char* pixels) {
    switch (overlay.wmLayout) {
    case watermarkYuv2:
        cachePairs(overlay, image);
        overlay.WatermarkX &= ~1U; // by contract, for good
        break;
    case watermarkV210:
        cacheDeepPairs(overlay, image);
        overlay.WatermarkX &= ~1U;
        break;
    case watermarkBgra:
        cachePixels(overlay, pixels);
        break;
    default:
        break;
    }
}

void readPicture(CZrOverlay& overlay, const Reader& reader, void*& file) {
    DFRAME* frame = nullptr;
    if (makeFrame(readFrame(reader, file, nullptr), frame) != 0)
        return;
    readFrame(reader, file, frame);
    ZRDraw* image = nullptr;
    const int width = static_cast<int>(overlay.wmWidth);
    GetDraw(ptBGRA32, width, static_cast<int>(overlay.wmHeight),
            width * static_cast<int>(watermarkBgraBytes), frame->videoData, image);
    makeCache(overlay, *image, frame->videoData);
    freeFrame(frame);
    ReleaseDraw(image);
}

} // namespace

int CZrOverlay::LoadWatermark() {
    const auto record = std::make_unique<KPXVIDEO>();
    record->header.biSize = sizeof(KPXVIDEO);
    if (Watermark == nullptr || Watermark[0] == '\0')
        return 0;
    const Reader reader = loadReader();
    void* file = openFile(reader, Watermark);
    if (file == nullptr) {
        // By contract: the number is that of the pointer, and the reader stays loaded.
        ErrOut("Error: Unable to load watermark file <%d> ", Watermark);
        return 0;
    }
    reader.getFileInfo(&file, 1, 0, record.get(), nullptr, nullptr);
    wmWidth = static_cast<unsigned int>(record->header.biWidth);
    wmHeight = static_cast<unsigned int>(record->header.biHeight);
    wmLayout = pixelCode;
    readPicture(*this, reader, file);
    reader.close(&file);
    zrOSFreeLibrary(reader.library);
    return 0;
}

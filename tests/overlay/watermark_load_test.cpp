// Reading the watermark into its cache.
#include "overlay/watermark_fixture.h"

namespace {

TEST_F(OverlayWatermark, LoadsInSteps) {
    load(4, 2, 0);
    EXPECT_EQ(clip.calls,
              (Lines{"load clipFile.so 2", "cfOpen 0", "cfGetFileInfo 0", "cfReadFrameUnc 0",
                     "cfClose 0", "open logo.mov 2147483648 1 1 3 0 131072", "info 1 1 0 1428 1",
                     "size 1 0 1 1 1 1", "frame gen 10 32 8480 251", "read 1 0 1 1 1 1", "alloc 32",
                     "frame gen 11 0 0 302", "close 1", "unload 1"}));
    EXPECT_TRUE(log.empty());
}

TEST_F(OverlayWatermark, CacheOfPairs) {
    load(5, 2, yuv2);
    EXPECT_EQ(overlay.WatermarkX, 400U);
    EXPECT_EQ(overlay.wmLayout, yuv2);
    EXPECT_EQ(clip.calls[10], "alloc 50");
    const Image image;
    std::vector<unsigned char> wanted;
    for (const auto& [x, y] : {std::pair{0, 0}, {2, 0}, {0, 1}, {2, 1}}) {
        unsigned char luma, cb, cr, alpha;
        image.draw->GetPixelYCbCr8(x, y, luma, cb, cr, alpha);
        wanted.insert(wanted.end(), {luma, cb, luma, cr, alpha});
    }
    EXPECT_EQ(std::vector<unsigned char>(overlay.wmYuv2, overlay.wmYuv2 + 20), wanted);
    load(1, 2, yuv2);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(overlay.wmYuv2), 10), "ZZZZZZZZZZ");
    EXPECT_EQ(overlay.WatermarkX, 400U);
}

TEST_F(OverlayWatermark, CacheOfDeepPairs) {
    struct Pair {
        int even, odd, row;
    };
    struct Case {
        int width;
        std::vector<Pair> pairs;
    };
    // An odd width: a row's last pair stands where the next row begins.
    for (const Case& c : {Case{4, {{0, 1, 0}, {2, 3, 0}, {0, 1, 1}, {2, 3, 1}}},
                          Case{3, {{0, 1, 0}, {0, 1, 1}, {2, 2, 1}}}}) {
        load(c.width, 2, v210);
        EXPECT_EQ(overlay.WatermarkX, 400U);
        EXPECT_EQ(clip.calls[10], "alloc " + std::to_string(c.width * 2 * 20));
        const Image image;
        std::vector<unsigned int> wanted;
        for (const Pair& pair : c.pairs) {
            unsigned int even, odd, cb, cr, alpha;
            image.draw->GetPixelYCbCr10(pair.even, pair.row, even, cb, cr, alpha);
            image.draw->GetPixelYCbCr10(pair.odd, pair.row, odd, cb, cr, alpha);
            wanted.insert(wanted.end(), {even, cb, odd, cr, alpha});
        }
        EXPECT_EQ(std::vector<unsigned int>(overlay.wmV210, overlay.wmV210 + wanted.size()),
                  wanted);
    }
}

TEST_F(OverlayWatermark, CacheOfPixels) {
    load(5, 3, 0);
    EXPECT_EQ(std::memcmp(overlay.wmBgra, clip.pixels.data(), clip.pixels.size()), 0);
    EXPECT_EQ(overlay.WatermarkX, 401U);
    unsigned char* const first = overlay.wmBgra;
    const auto pixels = clip.pixels;
    load(2, 1, 0); // makes a new one beside the old one
    EXPECT_NE(overlay.wmBgra, first);
    EXPECT_EQ(overlay.wmWidth * 10 + overlay.wmHeight, 21U);
    EXPECT_EQ(std::memcmp(first, pixels.data(), pixels.size()), 0);
    unsigned char* const second = overlay.wmBgra;
    overlay.WatermarkEnable = 0;
    create(16, 8, yuv2);
    EXPECT_EQ(overlay.wmBgra, second);
    EXPECT_EQ(overlay.wmLayout, 0U);
}

TEST_F(OverlayWatermark, NothingToLoad) {
    Picture picture(16, 8);
    overlay.Enabled = overlay.WatermarkEnable = 1;
    overlay.WatermarkX = overlay.WatermarkY = 0;
    char empty[1] = "";
    for (char* name : {static_cast<char*>(nullptr), empty}) {
        overlay.Watermark = name;
        create(16, 8);
        burnIn(picture);
    }
    overlay.WatermarkEnable = 0;
    overlay.Watermark = path;
    create(16, 8);
    overlay.WatermarkEnable = 1; // too late for a cache
    burnIn(picture);
    EXPECT_EQ(clip.calls.size() + log.size(), 0U);
    EXPECT_EQ(picture.difference(Picture(16, 8)), "");
}

// No memory is what a picture without pixels needs.
TEST_F(OverlayWatermark, EmptyPicture) {
    injection().alloc = [](unsigned int) { return nullptr; };
    for (const unsigned int code : {bgra, yuv2, v210}) {
        load(0, 0, code);
        EXPECT_EQ(clip.calls.back(), "unload 1");
    }
    EXPECT_TRUE(log.empty());
}

// What the host lacks costs the watermark and most often one line, and what was opened is closed
// again; but the library stays loaded where the file does not open.
TEST_F(OverlayWatermark, HostsThatLackSomething) {
    struct Case {
        std::string lacks;
        Lines last; // calls
        Lines lines;
    };
    const Lines unloaded{"cfClose 0", "unload 1"};
    const Lines closed{"frame gen 11 0 0 302", "close 1", "unload 1"};
    const auto pathAsNumber = static_cast<int>(reinterpret_cast<std::uintptr_t>(+path));
    const Lines noFile{"Error: Unable to load watermark file <" + std::to_string(pathAsNumber) +
                       "> "};
    const Lines noReader{"Error: Unable to load watermark reader <clipFile.so> "};
    const Lines noMemory{"Error: No memory for watermark <logo.mov> "};
    const Case cases[] = {
        {"library", {"load clipFile.so 2"}, noReader},
        {"cfOpen", unloaded, noReader},
        {"cfGetFileInfo", unloaded, noReader},
        {"cfReadFrameUnc", unloaded, noReader},
        {"cfClose", unloaded, noReader},
        {"file", {"open logo.mov 2147483648 1 1 3 0 131072"}, noFile},
        {"memory of a frame", {"frame gen 10 16 8480 251", "close 1", "unload 1"}, {}},
        {"memory", closed, noMemory},
        {"an allocator that does not throw", closed, noMemory},
        {"a size of 32 bits", closed, noMemory},
    };
    unsigned int old[16] = {};
    for (const Case& c : cases) {
        for (const unsigned int code : {bgra, yuv2, v210}) {
            SCOPED_TRACE(c.lacks + " " + std::to_string(code));
            clip = {};
            clip.lacks = c.lacks;
            log.clear();
            useCache(0, 0, 0);
            overlay.wmBgra = overlay.wmYuv2 = reinterpret_cast<unsigned char*>(old);
            overlay.wmV210 = old;
            load(2, 2, code);
            EXPECT_EQ(log, c.lines);
            ASSERT_GE(clip.calls.size(), c.last.size());
            EXPECT_EQ(Lines(clip.calls.end() - static_cast<long>(c.last.size()), clip.calls.end()),
                      c.last);
            // An old cache does not fit the new size.
            const bool sized = c.lines == noMemory;
            EXPECT_EQ(overlay.wmBgra == nullptr, sized && code == bgra);
            EXPECT_EQ(overlay.wmYuv2 == nullptr, sized && code == yuv2);
            EXPECT_EQ(overlay.wmV210 == nullptr, sized && code == v210);
            EXPECT_EQ(overlay.wmLayout, sized || c.lines.empty() ? code : 0);
            EXPECT_EQ(overlay.WatermarkX, 401U);
            place(0, 0);
            overlay.Enabled = 1;
            Picture picture(16, 8);
            burnIn(picture);
            EXPECT_EQ(picture.difference(Picture(16, 8)), "");
            EXPECT_EQ(log, c.lines) << "a line a frame";
        }
    }
}

// By contract nothing of ours frees them; a host does.
TEST_F(OverlayWatermark, CachesGoBackByZRFree) {
    injection().alloc = nullptr;
    place(0, 0);
    for (const unsigned int code : {bgra, yuv2, v210}) {
        load(4, 4, code);
        void* const caches[] = {overlay.wmBgra, overlay.wmYuv2, overlay.wmV210};
        EXPECT_EQ(std::count(std::begin(caches), std::end(caches), nullptr), 2) << code;
        for (void* cache : caches)
            ZRFree(cache);
        overlay.wmBgra = overlay.wmYuv2 = nullptr;
        overlay.wmV210 = nullptr;
        EXPECT_EQ(apply(std::vector<char>(512, 'x')), std::vector<char>(512, 'x'));
    }
    EXPECT_TRUE(log.empty());
}

// A frame without pixels, or none at all.
TEST_F(OverlayWatermark, NothingToDrawOn) {
    for (const unsigned int code : {bgra, yuv2, v210}) {
        load(4, 4, code);
        place(0, 0);
        overlay.Enabled = 1;
        frame.videoData = nullptr;
        EXPECT_EQ(overlay.BurnIn(&frame, nullptr, nullptr, 0), 0);
        EXPECT_EQ(overlay.BurnIn(nullptr, nullptr, nullptr, 0), 0);
    }
    const KPXVIDEO taken = overlay.video;
    EXPECT_EQ(overlay.Create(nullptr, &system) + overlay.Create(&video, nullptr), 0);
    EXPECT_EQ(std::memcmp(&taken, &overlay.video, sizeof taken), 0);
}

TEST_F(OverlayWatermark, OtherLayoutsComplainOnEachFrame) {
    load(2, 2, uyvy);
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(clip.calls[10], "frame gen 11 0 0 302"); // no cache
    place(0, 0);
    overlay.Enabled = 1;
    Picture picture(16, 8);
    burnIn(picture);
    burnIn(picture);
    EXPECT_EQ(log, Lines(2, "Error: No colourspace for watermark "));
    EXPECT_EQ(picture.difference(Picture(16, 8)), "");
}

} // namespace

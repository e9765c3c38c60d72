// The watermark: read once into a cache, laid over every frame.
#include "overlay/overlay_fixture.h"

#include <list>

namespace {

constexpr unsigned int yuv2 = 0x32767579, v210 = 0x76323130, uyvy = 0x59565955;

// What the reader of media files finds, and the calls that reach it.
struct Clip {
    int width = 0, height = 0;
    std::vector<unsigned char> pixels;
    bool opens = true, hasMemory = true;
    std::vector<std::string> calls;
    DFRAME frame{};
};
Clip clip;

template <typename... Numbers>
void note(const std::string& call, Numbers... numbers) {
    clip.calls.push_back(call + (... + (" " + std::to_string(numbers))));
}

void* openClip(const char* path, unsigned int access, unsigned int share, void* security,
               unsigned int disposition, unsigned int attributes, unsigned int flags) {
    note(std::string("open ") + path, access, share, security == nullptr, disposition, attributes,
         flags);
    return clip.opens ? &clip : nullptr;
}

int getInfo(void** handle, int kind, int index, KPXVIDEO* record, void* a, void* b) {
    note("info", *handle == &clip, kind, index, record->header.biSize, a == b);
    record->header.biWidth = clip.width;
    record->header.biHeight = clip.height;
    return 0;
}

unsigned int readFrame(void** handle, unsigned int number, int count, int isVideo, int whole,
                       DFRAME* frame, void* a, void* b) {
    note(frame == nullptr ? "size" : "read", *handle == &clip, number, count, isVideo, whole,
         a == b);
    if (frame != nullptr)
        std::memcpy(frame->videoData, clip.pixels.data(), clip.pixels.size());
    return static_cast<unsigned int>(clip.pixels.size());
}

int closeClip(void** handle) {
    note("close", *handle == &clip);
    return 0;
}

void* entryOf(const char* name) {
    note(name, 0);
    const std::string entry = name;
    return entry == "cfOpen"           ? reinterpret_cast<void*>(openClip)
           : entry == "cfGetFileInfo"  ? reinterpret_cast<void*>(getInfo)
           : entry == "cfReadFrameUnc" ? reinterpret_cast<void*>(readFrame)
           : entry == "cfClose"        ? reinterpret_cast<void*>(closeClip)
                                       : nullptr;
}

} // namespace

class OverlayWatermark : public OverlayTest {
protected:
    OverlayWatermark() {
        clip = {};
        Injection& host = injection();
        host.loadLibrary = [this](const char* name, int mode) {
            note(std::string("load ") + name, mode);
            return static_cast<void*>(&library);
        };
        host.procAddress = [this](void* from, const char* name) {
            EXPECT_EQ(from, &library);
            return entryOf(name);
        };
        host.freeLibrary = [this](void* freed) {
            note("unload", freed == &library);
            return 1;
        };
        host.alloc = [this](unsigned int bytes) {
            note("alloc", bytes);
            return static_cast<void*>(memory.emplace_back(bytes, '\x5A').data());
        };
        host.frameMemory = [this](int operation, unsigned int bytes, unsigned int record,
                                  DFRAME** made, const char* tag, int line) {
            note(std::string("frame ") + tag, operation, bytes, record, line);
            if (!clip.hasMemory)
                return -1;
            clip.frame.videoData = memory.emplace_back(bytes).data();
            *made = operation == 10 ? &clip.frame : nullptr;
            return 0;
        };
    }

    // A picture of random pixels, and a stream that it is loaded for.
    void load(int width, int height, unsigned int code) {
        clip.width = width;
        clip.height = height;
        unsigned int seed = 1;
        clip.pixels.resize(static_cast<std::size_t>(4 * width * height));
        for (unsigned char& byte : clip.pixels)
            byte = static_cast<unsigned char>((seed = seed * 1103515245 + 12345) >> 16);
        clip.calls.clear();
        overlay.WatermarkEnable = 1;
        overlay.Watermark = path;
        overlay.WatermarkX = 401;
        create(16, 8, code);
    }
    void useCache(unsigned int code, unsigned int width, unsigned int height) {
        overlay.wmLayout = code;
        overlay.wmWidth = width;
        overlay.wmHeight = height;
    }
    void place(unsigned int x, unsigned int y) {
        overlay.WatermarkX = x;
        overlay.WatermarkY = y;
    }
    template <typename Byte>
    std::vector<Byte> apply(std::vector<Byte> bytes) {
        frame.videoData = reinterpret_cast<char*>(bytes.data());
        EXPECT_EQ(overlay.ApplyWatermark(&frame), 0);
        return bytes;
    }
    // The picture as a drawing object sees it.
    struct Image {
        Image() {
            GetDraw(ptBGRA32, clip.width, clip.height, 4 * clip.width,
                    reinterpret_cast<char*>(clip.pixels.data()), draw);
        }
        ~Image() { ReleaseDraw(draw); }
        ZRDraw* draw = nullptr;
    };

    std::list<std::vector<char>> memory;
    char path[10] = "logo.mov";
    int library = 0;
};

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
    EXPECT_TRUE(clip.calls.empty());
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(picture.difference(Picture(16, 8)), "");
}

TEST_F(OverlayWatermark, FileThatCannotBeOpened) {
    clip.opens = false;
    overlay.wmLayout = 0;
    load(2, 2, yuv2);
    EXPECT_EQ(clip.calls.back().substr(0, 4), "open"); // and the library stays loaded
    ASSERT_EQ(log.size(), 1U);
    char message[80];
    std::snprintf(message, sizeof message, "Error: Unable to load watermark file <%d> ",
                  static_cast<int>(reinterpret_cast<std::uintptr_t>(+path)));
    EXPECT_EQ(log[0], message);
    EXPECT_EQ(overlay.wmLayout + overlay.wmWidth + overlay.wmHeight, 0U);
    EXPECT_EQ(overlay.wmYuv2, nullptr);
    EXPECT_EQ(overlay.WatermarkX, 401U);
    place(0, 0);
    EXPECT_EQ(apply(std::vector<char>(512, 'x')), std::vector<char>(512, 'x'));
    EXPECT_EQ(log.size(), 1U);
}

TEST_F(OverlayWatermark, NoMemoryForTheFrame) {
    clip.hasMemory = false;
    load(2, 2, yuv2);
    EXPECT_EQ(Lines(clip.calls.end() - 3, clip.calls.end()),
              (Lines{"frame gen 10 16 8480 251", "close 1", "unload 1"}));
    EXPECT_EQ(overlay.wmYuv2, nullptr);
    EXPECT_EQ(overlay.WatermarkX, 401U);
    EXPECT_EQ(apply(std::vector<char>(512, 'x')), std::vector<char>(512, 'x'));
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

TEST_F(OverlayWatermark, NullCaches) {
    create(6, 3);
    place(0, 0);
    for (const unsigned int code : {0U, yuv2, v210}) {
        useCache(code, 6, 3);
        EXPECT_EQ(apply(std::vector<char>(512, 'x')), std::vector<char>(512, 'x'));
    }
    EXPECT_TRUE(log.empty());
}

TEST_F(OverlayWatermark, BlendOfPairs) {
    std::vector<unsigned char> entry{210, 20, 50, 240, 0}; // Y, Cb, Y, Cr, A
    create(2, 1, yuv2);
    useCache(yuv2, 2, 1);
    place(0, 0);
    overlay.wmYuv2 = entry.data();
    const std::pair<unsigned char, std::vector<unsigned char>> cases[] = {
        {0, {100, 100, 100, 100}},
        {8, {100, 100, 100, 100}},
        {9, {97, 103, 104, 98}},
        {128, {59, 155, 170, 74}},
        {255, {20, 210, 240, 50}}};
    for (const auto& [alpha, wanted] : cases) {
        entry[4] = alpha;
        EXPECT_EQ(apply(std::vector<unsigned char>(4, 100)), wanted) << int{alpha};
    }
}

TEST_F(OverlayWatermark, PlacesInPairsAndPixels) {
    struct Case {
        unsigned int code, x, y, width, height;
        const char* art; // a character a pixel of 6 x 3, the entry's letter where it is shown
    };
    const Case cases[] = {
        {yuv2, 2, 1, 2, 1,
         "......"
         "..aa.."
         "......"},
        {yuv2, 3, 1, 2, 1,
         "......"
         "...aa."
         "......"},
        {yuv2, 4, 1, 6, 1,
         "......"
         "....aa"
         "bb...."}, // pairs are counted as pixels
        {yuv2, 0, 0, 5, 2,
         "aabb.."
         "ccdd.."
         "......"},
        {yuv2, 0, 2, 2, 3,
         "......"
         "......"
         "aa...."},
        {yuv2, 6, 0, 2, 1,
         "......"
         "......"
         "......"},
        {yuv2, 0xFFFFFFFE, 0, 6, 1,
         "......"
         "......"
         "......"},
        {yuv2, 0, 3, 2, 1,
         "......"
         "......"
         "......"},
        {yuv2, 0, 0xFFFFFFFF, 2, 3,
         "......"
         "......"
         "......"},
        {yuv2, 0, 0, 2, 0,
         "......"
         "......"
         "......"},
        {yuv2, 0, 0, 1, 2,
         "......"
         "......"
         "......"},
        {0, 1, 1, 2, 2,
         "......"
         ".ab..."
         ".cd..."},
        {0, 4, 0, 3, 2,
         "....ab"
         "....de"
         "......"},
        {0, 5, 2, 1, 2,
         "......"
         "......"
         ".....a"},
        {0, 6, 0, 2, 2,
         "......"
         "......"
         "......"},
        {0, 0xFFFFFFFF, 0, 2, 2,
         "......"
         "......"
         "......"},
        {0, 0, 3, 2, 2,
         "......"
         "......"
         "......"},
        {0, 0, 0xFFFFFFFF, 2, 2,
         "......"
         "......"
         "......"},
        {0, 0, 0, 2, 0,
         "......"
         "......"
         "......"},
    };
    for (const Case& c : cases) {
        std::vector<unsigned char> cache;
        for (unsigned char letter = 'a'; letter < 'a' + 12; ++letter) {
            cache.insert(cache.end(), c.code == 0 ? 3 : 4, letter);
            cache.push_back(255);
        }
        create(6, 3, c.code);
        useCache(c.code, c.width, c.height);
        place(c.x, c.y);
        overlay.wmYuv2 = overlay.wmBgra = cache.data();
        const std::size_t pixelBytes = c.code == 0 ? 4 : 2;
        const auto found = apply(std::vector<unsigned char>(6 * 3 * pixelBytes + 64, '.'));
        std::string art;
        for (std::size_t i = 0; i < found.size(); i += pixelBytes)
            art += static_cast<char>(found[i]);
        EXPECT_EQ(art, c.art + std::string(64 / pixelBytes, '.')) << c.x << " " << c.y;
    }
}

TEST_F(OverlayWatermark, BlendOfPixels) {
    create(1, 1);
    useCache(0, 1, 1);
    place(0, 0);
    const std::pair<unsigned char, std::vector<unsigned char>> cases[] = {
        {16, {64, 64, 64, 64}}, {17, {73, 59, 76, 17}}, {255, {200, 0, 255, 255}}};
    for (const auto& [alpha, wanted] : cases) {
        std::vector<unsigned char> cache{200, 0, 255, alpha};
        overlay.wmBgra = cache.data();
        EXPECT_EQ(apply(std::vector<unsigned char>(4, 64)), wanted) << int{alpha};
    }
}

TEST_F(OverlayWatermark, DeepPixelsAreDrawnByTheirAlpha) {
    struct Case {
        int frameWidth, pitch;
        unsigned int x, y, width, height, alpha;
        int columns, rows; // that are shown
    };
    const Case cases[] = {
        {50, 256, 3, 1, 4, 2, 11, 4, 2},           {50, 256, 3, 1, 4, 2, 10, 0, 0},
        {48, 128, 0, 0, 5, 2, 1023, 5, 2},         {96, 256, 93, 0, 8, 1, 1024, 3, 1},
        {50, 256, 46, 2, 8, 3, 500, 4, 1},         {50, 256, 50, 0, 2, 2, 500, 0, 0},
        {50, 256, 0, 3, 2, 2, 500, 0, 0},          {50, 256, 0xFFFFFFFF, 0, 2, 2, 500, 0, 0},
        {50, 256, 0, 0xFFFFFFFE, 2, 4, 500, 0, 0}, {50, 256, 0, 0, 2, 0, 500, 0, 0},
    };
    for (const Case& c : cases) {
        std::vector<unsigned int> cache;
        for (unsigned int i = 0; i < 40; ++i)
            cache.insert(cache.end(), {100 + i, 200 + i, 300 + i, 400 + i, c.alpha});
        create(c.frameWidth, 3, v210);
        useCache(v210, c.width, c.height);
        place(c.x, c.y);
        overlay.wmV210 = cache.data();
        std::vector<char> wanted(static_cast<std::size_t>(c.pitch * 3 + 64), '\x15');
        const auto found = apply(wanted);
        ZRDraw* draw = nullptr;
        GetDraw(ptV210, c.frameWidth, 3, c.pitch, wanted.data(), draw);
        for (int row = 0; row < c.rows; ++row) {
            for (int column = 0; column < c.columns; ++column) {
                const auto at =
                    static_cast<unsigned int>(row * static_cast<int>(c.width / 2) + column / 2);
                draw->SetColorYCbCr10((column % 2 != 0 ? 300 : 100) + at, 200 + at, 400 + at, 0,
                                      true);
                draw->PutPixel(static_cast<int>(c.x) + column, static_cast<int>(c.y) + row, true);
            }
        }
        ReleaseDraw(draw);
        EXPECT_EQ(found, wanted) << c.x << " " << c.y << " " << c.alpha;
    }
}

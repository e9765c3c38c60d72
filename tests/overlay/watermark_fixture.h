// An overlay with a watermark that a reader of the test's own delivers.
#pragma once

#include "overlay/overlay_fixture.h"

#include <list>

// The host's codes. The last one has the pixels of yuv2, but no watermark.
inline constexpr unsigned int bgra = 0, yuv2 = 0x32767579, v210 = 0x76323130, uyvy = 0x59565955;

// What the reader of media files finds, and the calls that reach it.
struct Clip {
    int width = 0, height = 0;
    std::vector<unsigned char> pixels;
    std::string lacks; // an entry of its reader or something else
    std::vector<std::string> calls;
    DFRAME frame{};
};
inline Clip clip;

template <typename... Numbers>
void note(const std::string& call, Numbers... numbers) {
    clip.calls.push_back(call + (... + (" " + std::to_string(numbers))));
}

inline void* openClip(const char* path, unsigned int access, unsigned int share, void* security,
                      unsigned int disposition, unsigned int attributes, unsigned int flags) {
    note(std::string("open ") + path, access, share, security == nullptr, disposition, attributes,
         flags);
    return clip.lacks == "file" ? nullptr : &clip;
}

inline int getInfo(void** handle, int kind, int index, KPXVIDEO* record, void* a, void* b) {
    note("info", *handle == &clip, kind, index, record->header.biSize, a == b);
    const int times = clip.lacks == "a size of 32 bits" ? 20000 : 1;
    record->header.biWidth = clip.width * times;
    record->header.biHeight = clip.height * times;
    return 0;
}

inline unsigned int readFrame(void** handle, unsigned int number, int count, int isVideo, int whole,
                              DFRAME* frame, void* a, void* b) {
    note(frame == nullptr ? "size" : "read", *handle == &clip, number, count, isVideo, whole,
         a == b);
    if (frame != nullptr)
        std::copy(clip.pixels.begin(), clip.pixels.end(), frame->videoData);
    return static_cast<unsigned int>(clip.pixels.size());
}

inline int closeClip(void** handle) {
    note("close", *handle == &clip);
    return 0;
}

inline void* entryOf(const char* name) {
    note(name, 0);
    if (clip.lacks == name)
        return nullptr;
    return std::map<std::string, void*>{{"cfOpen", reinterpret_cast<void*>(openClip)},
                                        {"cfGetFileInfo", reinterpret_cast<void*>(getInfo)},
                                        {"cfReadFrameUnc", reinterpret_cast<void*>(readFrame)},
                                        {"cfClose", reinterpret_cast<void*>(closeClip)}}[name];
}

class OverlayWatermark : public OverlayTest {
protected:
    OverlayWatermark() {
        clip = {};
        Injection& host = injection();
        host.loadLibrary = [this](const char* name, int mode) {
            note(std::string("load ") + name, mode);
            return clip.lacks == "library" ? nullptr : static_cast<void*>(&library);
        };
        host.procAddress = [this](void* from, const char* name) {
            EXPECT_EQ(from, &library);
            return entryOf(name);
        };
        host.freeLibrary = [this](void* freed) {
            note("unload", freed == &library);
            return 1;
        };
        host.alloc = [this](unsigned int bytes) -> void* {
            note("alloc", bytes);
            if (clip.lacks == "an allocator that does not throw")
                throw 1;
            return clip.lacks == "memory" ? nullptr : memory.emplace_back(bytes, '\x5A').data();
        };
        host.frameMemory = [this](int operation, unsigned int bytes, unsigned int record,
                                  DFRAME** made, const char* tag, int line) {
            note(std::string("frame ") + tag, operation, bytes, record, line);
            clip.frame.videoData = memory.emplace_back(bytes).data();
            *made = operation == 10 ? &clip.frame : nullptr;
            return clip.lacks == "memory of a frame" ? -1 : 0;
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
